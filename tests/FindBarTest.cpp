// The find bar of a panel under mouse and keys: what it opens, shows and gives back.

#include "host/CMSGFunction.h"
#include "host/CQDNullDocument.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "qd_wrt/panel/FindBar.h"
#include "support/EnglishTexts.h"
#include "support/InputRows.h"

#include <gmock/gmock.h>
#include <memory>

namespace qd::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// ---- the layout alone -----------------------------------------------------------------------------------

std::vector<CRect> PartsOf(const FindBarLayout& layout) {
  return {layout.field, layout.filter, layout.find,  layout.count,   layout.previous,
          layout.next,  layout.all,    layout.close, layout.sentence};
}

TEST(FindBarLayout, NothingIsCutAndNothingOverlaps) {
  for (int width = 180; width <= 1200; width += 7) {
    for (const int font : {12, 16, 32}) {
      for (const int sentence : {0, 1, 3}) {
        const FindBarMeasures measures{width * font / 16, font, 4 * font, 3 * font, 7 * font, sentence};
        const FindBarLayout layout = LayOutFindBar(measures);
        SCOPED_TRACE(std::to_string(measures.width) + " " + std::to_string(font));
        EXPECT_EQ(layout.filter.Width(), measures.filterWidth);
        EXPECT_EQ(layout.find.Width(), measures.findWidth);
        EXPECT_GE(layout.count.Width(), measures.countWidth);
        EXPECT_GE(layout.field.Width(), 8 * font);
        EXPECT_EQ(layout.sentence.Height(), sentence * font);
        const std::vector<CRect> parts = PartsOf(layout);
        for (std::size_t i = 0; i < parts.size(); ++i) {
          if (parts[i].IsEmpty()) continue;
          EXPECT_TRUE(parts[i].left >= 0 && parts[i].right <= measures.width && parts[i].bottom <= layout.height);
          for (std::size_t k = i + 1; k < parts.size(); ++k) {
            const CRect both{std::max(parts[i].left, parts[k].left), std::max(parts[i].top, parts[k].top),
                             std::min(parts[i].right, parts[k].right), std::min(parts[i].bottom, parts[k].bottom)};
            EXPECT_TRUE(both.IsEmpty()) << i << " lies on " << k;
          }
        }
      }
    }
  }
}

// ---- the bar --------------------------------------------------------------------------------------------

/// A panel with Root and below it Item 0 to Item 39.
class Find : public ::testing::Test {
 protected:
  Find() {
    m_panel.Create(nullptr, 0, {0, 0, 360, 500});
    m_panel.SetDocument(&m_doc);
    m_panel.CreateTreeItems(1, &m_rows, 1);
    m_panel.OnChangeLanguage();
    m_toolkit.Pump();
    Tree().SetFocus();
  }
  CQDTreeListCtrl& Tree() { return m_panel.GetTreeCtrl(); }
  RowFinder& Finder() { return Tree().GetFinder(); }
  CWnd& Part(int id) { return *m_toolkit.FindChild(*m_toolkit.FindChild(m_panel, CWorksTreeBar::kFindBarId), id); }
  CEdit& Field() { return static_cast<CEdit&>(Part(FindBar::kField)); }
  FindList& List() { return static_cast<FindList&>(*m_toolkit.FindChild(m_panel, CWorksTreeBar::kFindListId)); }
  CString Count() { return m_toolkit.AccessibleOf(Part(FindBar::kCount)).name; }
  CString Sentence() { return m_toolkit.AccessibleOf(Part(FindBar::kSentence)).name; }
  int BarHeight() { return Tree().GetHeader().GetPlace().top; }
  bool IsOpen() { return BarHeight() > 0 && Field().IsShown(); }
  CString Query() { return Finder().GetQuery(); }

  void Settle() {
    m_toolkit.Pump();
    const CRect bar = m_toolkit.FindChild(m_panel, CWorksTreeBar::kFindBarId)->GetPlace();
    EXPECT_EQ(bar.bottom, BarHeight());
    EXPECT_EQ(Tree().GetHeader().GetPlace().bottom, Tree().GetPlace().top);
  }
  /// On whatever has the focus.
  void Key(int key, unsigned flags = 0) {
    m_toolkit.Key(*m_toolkit.FocusWindow(), key, flags);
    Settle();
  }
  void Type(const CString& text) {
    m_toolkit.Type(*m_toolkit.FocusWindow(), text);
    Settle();
  }
  void Click(CWnd& window, CPoint at = {5, 5}) {
    m_toolkit.Click(window, at);
    Settle();
  }
  void Open() { Key(kKeyF, kMouseControl); }
  std::vector<CString> Offered() { return List().IsShown() ? List().GetEntries() : std::vector<CString>(); }

