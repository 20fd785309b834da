#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Toolkit.h"

namespace qd {

class HeadlessPeer;

/// A window system without a screen, for tests and for programs that need none: input is scripted, painting is
/// recorded as text, text metrics are fixed, and time stands still until it is moved by hand.
///
/// Input is queued and handled by Pump. Messages that windows post are handled after what was queued before.
class QD_HEADLESS_EXPORT HeadlessToolkit final : public IToolkit {
 public:
  /// @{
  /// Of the fixed font, in pixels.
  static constexpr int kCharacterWidth = 7;
  static constexpr int kBoldWidth = 8;
  static constexpr int kFontHeight = 16;
  /// @}

  /// A program need not say what it was built against.
  explicit HeadlessToolkit(const char* builtAgainst = QD_WRT_VERSION) : IToolkit(builtAgainst) {}
  ~HeadlessToolkit() override;

  // ---- script -------------------------------------------------------------------------------------------
  void Enqueue(Message message);  ///< queues a message as the window system would
  /// Press and release; flags are MouseFlags.
  void Click(CWnd& window, CPoint point, unsigned flags = 0);
  /// @{
  /// Likewise with the right button, or twice.
  void RightClick(CWnd& window, CPoint point, unsigned flags = 0);
  void DoubleClick(CWnd& window, CPoint point);
  /// @}
  /// A key, with `flags` of MouseFlags; it goes to the window whatever has the focus.
  void Key(CWnd& window, int key, unsigned flags = 0);
  /// Types characters: an edit box takes them in, other windows get them as messages.
  void Type(CWnd& window, const CString& text);
  /// Pastes a text into an edit box.
  void Paste(CWnd& window, const CString& text);
  /// The user chooses another colour; every window hears of it.
  void SetColour(SystemColour which, COLORREF colour);
  /// Puts the pointer somewhere without telling anybody.
  void SetCursorPosition(CPoint screen) { m_cursor = screen; }
  /// The window of a child id below `parent`, null when there is none.
  CWnd* FindChild(const CWnd& parent, int id) const;
  /// Handles everything queued, and what comes of it.
  void Pump();
  /// Lets time pass while anything goes on in slices.
  void FinishSlices();
  /// Moves the clock; timers that fall due are queued.
  void Advance(unsigned milliseconds);
  /// What the next pop-up menus answer, in order; 0 closes the menu. Without an answer a menu answers 0.
  void AnswerMenu(unsigned command) { m_menuAnswers.push_back(command); }
  /// The pop-up menus shown so far: entries as "text", "[x] text" or "-", submenus in braces.
  const std::vector<std::string>& ShownMenus() const { return m_menus; }
  /// The last one, with the number of each command before its text.
  const std::string& LastMenuWithCommands() const { return m_lastMenu; }
  /// What the next message boxes answer, in order; without an answer a box is closed.
  void AnswerMessage(MessageAnswer answer) { m_messageAnswers.push_back(answer); }
  /// What happens while the next message box stands open, before it is answered.
  void WhileMessage(std::function<void()> meanwhile) { m_whileMessage = std::move(meanwhile); }
  /// Whether something was answered that nobody has asked yet.
  bool HasAnswersLeft() const {
    return !m_menuAnswers.empty() || !m_messageAnswers.empty() || !m_dialogAnswers.empty();
  }
  /// Takes back what was answered and not asked.
  void ForgetAnswers() {
    m_menuAnswers.clear();
    m_messageAnswers.clear();
    m_dialogAnswers.clear();
  }
  /// The message boxes shown since the last call.
  std::vector<CString> TakeMessages() { return std::exchange(m_messages, {}); }
  /// What the user does in the next dialogs: presses controls, in order. A dialog that is still open then is
  /// closed.
  void AnswerDialog(std::vector<int> presses) {
    m_dialogAnswers.emplace_back();
    for (const int id : presses) m_dialogAnswers.back().push_back({id});
  }
  /// Likewise, with texts that he leaves in fields, in place of those that are there, and with what else happens
  /// meanwhile.
  struct DialogStep {
    int id = 0;                         ///< the control to press; 0 presses none
    std::optional<CString> text{};      ///< what the field of that id says first
    std::function<void()> meanwhile{};  ///< what happens first
  };
  /// For the next dialog.
  void WorkDialog(std::vector<DialogStep> steps) { m_dialogAnswers.push_back(std::move(steps)); }
  /// The dialogs shown since the last call, as they were when they were shown and, when they were worked with,
  /// when they ended: caption, then texts of the controls, "(x)" before checked ones, "(-)" before those out of
  /// use, the first lines of lists in brackets.
  std::vector<std::string> TakeDialogs() { return std::exchange(m_dialogs, {}); }
  /// Paints the whole window now and returns what was drawn, one call a line.
  std::vector<std::string> Paint(CWnd& window);
  /// Paint requests handled by Pump since the last call.
  int TakePaintCount();
  /// Lets Pump paint what windows ask for: gets the window and the smallest rectangle round all that needs it.
  void SetScreen(std::function<void(CWnd&, const CRect&)> screen) { m_screen = std::move(screen); }
  /// The tool tip on show, empty when there is none, and how it looks.
  const CString& Tip() const { return m_tip.text; }
  /// What a tip looks like.
  struct TipLook {
    CString text;   ///< empty for none
    CPoint screen;  ///< its top left corner
    /// @{
    /// As it was given them.
    COLORREF background = 0;
    COLORREF colour = 0;
    /// @}
    CWnd* owner = nullptr;  ///< the tip
  };
  const TipLook& GetTipLook() const { return m_tip; }  ///< of the last tip
  CWnd* FocusWindow() const { return m_focus; }        ///< null for none
  /// The timers of a window that run: number and period.
  std::map<unsigned, unsigned> TimersOf(const CWnd& window) const;
  /// What the window's scroll bar, or the bar that it is, shows.
  ScrollState ScrollOf(const CWnd& window) const;
  /// The pointer over a window: "arrow", "resize" or "picture".
  std::string PointerOf(const CWnd& window) const;
  bool IsWaitCursor() const { return m_waits > 0; }             ///< whether the program shows that it is busy
  const CString& ClipboardText() const { return m_clipboard; }  ///< what was copied last
  /// What screen readers know of a window.
  Accessible AccessibleOf(const CWnd& window) const;
  /// The names that screen readers were to say since the last call.
  std::vector<CString> TakeSpoken() { return std::exchange(m_spoken, {}); }
  /// The colours that an edit box was given, and what it shows while it is empty.
  std::optional<ITextBox::Colours> BoxColoursOf(const CWnd& window) const;
  CString HintOf(const CWnd& window) const;  ///< what it shows while it is empty
  /// The rows that windows announced to screen readers since the last call.
  std::vector<std::uint64_t> TakeAnnounced() { return std::exchange(m_announced, {}); }

