#include "workbench/app/console/ConsolePane.h"

#include <QApplication>
#include <QBoxLayout>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QToolButton>
#include <algorithm>

#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"
#include "workbench/app/console/ConsoleInput.h"
#include "workbench/app/console/ScriptEngine.h"

namespace qd::workbench {

namespace {

constexpr int kMostLines = 10000;
constexpr int kLongestLine = 5000;  // letters; longer ones hold the window up when they are laid out

}  // namespace

ConsolePane::ConsolePane(ScriptEngine& engine, QWidget* parent) : QDockWidget(parent), m_engine(engine) {
  setObjectName("console");
  SetTitle(*this, "IDS_WB_PANE_CONSOLE");
  auto* body = new QWidget(this);
  auto* column = new QVBoxLayout(body);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  m_output = new QPlainTextEdit(body);
  m_output->setReadOnly(true);
  m_output->setUndoRedoEnabled(false);
  m_output->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  m_output->setMaximumBlockCount(kMostLines);
  m_output->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  m_output->setTabChangesFocus(true);
  m_input = new ConsoleInput(body);
  m_stop = new QToolButton(body);
  m_stop->setFocusPolicy(Qt::StrongFocus);
  SetText(*m_stop, "IDS_WB_CONSOLE_STOP");
  m_progress = new QProgressBar(body);
  m_progress->setRange(0, 1000);
  m_progress->setMaximumWidth(160);
  m_progress->hide();
  auto* row = new QHBoxLayout;
  row->addWidget(m_input, 1);
  row->addWidget(m_progress, 0, Qt::AlignBottom);
  row->addWidget(m_stop, 0, Qt::AlignBottom);
  column->addWidget(m_output, 1);
  column->addLayout(row);
  setWidget(body);
  setFocusProxy(m_input);
  setTabOrder(m_input, m_stop);
  setTabOrder(m_stop, m_output);
  m_input->SetIsWhole([this](const QString& lines) { return m_engine.IsWhole(lines); });
  m_input->SetIsBusy([this] { return m_engine.IsBusy(); });
  m_input->SetComplete([this](const QString& text) { return m_engine.Complete(text); });
  connect(m_input, &ConsoleInput::Entered, this, &ConsolePane::Run);
  connect(m_input, &ConsoleInput::Stopped, this, [this] { m_engine.Stop(); });
  connect(m_stop, &QToolButton::clicked, this, [this] { m_engine.Stop(); });
  connect(&m_engine, &ScriptEngine::Wrote, this,
          [this](const QString& text, bool isError) { Write(text, isError ? Voice::Error : Voice::Plain); });
  connect(&m_engine, &ScriptEngine::Turned, this, &ConsolePane::Refresh);
  connect(&m_engine, &ScriptEngine::Progress, this, [this](double done) {
    m_progress->setVisible(done >= 0);
    m_progress->setValue(static_cast<int>(done * 1000));
  });
  m_engine.SetFree(this);
  ChangeLanguage();
  Refresh();
}

void ConsolePane::ChangeLanguage() {
  m_input->setAccessibleName(Text("IDS_WB_CONSOLE_INPUT"));
  m_input->setPlaceholderText(Text("IDS_WB_CONSOLE_INPUT"));
  m_output->setAccessibleName(Text("IDS_WB_CONSOLE_OUTPUT"));
  m_progress->setAccessibleName(Text("IDS_WB_CONSOLE_PROGRESS"));
}

void ConsolePane::Toggle() {
  if (isVisible() && isAncestorOf(QApplication::focusWidget())) return hide();
  Come();
  m_input->setFocus();
}

void ConsolePane::Come() {
  show();
  raise();
}

void ConsolePane::Refresh() {
  const bool busy = m_engine.IsBusy();
  if (!busy && m_stop->hasFocus()) m_input->setFocus();
  m_stop->setEnabled(busy);
}

void ConsolePane::Run(const QString& lines) {
  QString echo = lines;
  Write(">>> " + echo.replace("\n", "\n... ") + "\n", Voice::Echo);
  m_engine.RunLines(lines + "\n");
}

void ConsolePane::ShowTranscript(const QString& lines) {
  if (m_lineLength > 0) Write("\n", Voice::Plain);
  Write(lines, Voice::Transcript);
}

void ConsolePane::Write(const QString& text, Voice voice) {
  QTextCharFormat format;
  const QPalette& colours = m_output->palette();
  const bool isDark = colours.color(QPalette::Base).lightness() < 128;
  if (voice == Voice::Error) format.setForeground(isDark ? QColor(255, 130, 120) : QColor(176, 0, 0));
  if (voice == Voice::Transcript) format.setForeground(colours.color(QPalette::PlaceholderText));
  if (voice == Voice::Echo) format.setFontWeight(QFont::Bold);
  QString shown;
  shown.reserve(std::min<qsizetype>(text.size(), 1 << 17));
  for (const QChar letter : text) {
    m_lineLength = letter == '\n' ? 0 : m_lineLength + 1;
    if (m_lineLength < kLongestLine) shown += letter;
    if (m_lineLength == kLongestLine) shown += QChar(0x2026);
  }
  const QScrollBar* bar = m_output->verticalScrollBar();
  const bool follows = bar->value() >= bar->maximum() && !m_output->textCursor().hasSelection();
  QTextCursor end(m_output->document());
  end.movePosition(QTextCursor::End);
  end.insertText(shown, format);
  if (!follows) return;
  m_output->moveCursor(QTextCursor::End);
  m_output->ensureCursorVisible();
}

}  // namespace qd::workbench
