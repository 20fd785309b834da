#pragma once

#include <QByteArray>
#include <memory>
#include <vector>

#include "qd_wrt/nodes/HostNode.h"
#include "widgets/WorksTreePanel.h"

namespace qd {

class HostTree;

/// The works tree as a widget: make it, put it into a layout, add rows.
///
///     qd::WorksTreeWidget tree;
///     tree.Root().Add({.title = L"Housing"}).Add({.title = L"Screw", .id = 7});
///     tree.show();
///
/// Rows are the widget's and end with it. All of it is used from the thread of the program's windows.
class QD_QT_EXPORT WorksTreeWidget : public WorksTreePanel {
  Q_OBJECT
 public:
  /// Usual for widgets: `parent`, when there is one, owns it.
  explicit WorksTreeWidget(QWidget* parent = nullptr);
  ~WorksTreeWidget() override;

  /// What the rows of the top level stand below (HostNode::Add). A host with a model of the module's kind builds
  /// its tree by Bar() instead; then there is none of this.
  HostNode& Root();
  /// The row with a key of the host, null for none.
  HostNode* Find(std::uint64_t key) const;
  /// The selected rows, top to bottom.
  std::vector<HostNode*> Selected() const;
  /// What is open, selected and on screen by the host's keys, and how wide the columns are, to be given back in
  /// another run of the program; see HostTree::SaveState.
  QByteArray SaveState() const;
  /// False for what SaveState has not written, with nothing changed.
  bool RestoreState(const QByteArray& state);

 private:
  std::unique_ptr<HostTree> m_rows;  // made when it is asked for
};

}  // namespace qd
