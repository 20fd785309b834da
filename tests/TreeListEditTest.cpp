// In-place editing of the tree-list control.

#include "support/TreeList.h"

namespace qd::test {
namespace {

/// Writes down what editing tells.
class EditedTree final : public CTreeListCtrl {
 public:
  ~EditedTree() override { DestroyWindow(); }
  std::string log;
  std::function<void()> onChange;

 protected:
  void OnEditChange(HTREEITEM, int column, const CString& text, int escape) override {
    log +=
        "change(" + std::to_string(column) + "," + workbench::ToUtf8(text) + "," + std::to_string(escape) + ") ";
    if (onChange) onChange();
  }
};

class Editing : public ::testing::Test {
 protected:
  Editing() {
    m_parent.Create(nullptr, 0, {0, 0, 400, 400});
    m_tree.GetHeader().Create(&m_parent, 1, {0, 0, 300, 20});
    m_tree.Create(&m_parent, 2, {0, 20, 300, 220});
    m_tree.InsertColumn(0, L"Name", 0, 180, 0);
    m_plain = m_tree.InsertItem(L"plain", 0, 0, {}, kInsertLast);
    m_edit = m_tree.InsertItem(L"edit", 1, 0, {}, kInsertLast);
    m_combo = m_tree.InsertItem(L"combo", 0, 1, {}, kInsertLast);
    m_toolkit.Pump();
  }
  void ShowEdit(HTREEITEM row) {
    m_tree.SetSelectedItem(row);
    m_tree.ShowEdit(row);
  }
  CWnd* Box() { return m_toolkit.FindChild(m_tree, 1); }
  void Key(int key, unsigned flags = 0) {
    m_toolkit.Key(*Box(), key, flags);
    m_toolkit.Pump();
  }
  void Type(const CString& text) {
    m_toolkit.Type(*Box(), text);
    m_toolkit.Pump();
  }
  std::string TakeLog() { return std::exchange(m_tree.log, {}); }

