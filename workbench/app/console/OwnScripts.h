#pragma once

#include <QList>
#include <QMenu>
#include <QObject>
#include <QStringList>

#include "workbench/app/Message.h"

namespace qd::workbench {

class ScriptEngine;

/// The scripts that a user has put into a folder of his own, for the menu. None runs unless it is chosen; one that
/// adds entries to the menus of rows is asked about, once as long as it stays what it was, and runs at each start
/// for that long if the user agrees.
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
  /// One after another.
  void RunThoseOfTheStart();

 signals:
  void Chosen(const QString& path);
  void Said(const qd::workbench::Message& message);
  /// One that nobody has just chosen has ended with an error.
  void Failed();

 private:
  /// A script that the user has chosen, as it was then.
  struct Choice {
    QString path;
    QString mark;
  };

  void Run(const QString& path);
  void StartNext();
  void OnRan(const QString& lines, int status);
  void Ask(const Choice& choice);

  ScriptEngine& m_engine;
  QWidget* m_window;
  QList<QAction*> m_listed;   // owned by the menu
  QList<Choice> m_chosen;     // that have not ended yet
  QStringList m_due;          // those of the start that wait
  QString m_starting;         // the one of them that runs
  std::size_t m_entries = 0;  // of the menus of rows, when something ran last
};

}  // namespace qd::workbench
