#include "platform/win32/NativeDialog.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "platform/win32/Handles.h"
#include "platform/win32/ModuleInstance.h"
#include "platform/win32/Scale.h"
#include "platform/win32/System.h"

namespace qd {

namespace {

/// A template in the form that the system reads, for dialogs that are no resource of the module.
class TemplateBytes {
 public:
  explicit TemplateBytes(const DialogTemplate& layout) {
    Put32(DS_MODALFRAME | DS_SETFONT | WS_POPUP | WS_CAPTION | WS_SYSMENU);
    Put32(0);
    Put16(layout.controls.size());
    for (const int number : {0, 0, layout.width, layout.height}) Put16(static_cast<std::size_t>(number));
    Put16(0);  // no menu
    Put16(0);  // the usual class
    PutText(layout.caption);
    constexpr std::size_t kPoints = 8;
    Put16(kPoints);
    PutText(L"MS Shell Dlg");
    bool inGroup = false;
    for (const DialogControl& control : layout.controls) {
      if (m_words.size() % 2 != 0) Put16(0);  // each begins at a whole double word
      const bool radio = control.kind == DialogControl::Kind::RadioButton;
      // The first of the radio buttons, and what stands behind the last.
      const bool group = std::exchange(inGroup, radio) != radio;
      Put32(WS_CHILD | WS_VISIBLE | StyleOf(control) | (group ? WS_GROUP : 0));
      Put32(control.kind == DialogControl::Kind::TextField || control.kind == DialogControl::Kind::Lines
                ? WS_EX_CLIENTEDGE
                : 0);
      for (const int number : {control.x, control.y, control.width, control.height, control.id}) {
        Put16(static_cast<std::size_t>(number));
      }
      PutClass(control.kind);
      PutText(control.text);
      Put16(0);
    }
  }
  LPCDLGTEMPLATEW Get() const { return reinterpret_cast<LPCDLGTEMPLATEW>(m_words.data()); }

 private:
  static DWORD StyleOf(const DialogControl& control) {
    switch (control.kind) {
      case DialogControl::Kind::GroupBox:
        return BS_GROUPBOX;
      case DialogControl::Kind::RadioButton:
        return BS_AUTORADIOBUTTON | WS_TABSTOP;
      case DialogControl::Kind::PushButton:
        return (control.id == kDialogOk ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON) | WS_TABSTOP;
      case DialogControl::Kind::Label:
        return SS_LEFT | SS_NOPREFIX;
      case DialogControl::Kind::TextField:
        return ES_AUTOHSCROLL | WS_TABSTOP;
      case DialogControl::Kind::Lines:
        return LVS_REPORT | LVS_OWNERDATA | LVS_NOCOLUMNHEADER | LVS_SINGLESEL | LVS_SHOWSELALWAYS | WS_TABSTOP;
    }
    return 0;
  }
  void PutClass(DialogControl::Kind kind) {
    if (kind == DialogControl::Kind::Lines) return PutText(WC_LISTVIEWW);
    constexpr std::size_t kButton = 0x0080;
    constexpr std::size_t kEdit = 0x0081;
    constexpr std::size_t kStatic = 0x0082;
    Put16(0xFFFF);
    Put16(kind == DialogControl::Kind::TextField ? kEdit : kind == DialogControl::Kind::Label ? kStatic : kButton);
  }
  void Put16(std::size_t value) { m_words.push_back(static_cast<WORD>(value)); }
  void Put32(DWORD value) {
    Put16(LOWORD(value));
    Put16(HIWORD(value));
  }
  void PutText(std::wstring_view text) {
    for (const wchar_t unit : text) Put16(unit);
    Put16(0);
  }

  std::vector<WORD> m_words;
};

CString WithoutPrefixes(const CString& text) {
  CString shown;
  for (const wchar_t unit : text) {
    if (unit != L'\0') shown.append(unit == L'&' ? 2 : 1, unit);
  }
  return shown;
}

class NativeDialog final : public IDialogPeer {
 public:
  NativeDialog(CDialog& owner, const DialogTemplate& layout)
      : m_owner(owner), m_layout(layout), m_above(GetActiveWindow()) {
    const auto self = reinterpret_cast<LPARAM>(this);
    const INITCOMMONCONTROLSEX lists{sizeof(lists), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&lists);
    const auto* name = MAKEINTRESOURCEW(layout.id);
    if (FindResourceW(ModuleInstance(), name, RT_DIALOG) != nullptr) {
      m_window = CreateDialogParamW(ModuleInstance(), name, m_above, Procedure, self);
    } else {
      m_window =
          CreateDialogIndirectParamW(ModuleInstance(), TemplateBytes(layout).Get(), m_above, Procedure, self);
    }
  }
  ~NativeDialog() override {
    if (m_window == nullptr) return;
    SetWindowLongPtrW(m_window, DWLP_USER, 0);
    DestroyWindow(m_window);
  }
  NativeDialog(const NativeDialog&) = delete;
  NativeDialog& operator=(const NativeDialog&) = delete;