  HeadlessToolkit m_toolkit;
  Parent m_parent;
  EditedTree m_tree;
  HTREEITEM m_plain, m_edit, m_combo;
};

TEST_F(Editing, TheBoxWidensToTheWindowsEdgeAndNoFarther) {
  m_tree.GetHeader().SetItemWidth(0, 70);
  m_tree.RecalcColumnsWidth();
  ShowEdit(m_edit);
  const int before = Box()->GetPlace().Width();
  Type(L"i");  // shorter than the box: it stays
  EXPECT_EQ(Box()->GetPlace().Width(), before);
  Type(L"2345678");
  EXPECT_EQ(Box()->GetPlace().Width(), std::max(before, 8 * HeadlessToolkit::kCharacterWidth + 5));
  m_toolkit.Paste(*Box(), CString(14, L'w'));
  EXPECT_EQ(Box()->GetPlace().Width(), 22 * HeadlessToolkit::kCharacterWidth + 5);
  Type(CString(100, L'w'));
  EXPECT_EQ(Box()->GetPlace().right, m_tree.GetClientRect().right);
}

struct PlaceCase {
  int column;  // width
  int offset;
  CRect place;
};
class EditPlaces : public Editing, public ::testing::WithParamInterface<PlaceCase> {};
TEST_P(EditPlaces, AreOverTheTitleInsideTheWindowAndNeverTooNarrow) {
  m_tree.GetHeader().SetItemWidth(0, GetParam().column);
  m_tree.RecalcColumnsWidth();
  m_tree.SetHorizontalOffset(GetParam().offset);
  ShowEdit(m_edit);
  ASSERT_NE(Box(), nullptr);
  EXPECT_EQ(Box()->GetPlace(), GetParam().place);
}
INSTANTIATE_TEST_SUITE_P(
    Columns, EditPlaces,
    ::testing::Values(PlaceCase{180, 0, {19, 20, 180, 40}}, PlaceCase{180, -10, {9, 20, 170, 40}},
                      PlaceCase{180, -50, {0, 20, 130, 40}}, PlaceCase{500, 0, {19, 20, 300, 40}},
                      PlaceCase{58, 0, {19, 20, 59, 40}}, PlaceCase{180, -400, {0, 20, 40, 40}}));

/// A row that is scrolled away comes into sight for its editor; one that moves takes it along.
TEST_F(Editing, OneEditAfterAnotherStartsAfresh) {
  for (int i = 0; i < 30; ++i) m_tree.InsertItem(L"row", 0, 0, {}, kInsertLast);
  m_toolkit.Pump();
  m_tree.ScrollTo(20);
  ShowEdit(m_edit);
  ASSERT_NE(Box(), nullptr);
  EXPECT_EQ(m_tree.GetFirstVisibleItem(), m_edit);
  Type(L"first");
  Key(kKeyEscape);
  EXPECT_EQ(TakeLog(), "change(0,first,1) ");
  ShowEdit(m_edit);
  EXPECT_FALSE(m_tree.GetEditBox()->IsEscape() || m_tree.GetEditBox()->IsEscapeKey());
  Key(kKeyTab);
  EXPECT_EQ(TakeLog(), "change(0,edit,0) ");
  // Gone with its row, hidden with its branch, closed by program: the focus goes back and nobody is told.
  int ends = 0;
  m_parent.onNotice = [&ends](Notice& notice) {
    if (notice.code == CTreeListCtrl::kNoticeEndLabelEdit) ++ends;
  };
  const HTREEITEM inner = m_tree.InsertItem(L"inner", 1, 0, m_plain, kInsertLast);
  for (int how = 0; how < 3; ++how) {
    m_tree.EnsureVisible(inner);
    ShowEdit(inner);
    ASSERT_NE(Box(), nullptr);
    Type(L"lost");
    if (how == 0) m_tree.Expand(m_plain, ExpandAction::Collapse);
    if (how == 1) m_tree.DeleteBoxes();
    if (how == 2) m_tree.DeleteItem(m_plain);
    m_toolkit.Pump();
    EXPECT_EQ(Box(), nullptr);
    EXPECT_EQ(m_toolkit.FocusWindow(), &m_tree);
    EXPECT_EQ(TakeLog(), "") << how;
    EXPECT_EQ(ends, 0) << how;
  }
  ShowEdit(m_edit);
  m_tree.DeleteAllItems();
  EXPECT_EQ(Box(), nullptr);
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(Editing, OtherKeysEdit) {
  ShowEdit(m_edit);
  Key(kKeyDelete);
  Type(L"a.b'(%");
  Key('V', kMouseControl);
  EXPECT_EQ(m_tree.IsEditing(), 1);
  Key(kKeyEnter);
  EXPECT_EQ(TakeLog(), "change(0,a.b'(%,0) ");
}

TEST_F(Editing, TheHandlerMayDeleteTheRowOrDestroyTheControl) {
  m_tree.onChange = [this] { m_tree.DeleteItem(m_edit); };
  ShowEdit(m_edit);
  Key(kKeyEscape);
  EXPECT_EQ(Box(), nullptr);
  m_edit = m_tree.InsertItem(L"edit", 1, 0, {}, kInsertLast);
  m_tree.onChange = [this] { m_tree.DestroyWindow(); };
  ShowEdit(m_edit);
  Key(kKeyEnter);
  EXPECT_EQ(m_tree.RowCount(), 0U);
}

TEST_F(Editing, ARowHasABoxOrAListAndNeverBoth) {
  CTLItem record;
  for (const bool list : {true, false, true}) {
    list ? record.SetCombo(1) : record.SetEditable(1);
    EXPECT_EQ(record.HasCombo(), list);
    EXPECT_EQ(record.IsEditable(), !list);
  }
}

TEST_F(Editing, AListGivesItsChoiceToTheRow) {
  m_tree.DeleteItem(m_plain);
  m_tree.DeleteItem(m_edit);
  for (const int key : {kKeyEnter, kKeyTab, kKeyEscape}) {
    m_tree.SetItemText(m_combo, 0, L"combo");
    m_toolkit.DoubleClick(m_tree, {60, 3});
    m_toolkit.Pump();
    auto* list = dynamic_cast<CTreeListComboBox*>(Box());
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->GetPlace(), (CRect{19, 2, 180, 98}));
    EXPECT_EQ(list->GetText(), L"combo");
    list->SelectString(L"whatever");
    Key(key);
    EXPECT_EQ(m_tree.GetItemText(m_combo, 0), L"whatever") << key;
    EXPECT_EQ(Box(), nullptr);
  }
  EXPECT_EQ(TakeLog(), "");
}

}  // namespace
}  // namespace qd::test
