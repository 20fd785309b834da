// The tree-list control under random input, beside a naive one: after every act both must show, tell and paint the
// same.

#include <gtest/gtest.h>

#include <random>

#include "platform/headless/HeadlessToolkit.h"
#include "support/HeardTreeList.h"
#include "support/NaiveTreeList.h"

namespace qd::test {
namespace {

using Naive = NaiveTreeList;

class TreeListModel : public ::testing::TestWithParam<int> {
 protected:
  TreeListModel() {
    for (const int index : {1, 2, 3}) {
      auto picture = std::make_shared<Picture>();
      picture->width = picture->height = 16;
      picture->pixels.assign(256, static_cast<std::uint32_t>(index) * 0x10101U);
      m_images.SetPicture(m_images.AddStrip(index == 1 ? 2 : 1) + (index == 1 ? 1 : 0), picture);
    }
    m_tree.name = [this](HTREEITEM row) { return std::to_string(IdOf(row)); };
    m_parent.Create(nullptr, 0, {0, 0, 400, 400});
    m_tree.GetHeader().Create(&m_parent, 1, {0, 0, Naive::kWidth, 20});
    m_tree.Create(&m_parent, 2, {30, 40, 30 + Naive::kWidth, 40 + Naive::kHeight});
    m_tree.SetPane(&m_parent);
    m_tree.SetImageList(&m_images, &m_images);
    m_naive.images = &m_images;
    for (int column = 0; column < 3; ++column) {
      m_tree.InsertColumn(column, L"c", column, m_naive.width[static_cast<std::size_t>(column)], 0);
    }
    m_toolkit.SetScreen(PaintsOn(m_screen, m_tree));
    m_tree.routed = m_naive.routed = GetParam() % 2 == 0;
    m_naive.grid = GetParam() % 3 == 0;
    m_tree.SetGridLines(m_naive.grid ? 1 : 0);
    m_naive.gridStyle = static_cast<unsigned>(GetParam() / 3 % 4);
    m_tree.SetGridStyle(m_naive.gridStyle);
    m_toolkit.Pump();
  }

  // ---- chance ---------------------------------------------------------------------------------------------
  int Roll(int sides) { return static_cast<int>(m_random() % static_cast<unsigned>(sides)); }
  bool OneIn(int sides) { return Roll(sides) == 0; }
  template <typename T>
  T OneOf(const std::vector<T>& choices) {
    return choices[static_cast<std::size_t>(Roll(static_cast<int>(choices.size())))];
  }
  /// A row, more often one that is on the screen; none when there is none.
  int AnyRow() {
    const std::vector<int> all = m_naive.Below(Naive::kNone);
    if (all.empty()) return Naive::kNone;
    if (OneIn(3)) return OneOf(all);
    const int shown = m_naive.At(m_naive.TopPosition() + Roll(Naive::kPage + 2));
    return shown != Naive::kNone ? shown : all.back();
  }
  unsigned AnyKeys() {
    return OneOf<unsigned>({0, 0, 0, kMouseShift, kMouseControl, kMouseShift | kMouseControl});
  }
  /// A point, mostly at an edge of something that stands on the screen.
  CPoint AnyPoint() {
    if (OneIn(8)) return {Roll(Naive::kWidth + 40) - 20, Roll(Naive::kHeight + 40) - 20};
    const int line = Roll(Naive::kPage + 2);
    const int row = m_naive.At(m_naive.TopPosition() + line);
    const int y = line * Naive::kLine + OneOf<int>({0, 2, 3, 4, 10, Naive::kLine - 1});
    if (row == Naive::kNone) return {Roll(Naive::kWidth), y};
    const int edge = OneOf<int>({m_naive.CheckLeft(row) - Naive::kCell, m_naive.CheckLeft(row),
                                 m_naive.IconLeft(row), m_naive.TextLeft(row), m_naive.TextLeft(row),
                                 m_naive.TextLeft(row) + Naive::kLabel, m_naive.width[0]});
    return {edge + m_naive.offset - Roll(2), y};
  }
  /// A point about as far from another as begins a drag.
  CPoint NearTo(CPoint point) {
    const std::vector<int> steps{-5, -4, 0, 0, 4, 5};
    return {point.x + OneOf(steps), point.y + OneOf(steps)};
  }
  int IdOf(HTREEITEM handle) const {
    if (!handle) return Naive::kNone;
    for (std::size_t id = 1; id < m_naive.rows.size(); ++id) {
      if (m_naive.rows[id].handle == handle) return static_cast<int>(id);
    }
    return -1;
  }
  HTREEITEM H(int row) const { return m_naive.rows[static_cast<std::size_t>(row)].handle; }
  Naive::Row& R(int row) { return m_naive.rows[static_cast<std::size_t>(row)]; }

