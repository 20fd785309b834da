#include <algorithm>
#include <utility>
#include <vector>

#include "platform/CWnd.h"
#include "platform/win32/ControlWindows.h"
#include "platform/win32/Handles.h"
#include "platform/win32/Win32Toolkit.h"

namespace qd {

namespace {

/// What the edit box and the list have in common: keys go to the owner first, and a lost focus is reported.
class TextBoxWindow : public NativeWindow, public ITextBox {
 public:
  using NativeWindow::NativeWindow;

  ITextBox* TextBox() override { return Handle() != nullptr ? this : nullptr; }
  /// Lets the box itself handle the key that its owner is being asked about.
  void HandleKey() override {
    if (const MSG* key = std::exchange(m_key, nullptr)) Default(key->message, key->wParam, key->lParam);
  }

 protected:
  LRESULT OnMessage(UINT message, WPARAM w, LPARAM l) override {
    switch (message) {
      case WM_GETDLGCODE:
        return Default(message, w, l) | DLGC_WANTALLKEYS;
      case WM_KEYDOWN:
        Press({Handle(), message, w, l, 0, {}});
        return 0;
      case WM_CHAR: {
        // Keys that end the edit type nothing; the box would complain about them.
        if (w == kKeyTab || w == kKeyEnter || w == kKeyEscape) return 0;
        const std::weak_ptr<void> life = Owner().Life();
        Default(message, w, l);
        if (!life.expired() && w >= kKeySpace) Deliver({.kind = MessageKind::Char, .key = static_cast<int>(w)});
        return 0;
      }
      case WM_KILLFOCUS: {
        Default(message, w, l);
        Deliver({.kind = MessageKind::FocusLost});
        return 0;
      }
      case kTextChanged:
        if (!m_setting) Deliver({.kind = MessageKind::TextChanged});
        return 0;
      default:
        return NativeWindow::OnMessage(message, w, l);
    }
  }

  bool m_setting = false;  // the owner changes the text, not the user

  CString WindowText() const {
    CString text(static_cast<std::size_t>(GetWindowTextLengthW(Handle())) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(Handle(), text.data(), static_cast<int>(text.size()))));
    return text;
  }

 private:
  void Press(const MSG& key) {
    const std::weak_ptr<void> life = Owner().Life();
    const HWND window = Handle();
    m_key = &key;
    const Message asked{.kind = MessageKind::KeyDown,
                        .target = &Owner(),
                        .flags = KeyFlags(),
                        .key = static_cast<int>(key.wParam)};
    const bool handled = Owner().PreTranslateMessage(asked);
    if (life.expired() || NativeWindow::Of(window) != this) return;
    if (handled) {
      m_key = nullptr;
    } else {
      HandleKey();
    }
  }

  const MSG* m_key = nullptr;
};

class EditWindow final : public TextBoxWindow {
 public:
  EditWindow(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent, const CRect& area)
      : TextBoxWindow(toolkit, owner) {
    Make({WC_EDITW, WS_BORDER | ES_AUTOHSCROLL}, parent, area);
    SendMessageW(Handle(), EM_SETLIMITTEXT, 0, 0);  // as much as it can hold
  }

  void SetText(const CString& text) override {
    m_given = text;
    CString shown = text;
    std::replace(shown.begin(), shown.end(), L'\0', kShownForZero);
    m_setting = true;
    SetWindowTextW(Handle(), shown.c_str());
    m_setting = false;
    m_shown = WindowText();
  }
  CString GetText() const override {
    CString text = WindowText();
    // What the user has left alone comes back as it was given, whatever the box made of it.
    return text == m_shown ? m_given : text;
  }
  void SelectAll() override { SendMessageW(Handle(), EM_SETSEL, 0, -1); }
  void AddChoice(const CString&) override {}
  /// The box tells the ends of the selection, and with nothing selected the caret.
  std::size_t GetCaret() const override {
    DWORD end = 0;
    SendMessageW(Handle(), EM_GETSEL, 0, reinterpret_cast<LPARAM>(&end));
    return end;
  }
  void Select(std::size_t from, std::size_t to) override {
    SendMessageW(Handle(), EM_SETSEL, from, static_cast<LPARAM>(to));
    SendMessageW(Handle(), EM_SCROLLCARET, 0, 0);
  }
  void ReplaceSelection(const CString& text) override {
    m_setting = true;
    SendMessageW(Handle(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
    m_setting = false;
  }
  void SetHint(const CString& text) override {
    SendMessageW(Handle(), EM_SETCUEBANNER, FALSE, reinterpret_cast<LPARAM>(text.c_str()));
  }
  void SetColours(const std::optional<Colours>& colours) override {
    m_colours = colours;
    m_brush = GdiObject<HBRUSH>(colours ? CreateSolidBrush(colours->background) : nullptr);
    InvalidateRect(Handle(), nullptr, TRUE);
  }
  HBRUSH OnColour(HDC dc) override {
    if (!m_colours) return nullptr;
    SetTextColor(dc, m_colours->text);
    SetBkColor(dc, m_colours->background);
    return m_brush.Get();
  }

 private:
  static constexpr wchar_t kShownForZero = 0x2400;
  CString m_given;
  CString m_shown;
  std::optional<Colours> m_colours;
  GdiObject<HBRUSH> m_brush;
};

class ListWindow final : public TextBoxWindow {
 public:
  ListWindow(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent, const CRect& area)
      : TextBoxWindow(toolkit, owner) {
    Make({WC_COMBOBOXW, CBS_DROPDOWNLIST | WS_VSCROLL}, parent, WithList(area));
  }

  void Move(const CRect& area) override { NativeWindow::Move(WithList(area)); }
  // The box shows the texts; what they are is known here, character by character.
  void SetText(const CString& text) override {
    const auto found = std::find(m_choices.begin(), m_choices.end(), text);
    const auto index = found != m_choices.end() ? found - m_choices.begin() : -1;
    SendMessageW(Handle(), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  }
  CString GetText() const override {
    const LRESULT index = SendMessageW(Handle(), CB_GETCURSEL, 0, 0);
    const bool chosen = index >= 0 && index < static_cast<LRESULT>(m_choices.size());
    return chosen ? m_choices[static_cast<std::size_t>(index)] : CString();
  }
  void SelectAll() override {}
  void AddChoice(const CString& text) override {
    m_choices.push_back(text);
    SendMessageW(Handle(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
    if (m_choices.size() == 1) SendMessageW(Handle(), CB_SETCURSEL, 0, 0);
  }

 private:
  /// The system counts the list that drops down among the height.
  static CRect WithList(CRect area) {
    constexpr int kListHeight = 200;
    area.bottom += kListHeight;
    return area;
  }
  std::vector<CString> m_choices;
};

}  // namespace

std::unique_ptr<IPeer> MakeEditBox(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent, const CRect& area) {
  return std::make_unique<EditWindow>(toolkit, owner, parent, area);
}

std::unique_ptr<IPeer> MakeDropDownList(Win32Toolkit& toolkit, CWnd& owner, IPeer* parent, const CRect& area) {
  return std::make_unique<ListWindow>(toolkit, owner, parent, area);
}

}  // namespace qd
