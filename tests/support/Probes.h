#pragma once

#include "host/Dialogs.h"
#include "support/Model.h"

namespace qd::test {

/// A node that writes down what it is told.
class ProbeNode : public CQDTreeItem {
 public:
  ProbeNode(CQDTreeListCtrl* control, CQDTreeItem* parent, CString title, std::vector<unsigned short> types = {})
      : CQDTreeItem(control, parent, std::move(title), 0, 1), m_types(std::move(types)) {}
  ~ProbeNode() override { log += "~" + workbench::ToUtf8(name) + " "; }

  int MakeChildItems() override {
    if (makeChildren) makeChildren(*this);
    return 1;
  }
  void RegisterReceiveDataType() override {
    for (const unsigned short type : m_types) FollowDataType(type);
  }
  void OnUpdate() override {
    log += workbench::ToUtf8(GetTitle()) + "(";
    for (const tagTRNotify& record : PendingRecords()) log += std::to_string(record.itr) + " ";
    log += ") ";
    if (onUpdate) onUpdate(*this);
  }
  void OnMenuEvent(unsigned command) override {
    log += workbench::ToUtf8(GetTitle()) + ":" + std::to_string(command) + " ";
  }
  void ShowHideNode(int show) override {
    log += "symbols " + workbench::ToUtf8(GetTitle()) + " " + std::to_string(show) + " ";
  }
  void CreateContextMenu(CPoint&) override { log += "menu " + workbench::ToUtf8(GetTitle()) + " "; }
  void SetPropertyView() override { log += "page " + workbench::ToUtf8(GetTitle()) + " "; }
  void SetMultiPropertyView() override { log += "pages " + workbench::ToUtf8(GetTitle()) + " "; }
  void OnMenuEventGeomRoot(unsigned command) override { log += "geom" + std::to_string(command) + " "; }
  void SetTitleIncludeType() override { log += "retitle " + workbench::ToUtf8(GetTitle()) + " "; }
  int OnClickCheck(int oldState) override {
    log += "check " + workbench::ToUtf8(GetTitle()) + (IsViewUpdate() ? "! " : " ");
    CQDTreeItem::OnClickCheck(oldState);
    return stops ? 0 : 1;
  }
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override {
    log += "drop" + Titles(nodes) + " on " + workbench::ToUtf8(GetTitle()) + " ";
  }
  void OnRDrop(std::vector<CQDTreeItem*>& nodes, CQDTreeItem* target) override {
    log += "rdrop" + Titles(nodes) + " on " + workbench::ToUtf8(target->GetTitle()) + " ";
  }
  void OnDropToView(CPoint&) override { log += "view " + workbench::ToUtf8(GetTitle()) + " "; }
  void OnEditChange(const wchar_t* text) override { log += "edit " + workbench::ToUtf8(text) + " "; }
  using CQDTreeItem::m_dragToView;
  using CQDTreeItem::m_editable;
  using CQDTreeItem::m_id;
  using CQDTreeItem::m_leftDrag;
  using CQDTreeItem::m_multiLeftDrag;
  using CQDTreeItem::m_multiRightDrag;
  using CQDTreeItem::m_pairType;
  using CQDTreeItem::m_rightDrag;
  using CQDTreeItem::m_showID;

  static std::string TakeLog() { return std::exchange(log, {}); }

  CString name = GetTitle();
  std::function<void(ProbeNode&)> makeChildren;
  std::function<void(ProbeNode&)> onUpdate;
  bool stops = false;
  static std::string log;

 private:
  static std::string Titles(const std::vector<CQDTreeItem*>& nodes) {
    std::string titles;
    for (const CQDTreeItem* node : nodes) titles += " " + workbench::ToUtf8(node->GetTitle());
    return titles;
  }

  std::vector<unsigned short> m_types;
};
inline std::string ProbeNode::log;

class ProbeFactory final : public IQDTreeGroupFactory {
 public:
  CQDTreeItem* CreateRootItem(int, CQDTreeListCtrl* control) override { return make ? make(control) : nullptr; }
  std::function<CQDTreeItem*(CQDTreeListCtrl*)> make;
};

class WorksTree : public ModelTest {
 protected:
  WorksTree() { m_checked = false; }
  /// Opens a tree "root" with the given children.
  void OpenProbes(const std::function<void(ProbeNode& root)>& children) {
    m_probes.make = [children](CQDTreeListCtrl* control) {
      auto* root = new ProbeNode(control, nullptr, L"root");
      root->makeChildren = children;
      return root;
    };
    m_bar.CreateTreeItems(1, &m_probes, 1);
    m_toolkit.Pump();
    ProbeNode::TakeLog();
  }
  ProbeNode* Add(CQDTreeItem& parent, const CString& title, std::vector<unsigned short> types = {}) {
    auto* node = new ProbeNode(&Tree(), &parent, title, std::move(types));
    node->MakeItem(kInsertLast);
    return node;
  }
  void Notice(std::vector<tagTRNotify> changes) {
    const CQDUpdateRecord record{std::move(changes)};
    m_bar.UpdateDB(&m_doc, HintOf(record));
  }
  ~WorksTree() override {
    m_bar.DestroyTreeItems();
    ProbeNode::TakeLog();
  }
  ProbeFactory m_probes;
};

}  // namespace qd::test
