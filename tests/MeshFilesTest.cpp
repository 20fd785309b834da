// Our own readers of meshes: every form of a format gives the same, and what a file only claims costs nothing.

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <unordered_set>
#include <utility>

#include "support/ScratchFolder.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/mesh/NumberHash.h"
#include "workbench/text/Ascii.h"

namespace qd::test {
namespace {

using namespace workbench;

/// What reading a file gives, as text: its sets, its notes, or why it is refused.
std::string Outcome(const std::string& name, const std::string& bytes) {
  const ScratchFolder folder;
  const std::string path = folder.Write(name, bytes).string();
  std::ostringstream outcome;
  try {
    std::vector<ImportNote> notes;
    const Format& format = CheckFile(path, notes);
    const ImportedModel model = format.Read(path, {});
    for (const ImportedMeshSet& set : model.meshSets) {
      outcome << set.name << ": ";
      for (std::size_t i = 0; i < set.mesh.nodeIds.size(); ++i) {
        outcome << set.mesh.nodeIds[i] << " (" << set.mesh.coordinates[3 * i] << " "
                << set.mesh.coordinates[3 * i + 1] << " " << set.mesh.coordinates[3 * i + 2] << ") ";
      }
      for (const MeshData::Block& block : set.mesh.blocks) {
        outcome << "type " << block.elementType << " ";
        for (std::size_t i = 0; i < block.elementIds.size(); ++i) {
          outcome << block.elementIds[i] << ":";
          for (int k = 0; k < block.nodesPerElement; ++k) {
            outcome << " "
                    << block.nodeIds[i * static_cast<std::size_t>(block.nodesPerElement) +
                                     static_cast<std::size_t>(k)];
          }
          outcome << "; ";
        }
      }
    }
    const char* divider = "";
    for (const ImportNote& note : model.notes)
      outcome << std::exchange(divider, "; ") << note.key << " " << note.detail;
  } catch (const ImportError& error) {
    outcome << error.key << " " << error.detail;
  }
  return outcome.str();
}

/// Writes numbers as text or as bytes in either order, from one list of what to write.
class MshText {
 public:
  enum Form { Text, Little, Big };
  explicit MshText(Form form) : m_form(form) {}
  MshText& Line(const std::string& text) {
    m_out << text << "\n";
    return *this;
  }
  MshText& I(std::initializer_list<std::int32_t> numbers) { return Put(numbers); }
  MshText& S(std::initializer_list<std::int64_t> numbers) { return Put(numbers); }
  MshText& D(std::initializer_list<double> numbers) { return Put(numbers); }
  MshText& Head(const std::string& version) {
    Line("$MeshFormat").Line(version + (m_form == Text ? " 0 8" : " 1 8"));
    if (m_form != Text) I({1}).Line("");
    return Line("$EndMeshFormat");
  }
  std::string All() const { return m_out.str(); }

