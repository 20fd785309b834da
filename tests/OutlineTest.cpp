// What is looked at of CAD files before a library gets them, and of bulk data: real files pass, and what is wrong
// is said with its line.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/ScratchFolder.h"
#include "workbench/exchange/formats/Format.h"

namespace qd::test {
namespace {

using namespace workbench;

std::string Outcome(const std::string& name, const std::string& bytes) {
  const ScratchFolder folder;
  const std::string path = folder.Write(name, bytes).string();
  std::string outcome = "fine";
  try {
    std::vector<ImportNote> notes;
    CheckFile(path, notes);
  } catch (const ImportError& error) {
    outcome = error.key + " " + error.detail;
  }
  return outcome;
}

std::string Step(const std::string& between, const std::string& data) {
  return "ISO-10303-21;\nHEADER;\nFILE_NAME('a;b');\nENDSEC;\n" + between + "DATA;\n" + data +
         "ENDSEC;\nEND-ISO-10303-21;\n";
}

std::string Card(const std::string& text, char section, int number) {
  std::string card = text;
  card.resize(72, ' ');
  std::string digits = std::to_string(number);
  return card + section + std::string(7 - digits.size(), ' ') + digits + "\n";
}
/// A point: its kind, where its parameters begin and how many cards they take.
std::string Iges(const std::string& first, const std::string& second, const std::string& totals) {
  return Card("a file", 'S', 1) + Card("1H,,1H;;", 'G', 1) + Card(first, 'D', 1) + Card(second, 'D', 2) +
         Card("116,0.,0.,0.;", 'P', 1) + Card(totals, 'T', 1);
}
constexpr const char* kPoint = "     116       1       0       0       0       0       0       000000000";
constexpr const char* kPointToo = "     116       0       0       1       0                               0";
constexpr const char* kTotals = "S      1G      1D      2P      1";

std::string Brep(const std::string& locations, const std::string& curves) {
  return "DBRep_DrawableShape\n\nCASCADE Topology V1, (c) Matra-Datavision\n" + locations + "Curve2ds 0\n" +
         curves +
         "Polygon3D 0\nPolygonOnTriangulations 0\nSurfaces 0\nTriangulations 0\n\nTShapes 1\nVe\n1e-07\n0 0 0\n0 "
         "0\n\n"
         "0101101\n*\n\n+1 0\n";
}

struct Case {
  const char* name;
  const char* file;
  std::string bytes;
  std::string outcome;
};
class Outline : public ::testing::TestWithParam<Case> {};

TEST_P(Outline, IsLookedAt) {
  EXPECT_EQ(Outcome(GetParam().file, GetParam().bytes), GetParam().outcome);
}

INSTANTIATE_TEST_SUITE_P(
    Step, Outline,
    ::testing::Values(Case{"Plain", "x.step", Step("", "#1=POINT('it''s ;',(0.,0.));\n/* ; ' */ #2 = X();\n"),
                           "fine"},
                      Case{"Marked", "x.stp", "\xEF\xBB\xBF\r\n" + Step("", "#1=X();\n"), "fine"},
                      Case{"MoreSections", "x.step", Step("ANCHOR;\n<a>=#1;\nENDSEC;\n", "#1=X();\n"), "fine"},
                      Case{"TextThatDoesNotEnd", "x.step", Step("", "#1=X('O'Brien');\n#2=X();\n"), "fine"},
                      Case{"Before", "x.step", "// ISO-10303-21;\n" + Step("", ""), "IDS_WB_IMPORT_FOREIGN .step"},
                      Case{"Between", "x.step", Step("SYSTEM;\n", ""), "IDS_WB_IMPORT_OUTLINE 5: SYSTEM"},
                      Case{"NoRecord", "x.step", Step("", "#1=X();\nX();\n"), "IDS_WB_IMPORT_OUTLINE 7: X()"},
                      Case{"WithoutMiddle", "x.step", "ISO-10303-21;\nHEADER;\nFILE_NAME('a END-ISO-10303-21;\n",
                           "IDS_WB_IMPORT_TRUNCATED "},
                      Case{"Deep", "x.step", Step("", "#1=X(" + std::string(10000, '(') + ");\n"),
                           "IDS_WB_IMPORT_OUTLINE 6: #1=X(" + std::string(15, '(')}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Iges, Outline,
    ::testing::Values(
        Case{"Plain", "x.igs", Iges(kPoint, kPointToo, kTotals), "fine"},
        Case{"Fewer", "x.igs", Iges(kPoint, kPointToo, "S      1G      1D      2P      7"),
             "IDS_WB_IMPORT_TRUNCATED "},
        Case{"BareReturns", "x.igs",
             Card("a file", 'S', 1).substr(0, 80) + "\r" + Card("", 'T', 1).substr(0, 80) + "\r",
             "IDS_WB_IMPORT_LINE_ENDS .igs"},
        Case{"BeyondTheEnd", "x.igs",
             Iges("     116       9       0       0       0       0       0       000000000", kPointToo, kTotals),
             "IDS_WB_IMPORT_OUTLINE 4: D"},
        Case{"TwoKinds", "x.igs",
             Iges(kPoint, "     110       0       0       1       0                               0", kTotals),
             "IDS_WB_IMPORT_OUTLINE 4:      110"},
        Case{"NoCard", "x.igs", Card("a file", 'S', 1) + "hello\n" + Iges(kPoint, kPointToo, kTotals),
             "IDS_WB_IMPORT_OUTLINE 2: hello"},
        Case{"OutOfOrder", "x.igs", Card("a file", 'S', 1) + Card("", 'P', 1) + Iges(kPoint, kPointToo, kTotals),
             "IDS_WB_IMPORT_OUTLINE 3: a file  "}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Brep, Outline,
    ::testing::Values(
        Case{"Plain", "x.brep", Brep("Locations 1\n1\n1 0 0 44CN\n", "Curves 0\n"), "fine"},
        Case{"Claim", "x.brep", Brep("Locations 1000000000\n", "Curves 0\n"),
             "IDS_WB_IMPORT_CLAIM 4: Locations 1000000000"},
        Case{"Negative", "x.brep", Brep("Locations -1\n", "Curves 0\n"), "IDS_WB_IMPORT_INP_NUMBER 4: Locations"},
        Case{"Missing", "x.brep", Brep("Locations 0\n", ""), "IDS_WB_IMPORT_OUTLINE 6: Polygon3D"},
        Case{"Foreign", "x.brep", Brep("Locations 0\n", "Curves 0\nhello\n"), "IDS_WB_IMPORT_OUTLINE 7: hello"},
        Case{"Before", "x.brep", "hello\n" + Brep("Locations 0\n", "Curves 0\n"), "IDS_WB_IMPORT_FOREIGN .brep"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Bdf, Outline,
    ::testing::Values(Case{"Comment", "x.bdf", "$ a comment\nGRID,1,,0.,0.,0.\n", "fine"},
                      Case{"Control", "x.nas", "SOL 101\nCEND\nBEGIN BULK\nENDDATA\n", "fine"},
                      Case{"Script", "x.bdf", "// $\nSystemCall \"x\";\n// GRID\n", "IDS_WB_IMPORT_FOREIGN .bdf"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace qd::test
