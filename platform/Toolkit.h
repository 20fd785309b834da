#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/CDialog.h"
#include "platform/Export.h"
#include "platform/Message.h"
#include "platform/Picture.h"
#include "platform/Types.h"
#include "platform/Version.h"

namespace qd {

class BCMenu;
class CWnd;

/// How a text is set.
struct Font {
  CString face{};     ///< empty: the system's user-interface font; an unknown face falls back to it
  int height = 0;     ///< pixels; 0: the system's size
  bool bold = false;  ///< whether it is heavier
};

/// Where a text stands in its area.
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
  virtual void Fill(const CRect& area, COLORREF colour) = 0;  ///< fills an area
  /// One-pixel border inside `area`.
  virtual void Frame(const CRect& area, COLORREF colour) = 0;
  /// Every second pixel of the cross hatch, anchored to the client area; gaps are left as they are.
  virtual void Hatch(const CRect& area, COLORREF colour) = 0;
  /// A dotted border inside `area`, in a colour that stands out from what it lies on.
  virtual void FocusRect(const CRect& area, COLORREF colour) = 0;
  /// Filled; the last point is joined to the first.
  virtual void Polygon(std::span<const CPoint> points, COLORREF colour) = 0;
  /// One line, vertically centred, no prefix character; `ellipsis` cuts at the end with "...".
  virtual void Text(const CRect& area, std::wstring_view text, const Font& font, COLORREF colour, TextAlign align,
                    bool ellipsis) = 0;
  /// The top left corner is `at`; drawn at the resolution of the screen.
  virtual void Image(CPoint at, const Picture& picture) = 0;
};

/// A scroll bar's numbers. The largest position is `maximum`; 0 means nothing to scroll.
struct ScrollState {
  /// @{
  /// In units of the owner; positions count from 0.
  int maximum = 0;
  int page = 1;
  int position = 0;
  /// @}
  int line = 1;                                         ///< step of one press on an arrow
  bool operator==(const ScrollState&) const = default;  ///< member by member
};

/// Pointer shapes.
enum class CursorShape { Arrow, ResizeColumn };

/// What an edit box or a drop-down list can do beside what every window can. While one has the focus, keys that
/// type reach no accelerator of the program.
class ITextBox {
 public:
  virtual void SetText(const CString& text) = 0;  ///< of a list: chooses the first equal entry
  virtual CString GetText() const = 0;            ///< of an edit box its text, of a list the chosen entry
  /// Selects all text and scrolls the caret into view.
  virtual void SelectAll() = 0;
  virtual void AddChoice(const CString& text) = 0;  ///< lists only
  /// Lets the box itself handle the key that PreTranslateMessage is being asked about.
  virtual void HandleKey() = 0;

  // Edit boxes only. Places are counted in elements of the text.
  virtual std::size_t GetCaret() const { return 0; }  ///< where the caret is
  /// Selects from one place to another, where the caret goes then.
  virtual void Select(std::size_t, std::size_t) {}
  /// Puts a text where the selection is, and the caret behind it; nobody is told.
  virtual void ReplaceSelection(const CString&) {}
  /// What the box shows in place of a text that is empty.
  virtual void SetHint(const CString&) {}
  /// What a box is painted with.
  struct Colours {
    /// @{
    /// Of what is typed.
    COLORREF background = 0;
    COLORREF text = 0;
    /// @}
    bool operator==(const Colours&) const = default;  ///< member by member
  };
  /// None: the system's.
  virtual void SetColours(const std::optional<Colours>&) {}

 protected:
  ~ITextBox() = default;
};

/// How screen readers see a window that is no tree of rows. A button or a choice is pressed by them with the
/// blank.
struct Accessible {
  /// What it is.
  enum class Role {
    Plain,  ///< what the window system makes of it
    Button,
    Choice,  ///< one of several
    Status   ///< a text that changes by itself, or a list that hangs from a field: it never takes the focus
  };
  Role role = Role::Plain;  ///< see Role
  CString name{};           ///< what it is called; empty for what the window itself says
  bool chosen = false;      ///< of a choice
  bool operator==(const Accessible&) const = default;  ///< member by member
};

