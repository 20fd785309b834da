#pragma once

#include <functional>
#include <optional>

#include "platform/Types.h"
#include "platform/tree/RowTree.h"
#include "qd_wrt/treelist/LaterRows.h"
#include "qd_wrt/treelist/TreeColumns.h"

namespace qd {

/// The selected visible rows as the clipboard gets them: a line a row, top to bottom, with a tab between the
/// columns shown; a colour as `#RRGGBB`. `asked` gives the text of a cell that is asked for, nothing once all that
/// is handed over here has gone; it may change rows.
CString SelectedText(const RowTree& rows, const IRowRecords& records, const TreeColumns& columns,
                     const std::function<std::optional<CString>(HTREEITEM row, int column)>& asked);

}  // namespace qd
