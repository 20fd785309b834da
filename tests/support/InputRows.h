#pragma once

#include <string>
#include <vector>

#include "qd_wrt/core/CQDTreeItem.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/Factories.h"
#include "workbench/text/Utf8.h"

namespace qd::test {

/// A row for tests of input: it may be dragged onto any other below the root, and renamed. The root has forty.
class InputRow final : public CQDTreeItem {
 public:
  InputRow(CQDTreeListCtrl* control, CQDTreeItem* parent, const CString& title)
      : CQDTreeItem(control, parent, title, 21, 1) {
    m_leftDrag = m_multiLeftDrag = m_editable = true;
    if (parent != nullptr) SetTreeItemType(kKind);
    RegsiterDragEnableType(kKind);
  }
  int MakeChildItems() override {
    if (GetParent() != nullptr) return 1;
    for (int i = 0; i < 40; ++i)
      (new InputRow(GetControl(), this, L"Item " + std::to_wstring(i)))->MakeItem(kInsertLast);
    return 1;
  }
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override {
    dropped = std::to_string(nodes.size()) + " on " + workbench::ToUtf8(GetTitle());
  }
  void OnEditChange(const wchar_t* text) override { renamed = workbench::ToUtf8(text); }

  static constexpr std::uint16_t kKind = 40;
  static inline std::string dropped;
  static inline std::string renamed;
};

class InputRows final : public IQDTreeGroupFactory {
 public:
  CQDTreeItem* CreateRootItem(int, CQDTreeListCtrl* control) override {
    return new InputRow(control, nullptr, L"Root");
  }
};

}  // namespace qd::test
