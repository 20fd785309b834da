#pragma once

#include <cstdint>
#include <memory>

#include "platform/tree/RowTree.h"
#include "qd_wrt/treelist/CTLItem.h"

namespace qd {

/// The state image of a box that is checked.
inline constexpr unsigned kCheckedImage = 3;

// The word that the row tree keeps for each row of a tree list is the address of its record; 0 for a row without,
// kRecordLater for one whose record is made when it is looked at.

/// The word of a row whose record is made when it is looked at.
inline constexpr std::uint64_t kRecordLater = 1;

/// @{
/// The record of a word, null where there is none yet; the word of a record, and the end of a record.
inline CTLItem* RecordOf(std::uint64_t word) {
  return word != kRecordLater ? reinterpret_cast<CTLItem*>(word) : nullptr;
}
inline std::uint64_t WordOf(CTLItem* record) {
  return reinterpret_cast<std::uint64_t>(record);
}
inline void FreeRecord(std::uint64_t word) {
  std::unique_ptr<CTLItem>{RecordOf(word)};
}
/// @}

/// Null for a row that does not stand, and for one without a record.
inline const CTLItem* RecordOf(const RowTree& rows, HTREEITEM row) {
  return rows.Contains(row) ? RecordOf(rows.Word(row)) : nullptr;
}

/// Whether a row shows its colour: rows do that show a key.
inline bool ShowsSwatch(const CTLItem& record) {
  return record.HasColor() && !record.View(1).empty();
}

}  // namespace qd