  // ---- toolkit ------------------------------------------------------------------------------------------
  std::unique_ptr<IPeer> MakePeer(CWnd& owner, PeerKind kind, IPeer* parent, const CRect& area) override;
  int GetMetric(Metric metric) const override;
  COLORREF GetColour(SystemColour colour) const override;
  int FontHeight(const Font&) const override { return kFontHeight; }
  void PrefixWidths(const Font& font, std::wstring_view text, std::vector<int>& widths) const override;
  CPoint CursorPosition() const override { return m_cursor; }
  void SetWaitCursor(bool on) override { m_waits += on ? 1 : -1; }
  void SetClipboardText(const CString& text) override { m_clipboard = text; }
  CaptureEnd RunCapture(CWnd& owner, const std::function<CaptureVerdict(const Message&)>& decide) override;
  unsigned TrackMenu(CWnd& owner, const BCMenu& menu, CPoint screen) override;
  std::unique_ptr<IDialogPeer> MakeDialog(CDialog& owner, const DialogTemplate& layout) override;
  MessageAnswer ShowMessage(const CString& text, MessageButtons buttons) override;

 private:
  friend class HeadlessPeer;
  friend class HeadlessDialog;
  struct Timer {
    CWnd* owner;
    unsigned id;
    unsigned period;
    unsigned long due;
  };

  bool IsAlive(const CWnd* window) const;
  void Forget(CWnd* window);
  void DispatchNow(const Message& message);
  void Note(const Message& message);
  void TypeInto(CWnd& window, const Message& message);
  void PaintDirty();

  std::deque<Message> m_queue;
  std::vector<CWnd*> m_windows;
  std::vector<std::pair<CWnd*, CRect>> m_dirty;
  std::function<void(CWnd&, const CRect&)> m_screen;
  std::vector<Timer> m_timers;
  std::vector<unsigned> m_menuAnswers;
  std::vector<std::string> m_menus;
  std::string m_lastMenu;
  std::vector<MessageAnswer> m_messageAnswers;
  std::vector<CString> m_messages;
  std::function<void()> m_whileMessage;
  std::vector<std::vector<DialogStep>> m_dialogAnswers;
  std::vector<std::string> m_dialogs;
  unsigned long m_now = 0;
  int m_paints = 0;
  int m_waits = 0;
  std::vector<std::uint64_t> m_announced;
  std::vector<CString> m_spoken;
  CPoint m_cursor;
  CString m_clipboard;
  std::map<SystemColour, COLORREF> m_colours;  // those that the user has chosen
  CWnd* m_focus = nullptr;
  TipLook m_tip;
};

}  // namespace qd
