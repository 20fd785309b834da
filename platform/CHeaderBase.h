#pragma once

#include <vector>

#include "platform/CImageList.h"
#include "platform/CWnd.h"
#include "platform/Export.h"

namespace qd {

/// A row of column captions. Columns are resized by dragging their right edge; the parent hears of it while it
/// happens. Derived classes draw the items. Items are known by the index at which they were inserted, wherever
/// they stand (SetOrder).
class QD_EXPORT CHeaderBase : public CWnd {
 public:
  /// Codes of the notices.
  enum Code : int {
    kNoticeItemChanged = -321,
    kNoticeItemClick = -322,
    kNoticeEdgeDoubleClick = -325,
    kNoticeMenu = -326
  };
  /// Bits of an item's format word.
  enum Format : unsigned {
    kFormatRight = 1,
    kFormatCentre = 2,
    kFormatImage = 0x800,
    kFormatString = 0x4000  ///< set by the header itself for an item with a text
  };
  /// What the notices are about.
  struct HeaderNotice : Notice {
    int item = 0;     ///< index of the item, from 0; -1 for none
    CPoint screen{};  ///< where a menu was asked for; an answer other than 0 says that it was shown
  };
  /// A caption.
  struct Item {
    CString text;         ///< what it says
    int width = 0;        ///< pixels
    unsigned format = 0;  ///< bits of Format
    int image = -1;       ///< of the image list, -1 for none
    int sort = 0;         ///< 0 not sorted, positive ascending, negative descending
    bool hidden = false;  ///< whether SetOrder has left it out
  };

  static constexpr int kMinimumWidth = 8;  ///< of a column that the user drags, in pixels

  /// Inserts an item at `index` (clamped to the end) and returns its index.
  int InsertItem(int index, Item item);
  /// Takes the last item away.
  void RemoveLastItem();
  /// Shows these items and no others, from left to right. Each stands there once, or nothing is changed: 0,
  /// else 1.
  int SetOrder(const std::vector<int>& items);
  const std::vector<int>& GetOrder() const { return m_order; }  ///< the items that are shown, from left to right
  int GetItemCount() const { return static_cast<int>(m_items.size()); }  ///< how many there are
  /// Null when there is no such item.
  const Item* GetItem(int index) const;
  void SetItemText(int index, CString text);  ///< nothing for an item that does not exist
  /// Tells the parent (item changed) when the width really changes.
  void SetItemWidth(int index, int width);
  /// @{
  /// Likewise; see Item.
  void SetItemSort(int index, int sort);
  void SetItemImage(int index, int image);
  /// @}
  /// @{
  /// Not owned; null for none.
  void SetImageList(const CImageList* images) { m_images = images; }
  const CImageList* GetImageList() const { return m_images; }
  /// @}
  /// Horizontal place of the first item's left edge, 0 or negative.
  void SetOffset(int x);
  int GetOffset() const { return m_offset; }  ///< see SetOffset

  void OnPaint(CDC& dc) override;

 protected:
  /// Draws one caption; `highlighted` where the pointer is on it.
  virtual void OnDrawItem(CDC& dc, const Item& item, CRect area, bool pressed, bool highlighted) = 0;

  void OnLButtonDown(unsigned flags, CPoint point) override;
  void OnLButtonDblClk(unsigned flags, CPoint point) override;
  void OnMouseMove(unsigned flags, CPoint point) override;
  void OnKeyDown(int key, unsigned flags) override { PassKeyUp(key, flags); }
  void OnContextMenu(CPoint screen) override;

 private:
  int EdgeAt(CPoint point) const;
  int ItemAt(CPoint point) const;
  CRect ItemRect(int index) const;
  void NotifyItem(int code, int item);
  void DragEdge(int item, CPoint from);
  void Press(int item);

  std::vector<Item> m_items;
  std::vector<int> m_order;  // of those that are shown
  const CImageList* m_images = nullptr;
  int m_offset = 0;
  int m_pressed = -1;
};

}  // namespace qd
