// Mouse and keys of the naive tree list.

#include "support/NaiveTreeList.h"

namespace qd::test {

// ---- mouse
void NaiveTreeList::Press(bool left, unsigned flags, CPoint point, const std::vector<MoveTo>& moves, End end,
                          CPoint last) {
  tip.clear();  // until the pointer comes to another row
  typed.clear();
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
    if (left && (flags & kMouseShift) != 0) {
      ExpandBelow(hit.row, !rows[hit.row].expanded);
    } else if (left) {
      Toggle(hit.row);
    }
  } else {
    if (!left) selectedItem = hit.row;
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
    if (end == End::Escape) selectedItem = caret, tip.clear();  // as after any key
    if (left) selectedItem = HitAt(last).row;
    Click(left, flags, hit.row);
    if (!left) heard += "menu ";
    return;
  }
  for (; next < moves.size(); ++next) MouseMove(moves[next]);
  Release(left, end, last);
}

void NaiveTreeList::DoubleClick(CPoint point) {
  const int pressed = HitAt(point).row;
  Press(true, 0, point, {}, End::Release, point);
  const Hit hit = pressed != kNone ? HitOn(pressed, point.x - offset) : HitAt(point);
  const bool opens = hit.flags != kHitIndent && hit.flags != kHitStateIcon;
  if (point.x - offset < width[0] && hit.row != kNone && opens) Toggle(hit.row);
  focused = true;
  selectedItem = hit.row;
  EndEditor();
  if (selectedItem != kNone && point.y >= 2 && point.y < 4 && point.x >= 0 && point.x < width[0]) {
    const Row& row = rows[selectedItem];
    if (row.record && (row.editable || row.combo)) OpenEditor(selectedItem, !row.editable);
  }
  Release(true, End::Release, point);
}

void NaiveTreeList::MouseMove(MoveTo move) {
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

void NaiveTreeList::MouseLeave() {
  tipRow = kNone;
  tip.clear();
}

void NaiveTreeList::Wheel(int lines) {
  EndEditor();
  ScrollTo(TopPosition() - lines);
}

void NaiveTreeList::ScrollBar(int position) {
  EndEditor();
  ScrollTo(position);
}

void NaiveTreeList::PressRow(bool left, unsigned flags, int row) {
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

void NaiveTreeList::Click(bool left, unsigned flags, int row) {
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
  EndEditor();
  heard += left ? "click " : "rclick ";
}

void NaiveTreeList::Release(bool left, End end, CPoint last) {
  if (end == End::LoseCapture) return;
  if (end == End::Escape) tip.clear();
  if (end == End::Escape && multi) selectedItem = caret;
  if (left) selectedItem = HitAt(last).row;
  if (!left) heard += "menu ";
}

void NaiveTreeList::Band(bool left, unsigned flags, CPoint from, const std::vector<MoveTo>& moves, End end,
                         CPoint last) {
  focused = true;
  EndEditor();
  const bool keeps = (flags & (kMouseShift | kMouseControl)) != 0;
  std::vector<int> before = keeps ? SelectedVisible() : std::vector<int>{};
  const auto content = [this](CPoint point) { return CPoint{point.x - offset, TopPosition() * kLine + point.y}; };
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

// ---- keys
void NaiveTreeList::Key(int key, unsigned flags) {
  const bool control = multi && (flags & kMouseControl) != 0;
  const bool shift = multi && (flags & kMouseShift) != 0;
  tip.clear();
  if (key != kKeySpace) typed.clear();
  if (caret != kNone && (key == kKeyAdd || key == kKeySubtract)) Expand(Shown(caret), key == kKeyAdd);
  if (caret != kNone && key == kKeyMultiply) ExpandBelow(Shown(caret), true);
  if (multi) selectedItem = caret;
  if (control && key == kKeySpace && caret != kNone) {
    rows[caret].selected = !rows[caret].selected;
    anchor = caret;
  }
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

void NaiveTreeList::Type(wchar_t letter) {
  if (letter == L' ' && typed.empty()) return;  // no title begins so
  typed += letter;
  const bool repeats = typed.find_first_not_of(typed[0]) == CString::npos;
  const CString wanted = repeats ? typed.substr(0, 1) : typed;
  const std::vector<int> visible = Visible();
  const int from = std::max(Position(Shown(caret)), 0) + (repeats && caret != kNone ? 1 : 0);
  for (int step = 0; step < static_cast<int>(visible.size()); ++step) {
    const int row = visible[static_cast<std::size_t>(from + step) % visible.size()];
    const CString title = rows[row].text[0].substr(0, wanted.size());
    const auto same = [](wchar_t a, wchar_t b) { return towlower(a) == towlower(b); };
    if (!rows[row].record || !std::equal(title.begin(), title.end(), wanted.begin(), wanted.end(), same)) continue;
    return SelectAlone(row);
  }
}

int NaiveTreeList::Target(int key) {
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

}  // namespace qd::test
