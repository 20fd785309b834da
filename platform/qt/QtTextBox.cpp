#include "platform/qt/QtTextBox.h"

#include <QKeyEvent>
#include <QPointer>
#include <utility>

#include "platform/CWnd.h"
#include "platform/qt/QtConvert.h"
#include "platform/qt/QtKeys.h"
#include "platform/qt/QtToolkit.h"

namespace qd {

// ---- what both have in common ---------------------------------------------------------------------------

bool TextBoxEvents::IsForBox(const QKeyEvent& event) {
  return KeyOf(event) != 0 || IsTyping(event) || event.modifiers().testFlag(Qt::ControlModifier) ||
         event.key() == Qt::Key_Backspace;
}

void TextBoxEvents::HandleKey() {
  if (const auto handle = std::exchange(m_pending, nullptr)) handle();
}

void TextBoxEvents::Press(QKeyEvent& event, const std::function<void(QKeyEvent&)>& byDefault) {
  event.accept();
  if (m_owner == nullptr) return;
  const std::weak_ptr<void> life = m_owner->Life();
  m_pending = [&] { byDefault(event); };
  const Message key{
      .kind = MessageKind::KeyDown, .target = m_owner, .flags = FlagsOf(event.modifiers()), .key = KeyOf(event)};
  const bool handled = m_owner->PreTranslateMessage(key);
  if (life.expired() || m_owner == nullptr) return;  // this widget is on its way out, but not gone yet
  if (handled) {
    m_pending = nullptr;
    return;
  }
  HandleKey();
  for (const QChar character : event.text()) {
    if (!IsTyping(event) || life.expired() || m_owner == nullptr) return;
    m_toolkit.Deliver({.kind = MessageKind::Char, .target = m_owner, .key = character.unicode()});
  }
}

void TextBoxEvents::FocusLost(const QFocusEvent& event) {
  if (m_owner == nullptr || event.reason() == Qt::PopupFocusReason) return;
  m_toolkit.Deliver({.kind = MessageKind::FocusLost, .target = m_owner});
}

// ---- edit box -------------------------------------------------------------------------------------------

EditWidget::EditWidget(QtToolkit& toolkit, CWnd& owner, QWidget* parent)
    : QLineEdit(parent), m_events(toolkit, owner) {
  setTextMargins(0, 0, 0, 0);
}

void EditWidget::SetText(const CString& text) {
  setText(ToQt(text));
}

CString EditWidget::GetText() const {
  return FromQt(text());
}

void EditWidget::SelectAll() {
  selectAll();
}

bool EditWidget::event(QEvent* event) {
  const bool key = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
  if (!key || !TextBoxEvents::IsForBox(static_cast<QKeyEvent&>(*event))) return QLineEdit::event(event);
  if (event->type() == QEvent::ShortcutOverride) {
    event->accept();
  } else {
    m_events.Press(static_cast<QKeyEvent&>(*event), [this](QKeyEvent& pressed) { keyPressEvent(&pressed); });
  }
  return true;
}

void EditWidget::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  m_events.FocusLost(*event);
}

// ---- list -----------------------------------------------------------------------------------------------

ListWidget::ListWidget(QtToolkit& toolkit, CWnd& owner, QWidget* parent)
    : QComboBox(parent), m_events(toolkit, owner) {
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
}

void ListWidget::SetText(const CString& text) {
  setCurrentIndex(findText(ToQt(text), Qt::MatchExactly | Qt::MatchCaseSensitive));
}

CString ListWidget::GetText() const {
  return FromQt(currentText());
}

void ListWidget::AddChoice(const CString& text) {
  addItem(ToQt(text));
}

bool ListWidget::event(QEvent* event) {
  const bool key = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
  if (!key || !TextBoxEvents::IsForBox(static_cast<QKeyEvent&>(*event))) return QComboBox::event(event);
  if (event->type() == QEvent::ShortcutOverride) {
    event->accept();
  } else {
    m_events.Press(static_cast<QKeyEvent&>(*event), [this](QKeyEvent& pressed) { keyPressEvent(&pressed); });
  }
  return true;
}

void ListWidget::focusOutEvent(QFocusEvent* event) {
  QComboBox::focusOutEvent(event);
  m_events.FocusLost(*event);
}

}  // namespace qd