  HeadlessToolkit m_toolkit;
  EnglishTexts m_texts;
  CQDNullDocument m_doc{L"rows"};
  InputRows m_rows;
  CWorksTreeBar m_panel;
};

TEST_F(Find, OpensFromTreeAndHeaderAndClosesWithEscape) {
  EXPECT_EQ(BarHeight(), 0);
  for (CWnd* from : {static_cast<CWnd*>(&Tree()), static_cast<CWnd*>(&Tree().GetHeader())}) {
    from->SetFocus();
    Open();
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(m_toolkit.FocusWindow(), &Field());
    Type(L"Item 1");
    EXPECT_EQ(Query(), L"Item 1");
    EXPECT_TRUE(Finder().IsFiltering());
    Open();  // once more: what is typed next takes the place of all
    Type(L"x");
    EXPECT_EQ(Query(), L"x");
    Key(kKeyEscape);
    EXPECT_EQ(BarHeight(), 0);
    EXPECT_FALSE(Finder().IsOn());
    EXPECT_EQ(m_toolkit.FocusWindow(), &Tree());
  }
  Open();
  EXPECT_EQ(Field().GetText(), L"");
  Tree().SetFocus();
  Key(kKeyEscape);  // in the tree, too
  EXPECT_EQ(BarHeight(), 0);
}

TEST_F(Find, SwitchesBetweenFilterAndFind) {
  Open();
  Type(L"1");
  EXPECT_EQ(Finder().GetMode(), RowFinder::Mode::Filter);
  Key(kKeyF, kMouseControl | kMouseShift);
  EXPECT_EQ(Finder().GetMode(), RowFinder::Mode::Find);
  EXPECT_TRUE(m_toolkit.AccessibleOf(Part(FindBar::kFind)).chosen);
  Click(Part(FindBar::kFilter));
  EXPECT_EQ(Finder().GetMode(), RowFinder::Mode::Filter);
  EXPECT_EQ(m_toolkit.FocusWindow(), &Field()) << "a click leaves the focus in the field";
  Key(kKeyEscape);
  Key(kKeyF, kMouseControl | kMouseShift);  // from the tree it opens the bar
  EXPECT_TRUE(IsOpen());
  EXPECT_TRUE(m_toolkit.AccessibleOf(Part(FindBar::kFind)).chosen);
}

TEST_F(Find, AWrongQueryIsToldAndTheFormerSearchStays) {
  Open();
  Type(L"Item");
  const int height = BarHeight();
  EXPECT_EQ(m_toolkit.BoxColoursOf(Field()), std::nullopt);
  m_toolkit.TakeSpoken();
  m_toolkit.Paste(Field(), L" nofield:1");
  Settle();
  EXPECT_EQ(Query(), L"Item");
  EXPECT_EQ(Field().GetText(), L"Item nofield:1");
  ASSERT_TRUE(m_toolkit.BoxColoursOf(Field()).has_value());
  EXPECT_THAT(Sentence(), HasSubstr(L"no field of this name"));
  EXPECT_THAT(m_toolkit.TakeSpoken(), ::testing::Contains(Sentence()));
  // Whole, in as many lines as it takes.
  CString painted;
  for (const std::string& call : m_toolkit.Paint(Part(FindBar::kSentence))) {
    if (const std::size_t at = call.find('\''); at != std::string::npos) {
      painted += CString(call.begin() + static_cast<std::ptrdiff_t>(at) + 1, call.end() - 1) + L" ";
      EXPECT_LE((call.size() - at - 2) * HeadlessToolkit::kCharacterWidth, 360U);
    }
  }
  EXPECT_EQ(painted, Sentence() + L" ");
  EXPECT_GE(BarHeight(), height + 2 * HeadlessToolkit::kFontHeight);
  // A dark palette, while it is wrong.
  const auto before = *m_toolkit.BoxColoursOf(Field());
  m_toolkit.SetColour(SystemColour::Window, Rgb(30, 30, 30));
  m_toolkit.SetColour(SystemColour::WindowText, Rgb(220, 220, 220));
  Settle();
  EXPECT_NE(m_toolkit.BoxColoursOf(Field())->background, before.background);
  EXPECT_EQ(m_toolkit.BoxColoursOf(Field())->text, Rgb(220, 220, 220));
  // The switch leaves what is typed as it is.
  Key(kKeyF, kMouseControl | kMouseShift);
  EXPECT_EQ(Field().GetText(), L"Item nofield:1");
  EXPECT_FALSE(Sentence().empty());
  Key(kKeyF, kMouseControl | kMouseShift);
  Field().SelectAll();
  Type(L"7");
  EXPECT_EQ(Query(), L"7");
  EXPECT_EQ(m_toolkit.BoxColoursOf(Field()), std::nullopt);
  EXPECT_EQ(BarHeight(), height);
}

