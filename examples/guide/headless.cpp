// A program's own test of its tree: a user is scripted, and rows and menus are looked at.
#include <platform/headless/HeadlessToolkit.h>
#include <qd_wrt/nodes/HostTree.h>
#include <qd_wrt/panel/CWorksTreeBar.h>

namespace {

// What is tested: the program's own code, which fills any tree.
void Fill(qd::HostTree& tree, std::vector<qd::CString>& log) {
  qd::HostNodeKind kind;
  kind.switched = [&log](qd::HostNode& node, bool on) {
    log.push_back(node.GetTitle() + (on ? L" on" : L" off"));
  };
  kind.menu = [](qd::HostNode&) { return std::vector<qd::HostMenuEntry>{{1, L"Delete"}}; };
  kind.command = [](qd::HostNode& node, unsigned) { node.Remove(); };
  kind.renamed = [](qd::HostNode&, const qd::CString& title) { return title != L"taken"; };
  tree.Root().Add({.title = L"Screw", .checked = true, .key = 1},
                  std::make_shared<const qd::HostNodeKind>(std::move(kind)));
}

// The whole panel without a screen, as a user has it.
struct Desk {
  qd::HeadlessToolkit toolkit;  // first: it outlives every window
  qd::CWorksTreeBar bar;
  std::vector<qd::CString> log;
  std::unique_ptr<qd::HostTree> tree;

  Desk() {
    bar.Create(nullptr, 0, {0, 0, 400, 300});
    tree = std::make_unique<qd::HostTree>(bar.GetTreeCtrl());
    Fill(*tree, log);
    toolkit.Pump();
  }
  qd::CPoint BoxOf(const qd::HostNode& node) {
    qd::CQDTreeListCtrl& control = bar.GetTreeCtrl();
    qd::CRect line;
    control.GetItemRect(node.GetTreeItemHandle(), line, false);
    return {control.GetGeometry().PartsOf(node.GetTreeItemHandle()).state + 4, line.top + 4};
  }
  qd::CPoint TitleOf(const qd::HostNode& node) {
    qd::CRect line;
    bar.GetTreeCtrl().GetItemRect(node.GetTreeItemHandle(), line, true);
    return {line.left + 4, line.top + 4};
  }
};

bool AClickOnTheBoxIsHeard() {
  Desk desk;
  desk.toolkit.Click(desk.bar.GetTreeCtrl(), desk.BoxOf(*desk.tree->Find(1)));
  desk.toolkit.Pump();
  return desk.log == std::vector<qd::CString>{L"Screw off"} && !desk.tree->Find(1)->IsChecked();
}

bool TheMenuDeletes() {
  Desk desk;
  desk.toolkit.AnswerMenu(1);  // what the user will choose
  desk.toolkit.RightClick(desk.bar.GetTreeCtrl(), desk.TitleOf(*desk.tree->Find(1)));
  desk.toolkit.Pump();
  return desk.toolkit.ShownMenus().back() == "Delete" && desk.tree->Find(1) == nullptr;
}

bool ATakenNameComesBack() {
  Desk desk;
  desk.toolkit.Key(desk.bar.GetTreeCtrl(), qd::kKeyDown);
  desk.toolkit.Key(desk.bar.GetTreeCtrl(), qd::kKeyF2);
  desk.toolkit.Pump();
  desk.toolkit.Type(*desk.toolkit.FocusWindow(), L"taken");
  desk.toolkit.Key(*desk.toolkit.FocusWindow(), qd::kKeyEnter);
  desk.toolkit.Pump();
  return desk.tree->Find(1)->GetTitle() == L"Screw";
}

bool TheRowIsPainted() {
  Desk desk;
  for (const std::string& call : desk.toolkit.Paint(desk.bar.GetTreeCtrl())) {
    if (call.find("Screw") != std::string::npos) return true;
  }
  return false;
}

}  // namespace

int main() {
  return AClickOnTheBoxIsHeard() && TheMenuDeletes() && ATakenNameComesBack() && TheRowIsPainted() ? 0 : 1;
}
