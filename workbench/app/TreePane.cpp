#include "workbench/app/TreePane.h"

#include "platform/qt/QtToolkit.h"

namespace qd::workbench {

TreePane::TreePane(const QString& name, QWidget* parent) : QDockWidget(parent) {
  setObjectName(name);
  setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
}

TreePane::~TreePane() {
  // The window is the bar's: take it out before this widget deletes its children.
  setWidget(nullptr);
  m_bar.DestroyWindow();
}

void TreePane::Open(CQDDocBase& doc) {
  m_bar.SetDocument(&doc);
  m_bar.Create(nullptr, 0, {0, 0, 360, 400});
  QWidget* widget = QtToolkit::WidgetOf(m_bar);
  widget->setMinimumSize(220, 120);
  setWidget(widget);
}

QVariantList TreePane::ColumnWidths() const {
  const std::vector<int> widths = m_bar.GetColumnWidths();
  return {widths.begin(), widths.end()};
}

void TreePane::SetColumnWidths(const QVariantList& widths) {
  std::vector<int> numbers;
  for (const QVariant& width : widths) numbers.push_back(width.toInt());
  m_bar.SetColumnWidths(numbers);
}

IWorksTree* TreePane::GetTree(CDocument* doc) {
  return doc == m_bar.GetDocument() ? &m_bar : nullptr;
}

}  // namespace qd::workbench
