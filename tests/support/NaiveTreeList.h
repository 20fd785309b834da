#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "qd_wrt/treelist/CTreeListCtrl.h"
#include "support/Screen.h"

namespace qd::test {

/// A tree-list control as its users are told that it behaves, without any of its code: nested vectors, every
/// question answered by walking all rows. It has a client area of fixed height; what it would tell is written down
/// in `heard`, one word after another.
class NaiveTreeList {
 public:
  static constexpr int kLine = 20;    // height of a row
  static constexpr int kCell = 19;    // width of a level, of a check image and of an icon
  static constexpr int kLabel = 6;    // width of a row's own empty text
  static constexpr int kDrag = 4;     // drag distance
  static constexpr int kBar = 17;     // width of the vertical scroll bar
  static constexpr int kNone = 0;     // also stands for the top level
  static constexpr int kWidth = 240;  // of the window
  static constexpr int kHeight = 110;
  static constexpr int kPage = kHeight / kLine;

  struct Row {
    HTREEITEM handle;
    bool live = true;
    bool record = true;
    int parent = kNone;
    std::vector<int> children;
    std::array<CString, 3> text;
    bool editable = false;
    bool combo = false;
    bool bold = false;
    bool expanded = false;
    bool selected = false;
    std::optional<COLORREF> colour;
    int check = 0;
    int image = 0;
    int selectedImage = 0;
    std::uint32_t data = 0;
  };
  struct Hit {
    int row = kNone;
    unsigned flags = kHitNowhere;
  };
  /// A move of the mouse; `again`: the pointer rests there, and a timer runs on.
  struct MoveTo {
    CPoint point;
    bool again = false;
  };
  enum class End { Release, LoseCapture, Escape };

  std::vector<Row> rows{1};  // row 0 is the top level
  std::array<int, 3> width{120, 50, 60};
  std::array<TextAlign, 3> align{TextAlign::Left, TextAlign::Right, TextAlign::Centre};
  int caret = kNone;
  int anchor = kNone;
  int selectedItem = kNone;
  int top = kNone;
  int offset = 0;
  int count = 0;
  bool multi = true;
  bool focused = false;
  bool textHit = false;
  bool grid = false;
  unsigned gridStyle = CTreeListCtrl::kGridHatched;
  bool routed = false;  // closing a branch takes the selection out of it
  bool vetoes = false;  // the parent forbids to open and close
  int edited = kNone;
  bool editedAsList = false;
  CString editText;
  CString typed;
  int tipRow = kNone;
  CString tip;
  int columnSteps = 0;
  std::string heard;
  std::vector<int> announced;
  const CImageList* images = nullptr;

  NaiveTreeList() { rows[0].expanded = true; }

  /// For whoever has to find out what went wrong.
  std::string Describe() const {
    std::string text;
    Walk(kNone, true, [&](int row, bool shown) {
      text += "\n    " + std::string(static_cast<std::size_t>(Level(row)) * 2, ' ') + Name(row);
      for (const auto& [is, what] : {std::pair(!shown, " hidden"),
                                     {rows[row].expanded, " open"},
                                     {rows[row].selected, " selected"},
                                     {row == caret, " caret"},
                                     {row == anchor, " anchor"},
                                     {row == top, " top"},
                                     {row == edited, " edited"}}) {
        if (is) text += what;
      }
    });
    return text;
  }

