#pragma once

#include <vector>

#include "platform/CImageList.h"
#include "platform/CWnd.h"
#include "platform/Export.h"

namespace qd {

/// A row of column captions. Columns are resized by dragging their right edge; the parent hears of it while it
/// happens. Derived classes draw the items.
class QD_EXPORT CHeaderBase : public CWnd {
 public:
  enum Code : int { kNoticeItemChanged = -321, kNoticeItemClick = -322, kNoticeEdgeDoubleClick = -325 };
  /// Bits of an item's format word.
  enum Format : unsigned {
    kFormatRight = 1,
    kFormatCentre = 2,
    kFormatImage = 0x800,
    kFormatString = 0x4000  ///< set by the header itself for an item with a text
  };
  struct HeaderNotice : Notice {
    int item = 0;
  };
  struct Item {
    CString text;
    int width = 0;
    unsigned format = 0;
    int image = -1;
    int sort = 0;  ///< 0 not sorted, positive ascending, negative descending
  };

  static constexpr int kMinimumWidth = 8;

  /// Inserts an item at `index` (clamped to the end) and returns its index.
  int InsertItem(int index, Item item);
  int GetItemCount() const { return static_cast<int>(m_items.size()); }
  /// Null when there is no such item.
  const Item* GetItem(int index) const;
  void SetItemText(int index, CString text);
  /// Tells the parent (item changed) when the width really changes.
  void SetItemWidth(int index, int width);
  void SetItemSort(int index, int sort);
  void SetItemImage(int index, int image);
  void SetImageList(const CImageList* images) { m_images = images; }
  const CImageList* GetImageList() const { return m_images; }
  /// Horizontal place of the first item's left edge, 0 or negative.
  void SetOffset(int x);
  int GetOffset() const { return m_offset; }

  void OnPaint(CDC& dc) override;

 protected:
  virtual void OnDrawItem(CDC& dc, const Item& item, CRect area, bool pressed, bool highlighted) = 0;

  void OnLButtonDown(unsigned flags, CPoint point) override;
  void OnLButtonDblClk(unsigned flags, CPoint point) override;
  void OnMouseMove(unsigned flags, CPoint point) override;

 private:
  int EdgeAt(CPoint point) const;
  int ItemAt(CPoint point) const;
  CRect ItemRect(int index) const;
  void NotifyItem(int code, int item);
  void DragEdge(int item, CPoint from);
  void Press(int item);

  std::vector<Item> m_items;
  const CImageList* m_images = nullptr;
  int m_offset = 0;
  int m_pressed = -1;
};

}  // namespace qd
