#pragma once

#include <memory>

#include "platform/Export.h"
#include "platform/Toolkit.h"
#include "platform/Version.h"

namespace qd {

/// The toolkit over the system's own windows. One thread makes it and everything in it, and handles its messages.
///
/// Coordinates are device-independent: at 96 dots an inch they are pixels. In a program that says that it knows of
/// monitors with different resolutions, windows follow the monitor that they are on. Programs pass what the system
/// tells their top-level windows of its settings (WM_SYSCOLORCHANGE, WM_SETTINGCHANGE) on to one embedded window.
class QD_EXPORT NativeToolkit : public IToolkit {
 public:
  /// Makes the toolkit; null when there is one already, or when the program was built against another version of
  /// the module than the one that was loaded. The program passes the version that it was built against, which it
  /// need not name.
  static std::unique_ptr<NativeToolkit> Make(const char* builtAgainst = QD_WRT_VERSION);
  ~NativeToolkit() override = default;

  /// The handle of a window's window (HWND), null while there is none.
  virtual void* HandleOf(const CWnd& window) const = 0;
  /// Puts a window without parent into one of the program's windows (HWND). From then on the program sizes and
  /// places it, by its handle.
  virtual void Embed(const CWnd& window, void* parent) = 0;
  /// Whether a message (MSG*) types or edits: what a text box wants for itself. The other keys with Ctrl, and
  /// those with numbers, are the program's, in its text boxes too.
  static bool IsTyping(const void* message);
  /// To be asked about each message (MSG*) before accelerators are: true when it is for one of the module's edit
  /// boxes or lists and has been handled. What a call of the program has thrown since it was asked last comes out
  /// here.
  virtual bool PreTranslateMessage(const void* message) = 0;

 protected:
  NativeToolkit() = default;
};

/// The version of the loaded module, for programs that load it by name and look before they go on.
extern "C" QD_EXPORT const char* QD_wrt_GetVersion();

}  // namespace qd
