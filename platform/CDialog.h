#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// One control of a dialog. Places and sizes are in dialog units: a quarter of the average character's width, an
/// eighth of its height.
struct DialogControl {
  enum class Kind { GroupBox, RadioButton, PushButton };
  int id = 0;
  Kind kind = Kind::PushButton;
  std::wstring_view text{};
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

/// How a dialog looks when it is made. Radio buttons of one template exclude each other.
struct DialogTemplate {
  int id = 0;
  std::wstring_view caption{};
  int width = 0;
  int height = 0;
  std::span<const DialogControl> controls{};
};

/// Ids of the buttons that end a dialog, which are its results too.
inline constexpr int kDialogOk = 1;
inline constexpr int kDialogCancel = 2;

/// The window system's side of a dialog. Ids that the dialog does not have are ignored.
class IDialogPeer {
 public:
  virtual ~IDialogPeer() = default;
  virtual void SetCaption(const CString& text) = 0;
  virtual void SetText(int id, const CString& text) = 0;
  virtual void SetChecked(int id, bool checked) = 0;
  virtual bool IsChecked(int id) const = 0;
  /// Shows the dialog, modal, until End is called or the user closes it. Returns the result; closing is
  /// kDialogCancel.
  virtual int Run() = 0;
  virtual void End(int result) = 0;
};

/// A modal dialog made from a template. The template must outlive it.
class QD_EXPORT CDialog {
 public:
  explicit CDialog(const DialogTemplate& layout) : m_layout(layout) {}
  virtual ~CDialog();
  CDialog(const CDialog&) = delete;
  CDialog& operator=(const CDialog&) = delete;

  /// Shows the dialog and returns its result: kDialogOk, kDialogCancel or what EndDialog was given.
  int DoModal();
  /// Called by the toolkit when the user presses a control.
  void Press(int id) { OnCommand(id); }

  // While the dialog is open; nothing otherwise.
  void SetCaption(const CString& text);
  void SetItemText(int id, const CString& text);
  void CheckDlgButton(int id, bool checked);
  bool IsDlgButtonChecked(int id) const;
  void EndDialog(int result);

 protected:
  /// Called before the dialog is shown.
  virtual void OnInitDialog() {}
  /// Called when a control is pressed; the default ends the dialog with its OK and Cancel buttons.
  virtual void OnCommand(int id);

 private:
  const DialogTemplate& m_layout;
  std::unique_ptr<IDialogPeer> m_peer;
};

/// Buttons of a message box, and which of them the user pressed. Closing the box is the last button.
enum class MessageButtons { Ok, YesNo, YesNoCancel };
enum class MessageAnswer { Ok, Yes, No, Cancel };

/// Shows a text and waits for an answer; messages are handled meanwhile.
QD_EXPORT MessageAnswer AfxMessageBox(const CString& text, MessageButtons buttons = MessageButtons::Ok);

}  // namespace qd
