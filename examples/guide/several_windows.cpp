// Two trees of one document, in two windows: they follow the same records, and each other's selection.
#include <host/CQDNullDocument.h>
#include <platform/headless/HeadlessToolkit.h>
#include <qd_wrt/core/CWorksTreeManager.h>
#include <qd_wrt/core/RecordBranch.h>
#include <qd_wrt/panel/CWorksTreeBar.h>
#include <map>

namespace {

constexpr unsigned short kDataPart = 901;
constexpr unsigned short kPartTypes[] = {kDataPart};
enum TreeType : long { kByName = 1, kByNumber = 2 };

std::map<qd::iterator, qd::CString> parts{{1, L"Screw"}, {2, L"Washer"}};

std::shared_ptr<const qd::RecordBranchKind> PartBranch() {
  qd::RecordBranchKind kind;
  kind.root = {.titleKey = "Parts", .dataTypes = kPartTypes};
  kind.list = [](const qd::CQDTreeItem&) {
    std::vector<qd::iterator> itrs;
    for (const auto& [itr, name] : parts) itrs.push_back(itr);
    return itrs;
  };
  kind.read = [](const qd::CQDTreeItem&, qd::iterator itr) -> std::optional<qd::RecordRow> {
    const auto part = parts.find(itr);
    if (part == parts.end()) return std::nullopt;
    return qd::RecordRow{part->second};
  };
  return std::make_shared<const qd::RecordBranchKind>(std::move(kind));
}

class Top final : public qd::CQDTreeItem {
 public:
  Top(qd::CQDTreeListCtrl* control, qd::CString title) : CQDTreeItem(control, nullptr, std::move(title), 0, 0) {}
  int MakeChildItems() override {
    (new qd::CQDTreeRecordBranch(GetControl(), this, PartBranch()))->MakeItem(qd::kInsertLast);  // owned by this
    return 1;
  }
};

// Makes the roots of both types.
class Factory final : public qd::IQDTreeGroupFactory {
 public:
  qd::CQDTreeItem* CreateRootItem(int type, qd::CQDTreeListCtrl* control) override {
    return new Top(control, type == kByName ? L"By name" : L"By number");
  }
};

// Where the trees of one type are: one panel for each open document. Here there is one document.
class Pane final : public qd::CSwitchDockablePane {
 public:
  explicit Pane(qd::CQDDocBase& document) {
    m_bar.Create(nullptr, 0, {0, 0, 400, 300});
    m_bar.SetDocument(&document);
  }
  qd::CWorksTreeBar& Bar() { return m_bar; }
  qd::IWorksTree* GetTree(qd::CDocument* document) override {
    return document == m_bar.GetDocument() ? &m_bar : nullptr;
  }
  void GetTrees(std::list<qd::IWorksTree*>& trees) override { trees.push_back(&m_bar); }
  qd::IWorksTree* GetDefaultPane() override { return nullptr; }

 private:
  qd::CWorksTreeBar m_bar;
};

// What is selected in one tree is selected in the other.
void Follow(qd::CWorksTreeBar& leader, qd::CWorksTreeBar& follower) {
  leader.GetTreeCtrl().SetOnSelected([&follower](const std::vector<qd::CQDTreeItem*>& nodes) {
    qd::TArray<qd::iterator> itrs;
    for (const qd::CQDTreeItem* node : nodes) {
      if (node->GetIterator() != 0) itrs.push_back(node->GetIterator());
    }
    follower.GetTreeCtrl().ShowSelection(itrs);  // tells nobody, so nothing goes round
  });
}

}  // namespace

int main() {
  qd::HeadlessToolkit toolkit;
  qd::CQDNullDocument document(L"pump.model");
  Pane first(document);
  Pane second(document);
  Factory factory;
  qd::CWorksTreeManager manager({{kByName, &first}, {kByNumber, &second}}, &factory);
  manager.CreateTreeItems(&document, kByName);
  Follow(first.Bar(), second.Bar());
  Follow(second.Bar(), first.Bar());

  // One notice for all trees of the document.
  parts[3] = L"Nut";
  const qd::CQDUpdateRecord record{{{kDataPart, qd::kChangeAdded, 3}}};
  manager.UpdateDB(&document, qd::HintOf(record));

  qd::CQDTreeListCtrl& other = second.Bar().GetTreeCtrl();
  const bool follows = other.FindNode(3) != nullptr;
  first.Bar().GetTreeCtrl().SelectCTItem(first.Bar().GetTreeCtrl().FindNode(3));
  std::vector<qd::CQDTreeItem*> selected;
  other.GetSelectedTreeItems(selected, 0);
  const bool together = selected.size() == 1 && selected.front()->GetIterator() == 3;

  first.Bar().GetTreeCtrl().SetOnSelected(nullptr);
  second.Bar().GetTreeCtrl().SetOnSelected(nullptr);
  manager.DestroyTreeItems(&document);  // before the document and the panes go
  return follows && together ? 0 : 1;
}
