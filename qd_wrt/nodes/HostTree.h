#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/CQDNullDocument.h"
#include "platform/Export.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/Factories.h"
#include "qd_wrt/nodes/HostNode.h"

namespace qd {

/// Fills a control with rows of a host that derives no class and has no model of the module's kind. Its rows go
/// with this. When the control or its window goes first, they go with that; without its control there is no root.
class QD_EXPORT HostTree final : private IQDTreeGroupFactory {
 public:
  explicit HostTree(CQDTreeListCtrl& control);  ///< in place of what the control shows now
  ~HostTree() override;
  HostTree(const HostTree&) = delete;
  HostTree& operator=(const HostTree&) = delete;

  /// What the rows of the top level stand below; it shows no row itself.
  HostNode& Root();
  /// Null for a key that no row has.
  HostNode* Find(std::uint64_t key) const;
  /// The selected rows, top to bottom.
  std::vector<HostNode*> Selected() const;
  /// What is open, selected, focused and on screen, by the host's keys, as text of a line for each row that has to
  /// do with it; what was made of the columns (CWorksTreeBar::GetColumnLayout) goes along. Rows without a key are
  /// passed over with all below them.
  std::string SaveState(const ColumnLayout& columns = {}) const;
  /// Brings the tree into such a state, as far as rows of these keys are there; their children are made as they
  /// are opened. The text may come from anywhere: what SaveState has not written is refused with 0 and nothing
  /// changed.
  int RestoreState(std::string_view text, ColumnLayout& columns);
  /// Called when the user has changed the selection.
  void SetOnSelected(std::function<void()> call) { m_onSelected = std::move(call); }

 private:
  class Keys;

  void Begin();
  CQDTreeItem* CreateRootItem(int treeType, CQDTreeListCtrl* control) override;

  CQDTreeListCtrl& m_control;
  std::weak_ptr<void> m_life;  // of the control
  CQDNullDocument m_doc;
  std::function<void()> m_onSelected;
  HostNode* m_root = nullptr;  // the control's
};

}  // namespace qd
