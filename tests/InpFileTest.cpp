// Solver input files: what is read, how sets nest, and what is said of bad ones.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <numeric>
#include <unordered_set>

#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "workbench/exchange/formats/InpElements.h"
#include "workbench/exchange/formats/InpFile.h"
#include "workbench/exchange/pipe/Protocol.h"
#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshEdit.h"

namespace qd::test {
namespace {

using namespace workbench;
namespace fs = std::filesystem;

class InpFile : public ::testing::Test {
 protected:
  fs::path Write(const std::string& text, const std::string& name = "model.inp") {
    return m_folder.Write(name, text);
  }
  static ImportedModel Read(const fs::path& path) {
    return ReadInpFile(path, [](double) {});
  }
  /// The error that reading a text ends with, as key and detail.
  std::string ErrorOf(const std::string& text) {
    try {
      Read(Write(text));
    } catch (const ImportError& error) {
      return error.key + " " + error.detail;
    }
    return "none";
  }
  /// Sets as "name(elements/nodes)", nested ones in brackets.
  static std::string Describe(const ImportedModel& model, std::int32_t parent = -1) {
    std::string text;
    for (std::size_t i = 0; i < model.meshSets.size(); ++i) {
      const ImportedMeshSet& set = model.meshSets[i];
      if (set.parent != parent) continue;
      text += (text.empty() ? "" : " ") + set.name + "(" + std::to_string(ElementCountOf(set.mesh)) + "/" +
              std::to_string(set.mesh.nodeIds.size()) + ")";
      const std::string below = Describe(model, static_cast<std::int32_t>(i));
      if (!below.empty()) text += " [" + below + "]";
    }
    return text;
  }
  ScratchFolder m_folder;
};

const std::string kNodes = "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,2,0,0\n6,2,1,0\n";

TEST_F(InpFile, ReadsSetsSectionsAndMaterials) {
  const ImportedModel model = Read(fs::path(SourceFolder()) / "examples" / "bracket.inp");
  EXPECT_EQ(Describe(model), "PLATE(2/6) SOLIDS(0/0) [BLOCK(1/8) [LEFT(1/8)] WEDGES(2/8)]");
  ASSERT_EQ(model.materials.size(), 1U);
  EXPECT_EQ(model.materials[0].name, "STEEL");
  EXPECT_DOUBLE_EQ(model.materials[0].youngsModulus, 210000);
  EXPECT_DOUBLE_EQ(model.materials[0].poissonsRatio, 0.3);
  EXPECT_DOUBLE_EQ(model.materials[0].density, 7.85e-9);
  for (const ImportedMeshSet& set : model.meshSets) {
    if (set.name == "SOLIDS") continue;  // holds nothing of its own
    ASSERT_GE(set.property, 0) << set.name;
    const ImportedProperty& property = model.properties[static_cast<std::size_t>(set.property)];
    EXPECT_EQ(property.name, set.name == "PLATE" ? "PLATE" : "SOLIDS");
    EXPECT_DOUBLE_EQ(property.size, set.name == "PLATE" ? 2 : 0);
  }
  EXPECT_TRUE(model.notes.empty());
}

struct GroupCase {
  const char* sets;
  const char* expected;
  std::size_t notes;
};
class InpGroups : public InpFile, public ::testing::WithParamInterface<GroupCase> {};
TEST_P(InpGroups, NestWhatLiesInOneAnotherAndDoubleNothing) {
  const ImportedModel model =
      Read(Write(kNodes + "*ELEMENT, TYPE=S3\n1,1,2,3\n2,1,3,4\n3,2,5,6\n4,2,6,3\n" + GetParam().sets));
  EXPECT_EQ(Describe(model), GetParam().expected);
  EXPECT_EQ(model.notes.size(), GetParam().notes);
  std::uint64_t elements = 0;
  for (const ImportedMeshSet& set : model.meshSets) elements += ElementCountOf(set.mesh);
  EXPECT_EQ(elements, 4U);
}
INSTANTIATE_TEST_SUITE_P(
    Sets, InpGroups,
    ::testing::Values(
        GroupCase{"", "model(4/6)", 0}, GroupCase{"*ELSET,ELSET=A\n1,2\n", "model(2/4) A(2/4)", 0},
        GroupCase{"*Elset, elset=A, generate\n1,4,1\n*ELSET,ELSET=B\n2,\n*ELSET,ELSET=C\n2,3\n",
                  "A(2/4) [C(1/3) [B(1/3)]]", 0},
        GroupCase{"*ELSET,ELSET=A\n1,2\n*ELSET,ELSET=A\n3,4\n", "A(4/6)", 0},
        GroupCase{"*ELSET,ELSET=A\n1,2\n*ELSET,ELSET=B\n2,1\n*ELSET,ELSET=C\n3,4\n", "A(2/4) C(2/4)", 1},
        GroupCase{"*ELSET,ELSET=A\n1,2,3\n*ELSET,ELSET=B\n3,4\n", "A(2/4) B(2/4)", 1},
        GroupCase{"*ELSET,ELSET=ALL\nA,B\n*ELSET,ELSET=A\n1\n*ELSET,ELSET=B\n2,3,4\n", "ALL(0/0) [A(1/3) B(3/6)]",
                  0},
        GroupCase{"*ELSET,ELSET=Z\n1\n*ELSET,ELSET=B\n2,3\n*ELSET,ELSET=A\n4\n*ELSET,ELSET=ALL\nB,Z\n",
                  "A(1/3) ALL(0/0) [Z(1/3) B(2/6)]", 0}));

TEST_F(InpFile, FollowsIncludesPartsAndInstances) {
  fs::create_directories(m_folder / "sub");
  Write("*INCLUDE, INPUT=\"more.inp\"\n", "sub/first.inp");
  Write("*ELEMENT, TYPE=S3, ELSET=E\n1,1,2,3\n", "sub/more.inp");
  EXPECT_EQ(Describe(Read(Write(kNodes.substr(0, 30) + "*Include, input=sub/first.inp\n"))), "E(1/3)");
  const ImportedModel model =
      Read(Write("*PART, NAME=P\n" + kNodes +
                 "*ELEMENT,TYPE=S4,ELSET=E\n1,1,2,3,4\n2,2,5,6,3\n*SHELL SECTION,ELSET=E\n.5\n*END PART\n"
                 "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=P-1, PART=P\n*END INSTANCE\n"
                 "*INSTANCE, NAME=P-2, PART=P\n10,0,0\n10,0,0,10,0,1,90\n*END INSTANCE\n"
                 "*ELSET, ELSET=Chosen, INSTANCE=P-2\n2\n*END ASSEMBLY\n"));
  EXPECT_EQ(Describe(model), "P-1(0/0) [E(2/6)] P-2(0/0) [E(1/4) [Chosen(1/4)]]");
  ASSERT_EQ(model.properties.size(), 1U);
  EXPECT_EQ(model.meshSets.back().property, 0);         // its part's
  const MeshData& turned = model.meshSets.back().mesh;  // shifted by ten, then turned about the shifted origin
  EXPECT_EQ(turned.nodeIds, (std::vector<std::uint64_t>{8, 9, 11, 12}));
  EXPECT_NEAR(turned.coordinates[0], 10, 1e-12);
  EXPECT_NEAR(turned.coordinates[1], 1, 1e-12);
  EXPECT_EQ(turned.blocks[0].elementIds, (std::vector<std::uint64_t>{4}));
}

struct BadCase {
  const char* text;
  const char* error;
};
class BadInp : public InpFile, public ::testing::WithParamInterface<BadCase> {};
TEST_P(BadInp, IsRefusedWithItsPlace) {
  EXPECT_EQ(ErrorOf(kNodes + GetParam().text), GetParam().error);
}
INSTANTIATE_TEST_SUITE_P(
    Texts, BadInp,
    ::testing::Values(
        BadCase{"*ELEMENT, TYPE=S4\n1,1,2,3\n", "IDS_WB_IMPORT_INP_COUNT model.inp, 9: 1,1,2,3"},
        BadCase{"*ELEMENT, TYPE=C3D8\n1,1,2,3,4,\n5,6", "IDS_WB_IMPORT_INP_COUNT model.inp, 10: 5,6"},
        BadCase{"*ELEMENT, TYPE=C3D8\n1,1,2,3,4,\n", "IDS_WB_IMPORT_INP_COUNT model.inp, 9: 1"},
        BadCase{"*ELEMENT, TYPE=C3D99\n1,1\n", "IDS_WB_IMPORT_INP_TYPE model.inp, 8: C3D99"},
        BadCase{"*ELEMENT\n1,1\n", "IDS_WB_IMPORT_INP_TYPE model.inp, 8: *ELEMENT"},
        BadCase{"*ELEMENT, TYPE=S3\n7,1,2,99\n", "IDS_WB_IMPORT_INP_NODE 9: 7 - 99"},
        BadCase{"*NGEN\n1,9\n*ELEMENT, TYPE=S3\n7,1,2,9\n", "IDS_WB_IMPORT_INP_GENERATED 11: *NGEN (1)"},
        BadCase{"*ELGEN\n1,9\n*ELSET, ELSET=S\n7\n", "IDS_WB_IMPORT_INP_GENERATED model.inp, 11: *ELGEN (1)"},
        BadCase{"*ELEMENT, TYPE=S3\n1,1,2,x\n", "IDS_WB_IMPORT_INP_NUMBER model.inp, 9: x"},
        BadCase{"*ELEMENT, TYPE=S3\n1,1,2,-3\n", "IDS_WB_IMPORT_INP_NUMBER model.inp, 9: 1"},
        BadCase{"*ELEMENT, TYPE=S3\n1,1,2,3\n1,1,3,4\n", "IDS_WB_IMPORT_INP_TWICE model.inp, 10: 1"},
        BadCase{"*NODE\n3,0,0,0\n", "IDS_WB_IMPORT_INP_TWICE 3"},
        BadCase{"*NODE\n9,0,1e999,0\n", "IDS_WB_IMPORT_INP_NUMBER model.inp, 9: 1e999"},
        BadCase{"*ELSET, ELSET=A\n55\n", "IDS_WB_IMPORT_INP_ELEMENT model.inp, 9: 55"},
        BadCase{"*ELSET, ELSET=A\nB\n", "IDS_WB_IMPORT_INP_SET B"},
        BadCase{"*ELSET, ELSET=A, GENERATE\n1,9,0\n", "IDS_WB_IMPORT_INP_NUMBER model.inp, 9: 1,9,0"},
        BadCase{"*SOLID SECTION, ELSET=NONE\n", "IDS_WB_IMPORT_INP_SET model.inp, 8: NONE"},
        BadCase{"*PART, NAME=P\n*NODE\n1,0,0,0\n*END PART\n*INSTANCE, NAME=I, PART=P\n"
                "*ELEMENT, TYPE=T3D2\n7,1,9\n*END INSTANCE\n",
                "IDS_WB_IMPORT_INP_NODE 14: 7 - 9"},
        BadCase{"*INSTANCE, NAME=I, PART=NONE\n",
                "IDS_WB_IMPORT_INP_SET model.inp, 8: *INSTANCE, NAME=I, PART=NONE"},
        BadCase{"*PART, NAME=P\n*END PART\n*PART, NAME=p\n", "IDS_WB_IMPORT_INP_TWICE model.inp, 10: p"},
        BadCase{"*PART, NAME=P\n*END PART\n*INSTANCE, PART=P\n",
                "IDS_WB_IMPORT_INP_SET model.inp, 10: *INSTANCE, PART=P"},
        BadCase{"*PART, NAME=P\n", "IDS_WB_IMPORT_TRUNCATED "},
        BadCase{"*PART, NAME=P\n*INSTANCE, NAME=I, PART=P\n",
                "IDS_WB_IMPORT_INP_END model.inp, 9: *INSTANCE, NAME=I, PART=P"},
        BadCase{"*ELEMENT, TYPE=C3D4, ELSET=A, INPUT=more.txt\n",
                "IDS_WB_IMPORT_INP_INPUT model.inp, 8: *ELEMENT, TYPE=C3D4, ELSET=A, INPUT=more.txt"},
        BadCase{"*PART, NAME=P\n*PART, NAME=Q\n", "IDS_WB_IMPORT_INP_END model.inp, 9: *PART, NAME=Q"},
        BadCase{"*PART, NAME=P\n*ASSEMBLY\n", "IDS_WB_IMPORT_INP_END model.inp, 9: *ASSEMBLY"},
        BadCase{"*END PART\n", "IDS_WB_IMPORT_INP_END model.inp, 8: *END PART"}));

TEST_F(InpFile, ReadsWhatSolversAccept) {
  const ImportedModel model =
      Read(Write("*NODE, NSET=N\n1\n2 ,10\n3,10,10\n4,,10,\n5,1D1,0,5.E0\n*ELEMENT, TYPE=S4R, ELSET=E\n1,1,2,3,4\n"
                 "*ELEMENT, TYPE=D, ELSET=NET\n2,0,1,2\n3,2,3,4\n4,4,5,0\n*ELSET,ELSET=NET\n2,4\n"
                 "*SHELL SECTION, ELSET=E, COMPOSITE\n.5,,UPPER\n.25,3,LOWER\n*STEP\n*STATIC\n"));
  EXPECT_EQ(Describe(model), "model(0/1) E(1/4) NET(1/3)");
  ASSERT_EQ(model.notes.size(), 1U);
  EXPECT_EQ(model.notes[0].detail, "D");
  EXPECT_DOUBLE_EQ(model.properties[0].size, 0.75);
  EXPECT_EQ(model.materials[static_cast<std::size_t>(model.properties[0].material)].name, "UPPER");
}

TEST_F(InpFile, AByteOrderMarkIsNoPartOfTheFirstKeyword) {
  EXPECT_EQ(Describe(Read(Write("\xEF\xBB\xBF" + kNodes + "*ELEMENT, TYPE=S3, ELSET=E\n1,1,2,3\n"))),
            "model(0/3) E(1/3)");
}

TEST_F(InpFile, OldEndsOfLinesAreReadAndWideTextIsCalledByItsName) {
  const std::string deck = kNodes + "*ELEMENT, TYPE=S3, ELSET=E\n1,1,2,3\n";
  std::string old = deck;
  std::replace(old.begin(), old.end(), '\n', '\r');
  EXPECT_EQ(Describe(Read(Write(old))), "model(0/3) E(1/3)");
  for (const bool bigFirst : {false, true}) {
    std::string wide;
    for (const char letter : deck) {
      const char both[] = {letter, '\0'};
      wide.append({both[bigFirst ? 1 : 0], both[bigFirst ? 0 : 1]});
    }
    EXPECT_EQ(ErrorOf(wide), "IDS_WB_IMPORT_INP_WIDE model.inp");
    EXPECT_EQ(ErrorOf((bigFirst ? "\xFE\xFF" : "\xFF\xFE") + wide), "IDS_WB_IMPORT_INP_WIDE model.inp");
  }
}

TEST_F(InpFile, CirclesOfIncludesAndOfSetsEnd) {
  EXPECT_NE(ErrorOf("*INCLUDE, INPUT=model.inp\n").find("IDS_WB_IMPORT_INP_INCLUDE"), std::string::npos);
  EXPECT_NE(ErrorOf("*INCLUDE, INPUT=.\n").find("IDS_WB_IMPORT_INP_INCLUDE"), std::string::npos);
  EXPECT_NE(ErrorOf("*INCLUDE, INPUT=none.inp\n").find("IDS_WB_IMPORT_INP_INCLUDE"), std::string::npos);
  EXPECT_EQ(ErrorOf(kNodes + "*ELSET,ELSET=A\nB\n*ELSET,ELSET=B\nA\n"), "none");
}

/// However many sets are named before they are defined, each by the one before it.
TEST_F(InpFile, SetsThatNameLaterSetsMayDoSoInLongChains) {
  constexpr int kSets = 50'000;
  std::string deck = kNodes + "*ELEMENT, TYPE=S3\n1,1,2,3\n2,2,3,4\n";
  for (int i = 0; i < kSets; ++i) {
    deck += "*ELSET,ELSET=S" + std::to_string(i) + "\nS" + std::to_string(i + 1) + "\n";
  }
  deck += "*ELSET,ELSET=S" + std::to_string(kSets) + "\n2\n";
  EXPECT_EQ(ErrorOf(deck), "none");
  EXPECT_EQ(ErrorOf(deck + "NONE\n"), "IDS_WB_IMPORT_INP_SET NONE");
}

TEST_F(InpFile, OuterFilesAreIncludedOnlyFromFoldersThatTheUserAllows) {
  const std::string part = kNodes + "*ELEMENT, TYPE=S3\n1,1,2,3\n";
  fs::create_directories(m_folder / "deck");
  fs::create_directories(m_folder / "more");
  fs::create_directories(m_folder / "deck2");
  const fs::path outer = Write(part, "more/outer.inp");
  Write(part, "deck2/outer.inp");  // its folder's name begins like the deck's own
  Write(part, "deck/inner.inp");
  std::vector<std::string> own{"inner.inp", "./../deck/inner.inp"};
  std::vector<std::string> others{outer.string(), "../more/outer.inp"};
  std::error_code noLinks;  // not every system lets anybody make them
  fs::create_symlink(outer, m_folder / "deck" / "link.inp", noLinks);
  if (!noLinks) others.emplace_back("link.inp");
  fs::create_symlink("inner.inp", m_folder / "deck" / "own.inp", noLinks);
  if (!noLinks) own.emplace_back("own.inp");
  const auto outcome = [&](const std::string& name, const std::vector<fs::path>& folders) {
    try {
      return Describe(ReadInpFile(
          Write("*INCLUDE, INPUT=\"" + name + "\"\n", "deck/main.inp"), [](double) {}, folders));
    } catch (const ImportError& error) {
      return error.key;
    }
  };
  const std::string read = "main(1/6)";
  for (const std::string& name : own) EXPECT_EQ(outcome(name, {}), read) << name;
  EXPECT_EQ(outcome((m_folder / "deck" / "inner.inp").string(), {}), read);
  for (const std::string& name : others) {
    EXPECT_EQ(outcome(name, {}), "IDS_WB_IMPORT_INP_OUTSIDE") << name;
    EXPECT_EQ(outcome(name, {m_folder / "deck2"}), "IDS_WB_IMPORT_INP_OUTSIDE") << name;
    EXPECT_EQ(outcome(name, {m_folder / "more"}), read) << name;
  }
  EXPECT_EQ(outcome("../deck2/outer.inp", {}), "IDS_WB_IMPORT_INP_OUTSIDE");
  EXPECT_EQ(outcome("../none/at all", {}), "IDS_WB_IMPORT_INP_OUTSIDE");
#ifndef _WIN32
  EXPECT_EQ(outcome("/dev/zero", {}), "IDS_WB_IMPORT_INP_OUTSIDE");
  EXPECT_EQ(outcome("/dev/zero", {"/dev"}), "IDS_WB_IMPORT_INP_INCLUDE");
#endif
}

TEST_F(InpFile, NothingOfAnIncludedFileStandsInAMessage) {
  for (const char* before :
       {"*NODE\n", "*ELEMENT, TYPE=S3\n", "*ELSET, ELSET=A\n", "*ELSET, ELSET=A, GENERATE\n"}) {
    Write("topsecret:x:1,2\n", "secret.txt");
    const std::string error = ErrorOf(kNodes + before + "*INCLUDE, INPUT=secret.txt\n");
    EXPECT_NE(error, "none") << before;
    EXPECT_EQ(error.find("topsecret"), std::string::npos) << error;
  }
  Write("*SOLID SECTION, ELSET=topsecret\n", "secret.txt");
  EXPECT_EQ(ErrorOf(kNodes + "*INCLUDE, INPUT=secret.txt\n").find("topsecret"), std::string::npos);
}

/// Files that include each other twice at every level.
TEST_F(InpFile, ManyIncludesEnd) {
  for (int level = 0; level < 15; ++level) {
    std::string text;
    for (int i = 0; i < 3; ++i) text += "*INCLUDE, INPUT=l" + std::to_string(level + 1) + ".inp\n";
    Write(text, "l" + std::to_string(level) + ".inp");
  }
  Write("** nothing\n", "l15.inp");
  EXPECT_NE(ErrorOf("*INCLUDE, INPUT=l1.inp\n").find("IDS_WB_IMPORT_INP_INCLUDE"), std::string::npos);
}

/// A short deck that names one larger file again and again.
TEST_F(InpFile, TheSameFileIncludedTooOftenIsRefused) {
  Write(std::string(8'000'000, '*') + "\n", "large.inp");
  std::string deck = kNodes + "*ELEMENT, TYPE=S3\n1,1,2,3\n";
  for (int i = 0; i < 100; ++i) deck += "*INCLUDE, INPUT=large.inp\n";
  EXPECT_EQ(ErrorOf(deck), "IDS_WB_IMPORT_INP_INCLUDE model.inp, 44: large.inp");
}

TEST_F(InpFile, RunsOfNumbersOfAnySizeEnd) {
  const std::string mesh = kNodes + "*ELEMENT, TYPE=S3\n1,1,2,3\n4,1,3,4\n9223372036854775807,2,5,6\n";
  const auto set = [&](const std::string& run) {
    return Describe(Read(Write(mesh + "*ELSET,ELSET=A,GENERATE\n" + run)));
  };
  EXPECT_EQ(set("1,9223372036854775807\n"), "A(3/6)");
  EXPECT_EQ(set("1,9223372036854775807,3\n"), "A(3/6)");
  EXPECT_EQ(set("9223372036854775806,9223372036854775807,1\n"), "model(2/4) A(1/3)");
  EXPECT_EQ(set("1,4,3\n"), "model(1/3) A(2/4)");
  for (const char* bad :
       {"-9223372036854775808,9223372036854775807\n", "1,4,0\n", "1,4,-1\n", "0,9223372036854775807\n"}) {
    EXPECT_NE(ErrorOf(mesh + "*ELSET,ELSET=A,GENERATE\n" + bad).find("IDS_WB_IMPORT_INP_NUMBER"),
              std::string::npos);
  }
}

/// A short deck that asks for its elements again and again.
TEST_F(InpFile, SetsThatListTooMuchAreRefused) {
  std::string deck = kNodes + "*ELEMENT, TYPE=S3\n";
  constexpr int kElements = 20'000;
  for (int i = 1; i <= kElements; ++i) deck += std::to_string(i) + ",1,2,3\n";
  deck += "*ELSET,ELSET=A,GENERATE\n1,20000\n";
  for (int i = 0; i < 15'000; ++i) deck += "*ELSET,ELSET=S" + std::to_string(i) + "\nA\n";
  EXPECT_NE(ErrorOf(deck).find("IDS_WB_IMPORT_INP_TOO_MUCH"), std::string::npos);
}

/// Each name of a set of the assembly goes to every instance in which that has elements.
TEST_F(InpFile, NamesThatAssembliesListTooOftenAreRefused) {
  std::string deck = "*PART, NAME=P\n" + kNodes + "*ELEMENT, TYPE=S3\n1,1,2,3\n*END PART\n*ASSEMBLY, NAME=A\n";
  std::string set = "*ELSET, ELSET=S\n";
  for (int i = 0; i < 1000; ++i) {
    const std::string name = "I" + std::to_string(i);
    deck += "*INSTANCE, NAME=" + name + ", PART=P\n*END INSTANCE\n";
    set += name + ".1\n";
  }
  deck += set + "*ELSET, ELSET=T\n";
  for (int i = 0; i < 30'000; ++i) deck += "S\n";
  EXPECT_NE(ErrorOf(deck + "*END ASSEMBLY\n").find("IDS_WB_IMPORT_INP_TOO_MUCH"), std::string::npos);
}

/// Each dot may end the name of an instance; a minute and more where it was looked up at each of them.
TEST_F(InpFile, LinesOfDotsEnd) {
  const std::string deck = "*PART, NAME=P\n" + kNodes +
                           "*ELEMENT, TYPE=S3\n1,1,2,3\n*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I.J, "
                           "PART=P\n*END INSTANCE\n*NSET, NSET=T\n";
  const ImportedModel model =
      Read(Write(deck + std::string(500'000, '.') + "\ni.j.2\n*ELSET, ELSET=T\nI.J.1\n*END ASSEMBLY\n"));
  EXPECT_EQ(Describe(model), "I.J(0/3) [T(1/3)]");
}

/// Set by set or one by one: minutes where numbers meet, and where each section goes through the elements of its
/// set.
TEST_F(InpFile, NumbersThatMeetAndSectionsInGreatNumberEnd) {
  constexpr std::uint64_t kElements = 150'000;
  std::unordered_set<std::uint64_t> table;
  for (std::uint64_t i = 0; i < kElements; ++i) table.insert(i);
  std::string deck = kNodes + "*ELEMENT, TYPE=S3, ELSET=E\n";
  for (std::uint64_t i = 1; i <= kElements; ++i) deck += std::to_string(i * table.bucket_count()) + ",1,2,3\n";
  for (int i = 0; i < 10'000; ++i) deck += "*SHELL SECTION, ELSET=E\n";
  const ImportedModel model = Read(Write(deck));
  ASSERT_EQ(Describe(model), "model(0/3) E(150000/3)");
  EXPECT_EQ(model.meshSets[1].property, 9999);
}

TEST_F(InpFile, OfSectionsTheLastOneCounts) {
  const ImportedModel model = Read(
      Write(kNodes +
            "*ELEMENT, TYPE=S3\n1,1,2,3\n2,1,3,4\n3,2,5,6\n*ELSET, ELSET=A\n1,2,3\n*ELSET, ELSET=B\n2,3\n"
            "*ELSET, ELSET=C\n3\n*SHELL SECTION, ELSET=B\n*SHELL SECTION, ELSET=A\n*SHELL SECTION, ELSET=C\n"));
  ASSERT_EQ(Describe(model), "A(1/3) [B(1/3) [C(1/3)]]");
  for (std::size_t set = 0; set < 3; ++set) EXPECT_EQ(model.meshSets[set].property, set < 2 ? 1 : 2) << set;
}

/// A part of some size and a line for each of its instances: told where it becomes too much, not after the work.
TEST_F(InpFile, PartsThatAreCopiedTooOftenAreRefusedAtTheirInstance) {
  const auto deck = [](const std::string& inPart, int instances) {
    std::string text = "*PART, NAME=P\n" + kNodes + inPart + "*END PART\n*ASSEMBLY, NAME=A\n";
    for (int i = 0; i < instances; ++i)
      text += "*INSTANCE, NAME=I" + std::to_string(i) + ", PART=P\n*END INSTANCE\n";
    return text + "*END ASSEMBLY\n";
  };
  std::string elements = "*ELEMENT, TYPE=S3\n";
  for (int i = 1; i <= 1000; ++i) elements += std::to_string(i) + ",1,2,3\n";
  for (int i = 0; i < 1000; ++i) elements += "*ELSET, ELSET=S" + std::to_string(i) + ", GENERATE\n1,1000\n";
  EXPECT_EQ(ErrorOf(deck(elements, 1000)), "IDS_WB_IMPORT_INP_TOO_MUCH model.inp, 3202");
  // A set or a name in its list takes more memory than an element.
  std::string sets;
  for (int i = 0; i < 4000; ++i) sets += "*ELSET, ELSET=S" + std::to_string(i) + "\n";
  EXPECT_NE(ErrorOf(deck(sets, 650)).find("IDS_WB_IMPORT_INP_TOO_MUCH"), std::string::npos);
  std::string names = "*ELSET, ELSET=S\n*ELSET, ELSET=T\n";
  for (int i = 0; i < 20'000; ++i) names += "S,\n";
  EXPECT_NE(ErrorOf(deck(names, 325)).find("IDS_WB_IMPORT_INP_TOO_MUCH"), std::string::npos);
  const std::string comment = "** " + std::string(1'000'000, 'x') + "\n*NSET, NSET=N\n1\n";
  EXPECT_EQ(ErrorOf(deck(comment, 1000)), "IDS_WB_IMPORT_INP_TOO_LONG model.inp, 1812");
  const std::string numbers =
      "*PART, NAME=Q\n*NODE\n9223372036854775807,0,0,0\n*END PART\n*INSTANCE, NAME=J, PART=Q\n*END INSTANCE\n"
      "*INSTANCE, NAME=K, PART=Q\n*END INSTANCE\n*INSTANCE, NAME=L, PART=Q\n*END INSTANCE\n";
  EXPECT_EQ(ErrorOf(numbers), "IDS_WB_IMPORT_INP_NUMBER K");
}

TEST_F(InpFile, SurplusEntriesBehindAnElementArePassedOverAndSaid) {
  const ImportedModel model = Read(Write(kNodes + "*ELEMENT, TYPE=S3\n1,1,2,3,4\n2,1,3,4\n3,2,5,6,,0\n"));
  EXPECT_EQ(Describe(model), "model(3/6)");
  ASSERT_EQ(model.notes.size(), 1U);
  EXPECT_EQ(model.notes[0].key, "IDS_WB_NOTE_SURPLUS");
  EXPECT_EQ(model.notes[0].detail, "2 (model.inp, 9)");
  // An element that is cut short does not take the next one's numbers.
  EXPECT_NE(ErrorOf(kNodes + "*ELEMENT, TYPE=S3\n1,1,2,\n2,1,3,4\n").find("IDS_WB_IMPORT_INP_COUNT"),
            std::string::npos);
}

// Solvers pass over them, and what is written back knows keywords without them.
TEST_F(InpFile, CoordinatesInOtherSystemsAreSaid) {
  const std::string element = "*ELEMENT, TYPE=S3\n1,1,2,3\n";
  const ImportedModel model =
      Read(Write(kNodes + "*NODE, SYSTEM = c\n7,1,90,0\n*NODE, SYSTEM=S\n8,1,0,0\n*NODE, SYSTEM=x\n9,0,0,0\n" +
                 "*NODE, SYSTEM=R\n10,0,0,0\n*SYSTEM\n1,1,1\n*NODE, SYSTEM=C\n11,0,0,0\n" + element));
  ASSERT_EQ(model.notes.size(), 1U);
  EXPECT_EQ(model.notes[0].key, "IDS_WB_NOTE_SYSTEM");
  EXPECT_EQ(model.notes[0].detail, "*NODE, SYSTEM (1), *NODE, SYSTEM=C (2), *NODE, SYSTEM=S (1), *SYSTEM (1)");
  EXPECT_TRUE(Read(Write(kNodes + "*NODE, SYSTEM=R\n7,0,0,0\n" + element)).notes.empty());
}

TEST_F(InpFile, BlanksInKeywordsDoNotCount) {
  const ImportedModel model =
      Read(Write("*NO DE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n*ELEMENT, TY PE=S3, EL SET=A\n1,1,2,3\n"
                 "*MATERIAL, NAME=M\n*ELA\tSTIC\n7.,0.\n*SHELLSECTION, ELSET=A, MATERIAL=M\n2.\n"));
  EXPECT_EQ(Describe(model), "A(1/3)");
  ASSERT_EQ(model.properties.size(), 1U);
  EXPECT_EQ(model.properties[0].size, 2);
  EXPECT_EQ(model.materials[0].youngsModulus, 7);
}

}  // namespace
}  // namespace qd::test
