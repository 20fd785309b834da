// Written decks, read as strictly as solvers read them: line by line, with nothing named before it is defined.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "support/Mesh.h"
#include "support/SampleMesh.h"
#include "support/ScratchFolder.h"
#include "workbench/exchange/formats/MeshExport.h"
#include "workbench/exchange/store/CollectExport.h"
#include "workbench/model/MeshNumbers.h"

namespace qd::test {
namespace {

using namespace workbench;

/// What a solver makes of a deck. Blanks do not count there, nor does the case of letters.
struct Deck {
  std::map<std::string, std::set<std::uint64_t>> sets;
  std::map<std::string, std::set<std::uint64_t>> nodeSets;
  std::map<std::uint64_t, std::string> material;  // by element
  std::set<std::uint64_t> elements;
  std::vector<std::string> faults;
};

std::string Plain(std::string_view text) {
  std::string plain;
  for (const char letter : text) {
    if (letter != ' ') plain += static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
  }
  return plain;
}

std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream in(line);
  for (std::string field; std::getline(in, field, ',');) fields.push_back(field);
  return fields;
}

Deck ReadStrictly(const std::string& text) {
  static const std::set<std::string> kKnown{"*NODE",         "*ELEMENT",    "*ELSET",   "*NSET",
                                            "*MATERIAL",     "*ELASTIC",    "*DENSITY", "*SOLIDSECTION",
                                            "*SHELLSECTION", "*BEAMSECTION"};
  Deck deck;
  std::string keyword;
  std::map<std::string, std::string> parameters;
  std::istringstream in(text);
  for (std::string raw; std::getline(in, raw);) {
    if (raw.starts_with("**")) continue;
    const auto fault = [&](const std::string& what) { deck.faults.push_back(what + ": " + raw); };
    if (raw.size() > 200) fault("a long line");
    const std::vector<std::string> fields = Fields(Plain(raw));
    if (raw.starts_with("*")) {
      keyword = fields[0];
      parameters.clear();
      for (std::size_t i = 1; i < fields.size(); ++i) {
        const auto equals = fields[i].find('=');
        parameters[fields[i].substr(0, equals)] = equals != std::string::npos ? fields[i].substr(equals + 1) : "";
      }
      if (!kKnown.contains(keyword)) fault("an unknown keyword");
      const auto named = parameters.find(keyword == "*NSET" ? "NSET" : "ELSET");
      const std::string set = named != parameters.end() ? named->second : "";
      if (set.size() > 80) fault("a long name");
      if (keyword == "*ELSET" || keyword == "*NSET") {
        if (parameters.size() != 1) fault("a parameter that solvers warn of");
        if (!(keyword == "*ELSET" ? deck.sets : deck.nodeSets).try_emplace(set).second) fault("defined twice");
      }
      if (keyword == "*ELEMENT" && parameters.contains("ELSET")) deck.sets.try_emplace(set);
      if (keyword.ends_with("SECTION")) {
        if (!deck.sets.contains(set)) fault("a section on a set that is not defined yet");
        for (const std::uint64_t element : deck.sets[set]) {
          if (!deck.material.try_emplace(element, parameters["MATERIAL"]).second) fault("a second section");
        }
      }
      continue;
    }
    const auto isNumber = [](const std::string& field) {
      return !field.empty() && field.find_first_not_of("0123456789") == std::string::npos;
    };
    for (std::size_t i = 0; i < fields.size(); ++i) {
      if (fields[i].size() > 20 && (keyword == "*NODE" || keyword == "*ELASTIC")) fault("a number of many digits");
      if (keyword == "*ELEMENT" && i == 0 && isNumber(fields[i])) {
        deck.elements.insert(std::stoull(fields[i]));
        if (parameters.contains("ELSET")) deck.sets[parameters["ELSET"]].insert(std::stoull(fields[i]));
      }
      if (keyword == "*NSET") deck.nodeSets[parameters["NSET"]].insert(std::stoull(fields[i]));
      if (keyword != "*ELSET") continue;
      auto& set = deck.sets[parameters["ELSET"]];
      const auto add = [&](std::uint64_t element) {
        if (!set.insert(element).second) fault("an element that counts twice");
      };
      if (isNumber(fields[i])) {
        add(std::stoull(fields[i]));
      } else if (deck.sets.contains(fields[i])) {
        for (const std::uint64_t element : deck.sets[fields[i]]) add(element);
      } else {
        fault("a set that is not defined yet");
      }
    }
  }
  return deck;
}

class SolverDeck : public MeshTest {
 protected:
  iterator AddElements(const CString& name, iterator parent, int count, iterator property = 0) {
    std::vector<MeshPtr> meshes;
    Numbering next = NextNumbers(Pool());
    for (int i = 0; i < count; ++i) {
      meshes.push_back(OneElement(i % 2 == 0 ? 4 : 5, 2.0 * i, std::max(next.nodes, next.elements)));
      next.Continue(*meshes.back());
    }
    iterator set = 0;
    Act([&] {
      set = PutMset(name, parent, 0);
      tagTMset record = Mset(set);
      if (count > 0) PutMesh(record, JoinMeshes(meshes));
      record.property = property;
      ASSERT_EQ(Pool().Modify(set, record), 1);
    });
    return set;
  }
  iterator AddProperty(const CString& name) {
    iterator property = 0;
    Act([&] {
      tagTMaterial material;
      material.name = name;
      material.youngsModulus = 1.0 / 3e-7;
      tagTProperty record;
      record.name = name;
      record.material = Data().GetMaterialPool().Add(material);
      property = Data().GetPropertyPool().Add(record);
    });
    return property;
  }
  Deck Written() {
    const ScratchFolder folder;
    const auto error = WriteMeshFile(
        folder / "deck.inp", CollectExport(Data(), Pool().GetItrList()), [](double) { return true; }, m_report);
    EXPECT_FALSE(error) << error->key;
    return ReadStrictly(folder.Read("deck.inp"));
  }
  ExportReport m_report;
  std::set<std::uint64_t> ElementsUnder(iterator set) {
    std::set<std::uint64_t> elements;
    for (const iterator itr : Pool().GetItrList()) {
      iterator above = itr;
      while (above != 0 && above != set) above = Pool().GetItrByKey(Mset(above).parent);
      if (above == 0 || Mset(itr).mesh == nullptr) continue;
      for (const auto& block : Mset(itr).mesh->blocks) {
        elements.insert(block.elementIds.begin(), block.elementIds.end());
      }
    }
    return elements;
  }
};

TEST_F(SolverDeck, SetsHoldWhatIsNestedInThemAndAreDefinedBeforeTheyAreNamed) {
  const iterator all = AddElements(L"Eall", 0, 0);
  const iterator body = AddElements(L"Body", all, 3);
  const iterator rib = AddElements(L"Rib", body, 2);
  AddElements(L"nothing", all, 0);
  AddElements(L"lid", AddElements(L"only child", 0, 0), 2);
  const Deck deck = Written();
  EXPECT_THAT(deck.faults, ::testing::IsEmpty());
  EXPECT_EQ(deck.sets.at("EALL"), ElementsUnder(all));
  EXPECT_EQ(deck.sets.at("BODY"), ElementsUnder(body));
  EXPECT_EQ(deck.sets.at("RIB"), ElementsUnder(rib));
  EXPECT_EQ(deck.sets.at("\"ONLYCHILD\""), deck.sets.at("LID"));
  EXPECT_TRUE(deck.sets.at("NOTHING").empty());
  EXPECT_EQ(deck.elements.size(), 7U);
}

TEST_F(SolverDeck, SectionsReachTheElementsOfTheirSetsAndNoOthers) {
  const iterator steel = AddProperty(L"Steel");
  const iterator brass = AddProperty(L"Brass");
  const iterator body = AddElements(L"body", 0, 2, steel);
  const iterator same = AddElements(L"same", body, 1, steel);
  const iterator frame = AddElements(L"frame", 0, 2, steel);
  const iterator other = AddElements(L"other", frame, 1, brass);
  const iterator bare = AddElements(L"bare", frame, 1);
  const iterator deep = AddElements(L"deep", bare, 2, steel);
  const Deck deck = Written();
  EXPECT_THAT(deck.faults, ::testing::IsEmpty());
  for (const iterator set : {body, same, frame, other, bare, deep}) {
    for (const auto& block : Mset(set).mesh->blocks) {
      for (const std::uint64_t element : block.elementIds) {
        const auto found = deck.material.find(element);
        const std::string expected = set == other ? "BRASS" : set == bare ? "" : "STEEL";
        EXPECT_EQ(found != deck.material.end() ? found->second : "", expected) << ToUtf8(Mset(set).name);
      }
    }
  }
}

TEST_F(SolverDeck, NamesAreSuchAsSolversTake) {
  const std::vector<CString> names{L"a b",
                                   L"AB",
                                   L"ab",
                                   L"12",
                                   L"*odd",
                                   L"q\"uote",
                                   L"-",
                                   L"12345678901A",
                                   CString(200, L'x'),
                                   CString(199, L'x') + L"y",
                                   CString(70, L'\x00E9'),
                                   L""};
  for (const CString& name : names) AddElements(name, 0, 1);
  const Deck deck = Written();
  EXPECT_THAT(deck.faults, ::testing::IsEmpty());
  EXPECT_EQ(deck.sets.size(), names.size());
  for (const auto& [name, elements] : deck.sets) EXPECT_EQ(elements.size(), 1U) << name;
}

TEST_F(SolverDeck, NumbersFitTheirFields) {
  AddElements(L"A", 0, 1);
  const iterator set = Pool().GetItrList().front();
  Act([&] {
    auto mesh = std::make_shared<MeshData>(*Mset(set).mesh);
    mesh->coordinates = {1.2345678901234567e-10,
                         -1.2345678901234567e-110,
                         -9.999999999999999e300,
                         0.1 + 0.2,
                         -2.0 / 3,
                         1e22,
                         123456789012345678.0,
                         -1e-5,
                         -0.000012345678901234567,
                         0,
                         1,
                         -1};
    tagTMset record = Mset(set);
    PutMesh(record, mesh);
    ASSERT_EQ(Pool().Modify(set, record), 1);
  });
  EXPECT_THAT(Written().faults, ::testing::IsEmpty());
}

}  // namespace
}  // namespace qd::test
