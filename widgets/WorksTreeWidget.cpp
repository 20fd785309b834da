#include "widgets/WorksTreeWidget.h"

#include "qd_wrt/nodes/HostTree.h"
#include "qd_wrt/panel/CWorksTreeBar.h"

namespace qd {

WorksTreeWidget::WorksTreeWidget(QWidget* parent) : WorksTreePanel(parent) {}

WorksTreeWidget::~WorksTreeWidget() = default;

HostNode& WorksTreeWidget::Root() {
  if (m_rows == nullptr) m_rows = std::make_unique<HostTree>(Bar().GetTreeCtrl());
  return m_rows->Root();
}

HostNode* WorksTreeWidget::Find(std::uint64_t key) const {
  return m_rows != nullptr ? m_rows->Find(key) : nullptr;
}

QByteArray WorksTreeWidget::SaveState() const {
  return m_rows != nullptr ? QByteArray::fromStdString(m_rows->SaveState(Bar().GetColumnLayout())) : QByteArray();
}

bool WorksTreeWidget::RestoreState(const QByteArray& state) {
  ColumnLayout columns;
  static_cast<void>(Root());
  if (m_rows->RestoreState({state.constData(), static_cast<std::size_t>(state.size())}, columns) == 0)
    return false;
  Bar().SetColumnLayout(columns);
  return true;
}

std::vector<HostNode*> WorksTreeWidget::Selected() const {
  return m_rows != nullptr ? m_rows->Selected() : std::vector<HostNode*>();
}

}  // namespace qd
