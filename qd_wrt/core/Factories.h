#pragma once

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

class CQDTreeItem;
class CQDTreeListCtrl;

/// Makes the root nodes of the works trees; the host supplies it.
class QD_EXPORT IQDTreeGroupFactory {
 public:
  IQDTreeGroupFactory(const IQDTreeGroupFactory&) = delete;
  IQDTreeGroupFactory& operator=(const IQDTreeGroupFactory&) = delete;

  /// Returns a new node without row and parent, which the control owns; null leaves the tree empty.
  virtual CQDTreeItem* CreateRootItem(int treeType, CQDTreeListCtrl* control) = 0;

 protected:
  IQDTreeGroupFactory() = default;
  virtual ~IQDTreeGroupFactory() = default;
};

/// Makes nodes for a host that wants its own. One object per process registers itself.
class QD_EXPORT IQDTreeItemFactory {
 public:
  IQDTreeItemFactory();
  virtual ~IQDTreeItemFactory();
  IQDTreeItemFactory(const IQDTreeItemFactory&) = delete;
  IQDTreeItemFactory& operator=(const IQDTreeItemFactory&) = delete;

  /// Null when none exists.
  static IQDTreeItemFactory* Instance();

  /// Returns a new node below `parent`, which owns it, or null.
  virtual CQDTreeItem* CreateTreeItem(int type, CQDTreeListCtrl* control, CQDTreeItem* parent, iterator itr,
                                      void* extra) = 0;
};

/// The module's own factory makes nothing: branches make their children themselves.
class QD_EXPORT CQDTreeItemFactory : public IQDTreeItemFactory {
 public:
  CQDTreeItem* CreateTreeItem(int, CQDTreeListCtrl*, CQDTreeItem*, iterator, void*) override { return nullptr; }
};

}  // namespace qd
