#pragma once

#include <functional>
#include <memory>

#include "platform/MouseCapture.h"
#include "platform/Toolkit.h"

class QFont;
class QImage;
class QWidget;

namespace qd {

class QtTexts;

/// The Qt 6 Widgets toolkit. A QApplication must exist before it and until after it.
class QD_QT_EXPORT QtToolkit final : public IToolkit {
 public:
  /// A program need not say what it was built against.
  explicit QtToolkit(const char* builtAgainst = QD_WRT_VERSION);
  ~QtToolkit() override;

  /// The widget of a window, for a host that puts it into its own; null while the window does not exist. The
  /// window keeps owning it.
  static QWidget* WidgetOf(const CWnd& window);
  /// A picture at the resolution that suits a screen of this scale.
  static QImage ImageOf(const Picture& picture, double scale);
  static QFont FontOf(const Font& font);  ///< as Qt names it

  /// Hands a message to its window, or to the holder of the capture first. For peers.
  void Deliver(const Message& message) { m_capture.Deliver(message); }
  /// Ends a running capture as lost. For peers.
  void LoseCapture() { m_capture.Lose(); }
  /// A window is being destroyed, perhaps the one that holds the capture. For peers.
  void WindowGone(const CWnd& window) { m_capture.WindowGone(window); }

  std::unique_ptr<IPeer> MakePeer(CWnd& owner, PeerKind kind, IPeer* parent, const CRect& area) override;
  int GetMetric(Metric metric) const override;
  COLORREF GetColour(SystemColour colour) const override;
  int FontHeight(const Font& font) const override;
  void PrefixWidths(const Font& font, std::wstring_view text, std::vector<int>& widths) const override;
  int TextWidth(const Font& font, std::wstring_view text) const override;
  /// Texts as they are drawn. For painters.
  QtTexts& Texts() const { return *m_texts; }
  CPoint CursorPosition() const override;
  void SetWaitCursor(bool on) override;
  void SetClipboardText(const CString& text) override;
  CaptureEnd RunCapture(CWnd& owner, const std::function<CaptureVerdict(const Message&)>& decide) override;
  unsigned TrackMenu(CWnd& owner, const BCMenu& menu, CPoint screen) override;
  std::unique_ptr<IDialogPeer> MakeDialog(CDialog& owner, const DialogTemplate& layout) override;
  MessageAnswer ShowMessage(const CString& text, MessageButtons buttons) override;

 private:
  MouseCapture m_capture;
  std::unique_ptr<QtTexts> m_texts;
};

}  // namespace qd