TEST_F(Find, KeepsTheQueriesThatWereUsed) {
  Key(kKeyF3);  // nothing to go on with: the bar opens
  EXPECT_TRUE(IsOpen());
  Key(kKeyDown);
  EXPECT_FALSE(List().IsShown());
  for (const wchar_t* query : {L"one", L"two", L"one", L"nofield:", L"three"}) {
    Open();
    Type(query);
    Key(kKeyEnter);
    EXPECT_EQ(m_toolkit.FocusWindow(), &Field());
  }
  Open();
  Type(L"closed");
  Key(kKeyEscape);
  Open();
  Key(kKeyDown);
  EXPECT_THAT(Offered(), ElementsAre(L"closed", L"three", L"one", L"two"));
  Key(kKeyDown);
  Key(kKeyEnter);
  EXPECT_EQ(Query(), L"three");
  EXPECT_EQ(Field().GetText(), L"three");
  EXPECT_FALSE(List().IsShown());
  Key(kKeyDown);
  Key(kKeyEscape);  // the list first
  EXPECT_TRUE(IsOpen());
  EXPECT_FALSE(List().IsShown());
  for (int i = 0; i < 30; ++i) {
    Open();
    Type(std::to_wstring(i));
    Key(kKeyEnter);
  }
  Open();
  Key(kKeyDown);
  EXPECT_EQ(Offered().size(), FindHistory::kMost);
  EXPECT_EQ(Offered().front(), L"29");
  Click(List(), {10, 10 + HeadlessToolkit::kFontHeight});
  EXPECT_EQ(Query(), L"28");
  EXPECT_EQ(m_toolkit.FocusWindow(), &Field());
}

TEST_F(Find, OffersWhatMayBeMeant) {
  Open();
  EXPECT_THAT(Offered(), ElementsAre());
  Type(L"bolt -ty");
  EXPECT_THAT(Offered(), ElementsAre(L"type:"));
  Key(kKeyTab);
  EXPECT_EQ(Field().GetText(), L"bolt -type:");
  EXPECT_THAT(Offered(), ::testing::Contains(L"surface"));
  Type(L"su");
  EXPECT_THAT(Offered(), ElementsAre(L"surface"));
  Key(kKeyDown);
  Key(kKeyEnter);
  EXPECT_EQ(Query(), L"bolt -type:surface");
  EXPECT_THAT(Offered(), ElementsAre());
  // With nothing chosen, Enter means what is typed.
  Open();
  Type(L"s");
  EXPECT_FALSE(Offered().empty());
  Key(kKeyEnter);
  EXPECT_EQ(Field().GetText(), L"s");
  EXPECT_THAT(Offered(), ElementsAre());
  Type(L"e");
  EXPECT_FALSE(Offered().empty());
  Key(kKeyEscape);
  EXPECT_THAT(Offered(), ElementsAre());
  EXPECT_TRUE(IsOpen());
  Type(L"zz");
  EXPECT_THAT(Offered(), ElementsAre());
  // In the middle of a query.
  Field().SetText(L"co bolt");
  Field().Select(2, 2);
  Type(L"l");
  EXPECT_THAT(Offered(), ElementsAre(L"colour:"));
  Click(List(), {10, 10});
  EXPECT_EQ(Field().GetText(), L"colour: bolt");
  // It hangs below the field and goes with the focus.
  Key(kKeyEscape);
  Open();
  Type(L"t");
  const CRect field = Field().GetPlace();
  EXPECT_EQ(List().GetPlace().top, field.bottom);
  EXPECT_EQ(List().GetPlace().left, field.left);
  const auto lines = static_cast<int>(Offered().size());
  EXPECT_GT(List().GetPlace().Height(), lines * HeadlessToolkit::kFontHeight);
  m_panel.MoveWindow({0, 0, 360, 100});  // as far as there is room
  Settle();
  Type(L"y");
  EXPECT_LE(List().GetPlace().bottom, 100);
  Tree().SetFocus();
  Settle();
  EXPECT_FALSE(List().IsShown());
}

