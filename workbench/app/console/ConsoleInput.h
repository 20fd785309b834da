#pragma once

#include <QPlainTextEdit>
#include <QStringList>
#include <functional>

class QCompleter;

namespace qd::workbench {

/// Where lines of Python are typed: Enter runs what is whole and goes on in another line otherwise, Shift+Enter
/// always begins another one; Up and Down at its edges go through what was typed before; Tab completes names, and
/// indents where there is none. Shift+Tab and Ctrl+Tab leave it.
class ConsoleInput final : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit ConsoleInput(QWidget* parent = nullptr);

  /// Whether lines are all of a statement.
  void SetIsWhole(std::function<bool(const QString&)> isWhole) { m_isWhole = std::move(isWhole); }
  /// Whether there is something that new lines have to wait for.
  void SetIsBusy(std::function<bool()> isBusy) { m_isBusy = std::move(isBusy); }
  /// What the end of a text can be completed to.
  void SetComplete(std::function<QStringList(const QString&)> complete) { m_complete = std::move(complete); }

 signals:
  void Entered(const QString& lines);
  void Stopped();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  bool HandleKey(const QKeyEvent& event);
  void Enter();
  void BeginLine();
  bool Recall(int step);
  void Complete();
  void PutName(const QString& start, const QString& name);
  QString NameBeforeCursor() const;
  void FitHeight();

  std::function<bool(const QString&)> m_isWhole;
  std::function<bool()> m_isBusy;
  std::function<QStringList(const QString&)> m_complete;
  QStringList m_history;
  qsizetype m_place = 0;  // in the history; at its end: what is typed now
  QString m_typed;        // while something of the history is shown
  QCompleter* m_completer;
};

}  // namespace qd::workbench
