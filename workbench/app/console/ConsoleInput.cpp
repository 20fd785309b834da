#include "workbench/app/console/ConsoleInput.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <QScrollBar>
#include <QStringListModel>
#include <QTextBlock>
#include <algorithm>

namespace qd::workbench {

namespace {

constexpr qsizetype kMostHistory = 500;
constexpr int kMostLines = 8;
constexpr const char* kIndent = "    ";

/// What all names have in common at their beginning.
QString CommonStart(const QStringList& names) {
  QString common = names.front();
  for (const QString& name : names) {
    qsizetype same = 0;
    while (same < std::min(common.size(), name.size()) && common[same] == name[same]) ++same;
    common.truncate(same);
  }
  return common;
}

}  // namespace

ConsoleInput::ConsoleInput(QWidget* parent)
    : QPlainTextEdit(parent), m_completer(new QCompleter(new QStringListModel(this), this)) {
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setTabChangesFocus(false);
  connect(document(), &QTextDocument::contentsChanged, this, &ConsoleInput::FitHeight);
  m_completer->setWidget(this);
  m_completer->setCompletionMode(QCompleter::PopupCompletion);
  m_completer->setCaseSensitivity(Qt::CaseSensitive);
  connect(m_completer, qOverload<const QString&>(&QCompleter::activated), this,
          [this](const QString& name) { PutName(NameBeforeCursor(), name); });
  FitHeight();
}

void ConsoleInput::FitHeight() {
  const int lines = std::clamp(document()->blockCount(), 1, kMostLines);
  const int margins = static_cast<int>(2 * document()->documentMargin()) + 2 * frameWidth();
  const int bar = horizontalScrollBar()->maximum() > 0 ? horizontalScrollBar()->sizeHint().height() : 0;
  setVerticalScrollBarPolicy(document()->blockCount() > kMostLines ? Qt::ScrollBarAsNeeded
                                                                   : Qt::ScrollBarAlwaysOff);
  setFixedHeight(lines * fontMetrics().lineSpacing() + margins + bar);
}

void ConsoleInput::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange) FitHeight();
}

/// What is pasted is text.
void ConsoleInput::insertFromMimeData(const QMimeData* source) {
  QString text = source->text();
  insertPlainText(text.replace("\r\n", "\n").replace('\r', '\n'));
}

void ConsoleInput::keyPressEvent(QKeyEvent* event) {
  if (!HandleKey(*event)) QPlainTextEdit::keyPressEvent(event);
  if (!m_completer->popup()->isVisible()) return;
  const QString start = NameBeforeCursor();
  m_completer->setCompletionPrefix(start);
  if (start.isEmpty() || m_completer->completionCount() == 0) m_completer->popup()->hide();
}

bool ConsoleInput::HandleKey(const QKeyEvent& event) {
  const bool plain = (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  // The list of names has the keys first and hands on what it does not know.
  if (m_completer->popup()->isVisible() && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter)) {
    PutName(NameBeforeCursor(), m_completer->popup()->currentIndex().data().toString());
    m_completer->popup()->hide();
    return true;
  }
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (event.modifiers() & Qt::ShiftModifier) {
        BeginLine();
      } else {
        Enter();
      }
      return true;
    case Qt::Key_Up:
      return plain && textCursor().blockNumber() == 0 && Recall(-1);
    case Qt::Key_Down:
      return plain && textCursor().blockNumber() == document()->blockCount() - 1 && Recall(1);
    case Qt::Key_Tab:
      if (event.modifiers() & Qt::ControlModifier) return focusNextPrevChild(true);
      Complete();
      return true;
    case Qt::Key_Backtab:
      return focusNextPrevChild(false);
    case Qt::Key_C:
      if (event.modifiers() != Qt::ControlModifier || textCursor().hasSelection()) return false;
      emit Stopped();
      return true;
    default:
      return false;
  }
}

void ConsoleInput::Enter() {
  const QString lines = toPlainText();
  if (lines.trimmed().isEmpty()) return clear();
  // In the middle of several lines another one is wanted.
  const bool atEnd = !textCursor().hasSelection() && textCursor().block() == document()->lastBlock();
  if (!atEnd || (m_isBusy && m_isBusy()) || (m_isWhole && !m_isWhole(lines))) return BeginLine();
  m_history.removeAll(lines);
  m_history.append(lines);
  if (m_history.size() > kMostHistory) m_history.removeFirst();
  m_place = m_history.size();
  clear();
  emit Entered(lines);
}

/// Indented as the one before, and more behind a colon.
void ConsoleInput::BeginLine() {
  const QString before = textCursor().block().text().left(textCursor().positionInBlock());
  const auto isBlank = [](QChar letter) { return letter != ' ' && letter != '\t'; };
  const auto first = std::find_if(before.begin(), before.end(), isBlank);
  QString indent = before.left(first - before.begin());
  if (before.trimmed().endsWith(':')) indent += kIndent;
  insertPlainText("\n" + indent);
  ensureCursorVisible();
}

bool ConsoleInput::Recall(int step) {
  const qsizetype place = m_place + step;
  if (place < 0 || place > m_history.size()) return false;
  if (m_place == m_history.size()) m_typed = toPlainText();
  m_place = place;
  setPlainText(place == m_history.size() ? m_typed : m_history[place]);
  moveCursor(QTextCursor::End);
  return true;
}

QString ConsoleInput::NameBeforeCursor() const {
  static const QRegularExpression kName("[\\w.]*$");
  return kName.match(textCursor().block().text().left(textCursor().positionInBlock())).captured();
}

void ConsoleInput::PutName(const QString& start, const QString& name) {
  QTextCursor cursor = textCursor();
  cursor.movePosition(QTextCursor::Left, QTextCursor::KeepAnchor, static_cast<int>(start.size()));
  cursor.insertText(name);
  setTextCursor(cursor);
}

void ConsoleInput::Complete() {
  const QString start = NameBeforeCursor();
  const QStringList names = start.isEmpty() || !m_complete ? QStringList() : m_complete(start);
  if (start.isEmpty()) return insertPlainText(kIndent);
  if (names.isEmpty()) return;
  PutName(start, CommonStart(names));
  if (names.size() == 1) return;
  static_cast<QStringListModel*>(m_completer->model())->setStringList(names);
  m_completer->setCompletionPrefix(NameBeforeCursor());
  QRect place = cursorRect();
  place.setWidth(m_completer->popup()->sizeHintForColumn(0) +
                 m_completer->popup()->verticalScrollBar()->sizeHint().width());
  m_completer->complete(place);
  m_completer->popup()->setCurrentIndex(m_completer->completionModel()->index(0, 0));
}

}  // namespace qd::workbench
