#include "platform/qt/QtTextBox.h"

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

void TextBoxEvents::TextChanged() {
  if (m_owner != nullptr) m_toolkit.Deliver({.kind = MessageKind::TextChanged, .target = m_owner});
}

// ---- edit box -------------------------------------------------------------------------------------------

EditWidget::EditWidget(QtToolkit& toolkit, CWnd& owner, QWidget* parent) : TextBoxWidget(toolkit, owner, parent) {
  setTextMargins(0, 0, 0, 0);
  connect(this, &QLineEdit::textEdited, this, [this] { Events().TextChanged(); });
}

void EditWidget::SetText(const CString& text) {
  setText(ToQt(text));
}

CString EditWidget::GetText() const {
  return FromQt(text());
}

// ---- list -----------------------------------------------------------------------------------------------

ListWidget::ListWidget(QtToolkit& toolkit, CWnd& owner, QWidget* parent) : TextBoxWidget(toolkit, owner, parent) {
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

}  // namespace qd
