#include "workbench/app/TreePane.h"

#include <QJsonArray>
#include <QSet>
#include <algorithm>

#include "platform/qt/QtToolkit.h"
#include "workbench/session/Session.h"

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
  Session::MakeBar(m_bar, doc);
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

namespace {

QString KeyOf(const CQDTreeItem& node) {
  if (node.GetIterator() != 0) return "r" + QString::number(node.GetIterator());
  const CQDTreeItem* parent = node.GetParent();
  if (parent == nullptr) return QString();
  const std::vector<CQDTreeItem*> siblings = parent->Children();
  return KeyOf(*parent) + "/" +
         QString::number(std::find(siblings.begin(), siblings.end(), &node) - siblings.begin());
}

}  // namespace

QJsonObject TreePane::ViewState() {
  const CQDTreeListCtrl& tree = m_bar.GetTreeCtrl();
  QJsonArray open;
  if (const CQDTreeItem* root = tree.GetQDRootItem()) {
    root->ForEachBelow([&](const CQDTreeItem* node) {
      if (tree.IsExpanded(node->GetTreeItemHandle())) open.append(KeyOf(*node));
    });
  }
  return {{"columns", QJsonArray::fromVariantList(ColumnWidths())},
          {"open", open},
          {"top", static_cast<qint64>(tree.TopPosition())}};
}

void TreePane::RestoreViewState(const QJsonObject& state) {
  SetColumnWidths(state["columns"].toArray().toVariantList());
  CQDTreeListCtrl& tree = m_bar.GetTreeCtrl();
  if (tree.GetQDRootItem() == nullptr || !state.contains("open")) return;
  QSet<QString> open;
  for (const QJsonValue key : state["open"].toArray()) open.insert(key.toString());
  tree.GetQDRootItem()->ForEachBelow([&](CQDTreeItem* node) {
    if (node->GetChildCount() != 0) node->Expand(open.contains(KeyOf(*node)) ? 1 : 0);
  });
  tree.ScrollTo(static_cast<std::size_t>(std::max<qint64>(state["top"].toInteger(), 0)));
}

}  // namespace qd::workbench
