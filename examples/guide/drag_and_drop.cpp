// Rows that are dragged onto rows.
#include <platform/headless/HeadlessToolkit.h>
#include <qd_wrt/nodes/HostTree.h>
#include <qd_wrt/panel/CWorksTreeBar.h>

namespace {

// What can be dragged.
std::shared_ptr<const qd::HostNodeKind> PartKind() {
  qd::HostNodeKind kind;
  kind.isDragged = true;
  return std::make_shared<const qd::HostNodeKind>(std::move(kind));
}

// What can be dropped onto, and be dragged itself, with all that is in it.
std::shared_ptr<const qd::HostNodeKind> SetKind() {
  qd::HostNodeKind kind;
  kind.isDragged = true;
  kind.dropped = [](qd::HostNode& target, const std::vector<qd::HostNode*>& dragged) {
    for (qd::HostNode* row : dragged) row->MoveBranch(&target);  // 0 for a set that is dropped into itself
  };
  return std::make_shared<const qd::HostNodeKind>(std::move(kind));
}

// A place on the title of a row, in the tree's coordinates.
qd::CPoint TitleOf(qd::CQDTreeListCtrl& tree, const qd::CQDTreeItem& node) {
  qd::CRect line;
  tree.GetItemRect(node.GetTreeItemHandle(), line, true);
  return {line.left + 4, line.top + 4};
}

void Drag(qd::HeadlessToolkit& toolkit, qd::CQDTreeListCtrl& tree, const qd::CQDTreeItem& what,
          const qd::CQDTreeItem& onto) {
  const qd::CPoint from = TitleOf(tree, what);
  const qd::CPoint to = TitleOf(tree, onto);
  toolkit.Enqueue({.kind = qd::MessageKind::LeftDown, .target = &tree, .point = from});
  toolkit.Enqueue({.kind = qd::MessageKind::MouseMove, .target = &tree, .point = {from.x + 20, from.y}});
  toolkit.Enqueue({.kind = qd::MessageKind::MouseMove, .target = &tree, .point = to});
  toolkit.Enqueue({.kind = qd::MessageKind::LeftUp, .target = &tree, .point = to});
  toolkit.Pump();
}

}  // namespace

int main() {
  qd::HeadlessToolkit toolkit;
  qd::CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 400, 300});
  qd::HostTree rows(bar.GetTreeCtrl());
  qd::HostNode& left = rows.Root().Add({.title = L"Left"}, SetKind());
  qd::HostNode& right = rows.Root().Add({.title = L"Right"}, SetKind());
  qd::HostNode& screw = left.Add({.title = L"Screw"}, PartKind());
  left.Expand(1);
  toolkit.Pump();

  Drag(toolkit, bar.GetTreeCtrl(), screw, right);
  const bool moved = screw.Above() == &right;
  Drag(toolkit, bar.GetTreeCtrl(), right, left);
  const bool nested = right.Above() == &left && screw.Above() == &right;
  left.Expand(1);
  toolkit.Pump();
  Drag(toolkit, bar.GetTreeCtrl(), left, right);
  const bool refused = left.Above() == &rows.Root();
  return moved && nested && refused ? 0 : 1;
}
