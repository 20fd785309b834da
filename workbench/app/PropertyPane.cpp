#include "workbench/app/PropertyPane.h"

#include "workbench/app/MessageTables.h"

namespace qd::workbench {

PropertyPane::PropertyPane(QWidget* parent) : QDockWidget(parent), m_empty(new QLabel(this)) {
  setObjectName("properties");
  setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
  m_empty->setAlignment(Qt::AlignCenter);
  m_empty->setEnabled(false);
  setWidget(m_empty);
  Refresh();
}

void PropertyPane::Refresh() {
  m_empty->setText(m_page == nullptr ? Text("IDS_WB_NO_PROPERTIES") : QString());
}

}  // namespace qd::workbench
