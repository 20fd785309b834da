#pragma once

#include <QAction>
#include <QFrame>
#include <QStringList>
#include <functional>

#include "workbench/app/MissingFiles.h"

class QVBoxLayout;

namespace qd::workbench {

/// What can be begun with, over a view that shows nothing yet: some commands of the window, and the files of late.
class WelcomePanel final : public QFrame {
 public:
  /// `over` is the view, which owns the panel; the actions are the window's.
  WelcomePanel(QWidget* over, const QList<QAction*>& commands, std::function<void(const QString&)> open);

  /// Shows or hides it; the files are full paths, the last one first.
  void ShowFor(bool nothingYet, const QStringList& recent);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void ListFiles();

  std::function<void(const QString&)> m_open;
  QVBoxLayout* m_files;  // of the rows of files; these are owned by their Qt parents
  QWidget* m_recentTitle;
  QStringList m_recent;
  MissingFiles m_missing;
};

/// The example that comes with the program. Empty where it was not installed.
QString ExampleFile();

}  // namespace qd::workbench
