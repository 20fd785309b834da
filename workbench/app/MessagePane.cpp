#include "workbench/app/MessagePane.h"

#include <QComboBox>
#include <QDateTime>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QToolButton>
#include <QVBoxLayout>
#include <memory>

#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

namespace {

/// What is known of a line beside its text. A message of several lines stands in each of them.
struct Entry final : QTextBlockUserData {
  std::shared_ptr<const Message> message;
};

const Entry* EntryOf(const QTextBlock& block) {
  return static_cast<const Entry*>(block.userData());
}

/// Whether a message can be followed.
bool Leads(const Entry* entry) {
  return entry != nullptr && (!entry->message->file.isEmpty() || !entry->message->records.empty());
}

/// Signs beside the colours, which not everybody can tell apart.
QString SignOf(Severity severity) {
  if (severity == Severity::Note) return {};
  return severity == Severity::Warning ? QStringLiteral("\u26A0 ") : QStringLiteral("\u2716 ");
}

}  // namespace

// ---- the text -------------------------------------------------------------------------------------------

MessageText::MessageText(QWidget* parent) : QPlainTextEdit(parent) {
  constexpr int kMostLines = 10'000;
  setObjectName("messageText");
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setMaximumBlockCount(kMostLines);
  viewport()->setMouseTracking(true);
}

bool MessageText::Shows(const QTextBlock& block) const {
  const Entry* entry = EntryOf(block);
  return entry == nullptr ||
         (entry->message->severity >= m_least && block.text().contains(m_part, Qt::CaseInsensitive));
}

void MessageText::Add(const Message& message) {
  const auto shared = std::make_shared<const Message>(message);
  QTextCharFormat plain;
  QTextCharFormat format;
  // Readable on a light and on a dark ground.
  if (message.severity == Severity::Warning) format.setForeground(QColor(0xb0, 0x70, 0x00));
  if (message.severity == Severity::Failure) format.setForeground(QColor(0xd0, 0x30, 0x30));
  QTextCharFormat link = format;
  link.setFontUnderline(!message.file.isEmpty() || !message.records.empty());
  // Who reads further up, or selects, is left there.
  const bool atEnd = !isVisible() || verticalScrollBar()->value() == verticalScrollBar()->maximum();
  const bool follows = atEnd && !textCursor().hasSelection();
  QString begin = QLocale().toString(QTime::currentTime(), "HH:mm:ss") + "  ";
  static const QRegularExpression breaks("[\\n\\r\\x{2028}\\x{2029}]");
  for (const QString& line : message.text.split(breaks)) {
    appendPlainText({});
    QTextCursor last(document()->lastBlock());
    last.insertText(begin, plain);
    last.insertText(SignOf(message.severity), format);
    last.insertText(line, link);
    auto entry = std::make_unique<Entry>();
    entry->message = shared;
    last.block().setUserData(entry.release());  // the block owns it now
    last.block().setVisible(Shows(last.block()));
    begin.fill(' ');
  }
  if (!follows) return;
  moveCursor(QTextCursor::End);
  ensureCursorVisible();
}

void MessageText::Filter(Severity least, const QString& part) {
  m_least = least;
  m_part = part;
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
    block.setVisible(Shows(block));
  document()->markContentsDirty(0, document()->characterCount());  // the heights of the lines
  viewport()->update();
}

int MessageText::Hidden() const {
  int hidden = 0;
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
    hidden += block.isVisible() ? 0 : 1;
  return hidden;
}

void MessageText::Choose(const QTextBlock& block) {
  if (Leads(EntryOf(block))) emit Chosen(Message(*EntryOf(block)->message));  // a copy: the line may go meanwhile
}

void MessageText::mouseMoveEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseMoveEvent(event);
  const bool leads = Leads(EntryOf(cursorForPosition(event->pos()).block()));
  viewport()->setCursor(leads ? Qt::PointingHandCursor : Qt::IBeamCursor);
}

void MessageText::mouseReleaseEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseReleaseEvent(event);
  const QTextCursor place = cursorForPosition(event->pos());
  const bool within = cursorRect(place).adjusted(-width(), 0, width(), 0).contains(event->pos());  // not below all
  if (event->button() == Qt::LeftButton && within && !textCursor().hasSelection()) Choose(place.block());
}

void MessageText::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return Choose(textCursor().block());
  QPlainTextEdit::keyPressEvent(event);
}

// ---- the pane -------------------------------------------------------------------------------------------

MessagePane::MessagePane(QWidget* parent)
    : QWidget(parent),
      m_least(new QComboBox),
      m_part(new QLineEdit),
      m_hidden(new QLabel),
      m_clear(new QToolButton),
      m_text(new MessageText(this)) {
  // In the order of the severities.
  for (const char* key : {"IDS_WB_MESSAGES_ALL", "IDS_WB_MESSAGES_WARNINGS", "IDS_WB_MESSAGES_FAILURES"}) {
    AddChoice(*m_least, key);
  }
  m_least->setObjectName("messageSeverity");
  m_part->setObjectName("messageFilter");
  m_part->setClearButtonEnabled(true);
  SetHint(*m_part, "IDS_WB_MESSAGES_FILTER");
  SetText(*m_clear, "IDS_WB_MESSAGES_CLEAR");
  m_clear->setObjectName("messageClear");
  m_clear->setAutoRaise(true);
  auto* bar = new QHBoxLayout;
  bar->addWidget(m_least);
  bar->addWidget(m_part, 1);
  bar->addWidget(m_hidden);
  bar->addWidget(m_clear);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(2);
  all->addLayout(bar);
  all->addWidget(m_text, 1);
  Name();
  m_recount.setSingleShot(true);  // once for many messages
  connect(&m_recount, &QTimer::timeout, this, &MessagePane::ShowHidden);
  connect(m_least, &QComboBox::currentIndexChanged, this, &MessagePane::Filter);
  connect(m_part, &QLineEdit::textChanged, this, &MessagePane::Filter);
  connect(m_clear, &QToolButton::clicked, this, [this] {
    m_text->clear();
    ShowHidden();
  });
  connect(m_text, &MessageText::Chosen, this, &MessagePane::Chosen);
}

void MessagePane::Add(const Message& message) {
  m_text->Add(message);
  if (m_least->currentIndex() != 0 || !m_part->text().isEmpty()) m_recount.start();
}

void MessagePane::Filter() {
  m_text->Filter(static_cast<Severity>(m_least->currentIndex()), m_part->text());
  ShowHidden();
}

/// Nothing is left out without a word.
void MessagePane::ShowHidden() {
  const int hidden = m_text->Hidden();
  if (hidden == 0) return ClearText(*m_hidden);
  SetText(*m_hidden, "IDS_WB_MESSAGES_HIDDEN", {QLocale().toString(hidden)});
}

/// What screen readers call the parts.
void MessagePane::Name() {
  m_least->setAccessibleName(Text("IDS_WB_MESSAGES_SHOWN"));
  m_part->setAccessibleName(Text("IDS_WB_MESSAGES_FILTER"));
  m_text->setAccessibleName(Text("IDS_WB_PANE_MESSAGES"));
}

void MessagePane::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) Name();
  QWidget::changeEvent(event);
}

}  // namespace qd::workbench
