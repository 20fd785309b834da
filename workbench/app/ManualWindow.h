#pragma once

#include <QDialog>

class QTextBrowser;

namespace qd::workbench {

/// The manual, in a window beside the one that is worked in. Its pages are those of docs/manual, which the program
/// holds; links lead from one to another and nowhere else.
class ManualWindow final : public QDialog {
 public:
  explicit ManualWindow(QWidget* parent);

  /// Shows a page by the name of its file, and the window.
  void ShowPage(const QString& name);
  QTextBrowser& Browser() { return *m_browser; }

 private:
  QTextBrowser* m_browser = nullptr;
};

}  // namespace qd::workbench
