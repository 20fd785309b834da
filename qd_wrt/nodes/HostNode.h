#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Export.h"
#include "qd_wrt/core/CQDTreeItem.h"
#include "qd_wrt/treelist/TreeColumn.h"

namespace qd {

class HostNode;

/// A line of a host's menu.
struct HostMenuEntry {
  unsigned command = 0;  ///< above 0; with an empty text: a separator
  CString text{};        ///< what the line says
  bool checked = false;  ///< whether a mark stands before it
};

/// What a row shows.
struct HostRow {
  CString title{};                   ///< in the first column
  std::int32_t id = 0;               ///< in the second column; 0 or less: none
  std::optional<COLORREF> colour{};  ///< in the third column
  std::optional<bool> checked{};     ///< whether the box is checked; without it there is none
  unsigned icon = 0;                 ///< index into the module's icons (CQDTreeIcon)
  /// The host's own name of the row, by which HostTree::Find finds it; 0 for none. Of rows with the same key the
  /// last one is found.
  std::uint64_t key = 0;
};

/// What rows do that do the same. Each can be left out; one object serves any number of rows. Calls come on the
/// toolkit's thread and may change the tree as they like, the row that they are about and the whole tree included;
/// what they throw goes on to whoever handles the program's events.
struct HostNodeKind {
  /// The row became the only selected one.
  std::function<void(HostNode& node)> clicked{};
  /// The user switched the box, which shows the new state already.
  std::function<void(HostNode& node, bool checked)> switched{};
  /// The user typed a title: true lets the row have it. Without it titles cannot be edited.
  std::function<bool(HostNode& node, const CString& title)> renamed{};
  /// @{
  /// The menu of the row, and what runs a command that was chosen there, on the first of the selected rows.
  std::function<std::vector<HostMenuEntry>(HostNode& node)> menu{};
  std::function<void(HostNode& node, unsigned command)> command{};
  /// @}
  /// Rows were dragged onto this one; without it they cannot be dropped there.
  std::function<void(HostNode& node, const std::vector<HostNode*>& dragged)> dropped{};
  bool isDragged = false;  ///< whether the row can be dragged, onto rows whose kind has `dropped`
  /// Makes the children when the row is opened for the first time.
  std::function<void(HostNode& node)> children{};
  /// In place of that, for any number of rows, a million too: how many there are, asked when the row is opened.
  /// What becomes of them later is said by HostNode::InsertRows, RemoveRows and ChangeRows; the host keeps their
  /// order.
  std::function<std::size_t(HostNode& node)> rowCount{};
  /// What the row at a place shows, asked when it is looked at.
  std::function<HostRow(const HostNode& node, std::size_t place)> row{};
  /// What those rows do; without it nothing.
  std::shared_ptr<const HostNodeKind> rowKind{};
  /// @{
  /// What the row shows in a column that the program has added (CWorksTreeBar::AddColumn), and what a row that
  /// `row` tells of shows there. Asked when the row is painted, read out, copied or sorted, and nothing is kept;
  /// HostNode::RefreshCells says that it is another now.
  std::function<TreeCell(const HostNode& node, int column)> cell{};
  std::function<TreeCell(const HostNode& node, std::size_t place, int column)> rowCell{};
  /// @}
  /// Paints a cell with TreeCell::painted, in the colours that the row has.
  std::function<void(const HostNode& node, int column, CDC& dc, const CRect& area)> paint{};
};

/// A row of a host that derives no class: what it shows is given when it is added, what it does is said by its
/// kind. Nodes are owned by their parents; the root of all is a HostTree's.
class QD_EXPORT HostNode final : public CQDTreeItem {
 public:
  /// Adds a row behind the last child. Without a kind it has that of this row. Returns the node, which this one
  /// owns.
  HostNode& Add(HostRow row, std::shared_ptr<const HostNodeKind> kind = {});
  /// Deletes the row with all below it; the node of a tree itself stays, without rows. The object may live on
  /// until the handler that runs has returned. Rows that a kind's `row` tells of go by RemoveRows.
  void Remove();
  void Clear();  ///< deletes all rows below it
  /// The node above; null for the one of the tree.
  HostNode* Above() const;
  /// Children in the order in which they were added.
  HostNode& Child(int index) { return static_cast<HostNode&>(*GetChild(index)); }

  std::uint64_t GetKey() const { return m_key; }        ///< 0 for none
  const HostNodeKind& Kind() const { return *m_kind; }  ///< what it was added with, or that of the node above
  bool IsChecked() const { return GetCheckStatus() == kChecked; }  ///< false for a row without a box
  /// Writes the box of the row; nobody is told.
  void SetChecked(bool checked) { WriteBox(checked ? kChecked : kUnchecked); }
  void SetColour(COLORREF colour);  ///< gives the swatch another colour; nothing for a row added without one

  /// Rows that `row` tells of have come, in front of the one at a place.
  void InsertRows(std::size_t place, std::size_t count);
  /// Such rows have gone.
  void RemoveRows(std::size_t place, std::size_t count) { TakeSupplied(place, count); }
  /// What the row shows in columns of the program has changed: it is asked for anew.
  void RefreshCells();
  /// What such rows show has changed.
  void ChangeRows(std::size_t place, std::size_t count);
  /// The key of such a row.
  std::uint64_t KeyOfRow(std::size_t place) const { return m_kind->row ? m_kind->row(*this, place).key : 0; }
  /// Makes the rows that `rowCount` tells of without the row being opened; for the node of a tree, whose kind is
  /// given here.
  void ShowRows(std::shared_ptr<const HostNodeKind> kind);

  int MakeChildItems() override { return 1; }
  void OnInitialize() override;
  bool HasOwnRow() const override { return GetParent() != nullptr; }
  iterator GetIterator() const override { return m_key; }
  void OnMakeChildren() override;
  CQDTreeItem* MakeSupplied(std::size_t place) override;
  bool DescribeSupplied(std::size_t place, LaterRow& shown) const override;
  void DescribeCell(int column, TreeCell& cell) const override;
  void DescribeSuppliedCell(std::size_t place, int column, TreeCell& cell) const override;
  void PaintCell(int column, CDC& dc, const CRect& area) override;
  int IsEnableDragType(std::uint16_t type) const override;
  int OnClickCheck(int oldState) override;
  void OnEditChange(const wchar_t* text) override;
  bool ShowsTypedTitle() const override { return false; }
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override;
  void CreateContextMenu(CPoint& screen) override;
  void OnMenuEvent(unsigned command) override;
  void SetPropertyView() override;

 private:
  friend class HostTree;
  HostNode(CQDTreeListCtrl* control, HostNode* parent, const HostRow& row,
           std::shared_ptr<const HostNodeKind> kind);

  void ShowAs(const HostRow& row);

  std::uint64_t m_key;
  std::shared_ptr<const HostNodeKind> m_kind;
  bool m_checked;
};

}  // namespace qd
