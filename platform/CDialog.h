#pragma once

#include <cstddef>
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
  /// What the control is.
  enum class Kind {
    GroupBox,
    RadioButton,
    PushButton,
    Label,      ///< a text, on several lines where the template is so high
    TextField,  ///< one line; its user is the dialog's OnCommand
    Lines       ///< a list to look at, whose lines are asked for when they come into sight
  };
  int id = 0;                    ///< its own within the dialog
  Kind kind = Kind::PushButton;  ///< see Kind
  std::wstring_view text{};      ///< what it says; must outlive the template
  /// @{
  /// Place and size in the dialog, in dialog units.
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  /// @}
};

/// How a dialog looks when it is made. Radio buttons of one template, which stand behind each other there, exclude
/// each other.
struct DialogTemplate {
  int id = 0;                   ///< number of the template
  std::wstring_view caption{};  ///< what the title bar says
  /// @{
  /// Size inside, in dialog units.
  int width = 0;
  int height = 0;
  /// @}
  std::span<const DialogControl> controls{};  ///< in the order in which Tab visits them
};

/// @{
/// Ids of the buttons that end a dialog, which are its results too.
inline constexpr int kDialogOk = 1;
inline constexpr int kDialogCancel = 2;
/// @}

/// The window system's side of a dialog. Ids that the dialog does not have are ignored.
class IDialogPeer {
 public:
  virtual ~IDialogPeer() = default;
  /// @{
  /// What the title bar or a control says.
  virtual void SetCaption(const CString& text) = 0;
  virtual void SetText(int id, const CString& text) = 0;
  /// @}
  virtual CString GetText(int id) const = 0;     ///< of a field; empty for other controls
  virtual void Enable(int id, bool enable) = 0;  ///< whether a control can be used
  /// How many lines a list has; it asks for those in sight anew (CDialog::LineOf).
  virtual void ShowLines(int id, std::size_t count) = 0;
  /// @{
  /// The state of a radio button.
  virtual void SetChecked(int id, bool checked) = 0;
  virtual bool IsChecked(int id) const = 0;
  /// @}
  /// Shows the dialog, modal, until End is called or the user closes it. Returns the result; closing is
  /// kDialogCancel.
  virtual int Run() = 0;
  virtual void End(int result) = 0;  ///< ends Run, which returns `result`
};

/// A modal dialog made from a template. The template must outlive it.
class QD_EXPORT CDialog {
 public:
  /// Shows nothing yet; `layout` must outlive the dialog.
  explicit CDialog(const DialogTemplate& layout) : m_layout(layout) {}
  virtual ~CDialog();
  CDialog(const CDialog&) = delete;
  CDialog& operator=(const CDialog&) = delete;

  /// Shows the dialog and returns its result: kDialogOk, kDialogCancel or what EndDialog was given.
  int DoModal();
  /// Called by the toolkit when the user presses a control, or changes the text of a field.
  void Press(int id) { OnCommand(id); }
  /// Called by the toolkit for a line of a list.
  CString LineOf(int id, std::size_t line) { return OnLine(id, line); }

  // While the dialog is open; nothing otherwise.
  /// @{
  /// What the title bar or a control says.
  void SetCaption(const CString& text);
  void SetItemText(int id, const CString& text);
  /// @}
  /// Of a field, as the user has left it.
  CString GetItemText(int id) const;
  void EnableItem(int id, bool enable);  ///< whether a control can be used
  /// Shows the lines of a list, as many as `count`, as they are now.
  void ShowLines(int id, std::size_t count);
  /// @{
  /// The state of a radio button.
  void CheckDlgButton(int id, bool checked);
  bool IsDlgButtonChecked(int id) const;
  /// @}
  void EndDialog(int result);  ///< ends DoModal, which returns `result`

 protected:
  /// Called before the dialog is shown.
  virtual void OnInitDialog() {}
  /// Called when a control is pressed or the text of a field is changed; the default ends the dialog with its OK
  /// and Cancel buttons.
  virtual void OnCommand(int id);
  /// The text of a line of a list.
  virtual CString OnLine(int, std::size_t) { return {}; }

 private:
  const DialogTemplate& m_layout;
  std::unique_ptr<IDialogPeer> m_peer;
};

/// @{
/// Buttons of a message box, and which of them the user pressed. Closing the box is the last button.
enum class MessageButtons { Ok, YesNo, YesNoCancel };
enum class MessageAnswer { Ok, Yes, No, Cancel };
/// @}

/// Shows a text and waits for an answer; messages are handled meanwhile.
QD_EXPORT MessageAnswer AfxMessageBox(const CString& text, MessageButtons buttons = MessageButtons::Ok);

}  // namespace qd
