#include "platform/qt/QtTextBox.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/CWnd.h"
#include "platform/qt/QtControls.h"
#include "platform/qt/QtConvert.h"
#include "platform/qt/QtKeys.h"
#include "platform/qt/QtToolkit.h"
#include "platform/qt/QtWindow.h"

namespace qd {

// ---- what both have in common ---------------------------------------------------------------------------

bool TextBoxEvents::IsForBox(const QKeyEvent& event) {
  // What every program does with these letters is no editing.
  constexpr std::array kOfProgram{Qt::Key_E, Qt::Key_N, Qt::Key_O, Qt::Key_P, Qt::Key_Q, Qt::Key_S, Qt::Key_W};
  const bool control =
      event.modifiers().testFlag(Qt::ControlModifier) && !event.modifiers().testFlag(Qt::AltModifier);
  if (control && std::find(kOfProgram.begin(), kOfProgram.end(), event.key()) != kOfProgram.end()) return false;
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
  // Screen readers and input aids change it without editing it.
  connect(this, &QLineEdit::textChanged, this, [this] {
    if (!m_setting) Events().TextChanged();
  });
}

void EditWidget::SetText(const CString& text) {
  m_setting = true;
  setText(ToQt(text));
  m_setting = false;
}

CString EditWidget::GetText() const {
  return FromQt(text());
}

std::size_t EditWidget::GetCaret() const {
  return FromQt(text().left(cursorPosition())).size();
}

void EditWidget::Select(std::size_t from, std::size_t to) {
  const CString all = GetText();
  const auto place = [&all](std::size_t at) { return static_cast<int>(ToQt(all.substr(0, at)).size()); };
  from = std::min(from, all.size());
  to = std::min(to, all.size());
  if (from == to) return setCursorPosition(place(to));
  setSelection(place(from), place(to) - place(from));
}

void EditWidget::ReplaceSelection(const CString& text) {
  m_setting = true;
  insert(ToQt(text));
  m_setting = false;
}

void EditWidget::SetColours(const std::optional<Colours>& colours) {
  QPalette palette;  // what is not set comes from the program's
  if (colours) {
    palette.setColor(QPalette::Base, ToQt(colours->background));
    palette.setColor(QPalette::Text, ToQt(colours->text));
  }
  setPalette(palette);
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

// ---- windows --------------------------------------------------------------------------------------------

namespace {

template <typename Box>
class TextBoxWindow final : public QtWindow {
 public:
  TextBoxWindow(QtToolkit& toolkit, CWnd& owner, Box* box, const CRect& area)
      : QtWindow(toolkit, owner, box), m_box(box) {
    Place(area);
  }
  ~TextBoxWindow() override {
    if (m_box != nullptr) m_box->Events().Release();
  }
  ITextBox* TextBox() override { return m_box; }

 private:
  QPointer<Box> m_box;
};

}  // namespace

std::unique_ptr<IPeer> MakeEditBox(QtToolkit& toolkit, CWnd& owner, QWidget* parent, const CRect& area) {
  return std::make_unique<TextBoxWindow<EditWidget>>(toolkit, owner, new EditWidget(toolkit, owner, parent), area);
}

std::unique_ptr<IPeer> MakeDropDownList(QtToolkit& toolkit, CWnd& owner, QWidget* parent, const CRect& area) {
  return std::make_unique<TextBoxWindow<ListWidget>>(toolkit, owner, new ListWidget(toolkit, owner, parent), area);
}

}  // namespace qd
