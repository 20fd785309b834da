// The page of kept decks.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/EnglishTexts.h"
#include "support/SessionModel.h"
#include "workbench/session/DocumentPage.h"

namespace qd::test {
namespace {

using namespace workbench;

TEST(Keywords, AreCountedAsSolversReadThem) {
  const auto counts = CountKeywords(
      "** a comment\n*Step\nno card\n *NOT ONE\n*STEP, NLGEOM=YES\r\n*End Step  \n*step\n*\n**\n*NODE,NSET=A");
  EXPECT_EQ(counts, (std::map<std::string, std::size_t>{{"*STEP", 3}, {"*END STEP", 1}, {"*", 1}, {"*NODE", 1}}));
  EXPECT_TRUE(CountKeywords("").empty());
}

class DeckPage : public SessionTest {
 protected:
  iterator AddDeck(int kinds) {
    std::string text = "** comment\n";
    for (int kind = 0; kind < kinds; ++kind) text += "*CARD " + std::to_string(kind) + ", A=1\n1, 2\n";
    iterator itr = 0;
    Act([&] {
      tagTDeck deck;
      deck.name = L"beam.inp";
      deck.text = std::make_shared<const std::string>(text + "*CARD 0\n");
      itr = Data().GetDeckPool().Add(deck);
    });
    return itr;
  }
};

TEST_F(DeckPage, StandsWhileThereIsADeckAndRemovesIt) {
  EXPECT_EQ(DocumentPage::For(m_doc), nullptr);
  const iterator deck = AddDeck(2);
  EXPECT_TRUE(Concerns(m_notices.back(), kDataDeck));
  const auto page = DocumentPage::For(m_doc);
  ASSERT_NE(page, nullptr);
  page->ShowProperty();
  EXPECT_FALSE(page->HasApplyButton());
  std::vector<CString> texts;
  for (const auto& row : page->GetRows()) texts.push_back(row->name + L"=" + row->value);
  EXPECT_EQ(texts, (std::vector<CString>{L"beam.inp=", L"IDS_WB_DECK_KEPT=IDS_QD_WRT_YES", L"IDS_WB_DECK_CARDS=3",
                                         L"IDS_WB_DECK_KEYWORDS=", L"*CARD 0=2", L"*CARD 1=1"}));
  CBCGPProp row = *page->GetRows()[1];
  page->OnPropertyChanged(&row, row.data);
  EXPECT_NE(Data().GetDataType(deck), 0) << "yes keeps it";
  row.value = L"IDS_QD_WRT_NO";
  page->OnPropertyChanged(&row, row.data);
  Settle();
  EXPECT_EQ(Data().GetDataType(deck), 0);
  EXPECT_TRUE(Concerns(m_notices.back(), kDataDeck));
  EXPECT_EQ(Data().UndoTitle(), L"IDS_WB_TRANS_REMOVE_DECK");
  EXPECT_EQ(DocumentPage::For(m_doc), nullptr);
  Undo();
  EXPECT_NE(DocumentPage::For(m_doc), nullptr);
  AddPartTo(m_first, L"other");
  EXPECT_FALSE(Concerns(m_notices.back(), kDataDeck));
}

TEST_F(DeckPage, ListsSoManyKindsAndCountsTheRest) {
  for (const auto& [kinds, rows, last] :
       {std::tuple(199, 199U, L"1"), std::tuple(200, 200U, L"1"), std::tuple(203, 201U, L"3")}) {
    const iterator deck = AddDeck(kinds);
    const auto page = DocumentPage::For(m_doc);
    page->ShowProperty();
    EXPECT_EQ(page->GetRows().size(), 4U + rows) << kinds;
    EXPECT_EQ(page->GetRows().back()->value, last) << kinds;
    EXPECT_EQ(page->GetRows().back()->name == L"…", kinds > 200);
    Act([&] { Data().GetDeckPool().TR_Del({deck}); });
  }
}

}  // namespace
}  // namespace qd::test