 private:
  template <typename Number>
  MshText& Put(std::initializer_list<Number> numbers) {
    for (const Number number : numbers) {
      if (m_form == Text) {
        m_out << number << " ";
        continue;
      }
      char bytes[sizeof(number)];
      std::memcpy(bytes, &number, sizeof(number));
      if (m_form == Big) std::reverse(bytes, bytes + sizeof(number));
      m_out.write(bytes, sizeof(number));
    }
    return *this;
  }
  Form m_form;
  std::ostringstream m_out;
};

/// Two triangles in a group and one line that is in none.
std::string Plate(const std::string& version, MshText::Form form) {
  MshText file(form);
  const bool text = form == MshText::Text;
  const char* end = text ? "\n" : "";
  if (version == "1") {
    return "$NOD\n4\n1 0 0 0\n2 1 0 0\n3 1 1 0\n4 0 1 0\n$ENDNOD\n"
           "$ELM\n3\n1 1 0 7 2 1 2\n2 2 5 1 3 1 2 3\n3 2 5 1 3 1 3 4\n$ENDELM\n";
  }
  file.Head(version);
  file.Line("$PhysicalNames").Line("1").Line("2 5 \"Plate A\"").Line("$EndPhysicalNames");
  if (version == "2.2") {
    file.Line("$Nodes").Line("4");
    file.I({1}).D({0, 0, 0}).I({2}).D({1, 0, 0}).I({3}).D({1, 1, 0}).I({4}).D({0, 1, 0});
    file.Line(end).Line("$EndNodes").Line("$Elements").Line("3");
    if (text) {
      file.I({1, 1, 2, 0, 7, 1, 2, 2, 2, 2, 5, 1, 1, 2, 3, 3, 2, 4, 5, 1, 1, 1, 1, 3, 4});
    } else {
      file.I({1, 1, 2, 1, 0, 7, 1, 2}).I({2, 2, 2, 2, 5, 1, 1, 2, 3, 3, 5, 1, 1, 3, 4});
    }
  } else if (version == "4.0") {
    file.Line("$Entities").S({1, 1, 1, 0}).I({3}).D({0, 0, 0, 0, 0, 0}).S({0});
    file.I({7}).D({0, 0, 0, 1, 0, 0}).S({0, 0}).I({1}).D({0, 0, 0, 1, 1, 0}).S({1}).I({5}).S({0});
    file.Line(end).Line("$EndEntities").Line("$Nodes").S({2, 4}).I({7, 1, 1}).S({2});
    file.I({1}).D({0, 0, 0, 0.5}).I({2}).D({1, 0, 0, 0.5}).I({1, 2, 0}).S({2});
    file.I({3}).D({1, 1, 0}).I({4}).D({0, 1, 0});
    file.Line(end).Line("$EndNodes").Line("$Elements").S({2, 3}).I({7, 1, 1}).S({1}).I({1, 1, 2});
    file.I({1, 2, 2}).S({2}).I({2, 1, 2, 3, 3, 1, 3, 4});
  } else {
    file.Line("$Entities").S({1, 1, 1, 0}).I({3}).D({0, 0, 0}).S({0});
    file.I({7}).D({0, 0, 0, 1, 0, 0}).S({0, 0}).I({1}).D({0, 0, 0, 1, 1, 0}).S({1}).I({-5}).S({0});
    file.Line(end).Line("$EndEntities").Line("$Nodes").S({2, 4, 1, 4}).I({1, 7, 1}).S({2, 1, 2});
    file.D({0, 0, 0, 0.5, 1, 0, 0, 0.5}).I({2, 1, 0}).S({2, 3, 4}).D({1, 1, 0, 0, 1, 0});
    file.Line(end).Line("$EndNodes").Line("$Elements").S({2, 3, 1, 3}).I({1, 7, 1}).S({1, 1, 1, 2});
    file.I({2, 1, 2}).S({2, 2, 1, 2, 3, 3, 1, 3, 4});
  }
  return file.Line(end).Line("$EndElements").Line("$NodeData").Line("anything").Line("$EndNodeData").All();
}

class MshForm : public ::testing::TestWithParam<std::tuple<const char*, MshText::Form>> {};

TEST_P(MshForm, GivesTheSame) {
  const auto [version, form] = GetParam();
  const std::string name = version == std::string("1") ? "Group 5" : "Plate A";
  EXPECT_EQ(Outcome("plate.msh", Plate(version, form)),
            name + ": 1 (0 0 0) 2 (1 0 0) 3 (1 1 0) 4 (0 1 0) type 2 2: 1 2 3; 3: 1 3 4; " +
                (version == std::string("1") ? "" : "IDS_WB_NOTE_SECTIONS 1 ($NodeData); ") +
                "IDS_WB_NOTE_SIDES 1 (Line 2)");
}

INSTANTIATE_TEST_SUITE_P(Files, MshForm,
                         ::testing::Values(std::tuple{"1", MshText::Text}, std::tuple{"2.2", MshText::Text},
                                           std::tuple{"2.2", MshText::Little}, std::tuple{"2.2", MshText::Big},
                                           std::tuple{"4.0", MshText::Text}, std::tuple{"4.0", MshText::Little},
                                           std::tuple{"4.1", MshText::Text}, std::tuple{"4.1", MshText::Little},
                                           std::tuple{"4.1", MshText::Big}));

constexpr const char* kHead = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n";
constexpr const char* kHead41 = "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n";
constexpr const char* kNodes = "$Nodes\n3\n1 0 0 0\n2 1 0 0\n3 1 1 0\n$EndNodes\n";

struct Case {
  const char* name;
  const char* file;
  std::string bytes;
  std::string outcome;
};
class MeshFile : public ::testing::TestWithParam<Case> {};

TEST_P(MeshFile, IsReadOrRefused) {
  EXPECT_EQ(Outcome(GetParam().file, GetParam().bytes), GetParam().outcome);
}

std::string Msh(const std::string& head, const std::string& rest) {
  return head + rest;
}
/// With the line ends of systems of long ago.
std::string WithReturns(std::string text) {
  std::replace(text.begin(), text.end(), '\n', '\r');
  return text;
}
std::string Elements(const std::string& lines) {
  return Msh(kHead, kNodes) + "$Elements\n" + lines + "$EndElements\n";
}

INSTANTIATE_TEST_SUITE_P(
    Msh, MeshFile,
    ::testing::Values(
        Case{"Claim2", "x.msh", Msh(kHead, "$Nodes\n1000000000\n1 0 0 0\n$EndNodes\n"),
             "IDS_WB_IMPORT_CLAIM 5: $Nodes 1000000000"},
        Case{"Claim41", "x.msh", Msh(kHead41, "$Nodes\n1 1000000000 1 3\n2 1 0 3\n1\n$EndNodes\n"),
             "IDS_WB_IMPORT_CLAIM 5: $Nodes 1000000000"},
        Case{"ClaimBlocks", "x.msh", Msh(kHead41, "$Nodes\n9223372036854775807 0 1 3\n$EndNodes\n"),
             "IDS_WB_IMPORT_CLAIM 5: $Nodes 9223372036854775807"},
        Case{"ClaimEntities", "x.msh",
             Msh(kHead41, "$Entities\n0 0 2000000000 0\n1 0 0 0 1 1 0 0 0\n$EndEntities\n"),
             "IDS_WB_IMPORT_CLAIM 5: $Entities 2000000000"},
        Case{"ClaimGroups", "x.msh",
             Msh(kHead41, "$Entities\n0 0 1 0\n1 0 0 0 1 1 0 2000000000 0\n$EndEntities\n"),
             "IDS_WB_IMPORT_CLAIM 6: $Entities 2000000000"},
        Case{"ClaimGhosts", "x.msh",
             Msh(kHead41, "$PartitionedEntities\n2\n2000000000\n0 0 0 0\n$EndPartitionedEntities\n"),
             "IDS_WB_IMPORT_CLAIM 6: $PartitionedEntities 2000000000"},
        Case{"ClaimElements", "x.msh", Elements("1000000000\n1 2 2 5 1 1 2 3\n"),
             "IDS_WB_IMPORT_CLAIM 11: $Elements 1000000000"},
        Case{"ClaimTags", "x.msh", Elements("1\n1 2 2000000000 5 1 1 2 3\n"),
             "IDS_WB_IMPORT_CLAIM 12: $Elements 2000000000"},
        Case{"Negative", "x.msh", Msh(kHead, "$Nodes\n-1\n$EndNodes\n"), "IDS_WB_IMPORT_INP_NUMBER 5: $Nodes -1"},
        Case{"FewerThanAnnounced", "x.msh", Msh(kHead41, "$Nodes\n1 2 1 1\n2 1 0 1\n1\n0 0 0\n0 0 0\n$EndNodes\n"),
             "IDS_WB_IMPORT_INP_COUNT 8: $Nodes"},
        Case{"MoreThanAnnounced", "x.msh", Msh(kHead, "$Nodes\n1\n1 0 0 0\n2 0 0 0\n$EndNodes\n"),
             "IDS_WB_IMPORT_OUTLINE 7: $EndNodes"},
        Case{"LargeNumbers", "x.msh",
             Msh(kHead,
                 "$Nodes\n3\n1 0 0 0\n2147483647 1 1 0\n2 1 0 0\n$EndNodes\n"
                 "$Elements\n1\n2147483647 2 4 2147483647 1 1 2147483647 1 2 2147483647\n$EndElements\n"),
             "Group 2147483647: 1 (0 0 0) 2 (1 0 0) 2147483647 (1 1 0) type 2 2147483647: 1 2 2147483647; "},
        Case{"LooseNodes", "x.msh",
             Msh(kHead,
                 "$Nodes\n5\n9 0 0 0\n1 0 0 0\n8 0 1 0\n2 1 0 0\n7 1 1 0\n$EndNodes\n"
                 "$Elements\n1\n1 1 2 5 1 1 2\n$EndElements\n"),
             "Group 5: 1 (0 0 0) 2 (1 0 0) type 1 1: 1 2; IDS_WB_NOTE_LOOSE_NODES 3 (7, 8, 9)"},
        Case{"EmptyGroup", "x.msh",
             std::string(kHead) + "$PhysicalNames\n2\n2 5 \"Skin\"\n1 5 \"Rim\"\n$EndPhysicalNames\n" + kNodes +
                 "$Elements\n1\n1 2 2 5 1 1 2 3\n$EndElements\n",
             "Skin: 1 (0 0 0) 2 (1 0 0) 3 (1 1 0) type 2 1: 1 2 3; IDS_WB_NOTE_EMPTY_GROUPS 1 (Rim)"},
        Case{"NamesWithoutDimension", "x.msh",
             std::string(
                 "$MeshFormat\n2.0 0 8\n$EndMeshFormat\n$PhysicalNames\n1\n5 \"Skin\"\n$EndPhysicalNames\n") +
                 kNodes + "$Elements\n1\n1 2 2 5 1 1 2 3\n$EndElements\n",
             "Skin: 1 (0 0 0) 2 (1 0 0) 3 (1 1 0) type 2 1: 1 2 3; "},
        Case{"BarePoints", "x.msh", Elements("3\n1 15 2 0 1 1\n2 15 2 0 2 2\n3 2 2 0 1 1 2 3\n"),
             "Mesh 1: 1 (0 0 0) 2 (1 0 0) 3 (1 1 0) type 2 3: 1 2 3; IDS_WB_NOTE_SIDES 2 (Point)"},
        // A beam that goes on from the corner of a plate bounds nothing.
        Case{"BareBeam", "x.msh",
             Msh(kHead,
                 "$Nodes\n4\n1 0 0 0\n2 1 0 0\n3 1 1 0\n4 2 0 0\n$EndNodes\n"
                 "$Elements\n3\n1 1 2 0 7 1 2\n2 1 2 0 8 2 4\n3 2 2 0 1 1 2 3\n$EndElements\n"),
             "Mesh 8: 2 (1 0 0) 4 (2 0 0) type 1 2: 2 4; Mesh 1: 1 (0 0 0) 2 (1 0 0) 3 (1 1 0) type 2 3: 1 2 3; "
             "IDS_WB_NOTE_SIDES 1 (Line 2)"},
        Case{"BareReturns", "x.msh", WithReturns(Elements("1\n1 2 2 5 1 1 2 3\n")),
             "Group 5: 1 (0 0 0) 2 (1 0 0) 3 (1 1 0) type 2 1: 1 2 3; "},
        Case{"LongLine", "x.msh", Msh(kHead, "$" + std::string(5000, 'N') + "\n$EndN\n"),
             "IDS_WB_IMPORT_LONG_LINE 4: $NNNNNNNNNNNNNNNNNNN"},
        Case{"OfTwoGroups", "x.msh", Elements("3\n1 2 2 5 1 1 2 3\n2 2 2 5 1 1 3 2\n1 2 2 6 1 1 2 3\n"),
             "Group 5: 1 (0 0 0) 2 (1 0 0) 3 (1 1 0) type 2 1: 1 2 3; 2: 1 3 2; IDS_WB_NOTE_SHARED_SET Group 6"},
        Case{"TwoOfOneNumber", "x.msh", Elements("2\n1 2 2 5 1 1 2 3\n1 2 2 5 1 1 3 2\n"),
             "IDS_WB_IMPORT_INP_TWICE 1"},
        Case{"NodeMissing", "x.msh", Elements("1\n1 2 2 5 1 1 2 4\n"), "IDS_WB_IMPORT_NODE 4"},
        Case{"Polygon", "x.msh", Elements("1\n1 34 2 5 1 2147483647 1 2 3\n"), "IDS_WB_IMPORT_ELEMENT_TYPE 34"},
        Case{"NoNumber", "x.msh", Elements("1\n1 2 2 5 1 1 2 x\n"), "IDS_WB_IMPORT_INP_NUMBER 12: x"},
        Case{"LaterVersion", "x.msh", "$MeshFormat\n5.0 0 8\n$EndMeshFormat\n",
             "IDS_WB_IMPORT_VERSION 2: 5.0 0 8"},
        Case{"OtherWords", "x.msh", "$MeshFormat\n2.2 0 4\n$EndMeshFormat\n", "IDS_WB_IMPORT_VERSION 2: 2.2 0 4"},
        Case{"Script", "x.msh", Msh(kHead, "SystemCall \"x\";\n$Comments\n$EndComments\n"),
             "IDS_WB_IMPORT_OUTLINE 4: SystemCall \"x\";"},
        Case{"ScriptBefore", "x.msh", "// $MeshFormat\n$EndMeshFormat\n", "IDS_WB_IMPORT_FOREIGN .msh"},
        Case{"BlankBefore", "x.msh", "\n$MeshFormat\n2.2 0 8\n$EndMeshFormat\n", "IDS_WB_IMPORT_FOREIGN .msh"},
        Case{"Unended", "x.msh", Msh(kHead, "$Nonsense\n$Nodes\n$EndNodes\n"), "IDS_WB_IMPORT_TRUNCATED "}),
    [](const auto& test) { return test.param.name; });

std::string Facet(const char* corners) {
  std::istringstream in(corners);
  std::string facet = "facet normal nan nan nan\nouter loop\n";
  for (std::string line; std::getline(in, line, ',');) facet += "vertex " + line + "\n";
  return facet + "endloop\nendfacet\n";
}
std::string Upper(std::string text) {
  for (char& letter : text) letter = static_cast<char>(std::toupper(letter));
  return text;
}
std::string Binary(const std::string& head, std::uint32_t claimed) {
  std::string bytes = head;
  bytes.resize(80);
  for (unsigned shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(claimed >> shift & 0xFFU);
  const float facet[12] = {0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0};
  bytes.append(reinterpret_cast<const char*>(facet), sizeof(facet));
  return bytes + std::string(2, '\0');
}
const std::string kOne = Facet("0 0 0,1 0 0,0 1 0");
constexpr const char* kTriangle = ": 1 (0 0 0) 2 (1 0 0) 3 (0 1 0) type 2 1: 1 2 3; ";
const std::string kBlock = std::string("block") + kTriangle;
const std::string kMesh = std::string("Mesh 1") + kTriangle;
const std::string kCapitals = std::string("BLOCK") + kTriangle;

INSTANTIATE_TEST_SUITE_P(
    Stl, MeshFile,
    ::testing::Values(
        Case{"Text", "x.stl", "solid block\n" + kOne + "endsolid block\n", kBlock},
        Case{"Capitals", "x.stl", Upper("solid block\n" + kOne + "endsolid block\n"), kCapitals},
        Case{"CarriageReturns", "x.stl", "solid block\r\n" + kOne + "endsolid\r\n", kBlock},
        Case{"BareReturns", "x.stl", WithReturns("solid block\n" + kOne + "endsolid block\n"), kBlock},
        Case{"EmptyFirst", "x.stl", "solid a\nendsolid a\nsolid block\n" + kOne + "endsolid block\n", kBlock},
        Case{"EqualCorners", "x.stl", "solid\n" + kOne + Facet("1 0 0,1 1 0,-0.0 1 0") + "endsolid\n",
             "Mesh 1: 1 (0 0 0) 2 (1 0 0) 3 (0 1 0) 4 (1 1 0) type 2 1: 1 2 3; 2: 2 4 3; "},
        Case{"Binary", "x.stl", Binary("anything", 1), kMesh},
        Case{"BinaryThatSaysSolid", "x.stl", Binary("solid block", 1), kMesh},
        Case{"BinaryClaim", "x.stl", Binary("anything", 1000), "IDS_WB_IMPORT_FOREIGN .stl"},
        Case{"Cut", "x.stl", "solid block\n" + kOne, "IDS_WB_IMPORT_TRUNCATED "},
        Case{"CutBehindAName", "x.stl", "solid block\n" + kOne + "endsolid\nsolid my endsolid\n",
             "IDS_WB_IMPORT_TRUNCATED "},
        Case{"Two", "x.stl",
             "solid block\n" + kOne + "endsolid\nsolid lid\n" + Facet("0 0 2,1 0 2,0 1 2") +
                 Facet("0 0 2,0 1 2,0 0 3") + "endsolid\n",
             kBlock + "lid: 4 (0 0 2) 5 (1 0 2) 6 (0 1 2) 7 (0 0 3) type 2 2: 4 5 6; 3: 4 6 7; "},
        Case{"Script", "x.stl", "solid x\nSystemCall \"x\";\nendsolid\n", "IDS_WB_IMPORT_OUTLINE 2: systemcall"},
        Case{"NoNumber", "x.stl", "solid x\n" + Facet("0 0 0,1 0 x,0 1 0") + "endsolid\n",
             "IDS_WB_IMPORT_INP_NUMBER 5: x"},
        Case{"NotFinite", "x.stl", "solid x\n" + Facet("0 0 0,1 0 inf,0 1 0") + "endsolid\n",
             "IDS_WB_IMPORT_INP_NUMBER 5: inf"}),
    [](const auto& test) { return test.param.name; });

std::string DataSet(const std::string& number, const std::string& records) {
  return "    -1\n" + number + "\n" + records + "    -1\n";
}
const std::string kUnvNodes = DataSet("  2411",
                                      "1 1 1 11\n 0.0D+00 0.0D+00 0.0D+00\n2 1 1 11\n"
                                      "  1.0000000000000000D+00  0.0000000000000000D+00 -0.0000000000000000D+00\n"
                                      "3 1 1 11\n -1.0000000000000000D+00"
                                      "-1.000000000000000000D+00-1.000000000000000000D+00\n");
/// Nodes in one place, which serve where only their order counts.
std::string UnvNodes(std::uint64_t count) {
  std::string nodes;
  for (std::uint64_t number = 1; number <= count; ++number)
    nodes += std::to_string(number) + " 1 1 11\n0. 0. 0.\n";
  return DataSet("2411", nodes);
}
std::string Places(std::uint64_t count) {
  std::string places;
  for (std::uint64_t number = 1; number <= count; ++number) places += std::to_string(number) + " (0 0 0) ";
  return places;
}
const std::string kUnvTriangle = DataSet("  2412", "7 91 4 1 7 3\n1 2 3\n");
constexpr const char* kUnvPlace = "1 (0 0 0) 2 (1 0 -0) 3 (-1 -1 -1) type 2 7: 1 2 3; ";
const std::string kUnvBare = std::string("Mesh 4: ") + kUnvPlace;
const std::string kUnvNamed = std::string("Skin: ") + kUnvPlace;

INSTANTIATE_TEST_SUITE_P(
    Unv, MeshFile,
    ::testing::Values(
        Case{"Bare", "x.unv", kUnvNodes + kUnvTriangle, kUnvBare},
        Case{"Older", "x.unv",
             DataSet("15",
                     "1 0 0 11 0. 0. 0.\n2 0 0 11 1. 0. -0.\n3 0 0 11 -1.000000E+00-1.000000E+00-1.000000E+00\n") +
                 DataSet("780", "7 41 1 4 1 1 7 3\n1 2 3\n"),
             kUnvBare},
        Case{"Named", "x.unv",
             "\r\n" + DataSet("   151", "anything\n") + kUnvNodes + kUnvTriangle +
                 DataSet("2477", "1 0 0 0 0 0 0 1\nSkin\n8 7 0 0\n"),
             kUnvNamed},
        Case{"OfTwoGroups", "x.unv",
             kUnvNodes + kUnvTriangle +
                 DataSet("2467", "1 0 0 0 0 0 0 1\nSkin\n8 7 0 0\n2 0 0 0 0 0 0 1\nOther\n8 7 0 0\n"),
             kUnvNamed + "IDS_WB_NOTE_SHARED_SET Other"},
        // Corners and the middles between them, round by round from below.
        Case{"Brick", "x.unv",
             UnvNodes(20) +
                 DataSet("2412", "1 116 1 4 7 20\n1 2 3 4 5 6 7 8\n9 10 11 12 13 14 15 16\n17 18 19 20\n"),
             "Mesh 1: " + Places(20) + "type 17 1: 1 3 5 7 13 15 17 19 2 8 9 4 10 6 11 12 14 20 16 18; "},
        Case{"Wedge", "x.unv",
             UnvNodes(15) + DataSet("2412", "1 113 1 4 7 15\n1 2 3 4 5 6 7 8\n9 10 11 12 13 14 15\n"),
             "Mesh 1: " + Places(15) + "type 18 1: 1 3 5 10 12 14 2 6 7 4 8 9 11 15 13; "},
        Case{"Tetrahedron", "x.unv", UnvNodes(10) + DataSet("2412", "1 118 1 4 7 10\n1 2 3 4 5 6 7 8\n9 10\n"),
             "Mesh 1: " + Places(10) + "type 11 1: 1 3 5 10 2 4 6 7 9 8; "},
        Case{"Springs", "x.unv",
             kUnvNodes + DataSet("2412", "9 136 1 1 1 2\n1 2\n8 136 1 1 1 2\n2 3\n6 161 1 1 1 1\n1\n") +
                 kUnvTriangle + DataSet("2467", "1 0 0 0 0 0 0 2\nSkin\n8 7 0 0 8 9 0 0\n"),
             kUnvNamed + "IDS_WB_NOTE_LEFT_OUT 3 (136, 161)"},
        Case{"LooseNodes", "x.unv",
             DataSet("2411", "11 1 1 11\n0. 0. 0.\n12 1 1 11\n0. 0. 0.\n") + kUnvNodes + kUnvTriangle,
             kUnvBare + "IDS_WB_NOTE_LOOSE_NODES 2 (11, 12)"},
        Case{"OtherDataSets", "x.unv",
             DataSet("   164", "1 anything -1\n") + kUnvNodes + kUnvTriangle + DataSet("55", "x\n"),
             kUnvBare + "IDS_WB_NOTE_SECTIONS 2 (164, 55)"},
        Case{"GroupsOfNodes", "x.unv",
             kUnvNodes + kUnvTriangle +
                 DataSet(
                     "2467",
                     "1 0 0 0 0 0 0 3\nFixed\n7 1 0 0 7 2 0 0\n7 3 0 0\n2 0 0 0 0 0 0 2\nSkin\n7 1 0 0 8 7 0 0\n"
                     "3 0 0 0 0 0 0 0\nNone\n"),
             kUnvNamed + "IDS_WB_NOTE_GROUP_ENTRIES 4 (Fixed, Skin); IDS_WB_NOTE_EMPTY_GROUPS 2 (Fixed, None)"},
        Case{"GroupOfMissing", "x.unv",
             kUnvNodes + kUnvTriangle + DataSet("2467", "1 0 0 0 0 0 0 3\nSkin\n8 7 0 0 8 8 0 0\n8 9 0 0\n"),
             kUnvNamed + "IDS_WB_NOTE_GROUP_MISSING 2 (Skin)"},
        // Fewer entries than announced: what stands behind is read nevertheless.
        Case{"ShortGroup", "x.unv",
             kUnvNodes + kUnvTriangle + DataSet("2467", "1 0 0 0 0 0 0 4\nOther\n8 3 0 0\n") +
                 DataSet("2467", "2 0 0 0 0 0 0 1\nSkin\n8 7 0 0\n"),
             kUnvNamed + "IDS_WB_NOTE_GROUP_SHORT 1 (Other); IDS_WB_NOTE_GROUP_MISSING 1 (Other); "
                         "IDS_WB_NOTE_EMPTY_GROUPS 1 (Other)"},
        Case{"NoHeadOfGroup", "x.unv", kUnvNodes + kUnvTriangle + DataSet("2467", "1 0 0 1\nSkin\n8 7 0 0\n"),
             "IDS_WB_IMPORT_OUTLINE 17: 1 0 0 1"},
        Case{"OlderGroup", "x.unv", kUnvNodes + kUnvTriangle + DataSet("2430", "1 0 0 0 0 0 0 2\nSkin\n8 7 7 1\n"),
             kUnvNamed + "IDS_WB_NOTE_GROUP_ENTRIES 1 (Skin)"},
        Case{"BareReturns", "x.unv", WithReturns(kUnvNodes + kUnvTriangle), kUnvBare},
        Case{"LongLine", "x.unv", "-1\n2411\n1 1 1 1\n" + std::string(5000, '1') + "\n-1\n",
             "IDS_WB_IMPORT_LONG_LINE 4: 11111111111111111111"},
        Case{"Claim", "x.unv", kUnvNodes + DataSet("2412", "7 91 4 1 7 1000000000\n1 2 3\n"),
             "IDS_WB_IMPORT_CLAIM 12: nodes 1000000000"},
        Case{"Count", "x.unv", kUnvNodes + DataSet("2412", "7 91 4 1 7 4\n1 2 3 3\n"),
             "IDS_WB_IMPORT_INP_COUNT 13: 7"},
        Case{"NodeMissing", "x.unv", kUnvNodes + DataSet("2412", "7 91 4 1 7 3\n1 2 4\n"), "IDS_WB_IMPORT_NODE 4"},
        Case{"Script", "x.unv", "// -1\nSystemCall \"x\";\n    -1\n", "IDS_WB_IMPORT_FOREIGN .unv"},
        Case{"ScriptBetween", "x.unv", kUnvNodes + "SystemCall \"x\";\n" + kUnvTriangle,
             "IDS_WB_IMPORT_OUTLINE 10: SystemCall \"x\";"},
        Case{"Unended", "x.unv", kUnvNodes + "    -1\n  2412\n7 91 4 1 7 3\n    -1\n",
             "IDS_WB_IMPORT_INP_NUMBER 13: -1"}),
    [](const auto& test) { return test.param.name; });

std::string BdfGrid(std::uint64_t number, const char* at) {
  return "GRID," + std::to_string(number) + ",," + at + "\n";
}
std::string Bdf(const std::string& entries) {
  return "SOL 101\nCEND\nBEGIN BULK\n" + entries + "ENDDATA\n";
}
const std::string kBdfTriangle = BdfGrid(1, "0.,0.,0.") + BdfGrid(2, "1.,0.,0.") + BdfGrid(3, "0.,1.,0.");
const std::string kBdfMiddles = BdfGrid(4, ".5,0.,0.") + BdfGrid(5, ".5,.5,0.") + BdfGrid(6, "0.,.5,0.");
const std::string kBdfAt = "1 (0 0 0) 2 (1 0 0) 3 (0 1 0) ";
const std::string kBdfAtMiddles = kBdfAt + "4 (0.5 0 0) 5 (0.5 0.5 0) 6 (0 0.5 0) ";
const std::string kBdfOne = "Mesh 1: " + kBdfAt + "type 2 1: 1 2 3; ";
std::string BdfNodes(std::uint64_t count) {
  std::string nodes;
  for (std::uint64_t number = 1; number <= count; ++number) nodes += BdfGrid(number, "0.,0.,0.");
  return nodes;
}
std::string BdfPlaces(std::uint64_t count) {
  return "Mesh 1: " + Places(count);
}
constexpr const char* kBdfTetra = "CTETRA         1       1       1       2       3       4       5       6";
const std::string kBdfTenNodes = BdfPlaces(10) + "type 11 1: 1 2 3 4 5 6 7 8 10 9; ";

INSTANTIATE_TEST_SUITE_P(
    Bdf, MeshFile,
    ::testing::Values(
        // Forms of the fields and of the lines that go on.
        Case{"Commas", "x.bdf", Bdf(kBdfTriangle + "CTRIA3,1,1,1,2,3\n"), kBdfOne},
        Case{"SmallLetters", "x.nas", LowerCase(Bdf(kBdfTriangle + "CTRIA3,1,1,1,2,3\n")), kBdfOne},
        Case{"BareReturns", "x.bdf", WithReturns(Bdf(kBdfTriangle + "CTRIA3,1,1,1,2,3\n")), kBdfOne},
        Case{"Tabs", "x.bdf", Bdf(kBdfTriangle + "CTRIA3\t1\t1\t1\t2\t3\n"), kBdfOne},
        Case{"NothingBegins", "x.bdf", "$ comment\n" + kBdfTriangle + "CTRIA3,1,1,1,2,3 $ comment\n", kBdfOne},
        Case{"WideElement", "x.bdf",
             Bdf(BdfNodes(4) + "CQUAD4*                1               1               1               2*\n"
                               "*                      3               4\n"),
             BdfPlaces(4) + "type 3 1: 1 2 3 4; "},
        Case{"WideNode", "x.bdf",
             Bdf(BdfNodes(1) +
                 "GRID*                  2                               1              2.\n"
                 "*                      3.\nGRID*                  3                              1.\n"
                 "                       4.\nGRID*,4,,5.,6.\n*,7.\nCROD,1,1,1,2\nCROD,2,1,3,4\n"),
             "Mesh 1: 1 (0 0 0) 2 (1 2 3) 3 (1 0 4) 4 (5 6 7) type 1 1: 1 2; 2: 3 4; "},
        Case{"BlankGoesOn", "x.bdf",
             Bdf(BdfNodes(10) + kBdfTetra + "\n               7       8       9      10\n"), kBdfTenNodes},
        Case{"MarkGoesOn", "x.bdf",
             Bdf(BdfNodes(10) + kBdfTetra + "+A\n$ between\n+A             7       8       9      10\n"),
             kBdfTenNodes},
        Case{"CommaGoesOn", "x.bdf", Bdf(BdfNodes(10) + "CTETRA,1,1,1,2,3,4,5,6\n,7,8,9,10\n"), kBdfTenNodes},
        Case{"OneLongLine", "x.bdf", Bdf(BdfNodes(10) + "CTETRA,1,1,1,2,3,4,5,6,7,8,9,10\n"), kBdfTenNodes},
        // Corners, then the middles round the bottom, of the edges that stand, and round the top.
        Case{"Brick", "x.bdf",
             Bdf(BdfNodes(20) + "CHEXA,1,1,1,2,3,4,5,6\n,7,8,9,10,11,12,13,14\n,15,16,17,18,19,20\n"),
             BdfPlaces(20) + "type 17 1: 1 2 3 4 5 6 7 8 9 12 13 10 14 11 15 16 17 20 18 19; "},
        Case{"Wedge", "x.bdf", Bdf(BdfNodes(15) + "CPENTA,1,1,1,2,3,4,5,6\n,7,8,9,10,11,12,13,14\n,15\n"),
             BdfPlaces(15) + "type 18 1: 1 2 3 4 5 6 7 9 10 8 11 12 13 15 14; "},
        Case{"Pyramid", "x.bdf", Bdf(BdfNodes(13) + "CPYRAM,1,1,1,2,3,4,5,6\n,7,8,9,10,11,12,13\n"),
             BdfPlaces(13) + "type 19 1: 1 2 3 4 5 6 9 10 7 11 8 12 13; "},
        Case{"Reals", "x.bdf",
             Bdf("GRID           1           1.5-3 -1.D+02   -.5+1\nGRID,2,0,1.E2,+7.,\nGRID,3,,1.d0\n"
                 "CROD,1,1,1,2\nCROD,2,1,2,3\n"),
             "Mesh 1: 1 (0.0015 -100 -5) 2 (100 7 0) 3 (1 0 0) type 1 1: 1 2; 2: 2 3; "},
        Case{"BlanksBetween", "x.bdf",
             Bdf("GRID    1               0.10E+00 0.500000 0.20E+00\nGRID    2               0. 1. 2.\n"
                 "CROD    1       1       1       2\n"),
             "Mesh 1: 1 (0.1 0.5 0.2) 2 (0 1 2) type 1 1: 1 2; "},
        Case{"MovedLine", "x.bdf", Bdf(BdfNodes(8) + "+H1,7,8\nCHEXA,1,1,1,2,3,4,5,6,+H1\n"),
             "IDS_WB_IMPORT_OUTLINE 12: +H1"},
        Case{"LineOfAnother", "x.bdf", Bdf(BdfNodes(8) + "CHEXA,1,1,1,2,3,4,5,6,+H1\n+H2,7,8\n"),
             "IDS_WB_IMPORT_OUTLINE 13: +H2"},
        Case{"Repeated", "x.bdf", Bdf(BdfNodes(4) + "CROD,1,1,1,2\n=,*1,=,*2,*2\n"),
             "IDS_WB_IMPORT_OUTLINE 9: =,*1,=,*2,*2"},
        Case{"SecondModel", "x.bdf", Bdf("BEGIN BULK SUPER=1\n"), "IDS_WB_IMPORT_OUTLINE 4: BEGIN BULK SUPER=1"},
        Case{"LongLine", "x.bdf", Bdf("GRID," + std::string(5000, '1') + "\n"),
             "IDS_WB_IMPORT_LONG_LINE 4: GRID,111111111111111"},
        Case{"Cut", "x.bdf", "BEGIN BULK\n" + kBdfTriangle + "CTRIA3,1,1,1,2,3\n", "IDS_WB_IMPORT_TRUNCATED "},
        // What becomes of elements.
        Case{"TwoOrders", "x.bdf", Bdf(kBdfTriangle + kBdfMiddles + "CTRIA6,1,1,1,2,3,4,5,6\nCTRIA3,2,1,1,2,3\n"),
             "Mesh 1: " + kBdfAtMiddles + "type 9 1: 1 2 3 4 5 6; type 2 2: 1 2 3; "},
        Case{"CornersAlone", "x.bdf", Bdf(kBdfTriangle + "CTRIA6,1,1,1,2,3,,,,45.\n"), kBdfOne},
        Case{"MiddleMissing", "x.bdf", Bdf(kBdfTriangle + kBdfMiddles + "CTRIA6,1,1,1,2,3,4,0,6\n"),
             kBdfOne + "IDS_WB_NOTE_BDF_MIDDLES 1 (CTRIA6); IDS_WB_NOTE_LOOSE_NODES 3 (4, 5, 6)"},
        Case{"NodeInTheMiddle", "x.bdf", Bdf(BdfNodes(9) + "CQUAD,1,1,1,2,3,4,5,6\n,7,8,9\n"),
             BdfPlaces(8) + "type 16 1: 1 2 3 4 5 6 7 8; IDS_WB_NOTE_BDF_MIDDLES 1 (CQUAD); "
                            "IDS_WB_NOTE_LOOSE_NODES 1 (9)"},
        Case{"Alike", "x.bdf",
             Bdf(BdfNodes(4) + "CTRIAR,1,1,1,2,3\nCQUADR,2,1,1,2,3,4\nCSHEAR,3,1,1,2,3,4\nCTUBE,4,1,1,2\n"
                               "CBAR,5,1,2,3,0.,0.,1.\nCBEAM,6,1,3,4\nCONROD,7,9,1,4,.5\n"),
             "Mesh 0: 1 (0 0 0) 4 (0 0 0) type 1 7: 1 4; " + BdfPlaces(4) + "type 1 4: 1 2; 5: 2 3; 6: 3 4; " +
                 BdfPlaces(4) + "type 2 1: 1 2 3; type 3 2: 1 2 3 4; 3: 1 2 3 4; "},
        Case{"Pyramids", "x.bdf", Bdf(BdfNodes(5) + "CPYRAM,1,1,1,2,3,4,5\nCPYRA,2,1,1,2,3,4,5\n"),
             BdfPlaces(5) + "type 7 1: 1 2 3 4 5; 2: 1 2 3 4 5; "},
        Case{"NoProperty", "x.bdf", Bdf(kBdfTriangle + "CTRIA3,1,,1,2,3\n"),
             "Mesh 0: " + kBdfAt + "type 2 1: 1 2 3; "},
        Case{"ElementTwice", "x.bdf", Bdf(BdfNodes(4) + "CTRIA3,1,1,1,2,3\nCTRIA3,1,1,2,3,4\n"),
             "IDS_WB_IMPORT_INP_TWICE 1"},
        Case{"NodeTwice", "x.bdf", Bdf(kBdfTriangle + "GRID,1,,9.,9.,9.\nCTRIA3,1,1,1,2,3\n"),
             "IDS_WB_IMPORT_INP_TWICE 1"},
        Case{"NodeMissing", "x.bdf", Bdf(kBdfTriangle + "CTRIA3,1,1,1,2,4\n"), "IDS_WB_IMPORT_NODE 4"},
        Case{"CornerMissing", "x.bdf", Bdf(kBdfTriangle + "CTRIA3,1,1,1,2\n"),
             "IDS_WB_IMPORT_INP_COUNT 7: CTRIA3"},
        Case{"CornerLeftOut", "x.bdf", Bdf(kBdfTriangle + kBdfMiddles + "CTRIA6,1,1,1,,3,4,5,6\n"),
             "IDS_WB_IMPORT_INP_COUNT 10: CTRIA6"},
        Case{"CornersMissing", "x.bdf", Bdf(BdfNodes(8) + "CHEXA,1,1,1,2,3,4,5,6\n,7\n"),
             "IDS_WB_IMPORT_INP_COUNT 12: CHEXA"},
        Case{"UnknownElement", "x.bdf", Bdf("CTRIA9,1,1,1,2,3\n"), "IDS_WB_IMPORT_INP_TYPE 4: CTRIA9"},
        Case{"NoNumber", "x.bdf", Bdf(kBdfTriangle + "CTRIA3,1,1,1,2,3.\n"),
             "IDS_WB_IMPORT_INP_NUMBER 7: CTRIA3 3."},
        Case{"NoPlace", "x.bdf", Bdf("GRID,1,,1.,x,0.\n"), "IDS_WB_IMPORT_INP_NUMBER 4: GRID X"},
        Case{"NotFinite", "x.bdf", Bdf("GRID,1,,1.+999,0.,0.\n"), "IDS_WB_IMPORT_INP_NUMBER 4: GRID 1.+999"},
        Case{"NoNode", "x.bdf", Bdf("GRID,,,1.,0.,0.\n"), "IDS_WB_IMPORT_INP_NUMBER 4: GRID "},
        // What is left out is said.
        Case{"OtherEntries", "x.bdf",
             Bdf("MAT1,1,210000.\n" + kBdfTriangle +
                 "GRID,7\nCTRIA3,1,1,1,2,3,7.5\nGRID*                  5\n*\n"
                 "FORCE,1,1\nMAT1,2,1.\nCORD2R,1,,0.,0.,0.\n"),
             kBdfOne + "IDS_WB_NOTE_SECTIONS 4 (MAT1, FORCE, CORD2R); IDS_WB_NOTE_LOOSE_NODES 2 (5, 7)"},
        Case{"Springs", "x.bdf", Bdf(kBdfTriangle + "CTRIA3,1,1,1,2,3\nCELAS1,2,1,1,2\nCELAS1,3,1,1,2\n"),
             kBdfOne + "IDS_WB_NOTE_LEFT_OUT 2 (CELAS1)"},
        // Places that only another system gives.
        Case{"LocalNode", "x.bdf", Bdf("GRID,2,5,1.,90.,0.\n"), "IDS_WB_IMPORT_BDF_SYSTEM 4: GRID"},
        Case{"LocalColumns", "x.bdf", Bdf("GRID           2       5      1.     90.      0.\n"),
             "IDS_WB_IMPORT_BDF_SYSTEM 4: GRID"},
        Case{"LocalWide", "x.bdf",
             Bdf("GRID*                  2               5              1.             90.\n*\n"),
             "IDS_WB_IMPORT_BDF_SYSTEM 4: GRID"},
        Case{"LocalByDefault", "x.bdf", Bdf("GRDSET,,5\nGRID,1,,0.,0.,0.\n"),
             "IDS_WB_IMPORT_BDF_SYSTEM 4: GRDSET"},
        Case{"LocalNone", "x.bdf", Bdf(kBdfTriangle + "GRDSET,,0,,,,7\nCTRIA3,1,1,1,2,3\n"),
             kBdfOne + "IDS_WB_NOTE_SECTIONS 1 (GRDSET)"},
        // A default that none of the nodes relies on moves none.
        Case{"LocalUnused", "x.bdf",
             Bdf("GRDSET,,5\nGRID,1,0,0.,0.,0.\nGRID*                  2               0              "
                 "1.\nCROD,1,1,1,2\n"),
             "Mesh 1: 1 (0 0 0) 2 (1 0 0) type 1 1: 1 2; IDS_WB_NOTE_SECTIONS 1 (GRDSET)"}),
    [](const auto& test) { return test.param.name; });

/// Numbers, largest first, that would all lie in one place of a table of so many numbers.
std::vector<std::uint64_t> NumbersThatMeet(std::uint64_t count) {
  std::unordered_set<std::uint64_t> table;
  for (std::uint64_t i = 0; i < count; ++i) table.insert(i);
  std::vector<std::uint64_t> numbers;
  for (std::uint64_t i = count; i > 0; --i) numbers.push_back(i * table.bucket_count());
  return numbers;
}

TEST(NumberHash, SpreadsNumbersThatWereChosenToMeet) {
  NumberSet table;
  for (const std::uint64_t number : NumbersThatMeet(100'000)) table.insert(number);
  std::size_t most = 0;
  for (std::size_t i = 0; i < table.bucket_count(); ++i) most = std::max(most, table.bucket_size(i));
  EXPECT_LT(most, 30U);
}

// Takes minutes where they meet.
TEST(MeshFlood, NumbersThatWereChosenToMeetAreAsQuickAsOthers) {
  const std::vector<std::uint64_t> numbers = NumbersThatMeet(200'000);
  std::string msh = std::string(kHead41) + "$Nodes\n1 2 1 2\n1 1 0 2\n1\n2\n0 0 0\n1 0 0\n$EndNodes\n" +
                    "$Elements\n1 200000 1 2\n1 1 1 200000\n";
  std::string unv = kUnvNodes + "    -1\n  2412\n";
  std::string group = "1 0 0 0 0 0 0 200000\nSkin\n";
  for (const std::uint64_t number : numbers) {
    msh += std::to_string(number) + " 1 2\n";
    unv += std::to_string(number) + " 91 1 1 1 3\n1 2 3\n";
    group += "8 " + std::to_string(number) + " 0 0\n";
  }
  EXPECT_TRUE(Outcome("x.msh", msh + "$EndElements\n").starts_with("Mesh 1: 1 (0 0 0) 2 (1 0 0) type 1 "));
  EXPECT_TRUE(Outcome("x.unv", unv + "    -1\n" + DataSet("2477", group)).starts_with("Skin: 1 (0 0 0)"));
}

}  // namespace
}  // namespace qd::test
