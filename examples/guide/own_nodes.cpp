// Rows of a program: what they show, what they do, and rows that are made when their parent is opened.
#include <host/CQDNullDocument.h>
#include <platform/headless/HeadlessToolkit.h>
#include <qd_wrt/core/CQDTreeIcon.h>
#include <qd_wrt/nodes/HostTree.h>
#include <qd_wrt/panel/CWorksTreeBar.h>
#include <map>

namespace {

// What the program knows; the tree only shows it.
struct Part {
  qd::CString name;
  bool shown = true;
};
std::map<std::uint64_t, Part> parts{{1, {L"Screw"}}, {2, {L"Washer"}}, {3, {L"Nut"}}};
std::uint64_t lookedAt = 0;

enum Command : unsigned { kHide = 1, kDelete };

std::shared_ptr<const qd::HostNodeKind> PartKind() {
  qd::HostNodeKind kind;
  kind.clicked = [](qd::HostNode& node) { lookedAt = node.GetKey(); };
  kind.switched = [](qd::HostNode& node, bool on) { parts.at(node.GetKey()).shown = on; };
  kind.renamed = [](qd::HostNode& node, const qd::CString& title) {
    if (title.empty()) return false;  // the old title comes back
    parts.at(node.GetKey()).name = title;
    return true;
  };
  kind.menu = [](qd::HostNode& node) {
    return std::vector<qd::HostMenuEntry>{{kHide, L"Hide", !node.IsChecked()}, {}, {kDelete, L"Delete"}};
  };
  kind.command = [](qd::HostNode& node, unsigned command) {
    if (command == kHide) {
      parts.at(node.GetKey()).shown = false;
      node.SetChecked(false);
    } else {
      parts.erase(node.GetKey());
      node.Remove();
    }
  };
  return std::make_shared<const qd::HostNodeKind>(std::move(kind));
}

// A picture of the program, of any size and from anywhere; it is found again by its name.
unsigned BoltIcon() {
  const qd::IconImage image{.width = 24, .height = 24, .pixels = std::vector<std::uint32_t>(24 * 24, 0xFF607080)};
  return qd::CQDTreeIcon::AddIcon(image, L"bolt");
}

std::shared_ptr<const qd::HostNodeKind> SetKind() {
  qd::HostNodeKind kind;
  kind.children = [part = PartKind()](qd::HostNode& set) {
    for (const auto& [key, what] : parts) {
      set.Add({.title = what.name, .id = static_cast<std::int32_t>(key), .checked = what.shown, .key = key}, part);
    }
  };
  return std::make_shared<const qd::HostNodeKind>(std::move(kind));
}

// A row as a class, for what no kind has: here its own name in a search.
class Assembly final : public qd::CQDTreeItem {
 public:
  Assembly(qd::CQDTreeListCtrl* control, qd::CQDTreeItem* parent, qd::CString title)
      : CQDTreeItem(control, parent, std::move(title), 21, 0) {
    m_editable = true;
  }
  int MakeChildItems() override { return 1; }
  void OnEditChange(const wchar_t* text) override { ChangeTitle(text); }
  std::uint32_t GetRowKinds() const override { return qd::kRowSet; }
};

// The root of a tree of classes, which the program gives to the control.
class Root final : public qd::CQDTreeItem {
 public:
  explicit Root(qd::CQDTreeListCtrl* control) : CQDTreeItem(control, nullptr, L"Model", 0, 0) {}
  int MakeChildItems() override {
    (new Assembly(GetControl(), this, L"Pump"))->MakeItem(qd::kInsertLast);  // owned by this
    return 1;
  }
};

class Factory final : public qd::IQDTreeGroupFactory {
 public:
  qd::CQDTreeItem* CreateRootItem(int, qd::CQDTreeListCtrl* control) override { return new Root(control); }
};

bool RowsDoWhatTheirKindSays(qd::HeadlessToolkit& toolkit) {
  qd::CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 400, 300});
  qd::HostTree tree(bar.GetTreeCtrl());
  tree.Root().Add({.title = L"Fasteners", .icon = BoltIcon()}, SetKind());
  toolkit.Pump();
  const bool closed = tree.Find(2) == nullptr;
  tree.Root().Child(0).Expand(1);
  qd::HostNode* washer = tree.Find(2);
  if (!closed || washer == nullptr) return false;
  bar.GetTreeCtrl().SelectCTItem(washer);
  washer->OnClickCheck(washer->GetCheckStatus());
  const bool heard = lookedAt == 2 && !parts.at(2).shown && !washer->IsChecked();
  washer->OnMenuEvent(kDelete);
  return heard && qd::CQDTreeIcon::FindIcon(L"bolt") != 0 && tree.Find(2) == nullptr && parts.size() == 2;
}

bool ClassesAreRows(qd::HeadlessToolkit& toolkit) {
  qd::CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 400, 300});
  qd::CQDNullDocument document(L"pump.model");
  Factory factory;
  bar.SetDocument(&document);
  bar.CreateTreeItems(1, &factory, 1);
  toolkit.Pump();
  bar.SetFilter(L"type:set");
  toolkit.FinishSlices();
  const bool found = bar.GetMatchCount() == 1;
  bar.DestroyTreeItems();
  return found;
}

}  // namespace

int main() {
  qd::HeadlessToolkit toolkit;
  return RowsDoWhatTheirKindSays(toolkit) && ClassesAreRows(toolkit) ? 0 : 1;
}
