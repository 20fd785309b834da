#pragma once

#include <QComboBox>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <functional>

#include "platform/Toolkit.h"

namespace qd {

class QtToolkit;

/// What the edit box and the list have in common: keys go to the owner first and never to accelerators, and a lost
/// focus is reported unless a menu or list of the box itself took it.
class TextBoxEvents {
 public:
  TextBoxEvents(QtToolkit& toolkit, CWnd& owner) : m_toolkit(toolkit), m_owner(&owner) {}

  /// The window is gone: report nothing any more.
  void Release() { m_owner = nullptr; }
  /// `byDefault` lets the widget handle a key itself.
  void Press(QKeyEvent& event, const std::function<void(QKeyEvent&)>& byDefault);
  void HandleKey();
  void FocusLost(const QFocusEvent& event);
  void TextChanged();
  static bool IsForBox(const QKeyEvent& event);

 private:
  QtToolkit& m_toolkit;
  CWnd* m_owner;
  std::function<void()> m_pending;  // the key that the owner is being asked about
};

/// A widget of Qt with these events.
template <typename Widget>
class TextBoxWidget : public Widget, public ITextBox {
 public:
  TextBoxWidget(QtToolkit& toolkit, CWnd& owner, QWidget* parent) : Widget(parent), m_events(toolkit, owner) {}
  TextBoxEvents& Events() { return m_events; }
  void HandleKey() override { m_events.HandleKey(); }

 protected:
  bool event(QEvent* event) override {
    const bool key = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (!key || !TextBoxEvents::IsForBox(static_cast<QKeyEvent&>(*event))) return Widget::event(event);
    if (event->type() == QEvent::ShortcutOverride) {
      event->accept();
    } else {
      m_events.Press(static_cast<QKeyEvent&>(*event),
                     [this](QKeyEvent& pressed) { this->keyPressEvent(&pressed); });
    }
    return true;
  }
  void focusOutEvent(QFocusEvent* event) override {
    Widget::focusOutEvent(event);
    m_events.FocusLost(*event);
  }

 private:
  TextBoxEvents m_events;
};

class EditWidget final : public TextBoxWidget<QLineEdit> {
 public:
  EditWidget(QtToolkit& toolkit, CWnd& owner, QWidget* parent);
  void SetText(const CString& text) override;
  CString GetText() const override;
  void SelectAll() override { selectAll(); }
  void AddChoice(const CString&) override {}
  std::size_t GetCaret() const override;
  void Select(std::size_t from, std::size_t to) override;
  void ReplaceSelection(const CString& text) override;
  void SetHint(const CString& text) override { setPlaceholderText(QString::fromStdWString(text)); }
  void SetColours(const std::optional<Colours>& colours) override;

 private:
  bool m_setting = false;  // the owner changes the text, not the user
};

class ListWidget final : public TextBoxWidget<QComboBox> {
 public:
  ListWidget(QtToolkit& toolkit, CWnd& owner, QWidget* parent);
  void SetText(const CString& text) override;
  CString GetText() const override;
  void SelectAll() override {}
  void AddChoice(const CString& text) override;
};

}  // namespace qd