  void SetCaption(const CString& text) override {
    if (m_window != nullptr) SetWindowTextW(m_window, text.c_str());  // up to its first zero
  }
  void SetText(int id, const CString& text) override {
    const DialogControl* control = Find(id);
    if (m_window == nullptr || control == nullptr) return;
    const bool isPlain =
        control->kind == DialogControl::Kind::TextField || control->kind == DialogControl::Kind::Label;
    m_isWriting = true;  // a field would tell it as typed
    SetDlgItemTextW(m_window, id, isPlain ? text.c_str() : WithoutPrefixes(text).c_str());
    m_isWriting = false;
  }
  CString GetText(int id) const override {
    const DialogControl* control = Find(id);
    if (m_window == nullptr || control == nullptr || control->kind != DialogControl::Kind::TextField) return {};
    return TextOf(GetDlgItem(m_window, id));
  }
  void Enable(int id, bool enable) override {
    if (m_window != nullptr && Find(id) != nullptr) EnableWindow(GetDlgItem(m_window, id), enable ? TRUE : FALSE);
  }
  void ShowLines(int id, std::size_t count) override {
    const DialogControl* control = Find(id);
    if (m_window == nullptr || control == nullptr || control->kind != DialogControl::Kind::Lines) return;
    const HWND list = GetDlgItem(m_window, id);
    SendMessageW(list, LVM_SETITEMCOUNT, static_cast<WPARAM>(count), LVSICF_NOSCROLL);
    InvalidateRect(list, nullptr, FALSE);
  }
  void SetChecked(int id, bool checked) override {
    if (m_window != nullptr) CheckDlgButton(m_window, id, checked ? BST_CHECKED : BST_UNCHECKED);
  }
  bool IsChecked(int id) const override {
    return m_window != nullptr && IsDlgButtonChecked(m_window, id) == BST_CHECKED;
  }
  void End(int result) override { m_result = result; }

  int Run() override {
    if (m_window == nullptr) return kDialogCancel;
    Arrange();
    const bool disabled = m_above != nullptr && EnableWindow(m_above, FALSE) == 0;
    ShowWindow(m_window, SW_SHOW);
    MSG message;
    while (!m_result.has_value() && m_window != nullptr) {
      const BOOL got = GetMessageW(&message, nullptr, 0, 0);
      if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
      if (got <= 0) break;
      if (IsDialogMessageW(m_window, &message) != 0) continue;
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    // Before the dialog goes, else another program's window would come to the front.
    if (disabled) EnableWindow(m_above, TRUE);
    if (m_window != nullptr) ShowWindow(m_window, SW_HIDE);
    if (m_above != nullptr) SetActiveWindow(m_above);
    return m_result.value_or(kDialogCancel);
  }

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    if (message == WM_INITDIALOG) {
      SetWindowLongPtrW(window, DWLP_USER, l);
      return TRUE;
    }
    auto* dialog = reinterpret_cast<NativeDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (dialog == nullptr) return FALSE;
    if (message == WM_DESTROY) dialog->m_window = nullptr;  // by the window that it belongs to
    if (message == WM_COMMAND) dialog->OnCommand(LOWORD(w), HIWORD(w));
    if (message == WM_NOTIFY) dialog->OnNotify(*reinterpret_cast<NMHDR*>(l));
    if (message == WM_CLOSE) dialog->m_owner.EndDialog(kDialogCancel);
    return message == WM_COMMAND || message == WM_CLOSE ? TRUE : FALSE;
  }

  const DialogControl* Find(int id) const {
    const auto found = std::find_if(m_layout.controls.begin(), m_layout.controls.end(),
                                    [id](const DialogControl& control) { return control.id == id; });
    return found != m_layout.controls.end() ? &*found : nullptr;
  }

  /// What a number means depends on the control, whose kinds have different notices under one.
  void OnCommand(int id, unsigned notice) {
    const DialogControl* control = Find(id);
    const bool isField = control != nullptr && control->kind == DialogControl::Kind::TextField;
    if (isField ? notice == EN_CHANGE && !m_isWriting : notice == BN_CLICKED) m_owner.Press(id);
  }

