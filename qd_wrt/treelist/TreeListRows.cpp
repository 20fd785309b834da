// Rows of the tree-list control and their records, which come and go with them.

#include <cassert>
#include <memory>
#include <utility>

#include "qd_wrt/treelist/CTreeListCtrl.h"
#include "qd_wrt/treelist/RowRecord.h"
#include "qd_wrt/treelist/RowSort.h"

namespace qd {

// ---- insertion ------------------------------------------------------------------------------------------

CTLItem* CTreeListCtrl::Record(HTREEITEM row) {
  if (!IsLive(row)) return nullptr;
  // Who makes it may ask for it, which is answered with none.
  if (Rows().Word(row) == kRecordLater && m_makingRecord != row) {
    const std::weak_ptr<void> life = Life();
    const HTREEITEM outer = std::exchange(m_makingRecord, row);
    OnMakeRecord(row);
    if (life.expired()) return nullptr;
    m_makingRecord = outer;
    if (!IsLive(row)) return nullptr;
  }
  return RecordOf(Rows().Word(row));
}

const CTLItem* CTreeListCtrl::GetRecord(HTREEITEM row) const {
  return m_self.Record(row);
}

const CTLItem* CTreeListCtrl::LookAt(HTREEITEM row, LaterRow& spare) const {
  if (!IsLater(row)) return RecordOf(Rows(), row);
  spare = {};
  return DescribeLater(row, spare) ? &spare.record : nullptr;
}

/// Makes the records of rows that are about to be seen. Returns whether there were any to be made.
bool CTreeListCtrl::MakeRecords(const std::vector<RowLine>& lines) {
  const std::weak_ptr<void> life = Life();
  bool made = false;
  for (const RowLine& at : lines) {
    if (!IsLater(at.row)) continue;
    made = true;
    static_cast<void>(Record(at.row));
    if (life.expired()) return true;
  }
  return made;
}

bool CTreeListCtrl::IsLater(HTREEITEM row) const {
  return IsLive(row) && Rows().Word(row) == kRecordLater;
}

void CTreeListCtrl::GiveRecord(HTREEITEM row, const CString& text, bool editable, int image) {
  if (!IsLater(row)) return;
  auto record = std::make_unique<CTLItem>();
  record->InsertItem(text);
  record->SetEditable(editable ? 1 : 0);
  Rows().SetWord(row, WordOf(record.release()));  // the row owns it now
  Rows().SetImages(row, image, image);
}

HTREEITEM CTreeListCtrl::InsertLater(HTREEITEM parent, HTREEITEM insertAfter, std::size_t count) {
  const HTREEITEM first = InsertRows(parent, insertAfter, count, kRecordLater);
  if (!first) return {};
  m_itemCount += static_cast<int>(count);
  ResetVertScrollBar();
  TellLaterChanged(first, count);
  return first;
}

void CTreeListCtrl::TellLaterChanged(HTREEITEM first, std::size_t count) {
  if (!m_finder.Follows()) return;
  for (HTREEITEM row = first; row && count > 0; row = Rows().NextSibling(row), --count) {
    if (IsLater(row)) m_finder.OnTitle(row);
  }
}

HTREEITEM CTreeListCtrl::InsertCopy(const CTLItem& record, int image, int selectedImage, unsigned state,
                                    HTREEITEM parent, HTREEITEM insertAfter) {
  auto owned = std::make_unique<CTLItem>(record);
  const HTREEITEM row = InsertRow(parent, insertAfter, image, selectedImage, WordOf(owned.get()));
  if (!row) return {};
  static_cast<void>(owned.release());  // the row owns it now
  if (state != 0) Rows().SetState(row, state, ~0U);
  m_finder.OnTitle(row);
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
  ++m_itemCount;
  ResetVertScrollBar();
  return InsertCopy(record, image, selectedImage, 0, parent, insertAfter);
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
    if (row) m_finder.OnTitle(row);
  }
  if (row && (mask & kAttributeState) != 0) {
    Rows().SetState(row, state, stateMask);
    m_finder.OnFacts(row);
  }
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

HTREEITEM CTreeListCtrl::MoveBranch(HTREEITEM row, HTREEITEM parent, HTREEITEM insertAfter,
                                    const std::function<void(HTREEITEM, HTREEITEM)>& onMoved) {
  RowTree& rows = Rows();
  const bool topLevel = !parent || parent == kTreeRoot;
  const bool isRow = rows.Contains(row) && rows.Word(row) != 0;
  if (!isRow || parent == row || (!topLevel && (!IsLive(parent) || rows.IsBelow(parent, row)))) return {};
  if (insertAfter == row) insertAfter = rows.PreviousSibling(row) ? rows.PreviousSibling(row) : kInsertFirst;
  DeleteBoxes();
  // Each row is made anew where it goes, takes its record along, and is told of.
  const auto move = [&](HTREEITEM from, HTREEITEM above, HTREEITEM after) {
    const HTREEITEM to = InsertRow(above, after, rows.Image(from), rows.SelectedImage(from), rows.Word(from));
    rows.SetState(to, rows.State(from, ~0U), ~static_cast<unsigned>(kRowExpanded));
    rows.SetPromised(to, rows.IsPromised(from));
    rows.SetWord(from, 0);
    m_finder.OnTitle(to);
    CarryCaret(from, to);
    if (m_selectedItem == from) m_selectedItem = to;
    onMoved(from, to);
    return to;
  };
  const auto finish = [&rows](HTREEITEM from, HTREEITEM to) {
    rows.SetExpanded(to, rows.IsExpanded(from));
    if (rows.WasExpanded(from)) rows.OpenBefore(to);
  };
  const HTREEITEM moved = move(row, parent, insertAfter);
  HTREEITEM from = row;
  HTREEITEM to = moved;
  for (;;) {
    if (rows.FirstChild(from)) {
      from = rows.FirstChild(from);
      to = move(from, to, kInsertLast);
      continue;
    }
    while (from != row && !rows.NextSibling(from)) {
      finish(from, to);
      from = rows.Parent(from);
      to = rows.Parent(to);
    }
    finish(from, to);
    if (from == row) break;
    from = rows.NextSibling(from);
    to = move(from, rows.Parent(to), kInsertLast);
  }
  EraseWithRecords(row, row, [](std::uint64_t) {});
  AfterErasing();
  return moved;
}

// ---- texts and attributes -------------------------------------------------------------------------------

int CTreeListCtrl::SetItemText(HTREEITEM row, int column, const CString& text) {
  CTLItem* record = Record(row);
  if (record == nullptr) return 0;
  record->SetSubstring(column, text);
  column == 0 ? m_finder.OnTitle(row) : m_finder.OnFacts(row);
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
  m_finder.OnFacts(row);
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
  m_finder.OnFacts(row);
  PlaceEditors();  // a title stands farther right behind a check image
}

int CTreeListCtrl::WhichCheck(HTREEITEM row) const {
  if (!IsLive(row)) return 0;
  if (Rows().Word(row) == kRecordLater && GetRecord(row) == nullptr) return 0;  // the box comes with the record
  return static_cast<int>(Rows().State(row, kRowStateImage) >> 12U);
}

// ---- deletion -------------------------------------------------------------------------------------------

void CTreeListCtrl::OnRowGone(HTREEITEM, const CTLItem*) {}

/// `onGone` hears of the word of each row before its record is freed.
template <typename OnGone>
void CTreeListCtrl::EraseWithRecords(HTREEITEM first, HTREEITEM last, const OnGone& onGone) {
  EraseRows(first, last, [this, &onGone](HTREEITEM gone, std::uint64_t word) {
    onGone(word);
    m_finder.OnGone(RowTree::NumberOf(gone));
    OnRowGone(gone, RecordOf(word));
    FreeRecord(word);
  });
}

/// What is about rows that are gone goes with them.
void CTreeListCtrl::AfterErasing() {
  const HTREEITEM edited = m_editors.GetRow();
  if (edited && !IsLive(edited)) DeleteBoxes();
  if (m_tip.Row() && !IsLive(m_tip.Row())) m_tip.Hide();
  ResetVertScrollBar();
}

int CTreeListCtrl::DeleteItem(HTREEITEM row) {
  if (!IsLive(row) || Rows().Word(row) == 0) return 0;
  DeleteSiblings(row, row);
  return 1;
}

void CTreeListCtrl::DeleteSiblings(HTREEITEM first, HTREEITEM last) {
  if (!IsLive(first) || !IsLive(last)) return;
  const HTREEITEM behind = Rows().NextSibling(last);
  for (HTREEITEM row = first; row && row != behind; row = Rows().NextSibling(row)) --m_itemCount;
  EraseWithRecords(first, last, [](std::uint64_t) {});
  AfterErasing();
}

int CTreeListCtrl::DeleteSubItems(HTREEITEM row) {
  if (!IsLive(row) || !ItemHasChildren(row)) return 0;
  bool failed = false;
  const auto onGone = [this, &failed](std::uint64_t word) {
    if (word == 0) {
      failed = true;
    } else {
      --m_itemCount;
    }
  };
  const auto hasWord = [this](HTREEITEM child) { return Rows().Word(child) != 0; };
  for (HTREEITEM child = Rows().FirstChild(row); child;) {
    if (!hasWord(child)) {
      failed = true;  // a row without record stays until its branch goes
      child = Rows().NextSibling(child);
      continue;
    }
    HTREEITEM last = child;
    HTREEITEM next = Rows().NextSibling(last);
    for (; next && hasWord(next); next = Rows().NextSibling(next)) last = next;
    EraseWithRecords(child, last, onGone);
    child = next;
  }
  AfterErasing();
  return failed ? 1 : 0;
}

int CTreeListCtrl::DeleteAllItems() {
  IToolkit::Instance().SetWaitCursor(true);
  DeleteBoxes();
  EraseAllRows(FreeRecord);
  m_finder.OnAllGone();
  m_tip.Hide();
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
  if (KeepsOrder(parent)) return 1;
  const std::vector<HTREEITEM> sorted = SortedChildren(Rows(), parent, {column, byName});
  if (sorted.empty()) return 1;
  Rows().ReorderChildren(parent, sorted);
  ScheduleLayout();
  return 1;
}

}  // namespace qd
