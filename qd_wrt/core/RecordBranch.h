#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "host/IPropertySet.h"
#include "qd_wrt/core/CQDTreeBranch.h"

namespace qd {

/// What a row shows of its record.
struct RecordRow {
  CString title;  ///< what the row says
  /// In column 1; 0 for none. A number that was shown stays until there is another one.
  std::int32_t number = 0;
  /// In column 2, for rows that show a number. Whether there is one is decided when the row is made; none later is
  /// black.
  std::optional<COLORREF> colour{};
};

/// A branch with a row for each record of one kind, wherever the records are kept: all that the module has to know
/// of it. Calls are given the node that they are about: the root, or the row of a record, which GetIterator tells
/// apart. Records have numbers (iterators) that no other record of the document has.
struct RecordBranchKind {
  BranchKind root;  ///< the row above them
  /// The records, in the order of their rows.
  std::function<std::vector<iterator>(const CQDTreeItem& root)> list;
  /// A record as it is now; nothing when it cannot be read.
  std::function<std::optional<RecordRow>(const CQDTreeItem& root, iterator)> read;

  // Each of the rest may be left out.
  std::uint32_t rowKinds = 0;  ///< what queries call the rows: bits of RowKind
  unsigned icon = 0;           ///< of the rows
  std::uint16_t dropsOn = 0;   ///< tree-item type onto which a row may be dragged; 0: it is not dragged
  std::vector<MenuEntry> (*menu)() = nullptr;  ///< of the rows
  /// Runs a command of the root's menu or, on the first of the selected rows, of theirs.
  std::function<void(CQDTreeItem& node, unsigned command)> run{};
  /// Gives the record of a row the name that was typed; without it titles cannot be edited.
  std::function<void(CQDTreeItem& row, const CString& name)> rename{};
  /// The property page of a row.
  std::function<std::unique_ptr<IPropertySet>(const CQDTreeItem& row)> page{};
};

/// The root of such a branch. It follows the change records of its data types.
class QD_EXPORT CQDTreeRecordBranch : public CQDTreeBranch {
 public:
  /// Appends the branch to the children of `parent`, without a row yet.
  CQDTreeRecordBranch(CQDTreeListCtrl* control, CQDTreeItem* parent, std::shared_ptr<const RecordBranchKind> kind);
  const RecordBranchKind& Kind() const { return *m_kind; }  ///< what it was made with

  void OnMenuEvent(unsigned command) override;
  void OnUpdate() override;
  /// Brings the row up to date, or makes the one of a record that has none.
  int ModifyChildItem(iterator itr) override;

 protected:
  const BranchKind* GetBranchKind() const override { return &m_kind->root; }
  std::vector<iterator> Records() const override { return m_kind->list(*this); }
  CQDTreeItem* MakeNode(iterator itr) override;

 private:
  std::shared_ptr<const RecordBranchKind> m_kind;
};

}  // namespace qd
