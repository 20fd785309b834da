// The guide's first host: a main window with a tree beside what it shows.
#include <host/MessageFile.h>
#include <widgets/WorksTreeWidget.h>
#include <QApplication>
#include <QDockWidget>
#include <QLocale>
#include <QMainWindow>
#include <QStatusBar>
#include <QTextEdit>
#include <fstream>

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  const QString language = QLocale().name().section('_', 0, 0);
  std::ifstream table(MESSAGES_FOLDER "/" + language.toStdString() + ".txt", std::ios::binary);
  qd::MessageFile file = qd::ReadMessages(table);
  const qd::MessageTable texts(std::move(file.texts));  // as long as it stands

  QMainWindow window;
  window.setCentralWidget(new QTextEdit);
  auto* dock = new QDockWidget("Model", &window);
  auto* tree = new qd::WorksTreeWidget(dock);
  dock->setWidget(tree);
  window.addDockWidget(Qt::LeftDockWidgetArea, dock);

  qd::HostNode& housing = tree->Root().Add({.title = L"Housing", .icon = 21});
  housing.Add({.title = L"Screw", .id = 7, .colour = 0x40A0E0U, .checked = true});
  housing.Add({.title = L"Washer", .id = 8, .checked = false});
  housing.Expand(1);

  const auto part = std::make_shared<const qd::HostNodeKind>(
      qd::HostNodeKind{.switched = [&window](qd::HostNode& node, bool on) {
        const QString title = QString::fromStdWString(node.GetTitle());
        window.statusBar()->showMessage(title + (on ? " is shown" : " is hidden"));
      }});
  tree->Root().Add({.title = L"Rotor", .id = 9, .checked = true}, part);

  window.resize(900, 600);
  window.show();
  return application.exec();
}
