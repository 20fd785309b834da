#pragma once

#include "qd_wrt/core/CQDTreeItem.h"
#include "qd_wrt/find/IRow.h"

namespace qd {

/// A coordinate system. It does not count as bound to its record (GetIterator answers 0), so no selection, drop or
/// walk over labels takes it up; GetRecord() names the record.
class QD_EXPORT CQDTreeItemCordData : public CQDTreeItem {
 public:
  /// The record must be readable.
  CQDTreeItemCordData(CQDTreeListCtrl* control, CQDTreeItem* root, iterator itr);

  int MakeChildItems() override { return 1; }
  /// Checks the box when the label manager shows the system.
  void OnInitialize() override;
  void OnMenuEvent(unsigned command) override;
  void CreateContextMenu(CPoint& screen) override;
  /// Shows or hides the symbol; nothing is redrawn.
  int OnClickCheck(int oldState) override;
  /// Renames the system, in a transaction of its own.
  void OnEditChange(const wchar_t* text) override;
  void SetTitleIncludeType() override;

  iterator GetRecord() const override { return m_itr; }
  NameScope GetNameScope() const override { return {kDataCord, true}; }
  bool IsNameTaken(const CString& name) const override;
  std::uint32_t GetRowKinds() const override { return kRowCoordinate; }
  /// As it was when the node was made.
  bool IsDefault() const { return m_isDefault != 0; }

 private:
  void DeleteSelectedItems();
  const tagTCord* Record() const;

  iterator m_itr;
  int m_isDefault;
};

}  // namespace qd