TEST_F(Find, TabGoesThroughTheBarAndOutOfIt) {
  Open();
  for (const int part :
       {FindBar::kFilter, FindBar::kFind, FindBar::kPrevious, FindBar::kNext, FindBar::kAll, FindBar::kClose}) {
    Key(kKeyTab);
    EXPECT_EQ(m_toolkit.FocusWindow(), &Part(part));
    EXPECT_NE(m_toolkit.Paint(Part(part)).back().find("focus"), std::string::npos);
  }
  Key(kKeyTab);
  EXPECT_EQ(m_toolkit.FocusWindow(), &Tree());
  Key(kKeyTab, kMouseShift);
  EXPECT_EQ(m_toolkit.FocusWindow(), &Part(FindBar::kClose));
  Key(kKeySpace);
  EXPECT_EQ(BarHeight(), 0);
}

TEST_F(Find, ASearchOfTheHostsStandsInTheBar) {
  Open();
  EXPECT_EQ(m_panel.SetFind(L"Item 2"), 1);
  Settle();
  EXPECT_EQ(Field().GetText(), L"Item 2");
  EXPECT_TRUE(m_toolkit.AccessibleOf(Part(FindBar::kFind)).chosen);
  EXPECT_EQ(m_panel.SetFilter(L"nofield:3"), 0);
  Settle();
  EXPECT_EQ(Field().GetText(), L"Item 2");
  EXPECT_EQ(Query(), L"Item 2");
  m_panel.ClearFilter();
  Settle();
  EXPECT_EQ(Field().GetText(), L"");
  EXPECT_FALSE(Finder().IsOn());
}

TEST_F(Find, AClosedBarSaysThatTheTreeIsFiltered) {
  EXPECT_EQ(m_panel.SetFilter(L"Item 1"), 1);
  Settle();
  EXPECT_GT(BarHeight(), 0);
  EXPECT_FALSE(Field().IsShown());
  EXPECT_THAT(Count(), HasSubstr(L"Filter: Item 1 \x2013 "));
  EXPECT_THAT(m_toolkit.Paint(Part(FindBar::kCount)).front(), HasSubstr("#0078D7"));  // what is selected has it
  Click(Part(FindBar::kCount));
  EXPECT_TRUE(IsOpen());
  EXPECT_EQ(Field().GetText(), L"Item 1");
  m_panel.ShowFindBar(0);
  Settle();
  EXPECT_EQ(Query(), L"Item 1");
  EXPECT_FALSE(IsOpen());
  EXPECT_GT(BarHeight(), 0);
  m_panel.SetFilter(CString(300, L'x'));
  Settle();
  EXPECT_THAT(Count(), HasSubstr(L"... \x2013 "));
  Key(kKeyTab, kMouseShift);
  EXPECT_EQ(m_toolkit.FocusWindow(), &Part(FindBar::kClose));
  Key(kKeySpace);
  EXPECT_EQ(BarHeight(), 0);
  EXPECT_FALSE(Finder().IsOn());
  EXPECT_EQ(m_toolkit.FocusWindow(), &Tree());
}

