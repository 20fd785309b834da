// How a program tests its tree without a screen: it makes the toolkit for it, scripts a user and looks at the
// rows.
#include <platform/headless/HeadlessToolkit.h>
#include <qd_wrt/nodes/HostTree.h>
#include <qd_wrt/panel/CWorksTreeBar.h>

int main() {
  qd::HeadlessToolkit toolkit;
  qd::CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 400, 300});
  qd::HostTree tree(bar.GetTreeCtrl());
  int opened = 0;
  const auto kind =
      std::make_shared<const qd::HostNodeKind>(qd::HostNodeKind{.children = [&opened](qd::HostNode& node) {
        ++opened;
        node.Add({.title = L"Screw"});
      }});
  tree.Root().Add({.title = L"Housing", .key = 7}, kind);
  toolkit.Pump();
  toolkit.Key(bar.GetTreeCtrl(), qd::kKeyDown);
  toolkit.Key(bar.GetTreeCtrl(), qd::kKeyRight);
  toolkit.Pump();
  const bool right = opened == 1 && tree.Find(7)->Child(0).GetTitle() == L"Screw";
  return right ? 0 : 1;
}