  // ---- acts by program ------------------------------------------------------------------------------------
  void Insert() {
    const int parent = OneIn(3) ? Naive::kNone : AnyRow();
    const std::vector<int>& siblings = R(parent).children;
    const int place = Roll(3);
    const std::size_t index = place == 0 ? 0
                              : place == 1 || siblings.empty()
                                  ? siblings.size()
                                  : static_cast<std::size_t>(Roll(siblings.size())) + 1;
    const HTREEITEM after = place == 0                       ? kInsertFirst
                            : place == 1 || siblings.empty() ? kInsertLast
                                                             : H(siblings[index - 1]);
    Naive::Row row;
    row.text[0] = OneOf<CString>({L"row", L"item ", L"a long title "}) + std::to_wstring(Roll(30));
    row.editable = OneIn(3);
    row.combo = !row.editable && OneIn(6);
    row.image = Roll(3);
    row.selectedImage = Roll(4);
    m_did << "insert " << m_naive.rows.size() << " below " << parent << " at " << index;
    const HTREEITEM dead = H(AnyDead());
    if (OneIn(8) && dead) {
      EXPECT_FALSE(m_tree.InsertItem(row.text[0], 1, 0, dead, after));
      m_did << " of a dead row";
      ++m_naive.count;  // a row is counted before it is put in
      return;
    }
    const HTREEITEM above = parent == Naive::kNone && OneIn(2) ? kTreeRoot : H(parent);
    if (OneIn(3)) {
      row.data = static_cast<std::uint32_t>(Roll(1000));
      row.check = Roll(4);
      row.selected = OneIn(4);
      row.record = !OneIn(5);
      if (!row.record) row.text[0].clear(), row.editable = row.combo = false, row.data = 0;
      const unsigned all = CTreeListCtrl::kAttributeImage | CTreeListCtrl::kAttributeSelectedImage |
                           CTreeListCtrl::kAttributeState | (row.record ? CTreeListCtrl::kAttributeData : 0U);
      const unsigned without =
          OneOf<unsigned>({0, CTreeListCtrl::kAttributeImage, CTreeListCtrl::kAttributeSelectedImage,
                           CTreeListCtrl::kAttributeState});
      const unsigned state = static_cast<unsigned>(row.check) << 12U | (row.selected ? kRowSelected : 0U);
      row.handle = m_tree.InsertItem(all & ~without, row.text[0], row.image, row.selectedImage, state,
                                     kRowStateImage | kRowSelected, row.data, above, after, row.editable ? 1 : 0,
                                     row.combo ? 1 : 0);
      if (without == CTreeListCtrl::kAttributeImage) row.image = 0;
      if (without == CTreeListCtrl::kAttributeSelectedImage) row.selectedImage = 0;
      if (without == CTreeListCtrl::kAttributeState) row.check = 0, row.selected = false;
    } else {
      row.handle = m_tree.InsertItem(row.text[0], row.image, row.selectedImage, row.editable ? 1 : 0,
                                     row.combo ? 1 : 0, above, after);
    }
    EXPECT_EQ(m_parent.counted, m_naive.count + 1);
    EXPECT_EQ(m_parent.standing + 1, m_tree.RowCount());
    if (row.record && OneIn(2)) {
      row.text[1] = AnyKey();
      m_tree.SetItemText(row.handle, 1, row.text[1]);
    }
    m_naive.Insert(row, parent, index);
  }
  int AnyDead() {
    const auto dead =
        std::find_if(m_naive.rows.begin() + 1, m_naive.rows.end(), [](const auto& r) { return !r.live; });
    return dead == m_naive.rows.end() ? Naive::kNone : static_cast<int>(dead - m_naive.rows.begin());
  }
  CString AnyKey() { return OneOf<CString>({L"7", L"12 ", L"4  ", L"-3", L"123456789"}); }
  void ChangeRows(int row) {
    const int other = AnyRow();
    switch (Roll(10)) {
      case 0:
      case 1:
        m_did << "delete " << row;
        EXPECT_EQ(m_tree.DeleteItem(H(row)), R(row).record ? 1 : 0);
        return m_naive.Delete(row);
      case 2: {
        m_did << "delete below " << row;
        const int failed = m_naive.DeleteBelow(row);
        EXPECT_EQ(m_tree.DeleteSubItems(H(row)), failed);
        return;
      }
      case 3: {
        const std::size_t place = OneIn(2) ? 0 : R(other).children.size();
        m_did << "copy " << row << " below " << other << " at " << place;
        const HTREEITEM made = m_tree.CopyItem(H(row), H(other), place == 0 ? kInsertFirst : kInsertLast);
        const int copy = m_naive.Copy(row, other, place);
        if (copy != Naive::kNone) R(copy).handle = made;
        EXPECT_EQ(static_cast<bool>(made), copy != Naive::kNone);
        return;
      }
      case 4: {
        m_did << "move " << row << " below " << other;
        const HTREEITEM made = m_tree.MoveItem(H(row), H(other), kInsertLast);
        const int moved = m_naive.Move(row, other);
        if (moved != Naive::kNone) R(moved).handle = made;
        EXPECT_EQ(static_cast<bool>(made), moved != Naive::kNone);
        return;
      }
      case 5: {
        const bool byName = OneIn(2);
        m_did << "sort below " << row << (byName ? " by name" : " by key");
        m_tree.SortItems(0, byName ? 1 : 0, H(row));
        const auto key = [](const Naive::Row& each) {
          return each.text[1].empty() ? 0UL : static_cast<unsigned>(std::stoi(each.text[1]));
        };
        const auto name = [](const Naive::Row& each) {
          const std::size_t digit = std::min(each.text[0].find_first_of(L"0123456789"), each.text[0].size());
          const CString number = each.text[0].substr(digit);
          return std::pair(each.text[0].substr(0, digit), number.empty() ? 0 : std::stoi(number));
        };
        return m_naive.SortBy(row, [&](const Naive::Row& a, const Naive::Row& b) {
          return byName ? name(a) < name(b) : key(a) < key(b);
        });
      }
      case 6:
        if (!OneIn(6)) return;
        m_did << "delete all";
        m_tree.DeleteAllItems();
        return m_naive.DeleteAll();
      default:
        return Insert();
    }
  }
  void ChangeLook(int row) {
    m_did << "look of " << row;
    Naive::Row& naive = R(row);
    switch (Roll(7)) {
      case 0:
        if (!naive.record) return;
        naive.text[1] = AnyKey();
        m_tree.SetItemText(H(row), 1, naive.text[1]);
        return m_tree.InvalidateRow(H(row));
      case 1:
        EXPECT_EQ(m_tree.SetItemColor(H(row), 0xFF102030, 1), naive.record ? 1 : 0);
        if (naive.record) naive.colour = 0xFF102030;
        return;
      case 2:
        EXPECT_EQ(m_tree.SetItemBold(H(row), 1, 1), naive.record ? 1 : 0);
        naive.bold = naive.record;
        return;
      case 3:
        naive.check = Roll(4);
        return m_tree.SetChecked(H(row), naive.check);
      case 4:
        naive.image = Roll(4);
        naive.selectedImage = Roll(4);
        EXPECT_EQ(m_tree.SetItemImage(H(row), naive.image, naive.selectedImage), 1);
        return;
      case 5: {
        const std::size_t column = static_cast<std::size_t>(Roll(3));
        const int width = OneOf<int>({8, 60, 120, 300});
        if (std::exchange(m_naive.width[column], width) != width) m_naive.MouseLeave();  // a tip may be of no use
        m_did << ", column " << column << " " << width << " wide";
        m_tree.GetHeader().SetItemWidth(static_cast<int>(column), width);
        return m_tree.Invalidate();
      }
      default:
        m_did << ", offset";
        m_naive.SetOffset(-OneOf<int>({0, 20, 100}));
        return m_tree.SetHorizontalOffset(m_naive.offset);
    }
  }
  void ChangeSelection(int row) {
    const int other = AnyRow();
    const bool on = OneIn(2);
    const bool only = OneIn(2);
    const int act = Roll(14);
    m_did << "selection " << act << " of " << row << ", " << other << (on ? ", on" : "") << (only ? ", only" : "");
    switch (act) {
      case 0:
      case 1:
        R(row).selected = on;
        m_tree.SetItemState(H(row), on ? kRowSelected : 0U, kRowSelected);
        return;
      case 2:
        m_naive.Focus(row, on);
        m_tree.SetItemState(H(row), on ? kRowFocused : 0U, kRowFocused);
        return;
      case 3:
        // Who takes the focus from a row does not select it with the same call.
        if (on || !only || row != m_naive.caret) R(row).selected = only;
        m_naive.Focus(row, on);
        if (on) R(row).selected = only;
        m_tree.SetItemState(H(row), (on ? kRowFocused : 0U) | (only ? kRowSelected : 0U),
                            kRowFocused | kRowSelected);
        return;
      case 4:
        if (m_naive.caret != Naive::kNone) m_naive.Focus(m_naive.caret, false);
        m_tree.FocusItem({});
        return;
      case 5:
        m_naive.SetCaret(row);
        m_tree.SelectItem(H(row));
        return;
      case 6:
        m_naive.SelectVisible(on);
        return m_tree.SelectAll(on ? 1 : 0);
      case 7:
        m_naive.SelectRange(row, other, only);
        return m_tree.SelectRange(H(row), H(other), only ? 1 : 0);
      case 8: {
        const int met = m_naive.SelectChildren(row, on, only);
        EXPECT_EQ(m_tree.SelectChildren(H(row), on ? 1 : 0, only ? 1 : 0), met);
        return;
      }
      case 9:
        if (!on) m_naive.ClearFirstBranch(row);
        return m_tree.SelectAllIgnore(on ? 1 : 0, H(row));
      case 10:
        if (!OneIn(4)) return;
        EXPECT_EQ(m_tree.SetMultiSelect(on ? 1 : 0), m_naive.multi ? 1 : 0);
        return m_naive.SetMulti(on);
      case 11:
        m_naive.Clear();
        return m_tree.ClearAllSelected();
      case 12:
        m_naive.SelectAlone(row);
        return m_tree.SelectAlone(H(row));
      default:
        EXPECT_EQ(m_tree.SetBandingHit(on ? 1 : 0), std::exchange(m_naive.textHit, on) ? 1 : 0);
        return;
    }
  }
  void ChangeView(int row) {
    const int act = Roll(6);
    m_did << "view " << act << " of " << row;
    switch (act) {
      case 0: {
        m_naive.vetoes = m_parent.vetoes = OneIn(4);
        const bool on = OneIn(2);
        const bool changes = m_naive.Expand(row, on);
        EXPECT_EQ(m_tree.Expand(H(row), on ? ExpandAction::Expand : ExpandAction::Collapse), changes ? 1 : 0);
        return;
      }
      case 1:
        m_naive.EnsureVisible(row);
        return m_tree.EnsureVisible(H(row));
      case 2: {
        const int position = Roll(m_naive.VisibleCount() + 3);
        m_naive.ScrollTo(position);
        return m_tree.ScrollTo(static_cast<std::size_t>(position));
      }
      case 3: {
        const int lines = Roll(7) - 3;
        m_naive.Wheel(lines);
        return m_toolkit.Enqueue({.kind = MessageKind::Wheel, .target = &m_tree, .amount = lines});
      }
      case 4: {
        const int position = Roll(m_naive.VisibleCount() + 3) - 1;
        m_naive.ScrollBar(position);
        return m_toolkit.Enqueue({.kind = MessageKind::Scroll, .target = &m_tree, .amount = position});
      }
      default:
        m_naive.Toggle(row);
        m_tree.Expand(H(row), ExpandAction::Toggle);
        return;
    }
  }
  void Edit(int row) {
    CWnd* box = m_toolkit.FindChild(m_tree, 1);
    if (box != nullptr && OneIn(2)) {
      const int key = OneOf<int>({kKeyEnter, kKeyTab, kKeyEscape, kKeyDelete, kKeyLeft});
      m_did << "editor key " << key;
      m_toolkit.Key(*box, key);
      if (m_naive.editedAsList && key != kKeyDelete && key != kKeyLeft) m_naive.EndEditor();
      return m_naive.EditorKey(key);
    }
    if (OneIn(3)) {
      m_did << "focus elsewhere";
      m_naive.EndEditor();
      m_naive.focused = false;
      return m_parent.SetFocus();
    }
    const bool same = OneIn(2);
    m_did << "edit " << row << (same ? "" : " without choosing it");
    if (same) m_naive.selectedItem = row;
    if (same) m_tree.SetSelectedItem(H(row));
    m_naive.ShowEdit(row);
    m_tree.ShowEdit(H(row));
  }