TEST_F(Find, CountsMatchesAndGoesThroughThem) {
  Open();
  m_toolkit.TakeSpoken();
  Type(L"item 3");
  EXPECT_EQ(Count(), L"13 of 41");  // 3, 13, 23, 30 to 39
  EXPECT_EQ(m_panel.GetMatchCount(), 13);
  EXPECT_EQ(m_panel.IsFilterDone(), 1);
  EXPECT_EQ(m_toolkit.TakeSpoken().back(), L"13 of 41");
  const auto caret = [this] { return Tree().GetItemText(Tree().GetFocusedItem(), 0); };
  Key(kKeyEnter);
  EXPECT_EQ(caret(), L"Item 3");
  Key(kKeyF3);
  EXPECT_EQ(caret(), L"Item 13");
  Key(kKeyEnter, kMouseShift);
  EXPECT_EQ(caret(), L"Item 3");
  Key(kKeyF3, kMouseShift);  // round the end
  EXPECT_EQ(caret(), L"Item 39");
  Click(Part(FindBar::kNext));
  EXPECT_EQ(caret(), L"Item 3");
  Click(Part(FindBar::kPrevious));
  EXPECT_EQ(caret(), L"Item 39");
  EXPECT_EQ(m_toolkit.FocusWindow(), &Field());
  EXPECT_EQ(Count(), L"13 of 41");
  Key(kKeyF, kMouseControl | kMouseShift);
  EXPECT_EQ(Count(), L"Match 13 of 13");
  Tree().SetFocus();
  Key(kKeyF3);
  EXPECT_EQ(Count(), L"Match 1 of 13");
  EXPECT_EQ(m_toolkit.TakeSpoken().back(), L"Match 1 of 13");
  Key(kKeyUp);
  EXPECT_EQ(Count(), L"13 of 41");
  // A row that comes is counted, but screen readers are told what they have asked for only.
  (new InputRow(&Tree(), Tree().GetQDRootItem(), L"Item 399"))->MakeItem(kInsertLast);
  Settle();
  EXPECT_EQ(Count(), L"14 of 42");
  EXPECT_THAT(m_toolkit.TakeSpoken(), ElementsAre());
  Open();
  Key(kKeyEnter, kMouseControl);
  EXPECT_EQ(Tree().GetSelectedCount(), 14);
  EXPECT_EQ(m_panel.SelectMatches(), 1);
  Type(L"nobody");
  EXPECT_EQ(Count(), L"No row matches");
  EXPECT_EQ(m_panel.SelectMatches(), 0);
  EXPECT_EQ(m_panel.FindNext(1), 0);
  Key(kKeyEscape);
  EXPECT_EQ(m_panel.SetFilter(L"item 39"), 1);
  EXPECT_EQ(m_panel.FindNext(1), 1);
  Settle();
  EXPECT_EQ(caret(), L"Item 39");
  Key(kKeyF3);  // the bar is closed
  EXPECT_EQ(caret(), L"Item 399");
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(Count(), L"Filter: item 39 \x2013 2 of 42");
  for (int i = 0; i < 1200; ++i) (new InputRow(&Tree(), Tree().GetQDRootItem(), L"More"))->MakeItem(kInsertLast);
  Settle();
  EXPECT_EQ(Count(), L"Filter: item 39 \x2013 2 of 1,242");
}

TEST_F(Find, SpeaksTheNewLanguage) {
  Open();
  EXPECT_EQ(m_toolkit.AccessibleOf(Field()).name, L"Find rows");
  const struct Table final : CMSGFunction::ITable {
    bool Find(std::string_view key, CString& text) const override {
      text = L"<" + CString(key.begin(), key.end()) + L">";
      return true;
    }
  } table;
  m_panel.OnChangeLanguage();
  Settle();
  EXPECT_EQ(m_toolkit.AccessibleOf(Field()).name, L"<IDS_QD_WRT_FIND_ROWS>");
  EXPECT_EQ(m_toolkit.HintOf(Field()), L"<IDS_QD_WRT_FIND_HINT>");
  EXPECT_EQ(m_toolkit.AccessibleOf(Part(FindBar::kNext)).name, L"<IDS_QD_WRT_FIND_NEXT>");
  EXPECT_GE(Part(FindBar::kFilter).GetPlace().Width(), 24 * HeadlessToolkit::kCharacterWidth);
}

TEST_F(Find, SaysThatAQueryHasNoWordsInTheNewLanguage) {
  Open();
  Type(L"type:surface -colour:green");
  ASSERT_EQ(Sentence(), L"");
  const struct Table final : CMSGFunction::ITable {
    bool Find(std::string_view key, CString& text) const override {
      text = L"<" + CString(key.begin(), key.end()) + L">";
      return true;
    }
  } table;
  m_panel.OnChangeLanguage();
  Settle();
  EXPECT_EQ(Sentence(), L"") << "English is understood beside it";
  Field().SetText(L"");
  Type(L"type:<ids_qd_wrt_find_part>");
  ASSERT_EQ(Sentence(), L"");
  ASSERT_TRUE(Finder().IsOn());
  {
    const EnglishTexts english;
    m_panel.OnChangeLanguage();
    Settle();
    EXPECT_NE(Sentence(), L"");
  }
  EXPECT_EQ(Field().GetText(), L"type:<ids_qd_wrt_find_part>");
}

