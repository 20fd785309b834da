#include "qd_wrt/treelist/CTreeListCtrl.h"

#include <algorithm>
#include <cassert>
#include <memory>
#include <numeric>
#include <utility>

#include "platform/tree/StableMerge.h"

namespace qd {

namespace {

constexpr unsigned kFormatBase = 0x01000000;
constexpr int kDefaultColumnMargin = 24;

// The row's data word carries its record.
CTLItem* RecordOf(std::uint64_t word) {
  return reinterpret_cast<CTLItem*>(word);
}
std::uint64_t WordOf(CTLItem* record) {
  return reinterpret_cast<std::uint64_t>(record);
}
void FreeRecord(std::uint64_t word) {
  std::unique_ptr<CTLItem>{RecordOf(word)};
}

}  // namespace

CTreeListCtrl::~CTreeListCtrl() {
  EraseAllRows(FreeRecord);
}

void CTreeListCtrl::OnDestroy() {
  DeleteBoxes();
  m_band.reset();
  m_search.reset();
  EraseAllRows(FreeRecord);
}

void CTreeListCtrl::OnPosted(unsigned id, std::uint64_t parameter) {
  if (id == kFreeBoxesMessage) return m_closedBoxes.clear();
  CTreeCtrl::OnPosted(id, parameter);
}

// ---- columns --------------------------------------------------------------------------------------------

int CTreeListCtrl::InsertColumn(int column, const CString& caption, int format, int width, int) {
  ++m_columnCount;
  CHeaderBase::Item item;
  item.text = caption;
  item.format = kFormatBase | (format == 1   ? CHeaderBase::kFormatRight
                               : format == 2 ? CHeaderBase::kFormatCentre
                                             : 0U);
  item.width = width;
  if (width == -1) {
    std::vector<int> widths;
    IToolkit::Instance().PrefixWidths({}, caption, widths);
    item.width = widths.back() + kDefaultColumnMargin;
  }
  const int index = m_header.InsertItem(column, std::move(item));
  RecalcColumnsWidth();
  SetBkColor(m_background);
  return index;
}

int CTreeListCtrl::GetColumnWidth(int column) const {
  const CHeaderBase::Item* item = m_header.GetItem(column);
  return item != nullptr ? item->width : 0;
}

int CTreeListCtrl::GetColumnAlign(int column) const {
  const CHeaderBase::Item* item = m_header.GetItem(column);
  if (item == nullptr) return 0;
  if ((item->format & CHeaderBase::kFormatRight) != 0) return 1;
  return static_cast<int>(item->format & CHeaderBase::kFormatCentre);
}

void CTreeListCtrl::RecalcColumnsWidth() {
  m_columnsWidth = 0;
  for (int column = 0; column < m_columnCount; ++column) m_columnsWidth += GetColumnWidth(column);
  HideTip();  // what it shows may fit now
}

void CTreeListCtrl::FitColumn(int column) {
  constexpr int kMargin = 14;
  int widest = 0;
  std::vector<int> widths;
  HTREEITEM row = GetFirstVisibleItem();
  for (int i = GetVisibleCount(); i > 0 && row; --i, row = Rows().NextVisible(row)) {
    const CTLItem* record = GetRecord(row);
    if (record == nullptr) continue;
    CRect text;
    GetItemRect(row, text, true);
    IToolkit::Instance().PrefixWidths({{}, 0, record->IsBold()}, record->View(column), widths);
    widest = std::max(widest, widths.back() + (column == 0 ? text.left : 0));
  }
  if (widest > 0) m_header.SetItemWidth(column, widest + kMargin);
}

void CTreeListCtrl::SetHorizontalOffset(int x) {
  if (std::exchange(m_offset, x) == x) return;
  m_header.SetOffset(x);
  Invalidate();
  OnViewMoved();
}

// ---- records and rows -----------------------------------------------------------------------------------

CTLItem* CTreeListCtrl::Record(HTREEITEM row) {
  return IsLive(row) ? RecordOf(Rows().Word(row)) : nullptr;
}

const CTLItem* CTreeListCtrl::GetRecord(HTREEITEM row) const {
  return IsLive(row) ? RecordOf(Rows().Word(row)) : nullptr;
}

void CTreeListCtrl::ResetVertScrollBar() {
  if (m_pane != nullptr) m_pane->ResetScrollBar();
}

HTREEITEM CTreeListCtrl::Insert(const CTLItem& record, int image, int selectedImage, HTREEITEM parent,
                                HTREEITEM insertAfter) {
  ++m_itemCount;
  ResetVertScrollBar();
  return InsertCopy(record, image, selectedImage, 0, parent, insertAfter);
}

HTREEITEM CTreeListCtrl::InsertCopy(const CTLItem& record, int image, int selectedImage, unsigned state,
                                    HTREEITEM parent, HTREEITEM insertAfter) {
  auto owned = std::make_unique<CTLItem>(record);
  const HTREEITEM row = InsertRow(parent, insertAfter, image, selectedImage, WordOf(owned.get()));
  if (!row) return {};
  static_cast<void>(owned.release());  // the row owns it now
  if (state != 0) Rows().SetState(row, state, ~0U);
  return row;
}

HTREEITEM CTreeListCtrl::InsertItem(const CString& text, int editable, int combo, HTREEITEM parent,
                                    HTREEITEM insertAfter) {
  return InsertItem(text, 0, 0, editable, combo, parent, insertAfter);
}

HTREEITEM CTreeListCtrl::InsertItem(const CString& text, int image, int selectedImage, int editable, int combo,
                                    HTREEITEM parent, HTREEITEM insertAfter) {
  CTLItem record;
  record.InsertItem(text);
  record.SetEditable(editable);
  record.SetCombo(combo);
  return Insert(record, image, selectedImage, parent, insertAfter);
}

HTREEITEM CTreeListCtrl::InsertItem(unsigned mask, const CString& text, int image, int selectedImage,
                                    unsigned state, unsigned stateMask, std::uint32_t data, HTREEITEM parent,
                                    HTREEITEM insertAfter, int editable, int combo) {
  if ((mask & kAttributeImage) == 0) image = 0;
  if ((mask & kAttributeSelectedImage) == 0) selectedImage = 0;
  HTREEITEM row;
  if ((mask & kAttributeData) != 0) {
    row = InsertItem(text, image, selectedImage, editable, combo, parent, insertAfter);
    SetItemData(row, data);
  } else {
    ++m_itemCount;
    ResetVertScrollBar();
    row = InsertRow(parent, insertAfter, image, selectedImage, 0);
  }
  if (row && (mask & kAttributeState) != 0) Rows().SetState(row, state, stateMask);
  return row;
}

HTREEITEM CTreeListCtrl::CopyItem(HTREEITEM row, HTREEITEM parent, HTREEITEM insertAfter) {
  const CTLItem* record = GetRecord(row);
  if (record == nullptr || ItemHasChildren(row)) return {};
  constexpr unsigned kCopied = kRowSelected | kRowStateImage;
  return InsertCopy(*record, Rows().Image(row), Rows().SelectedImage(row), Rows().State(row, kCopied), parent,
                    insertAfter);
}

HTREEITEM CTreeListCtrl::MoveItem(HTREEITEM row, HTREEITEM parent, HTREEITEM insertAfter) {
  const CTLItem* found = GetRecord(row);
  const bool topLevel = !parent || parent == kTreeRoot;
  if (found == nullptr || ItemHasChildren(row) || parent == row || (!topLevel && !IsLive(parent))) return {};
  if (insertAfter == row) {
    insertAfter = Rows().PreviousSibling(row) ? Rows().PreviousSibling(row) : kInsertFirst;
  }
  const CTLItem record = *found;
  const int image = Rows().Image(row);
  const int selectedImage = Rows().SelectedImage(row);
  const unsigned state = Rows().State(row, kRowSelected | kRowStateImage);
  DeleteItem(row);
  return InsertCopy(record, image, selectedImage, state, parent, insertAfter);
}

// ---- texts and attributes -------------------------------------------------------------------------------

int CTreeListCtrl::SetItemText(HTREEITEM row, int column, const CString& text) {
  CTLItem* record = Record(row);
  if (record == nullptr) return 0;
  record->SetSubstring(column, text);
  return 1;
}

CString CTreeListCtrl::GetItemText(HTREEITEM row, int column) const {
  const CTLItem* record = GetRecord(row);
  return record != nullptr ? record->GetSubstring(column) : CString();
}

HTREEITEM CTreeListCtrl::GetTreeItem(int) const {
  return GetRootItem();
}

int CTreeListCtrl::GetListItem(HTREEITEM row) const {
  assert(!row || row == GetRootItem());
  static_cast<void>(row);
  return 0;
}

int CTreeListCtrl::SetItemData(HTREEITEM row, std::uint32_t value) {
  CTLItem* record = Record(row);
  if (record == nullptr) return 0;
  record->SetData(value);
  return 1;
}

std::uint32_t CTreeListCtrl::GetItemData(HTREEITEM row) const {
  const CTLItem* record = GetRecord(row);
  return record != nullptr ? record->GetData() : 0;
}

int CTreeListCtrl::SetItemColor(HTREEITEM row, COLORREF colour, int invalidate) {
  CTLItem* record = Record(row);
  if (record == nullptr) return 0;
  record->SetColor(colour);
  if (invalidate != 0) Invalidate();
  return 1;
}

int CTreeListCtrl::SetItemBold(HTREEITEM row, int bold, int invalidate) {
  CTLItem* record = Record(row);
  if (record == nullptr) return 0;
  record->SetBold(bold != 0);
  if (invalidate != 0) Invalidate();
  return 1;
}

void CTreeListCtrl::SetEditable(HTREEITEM row, int flag) {
  CTLItem* record = Record(row);
  assert(record != nullptr);
  record->SetEditable(flag);
  record->SetCombo(flag == 0 ? 1 : 0);
}

void CTreeListCtrl::SetCombo(HTREEITEM row, int flag) {
  CTLItem* record = Record(row);
  assert(record != nullptr);
  record->SetCombo(flag);
  record->SetEditable(flag == 0 ? 1 : 0);
}

void CTreeListCtrl::SetChecked(HTREEITEM row, int state) {
  if (!IsLive(row)) return;
  SetRowState(row, static_cast<unsigned>(state) << 12U, kRowStateImage);
  PlaceEditors();  // a title stands farther right behind a check image
}

int CTreeListCtrl::WhichCheck(HTREEITEM row) const {
  return IsLive(row) ? static_cast<int>(Rows().State(row, kRowStateImage) >> 12U) : 0;
}

// ---- deletion -------------------------------------------------------------------------------------------

void CTreeListCtrl::OnRowGone(HTREEITEM, const CTLItem*) {}

void CTreeListCtrl::EraseWithRecords(HTREEITEM row) {
  EraseRow(row, [this](HTREEITEM gone, std::uint64_t word) {
    OnRowGone(gone, RecordOf(word));
    FreeRecord(word);
  });
  CloseEditorsOfDeadRows();
}

void CTreeListCtrl::CloseEditorsOfDeadRows() {
  const bool dead =
      (m_edit != nullptr && !IsLive(m_edit->GetItem())) || (m_combo != nullptr && !IsLive(m_combo->GetItem()));
  if (dead) DeleteBoxes();
  if (m_tipRow && !IsLive(m_tipRow)) HideTip();
}

/// The tip is in the way of what is done now. It comes again when the pointer has been elsewhere.
void CTreeListCtrl::DismissTip() {
  if (m_pane != nullptr) m_pane->HideToolTip();
}

void CTreeListCtrl::HideTip() {
  m_tipRow = {};
  if (m_pane != nullptr) m_pane->HideToolTip();
}

int CTreeListCtrl::DeleteItem(HTREEITEM row) {
  if (GetRecord(row) == nullptr) return 0;
  --m_itemCount;
  EraseWithRecords(row);
  ResetVertScrollBar();
  return 1;
}

int CTreeListCtrl::DeleteSubItems(HTREEITEM row) {
  if (!IsLive(row) || !ItemHasChildren(row)) return 0;
  bool failed = false;
  for (HTREEITEM child = Rows().FirstChild(row); child;) {
    const HTREEITEM next = Rows().NextSibling(child);
    if (GetRecord(child) == nullptr) {
      failed = true;  // a row without record stays until its branch goes
    } else {
      EraseRow(child, [this, &failed](HTREEITEM gone, std::uint64_t word) {
        if (word == 0) {
          failed = true;
        } else {
          --m_itemCount;
        }
        OnRowGone(gone, RecordOf(word));
        FreeRecord(word);
      });
    }
    child = next;
  }
  CloseEditorsOfDeadRows();
  ResetVertScrollBar();
  return failed ? 1 : 0;
}

int CTreeListCtrl::DeleteAllItems() {
  IToolkit::Instance().SetWaitCursor(true);
  DeleteBoxes();
  EraseAllRows(FreeRecord);
  HideTip();
  IToolkit::Instance().SetWaitCursor(false);
  ResetVertScrollBar();
  return 1;
}

// ---- sorting --------------------------------------------------------------------------------------------

int CTreeListCtrl::CompareFuncByName(const CTLItem& a, const CTLItem& b, const SortParameters& parameters) {
  return CompareNames(NameKey(a.View(parameters.column)), NameKey(b.View(parameters.column)), parameters.byName);
}

int CTreeListCtrl::CompareFuncByKey(const CTLItem& a, const CTLItem& b, const SortParameters& parameters) {
  const auto key = [&parameters](const CTLItem& record) {
    return RowKey{record.GetItemKey(), static_cast<std::uint32_t>(BracketNumber(record.View(parameters.column)))};
  };
  return CompareKeys(key(a), key(b));
}

int CTreeListCtrl::SortItems(int column, int byName, HTREEITEM parent) {
  if (parent == kTreeRoot) parent = {};
  if (parent && !IsLive(parent)) return 0;
  // Texts are taken apart once per row, not once per comparison.
  std::vector<HTREEITEM> children;
  std::vector<NameKey> names;
  std::vector<RowKey> keys;
  children.reserve(Rows().ChildCount(parent));
  for (HTREEITEM child = GetChildItem(parent); child; child = GetNextSiblingItem(child)) {
    const CTLItem* record = GetRecord(child);
    const std::wstring_view text = record != nullptr ? record->View(column) : std::wstring_view();
    children.push_back(child);
    if (byName != 0) {
      names.emplace_back(text);
    } else {
      const std::uint32_t key = record != nullptr ? record->GetItemKey() : 0;
      keys.push_back({key, key == 0 ? static_cast<std::uint32_t>(BracketNumber(text)) : 0});
    }
  }
  std::vector<std::uint32_t> order(children.size());
  std::iota(order.begin(), order.end(), 0U);
  const bool changed = byName != 0 ? StableMerge(order,
                                                 [&names, byName](std::uint32_t a, std::uint32_t b) {
                                                   return CompareNames(names[a], names[b], byName);
                                                 })
                                   : StableMerge(order, [&keys](std::uint32_t a, std::uint32_t b) {
                                       return CompareKeys(keys[a], keys[b]);
                                     });
  if (!changed) return 1;
  std::vector<HTREEITEM> sorted(children.size());
  std::transform(order.begin(), order.end(), sorted.begin(),
                 [&children](std::uint32_t at) { return children[at]; });
  Rows().ReorderChildren(parent, sorted);
  ScheduleLayout();
  return 1;
}

// ---- appearance -----------------------------------------------------------------------------------------

void CTreeListCtrl::SetBackgroundColor(COLORREF colour) {
  m_background = colour;
  SetBkColor(colour);
}

CString CTreeListCtrl::GetNextLine(CString& text) {
  const std::size_t end = text.find(L'\r');
  if (end == CString::npos) return {};
  CString line = text.substr(0, end);
  text.erase(0, end + 2);
  return line;
}

void CTreeListCtrl::OnLayout() {
  PlaceEditors();
  ResetVertScrollBar();
}

void CTreeListCtrl::OnScroll(int position) {
  EndEditors();
  CTreeCtrl::OnScroll(position);
}

void CTreeListCtrl::OnMouseWheel(int lines) {
  EndEditors();
  CTreeCtrl::OnMouseWheel(lines);
}

void CTreeListCtrl::OnMouseWheelAcross(int steps) {
  if (m_pane != nullptr) m_pane->ScrollColumns(steps);
}

void CTreeListCtrl::OnViewMoved() {
  PlaceEditors();
  HideTip();
}

}  // namespace qd