  // ---- questions ------------------------------------------------------------------------------------------
  template <typename Visit>
  void Walk(int at, bool shown, const Visit& visit) const {
    for (const int child : rows[at].children) {
      visit(child, shown);
      Walk(child, shown && rows[child].expanded, visit);
    }
  }
  std::vector<int> Below(int at) const {
    std::vector<int> all;
    Walk(at, true, [&all](int row, bool) { all.push_back(row); });
    return all;
  }
  std::vector<int> Visible() const {
    std::vector<int> visible;
    Walk(kNone, true, [&visible](int row, bool shown) {
      if (shown) visible.push_back(row);
    });
    return visible;
  }
  std::vector<int> SelectedVisible() const {
    std::vector<int> selected = Visible();
    std::erase_if(selected, [this](int row) { return !rows[row].selected; });
    return selected;
  }
  int Position(int row) const {
    const std::vector<int> visible = Visible();
    const auto found = std::find(visible.begin(), visible.end(), row);
    return found == visible.end() ? -1 : static_cast<int>(found - visible.begin());
  }
  bool IsVisible(int row) const { return Position(row) >= 0; }
  int At(int position) const {
    const std::vector<int> visible = Visible();
    return position >= 0 && position < static_cast<int>(visible.size()) ? visible[position] : kNone;
  }
  int Shown(int row) const {
    while (row != kNone && !IsVisible(row)) row = rows[row].parent;
    return row;
  }
  int VisibleCount() const { return static_cast<int>(Visible().size()); }
  int LastTop() const { return std::max(VisibleCount() - kPage, 0); }
  int TopPosition() const { return std::max(Position(top), 0); }
  int Level(int row) const { return rows[row].parent == kNone ? 0 : Level(rows[row].parent) + 1; }
  int Right() const { return kWidth - (LastTop() > 0 ? kBar : 0); }
  int ColumnsWidth() const { return width[0] + width[1] + width[2]; }
  int CheckLeft(int row) const { return (Level(row) + 1) * kCell; }
  int IconLeft(int row) const { return CheckLeft(row) + (rows[row].check != 0 ? kCell : 0); }
  int TextLeft(int row) const { return IconLeft(row) + kCell; }
  int LineTop(int row) const { return (Position(row) - TopPosition()) * kLine; }
  int IndexOf(int row) const {
    const std::vector<int>& siblings = rows[rows[row].parent].children;
    return static_cast<int>(std::find(siblings.begin(), siblings.end(), row) - siblings.begin());
  }
  bool HasChildren(int row) const { return !rows[row].children.empty(); }
  /// `point` in client coordinates.
  Hit HitAt(CPoint point) const {
    if (point.y < 0) return {kNone, kHitAbove};
    if (point.y >= kHeight) return {kNone, kHitBelow};
    return HitOn(At(TopPosition() + point.y / kLine), point.x - offset);
  }
  Hit HitOn(int row, int x) const {
    if (row == kNone) return {};
    if (x < CheckLeft(row) - kCell) return {row, kHitIndent};
    if (x < CheckLeft(row)) return {row, HasChildren(row) ? kHitButton : kHitIndent};
    if (x < IconLeft(row)) return {row, kHitStateIcon};
    if (x < TextLeft(row)) return {row, kHitIcon};
    return {row, x < TextLeft(row) + kLabel ? kHitLabel : kHitRight};
  }
  static CString Fit(CString text, bool bold, int room) {
    const int each = bold ? 8 : 7;
    const CString whole = text;
    while (!text.empty() && static_cast<int>(text.size()) * each > room) text.pop_back();
    return text == whole ? text : text + L"...";
  }

  // ---- rows -----------------------------------------------------------------------------------------------
  int Insert(Row row, int parent, std::size_t index) {
    ++count;
    return Place(std::move(row), parent, index);
  }
  int Place(Row row, int parent, std::size_t index) {
    const int made = static_cast<int>(rows.size());
    row.parent = parent;
    rows.push_back(std::move(row));
    std::vector<int>& siblings = rows[parent].children;
    siblings.insert(siblings.begin() + static_cast<long>(std::min(index, siblings.size())), made);
    if (top == kNone) top = At(0);
    return made;
  }
  void Delete(int row) {
    if (!rows[row].record) return;
    --count;
    Erase(row);
  }
  int DeleteBelow(int row) {
    if (!HasChildren(row)) return 0;
    bool failed = false;
    for (const int child : std::vector<int>(rows[row].children)) {
      failed |= !rows[child].record;
      if (!rows[child].record) continue;
      const std::vector<int> below = Below(child);
      const auto bare = std::count_if(below.begin(), below.end(), [this](int at) { return !rows[at].record; });
      failed |= bare != 0;
      count -= 1 + static_cast<int>(below.size()) - static_cast<int>(bare);
      Erase(child);
    }
    return failed ? 1 : 0;
  }
  void DeleteAll() {
    CloseEditor();
    for (const int row : Below(kNone)) rows[row].live = false;
    rows[0].children.clear();
    caret = top = kNone;
    Forget();
  }
  int Copy(int row, int parent, std::size_t index) {
    if (HasChildren(row) || !rows[row].record) return kNone;
    Row copy = rows[row];
    copy.expanded = false;
    return Place(copy, parent, index);
  }
  int Move(int row, int parent) {
    if (HasChildren(row) || !rows[row].record || parent == row) return kNone;
    Row copy = rows[row];
    copy.expanded = false;
    Delete(row);
    return Place(copy, parent, rows.size());
  }
  void SortBy(int parent, const std::function<bool(const Row&, const Row&)>& before) {
    std::vector<int>& children = rows[parent].children;
    std::stable_sort(children.begin(), children.end(), [&](int a, int b) { return before(rows[a], rows[b]); });
  }
  bool Expand(int row, bool on) {
    if (on == rows[row].expanded || (on && !HasChildren(row))) return false;
    heard += (on ? "opening(" : "closing(") + Name(row) + ") ";
    if (routed && !on && multi) {
      std::vector<int> seen;
      Deselect(row, seen);
      if (std::count(seen.begin(), seen.end(), caret) != 0 && !rows[row].selected) caret = kNone;
    }
    if (vetoes) return false;
    rows[row].expanded = on;
    if (!on && caret != kNone && !IsVisible(caret)) caret = row;
    top = Shown(top);
    ViewMoved();
    heard += (on ? "opened(" : "closed(") + Name(row) + ") ";
    return true;
  }
  void Toggle(int row) { Expand(row, !rows[row].expanded); }
  void ExpandBelow(int row, bool on) {
    Expand(row, on);
    for (const int child : rows[row].children) {
      if (HasChildren(child)) ExpandBelow(child, on);
    }
  }

