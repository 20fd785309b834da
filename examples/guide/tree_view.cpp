// A model of Qt in a tree of the module in place of a QTreeView.
#include <widgets/ItemModelTree.h>
#include <QApplication>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  QStandardItemModel model;
  model.setHorizontalHeaderLabels({"Part", "Number"});
  for (const char* name : {"Housing", "Rotor"}) {
    auto* set = new QStandardItem(name);
    for (int i = 1; i <= 3; ++i) {
      auto* part = new QStandardItem(QString("%1 part %2").arg(name).arg(i));
      part->setCheckable(true);
      set->appendRow({part, new QStandardItem(QString::number(i))});
    }
    model.appendRow(set);
  }

  qd::ItemModelTree tree;
  tree.setModel(&model);
  QObject::connect(&tree, &qd::ItemModelTree::selectionChanged, [&tree] {
    for (const QModelIndex& index : tree.selectedIndexes()) qInfo() << index.data().toString();
  });
  tree.setExpanded(model.index(0, 0), true);
  tree.setCurrentIndex(model.index(1, 0, model.index(0, 0)));

  tree.show();
  return application.exec();
}
