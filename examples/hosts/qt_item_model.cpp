// Any model of Qt in place of a QTreeView: here the folders below the one where the program was started.
#include <widgets/ItemModelTree.h>
#include <QApplication>
#include <QFileSystemModel>

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  QFileSystemModel model;
  model.setRootPath(QDir::currentPath());
  qd::ItemModelTree tree;
  tree.setModel(&model);
  tree.setRootIndex(model.index(QDir::currentPath()));
  tree.show();
  return application.exec();
}
