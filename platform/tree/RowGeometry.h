#pragma once

#include <cstddef>
#include <vector>

#include "platform/Export.h"
#include "platform/Types.h"
#include "platform/tree/RowTree.h"

namespace qd {

/// Where a point hits a row.
enum HitFlags : unsigned {
  kHitNowhere = 1,
  kHitIcon = 2,
  kHitLabel = 4,
  kHitIndent = 8,
  kHitButton = 16,
  kHitRight = 32,
  kHitStateIcon = 64,
  kHitAbove = 0x100,
  kHitBelow = 0x200
};

/// A row and its line, from the left edge of the content to the right edge of the client area.
struct RowLine {
  HTREEITEM row;  ///< the row
  CRect line;     ///< its line, in client coordinates
};

/// Where the parts of a row begin on its line, from left to right; x counts from the left edge of the content. A
/// part ends where the next one begins; one that the row does not have takes no room.
struct RowParts {
  int button = 0;  ///< the cell of the expand button, which the row may have none in
  int state = 0;   ///< the state image
  int icon = 0;    ///< the icon
  int text = 0;    ///< the text, and what follows it
};

/// Where the rows of a tree are on the screen, and what of them is where: painting, hits, tips, editors, bands and
/// screen readers all ask here.
///
/// Made when it is needed, for as long as neither rows nor window change. Asking about a row costs O(log n).
class QD_EXPORT RowGeometry {
 public:
  static constexpr int kIndent = 19;     ///< of a level; as wide is the cell of a button
  static constexpr int kPicture = 16;    ///< side of an icon or a state image
  static constexpr int kLabelWidth = 6;  ///< of a row whose own text is empty

  /// What the window shows of the rows.
  struct View {
    CRect client;         ///< at 0, 0
    std::size_t top = 0;  ///< position of the first row on screen
    int lineHeight = 1;   ///< pixels
    /// @{
    /// Whether rows may have such pictures.
    bool hasStateImages = false;
    bool hasIcons = false;
    /// @}
  };
  RowGeometry(const RowTree& rows, const View& view) : m_rows(rows), m_view(view) {}  ///< neither is owned

  /// @{
  /// What it was made with.
  const CRect& Client() const { return m_view.client; }
  std::size_t Top() const { return m_view.top; }
  int LineHeight() const { return m_view.lineHeight; }
  /// @}
  /// Lines on screen, one that is cut at the bottom included.
  int LineCount() const;
  /// Lines that fit on the screen whole, at least 1.
  int PageSize() const;

  /// The line of a row, also above or below the client area (clamped far outside). False for a hidden row.
  bool FindLine(HTREEITEM row, CRect& line) const;
  /// The rows whose lines meet those from `top` up to `bottom` of the client area, from top to bottom.
  std::vector<RowLine> LinesBetween(int top, int bottom) const;
  /// All rows on screen.
  std::vector<RowLine> LinesOnScreen() const { return LinesBetween(0, m_view.client.bottom); }

  RowParts PartsOf(HTREEITEM row) const;  ///< where its parts begin
  /// The place of a row's own text, which is empty: where texts begin.
  CRect TextOf(const RowLine& at) const;
  /// Where the cells of the buttons of a level begin.
  static int ButtonsOf(int level);
  /// The row on whose line a point lies, and where on it.
  HTREEITEM HitTest(CPoint point, unsigned& flags) const;

 private:
  const RowTree& m_rows;
  View m_view;
};

}  // namespace qd
