#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/CDialog.h"
#include "platform/Export.h"
#include "platform/Message.h"
#include "platform/Picture.h"
#include "platform/Types.h"

namespace qd {

class BCMenu;
class CWnd;

struct Font {
  CString face{};  ///< empty: the system's user-interface font; an unknown face falls back to it
  int height = 0;  ///< pixels; 0: the system's size
  bool bold = false;
};

enum class TextAlign { Left = 0, Right = 1, Centre = 2 };

/// Draws into one window while it paints itself. Coordinates are the window's client coordinates plus the origin.
class IPainter {
 public:
  virtual ~IPainter() = default;
  /// The area that needs painting, in client coordinates.
  virtual CRect ClipBox() const = 0;
  /// Restricts drawing to `area` (client coordinates) until the next call.
  virtual void SetClip(const CRect& area) = 0;
  /// Everything drawn from now on is moved right by `x`.
  virtual void SetOrigin(int x) = 0;
  virtual void Fill(const CRect& area, COLORREF colour) = 0;
  /// One-pixel border inside `area`.
  virtual void Frame(const CRect& area, COLORREF colour) = 0;
  /// Every second pixel of the cross hatch, anchored to the client area; gaps are left as they are.
  virtual void Hatch(const CRect& area, COLORREF colour) = 0;
  /// A dotted border inside `area`, in a colour that stands out from what it lies on.
  virtual void FocusRect(const CRect& area, COLORREF colour) = 0;
  virtual void Polygon(std::span<const CPoint> points, COLORREF colour) = 0;
  /// One line, vertically centred, no prefix character; `ellipsis` cuts at the end with "...".
  virtual void Text(const CRect& area, std::wstring_view text, const Font& font, COLORREF colour, TextAlign align,
                    bool ellipsis) = 0;
  virtual void Image(CPoint at, const Picture& picture) = 0;
};

/// A scroll bar's numbers. The largest position is `maximum`; 0 means nothing to scroll.
struct ScrollState {
  int maximum = 0;
  int page = 1;
  int position = 0;
  int line = 1;  ///< step of one press on an arrow
  bool operator==(const ScrollState&) const = default;
};

/// Pointer shapes.
enum class CursorShape { Arrow, ResizeColumn };

/// What an edit box or a drop-down list can do beside what every window can. While one has the focus, keys that
/// type reach no accelerator of the program.
class ITextBox {
 public:
  virtual void SetText(const CString& text) = 0;  ///< of a list: chooses the first equal entry
  virtual CString GetText() const = 0;
  /// Selects all text and scrolls the caret into view.
  virtual void SelectAll() = 0;
  virtual void AddChoice(const CString& text) = 0;  ///< lists only
  /// Lets the box itself handle the key that PreTranslateMessage is being asked about.
  virtual void HandleKey() = 0;

 protected:
  ~ITextBox() = default;
};

/// The window system's side of one CWnd, owned by it. Destroying the peer destroys the window.
class IPeer {
 public:
  virtual ~IPeer() = default;
  virtual void Move(const CRect& area) = 0;  ///< in the parent's client coordinates
  virtual CRect ClientRect() const = 0;      ///< at 0, 0; without the window's own scroll bar
  virtual void Show(bool show) = 0;
  virtual void Enable(bool enable) = 0;
  virtual void Invalidate(const CRect& area) = 0;
  virtual void PaintNow() = 0;
  virtual CPoint ToScreen(CPoint point) const = 0;
  virtual void TakeFocus() = 0;
  virtual bool HasFocus() const = 0;
  virtual void SetTimer(unsigned id, unsigned milliseconds) = 0;
  virtual void KillTimer(unsigned id) = 0;
  /// Queues a Posted message for the window; dropped when the window dies first.
  virtual void Post(unsigned id, std::uint64_t parameter) = 0;
  /// Of the scroll bar window, or of a surface's own vertical bar, which hides while there is nothing to scroll.
  virtual void SetScroll(const ScrollState& state) = 0;
  virtual void SetCursor(CursorShape shape) = 0;
  /// Shows a picture as the pointer; its top left corner points. Until the next SetCursor.
  virtual void SetCursor(const Picture& picture) = 0;
  /// Tells screen readers that a row of the window's accessible tree has the focus now.
  virtual void AnnounceFocus(std::uint64_t row) = 0;
  /// Null for a window that is no edit box and no list.
  virtual ITextBox* TextBox() { return nullptr; }
  /// Tool tips only: text and colours, shown at a screen position; an empty text hides the tip.
  virtual void ShowTip(CPoint screen, const CString& text, COLORREF background, COLORREF colour) = 0;
};

/// Kinds of window that a toolkit makes.
enum class PeerKind {
  Surface,           ///< painted by its CWnd
  SurfaceVScroll,    ///< a surface with a vertical scroll bar of its own
  HorizontalScroll,  ///< a scroll bar
  Edit,              ///< an edit box of one line with a border
  DropDownList,      ///< a choice among fixed entries
  ToolTip
};

enum class Metric { ScrollBarWidth, ScrollBarHeight, DragWidth, DragHeight };
enum class SystemColour { Window, WindowText, Highlight, HighlightText, ButtonFace, ButtonText, Shadow };

/// A window system. One exists at a time; it must outlive every window made with it, and all of it is used from
/// the thread that made it. A second one, or a use without one or from another thread, ends the program with a
/// sentence on standard error.
class QD_EXPORT IToolkit {
 public:
  IToolkit(const IToolkit&) = delete;
  IToolkit& operator=(const IToolkit&) = delete;

  /// The living toolkit; a program makes one before its first window.
  static IToolkit& Instance();
  static bool Exists();

  /// Makes the window of `owner`. Without a parent it is free to be put into a window of the host.
  virtual std::unique_ptr<IPeer> MakePeer(CWnd& owner, PeerKind kind, IPeer* parent, const CRect& area) = 0;
  virtual int GetMetric(Metric metric) const = 0;
  virtual COLORREF GetColour(SystemColour colour) const = 0;
  virtual int FontHeight(const Font& font) const = 0;
  /// Fills `widths` with the width of every prefix of `text`: element i is the width of the first i elements.
  virtual void PrefixWidths(const Font& font, std::wstring_view text, std::vector<int>& widths) const = 0;
  virtual CPoint CursorPosition() const = 0;
  virtual void SetWaitCursor(bool on) = 0;
  /// Puts a text onto the system's clipboard.
  virtual void SetClipboardText(const CString& text) = 0;
  /// Holds the mouse for `owner` and hands every message of the program to `decide` until it stops or the
  /// capture is taken away. Messages may destroy windows, `owner` too: the capture is lost then.
  virtual CaptureEnd RunCapture(CWnd& owner, const std::function<CaptureVerdict(const Message&)>& decide) = 0;
  /// Shows a pop-up menu and returns the chosen command, 0 for none.
  virtual unsigned TrackMenu(CWnd& owner, const BCMenu& menu, CPoint screen) = 0;
  /// Makes the window of a dialog from its template, not shown yet.
  virtual std::unique_ptr<IDialogPeer> MakeDialog(CDialog& owner, const DialogTemplate& layout) = 0;
  /// Shows a message box.
  virtual MessageAnswer ShowMessage(const CString& text, MessageButtons buttons) = 0;

 protected:
  IToolkit();
  virtual ~IToolkit();
};

}  // namespace qd
