#pragma once

#include <QPlainTextEdit>
#include <QTimer>
#include <QWidget>

#include "workbench/app/Message.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace qd::workbench {

/// The text of the pane: a line a message, with its time. What is about a file or about records is underlined; a
/// click on it, or Enter in its line, goes there.
class MessageText final : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit MessageText(QWidget* parent);

  void Add(const Message& message);
  /// Shows only what weighs at least as much and holds this text, in any case.
  void Filter(Severity least, const QString& part);
  /// How many messages the filter leaves out.
  int Hidden() const;

 signals:
  void Chosen(const qd::workbench::Message& message);

 protected:
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  bool Shows(const QTextBlock& block) const;
  void Choose(const QTextBlock& block);

  Severity m_least = Severity::Note;
  QString m_part;
};

/// What the program has told, and above it what is to be seen of that.
class MessagePane final : public QWidget {
  Q_OBJECT

 public:
  explicit MessagePane(QWidget* parent);

  void Add(const Message& message);

 signals:
  /// Somebody wants to go to what a message is about.
  void Chosen(const qd::workbench::Message& message);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Filter();
  void ShowHidden();
  void Name();

  QComboBox* m_least;  // these are owned by their Qt parents
  QLineEdit* m_part;
  QLabel* m_hidden;
  QToolButton* m_clear;
  MessageText* m_text;
  QTimer m_recount;
};

}  // namespace qd::workbench