  // ---- acts by mouse and keys -----------------------------------------------------------------------------
  void Queue(MessageKind kind, CPoint point, unsigned flags = 0) {
    m_toolkit.Enqueue({.kind = kind, .target = &m_tree, .point = point, .flags = flags});
  }
  void UseMouse() {
    const CPoint point = AnyPoint();
    if (OneIn(8)) {
      m_did << "double click " << point.x << "," << point.y;
      m_toolkit.DoubleClick(m_tree, point);
      m_naive.DoubleClick(point);
      return;
    }
    const bool left = !OneIn(3);
    const unsigned flags = AnyKeys();
    const auto end = OneOf<Naive::End>({Naive::End::Release, Naive::End::Release, Naive::End::Release,
                                        Naive::End::LoseCapture, Naive::End::Escape});
    std::vector<Naive::MoveTo> moves;
    m_did << (left ? "left " : "right ") << flags << " at " << point.x << "," << point.y;
    Queue(left ? MessageKind::LeftDown : MessageKind::RightDown, point, flags);
    for (int i = Roll(4); i > 0; --i) {
      const CPoint to = OneIn(2) ? NearTo(point) : AnyPoint();
      m_did << " to " << to.x << "," << to.y;
      moves.push_back({to});
      Queue(MessageKind::MouseMove, to, flags);
      if (!OneIn(4)) continue;
      m_toolkit.Enqueue({.kind = MessageKind::Timer, .target = &m_tree, .id = 1});
      const CRect client{0, 0, m_naive.Right(), Naive::kHeight};
      if (!client.Contains(to)) moves.push_back({to, true});  // outside, a band goes on by itself
    }
    const CPoint last = OneIn(2) ? point : AnyPoint();
    m_did << " end " << static_cast<int>(end) << " at " << last.x << "," << last.y;
    if (end == Naive::End::LoseCapture) Queue(MessageKind::CaptureLost, {});
    if (end == Naive::End::Escape) m_toolkit.Key(m_tree, kKeyEscape);
    if (end != Naive::End::LoseCapture) Queue(left ? MessageKind::LeftUp : MessageKind::RightUp, last, flags);
    m_naive.Press(left, flags, point, moves, end, last);
  }
  /// The pointer comes to a row, leaves the window or its row, and comes again.
  void Point() {
    CPoint to = AnyPoint();
    if (OneIn(2)) to.x = 30;  // over the titles, where tips come
    for (int times = 1 + Roll(3); times > 0; --times) {
      const bool leaves = OneIn(3);
      m_did << (leaves ? "leave " : "point at ") << to.x << "," << to.y << " ";
      Queue(leaves ? MessageKind::MouseLeave : MessageKind::MouseMove, to);
      if (leaves) {
        m_naive.MouseLeave();
      } else {
        m_naive.MouseMove({to});
      }
      if (OneIn(3)) to = AnyPoint();
    }
  }
  void UseKeys() {
    if (m_toolkit.FindChild(m_tree, 1) != nullptr) return;  // they go to the editor
    if (OneIn(4)) {
      if (OneIn(3)) m_toolkit.Advance(1000), m_naive.typed.clear();
      if (OneIn(3)) m_toolkit.Advance(999 / 8);
      const wchar_t letter = OneOf<wchar_t>({L'r', L'I', L'o', L'a', L't', L' '});
      m_did << "type " << static_cast<char>(letter);
      m_toolkit.Type(m_tree, CString(1, letter));
      return m_naive.Type(letter);
    }
    const int key =
        OneIn(4) ? OneOf<int>({kKeyA, kKeyI, kKeyEscape, kKeyF2, kKeySpace, kKeyAdd, kKeySubtract, kKeyMultiply})
                 : kKeyPageUp + Roll(8);
    const unsigned flags = AnyKeys();
    m_did << "key " << key << " with " << flags;
    m_toolkit.Key(m_tree, key, flags);
    m_naive.Key(key, flags);
  }

