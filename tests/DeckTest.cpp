// What a solver input file holds beside its mesh: it stays with the document and is written back around the mesh.

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/Mesh.h"
#include "support/ScratchFolder.h"
#include "workbench/exchange/formats/InpFile.h"
#include "workbench/exchange/formats/MeshExport.h"
#include "workbench/exchange/pipe/Protocol.h"
#include "workbench/exchange/store/CollectExport.h"
#include "workbench/exchange/store/StoreImport.h"
#include "workbench/model/MeshActs.h"

namespace qd::test {
namespace {

using namespace workbench;
namespace fs = std::filesystem;

// Two bricks in a row, a set over both, and everything that names them.
const std::string kBricks =
    "*NODE, NSET=NALL\n"
    "1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n"
    "9,0,0,2\n10,1,0,2\n11,1,1,2\n12,0,1,2\n"
    "*ELEMENT, TYPE=C3D8R, ELSET=LOWER\n1,1,2,3,4,5,6,7,8\n"
    "*ELEMENT, TYPE=C3D8I, ELSET=UPPER\n2,5,6,7,8,9,10,11,12\n";
const std::string kMesh = kBricks + "*ELSET, ELSET=EALL\nLOWER,UPPER\n";
// As it is written: there are readers that pass over names in lists.
const std::string kWritten = kBricks + "*ELSET, ELSET=EALL\n1,2,\n";
const std::string kModel =
    "** what it is made of\n"
    "*MATERIAL, NAME=STEEL\n*ELASTIC\n210000.,.3\n*PLASTIC\n235.,0.\n300.,.1\n*EXPANSION\n12.E-6\n"
    "*SOLID SECTION, ELSET=EALL, MATERIAL=STEEL\n"
    "*NSET, NSET=FIX\n1,2,3,4\n*NSET, NSET=TOP, GENERATE\n9,12\n"
    "*SURFACE, NAME=LID\nUPPER,S2\n"
    "*AMPLITUDE, NAME=RAMP\n0.,0.,1.,1.\n";
const std::string kSteps =
    "*STEP\n*STATIC\n*BOUNDARY\nFIX,1,3\n*CLOAD, "
    "AMPLITUDE=RAMP\nTOP,3,10.\n12,1,1.\n*DLOAD\nUPPER,P2,5.\n2,P3,1.\n"
    "*DSLOAD\nLID,P,2.\n*NODE PRINT, NSET=TOP\nU\n*EL PRINT, ELSET=EALL\nS\n*END STEP\n"
    "*STEP\n*STATIC\n*DLOAD, OP=NEW\nEALL,GRAV,9.81,0.,0.,-1.\n*END STEP\n";

class Deck : public MeshTest {
 protected:
  void Import(const std::string& text) { Import(ReadInpText(text, "deck.inp")); }
  void Import(ImportedModel model) { ASSERT_EQ(StoreImport(Data(), std::move(model), L"import"), 1); }
  std::string Export() {
    m_report = {};
    const fs::path path = m_folder / "out.inp";
    const auto error = WriteMeshFile(
        path, CollectExport(Data(), Pool().GetItrList()), [](double) { return true; }, m_report);
    EXPECT_FALSE(error) << error->key << error->detail;
    return ScratchFolder::ReadAt(path);
  }
  /// What was said, one after another.
  std::string Said() const {
    std::string all;
    for (const ImportNote& note : m_report.notes)
      all += note.key.substr(note.key.rfind('_') + 1) + " " + note.detail + "; ";
    return all;
  }
  iterator Set(const CString& name) { return Pool().GetItr(name); }
  /// Cards without blanks at the commas, as one text between lines.
  static std::string Squeezed(const std::string& text) {
    std::string squeezed = "\n";
    for (const char letter : text) {
      if (letter != ' ') squeezed += letter;
    }
    return squeezed;
  }
  static ::testing::AssertionResult Holds(const std::string& text, const std::string& part) {
    if (Squeezed(text).find(Squeezed(part)) != std::string::npos) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << part << "is not in\n" << text;
  }
  ScratchFolder m_folder;
  ExportReport m_report;
};

TEST_F(Deck, WhatWasNotChangedComesBackWordForWord) {
  Import(kMesh + kModel + kSteps);
  EXPECT_EQ(Squeezed(Export()), Squeezed(kWritten + kModel + kSteps));
  EXPECT_EQ(Said(), "");
}

/// Old decks are not in UTF-8: what they hold is shown as it was meant, their names go back as they came, and
/// nothing else is said.
TEST_F(Deck, NamesInOtherEncodingsComeBackByteForByte) {
  const std::string rest =
      "*MATERIAL,NAME=STAHL\xC4\n*ELASTIC\n210000.,0.3\n*SOLIDSECTION,ELSET=T\xDCR,"
      "MATERIAL=STAHL\xC4\n";
  Import("*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n4,0,0,1\n*ELEMENT,TYPE=C3D4,ELSET=T\xDCR\n1,1,2,3,4\n" + rest);
  const iterator door = Set(L"T\u00DCR");
  EXPECT_NE(door, 0) << "shown as what people see who write so";
  EXPECT_EQ(Data().GetMaterialPool().GetAtNU(Data().GetMaterialPool().GetItrList().front())->name, L"STAHL\u00C4");
  EXPECT_TRUE(Holds(Export(), rest));
  // Documents of older versions have them so.
  ChangeMset(door, [](tagTMset& set) { set.name = L"T\uFFFDR"; });
  EXPECT_TRUE(Holds(Export(), rest));
  EXPECT_EQ(Said(), "");
}

TEST_F(Deck, NamesFollowWhatTheTreeCallsThem) {
  Import(kMesh + kModel + kSteps);
  ChangeMset(Set(L"UPPER"), [](tagTMset& set) { set.name = L"Upper half"; });
  ChangeMset(Set(L"EALL"), [](tagTMset& set) { set.name = L"BAR"; });
  const iterator steel = Data().GetMaterialPool().GetItrList().front();
  Act([&] {
    tagTMaterial record = *Data().GetMaterialPool().GetAtNU(steel);
    record.name = L"S235";
    record.youngsModulus = 200000;
    ASSERT_EQ(Data().GetMaterialPool().Change(steel, record), 1);
  });
  const std::string text = Export();
  EXPECT_TRUE(Holds(text, "*ELEMENT, TYPE=C3D8I, ELSET=\"Upper half\"\n"));
  EXPECT_TRUE(Holds(text, "*ELSET, ELSET=BAR\n1,2,\n"));
  EXPECT_TRUE(Holds(text, "*DLOAD\n\"Upper half\",P2,5.\n2,P3,1.\n"));
  EXPECT_TRUE(Holds(text, "*SURFACE, NAME=LID\n\"Upper half\",S2\n"));
  EXPECT_TRUE(Holds(text, "*MATERIAL, NAME=S235\n*ELASTIC\n200000, 0.3\n*PLASTIC\n235.,0.\n300.,.1\n"));
  EXPECT_TRUE(Holds(text, "*SOLID SECTION, ELSET=BAR, MATERIAL=S235\n"));
  EXPECT_EQ(Said(), "");
}

TEST_F(Deck, WhatIsGoneIsWrittenAsACommentAndSaid) {
  Import(
      kMesh + kModel +
      "*EQUATION\n2\n9,1,1.,1,1,-1.\n*COUPLING, REF NODE=12, SURFACE=LID, CONSTRAINT NAME=C\n*KINEMATIC\n1,3\n" +
      kSteps);
  Act([&] { ASSERT_EQ(Pool().TR_Del({Set(L"UPPER")}), 1); });
  const std::string text = Export();
  // The other brick's nodes are gone with it.
  EXPECT_TRUE(Holds(text, "*ELSET,ELSET=EALL\n1,\n") || Holds(text, "*ELSET,ELSET=EALL\nLOWER,\n")) << text;
  EXPECT_TRUE(Holds(text, "** *SURFACE, NAME=LID\n** UPPER,S2\n"));
  EXPECT_TRUE(Holds(text, "** *DSLOAD\n** LID,P,2.\n"));
  EXPECT_TRUE(Holds(text, "** *NSET, NSET=TOP, GENERATE\n** 9,12\n"));
  EXPECT_TRUE(Holds(text, "** *CLOAD, AMPLITUDE=RAMP\n** TOP,3,10.\n** 12,1,1.\n"));
  EXPECT_TRUE(Holds(text, "** *EQUATION\n** 2\n** 9,1,1.,1,1,-1.\n"));
  EXPECT_TRUE(Holds(text, "** *KINEMATIC\n** 1,3\n"));
  EXPECT_TRUE(Holds(text, "** *NODE PRINT, NSET=TOP\n"));
  EXPECT_TRUE(Holds(text, "*EL PRINT, ELSET=EALL\nS\n*END STEP\n"));
  EXPECT_EQ(text.find("\n*DLOAD\n"), std::string::npos);
  for (const char* said :
       {"SET UPPER", "*SURFACE: UPPER", "*DSLOAD: LID", "*CLOAD: TOP", "*EQUATION: 9", "*DLOAD: UPPER"}) {
    EXPECT_NE(Said().find(said), std::string::npos) << said << " is not in " << Said();
  }
}

TEST_F(Deck, ElementsThatMoveTakeTheirLoadsAlong) {
  Import(kMesh + kModel + kSteps);
  ASSERT_TRUE(MoveElements(Data(), {{1, 1}}, Set(L"UPPER"), 0, L"move").IsDone());
  const std::string text = Export();
  EXPECT_TRUE(Holds(text, "*ELEMENT, TYPE=C3D8R\n1,1,2,3,4,5,6,7,8\n*ELEMENT, TYPE=C3D8I\n2,"));
  EXPECT_TRUE(Holds(text, "*ELSET, ELSET=UPPER\n1,2,\n") || Holds(text, "*ELSET, ELSET=UPPER\n2,1,\n")) << text;
  EXPECT_TRUE(Holds(text, "*DLOAD\nUPPER,P2,5.\n2,P3,1.\n"));
  EXPECT_EQ(text.find("LOWER"), std::string::npos) << text;
}

TEST_F(Deck, ASecondDeckGetsNumbersAndNamesOfItsOwn) {
  const std::string model = kModel +
                            "*FILM\nEALL,F1FC,9,.5\nEALL,F2,9,.5\n*DLOAD\n1,P2NP,12\n1,P3,12\n*EQUATION\n2\n9,1,1."
                            ",1,1,-1.\n*RIGID BODY, NSET=TOP, REF NODE=9\n";
  Import(kMesh + model + kSteps);
  Import(kMesh + model + "*MYSTERY\n1,2\n" + kSteps);
  const std::string text = Export();
  EXPECT_TRUE(Holds(text, "*NODE, NSET=NALL-2\n13, 0, 0, 0\n"));
  EXPECT_TRUE(Holds(text, "*ELEMENT, TYPE=C3D8I, ELSET=UPPER-2\n4,17,18,19,20,21,22,23,24\n"));
  EXPECT_TRUE(Holds(text, "*NSET, NSET=FIX-2\n13, 14, 15, 16\n*NSET, NSET=TOP-2, GENERATE\n21, 24, 1\n"));
  EXPECT_TRUE(Holds(text, "*SURFACE, NAME=LID-2\nUPPER-2,S2\n"));
  EXPECT_TRUE(Holds(text, "*SOLID SECTION, ELSET=EALL-2, MATERIAL=STEEL-2\n"));
  EXPECT_TRUE(Holds(text, "*EQUATION\n2\n21,1,1.,13,1,-1.\n*RIGID BODY, NSET=TOP-2, REF NODE=21\n"));
  // A node may stand where a value does.
  EXPECT_TRUE(Holds(text, "*FILM\nEALL-2,F1FC,21,.5\nEALL-2,F2,9,.5\n*DLOAD\n3,P2NP,24\n3,P3,12\n"));
  // One file has the steps of one deck, and what is not known cannot be given other numbers.
  EXPECT_TRUE(Holds(text, "*CLOAD, AMPLITUDE=RAMP\nTOP,3,10.\n12,1,1.\n"));
  EXPECT_TRUE(Holds(text, "** *MYSTERY\n** 1,2\n"));
  EXPECT_EQ(Said(),
            "RENAMED EALL → EALL-2, LOWER → LOWER-2, UPPER → UPPER-2, STEEL → STEEL-2; CARD *MYSTERY: 1; "
            "RENAMED FIX → FIX-2, NALL → NALL-2, TOP → TOP-2, LID → LID-2, RAMP → RAMP-2; STEPS deck.inp; ");
}

TEST_F(Deck, SetsThatShareElementsKeepTheirOwnLists) {
  const std::string sets =
      "*ELSET, ELSET=FIRST\n1\n*ELSET, ELSET=SAME\n1\n*ELSET, ELSET=LAST\n2\n*ELSET, ELSET=BOTH, INTERNAL\n1,2\n"
      "*ELSET, ELSET=ODD\n1\n";
  Import(kMesh + sets + kModel + kSteps);
  EXPECT_EQ(Squeezed(Export()), Squeezed(kBricks + sets + "*ELSET, ELSET=EALL\n1,2,\n" + kModel + kSteps));
}

TEST_F(Deck, NamesInListsStayWhereNumbersWouldTellSomethingElse) {
  // Listed twice, listed before it is known, naming each other in a circle.
  for (const char* sets : {"*ELSET, ELSET=TWICE\nLOWER,1\n", "*ELSET, ELSET=EARLY\nLATE\n*ELSET, ELSET=LATE\n1\n",
                           "*ELSET, ELSET=A\n1,B\n*ELSET, ELSET=B\nA\n"}) {
    Import(kBricks + sets + kModel.substr(0, kModel.find("*SOLID")));
    EXPECT_TRUE(Holds(Export(), sets));
    ASSERT_EQ(Data().Undo(), 1);
  }
}

TEST_F(Deck, PartsAndInstancesBecomeOneMeshWithItsAnalysis) {
  const std::string nodes = "1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n";
  Import("*PART, NAME=Bar\n*NODE\n" + nodes +
         "*ELEMENT, TYPE=C3D8, ELSET=E\n1,1,2,3,4,5,6,7,8\n*NSET, NSET=Low, GENERATE\n1,4\n"
         "*ELSET, ELSET=Set-1\n1\n*SURFACE, NAME=Lid\nE,S2\n*ORIENTATION, NAME=O\n1,0,0,0,1,0\n"
         "*SOLID SECTION, ELSET=E, MATERIAL=M, ORIENTATION=O\n*MYSTERY\n1,2\n*END PART\n"
         "*ASSEMBLY, NAME=A\n*NODE\n20,9,9,9\n*INSTANCE, NAME=Bar-1, PART=Bar\n*END INSTANCE\n"
         "*INSTANCE, NAME=Bar-2, PART=Bar\n5,0,0\n5,0,0,5,0,1,90\n*END INSTANCE\n"
         "*NSET, NSET=Fix\nBar-1.Low,bar-2.low\n*NSET, NSET=Set-1, INSTANCE=Bar-2\n5\n"
         "*ELSET, ELSET=Set-1, INSTANCE=Bar-2\nE\n*ELSET, ELSET=Both\nBar-1.E,Bar-2.E\n"
         "*SURFACE, NAME=S\nBar-1.E,S1\nBar-2.1,S1\n*END ASSEMBLY\n"
         "*MATERIAL, NAME=M\n*ELASTIC\n1.,.3\n*STEP\n*STATIC\n*BOUNDARY\nFix,1,3\n20,1\n"
         "*CLOAD\nBar-1.7,1,5.\nSet-1,2,1.\n*DLOAD\nBoth,GRAV,1.,0,0,-1\nBar-2.Set-1,P1,1.\n"
         "*DSLOAD\nBar-2.Lid,P,2.\n*END STEP\n");
  const std::string text = Export();
  for (const char* part :
       {"*NODE\n21, 0, 0, 0\n", "*NODE\n20, 9, 9, 9\n",
        // The second one is shifted and turned.
        "30, 5, 1, 0\n31, 4, 1, 0\n", "*NSET, NSET=Bar-1.Low, GENERATE\n21, 24, 1\n",
        "*NSET, NSET=Bar-2.Low, GENERATE\n29, 32, 1\n", "*SURFACE, NAME=Bar-2.Lid\nE-2, S2\n",
        "*ORIENTATION, NAME=Bar-1.O\n1, 0, 0, 0, 1, 0\n",
        "*SOLID SECTION, ELSET=E, MATERIAL=M, ORIENTATION=Bar-1.O\n",
        "*SOLID SECTION, ELSET=E-2, MATERIAL=M, ORIENTATION=Bar-2.O\n", "*NSET, NSET=Fix\nBar-1.Low, bar-2.low\n",
        "*NSET, NSET=Set-1\n33\n", "*ELSET, ELSET=Both\n1, 2,\n", "*SURFACE, NAME=S\nE, S1\n2, S1\n",
        "*BOUNDARY\nFix, 1, 3\n20, 1\n", "*CLOAD\n27, 1, 5.\nSet-1, 2, 1.\n", "*DLOAD\nBoth, GRAV, 1., 0, 0, -1\n",
        "** *MYSTERY\n** 1, 2\n"}) {
    EXPECT_TRUE(Holds(text, part));
  }
  EXPECT_EQ(text.find("*INSTANCE"), std::string::npos);
}

// Its numbers may lie between those of one another.
TEST_F(Deck, SystemsOfAPlacedPartMoveAlongAndItsDirectionsDoNot) {
  Import(
      "*PART, NAME=P\n*NODE\n1,0,0,0\n3,1,0,0\n5,0,1,0\n*NODE, NSET=N\n2,0,0,1\n4,1,0,1\n"
      "*ELEMENT, TYPE=S3, ELSET=E\n2,1,3,5\n4,5,3,1\n6,3,5,1\n"
      "*ORIENTATION, NAME=D\n1,0,0,0,1,0\n"
      "*ORIENTATION, NAME=C, SYSTEM=CYLINDRICAL\n.123456789012,0,0,.123456789012,0,1\n*END PART\n"
      "*ASSEMBLY, NAME=A\n*NODE\n1,9,9,9\n*INSTANCE, NAME=I, PART=P\n10,20,30\n*END INSTANCE\n*END ASSEMBLY\n");
  EXPECT_EQ(
      Squeezed(Export()),
      Squeezed(
          "*NODE\n1,9,9,9\n*NODE\n2,10,20,30\n4,11,20,30\n6,10,21,30\n*NODE,NSET=I.N\n3,10,20,31\n5,11,20,31\n"
          "*ELEMENT,TYPE=S3,ELSET=E\n2,2,4,6\n4,6,4,2\n6,4,6,2\n*ELSET,ELSET=I\nE,\n"
          "*ORIENTATION,NAME=I.D\n1,0,0,0,1,0\n*ORIENTATION,NAME=I.C,SYSTEM=CYLINDRICAL\n"
          "10.123456789012,20,30,10.123456789012,20,31\n"));
}

TEST_F(Deck, NamesOfInstancesMayStandInQuotationMarks) {
  Import(
      "*PART, NAME=\"Big Part\"\n*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n*ELEMENT, TYPE=S3, ELSET=E\n1,1,2,3\n"
      "*NSET, NSET=\"The End\"\n3\n*END PART\n*ASSEMBLY, NAME=A\n*NODE\n9,0,0,5\n"
      "*INSTANCE, NAME=\"Big Part-1\", PART=\"Big Part\"\n*END INSTANCE\n*ELSET, ELSET=All\n\"Big Part-1\".E\n"
      "*END ASSEMBLY\n*STEP\n*STATIC\n*CLOAD\n\"Big Part-1\".2,1,1.\n\"Big Part-1.3\",2,1.\n"
      "\"Big Part-1\".\"The End\",3,1.\n*END STEP\n");
  EXPECT_TRUE(Holds(Export(), "*CLOAD\n11,1,1.\n12,2,1.\n\"Big Part-1.The End\",3,1.\n"));
}

TEST_F(Deck, WhatTheAssemblyCallsAsSomethingInAnInstanceIsCalledOtherwise) {
  ImportedModel model = ReadInpText(
      "*PART, NAME=P\n*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n*ELEMENT, TYPE=S3, ELSET=E\n1,1,2,3\n2,1,3,2\n"
      "*ELSET, ELSET=Twin\n1,2\n*NSET, NSET=N\n3\n*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n"
      "*END INSTANCE\n*NODE, NSET=\"i.N\"\n7,5,5,5\n*ELSET, ELSET=I.E, INSTANCE=I\n2\n"
      "*ELSET, ELSET=I.E-2, INSTANCE=I\n1\n*NSET, NSET=I.N-3\n7\n*SURFACE, NAME=I.E\nI.E,S1\n*END ASSEMBLY\n"
      "*STEP\n*STATIC\n*CLOAD\nI.N,1,1.\n*DLOAD\nI.E,P,2.\n*END STEP\n",
      "deck.inp");
  std::string notes;
  for (const ImportNote& note : model.notes)
    notes += note.key.substr(note.key.find("NOTE_") + 5) + " " + note.detail + "; ";
  EXPECT_EQ(notes, "SAME_SET I.Twin; DECK_RENAMED i.N → i.N-2; DECK_RENAMED I.E → I.E-3; ");
  Import(std::move(model));
  const std::string text = Export();
  for (const char* part :
       {"*NODE, NSET=i.N-2\n7, 5, 5, 5\n", "*NSET, NSET=I.N\n10\n", "*NSET, NSET=I.N-3\n7\n",
        "*SURFACE, NAME=I.E\nE, S1\n", "*ELSET, ELSET=I.E-2", "*CLOAD\nI.N, 1, 1.\n", "*DLOAD\nE, P, 2.\n"}) {
    EXPECT_TRUE(Holds(text, part));
  }
}

/// What is made of other nodes and elements is not shown, and nobody knows what numbers it has.
TEST_F(Deck, KeywordsThatMakeNodesAreKeptWhereTheyMeetNoOthers) {
  const std::string make = "*NGEN, NSET=ROW\n9,109,10\n";
  const ImportedModel model = ReadInpText(kMesh + make + make + "*ELGEN\n2,3\n", "deck.inp");
  ASSERT_EQ(model.notes.size(), 1U);
  EXPECT_EQ(model.notes[0].key, "IDS_WB_NOTE_GENERATED");
  EXPECT_EQ(model.notes[0].detail, "*ELGEN (1), *NGEN (2)");
  Import(kMesh + make);
  EXPECT_TRUE(Holds(Export(), make));
  EXPECT_EQ(Said(), "");
  AddMset(L"ours", 0, 1);
  EXPECT_TRUE(Holds(Export(), "** *NGEN, NSET=ROW\n** 9,109,10\n"));
  EXPECT_EQ(Said(), "CARD *NGEN: *NGEN; ");
  ASSERT_EQ(Data().Undo(), 1);
  Import("*NODE\n201,0,0,0\n202,1,0,0\n*ELEMENT, TYPE=T3D2, ELSET=B\n201,201,202\n");
  EXPECT_TRUE(Holds(Export(), "** *NGEN, NSET=ROW\n** 9,109,10\n"));
  ImportedModel parts = ReadInpText(
      "*PART, NAME=P\n" + kMesh + make + "*END PART\n*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n", "deck.inp");
  EXPECT_NE(parts.decks.front().text.find("\n** *NGEN"), std::string::npos);
}

/// A set that lacks what was made for it would carry its loads to the rest alone.
TEST_F(Deck, SetsThatHeldWhatIsNotMadeGoWithIt) {
  const std::string cards =
      "*NSET, NSET=ROW\n4\n*NGEN, NSET=ROW\n9,109,10\n*NSET, NSET=ROW\n3\n*ELGEN, ELSET=UPPER\n2,3\n"
      "*BOUNDARY\nROW,1,3\n1,1,3\n*DLOAD\nUPPER,P2,5.\n*DLOAD\nEALL,P2,5.\n*DLOAD\nLOWER,P2,5.\n";
  Import(kMesh + cards);
  EXPECT_TRUE(Holds(Export(), cards));
  AddMset(L"ours", 0, 1);
  const std::string text = Export();
  EXPECT_TRUE(Holds(text, "** *NSET, NSET=ROW\n** 4\n"));
  EXPECT_TRUE(Holds(text, "** *NSET, NSET=ROW\n** 3\n"));
  EXPECT_TRUE(Holds(text, "** ROW,1,3\n1,1,3\n"));
  EXPECT_TRUE(Holds(text, "** *DLOAD\n** UPPER,P2,5.\n"));
  EXPECT_TRUE(Holds(text, "** *DLOAD\n** EALL,P2,5.\n"));
  EXPECT_TRUE(Holds(text, "*DLOAD\nLOWER,P2,5.\n"));
  for (const char* said : {"*NGEN: *NGEN", "*ELGEN: *ELGEN", "*BOUNDARY: ROW", "*DLOAD: UPPER"})
    EXPECT_NE(Said().find(said), std::string::npos) << said << " is not in " << Said();
}

TEST_F(Deck, SetsOfPartsThatHeldWhatIsNotMadeGoWithIt) {
  ImportedModel parts = ReadInpText(
      "*PART, NAME=P\n" + kMesh +
          "*NGEN, NSET=ROW\n9,109,10\n*NSET, NSET=ROW\n4\n*ELGEN, ELSET=UPPER\n2,3\n*MATERIAL, NAME=STEEL\n"
          "*SOLID SECTION, ELSET=UPPER, MATERIAL=STEEL\n*END PART\n*ASSEMBLY, NAME=A\n*INSTANCE, NAME=I, PART=P\n"
          "*END INSTANCE\n*END ASSEMBLY\n*BOUNDARY\nI.ROW,1,3\n\"I\".ROW,1,3\nI.4,1,3\n*DLOAD\nI.UPPER,P2,5.\n"
          "*DLOAD\nI.EALL,P2,5.\n*DLOAD\nI.LOWER,P2,5.\n",
      "deck.inp");
  const std::string text = parts.decks.front().text;
  EXPECT_TRUE(Holds(text, "** *NSET, NSET=ROW\n** 4\n"));
  EXPECT_TRUE(Holds(text, "** I.ROW,1,3\n"));
  EXPECT_TRUE(Holds(text, "** \"I\".ROW,1,3\n"));
  EXPECT_TRUE(Holds(text, "4,1,3\n"));
  EXPECT_TRUE(Holds(text, "** *DLOAD\n** I.UPPER,P2,5.\n"));
  EXPECT_TRUE(Holds(text, "** *DLOAD\n** I.EALL,P2,5.\n"));
  EXPECT_TRUE(Holds(text, "*DLOAD\nI.LOWER,P2,5.\n"));
  EXPECT_TRUE(Holds(text, "*SOLID SECTION, ELSET=I.UPPER, MATERIAL=STEEL\n"));
  EXPECT_TRUE(Holds(text, "*ELEMENT, TYPE=C3D8I, ELSET=I.UPPER\n2\n"));
  EXPECT_TRUE(Holds(text, "*ELSET, ELSET=I.EALL\nI.LOWER,I.UPPER\n"));
}

/// A name is lost only while nothing that defines it is written, and keeps what a second deck calls it.
TEST_F(Deck, NamesThatAreDefinedInPiecesStayWithWhatIsLeft) {
  const std::string cards =
      "*NSET, NSET=N\n9\n*NSET, NSET=N\n1\n*BOUNDARY\nN,1,3\n*NSET, NSET=M\n9\n*NSET, NSET=M\nM\n";
  Import(kMesh + cards);
  std::string other = kMesh;
  for (std::size_t at = 0; (at = other.find("UPPER", at)) != std::string::npos;) other.replace(at, 5, "HIGHER");
  Import(other + cards);
  Act([&] { ASSERT_EQ(Pool().TR_Del({Set(L"UPPER"), Set(L"HIGHER")}), 1); });
  const std::string text = Export();
  EXPECT_TRUE(Holds(text, "** *NSET, NSET=N\n** 9\n"));
  EXPECT_TRUE(Holds(text, "*NSET, NSET=N\n1\n*BOUNDARY\nN,1,3\n"));
  EXPECT_TRUE(Holds(text, "** *NSET, NSET=M\n** M\n"));
  EXPECT_TRUE(Holds(text, "*NSET, NSET=N-2\n13\n*BOUNDARY\nN-2,1,3\n"));
}

TEST_F(Deck, LinesBeforeTheFirstKeywordAreNoCommentsOfIt) {
  Import(
      "** by hand\n1,2,3\n*PART, NAME=P\n*NODE\n1,0,0,0\n*END PART\n*ASSEMBLY, NAME=A\n"
      "*INSTANCE, NAME=I, PART=P\n*END INSTANCE\n*INSTANCE, NAME=J, PART=P\n*END INSTANCE\n*END ASSEMBLY\n");
  const std::string text = Export();
  EXPECT_TRUE(Holds(text, "** by hand\n"));
  EXPECT_FALSE(Holds(text, "1,2,3\n"));
}

TEST_F(Deck, TextsThatWereMeddledWithEnd) {
  // In the document of a stranger the text may be anything.
  struct Case {
    const char* text;
    bool isDamaged;
  };
  constexpr Case kTexts[] = {
      {"*NODE\n2305843009213693952,2305843009213693952,18446744073709551615\n*ELEMENT\n1\n", false},
      {"*NODE\n1\n=5\n*ELEMENT\n1\n", true},
      {"*NODE\n1,268435455\n*ELEMENT\n1\n", true},
      {"*NODE\nx\n", true}};
  for (const Case& tried : kTexts) {
    Import(kMesh);
    const iterator deck = Data().GetDeckPool().GetItrList().front();
    Act([&] {
      tagTDeck record = *Data().GetDeckPool().GetAtNU(deck);
      record.text = std::make_shared<const std::string>(tried.text);
      ASSERT_EQ(Data().GetDeckPool().Change(deck, record), 1);
    });
    ExportReport report;
    const auto error = WriteMeshFile(
        m_folder / "out.inp", CollectExport(Data(), Pool().GetItrList()), [](double) { return true; }, report);
    EXPECT_EQ(error ? error->key : "", tried.isDamaged ? "IDS_WB_EXPORT_DECK_DAMAGED" : "") << tried.text;
    ASSERT_EQ(Data().Undo(), 1);
    ASSERT_EQ(Data().Undo(), 1);
  }
}

/// Fitting a deck can take long although little of it is written.
TEST_F(Deck, WorkOnADeckEndsWhenItIsCancelled) {
  std::string mesh = "*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n*ELEMENT, TYPE=S3\n";
  for (int i = 1; i <= 200; ++i) mesh += std::to_string(i) + ",1,2,3\n";
  std::string sets;  // that are told in pieces, so that all their elements are looked at
  for (int i = 0; i < 200; ++i) {
    const std::string card =
        "*ELSET, ELSET=S" + std::to_string(i) + ", GENERATE\n1," + std::to_string(i + 1) + "\n";
    sets += card + card;
  }
  std::string lines = "*NSET, NSET=N\n";
  for (int i = 0; i < 20'000; ++i) lines += "1,2,3\n";
  for (const bool isFitting : {true, false}) {
    Import(mesh + (isFitting ? sets : lines));
    double first = -1;
    const auto cancel = [&first](double share) {
      first = share;
      return false;
    };
    ExportReport report;
    const fs::path path = m_folder / "out.inp";
    const auto error = WriteMeshFile(path, CollectExport(Data(), Pool().GetItrList()), cancel, report);
    ASSERT_TRUE(error) << isFitting;
    EXPECT_EQ(error->key, "");
    EXPECT_EQ(first, 0) << isFitting;  // nothing was written yet
    EXPECT_FALSE(fs::exists(path));
    ASSERT_EQ(Data().Undo(), 1);
  }
}

TEST_F(Deck, WhatOnlyTheTextKnowsIsKeptWithTheLinesAroundIt) {
  Import(kBricks + "*ELEMENT, TYPE=D, ELSET=NET\n\n** a way in\n5,0,1,2\n** on\n6,1,3,\n\n** and\n2\n");
  const std::string text = Export();
  EXPECT_TRUE(Holds(text, "** a way in\n"));
  EXPECT_TRUE(Holds(text, "5,0,1,2\n"));
  EXPECT_EQ(text.find("**a way in5"), std::string::npos) << text;
}

TEST_F(Deck, ValuesOfPropertiesTakeTheirPlaceOrAreSaid) {
  Import(
      "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n*ELEMENT, TYPE=S4, ELSET=SHELL\n1,1,2,3,4\n"
      "*ELEMENT, TYPE=B31, ELSET=BEAM\n2,1,2\n*MATERIAL, NAME=HOT\n*ELASTIC\n1.,.3,20.\n2.,.3,500.\n"
      "*SHELL SECTION, ELSET=SHELL, MATERIAL=HOT, OFFSET=.5\n.25\n"
      "*BEAM SECTION, ELSET=BEAM, MATERIAL=HOT, SECTION=CIRC\n.5\n1.,0.,0.\n");
  Act([&] {
    for (const iterator itr : Data().GetPropertyPool().GetItrList()) {
      tagTProperty property = *Data().GetPropertyPool().GetAtNU(itr);
      property.size = 2;
      ASSERT_EQ(Data().GetPropertyPool().Change(itr, property), 1);
    }
    const iterator hot = Data().GetMaterialPool().GetItrList().front();
    tagTMaterial material = *Data().GetMaterialPool().GetAtNU(hot);
    material.youngsModulus = 7;
    ASSERT_EQ(Data().GetMaterialPool().Change(hot, material), 1);
  });
  const std::string text = Export();
  EXPECT_TRUE(Holds(text, "*SHELL SECTION, ELSET=SHELL, MATERIAL=HOT, OFFSET=.5\n2\n"));
  EXPECT_TRUE(Holds(text, "*BEAM SECTION, ELSET=BEAM, MATERIAL=HOT, SECTION=CIRC\n.5\n1.,0.,0.\n"));
  EXPECT_TRUE(Holds(text, "*ELASTIC\n1.,.3,20.\n2.,.3,500.\n"));
  EXPECT_EQ(Said(), "VALUE HOT, BEAM; ");
}

TEST_F(Deck, IncludedLinesAreKeptInTheirPlace) {
  std::ofstream(m_folder / "loads.inc") << "*CLOAD\n12,3,1.\n";
  std::ofstream(m_folder / "deck.inp") << kMesh
                                       << "*STEP\n*STATIC\n** by hand\n*INCLUDE, INPUT=loads.inc\n*END STEP\n";
  Import(ReadInpFile(m_folder / "deck.inp", [](double) {}));
  EXPECT_TRUE(Holds(Export(), "*STEP\n*STATIC\n** by hand\n*CLOAD\n12,3,1.\n*END STEP\n"));
}

}  // namespace
}  // namespace qd::test
