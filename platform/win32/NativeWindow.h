#pragma once

#include <set>

#include "platform/Toolkit.h"
#include "platform/win32/Scale.h"

namespace qd {

/// Sent on to an edit box by its parent, which the system tells of changes.
inline constexpr UINT kTextChanged = WM_APP + 2;
/// The user has chosen other colours or fonts.
inline constexpr UINT kLookChanged = WM_APP + 3;

class Win32Toolkit;

/// The system's window behind a CWnd, of any kind. The system may destroy it earlier, with its parent; then
/// nothing that is asked of it has an effect.
class NativeWindow : public IPeer {
 public:
  ~NativeWindow() override;
  NativeWindow(const NativeWindow&) = delete;
  NativeWindow& operator=(const NativeWindow&) = delete;

  /// The window class of surfaces, which must be known while there are windows.
  static void RegisterClasses();
  static void UnregisterClasses();
  /// Takes all windows down without a word to their owners: the module's code is about to go. Windows of other
  /// threads stay, as windows that do nothing.
  static void AbandonAll();
  /// The user has changed the system's fonts or colours.
  static void RefreshAll();
  /// The peer of a window, null when it is none of ours or its owner is gone.
  static NativeWindow* Of(HWND window);

  HWND Handle() const { return m_window; }
  CWnd& Owner() const { return m_owner; }
  /// Puts the window into one of the program's own, where the program places it.
  void Embed(HWND parent);

  void Move(const CRect& area) override;
  CRect ClientRect() const override;
  void Show(bool show) override;
  bool IsSeen() const override { return m_window != nullptr && IsWindowVisible(m_window) != 0; }
  void Enable(bool enable) override;
  void Invalidate(const CRect& area) override;
  void PaintNow() override;
  CPoint ToScreen(CPoint point) const override;
  void TakeFocus() override;
  bool HasFocus() const override;
  void SetTimer(unsigned id, unsigned milliseconds) override;
  void KillTimer(unsigned id) override;
  void Post(unsigned id, std::uint64_t parameter) override;
  void SetScroll(const ScrollState& state) override { m_line = state.line; }
  /// The step of one press on an arrow of the scroll bar.
  int LineStep() const { return m_line; }
  void SetCursor(CursorShape shape) override;
  void SetCursor(const Picture& picture) override;
  void AnnounceFocus(std::uint64_t) override {}
  void SetAccessible(const Accessible& what) override;
  void Announce() override;
  void Raise() override;
  const Accessible& GetAccessible() const { return m_accessible; }
  /// What the system paints the window of one of its classes with, null for what it takes by itself.
  virtual HBRUSH OnColour(HDC) { return nullptr; }
  void ShowTip(CPoint, const CString&, COLORREF, COLORREF) override {}

 protected:
  NativeWindow(Win32Toolkit& toolkit, CWnd& owner) : m_toolkit(toolkit), m_owner(owner) {}

  struct Style {
    const wchar_t* windowClass;
    DWORD style = 0;
    DWORD extended = 0;
  };
  /// Makes the window; without a parent it is hidden until it is embedded. Windows of the system's classes are
  /// made to report to us too.
  void Make(const Style& style, IPeer* parent, const CRect& area);
  /// What the system reports. The owner may destroy this object meanwhile: nothing of it may be touched after a
  /// message was delivered.
  virtual LRESULT OnMessage(UINT message, WPARAM w, LPARAM l);
  /// Handles a message as the window's class does.
  LRESULT Default(UINT message, WPARAM w, LPARAM l) const;
  void Deliver(Message message);
  static const wchar_t* SurfaceClass();
  Scale GetScale() const { return m_scale; }
  /// To be called when what is invalid is being painted.
  void BeginPainting() { m_invalid = {}; }
  Win32Toolkit& Toolkit() const { return m_toolkit; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l);
  void Abandon();
  void NoteSize();
  void Refresh();
  void OnDpiChanged();

  Win32Toolkit& m_toolkit;
  CWnd& m_owner;
  HWND m_window = nullptr;
  WNDPROC m_classProcedure = nullptr;  // of a window of the system's classes
  CRect m_place;                       // in the parent; unused once the program places the window
  bool m_embedded = false;
  int m_line = 1;
  HCURSOR m_cursor = nullptr;
  Accessible m_accessible;
  std::set<unsigned> m_timers;
  // Kept here, for asking the system takes longer than painting a row.
  Scale m_scale;
  SIZE m_client{};
  RECT m_invalid{};                // some of what the system knows to be invalid already
  NativeWindow* m_next = nullptr;  // the list of all
  NativeWindow* m_before = nullptr;
};

/// The bits of MouseFlags for the keys held now.
unsigned KeyFlags();

}  // namespace qd