  // ---- scrolling ------------------------------------------------------------------------------------------
  void ScrollTo(int position) {
    const int now = At(std::clamp(position, 0, LastTop()));
    if (now == top) return;
    top = now;
    ViewMoved();
  }
  void EnsureVisible(int row) {
    std::vector<int> closed;
    for (int above = rows[row].parent; above != kNone; above = rows[above].parent) {
      if (!rows[above].expanded) closed.push_back(above);
    }
    for (const int above : closed) {
      heard += "opening(" + Name(above) + ") ";
      if (vetoes) return;
    }
    for (const int above : closed) rows[above].expanded = true;
    if (!closed.empty()) ViewMoved();
    for (const int above : closed) heard += "opened(" + Name(above) + ") ";
    const int position = Position(row);
    if (position < TopPosition()) ScrollTo(position);
    if (position >= TopPosition() + kPage) ScrollTo(position - kPage + 1);
  }
  void SetOffset(int x) {
    if (x == offset) return;
    offset = x;
    ViewMoved();
  }
  /// What happens before the next input: rows that went leave no empty page, and editors no gone or hidden row.
  void Settle() {
    if (TopPosition() > LastTop() || !IsVisible(top)) top = At(std::min(TopPosition(), LastTop()));
    CloseLostEditor();
  }

  // ---- selection ------------------------------------------------------------------------------------------
  void SetCaret(int row) {
    if (caret != kNone && caret != row) rows[caret].selected = false;
    if (caret != row) announced.push_back(row);
    caret = row;
    rows[row].selected = true;
    EnsureVisible(row);
  }
  /// Focuses a row or takes the focus from it; what is selected stays.
  void Focus(int row, bool on) {
    if (!multi || (!on && row != caret)) return;
    std::vector<bool> before;
    for (const Row& each : rows) before.push_back(each.selected);
    if (on) {
      SetCaret(row);
    } else {
      caret = kNone;
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (rows[i].live) rows[i].selected = before[i];
    }
  }
  void SelectAndFocus(int row) {
    Focus(row, true);
    rows[row].selected = true;
  }
  void Clear() {
    for (Row& row : rows) row.selected = false;
  }
  /// Clears the first branch, hidden rows too.
  void ClearFirstBranch(int except) {
    if (rows[0].children.empty()) return;
    std::vector<int> branch = Below(rows[0].children.front());
    branch.push_back(rows[0].children.front());
    for (const int row : branch) rows[row].selected = rows[row].selected && row == except;
  }
  void SelectVisible(bool on) {
    for (const int row : Visible()) rows[row].selected = on;
  }
  void Invert() {
    for (const int row : Visible()) rows[row].selected = !rows[row].selected;
  }
  void SelectRange(int from, int to, bool only) {
    from = Shown(from);
    to = Shown(to);
    const auto [first, last] = std::minmax({Position(from), Position(to)});
    const std::vector<int> visible = Visible();
    for (int at = 0; at < static_cast<int>(visible.size()); ++at) {
      Row& row = rows[visible[at]];
      const bool inside = at >= first && at <= last;
      if (!inside && only) row.selected = false;
      if (inside && row.parent == rows[from].parent) row.selected = true;
    }
  }
  int SelectChildren(int parent, bool on, bool recurse) {
    int met = 0;
    for (const int child : rows[parent].children) {
      rows[child].selected = on;
      if (child == caret) met = 1;
      if (recurse && rows[child].expanded) met |= SelectChildren(child, on, true);
    }
    return met;
  }
  void SetMulti(bool on) {
    if (!on) {
      const int keep = caret != kNone && rows[caret].selected ? caret : kNone;
      ClearFirstBranch(keep);
      if (keep != kNone) SetCaret(keep);
    }
    multi = on;
  }
  void SelectAlone(int row) {
    Clear();
    if (multi) {
      SelectAndFocus(row);
    } else {
      rows[row].selected = true;
    }
    anchor = kNone;
    selectedItem = row;
    heard += "click ";
  }

