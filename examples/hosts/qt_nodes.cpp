// A tree of a program's own rows, in a window of Qt.
#include <widgets/WorksTreeWidget.h>
#include <QApplication>

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  qd::WorksTreeWidget tree;
  const auto part = std::make_shared<const qd::HostNodeKind>(
      qd::HostNodeKind{.switched = [](qd::HostNode& node,
                                      bool on) { qInfo("%ls is %s", node.GetTitle().c_str(), on ? "on" : "off"); },
                       .renamed = [](qd::HostNode&, const qd::CString& title) { return !title.empty(); },
                       .isDragged = true});
  const auto set = std::make_shared<const qd::HostNodeKind>(
      qd::HostNodeKind{.dropped = [](qd::HostNode& target, const std::vector<qd::HostNode*>& rows) {
        for (qd::HostNode* row : rows) row->MoveBranch(&target);
      }});
  for (const wchar_t* name : {L"Housing", L"Rotor"}) {
    qd::HostNode& node = tree.Root().Add({.title = name, .icon = 21}, set);
    for (int i = 1; i <= 3; ++i)
      node.Add({.title = L"Part " + std::to_wstring(i), .id = i, .colour = 0x40A0E0U, .checked = true}, part);
    node.Expand(1);
  }
  tree.show();
  return application.exec();
}
