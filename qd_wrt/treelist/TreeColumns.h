#pragma once

#include <vector>

#include "platform/Export.h"
#include "platform/Types.h"
#include "qd_wrt/treelist/CQDTreeListHeaderCtrl.h"
#include "qd_wrt/treelist/TreeColumn.h"

namespace qd {

/// The columns of a tree list: the header with their captions and widths, and how far they are scrolled.
class QD_EXPORT TreeColumns {
 public:
  /// @{
  /// Columns with a meaning of their own.
  static constexpr int kKey = 1;
  static constexpr int kSwatch = 2;
  /// @}

  /// See CTreeListCtrl::InsertColumn.
  int Insert(int column, const CString& caption, int format, int width);
  /// Adds a column behind all others whose cells nobody keeps: they are asked for. Returns its number.
  int Add(const TreeColumn& column);
  /// Takes the last such column away. Returns 1; 0 when there is none.
  int RemoveLast();
  int Count() const { return m_count; }  ///< how many there are, hidden ones too
  int WidthOf(int column) const;         ///< in pixels, 0 for none and for a hidden one
  int FullWidthOf(int column) const;     ///< of a hidden one, too
  /// 1 right, 2 centre, 0 left.
  int AlignOf(int column) const;
  /// Whether the cells of a column are asked for.
  bool IsAsked(int column) const {
    return column < m_count && column >= m_count - static_cast<int>(m_asked.size());
  }
  std::vector<int> ShownAsked() const;  ///< such columns that are shown, from left to right
  /// The columns that are shown, from left to right; the first one is the title's.
  const std::vector<int>& Shown() const { return m_header.GetOrder(); }
  /// Shows these columns and no others, from left to right, 0 first. Returns 1; 0 with nothing changed for what is
  /// no such list.
  int Show(const std::vector<int>& columns);
  std::vector<int> ShownAtFirst() const;  ///< what is shown until somebody changes that
  /// @{
  /// Whether a click on the caption sorts the rows. Of added columns as they were added; of others not.
  bool IsSortable(int column) const;
  void SetSortable(int column, bool sortable);
  /// @}
  /// Where a column begins, from the left edge of the content.
  int LeftOf(int column) const;
  /// Adds the widths up anew.
  void Measure();
  /// Of all columns, when they were measured last.
  int TotalWidth() const { return m_totalWidth; }

  /// Moves the content, 0 or to the left, and the header with it. Returns whether it stood elsewhere.
  bool SetOffset(int x);
  int Offset() const { return m_offset; }  ///< 0 or negative

  CQDTreeListHeaderCtrl& Header() { return m_header; }  ///< its window is made by the pane

 private:
  CQDTreeListHeaderCtrl m_header;
  std::vector<bool> m_asked;     // by column from the first one that is asked for: whether it is shown at first
  std::vector<bool> m_sortable;  // by column, as far as somebody has said
  int m_count = 0;
  int m_totalWidth = 0;
  int m_offset = 0;
};

}  // namespace qd
