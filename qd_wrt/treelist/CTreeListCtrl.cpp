#include "qd_wrt/treelist/CTreeListCtrl.h"

#include <algorithm>
#include <utility>

#include "qd_wrt/treelist/RowRecord.h"
#include "qd_wrt/treelist/SelectedText.h"

namespace qd {

CTreeListCtrl::~CTreeListCtrl() {
  EraseAllRows(FreeRecord);
}

void CTreeListCtrl::OnDestroy() {
  DeleteBoxes();
  m_band.Forget();
  m_typing.Forget();
  m_finder.OnDestroy();
  EraseAllRows(FreeRecord);
}

// ---- columns --------------------------------------------------------------------------------------------

int CTreeListCtrl::InsertColumn(int column, const CString& caption, int format, int width, int) {
  const int index = m_columns.Insert(column, caption, format, width);
  RecalcColumnsWidth();
  SetBkColor(m_look.background);
  return index;
}

void CTreeListCtrl::RecalcColumnsWidth() {
  m_columns.Measure();
  m_tip.Hide();  // what it shows may fit now
}

void CTreeListCtrl::FitColumn(int column) {
  constexpr int kMargin = 14;
  int widest = 0;
  std::vector<int> widths;
  const TreeListGeometry cells = Cells();
  const std::weak_ptr<void> life = Life();
  for (const RowLine& at : cells.LinesOnScreen()) {
    if (!IsLive(at.row)) continue;
    const CString text = GetCell(at.row, column).text;
    if (life.expired()) return;
    const CTLItem* record = RecordOf(Rows(), at.row);
    if (record == nullptr) continue;
    IToolkit::Instance().PrefixWidths({{}, 0, record->IsBold()}, text, widths);
    widest = std::max(widest, widths.back() + (column == 0 ? cells.TitleOf(at).left : 0));
  }
  if (widest > 0) GetHeader().SetItemWidth(column, widest + kMargin);
}

int CTreeListCtrl::AddColumn(const TreeColumn& column) {
  const int index = m_columns.Add(column);
  OnColumnsChanged();
  return index;
}

int CTreeListCtrl::RemoveLastColumn() {
  if (m_columns.RemoveLast() == 0) return 0;
  OnColumnsChanged();
  return 1;
}

int CTreeListCtrl::ShowColumns(const std::vector<int>& columns) {
  if (m_columns.Show(columns) == 0) return 0;
  OnColumnsChanged();
  return 1;
}

void CTreeListCtrl::OnColumnsChanged() {
  EndEditors();
  RecalcColumnsWidth();
  Invalidate();
  ResetVertScrollBar();
}

TreeCell CTreeListCtrl::GetCell(HTREEITEM row, int column) const {
  TreeCell cell;
  if (m_columns.IsAsked(column)) {
    if (IsLive(row) && column < m_columns.Count()) DescribeCell(row, column, cell);
    return cell;
  }
  LaterRow spare;
  const CTLItem* record = LookAt(row, spare);
  if (record == nullptr) return cell;
  cell.text = record->GetSubstring(column);
  if (column == TreeColumns::kKey && !cell.text.empty()) cell.number = record->GetItemKey();
  if (column == TreeColumns::kSwatch && record->HasColor()) cell.number = record->GetColor();
  return cell;
}

/// The cells that a painter wants. Who is asked may change rows, and take the control away.
std::vector<TreeCell> CTreeListCtrl::AskCells(const std::vector<RowLine>& lines) const {
  std::vector<TreeCell> cells;
  const std::vector<int> columns = m_columns.ShownAsked();
  if (columns.empty()) return cells;
  const std::weak_ptr<void> life = Life();
  for (const RowLine& at : lines) {
    for (const int column : columns) {
      cells.emplace_back();
      if (IsLive(at.row)) DescribeCell(at.row, column, cells.back());
      if (life.expired()) return {};
    }
  }
  return cells;
}

void CTreeListCtrl::PaintOwnCells(CDC& dc, const std::vector<RowLine>& lines, const std::vector<TreeCell>& asked) {
  const std::weak_ptr<void> life = Life();
  const CRect clip = dc.GetClipBox();
  const std::vector<int> columns = m_columns.ShownAsked();
  auto cell = asked.begin();
  for (const RowLine& at : lines) {
    for (const int column : columns) {
      const bool paints = cell != asked.end() && cell++->painted;
      const CRect area = Cells().CellOf(at.line, column);
      if (!paints || !IsLive(at.row) || area.IsEmpty()) continue;
      dc.SetClip(area.Moved(m_columns.Offset(), 0));
      PaintCell(at.row, column, dc, area);
      if (life.expired()) return;
    }
  }
  dc.SetClip(clip);
}

void CTreeListCtrl::SetHorizontalOffset(int x) {
  if (!m_columns.SetOffset(x)) return;
  Invalidate();
  OnViewMoved();
}

// ---- appearance -----------------------------------------------------------------------------------------

void CTreeListCtrl::SetBackgroundColor(COLORREF colour) {
  m_look.background = colour;
  SetBkColor(colour);
}

CString CTreeListCtrl::GetNextLine(CString& text) {
  const std::size_t end = text.find(L'\r');
  if (end == CString::npos) return {};
  CString line = text.substr(0, end);
  text.erase(0, end + 2);
  return line;
}

void CTreeListCtrl::OnPaint(CDC& dc) {
  const CRect clip = dc.GetClipBox();
  const CRect client = GetClientRect();
  std::vector<RowLine> lines = Cells().LinesBetween(clip.top, clip.bottom + 1);
  const std::weak_ptr<void> life = Life();
  const bool made = MakeRecords(lines);
  if (life.expired()) return;
  if (made) lines = Cells().LinesBetween(clip.top, clip.bottom + 1);
  const std::uint64_t revision = Revision();
  std::vector<TreeCell> asked = AskCells(lines);
  if (life.expired()) return;
  if (Revision() != revision || asked.size() != lines.size() * m_columns.ShownAsked().size()) {
    // Who was asked has changed rows or columns, which are asked for at the next paint.
    lines = Cells().LinesBetween(clip.top, clip.bottom + 1);
    asked.assign(lines.size() * m_columns.ShownAsked().size(), {});
    Invalidate();
  }
  const TreeListGeometry cells = Cells();
  m_look.background = GetBkColor();
  m_look.walker = HasFocus() ? GetCaret() : HTREEITEM{};
  const TreeListPainter painter(Rows(), cells, m_columns, m_look);
  dc.FillSolidRect(client, m_look.background);
  dc.SetViewportOrg(m_columns.Offset());
  PaintTree(dc, lines, client.right - m_columns.Offset());
  painter.Paint(dc, lines, asked);
  const bool paintsOwn =
      std::any_of(asked.begin(), asked.end(), [](const TreeCell& cell) { return cell.painted; });
  if (paintsOwn) PaintOwnCells(dc, lines, asked);
  if (life.expired()) return;
  dc.SetViewportOrg(0);
  m_band.Paint(dc);
  painter.PaintPlacesOfMatches(dc);
}

// ---- selection ------------------------------------------------------------------------------------------

int CTreeListCtrl::FocusItem(HTREEITEM row) {
  if (row) return SetItemState(row, kRowFocused, kRowFocused);
  return GetCaret() ? SetItemState(GetCaret(), 0, kRowFocused) : 0;
}

int CTreeListCtrl::SetMultiSelect(int flag) {
  const int before = IsMultiSelect();
  m_selection.SetMultiSelect(flag != 0);
  return before;
}

void CTreeListCtrl::GetSelectedList(std::list<HTREEITEM>& rows) const {
  const std::vector<HTREEITEM> selected = Rows().Selected(true);
  rows.assign(selected.begin(), selected.end());
}

CString CTreeListCtrl::GetSelectedText() const {
  return SelectedText(Rows(), *this, m_columns,
                      [this, life = Life()](HTREEITEM row, int column) -> std::optional<CString> {
                        if (life.expired()) return std::nullopt;
                        CString text = GetCell(row, column).text;
                        return life.expired() ? std::nullopt : std::optional(std::move(text));
                      });
}

int CTreeListCtrl::OnItemExpanding(HTREEITEM row, ExpandAction action) {
  const bool collapses =
      action == ExpandAction::Collapse || (action == ExpandAction::Toggle && IsLive(row) && IsExpanded(row));
  if (IsMultiSelect() != 0 && collapses) m_selection.LeaveBranch(row);
  return 0;
}

void CTreeListCtrl::SelectAlone(HTREEITEM row) {
  if (!IsLive(row)) return;
  ClearAllSelected();
  SetItemState(row, kRowSelected | kRowFocused, kRowSelected | kRowFocused);
  m_rules.ForgetAnchor();
  m_selectedItem = row;
  TellSelection();
}

void CTreeListCtrl::SelectFound() {
  Rows().SelectFound();
  m_rules.ForgetAnchor();
  ScheduleLayout();
  TellSelection();
}

// ---- in-place editing -----------------------------------------------------------------------------------

/// Of column 0, when there is one.
bool CTreeListCtrl::CanEdit(HTREEITEM row) const {
  return GetRecord(row) != nullptr && m_columns.Count() != 0;
}

void CTreeListCtrl::ShowEdit(HTREEITEM row) {
  EndEditors();
  const CTLItem* asked = GetRecord(row);
  if (asked == nullptr || (!asked->IsEditable() && !asked->HasCombo())) return;
  const HTREEITEM edited = GetSelectedItemField();
  if (!CanEdit(edited) || !GetRecord(edited)->IsEditable()) return;
  EnsureVisible(edited);
  CRect place;
  if (Cells().FindEditor(edited, place)) m_editors.OpenEditBox({edited, 0, GetItemText(edited, 0)}, place);
}

void CTreeListCtrl::ShowEditComboBoxes(CPoint point) {
  constexpr int kStripTop = 2;
  constexpr int kStripBottom = 4;
  EndEditors();
  const HTREEITEM edited = GetSelectedItemField();
  CRect place;
  if (!CanEdit(edited) || !CRect{0, kStripTop, GetColumnWidth(0), kStripBottom}.Contains(point) ||
      !Cells().FindEditor(edited, place))
    return;
  const CTLItem* record = GetRecord(edited);
  if (record->IsEditable()) {
    m_editors.OpenEditBox({edited, 0, record->GetItemText()}, place);
  } else if (record->HasCombo()) {
    m_editors.OpenComboBox({edited, 0, record->GetItemText()}, place);
  }
}

/// Rows have moved: an editor goes with its row, or closes silently when the row is gone or hidden.
void CTreeListCtrl::PlaceEditors() {
  const HTREEITEM row = m_editors.GetRow();
  if (!row) return;
  CRect place;
  Cells().FindEditor(row, place) ? m_editors.MoveTo(place) : DeleteBoxes();
}

void CTreeListCtrl::TellEditEnd(int code, int column, const CString& text) {
  EditNotice notice;
  notice.code = code;
  notice.subItem = column;
  notice.text = &text;
  SendEmulated(notice);
}

std::intptr_t CTreeListCtrl::OnReflectedNotice(Notice& notice) {
  if (notice.code == kNoticeEndLabelEdit) OnEndlabeledit(static_cast<EditNotice&>(notice));
  if (notice.code == kNoticeEndComboEdit) OnEndComboedit(static_cast<EditNotice&>(notice));
  return 0;
}

void CTreeListCtrl::OnEndlabeledit(const EditNotice& notice) {
  const CTreeListEditBox* box = GetEditBox();
  if (box == nullptr) return;
  const HTREEITEM row = box->GetItem();
  const std::weak_ptr<void> life = Life();
  const bool escape = box->IsEscape();
  // The box lives while an escaped edit is told, so that its reason can be asked for.
  if (escape) OnEditChange(row, notice.subItem, notice.text != nullptr ? *notice.text : CString(), 1);
  if (life.expired()) return;
  m_editors.CloseEditBox();
  if (!escape && notice.text != nullptr) OnEditChange(row, notice.subItem, *notice.text, 0);
}

void CTreeListCtrl::OnEndComboedit(const EditNotice& notice) {
  const CTreeListComboBox* box = m_editors.GetComboBox();
  if (box == nullptr) return;
  const HTREEITEM row = box->GetItem();
  m_editors.CloseComboBox();
  if (notice.text == nullptr) return;
  SetItemText(row, notice.subItem, *notice.text);
  if (IsLive(row)) InvalidateRow(row);
}

void CTreeListCtrl::OnEditChange(HTREEITEM, int, const CString&, int) {}

}  // namespace qd
