#pragma once

#include <exception>

#include "platform/MouseCapture.h"
#include "platform/win32/Fonts.h"
#include "platform/win32/Images.h"
#include "platform/win32/NativeToolkit.h"

namespace qd {

class PopupMenu;

/// What the windows of the native toolkit share.
class Win32Toolkit final : public NativeToolkit {
 public:
  Win32Toolkit();
  ~Win32Toolkit() override;

  // ---- for the windows ----------------------------------------------------------------------------------
  void Deliver(const Message& message) { m_capture.Deliver(message); }
  void LoseCapture() { m_capture.Lose(); }
  bool IsCaptureOf(const CWnd& window) const { return m_capture.IsHeldBy(window); }
  void WindowGone(const CWnd& window) { m_capture.WindowGone(window); }
  /// A device context in memory of at least this size, until the next call.
  HDC BeginBuffer(int width, int height);
  Fonts& GetFonts() { return m_fonts; }
  HFONT GetFont(const Font& font, Scale scale) { return m_fonts.Get(font, scale); }
  Images& GetImages() { return m_images; }
  HCURSOR CursorOf(const Picture& picture, Scale scale) { return m_images.Cursor(picture, scale); }
  bool IsWaiting() const { return m_waits > 0; }
  /// What texts are measured for: the resolution that a window came to last.
  Scale GetScale() const { return m_scale; }
  void SetScale(Scale scale) { m_scale = scale; }
  void SettingsChanged();
  /// Keeps what a call of the program throws: it cannot go through the system's frames.
  void KeepThrown() {
    if (m_thrown == nullptr) m_thrown = std::current_exception();
  }
  /// What the system asks the owner of the open menu.
  LRESULT OnMenuMessage(HWND window, UINT message, WPARAM w, LPARAM l);

  // ---- toolkit ------------------------------------------------------------------------------------------
  void* HandleOf(const CWnd& window) const override;
  void Embed(const CWnd& window, void* parent) override;
  bool PreTranslateMessage(const void* message) override;
  std::unique_ptr<IPeer> MakePeer(CWnd& owner, PeerKind kind, IPeer* parent, const CRect& area) override;
  int GetMetric(Metric metric) const override;
  COLORREF GetColour(SystemColour colour) const override;
  int FontHeight(const Font& font) const override { return m_fonts.Height(font, m_scale); }
  void PrefixWidths(const Font& font, std::wstring_view text, std::vector<int>& widths) const override {
    m_fonts.PrefixWidths(font, m_scale, text, widths);
  }
  CPoint CursorPosition() const override;
  void SetWaitCursor(bool on) override;
  void SetClipboardText(const CString& text) override;
  CaptureEnd RunCapture(CWnd& owner, const std::function<CaptureVerdict(const Message&)>& decide) override;
  unsigned TrackMenu(CWnd& owner, const BCMenu& menu, CPoint screen) override;
  std::unique_ptr<IDialogPeer> MakeDialog(CDialog& owner, const DialogTemplate& layout) override;
  MessageAnswer ShowMessage(const CString& text, MessageButtons buttons) override;

 private:
  MouseCapture m_capture;
  Scale m_scale;
  mutable Fonts m_fonts;
  Images m_images;
  MemoryDc m_buffer;
  GdiObject<HBITMAP> m_bitmap;
  HGDIOBJ m_noBitmap = nullptr;  // what the buffer began with
  SIZE m_bufferSize{};
  PopupMenu* m_menu = nullptr;  // while it is open
  int m_waits = 0;
  std::exception_ptr m_thrown;
};

}  // namespace qd
