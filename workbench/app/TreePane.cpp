#include "workbench/app/TreePane.h"

#include <QApplication>
#include <QJsonArray>
#include <QSet>
#include <QTimer>
#include <algorithm>

#include "platform/qt/QtConvert.h"
#include "platform/qt/QtToolkit.h"
#include "workbench/session/Session.h"

namespace qd::workbench {

TreePane::TreePane(const QString& name, QWidget* parent) : QDockWidget(parent) {
  setObjectName(name);
  setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
  connect(this, &QDockWidget::visibilityChanged, this, &TreePane::OnSeen);
}

// A pane behind another one's tab counts as visible for the focus: keys would act in a tree that nobody sees.

void TreePane::OnSeen(bool seen) {
  const QWidget* focus = QApplication::focusWidget();
  if (seen || focus == nullptr || !isAncestorOf(focus)) return;
  QTimer::singleShot(0, this, [this] {
    for (TreePane* pane : window()->findChildren<TreePane*>()) {
      if (!pane->visibleRegion().isEmpty()) return pane->Bar().GetTreeCtrl().SetFocus();
    }
  });
}

bool TreePane::focusNextPrevChild(bool next) {
  constexpr int kMostParts = 100;
  for (int i = 0; i < kMostParts; ++i) {
    if (!QDockWidget::focusNextPrevChild(next)) return false;
    const QWidget* focus = QApplication::focusWidget();
    while (focus != nullptr && qobject_cast<const QDockWidget*>(focus) == nullptr) focus = focus->parentWidget();
    if (focus == nullptr || !focus->visibleRegion().isEmpty()) break;
  }
  return true;
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
      if (tree.WasExpanded(node->GetTreeItemHandle())) open.append(KeyOf(*node));
    });
  }
  return {{"columns", QJsonArray::fromVariantList(ColumnWidths())},
          {"open", open},
          {"top", static_cast<qint64>(tree.TopPositionBefore())}};
}

QJsonObject TreePane::FindState() {
  const RowFinder& finder = m_bar.GetTreeCtrl().GetFinder();
  return {{"query", ToQt(finder.GetQuery())}, {"filtered", finder.IsFiltering()}};
}

void TreePane::RestoreFindState(const QJsonObject& state) {
  const CString query = FromQt(state["query"].toString());
  if (query.empty()) return;
  if (state["filtered"].toBool()) {
    m_bar.SetFilter(query);
  } else {
    m_bar.SetFind(query);
  }
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
  RestoreFindState(state);  // documents of former versions have it here
}

}  // namespace qd::workbench
