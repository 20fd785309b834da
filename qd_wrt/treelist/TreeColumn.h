#pragma once

#include <optional>
#include <vector>

#include "platform/Types.h"

namespace qd {

/// A column that a host adds.
struct TreeColumn {
  CString title{};       ///< its caption
  int width = 80;        ///< in pixels at first; -1: chosen from the caption
  int align = 0;         ///< 1 right, 2 centre, 0 left
  bool sortable = true;  ///< whether a click on the caption sorts the rows by it
  bool shown = true;     ///< whether it is shown at first
};

/// What a cell of such a column shows.
struct TreeCell {
  CString text{};                        ///< what is written there, read out and copied
  std::optional<double> number{};        ///< what rows are sorted by, in place of the text
  std::optional<COLORREF> colour{};      ///< of the text, while the row is not selected
  std::optional<COLORREF> background{};  ///< behind it, likewise
  bool painted = false;  ///< whether the host paints the cell itself; the text is only read out and copied
};

/// How the user has made the columns of a tree.
struct ColumnLayout {
  std::vector<int> widths{};  ///< by column, in pixels; empty while the user has set none
  std::vector<int> order{};   ///< the columns shown, from left to right; empty while they are as at first
  int sorted = -1;            ///< the column by which rows are sorted; -1 for none
  bool descending = false;    ///< whether the greatest stands first
};

}  // namespace qd
