#pragma once

#include <QList>
#include <QMenu>
#include <QObject>
#include <QStringList>

#include "workbench/app/Message.h"

namespace qd::workbench {

class ScriptEngine;

/// The scripts that a user has put into a folder of his own, for the menu. None runs unless it is chosen; one that
/// adds entries to the menus of rows is asked about, once, and runs at each start if the user agrees, as long as
/// it stays what it was.
class OwnScripts final : public QObject {
  Q_OBJECT

 public:
  OwnScripts(ScriptEngine& engine, QWidget* window);

  static QString Folder();
  /// Files of Python in the folder by name. Only what the user alone can have put there: no link, and nothing that
  /// others may write. Empty for a folder that others may write.
  static QStringList Scripts();
  /// Puts them into a menu that opens, in place of those that it had.
  void List(QMenu& menu);
  void RunThoseOfTheStart();

 signals:
  void Chosen(const QString& path);
  void Said(const qd::workbench::Message& message);
  /// One that nobody has just chosen has ended with an error.
  void Failed();

 private:
  void Run(const QString& path);
  void OnRan(const QString& lines, int status);
  void Ask(const QString& path);

  ScriptEngine& m_engine;
  QWidget* m_window;
  QList<QAction*> m_listed;  // owned by the menu
  QStringList m_running;     // the scripts that were begun, in their order
  std::size_t m_entries = 0;
  bool m_starts = false;  // those of the start
};

}  // namespace qd::workbench
