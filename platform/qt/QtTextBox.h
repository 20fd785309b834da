#pragma once

#include <QComboBox>
#include <QLineEdit>

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
  static bool IsForBox(const QKeyEvent& event);

 private:
  QtToolkit& m_toolkit;
  CWnd* m_owner;
  std::function<void()> m_pending;  // the key that the owner is being asked about
};

class EditWidget final : public QLineEdit, public ITextBox {
 public:
  EditWidget(QtToolkit& toolkit, CWnd& owner, QWidget* parent);
  TextBoxEvents& Events() { return m_events; }

  void SetText(const CString& text) override;
  CString GetText() const override;
  void SelectAll() override;
  void AddChoice(const CString&) override {}
  void HandleKey() override { m_events.HandleKey(); }

 protected:
  bool event(QEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  TextBoxEvents m_events;
};

class ListWidget final : public QComboBox, public ITextBox {
 public:
  ListWidget(QtToolkit& toolkit, CWnd& owner, QWidget* parent);
  TextBoxEvents& Events() { return m_events; }

  void SetText(const CString& text) override;
  CString GetText() const override;
  void SelectAll() override {}
  void AddChoice(const CString& text) override;
  void HandleKey() override { m_events.HandleKey(); }

 protected:
  bool event(QEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  TextBoxEvents m_events;
};

}  // namespace qd