  void Act() {
    m_did.str({});
    const int row = AnyRow();
    const int act = Roll(16);
    if (row == Naive::kNone || m_naive.rows.size() < 8 || act < 1) return Insert();
    if (act < 3) return ChangeRows(row);
    if (act < 4) return ChangeLook(row);
    if (act < 6) return ChangeSelection(row);
    if (act < 7) return ChangeView(row);
    if (act < 8) return Edit(row);
    if (act < 12) return UseMouse();
    if (act < 13) return Point();
    UseKeys();
  }

  // ---- comparison -----------------------------------------------------------------------------------------
  std::string Ids(const std::vector<HTREEITEM>& rows) const {
    std::string ids;
    for (const HTREEITEM row : rows) ids += std::to_string(IdOf(row)) + " ";
    return ids;
  }
  static std::string Ids(const std::vector<int>& rows) {
    std::string ids;
    for (const int row : rows) ids += std::to_string(row) + " ";
    return ids;
  }
  void CompareRow(int id, bool shown) {
    const Naive::Row& row = R(id);
    const IAccessibleRows& reader = *m_tree.GetAccessibleRows();
    ASSERT_TRUE(m_tree.IsLive(row.handle)) << id;
    ASSERT_EQ(m_tree.IsExpanded(row.handle), row.expanded) << id;
    ASSERT_EQ(m_tree.IsSelected(row.handle), row.selected) << id;
    ASSERT_EQ(m_tree.WhichCheck(row.handle), row.check) << id;
    ASSERT_EQ(m_tree.GetItemImage(row.handle), row.image) << id;
    ASSERT_EQ(m_tree.GetItemData(row.handle), row.data) << id;
    for (std::size_t column = 0; column < 3; ++column) {
      ASSERT_EQ(m_tree.GetItemText(row.handle, static_cast<int>(column)), row.text[column]) << id;
    }
    ASSERT_EQ(m_tree.GetItemState(row.handle, kRowFocused), id == m_naive.caret ? kRowFocused : 0U) << id;
    CRect line;
    CRect text;
    ASSERT_EQ(m_tree.GetItemRect(row.handle, line, false), shown) << id;
    ASSERT_EQ(m_tree.GetItemRect(row.handle, text, true), shown) << id;
    const int left = m_naive.TextLeft(id);
    const int top = shown ? m_naive.LineTop(id) : 0;
    if (shown) {
      ASSERT_EQ(line, (CRect{0, top, m_naive.Right(), top + Naive::kLine})) << id;
      ASSERT_EQ(text, (CRect{left, top, left + Naive::kLabel, top + Naive::kLine})) << id;
    }
    // As a screen reader sees it.
    const std::vector<int>& children = row.children;
    ASSERT_EQ(reader.ChildCount(row.handle), static_cast<int>(children.size())) << id;
    ASSERT_EQ(IdOf(reader.Parent(row.handle)), row.parent) << id;
    ASSERT_EQ(reader.IndexInParent(row.handle), m_naive.IndexOf(id)) << id;
    ASSERT_EQ(IdOf(reader.Child(H(row.parent), m_naive.IndexOf(id))), id);
    ASSERT_FALSE(reader.Child(row.handle, static_cast<int>(children.size())));
    const CString number = row.text[1].substr(0, row.text[1].find(L' '));  // padding is not read
    ASSERT_EQ(reader.Name(row.handle), number.empty() ? row.text[0] : row.text[0] + L", " + number) << id;
    ASSERT_EQ(reader.IsExpandable(row.handle), !children.empty()) << id;
    ASSERT_EQ(reader.IsExpanded(row.handle), row.expanded) << id;
    ASSERT_EQ(reader.IsShown(row.handle), shown) << id;
    ASSERT_EQ(reader.IsSelected(row.handle), row.selected) << id;
    ASSERT_EQ(reader.IsFocused(row.handle), m_naive.focused && id == m_naive.caret) << id;
    ASSERT_EQ(reader.IsCheckable(row.handle), row.check != 0) << id;
    ASSERT_EQ(reader.IsChecked(row.handle), row.check == 3) << id;
    const bool onScreen = shown && top + Naive::kLine > 0 && top < Naive::kHeight;
    ASSERT_EQ(reader.ScreenPlace(row.handle), onScreen ? line.Moved(30, 40) : CRect{}) << id;
    for (const int x : {left - 39, left - 38, left - 20, left - 19, left - 1, left, left + 5, left + 6}) {
      unsigned flags = 0;
      const CPoint point{x, top + (id % 2 == 0 ? 0 : Naive::kLine - 1)};
      if (!onScreen) break;
      const Naive::Hit hit = m_naive.HitAt({point.x + m_naive.offset, point.y});
      ASSERT_EQ(IdOf(m_tree.HitTest(point, flags)), hit.row) << point.x << "," << point.y;
      ASSERT_EQ(flags, hit.flags) << id << " at " << point.x << "," << point.y;
      const CPoint screen{point.x + 30, point.y + 40};
      const bool inside = point.x >= 0 && point.x < m_naive.Right() && point.y >= 0 && point.y < Naive::kHeight;
      ASSERT_EQ(IdOf(reader.RowAtScreen(screen)), inside ? hit.row : 0) << point.x << "," << point.y;
    }
  }
  void Compare() {
    ASSERT_EQ(m_tree.heard, m_naive.heard);
    ASSERT_EQ(m_tree.GetItemCount(), m_naive.count);
    std::vector<int> walked;
    const std::function<void(HTREEITEM)> walk = [&](HTREEITEM row) {
      for (HTREEITEM at = m_tree.GetChildItem(row); at; at = m_tree.GetNextSiblingItem(at)) {
        walked.push_back(IdOf(at));
        if (m_tree.ItemHasChildren(at)) walk(at);
      }
    };
    walk({});
    ASSERT_EQ(Ids(walked), Ids(m_naive.Below(Naive::kNone)));
    ASSERT_EQ(m_tree.RowCount(), walked.size());
    ASSERT_EQ(static_cast<int>(m_tree.VisibleRowCount()), m_naive.VisibleCount());
    ASSERT_EQ(IdOf(m_tree.GetFocusedItem()), m_naive.caret);
    ASSERT_EQ(IdOf(m_tree.GetSelectedItemField()), m_naive.selectedItem);
    ASSERT_EQ(IdOf(m_tree.GetFirstVisibleItem()), m_naive.At(m_naive.TopPosition()));
    ASSERT_EQ(Ids(m_tree.GetSelectedItems()), Ids(m_naive.SelectedVisible()));
    ASSERT_EQ(m_tree.GetSelectedCount(), static_cast<int>(m_naive.SelectedVisible().size()));
    ASSERT_EQ(m_tree.HasFocus(), m_naive.focused);
    ASSERT_EQ(m_parent.tip, m_naive.tip);
    ASSERT_EQ(m_parent.columnSteps, m_naive.columnSteps);
    std::vector<HTREEITEM> announced;
    for (const std::uint64_t row : m_toolkit.TakeAnnounced()) announced.push_back({row});
    ASSERT_EQ(Ids(announced), Ids(std::exchange(m_naive.announced, {})));
    const ScrollState bar = m_toolkit.ScrollOf(m_tree);
    ASSERT_EQ(bar, (ScrollState{m_naive.LastTop(), Naive::kPage, m_naive.TopPosition()}));
    CompareEditor();
    ASSERT_FALSE(m_toolkit.TimersOf(m_tree).contains(1)) << "the band's timer runs on";
    ASSERT_FALSE(m_toolkit.IsWaitCursor());
    m_naive.Walk(Naive::kNone, true, [this](int row, bool shown) {
      if (!HasFatalFailure()) CompareRow(row, shown);
    });
    if (HasFatalFailure()) return;
    ComparePixels();
  }
  void CompareEditor() {
    const CWnd* box = m_toolkit.FindChild(m_tree, 1);
    ASSERT_EQ(box != nullptr, m_naive.edited != Naive::kNone);
    ASSERT_EQ(m_tree.IsEditing(), box != nullptr && !m_naive.editedAsList ? 1 : 0);
    if (box == nullptr) return;
    ASSERT_EQ(m_toolkit.FocusWindow(), box);
    const CRect& place = box->GetPlace();
    const int left = m_naive.TextLeft(m_naive.edited) + m_naive.offset;
    ASSERT_EQ(place.left, std::clamp(left, 0, m_naive.Right() - 40));
    ASSERT_EQ(place.top, m_naive.LineTop(m_naive.edited) + (m_naive.editedAsList ? 2 : 0));
  }
  /// What was painted, piece by piece as it was asked for, is the whole, and the whole is what it should be.
  void ComparePixels() {
    m_screen.Fit(m_tree);
    Screen expected;
    m_naive.Paint(expected);
    const CPoint wrong = PaintedWhole(m_tree).Difference(expected);
    ASSERT_EQ(wrong, (CPoint{-1, -1})) << "painted at " << wrong.x << "," << wrong.y;
    const CPoint stale = m_screen.Difference(expected);
    ASSERT_EQ(stale, (CPoint{-1, -1})) << "not painted anew at " << stale.x << "," << stale.y;
  }

  HeadlessToolkit m_toolkit;
  HeardTree m_tree;
  HearingParent m_parent{m_tree};
  CImageList m_images;
  Screen m_screen;
  Naive m_naive;
  std::mt19937 m_random{static_cast<unsigned>(GetParam())};
  std::ostringstream m_did;
};

TEST_P(TreeListModel, ShowsTellsAndPaintsWhatTheNaiveOneDoes) {
  constexpr int kSteps = 250;
  std::vector<std::string> done;
  for (int step = 0; step < kSteps; ++step) {
    m_tree.heard.clear();
    m_naive.heard.clear();
    Act();
    m_toolkit.Pump();
    m_naive.Settle();
    m_naive.vetoes = m_parent.vetoes = false;
    done.push_back(m_did.str());
    Compare();
    if (!HasFailure()) continue;
    std::string story;
    for (std::size_t at = done.size() > 6 ? done.size() - 6 : 0; at < done.size(); ++at)
      story += "\n  " + done[at];
    FAIL() << "step " << step << " after" << story << m_naive.Describe();
  }
}
INSTANTIATE_TEST_SUITE_P(Seeds, TreeListModel, ::testing::Range(1, 41));

}  // namespace
}  // namespace qd::test
