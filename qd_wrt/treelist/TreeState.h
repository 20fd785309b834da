#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"
#include "platform/RowHandle.h"
#include "qd_wrt/treelist/TreeColumn.h"

namespace qd {

class CTreeListCtrl;

/// The names by which a host knows rows again, in another run of the program too: any bytes, each once below one
/// parent. A row without a name is passed over with all below it.
class ITreeKeys {
 public:
  /// The name of a row, empty for none.
  virtual std::string KeyOf(HTREEITEM row) = 0;
  /// The child of a row (none: of the top level) with a name, none when there is none.
  virtual HTREEITEM FindBelow(HTREEITEM parent, const std::string& key) = 0;

 protected:
  ~ITreeKeys() = default;
};

/// What is open, selected and focused in a tree, its first row on screen and what was made of its columns, as text
/// of one line for each row that has to do with it, and for those above.
QD_EXPORT std::string SaveTreeState(const CTreeListCtrl& tree, ITreeKeys& keys, const ColumnLayout& columns);

/// Brings a tree into such a state, as far as its rows are there; others stay closed and are deselected. `columns`
/// gets what was made of the columns. The text may come from anywhere: what is not one of SaveTreeState's is
/// refused with 0 and nothing changed, else the answer is 1. O(lines + rows of the branches that are opened).
QD_EXPORT int RestoreTreeState(CTreeListCtrl& tree, ITreeKeys& keys, std::string_view text, ColumnLayout& columns);

}  // namespace qd
