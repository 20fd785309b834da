// Kept decks in documents: they come back, and documents of before there were any open.

#include <gtest/gtest.h>

#include "support/DocumentFolder.h"
#include "workbench/exchange/formats/InpFile.h"
#include "workbench/exchange/store/StoreImport.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentKeeper.h"

namespace qd::test {
namespace {

using namespace workbench;
using DocumentDeck = DocumentFolder;

const char* const kDeck =
    "*HEADING\na beam\n*NODE, NSET=N\n1,0,0,0\n2,1,0,0\n3,2,0,0\n*ELEMENT, TYPE=B31, ELSET=BEAM\n1,1,2\n2,2,3\n"
    "*MATERIAL, NAME=STEEL\n*ELASTIC\n210000.,.3\n*BEAM SECTION, ELSET=BEAM, MATERIAL=STEEL, "
    "SECTION=CIRC\n.5\n0.,0.,1.\n"
    "*STEP\n*STATIC\n*CLOAD\n3,2,1.\n*END STEP\n";

TEST_F(DocumentDeck, ComesBackAsItWasAndGoesWithItsImport) {
  std::string written;
  {
    const auto document = Create(Path("deck.qdw"));
    ASSERT_NE(document->file, nullptr) << document->error.detail;
    for (int time = 0; time < 2; ++time) {
      ASSERT_EQ(StoreImport(document->data, ReadInpText(kDeck, "beam.inp"), L"import"), 1);
    }
    ASSERT_EQ(document->data.Undo(), 1);
    written = Contents(document->data);
  }
  EXPECT_TRUE(VerifyDocument(Path("deck.qdw")).empty());
  const auto document = Open(Path("deck.qdw"));
  ASSERT_NE(document->file, nullptr) << document->error.detail;
  EXPECT_EQ(Contents(document->data), written);
  ASSERT_EQ(document->data.GetDeckPool().Count(), 1U);
  const tagTDeck& deck = *document->data.GetDeckPool().GetAtNU(document->data.GetDeckPool().GetItrList().front());
  EXPECT_NE(deck.text->find("*CLOAD\n3,2,1.\n"), std::string::npos);
  ASSERT_EQ(deck.sets.size(), 1U);
  EXPECT_EQ(deck.sets.front().count, 2U);
}

TEST_F(DocumentDeck, NamesThatAreCutShortAreRefused) {
  {
    const auto document = Create(Path("deck.qdw"));
    ASSERT_EQ(StoreImport(document->data, ReadInpText(kDeck, "beam.inp"), L"import"), 1);
  }
  Sql(Path("deck.qdw"), "UPDATE deck SET names = substr(names, 1, length(names) - 3)");
  EXPECT_NE(FaultOf(Path("deck.qdw")), "");
}

TEST_F(DocumentDeck, DocumentsOfTheVersionBeforeOpenAndTakeOne) {
  { const auto document = Create(Path("old.qdw")); }
  Sql(Path("old.qdw"),
      "DROP TABLE deck; DROP TABLE deck_text; DROP TABLE part_origin; DROP TABLE document; PRAGMA user_version = "
      "1");
  {
    const auto document = Open(Path("old.qdw"));
    ASSERT_NE(document->file, nullptr) << document->error.detail;
    ASSERT_EQ(StoreImport(document->data, ReadInpText(kDeck, "beam.inp"), L"import"), 1);
  }
  const auto document = Open(Path("old.qdw"));
  EXPECT_EQ(document->data.GetDeckPool().Count(), 1U);
}

}  // namespace
}  // namespace qd::test
