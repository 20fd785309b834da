#pragma once

#include "qd_wrt/core/CQDTreeBranch.h"

namespace qd::workbench {

/// Commands of the host's own nodes.
enum HostCommand : unsigned {
  kCommandNewMaterial = 50001,
  kCommandEditMaterial = 50002,
  kCommandDeleteMaterial = 50003
};

/// The materials of the document. The branch stands in the tree while there is any.
class MaterialBranch final : public CQDTreeBranch {
 public:
  MaterialBranch(CQDTreeListCtrl* control, CQDTreeItem* parent);

  void CreateContextMenu(CPoint& screen) override;
  void OnMenuEvent(unsigned command) override;
  void SetTitleIncludeType() override;
  void OnUpdate() override;
  int ModifyChildItem(iterator itr) override;

 protected:
  std::vector<iterator> Records() const override;
  CQDTreeItem* MakeNode(iterator itr) override;
};

/// A material; dropped on geometry it is applied to it.
class MaterialNode final : public CQDTreeItem {
 public:
  MaterialNode(CQDTreeListCtrl* control, CQDTreeItem* branch, iterator itr);

  int MakeChildItems() override { return 1; }
  void CreateContextMenu(CPoint& screen) override;
  void OnMenuEvent(unsigned command) override;
  void OnEditChange(const wchar_t* text) override;
  void SetTitleIncludeType() override;
  iterator GetIterator() const override { return m_itr; }

 private:
  iterator m_itr;
};

}  // namespace qd::workbench
