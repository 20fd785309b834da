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
    const int row = At(TopPosition() + point.y / kLine);
    if (row == kNone) return {};
    const int x = point.x - offset;
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
    if (caret != kNone && !IsVisible(caret)) caret = row;
    top = Shown(top);
    ViewMoved();
    heard += (on ? "opened(" : "closed(") + Name(row) + ") ";
    return true;
  }
  void Toggle(int row) { Expand(row, !rows[row].expanded); }

  // ---- scrolling ------------------------------------------------------------------------------------------
  void ScrollTo(int position) {
    const int now = At(std::clamp(position, 0, LastTop()));
    if (now == top) return;
    top = now;
    ViewMoved();
  }
  void EnsureVisible(int row) {
    while (!IsVisible(row)) {
      int above = rows[row].parent;
      while (rows[above].expanded) above = rows[above].parent;
      if (!Expand(above, true)) return;
    }
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
  void Press(bool left, unsigned flags, CPoint point, const std::vector<MoveTo>& moves, End end, CPoint last) {
    const Hit hit = HitAt(point);
    const bool onRow = hit.row != kNone && (hit.flags & (kHitNowhere | kHitIndent)) == 0;
    std::size_t next = 0;  // of the moves that nobody has taken yet
    if (left && hit.flags == kHitStateIcon) {
      heard += "check(" + Name(hit.row) + ") ";
    } else if (!multi) {
      if (!left) selectedItem = hit.row;
      if (left && hit.row != kNone) Toggle(hit.row);
    } else if (hit.flags == kHitButton) {
      if (!left) selectedItem = hit.row;
      if (left) EndEditor(), Toggle(hit.row);
    } else {
      if (!left) selectedItem = hit.row;
      EndEditor();
      if (!onRow) return Band(left, flags, point, moves, end, last);
      if (caret == kNone) flags = 0;
      PressRow(left, flags, hit.row);
      for (; next < moves.size(); ++next) {
        const CPoint to = moves[next].point;
        if (std::abs(to.x - point.x) <= kDrag && std::abs(to.y - point.y) <= kDrag) continue;
        heard += (left ? "drag(" : "rdrag(") + Name(hit.row) + "," + std::to_string(rows[hit.row].data) + "," +
                 std::to_string(point.x) + "," + std::to_string(point.y) + ") ";
        for (++next; next < moves.size(); ++next) MouseMove(moves[next]);
        return Release(left, end, last);
      }
      if (end == End::LoseCapture) return;
      if (left) selectedItem = HitAt(last).row;
      Click(left, flags, hit.row);
      if (!left) heard += "menu ";
      return;
    }
    for (; next < moves.size(); ++next) MouseMove(moves[next]);
    Release(left, end, last);
  }
  void DoubleClick(CPoint point) {
    Press(true, 0, point, {}, End::Release, point);
    const Hit hit = HitAt(point);
    if (hit.flags == kHitStateIcon) return Press(true, 0, point, {}, End::Release, point);
    if (point.x - offset < width[0] && hit.row != kNone && hit.flags != kHitIndent) Toggle(hit.row);
    focused = true;
    selectedItem = hit.row;
    EndEditor();
    if (selectedItem != kNone && point.y >= 2 && point.y < 4 && point.x >= 0 && point.x < width[0]) {
      const Row& row = rows[selectedItem];
      if (row.record && (row.editable || row.combo)) OpenEditor(selectedItem, !row.editable);
    }
    Release(true, End::Release, point);
  }
  /// Shows the title of a row whose column has no room for it, once while the pointer stays on the row.
  void MouseMove(MoveTo move) {
    if (move.again) return;
    const CPoint point = move.point;
    int row = HitAt(point).row;
    if (point.x - offset >= width[0]) row = kNone;
    if (row == tipRow) return;
    tipRow = row;
    tip.clear();
    if (row == kNone || !rows[row].record) return;
    const CString& title = rows[row].text[0];
    if (Fit(title, rows[row].bold, width[0] - TextLeft(row) - 2 - 8) != title) tip = title;
  }
  void MouseLeave() {
    tipRow = kNone;
    tip.clear();
  }
  void Wheel(int lines) {
    EndEditor();
    ScrollTo(TopPosition() - lines);
  }
  void ScrollBar(int position) {
    EndEditor();
    ScrollTo(position);
  }

  // ---- keys -----------------------------------------------------------------------------------------------
  void Key(int key, unsigned flags) {
    const bool control = multi && (flags & kMouseControl) != 0;
    const bool shift = multi && (flags & kMouseShift) != 0;
    if (control && key == kKeyA) return SelectVisible(true);
    if (control && key == kKeyI) return Invert();
    if (key < kKeyPageUp || key > kKeyDown) return;
    if (multi && (anchor == kNone || !IsVisible(anchor))) anchor = caret;
    if (multi && !shift && !control) {
      anchor = kNone;
      Clear();
    }
    if (control && !shift) {
      if (caret == kNone || key == kKeyLeft || key == kKeyRight) return;
      return Focus(Target(key), true);
    }
    if (const int target = Target(key)) SetCaret(target);
    selectedItem = caret;
    if (shift && anchor != kNone && caret != kNone) SelectRange(anchor, caret, true);
  }
  /// Letters look for the next title that begins with what was typed without a pause.
  void Type(wchar_t letter) {
    typed += letter;
    const bool repeats = typed.find_first_not_of(typed[0]) == CString::npos;
    const CString wanted = repeats ? typed.substr(0, 1) : typed;
    const std::vector<int> visible = Visible();
    const int from = std::max(Position(Shown(caret)), 0) + (repeats && caret != kNone ? 1 : 0);
    for (int step = 0; step < static_cast<int>(visible.size()); ++step) {
      const int row = visible[static_cast<std::size_t>(from + step) % visible.size()];
      const CString title = rows[row].text[0].substr(0, wanted.size());
      const auto same = [](wchar_t a, wchar_t b) { return towlower(a) == towlower(b); };
      if (!rows[row].record || !std::equal(title.begin(), title.end(), wanted.begin(), wanted.end(), same))
        continue;
      return SelectAlone(row);
    }
  }

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
  void Paint(Screen& screen) const {
    screen.Resize(Right(), kHeight);
    ScreenPainter paint(screen, {0, 0, Right(), kHeight});
    const IToolkit& colours = IToolkit::Instance();
    const COLORREF shadow = colours.GetColour(SystemColour::Shadow);
    paint.Fill({0, 0, Right(), kHeight}, 0xFFFFFF);
    const int first = TopPosition();
    paint.SetOrigin(offset);
    for (int line = 0; line <= kPage && At(first + line) != kNone; ++line) {
      PaintTreePart(paint, At(first + line), line * kLine, shadow);
    }
    paint.Fill({width[0], 1, 10'000, kHeight}, 0xFFFFFF);
    for (int line = 0; line <= kPage && At(first + line) != kNone; ++line) {
      const int y = line * kLine;
      const int row = At(first + line);
      paint.Fill({std::min(TextLeft(row), width[0]), y, ColumnsWidth(), y + kLine}, 0xFFFFFF);
    }
    for (int line = 0; line <= kPage && At(first + line) != kNone; ++line) {
      // The line above a row is drawn on the row above it, below whatever that shows.
      if (grid) paint.Hatch({0, line * kLine - 1, ColumnsWidth(), line * kLine}, 0);
    }
    for (int line = 0; line <= kPage && At(first + line) != kNone; ++line) {
      if (rows[At(first + line)].record) PaintTexts(paint, At(first + line), line * kLine);
    }
    paint.SetOrigin(0);
  }

 private:
  std::string Name(int row) const { return std::to_string(row); }

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

  void PressRow(bool left, unsigned flags, int row) {
    const bool shift = (flags & kMouseShift) != 0;
    const bool control = (flags & kMouseControl) != 0;
    if (left && shift) {
      if (rows[row].parent != rows[caret].parent) return;
      if (anchor == kNone || !IsVisible(anchor)) anchor = caret;
      SelectRange(anchor, row, !control);
      if (anchor != row) rows[anchor].selected = true;
    } else if (left) {
      anchor = kNone;
      if (control) return;
      if (!rows[row].selected) ClearFirstBranch(row);
      SelectAndFocus(row);
    } else if (!shift && control) {
      anchor = row;
    } else if (!shift) {
      if (!rows[row].selected) ClearFirstBranch(row);
      SelectAndFocus(row);
    }
  }
  void Click(bool left, unsigned flags, int row) {
    if (left && (flags & kMouseShift) == 0) {
      const bool caretSelected = caret != kNone && rows[caret].selected;
      if ((flags & kMouseControl) != 0) {
        if (rows[row].parent != rows[caret].parent) return;
        rows[row].selected = !rows[row].selected;
      } else {
        ClearFirstBranch(row);
        rows[row].selected = true;
      }
      if (caretSelected && caret != row) rows[caret].selected = true;
    }
    focused = true;
    heard += left ? "click " : "rclick ";
  }
  void Release(bool left, End end, CPoint last) {
    if (end == End::LoseCapture) return;
    if (left) selectedItem = HitAt(last).row;
    if (!left) heard += "menu ";
  }
  /// Rows that a band meets are selected, with Ctrl those that were selected are cleared; the others are what they
  /// were, which without a key is cleared.
  void Band(bool left, unsigned flags, CPoint from, const std::vector<MoveTo>& moves, End end, CPoint last) {
    focused = true;
    const bool keeps = (flags & (kMouseShift | kMouseControl)) != 0;
    std::vector<int> before = keeps ? SelectedVisible() : std::vector<int>{};
    const auto content = [this](CPoint point) {
      return CPoint{point.x - offset, TopPosition() * kLine + point.y};
    };
    const CPoint start = content(from);
    bool started = false;
    for (const auto& [to, again] : moves) {
      const bool near = std::abs(to.x - from.x) <= kDrag && std::abs(to.y - from.y) <= kDrag;
      if (!started && near) continue;
      if (!started && !keeps) Clear();
      started = true;
      if (to.y < 0) ScrollTo(std::max(TopPosition() - 1, 0));
      if (to.y >= kHeight) ScrollTo(TopPosition() + 1);
      if (to.x < 0) --columnSteps;
      if (to.x >= Right()) ++columnSteps;
      const CPoint now = content(to);
      const auto [x0, x1] = std::minmax({start.x, now.x});
      const auto [y0, y1] = std::minmax({start.y, now.y});
      for (const int row : Visible()) {
        const int y = Position(row) * kLine;
        bool meets = y <= y1 && y + kLine > y0;
        if (textHit) meets = meets && x0 < TextLeft(row) + kLabel && x1 >= TextLeft(row);
        const bool was = std::count(before.begin(), before.end(), row) != 0;
        rows[row].selected = meets ? !was || (flags & kMouseControl) == 0 : was;
      }
    }
    if (end == End::Escape) Clear();
    if (!started && !keeps) Clear();
    heard += left ? "click " : "rclick ";
    Release(left, end, last);
  }

  int Target(int key) {
    const int last = VisibleCount() - 1;
    if (last < 0) return kNone;
    if (caret == kNone) return At(key == kKeyEnd ? last : 0);
    const int row = Shown(caret);
    const int at = Position(row);
    const int page = kPage - 1;  // one line stays for the eye
    switch (key) {
      case kKeyUp:
        return At(std::max(at - 1, 0));
      case kKeyDown:
        return At(std::min(at + 1, last));
      case kKeyHome:
        return At(0);
      case kKeyEnd:
        return At(last);
      case kKeyPageUp:
        return At(std::max(at - page, 0));
      case kKeyPageDown:
        return At(std::min(at + page, last));
      case kKeyLeft:
        if (rows[row].expanded && HasChildren(row)) {
          Expand(row, false);
          return row;
        }
        return rows[row].parent != kNone ? rows[row].parent : row;
      default:
        if (!HasChildren(row)) return row;
        if (rows[row].expanded) return rows[row].children.front();
        Expand(row, true);
        return row;
    }
  }

  /// Lines to the row's siblings and parent, the button, the check image and the icon.
  void PaintTreePart(ScreenPainter& paint, int row, int y, COLORREF shadow) const {
    const auto centre = [](int level) { return level * kCell + kCell / 2; };
    const int level = Level(row);
    const int x = centre(level);
    const int middle = y + kLine / 2;
    const std::vector<int>& siblings = rows[rows[row].parent].children;
    if (rows[row].parent != kNone || siblings.front() != row) paint.Fill({x, y, x + 1, middle}, shadow);
    if (siblings.back() != row) paint.Fill({x, middle, x + 1, y + kLine}, shadow);
    paint.Fill({x, middle, CheckLeft(row) - 2, middle + 1}, shadow);
    for (int above = rows[row].parent; above != kNone; above = rows[above].parent) {
      const int column = centre(Level(above));
      if (rows[rows[above].parent].children.back() != above)
        paint.Fill({column, y, column + 1, y + kLine}, shadow);
    }
    if (HasChildren(row)) {
      paint.Fill({x - 4, middle - 4, x + 5, middle + 5}, 0xFFFFFF);
      paint.Frame({x - 4, middle - 4, x + 5, middle + 5}, shadow);
      paint.Fill({x - 2, middle, x + 3, middle + 1}, 0);
      if (!rows[row].expanded) paint.Fill({x, middle - 2, x + 1, middle + 3}, 0);
    }
    const auto picture = [&](int index, int left) {
      if (const Picture* shown = images->GetPicture(index)) paint.Image({left, y + 2}, *shown);
    };
    if (rows[row].check != 0) picture(rows[row].check, CheckLeft(row));
    picture(row == caret ? rows[row].selectedImage : rows[row].image, IconLeft(row));
  }
  void PaintTexts(ScreenPainter& paint, int at, int y) const {
    const Row& row = rows[at];
    const IToolkit& colours = IToolkit::Instance();
    const CRect band{std::min(TextLeft(at), width[0]), y, ColumnsWidth(), y + kLine};
    if (row.selected) {
      paint.Fill(band, colours.GetColour(SystemColour::Highlight));
      paint.FocusRect(band);
    }
    const COLORREF colour =
        colours.GetColour(row.selected ? SystemColour::HighlightText : SystemColour::WindowText);
    const auto text = [&](int column, int left, int room) {
      if (row.text[column].empty() || room <= 0) return;
      const CString shown = Fit(row.text[column], row.bold, room - 8);
      paint.Text({left, y, left + room - 4, y + kLine}, shown, {{}, 0, row.bold}, colour, align[column], false);
    };
    text(0, TextLeft(at) + 2, width[0] - TextLeft(at) - 2);
    text(1, width[0], width[1]);
    if (row.colour && !row.text[1].empty()) {
      const CRect swatch{width[0] + width[1] + 3, y + 3, ColumnsWidth() - 3, y + kLine - 3};
      paint.Fill(swatch, *row.colour & 0xFFFFFFU);
      paint.Frame(swatch, 0);
    }
    for (int column = 0, edge = 0; grid && !row.selected && column < 3; ++column) {
      edge += width[column];
      paint.Hatch({edge - 1, y, edge, y + kLine}, 0);
    }
  }
};

}  // namespace qd::test