  void OnNotify(NMHDR& notice) {
    if (notice.code != LVN_GETDISPINFOW) return;
    LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(notice).item;
    if ((item.mask & LVIF_TEXT) == 0 || item.iItem < 0 || item.cchTextMax <= 0) return;
    const CString line = m_owner.LineOf(static_cast<int>(notice.idFrom), static_cast<std::size_t>(item.iItem));
    const std::size_t length = std::min(line.size(), static_cast<std::size_t>(item.cchTextMax) - 1);
    std::copy_n(line.begin(), length, item.pszText);
    item.pszText[length] = L'\0';
  }

  static CString TextOf(HWND window) {
    CString text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
  }

  /// A list has one column, as wide as it.
  void FitColumns() const {
    for (const DialogControl& control : m_layout.controls) {
      if (control.kind != DialogControl::Kind::Lines) continue;
      const HWND list = GetDlgItem(m_window, control.id);
      RECT area{};
      GetClientRect(list, &area);
      LVCOLUMNW column{};
      column.mask = LVCF_WIDTH;
      column.cx = area.right - GetSystemMetrics(SM_CXVSCROLL);
      SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    }
  }

  int NeededWidth(HDC dc, const DialogControl& control) const {
    constexpr int kBeside = 24;  // the circle of a radio button, the edges of a push button
    const HWND window = GetDlgItem(m_window, control.id);
    const CString text = TextOf(window);
    SIZE size{};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    return static_cast<int>(size.cx) + Scale::Of(m_window).ToPixels(kBeside);
  }

  static bool GrowsWithText(const DialogControl& control) {
    return control.kind != DialogControl::Kind::Label && control.kind != DialogControl::Kind::TextField &&
           control.kind != DialogControl::Kind::Lines;
  }

  /// Texts of other languages are wider than the template was laid out for: everything grows alike.
  void Arrange() const {
    const HDC dc = GetDC(m_window);
    double growth = 1;
    {
      const Selected font(dc, reinterpret_cast<HGDIOBJ>(SendMessageW(m_window, WM_GETFONT, 0, 0)));
      for (const DialogControl& control : m_layout.controls) {
        if (!GrowsWithText(control)) continue;
        RECT area{0, 0, control.width, control.height};
        MapDialogRect(m_window, &area);
        if (area.right > 0) growth = std::max(growth, double(NeededWidth(dc, control)) / double(area.right));
      }
    }
    ReleaseDC(m_window, dc);
    for (const DialogControl& control : m_layout.controls) {
      RECT area{control.x, control.y, control.x + control.width, control.y + control.height};
      MapDialogRect(m_window, &area);
      MoveWindow(GetDlgItem(m_window, control.id), int(area.left * growth), area.top,
                 int((area.right - area.left) * growth), area.bottom - area.top, TRUE);
    }
    FitColumns();
    RECT whole{0, 0, m_layout.width, m_layout.height};
    MapDialogRect(m_window, &whole);
    whole.right = static_cast<LONG>(whole.right * growth);
    AdjustWindowRectEx(&whole, static_cast<DWORD>(GetWindowLongPtrW(m_window, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrW(m_window, GWL_EXSTYLE)));
    Centre(whole.right - whole.left, whole.bottom - whole.top);
  }

  void Centre(int width, int height) const {
    RECT around{};
    if (m_above == nullptr || GetWindowRect(m_above, &around) == 0) {
      SystemParametersInfoW(SPI_GETWORKAREA, 0, &around, 0);
    }
    // Above the window that it belongs to, but whole on that window's monitor.
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromRect(&around, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT& work = monitor.rcWork;
    const auto within = [](LONG at, LONG low, LONG high) { return std::max(std::min(at, high), low); };
    const LONG x = within((around.left + around.right - width) / 2, work.left, work.right - width);
    const LONG y = within((around.top + around.bottom - height) / 2, work.top, work.bottom - height);
    SetWindowPos(m_window, nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
  }

  CDialog& m_owner;
  const DialogTemplate& m_layout;
  HWND m_above;
  HWND m_window = nullptr;
  bool m_isWriting = false;
  std::optional<int> m_result;
};

}  // namespace

std::unique_ptr<IDialogPeer> MakeNativeDialog(CDialog& owner, const DialogTemplate& layout) {
  return std::make_unique<NativeDialog>(owner, layout);
}

}  // namespace qd
