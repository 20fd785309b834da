#include "platform/tree/CTreeCtrl.h"

#include <algorithm>
#include <limits>

#include "platform/CDC.h"

namespace qd {

namespace {

constexpr int kIndent = 19;
constexpr int kImageCell = 19;  // a 16-pixel picture and its gap
constexpr int kPicture = 16;
constexpr int kButton = 9;
constexpr int kLabelWidth = 6;  // of a row whose own text is empty
constexpr int kMaximumLineLevels = 256;

/// Left edge of the state image or icon of a row, behind the column of its expand button.
int ContentLeft(int level) {
  const auto left = (static_cast<std::int64_t>(level) + 1) * kIndent;
  return static_cast<int>(std::min<std::int64_t>(left, std::numeric_limits<int>::max() / 4));
}

int StateImageOf(const RowTree& rows, HTREEITEM row) {
  return static_cast<int>(rows.State(row, kRowStateImage) >> 12U);
}

}  // namespace

int CTreeCtrl::OnCreate() {
  ScheduleLayout();
  return 0;
}

// ---- structure ------------------------------------------------------------------------------------------

HTREEITEM CTreeCtrl::InsertRow(HTREEITEM parent, HTREEITEM after, int image, int selectedImage,
                               std::uint64_t word) {
  const HTREEITEM row = m_rows.Insert(parent, after, image, selectedImage, word);
  if (!m_top) m_top = m_rows.First();
  ScheduleLayout();
  return row;
}

void CTreeCtrl::EraseRow(HTREEITEM row, const std::function<void(HTREEITEM, std::uint64_t)>& onRow) {
  if (!m_rows.Contains(row)) return;
  const bool visible = m_rows.IsVisible(row);
  const std::size_t position = visible ? m_rows.Position(row) : 0;
  m_rows.Erase(row, onRow);
  const auto neighbour = [&]() -> HTREEITEM {
    if (!visible || m_rows.VisibleCount() == 0) return {};
    return m_rows.RowAt(std::min(position, m_rows.VisibleCount() - 1));
  };
  if (m_caret && !m_rows.Contains(m_caret)) m_caret = neighbour();
  if (m_top && !m_rows.Contains(m_top)) m_top = visible ? neighbour() : m_rows.First();
  ScheduleLayout();
}

void CTreeCtrl::EraseAllRows(const std::function<void(std::uint64_t)>& onRow) {
  m_caret = {};
  m_top = {};
  m_rows.Clear(onRow);
  ScheduleLayout();
}

void CTreeCtrl::SortRows(HTREEITEM parent, const std::function<int(std::uint64_t, std::uint64_t)>& compare) {
  m_rows.SortChildren(parent, compare);
  ScheduleLayout();
}

int CTreeCtrl::Expand(HTREEITEM row, ExpandAction action) {
  if (!m_rows.Contains(row)) return 0;
  const bool expand = action == ExpandAction::Toggle ? !m_rows.IsExpanded(row) : action == ExpandAction::Expand;
  if (expand == m_rows.IsExpanded(row) || (expand && !ItemHasChildren(row))) return 0;
  TreeNotice notice;
  notice.code = kNoticeItemExpanding;
  notice.row = row;
  notice.action = expand ? ExpandAction::Expand : ExpandAction::Collapse;
  const std::weak_ptr<void> life = Life();  // whoever hears of it may take the tree down
  if (Notify(notice) != 0 || life.expired()) return 0;
  if (!m_rows.Contains(row) || !m_rows.SetExpanded(row, expand)) return 0;
  if (!expand && m_caret && !m_rows.IsVisible(m_caret)) m_caret = row;
  if (!expand && m_top) m_top = m_rows.NearestVisible(m_top);
  ScheduleLayout();
  OnViewMoved();
  notice.code = kNoticeItemExpanded;
  Notify(notice);
  return 1;
}

void CTreeCtrl::ExpandBelow(HTREEITEM row, ExpandAction action) {
  if (!m_rows.Contains(row)) return;
  if (action == ExpandAction::Toggle) action = IsExpanded(row) ? ExpandAction::Collapse : ExpandAction::Expand;
  const std::weak_ptr<void> life = Life();
  // Whoever hears of a branch may delete rows and add some to the branch.
  std::vector<HTREEITEM> branches{row};
  while (!branches.empty()) {
    const HTREEITEM branch = branches.back();
    branches.pop_back();
    Expand(branch, action);
    if (life.expired()) return;
    if (!m_rows.Contains(branch)) continue;
    for (HTREEITEM child = m_rows.LastChild(branch); child; child = m_rows.PreviousSibling(child)) {
      if (ItemHasChildren(child)) branches.push_back(child);
    }
  }
}

void CTreeCtrl::EnsureVisible(HTREEITEM row) {
  if (!m_rows.Contains(row) || !ExpandAbove(row)) return;
  if (!m_rows.Contains(row) || !m_rows.IsVisible(row)) return;
  const std::size_t position = m_rows.Position(row);
  const std::size_t top = TopPosition();
  const auto page = static_cast<std::size_t>(GetPageSize());
  if (position < top) {
    ScrollTo(position);
  } else if (position >= top + page) {
    ScrollTo(position - page + 1);
  }
}

/// Expands what is closed above a row, in one step: first each is asked, from the row up, then each is told.
/// Returns whether nobody forbade it and the tree still stands.
bool CTreeCtrl::ExpandAbove(HTREEITEM row) {
  std::vector<HTREEITEM> closed;
  const auto count = static_cast<std::size_t>(m_rows.CollapsedAbove(row));
  for (HTREEITEM above = m_rows.Parent(row); closed.size() < count; above = m_rows.Parent(above)) {
    if (!m_rows.IsExpanded(above)) closed.push_back(above);
  }
  const auto tell = [this](HTREEITEM branch, Code code) {
    TreeNotice notice;
    notice.code = code;
    notice.row = branch;
    notice.action = ExpandAction::Expand;
    return Notify(notice) == 0;
  };
  // Handlers may change the tree as they like, or take it down.
  const std::weak_ptr<void> life = Life();
  bool allowed = true;
  std::vector<HTREEITEM> opened;
  for (const HTREEITEM branch : closed) {
    if (!m_rows.Contains(branch)) continue;
    allowed = tell(branch, kNoticeItemExpanding);
    if (life.expired()) return false;
    if (!allowed) break;
    opened.push_back(branch);
  }
  std::erase_if(opened, [this](HTREEITEM branch) {
    return !m_rows.Contains(branch) || m_rows.IsExpanded(branch) || !ItemHasChildren(branch);
  });
  if (opened.empty()) return allowed;
  m_rows.ExpandAll(opened);
  ScheduleLayout();
  OnViewMoved();
  for (const HTREEITEM branch : opened) {
    if (m_rows.Contains(branch)) tell(branch, kNoticeItemExpanded);
    if (life.expired()) return false;
  }
  return allowed;
}

void CTreeCtrl::SetRowState(HTREEITEM row, unsigned state, unsigned mask) {
  m_rows.SetState(row, state, mask);
  InvalidateRow(row);
}

void CTreeCtrl::InvalidateRow(HTREEITEM row) {
  // Finding a row's line costs more than painting a screen once very many rows change between two paints.
  constexpr int kMostSingleLines = 256;
  if (m_changedLines > kMostSingleLines) return;
  if (++m_changedLines > kMostSingleLines) return Invalidate();
  CRect area;
  if (!IsCreated() || !GetItemRect(row, area, false)) return;
  area.left = 0;
  area.right = GetClientRect().right;
  InvalidateRect(area);
}

// ---- caret ----------------------------------------------------------------------------------------------

int CTreeCtrl::SetCaret(HTREEITEM row) {
  if (!m_rows.Contains(row)) return 0;
  if (m_caret && m_caret != row) SetRowState(m_caret, 0, kRowSelected);
  const bool moved = m_caret != row;
  m_caret = row;
  SetRowState(row, kRowSelected, kRowSelected);
  const std::weak_ptr<void> life = Life();
  EnsureVisible(row);
  if (life.expired()) return 0;
  if (moved && GetPeer() != nullptr) GetPeer()->AnnounceFocus(row.value);
  return 1;
}

void CTreeCtrl::ClearCaret() {
  if (m_caret) SetRowState(m_caret, 0, kRowSelected);
  m_caret = {};
}

bool CTreeCtrl::MoveCaretByKey(int key) {
  if (key < kKeyPageUp || key > kKeyDown) return false;
  if (const HTREEITEM target = TargetOfKey(key)) SetCaret(target);
  return true;
}

bool CTreeCtrl::ExpandByKey(int key) {
  const bool all = key == kKeyMultiply;
  if (key != kKeyAdd && key != kKeySubtract && !all) return false;
  if (!m_caret) return true;
  const HTREEITEM caret = m_rows.NearestVisible(m_caret);
  if (all) {
    ExpandBelow(caret, ExpandAction::Expand);
  } else {
    Expand(caret, key == kKeyAdd ? ExpandAction::Expand : ExpandAction::Collapse);
  }
  return true;
}

HTREEITEM CTreeCtrl::TargetOfKey(int key) {
  const std::size_t count = m_rows.VisibleCount();
  if (count == 0) return {};
  if (!m_caret) return key == kKeyEnd ? m_rows.LastVisible() : m_rows.First();
  const HTREEITEM caret = m_rows.NearestVisible(m_caret);
  const std::size_t position = m_rows.Position(caret);
  const auto page = static_cast<std::size_t>(std::max(GetPageSize() - 1, 1));
  const std::weak_ptr<void> life = Life();
  switch (key) {
    case kKeyUp:
      return m_rows.RowAt(position == 0 ? 0 : position - 1);
    case kKeyDown:
      return m_rows.RowAt(std::min(position + 1, count - 1));
    case kKeyHome:
      return m_rows.First();
    case kKeyEnd:
      return m_rows.LastVisible();
    case kKeyPageUp:
      return m_rows.RowAt(position < page ? 0 : position - page);
    case kKeyPageDown:
      return m_rows.RowAt(std::min(position + page, count - 1));
    case kKeyLeft:
      if (m_rows.IsExpanded(caret) && ItemHasChildren(caret)) {
        Expand(caret, ExpandAction::Collapse);
      } else if (m_rows.Parent(caret)) {
        return m_rows.Parent(caret);
      }
      break;
    default:  // right
      if (ItemHasChildren(caret) && !m_rows.IsExpanded(caret)) {
        Expand(caret, ExpandAction::Expand);
      } else if (ItemHasChildren(caret)) {
        return m_rows.FirstChild(caret);
      }
      break;
  }
  if (life.expired()) return {};
  return m_rows.Contains(caret) ? caret : HTREEITEM{};
}

// ---- scrolling and geometry -----------------------------------------------------------------------------

int CTreeCtrl::GetItemHeight() const {
  return std::max(IToolkit::Instance().FontHeight({}) + 4, kPicture + 2);
}

int CTreeCtrl::GetVisibleCount() const {
  const int height = GetItemHeight();
  return std::max((GetClientRect().Height() + height - 1) / height, 0);
}

int CTreeCtrl::GetPageSize() const {
  return std::max(GetClientRect().Height() / GetItemHeight(), 1);
}

std::size_t CTreeCtrl::TopPosition() const {
  return m_top && m_rows.IsVisible(m_top) ? m_rows.Position(m_top) : 0;
}

HTREEITEM CTreeCtrl::GetFirstVisibleItem() const {
  return m_rows.RowAt(TopPosition());
}

void CTreeCtrl::ScrollTo(std::size_t position) {
  const std::size_t count = m_rows.VisibleCount();
  const auto page = static_cast<std::size_t>(GetPageSize());
  const HTREEITEM top = m_rows.RowAt(std::min(position, count > page ? count - page : 0));
  if (top == m_top) return;
  m_top = top;
  UpdateScroll();
  Invalidate();
  OnViewMoved();
}

bool CTreeCtrl::GetItemRect(HTREEITEM row, CRect& area, bool textOnly) const {
  if (!m_rows.Contains(row) || !m_rows.IsVisible(row)) return false;
  constexpr std::int64_t kFar = 1'000'000;
  const int height = GetItemHeight();
  const auto rank = static_cast<std::int64_t>(m_rows.Position(row)) - static_cast<std::int64_t>(TopPosition());
  area.top = static_cast<int>(std::clamp(rank, -kFar, kFar)) * height;
  area.bottom = area.top + height;
  area.left = 0;
  area.right = GetClientRect().right;
  if (textOnly) {
    const bool hasState = m_stateImages != nullptr && StateImageOf(m_rows, row) != 0;
    area.left =
        ContentLeft(m_rows.Level(row)) + (hasState ? kImageCell : 0) + (m_images != nullptr ? kImageCell : 0);
    area.right = area.left + kLabelWidth;
  }
  return true;
}

HTREEITEM CTreeCtrl::HitTest(CPoint point, unsigned& flags) const {
  const CRect client = GetClientRect();
  flags = kHitNowhere;
  if (point.y < 0) flags = kHitAbove;
  if (point.y >= client.bottom) flags = kHitBelow;
  if (flags != kHitNowhere) return {};
  const HTREEITEM row = m_rows.RowAt(TopPosition() + static_cast<std::size_t>(point.y / GetItemHeight()));
  if (!row) return {};
  int right = ContentLeft(m_rows.Level(row));
  if (point.x < right - kIndent) {
    flags = kHitIndent;
  } else if (point.x < right) {
    flags = ItemHasChildren(row) ? kHitButton : kHitIndent;
  } else {
    flags = kHitRight;
    if (m_stateImages != nullptr && StateImageOf(m_rows, row) != 0) {
      right += kImageCell;
      if (point.x < right) flags = kHitStateIcon;
    }
    if (flags == kHitRight && m_images != nullptr) {
      right += kImageCell;
      if (point.x < right) flags = kHitIcon;
    }
    if (flags == kHitRight && point.x < right + kLabelWidth) flags = kHitLabel;
  }
  return row;
}

void CTreeCtrl::ScheduleLayout() {
  ++m_revision;
  if (m_layoutPending || !IsCreated()) return;
  m_layoutPending = true;
  Post(kLayoutMessage, 0);
}

void CTreeCtrl::OnPosted(unsigned id, std::uint64_t) {
  if (id != kLayoutMessage) return;
  m_layoutPending = false;
  UpdateScroll();
  OnLayout();
  Invalidate();
}

void CTreeCtrl::UpdateScroll() {
  if (GetPeer() == nullptr) return;
  const std::size_t count = m_rows.VisibleCount();
  const auto page = static_cast<std::size_t>(GetPageSize());
  const std::size_t last = count > page ? count - page : 0;
  if (TopPosition() > last || !m_top) m_top = m_rows.RowAt(std::min(TopPosition(), last));
  GetPeer()->SetScroll({static_cast<int>(last), static_cast<int>(page), static_cast<int>(TopPosition())});
}

void CTreeCtrl::OnSize() {
  ScheduleLayout();
}

void CTreeCtrl::OnScroll(int position) {
  ScrollTo(static_cast<std::size_t>(std::max(position, 0)));
}

void CTreeCtrl::OnMouseWheel(int lines) {
  ScrollBy(-lines);
}

void CTreeCtrl::ScrollBy(int rows) {
  const auto position = static_cast<std::int64_t>(TopPosition()) + rows;
  ScrollTo(static_cast<std::size_t>(std::max<std::int64_t>(position, 0)));
}

// ---- images and painting --------------------------------------------------------------------------------

void CTreeCtrl::SetImageList(const CImageList* normal, const CImageList* state) {
  m_images = normal;
  m_stateImages = state;
  Invalidate();
}

int CTreeCtrl::SetItemImage(HTREEITEM row, int image, int selectedImage) {
  if (!m_rows.Contains(row)) return 0;
  m_rows.SetImages(row, image, selectedImage);
  InvalidateRow(row);
  return 1;
}

void CTreeCtrl::SetBkColor(COLORREF colour) {
  m_background = colour;
  Invalidate();
}

void CTreeCtrl::PaintTree(CDC& dc, int right) {
  m_changedLines = 0;
  const CRect clip = dc.GetClipBox();
  const int height = GetItemHeight();
  const int firstLine = std::max(clip.top, 0) / height;
  HTREEITEM row = m_rows.RowAt(TopPosition() + static_cast<std::size_t>(firstLine));
  for (int top = firstLine * height; row && top < clip.bottom; top += height, row = m_rows.NextVisible(row)) {
    PaintLines(dc, row, {0, top, right, top + height});
    int left = ContentLeft(m_rows.Level(row));
    const int pictureTop = top + (height - kPicture) / 2;
    const auto place = [&](const CImageList* list, int index) {
      if (list == nullptr) return;
      if (const Picture* picture = list->GetPicture(index)) dc.DrawPicture({left, pictureTop}, *picture);
      left += kImageCell;
    };
    if (const int state = StateImageOf(m_rows, row); state != 0) place(m_stateImages, state);
    const bool selected = row == m_caret;
    place(m_images, selected ? m_rows.SelectedImage(row) : m_rows.Image(row));
  }
}

void CTreeCtrl::PaintLines(CDC& dc, HTREEITEM row, const CRect& line) const {
  const COLORREF lineColour = IToolkit::Instance().GetColour(SystemColour::Shadow);
  const COLORREF signColour = IToolkit::Instance().GetColour(SystemColour::WindowText);
  const int middle = line.top + line.Height() / 2;
  const int level = m_rows.Level(row);
  const int centre = ContentLeft(level) - kIndent + kIndent / 2;
  if (centre < line.right) {
    if (m_rows.PreviousSibling(row) || m_rows.Parent(row))
      dc.FillSolidRect({centre, line.top, centre + 1, middle}, lineColour);
    if (m_rows.NextSibling(row)) dc.FillSolidRect({centre, middle, centre + 1, line.bottom}, lineColour);
    dc.FillSolidRect({centre, middle, ContentLeft(level) - 2, middle + 1}, lineColour);
  }
  // Lines of ancestors that have later siblings; in a very deep branch only the nearest ones.
  int levels = 0;
  for (HTREEITEM above = m_rows.Parent(row); above && levels < kMaximumLineLevels; above = m_rows.Parent(above)) {
    const int x = ContentLeft(m_rows.Level(above)) - kIndent + kIndent / 2;
    if (x < line.right && m_rows.NextSibling(above))
      dc.FillSolidRect({x, line.top, x + 1, line.bottom}, lineColour);
    ++levels;
  }
  if (!ItemHasChildren(row) || centre >= line.right) return;
  const CRect box{centre - kButton / 2, middle - kButton / 2, centre + kButton / 2 + 1, middle + kButton / 2 + 1};
  dc.FillSolidRect(box, m_background);
  dc.FrameRect(box, lineColour);
  dc.FillSolidRect({box.left + 2, middle, box.right - 2, middle + 1}, signColour);
  if (!m_rows.IsExpanded(row)) dc.FillSolidRect({centre, box.top + 2, centre + 1, box.bottom - 2}, signColour);
}

}  // namespace qd