  // ---- mouse ----------------------------------------------------------------------------------------------
  /// A press, the moves behind it, and how it ends: at a point, by another window or by the Escape key.
  void Press(bool left, unsigned flags, CPoint point, const std::vector<MoveTo>& moves, End end, CPoint last);
  void DoubleClick(CPoint point);
  /// Shows the title of a row whose column has no room for it, once while the pointer stays on the row.
  void MouseMove(MoveTo move);
  void MouseLeave();
  void Wheel(int lines);
  void ScrollBar(int position);

  // ---- keys -----------------------------------------------------------------------------------------------
  void Key(int key, unsigned flags);
  /// Letters look for the next title that begins with what was typed without a pause.
  void Type(wchar_t letter);

  // ---- editing --------------------------------------------------------------------------------------------
  void ShowEdit(int asked) {
    EndEditor();
    if (!rows[asked].record || (!rows[asked].editable && !rows[asked].combo)) return;
    if (selectedItem == kNone || !rows[selectedItem].record || !rows[selectedItem].editable) return;
    EnsureVisible(selectedItem);
    if (IsVisible(selectedItem)) OpenEditor(selectedItem, false);
  }
  void EditorKey(int key) {
    if (edited == kNone || editedAsList) return;
    if (key == kKeyDelete) editText.clear();
    if (key == kKeyEnter || key == kKeyTab || key == kKeyEscape) TellEdit(key == kKeyEscape);
  }
  /// The editor loses the focus.
  void EndEditor() {
    if (edited != kNone) TellEdit(true);
  }
  void CloseEditor() {
    if (edited != kNone) focused = true;
    edited = kNone;
  }

  // ---- painting -------------------------------------------------------------------------------------------
  /// What the window shows.
  void Paint(Screen& screen) const;

 private:
  std::string Name(int row) const { return std::to_string(row); }
  void Strip(ScreenPainter& paint, const CRect& strip) const;

  void Deselect(int row, std::vector<int>& seen) {
    for (const int child : rows[row].children) {
      rows[child].selected = false;
      seen.push_back(child);
      if (rows[child].expanded) Deselect(child, seen);
    }
  }
  /// The neighbour that takes a deleted row's place, else the last row.
  void Erase(int row) {
    const int position = Position(row);
    for (const int below : Below(row)) rows[below].live = false;
    rows[row].live = false;
    std::vector<int>& siblings = rows[rows[row].parent].children;
    siblings.erase(siblings.begin() + IndexOf(row));
    const int neighbour = position < 0 ? kNone : At(std::min(position, VisibleCount() - 1));
    if (!rows[caret].live) caret = neighbour;
    if (!rows[top].live) top = position < 0 ? At(0) : neighbour;
    Forget();
    CloseLostEditor();
  }
  void Forget() {
    if (!rows[anchor].live) anchor = kNone;
    if (!rows[selectedItem].live) selectedItem = kNone;
    if (tipRow == kNone || rows[tipRow].live) return;
    tipRow = kNone;
    tip.clear();
  }
  void ViewMoved() {
    tip.clear();
    tipRow = kNone;
    CloseLostEditor();
  }
  void CloseLostEditor() {
    if (edited != kNone && (!rows[edited].live || !IsVisible(edited))) CloseEditor();
  }
  void OpenEditor(int row, bool list) {
    edited = row;
    editedAsList = list;
    editText = rows[row].text[0];
    focused = false;
  }
  void TellEdit(bool escape) {
    const int row = edited;
    if (!editedAsList) {
      heard +=
          "edit(" + Name(row) + "," + std::string(editText.begin(), editText.end()) + (escape ? ",1) " : ",0) ");
    }
    CloseEditor();
  }

  void PressRow(bool left, unsigned flags, int row);
  void Click(bool left, unsigned flags, int row);
  void Release(bool left, End end, CPoint last);
  /// Rows that a band meets are selected, with Ctrl those that were selected are cleared; the others are what they
  /// were, which without a key is cleared.
  void Band(bool left, unsigned flags, CPoint from, const std::vector<MoveTo>& moves, End end, CPoint last);
  int Target(int key);
  /// Lines to the row's siblings and parent, the button, the check image and the icon.
  void PaintTreePart(ScreenPainter& paint, int row, int y, COLORREF shadow) const;
  void PaintTexts(ScreenPainter& paint, int at, int y) const;
};

}  // namespace qd::test
