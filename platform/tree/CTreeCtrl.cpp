#include "platform/tree/CTreeCtrl.h"

#include <algorithm>

namespace qd {

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

HTREEITEM CTreeCtrl::InsertRows(HTREEITEM parent, HTREEITEM after, std::size_t count, std::uint64_t word) {
  const HTREEITEM first = m_rows.InsertMany(parent, after, count, word);
  if (!m_top) m_top = m_rows.First();
  ScheduleLayout();
  return first;
}

void CTreeCtrl::EraseRows(HTREEITEM first, HTREEITEM last,
                          const std::function<void(HTREEITEM, std::uint64_t)>& onRow) {
  if (!m_rows.Contains(first)) return;
  const bool visible = m_rows.IsVisible(first);
  const std::size_t position = visible ? m_rows.Position(first) : 0;
  m_rows.EraseSiblings(first, last, onRow);
  const auto neighbour = [&]() -> HTREEITEM {
    if (!visible || m_rows.VisibleCount() == 0) return {};
    return m_rows.RowAt(std::min(position, m_rows.VisibleCount() - 1));
  };
  if (m_caret && !m_rows.Contains(m_caret)) m_caret = neighbour();
  if (m_top && !m_rows.Contains(m_top)) m_top = visible ? neighbour() : m_rows.First();
  if (m_rows.IsFiltered()) LeaveHiddenRows();
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

void CTreeCtrl::ShowSearch(RowSearch search) {
  if (!m_viewBefore.has_value()) m_viewBefore = View{m_caret, GetFirstVisibleItem(), TopPosition()};
  m_rows.ShowSearch(std::move(search));
  LeaveHiddenRows();
  OnViewMoved();
}

void CTreeCtrl::ShowFilteredOut(HTREEITEM row) {
  if (!m_rows.IsFilteredOut(row)) return;
  m_rows.Pin(row);
  ScheduleLayout();
}

void CTreeCtrl::SetFound(HTREEITEM row, bool on) {
  const auto positionOf = [this](HTREEITEM of) { return of && m_rows.IsVisible(of) ? m_rows.Position(of) : 0; };
  const std::size_t caret = positionOf(m_caret);
  const std::size_t top = positionOf(m_top);
  m_rows.SetFound(row, on);
  // As when rows are deleted, the next one takes the place of one that goes.
  const auto replace = [this](HTREEITEM& of, std::size_t position) {
    if (!of || m_rows.IsVisible(of) || m_rows.VisibleCount() == 0) return;
    of = m_rows.RowAt(std::min(position, m_rows.VisibleCount() - 1));
  };
  if (m_rows.IsFilteredOut(m_caret)) replace(m_caret, caret);
  replace(m_top, top);
  LeaveHiddenRows();
}

/// Brings the caret and the first row on screen to rows that are not hidden.
void CTreeCtrl::LeaveHiddenRows() {
  if (m_caret) m_caret = m_rows.NearestVisible(m_caret);
  if (m_top) m_top = m_rows.NearestVisible(m_top);
  ScheduleLayout();
}

void CTreeCtrl::EndSearch() {
  m_rows.EndSearch();
  if (!m_viewBefore.has_value()) return;
  if (m_rows.Contains(m_viewBefore->caret) || !m_viewBefore->caret) m_caret = m_viewBefore->caret;
  if (m_rows.Contains(m_viewBefore->top)) m_top = m_viewBefore->top;
  m_viewBefore.reset();
  LeaveHiddenRows();
  OnViewMoved();
}

void CTreeCtrl::ExpandForGood(HTREEITEM row) {
  const std::weak_ptr<void> life = Life();
  Expand(row, ExpandAction::Expand);
  if (!life.expired() && m_rows.IsExpanded(row)) m_rows.OpenBefore(row);
}

void CTreeCtrl::SetPromised(HTREEITEM row, bool promised) {
  if (!m_rows.Contains(row)) return;
  m_rows.SetPromised(row, promised);
  InvalidateRow(row);
}

/// Returns whether the row still stands, with children.
bool CTreeCtrl::KeepPromise(HTREEITEM row) {
  if (!m_rows.IsPromised(row)) return ItemHasChildren(row);
  m_rows.SetPromised(row, false);
  const std::weak_ptr<void> life = Life();
  try {
    OnMakeChildren(row);
  } catch (...) {  // they can be asked for again
    if (!life.expired()) SetPromised(row, !ItemHasChildren(row));
    throw;
  }
  if (life.expired() || !m_rows.Contains(row)) return false;
  InvalidateRow(row);
  return ItemHasChildren(row);
}

int CTreeCtrl::Expand(HTREEITEM row, ExpandAction action) {
  if (!m_rows.Contains(row)) return 0;
  const bool expand = action == ExpandAction::Toggle ? !m_rows.IsExpanded(row) : action == ExpandAction::Expand;
  if (expand == m_rows.IsExpanded(row)) return 0;
  const std::weak_ptr<void> life = Life();  // whoever hears of it may take the tree down
  if (expand) OnBeforeOpen(row);
  if (life.expired() || !m_rows.Contains(row)) return 0;
  if (expand && !KeepPromise(row)) return 0;
  TreeNotice notice;
  notice.code = kNoticeItemExpanding;
  notice.row = row;
  notice.action = expand ? ExpandAction::Expand : ExpandAction::Collapse;
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
  if (!m_rows.Contains(row)) return;
  ShowFilteredOut(row);
  if (!ExpandAbove(row)) return;
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
  if (IsCreated() && GetItemRect(row, area, false)) InvalidateRect(area);
}

// ---- caret ----------------------------------------------------------------------------------------------

int CTreeCtrl::SetCaret(HTREEITEM row) {
  if (!m_rows.Contains(row)) return 0;
  ShowFilteredOut(row);
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
  if (!caret) return true;
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
  const HTREEITEM caret = m_caret ? m_rows.NearestVisible(m_caret) : HTREEITEM{};
  if (!caret) return key == kKeyEnd ? m_rows.LastVisible() : m_rows.RowAt(0);
  const std::size_t position = m_rows.Position(caret);
  const auto page = static_cast<std::size_t>(std::max(GetPageSize() - 1, 1));
  const std::weak_ptr<void> life = Life();
  switch (key) {
    case kKeyUp:
      return m_rows.RowAt(position == 0 ? 0 : position - 1);
    case kKeyDown:
      return m_rows.RowAt(std::min(position + 1, count - 1));
    case kKeyHome:
      return m_rows.RowAt(0);
    case kKeyEnd:
      return m_rows.LastVisible();
    case kKeyPageUp:
      return m_rows.RowAt(position < page ? 0 : position - page);
    case kKeyPageDown:
      return m_rows.RowAt(std::min(position + page, count - 1));
    case kKeyLeft:
      if (m_rows.IsExpanded(caret) && HasShownChildren(caret)) {
        Expand(caret, ExpandAction::Collapse);
      } else if (m_rows.Parent(caret)) {
        return m_rows.Parent(caret);
      }
      break;
    default:  // right
      if (CanOpen(caret) && !m_rows.IsExpanded(caret)) {
        Expand(caret, ExpandAction::Expand);
      } else if (HasShownChildren(caret)) {
        return m_rows.RowAt(position + 1);
      }
      break;
  }
  if (life.expired()) return {};
  return m_rows.Contains(caret) ? caret : HTREEITEM{};
}

HTREEITEM CTreeCtrl::GetFirstShownChild(HTREEITEM row) const {
  const HTREEITEM child = GetChildItem(row);
  if (!child || !m_rows.IsFilteredOut(child)) return child;
  if (!row) return m_rows.RowAt(0);
  if (!HasShownChildren(row)) return {};
  // In a branch that is seen it is the row behind; in others siblings are looked through.
  if (m_rows.IsVisible(row) && m_rows.IsExpanded(row)) return m_rows.RowAt(m_rows.Position(row) + 1);
  return m_rows.NextShown(child);
}

// ---- scrolling and geometry -----------------------------------------------------------------------------

int CTreeCtrl::GetItemHeight() const {
  return std::max(IToolkit::Instance().FontHeight({}) + 4, RowGeometry::kPicture + 2);
}

RowGeometry CTreeCtrl::GetGeometry() const {
  return {
      m_rows,
      {GetClientRect(), TopPosition(), GetItemHeight(), m_look.stateImages != nullptr, m_look.icons != nullptr}};
}

int CTreeCtrl::GetVisibleCount() const {
  return GetGeometry().LineCount();
}

int CTreeCtrl::GetPageSize() const {
  return GetGeometry().PageSize();
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
  // Of most rows that change nothing is seen: they need not know where the tree stands.
  if (!m_rows.Contains(row) || !m_rows.IsVisible(row)) return false;
  const RowGeometry geometry = GetGeometry();
  if (!geometry.FindLine(row, area)) return false;
  if (textOnly) area = geometry.TextOf({row, area});
  return true;
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
  m_look.icons = normal;
  m_look.stateImages = state;
  Invalidate();
}

int CTreeCtrl::SetItemImage(HTREEITEM row, int image, int selectedImage) {
  if (!m_rows.Contains(row)) return 0;
  m_rows.SetImages(row, image, selectedImage);
  InvalidateRow(row);
  return 1;
}

void CTreeCtrl::SetBkColor(COLORREF colour) {
  m_look.background = colour;
  Invalidate();
}

void CTreeCtrl::PaintTree(CDC& dc, const std::vector<RowLine>& lines, int right) {
  m_changedLines = 0;
  const RowGeometry geometry = GetGeometry();
  TreePainter(m_rows, geometry, m_look, m_caret).Paint(dc, lines, right);
}

}  // namespace qd
