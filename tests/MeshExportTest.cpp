// Meshes written to files and read back.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/MeshFiles.h"
#include "workbench/exchange/formats/BdfFile.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/InpFile.h"
#include "workbench/exchange/store/StoreImport.h"
#include "workbench/model/MeshActs.h"
#include "workbench/model/MeshNumbers.h"

namespace qd::test {
namespace {

using namespace workbench;
namespace fs = std::filesystem;

TEST_F(MeshFiles, SolverInputReadsBackWithTheSameGroupsNodesAndMaterials) {
  const iterator all = AddElementSet(L"All of it", 0, {});
  const iterator solids = AddElementSet(L"Solids, \"first\"", all, {4, 5, 6, 7});
  AddElementSet(L"Second order", solids, {11, 17, 18});
  AddElementSet(L"only child", AddElementSet(L"holder", all, {}), {2, 3, 9, 16});
  AddElementSet(L"lines", 0, {1, 8, 15});
  AddElementSet(L"LINES", 0, {1});
  AddElementSet(L"empty", 0, {});
  Act([&] {
    tagTMaterial steel;
    steel.name = L"Steel";
    steel.youngsModulus = 210000;
    steel.density = 7.85e-9;
    tagTProperty solid;
    solid.name = L"solid";
    solid.material = Data().GetMaterialPool().Add(steel);
    tagTMset record = Mset(solids);
    record.property = Data().GetPropertyPool().Add(solid);
    ASSERT_EQ(Pool().Modify(solids, record), 1);
  });
  Database back;
  ImportedModel model = ReadInpFile(WriteAll("model.inp"), [](double) {});
  EXPECT_TRUE(model.notes.empty());
  for (const ImportedMeshSet& set : model.meshSets) EXPECT_EQ(CountBentEdges(set.mesh), 0) << set.name;
  ASSERT_EQ(StoreImport(back, std::move(model), L"back"), 1);
  std::vector<std::string> expected = Describe(Data());
  for (std::string& line : expected) {
    const auto replace = [&line](const std::string& from, const std::string& to) {
      for (std::size_t at = line.find(from); at != std::string::npos; at = line.find(from))
        line.replace(at, from.size(), to);
    };
    replace("Solids, \"first\"", "Solids_ _first_");
    if (line.starts_with("LINES|")) replace("LINES|", "LINES-2|");
  }
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(Describe(back), expected);
}

// What solvers take: sixteen numbers in a line, a section for all that a set holds, no values that nobody gave.
TEST_F(MeshFiles, SolverInputIsWrittenAsSolversTakeIt) {
  const iterator brick = AddElementSet(L"Brick", 0, {17});
  const iterator hollow = AddElementSet(L"hollow", brick, {});
  const iterator skin = AddElementSet(L"Skin", AddElementSet(L"holder", 0, {}), std::vector<int>(17, 2));
  const iterator alone = AddElementSet(L"alone", 0, {});
  Act([&] {
    tagTMaterial bare;
    bare.name = L"Bare";
    bare.youngsModulus = 7;
    tagTProperty solid;
    solid.name = L"solid";
    solid.material = Data().GetMaterialPool().Add(bare);
    tagTProperty shell;
    shell.name = L"shell";
    shell.kind = tagTProperty::Kind::Shell;
    shell.size = 0.5;
    const iterator properties[] = {Data().GetPropertyPool().Add(solid), Data().GetPropertyPool().Add(shell)};
    for (const iterator set : {brick, hollow, skin, alone}) {
      tagTMset record = Mset(set);
      record.property = properties[set == brick ? 0 : 1];
      ASSERT_EQ(Pool().Modify(set, record), 1);
    }
  });
  const std::string text = ScratchFolder::ReadAt(WriteAll("model.inp"));
  EXPECT_NE(text.find("\n*ELEMENT, TYPE=C3D20\n1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 12, 14, 10, 17, 19, 20,\n"
                      "18, 11, 13, 15, 16\n*ELEMENT, TYPE=S3\n21, 21, 22, 23\n24, 24, 25, 26\n"),
            std::string::npos)
      << text;
  EXPECT_EQ(text.substr(text.find("*ELSET")),
            "*ELSET, ELSET=hollow\n*ELSET, ELSET=Brick\n1,\nhollow,\n"
            "*ELSET, ELSET=Skin\n21,24,27,30,33,36,39,42,45,48,51,54,57,60,63,66,\n69,\n"
            "*ELSET, ELSET=holder\nSkin,\n*ELSET, ELSET=alone\n"
            "*SOLID SECTION, ELSET=Brick, MATERIAL=Bare\n*SHELL SECTION, ELSET=Skin\n0.5\n"
            "*MATERIAL, NAME=Bare\n*ELASTIC\n7, 0\n");
}

TEST_F(MeshFiles, OnlyWhatIsChosenIsWrittenWithTheGroupsAboveIt) {
  const iterator a = AddElementSet(L"A", 0, {4});
  const iterator b = AddElementSet(L"B", a, {5});
  AddElementSet(L"C", b, {6});
  AddElementSet(L"D", 0, {4});
  const ExportModel model = CollectExport(Data(), {b});
  ASSERT_EQ(model.sets.size(), 3U);
  EXPECT_EQ(model.sets[0].mesh, nullptr);
  EXPECT_EQ(model.sets[1].mesh, Mset(b).mesh);
  EXPECT_EQ(model.sets[2].parent, 1);
}

// A document may come from anywhere, and what it says decks call their sets with it.
TEST_F(MeshFiles, NamesThatADeckGivesFitIntoALineLikeAllOthers) {
  const std::vector<std::string> odd{"A\n*DLOAD", std::string(300, 'a'), "", "a,b=c", std::string("\0", 1)};
  Act([&] {
    tagTDeck deck;
    for (const std::string& name : odd) {
      tagTMset record = Mset(PutMset(RecordName(name), 0, 0));
      tagTMaterial material;
      material.name = RecordName(name);
      deck.sets.push_back({name, record.key & kMsetKeyMask, false, 0, 0});
      deck.sets.push_back({name, 0, false, 0, 0});
      deck.materials.push_back({name, Data().GetMaterialPool().Add(material), 0, 0, 0});
    }
    deck.text = std::make_shared<const std::string>();
    ASSERT_NE(Data().GetDeckPool().Add(deck), 0U);
  });
  const ExportModel model = CollectExport(Data(), Pool().GetItrList());
  std::vector<std::string> names = model.decks[0].setNames;
  for (const ExportSet& set : model.sets) names.push_back(set.name);
  for (const ImportedMaterial& material : model.materials) names.push_back(material.name);
  ASSERT_EQ(names.size(), 4 * odd.size());
  for (const std::string& name : names) {
    EXPECT_LE(name.size(), 78U);
    EXPECT_FALSE(name.empty());
    EXPECT_EQ(name.find_first_of(std::string_view("\n,=\0", 4)), std::string::npos) << name;
  }
}

struct ReportCase {
  const char* format;
  std::uint64_t nodes;
  std::uint64_t elements;
  std::uint64_t groups;
  std::vector<std::string> notes;  // key and names, in the order of keys
};
void PrintTo(const ReportCase& report, std::ostream* out) {
  *out << report.format;
}
class WhatIsNotInTheFile : public MeshFiles, public ::testing::WithParamInterface<ReportCase> {};

TEST_P(WhatIsNotInTheFile, IsNotedByNameAndTheRestIsCounted) {
  const iterator body = AddElementSet(L"Body", 0, {5});
  AddElementSet(L"Rib", body, {4, 16, 12});
  AddElementSet(L"void", 0, {});
  const iterator beams = AddElementSet(L"a \"beam\"", body, {1});
  Act([&] {
    tagTMaterial steel;
    steel.name = L"Steel";
    tagTProperty property;
    property.name = L"Bar";
    property.kind = tagTProperty::Kind::Beam;
    property.material = Data().GetMaterialPool().Add(steel);
    tagTMset record = Mset(beams);
    record.property = Data().GetPropertyPool().Add(property);
    ASSERT_EQ(Pool().Modify(beams, record), 1);
  });
  ASSERT_TRUE(AddNode(Data(), body, {9, 9, 9}, L"node").IsDone());
  WriteAll("model." + std::string(GetParam().format));
  std::vector<std::string> notes;
  for (const ImportNote& note : m_report.notes) notes.push_back(note.key.substr(14) + "|" + note.detail);
  std::vector<std::string> expected = GetParam().notes;
  std::sort(notes.begin(), notes.end());
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(notes, expected);
  EXPECT_EQ(m_report.nodes, GetParam().nodes);
  EXPECT_EQ(m_report.elements, GetParam().elements);
  EXPECT_EQ(m_report.groups, GetParam().groups);
}

const std::string kBeam = "a _beam_";
const std::string kRenamed = "RENAMED|a \"beam\" → a _beam_";
INSTANTIATE_TEST_SUITE_P(
    Formats, WhatIsNotInTheFile,
    ::testing::Values(
        ReportCase{"inp",
                   23,
                   4,
                   4,
                   {kRenamed, "LEFT_ELEMENTS|Rib: " + std::string(FindElementType(12)->name) + " (1)",
                    "NODES_ALONE|Body (1)"}},
        ReportCase{"msh",
                   49,
                   5,
                   4,
                   {kRenamed, "LEFT_EMPTY|void", "LEFT_MATERIALS|Steel", "LEFT_NESTING|Body/Rib, Body/" + kBeam,
                    "LEFT_PROPERTIES|Bar", "LEFT_NODES|Body (1)", "SPLIT|Rib"}},
        ReportCase{"unv",
                   23,
                   4,
                   3,
                   {kRenamed, "LEFT_ELEMENTS|Rib: " + std::string(FindElementType(12)->name) + " (1)",
                    "LEFT_EMPTY|void", "LEFT_MATERIALS|Steel", "LEFT_NESTING|Body/Rib, Body/" + kBeam,
                    "LEFT_PROPERTIES|Bar", "NODES_ALONE|Body (1)"}},
        ReportCase{
            "bdf",
            23,
            4,
            3,
            {kRenamed, "BEAMS|" + kBeam, "LEFT_ELEMENTS|Rib: " + std::string(FindElementType(12)->name) + " (1)",
             "LEFT_EMPTY|void", "LEFT_NAMES|Body, Rib, " + kBeam, "LEFT_NESTING|Body/Rib, Body/" + kBeam,
             "NODES_ALONE|Body (1)"}},
        ReportCase{"stl",
                   0,
                   30,
                   2,
                   {kRenamed, "LEFT_ELEMENTS|" + kBeam + ": " + std::string(FindElementType(1)->name) + " (1)",
                    "LEFT_EMPTY|void", "LEFT_MATERIALS|Steel", "LEFT_NESTING|Body/Rib", "LEFT_NODES|Body (1)",
                    "LEFT_PROPERTIES|Bar", "SKIN|Body, Rib", "STRAIGHT|Rib"}}),
    [](const auto& report) { return std::string(report.param.format); });

/// Appends every element by its set, its kind and the places of its nodes, whatever the numbers.
void AppendPlaces(const std::string& set, const MeshData& mesh, std::vector<std::string>& places) {
  for (const MeshData::Block& block : mesh.blocks) {
    for (std::size_t i = 0; i < block.nodeIds.size(); ++i) {
      if (i % static_cast<std::size_t>(block.nodesPerElement) == 0)
        places.push_back(set + " type " + std::to_string(block.elementType));
      const double* at = &mesh.coordinates[PlaceOfNode(mesh, block.nodeIds[i]) * 3];
      for (int axis = 0; axis < 3; ++axis) places.back() += " " + std::to_string(at[axis]);
    }
  }
  std::sort(places.begin(), places.end());
}

class WrittenMesh : public MeshFiles, public ::testing::WithParamInterface<const char*> {};
TEST_P(WrittenMesh, IsReadBackElementByElement) {
  const fs::path path = m_folder / (std::string("a.") + GetParam());
  const Format* format = FormatOfPath(path);
  ASSERT_NE(format, nullptr);
  std::vector<int> types;
  for (const ElementType& type : ElementTypes()) {
    if (type.nodes > 1 && format->Holds(type.number)) types.push_back(type.number);
  }
  std::vector<std::string> written;
  for (const wchar_t* name : {L"A", L"B"}) {
    types.push_back(2);  // once an even, once an odd number of them
    const std::string known = format->Carry().names ? ToUtf8(name) : "";
    AppendPlaces(known, *Mset(AddElementSet(name, 0, types)).mesh, written);
  }
  ASSERT_FALSE(WriteMeshFile(path, CollectExport(Data(), Pool().GetItrList()), kGoOn, m_report));
  std::vector<std::string> read;
  for (const ImportedMeshSet& set : format->Read(path, {}).meshSets)
    AppendPlaces(format->Carry().names ? set.name : "", set.mesh, read);
  EXPECT_EQ(read, written);
}
INSTANTIATE_TEST_SUITE_P(Formats, WrittenMesh, ::testing::Values("msh", "unv", "bdf"),
                         [](const auto& ending) { return std::string(ending.param); });

TEST_F(MeshFiles, NormalsOfWrittenTrianglesAreOfLengthOneAndPointOut) {
  AddElementSet(L"Corner", 0, {4});
  ASSERT_FALSE(WriteMeshFile(m_folder / "a.stl", CollectExport(Data(), Pool().GetItrList()), kGoOn, m_report));
  std::istringstream text(m_folder.Read("a.stl"));
  std::array<double, 3> normal{};
  int facets = 0;
  for (std::string line; std::getline(text, line);) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (word == "facet") {
      words >> word >> normal[0] >> normal[1] >> normal[2];
      EXPECT_NEAR(std::hypot(normal[0], normal[1], normal[2]), 1, 1e-6);
      ++facets;
    } else if (word == "vertex") {
      double outside = 0;  // from a place inside, in the direction of the normal
      for (int axis = 0; axis < 3 && words >> word; ++axis) {
        outside += normal[axis] * (std::stod(word) - 0.25);
      }
      EXPECT_GT(outside, 0);
    }
  }
  EXPECT_EQ(facets, 4);
}

TEST_F(MeshFiles, BulkDataKeepsToItsColumns) {
  // Readers of such decks cut a field at its width: of 210000000000 a narrow one leaves 2.1000E.
  const iterator body = AddElementSet(L"Body", 0, {2});
  Act([&] {
    tagTMaterial steel;
    steel.name = L"Steel";
    steel.youngsModulus = 2.1e11;
    steel.poissonsRatio = 0.3;
    steel.density = 7.85e-9;
    tagTProperty shell;
    shell.name = L"Sheet";
    shell.kind = tagTProperty::Kind::Shell;
    shell.size = 1.0 / 3;
    shell.material = Data().GetMaterialPool().Add(steel);
    tagTMset record = Mset(body);
    record.property = Data().GetPropertyPool().Add(shell);
    MeshData mesh = *record.mesh;
    mesh.coordinates = {-1.23456789012e-101, 3, -4, 1, 0, 0, 0, 1, 0};
    PutMesh(record, std::make_shared<const MeshData>(mesh));
    ASSERT_EQ(Pool().Modify(body, record), 1);
  });
  WriteAll("a.bdf");
  const std::string text = m_folder.Read("a.bdf");
  const auto fieldsOf = [&text](const std::string& card) {
    std::vector<double> fields;
    const std::size_t start = text.find("\n" + card);
    EXPECT_NE(start, std::string::npos) << text;
    std::istringstream lines(text.substr(start == std::string::npos ? text.size() : start + 1));
    for (std::string line; std::getline(lines, line) && (fields.empty() || line[0] == '*');) {
      EXPECT_LE(line.size(), 80U) << line;
      for (std::size_t at = 8; at < 72; at += 16) {
        fields.push_back(at < line.size() ? std::atof(line.substr(at, 16).c_str()) : 0);
      }
    }
    return fields;
  };
  EXPECT_EQ(fieldsOf("GRID*   "), (std::vector<double>{1, 0, -1.23456789e-101, 3, -4, 0, 0, 0}));
  EXPECT_EQ(fieldsOf("MAT1*   "), (std::vector<double>{1, 2.1e11, 0, 0.3, 7.85e-9, 0, 0, 0}));
  EXPECT_EQ(fieldsOf("PSHELL* "), (std::vector<double>{1, 1, 0.3333333333, 0}));
}

// Of both orders in one set, and with the nodes in the places in which they were.
TEST_F(MeshFiles, BulkDataReadsBackElementByElement) {
  AddElementSet(L"lines", 0, {1, 1});
  AddElementSet(L"shells", 0, {9, 2, 16, 3, 9});
  AddElementSet(L"solids", 0, {4, 11, 5, 17, 6, 18, 7, 19});
  const ImportedModel model = ReadBdfFile(WriteAll("back.bdf"), {});
  const std::vector<iterator> sets = Pool().GetItrList();
  ASSERT_EQ(model.meshSets.size(), sets.size());
  using Elements = std::map<std::uint64_t, std::pair<int, std::vector<std::uint64_t>>>;
  const auto elementsOf = [](const MeshData& mesh) {
    Elements elements;
    for (const MeshData::Block& block : mesh.blocks) {
      const auto width = static_cast<std::ptrdiff_t>(block.nodesPerElement);
      auto at = block.nodeIds.begin();
      for (const std::uint64_t element : block.elementIds) {
        elements[element] = {block.elementType, {at, at + width}};
        at += width;
      }
    }
    return elements;
  };
  Elements wanted;
  Elements read;
  for (const iterator set : sets) wanted.merge(elementsOf(*Mset(set).mesh));
  for (const ImportedMeshSet& set : model.meshSets) {
    EXPECT_EQ(CountBentEdges(set.mesh), 0) << set.name;
    read.merge(elementsOf(set.mesh));
  }
  EXPECT_EQ(read, wanted);
}

TEST_F(MeshFiles, NumbersThatNoReaderTakesAreRefused) {
  auto mesh = std::make_shared<MeshData>(*OneElement(4, 0, 3'000'000'000));
  ExportModel model;
  model.sets.push_back({"A", -1, -1, mesh});
  for (const char* name : {"a.inp", "a.msh", "a.unv", "a.bdf"}) {
    const auto error = WriteMeshFile(m_folder / name, model, kGoOn, m_report);
    ASSERT_TRUE(error) << name;
    EXPECT_EQ(error->key, "IDS_WB_EXPORT_NUMBER") << name;
  }
  // In fixed columns numbers may not touch one another.
  for (const std::uint64_t greatest : {999'999'999U, 99'999'999U}) {
    const std::string name = greatest == 999'999'999 ? "b.unv" : "b.bdf";
    for (const std::uint64_t beyond : {0U, 1U}) {
      model.sets[0].mesh = OneElement(4, 0, greatest - 4 + beyond);
      const auto error = WriteMeshFile(m_folder / name, model, kGoOn, m_report);
      EXPECT_EQ(error ? error->key + " " + error->detail : "",
                beyond == 0 ? "" : "IDS_WB_EXPORT_NUMBER " + std::to_string(greatest + 1))
          << name;
    }
  }
}

TEST_F(MeshFiles, NamesNeitherEndALineOfAFileNorSteerATerminal) {
  AddElementSet(CString(L"A\x9b[2J\x2028") + L"B", 0, {4});
  AddElementSet(CString(L"C\x202E") + L"D", 0, {4});
  for (const char* name : {"a.inp", "a.unv", "a.bdf"}) {
    WriteAll(name);
    std::string notes;
    for (const ImportNote& note : m_report.notes) notes += note.detail + "; ";
    EXPECT_THAT(notes, ::testing::HasSubstr("A\\u009B[2J\\u2028B → A_[2J_B"));
    for (const char* code : {"\xc2\x9b", "\xe2\x80\xa8", "\xe2\x80\xae"}) {
      EXPECT_EQ(notes.find(code), std::string::npos) << name << notes;
    }
    EXPECT_EQ(m_folder.Read(name).find("\xc2\x9b"), std::string::npos) << name;
    EXPECT_EQ(m_folder.Read(name).find("\xe2\x80\xa8"), std::string::npos) << name;
  }
}

TEST_F(MeshFiles, AFailedExportLeavesTheOldFile) {
  AddElementSet(L"A", 0, {12});
  for (const char* name : {"a.inp", "a.unv", "a.bdf", "a.xyz"}) {
    std::ofstream(m_folder / name) << "old";
    const auto error = WriteMeshFile(m_folder / name, CollectExport(Data(), Pool().GetItrList()), kGoOn, m_report);
    ASSERT_TRUE(error) << name;
    EXPECT_EQ(error->key, std::string(name) == "a.xyz" ? "IDS_WB_EXPORT_FORMAT" : "IDS_WB_EXPORT_ELEMENT_TYPE");
    EXPECT_EQ(m_folder.Read(name), "old");
  }
  EXPECT_EQ(
      WriteMeshFile(m_folder / "none" / "a.msh", CollectExport(Data(), Pool().GetItrList()), kGoOn, m_report)->key,
      "IDS_WB_EXPORT_UNWRITABLE");
  EXPECT_EQ(WriteMeshFile(m_folder / "b.msh", CollectExport(Data(), {}), kGoOn, m_report)->key,
            "IDS_WB_EXPORT_NOTHING");
  EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.Path()), fs::directory_iterator()), 4);
}

TEST_F(MeshFiles, AStoppedExportLeavesNothing) {
  auto large = std::make_shared<MeshData>(*Strip(40'000, 1));
  ExportModel model;
  model.sets.push_back({"large", -1, -1, large});
  const auto error = WriteMeshFile(
      m_folder / "a.msh", model, [](double) { return false; }, m_report);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->key, "");
  EXPECT_TRUE(fs::is_empty(m_folder.Path()));
}

}  // namespace
}  // namespace qd::test