/// A filter takes rows out of the selection; nobody gave them up.
TEST_F(Find, WhatAFilterTookOutOfTheSelectionComesBackWithEscape) {
  const std::size_t all = [this] {
    m_toolkit.Key(Tree(), kKeyA, kMouseControl);
    Settle();
    return Tree().GetSelectedRowCount();
  }();
  Open();
  Type(L"item 39");
  const std::size_t left = Tree().GetSelectedRowCount();
  ASSERT_LT(left, all);
  Type(L"9");
  ASSERT_EQ(Tree().GetSelectedRowCount(), 0U);
  Key(kKeyEscape);
  EXPECT_EQ(Tree().GetSelectedRowCount(), all);
  // What was selected since is not disturbed.
  Open();
  Type(L"item 39");
  m_toolkit.Click(Tree(), {100, 30});
  Settle();
  ASSERT_EQ(Tree().GetSelectedRowCount(), 1U);
  Key(kKeyEscape);
  Key(kKeyEscape);
  m_panel.ClearFilter();
  Settle();
  EXPECT_EQ(Tree().GetSelectedRowCount(), 1U);
}

TEST_F(Find, TheCountFollowsAClickIntoTheTree) {
  m_panel.SetFind(L"item 3");
  Key(kKeyF3);
  ASSERT_THAT(Count(), HasSubstr(L"Match 1 of 13"));
  Click(Tree(), {100, 30});
  EXPECT_THAT(Count(), HasSubstr(L"13 of 41"));
}

/// Together with Alt it is AltGr, which types signs.
TEST_F(Find, ControlWithAltIsNoCommand) {
  Key(kKeyF, kMouseControl | kMouseAlt);
  EXPECT_FALSE(IsOpen());
  Open();
  Type(L"item 3");
  const unsigned altGr = kMouseControl | kMouseAlt;
  EXPECT_FALSE(Field().PreTranslateMessage({.kind = MessageKind::KeyDown, .flags = altGr, .key = kKeyF}));
  Key(kKeyF, altGr | kMouseShift);
  EXPECT_TRUE(Finder().IsFiltering());
  Key(kKeyEnter, altGr);
  EXPECT_EQ(Tree().GetSelectedCount(), 1) << "goes to the next match";
  // Nor is it in the tree.
  for (const int key : {kKeyA, kKeyI, kKeyC}) m_toolkit.Key(Tree(), key, altGr);
  Settle();
  EXPECT_EQ(Tree().GetSelectedCount(), 1);
  EXPECT_EQ(m_toolkit.ClipboardText(), L"");
}

TEST_F(Find, AWrongQueryIsAllThatIsSaid) {
  Open();
  Type(L"Item");
  m_toolkit.TakeSpoken();
  m_toolkit.Paste(Field(), L" nofield:1");
  Settle();
  EXPECT_THAT(m_toolkit.TakeSpoken(), ElementsAre(Sentence()));
  m_panel.SetFind(L"nofield:2");
  Settle();
  EXPECT_THAT(m_toolkit.TakeSpoken(), ElementsAre());
}

TEST_F(Find, TitlesGoWithTheWindow) {
  Open();
  ASSERT_TRUE(Finder().IsPrepared());
  m_panel.DestroyWindow();
  EXPECT_FALSE(Finder().IsPrepared());
}

/// A filter deselects what it hides, and the host may close the panel when it hears of that, from the tree or
/// through the window around it.
TEST_F(Find, ThePanelMayGoWhenASearchTellsTheHost) {
  struct Host final : CWnd {
    void OnToldNotice(const Notice&) override {
      if (isArmed) panel.reset();
    }
    std::unique_ptr<CWorksTreeBar> panel;
    bool isArmed = false;
  };
  for (const bool isTold : {false, true}) {
    Host host;
    host.Create(nullptr, 0, {0, 0, 360, 500});
    std::unique_ptr<CWorksTreeBar>& panel = host.panel;
    panel = std::make_unique<CWorksTreeBar>();
    panel->Create(isTold ? &host : nullptr, 1, {0, 0, 360, 500});
    panel->SetDocument(&m_doc);
    panel->CreateTreeItems(1, &m_rows, 1);
    CQDTreeListCtrl& tree = panel->GetTreeCtrl();
    tree.SelectItem(tree.GetQDRootItem()->GetChild(5)->GetTreeItemHandle());
    panel->SetFilter(L"Item");
    m_toolkit.Pump();
    host.isArmed = isTold;
    if (!isTold) tree.SetOnSelected([&panel](const std::vector<CQDTreeItem*>&) { panel.reset(); });
    EXPECT_EQ(panel->SetFilter(L"Item 7"), 1);
    // On a busy machine it shows a little later.
    for (int i = 0; panel != nullptr && i < 100; ++i) {
      m_toolkit.Advance(1);
      m_toolkit.Pump();
    }
    EXPECT_EQ(panel, nullptr);
  }
}

}  // namespace
}  // namespace qd::test