/// The window system's side of one CWnd, owned by it. Destroying the peer destroys the window.
class IPeer {
 public:
  virtual ~IPeer() = default;
  virtual void Move(const CRect& area) = 0;  ///< in the parent's client coordinates
  virtual CRect ClientRect() const = 0;      ///< at 0, 0; without the window's own scroll bar
  virtual void Show(bool show) = 0;          ///< shows or hides the window
  /// Whether the window and all that it stands in are shown, so that a part of it may be in sight.
  virtual bool IsSeen() const = 0;
  virtual void Enable(bool enable) = 0;            ///< whether it takes input
  virtual void Invalidate(const CRect& area) = 0;  ///< asks for painting, in client coordinates
  virtual void PaintNow() = 0;  ///< paints what was asked for without waiting for the next message
  virtual CPoint ToScreen(CPoint point) const = 0;  ///< from client to screen coordinates
  /// @{
  /// Whether keys come here.
  virtual void TakeFocus() = 0;
  virtual bool HasFocus() const = 0;
  /// @}
  /// @{
  /// A timer of the window, by a number of its own; setting it again starts it anew.
  virtual void SetTimer(unsigned id, unsigned milliseconds) = 0;
  virtual void KillTimer(unsigned id) = 0;
  /// @}
  /// Queues a Posted message for the window; dropped when the window dies first.
  virtual void Post(unsigned id, std::uint64_t parameter) = 0;
  /// Of the scroll bar window, or of a surface's own vertical bar, which hides while there is nothing to scroll.
  virtual void SetScroll(const ScrollState& state) = 0;
  virtual void SetCursor(CursorShape shape) = 0;  ///< over this window
  /// Shows a picture as the pointer; its top left corner points. Until the next SetCursor.
  virtual void SetCursor(const Picture& picture) = 0;
  /// Tells screen readers that a row of the window's accessible tree has the focus now.
  virtual void AnnounceFocus(std::uint64_t row) = 0;
  virtual void SetAccessible(const Accessible& what) = 0;  ///< what screen readers know of it
  /// Lets screen readers say the window's name now.
  virtual void Announce() = 0;
  /// Puts the window in front of its siblings.
  virtual void Raise() = 0;
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

/// Sizes that the system has for all programs.
enum class Metric { ScrollBarWidth, ScrollBarHeight, DragWidth, DragHeight };
/// Colours of the user's palette.
enum class SystemColour { Window, WindowText, Highlight, HighlightText, ButtonFace, ButtonText, Shadow };

/// A window system. One exists at a time, and all of it is used from the thread that made it. A second one, a use
/// without one or from another thread, or one that was built against another version of the module, ends the
/// program with a sentence on standard error. One that goes before the windows that were made with it takes them
/// along.
class QD_EXPORT IToolkit {
 public:
  IToolkit(const IToolkit&) = delete;
  IToolkit& operator=(const IToolkit&) = delete;

  /// The living toolkit; a program makes one before its first window.
  static IToolkit& Instance();
  static bool Exists();  ///< whether a program has made one that still lives
  /// Whether this is the thread that made the living toolkit. Any thread may ask.
  static bool IsOnItsThread();
  /// Ends the program with a sentence when there is a toolkit and this is not its thread.
  static void NeedThread();
  /// Whether what was built against a version of the module works with this one: it is of the same minor version.
  static bool Suits(const char* builtAgainst);

  /// Makes the window of `owner`. Without a parent it is free to be put into a window of the host.
  virtual std::unique_ptr<IPeer> MakePeer(CWnd& owner, PeerKind kind, IPeer* parent, const CRect& area) = 0;
  virtual int GetMetric(Metric metric) const = 0;             ///< in pixels
  virtual COLORREF GetColour(SystemColour colour) const = 0;  ///< as the user's palette has it now
  virtual int FontHeight(const Font& font) const = 0;         ///< of a line, in pixels
  /// Fills `widths` with the width of every prefix of `text`: element i is the width of the first i elements.
  virtual void PrefixWidths(const Font& font, std::wstring_view text, std::vector<int>& widths) const = 0;
  /// The width of all of it; a toolkit that knows without measuring each prefix says so.
  virtual int TextWidth(const Font& font, std::wstring_view text) const;
  virtual CPoint CursorPosition() const = 0;  ///< in screen coordinates
  virtual void SetWaitCursor(bool on) = 0;    ///< calls nest
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
  /// Says what the toolkit was built against, which it need not name.
  explicit IToolkit(const char* builtAgainst = QD_WRT_VERSION);
  /// Ends the program with a sentence when windows still stand.
  virtual ~IToolkit();
  /// Takes all windows down; the objects stay. A toolkit calls it first when it goes.
  static void CloseWindows();
};

}  // namespace qd
