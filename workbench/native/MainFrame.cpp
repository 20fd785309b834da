#include "workbench/native/MainFrame.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "workbench/native/Commands.h"
#include "workbench/native/Texts.h"
#include "workbench/session/SelectionPage.h"

namespace qd::workbench {

namespace {

constexpr wchar_t kFrameClass[] = L"QD_wrt.Workbench";
constexpr UINT kLaterMessage = WM_APP + 1;

// In device-independent pixels.
constexpr int kSplitter = 5;
constexpr int kStatusHeight = 26;
constexpr int kLeastPane = 120;

}  // namespace

MainFrame::MainFrame(NativeToolkit& toolkit, NativeMessages& messages) : m_toolkit(toolkit), m_messages(messages) {
  WNDCLASSEXW description{};
  description.cbSize = sizeof(description);
  description.lpfnWndProc = Procedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
  description.hIcon = LoadIconW(nullptr, reinterpret_cast<LPCWSTR>(IDI_APPLICATION));
  description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
  description.lpszClassName = kFrameClass;
  RegisterClassExW(&description);
  m_doc.SetPathName(Text("IDS_WB_UNTITLED"));
  const int dpi = static_cast<int>(GetDpiForSystem());
  CreateWindowExW(WS_EX_ACCEPTFILES, kFrameClass, L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                  CW_USEDEFAULT, MulDiv(900, dpi, 96), MulDiv(640, dpi, 96), nullptr, nullptr,
                  GetModuleHandleW(nullptr), this);
  MakePanes();
  m_session = std::make_unique<Session>(m_doc, m_modelBar, m_gsetBar,
                                        [this](std::function<void()> what) { Later(std::move(what)); });
  m_onRecords = m_doc.OnRecords([this](const CQDUpdateRecord& record) {
    if (Concerns(record, kDataDeck)) m_properties->Refresh();
  });
  m_doc.SetOnImport([this] { OnImport(); });
  m_accelerators = MakeAccelerators();
  RefreshTexts();
}

MainFrame::~MainFrame() {
  m_import.reset();
  m_doc.SetOnImport(nullptr);
  m_session.reset();
  m_properties.reset();
  m_modelBar.DestroyWindow();
  m_gsetBar.DestroyWindow();
  SetWindowLongPtrW(m_frame, GWLP_USERDATA, 0);
  DestroyWindow(m_frame);
  DestroyAcceleratorTable(m_accelerators);
  DeleteObject(m_font);
  UnregisterClassW(kFrameClass, GetModuleHandleW(nullptr));
}

void MainFrame::MakePanes() {
  const auto make = [this](const wchar_t* windowClass, DWORD style, DWORD extended = 0) {
    return CreateWindowExW(extended, windowClass, L"", WS_CHILD | style, 0, 0, 0, 0, m_frame, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
  };
  m_tabs = make(WC_TABCONTROLW, WS_VISIBLE | WS_CLIPSIBLINGS);
  for (int index = 0; index < 2; ++index) {
    TCITEMW tab{};
    tab.mask = TCIF_TEXT;
    wchar_t nothing[] = L"";
    tab.pszText = nothing;
    SendMessageW(m_tabs, TCM_INSERTITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&tab));
  }
  m_messageText =
      make(WC_EDITW, WS_VISIBLE | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL, WS_EX_CLIENTEDGE);
  SendMessageW(m_messageText, EM_SETLIMITTEXT, 0, 0);
  m_progress = make(PROGRESS_CLASSW, 0);
  SendMessageW(m_progress, PBM_SETRANGE32, 0, 1000);
  m_cancel = make(WC_BUTTONW, 0);
  m_properties = std::make_unique<PropertyPane>(m_frame);
  m_properties->SetOwnPage([this] { return SelectionPage::For(m_doc); });
  m_onSelection = m_doc.OnSelection([this](const Selection& selection) {
    // Nobody edits what is not selected any more.
    if (selection.IsEmpty()) m_properties->SetPropertySet(nullptr);
    m_properties->Refresh();
  });
  m_onDisplay = m_doc.GetDisplay().Subscribe([this](const DisplayNotice& notice) {
    if (notice.colours) m_properties->Refresh();
  });
  for (CWorksTreeBar* bar : {&m_modelBar, &m_gsetBar}) {
    Session::MakeBar(*bar, m_doc);
    m_toolkit.Embed(*bar, m_frame);
  }
  MakeFont();
}

// ---- layout ---------------------------------------------------------------------------------------------

int MainFrame::ToPixels(int length) const {
  return MulDiv(length, static_cast<int>(GetDpiForWindow(m_frame)), 96);
}

void MainFrame::MakeFont() {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof(metrics);
  SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0, GetDpiForWindow(m_frame));
  const HFONT before = std::exchange(m_font, CreateFontIndirectW(&metrics.lfMessageFont));
  for (const HWND window : {m_tabs, m_messageText, m_cancel}) {
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(m_font), TRUE);
  }
  if (before != nullptr) DeleteObject(before);
}

void MainFrame::Layout() {
  RECT client{};
  GetClientRect(m_frame, &client);
  if (m_properties == nullptr || client.right <= 0) return;
  const int splitter = ToPixels(kSplitter);
  const int least = ToPixels(kLeastPane);
  const int width = std::clamp<int>(ToPixels(m_treeWidth), std::min<int>(least, client.right),
                                    std::max<int>(least, client.right - least));
  const int status = m_import != nullptr ? ToPixels(kStatusHeight) : 0;
  const int bottom = client.bottom - status;
  MoveWindow(m_tabs, 0, 0, width, bottom, TRUE);
  RECT tab{};
  SendMessageW(m_tabs, TCM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&tab));
  const int tabs = tab.bottom;  // the pane covers the rest
  for (const CWorksTreeBar* bar : {&m_modelBar, &m_gsetBar}) {
    MoveWindow(static_cast<HWND>(m_toolkit.HandleOf(*bar)), 0, tabs, width, bottom - tabs, TRUE);
  }
  const int left = width + splitter;
  const int messages = bottom - ToPixels(kLeastPane);
  m_properties->Place({left, 0, client.right, messages - splitter}, m_font);
  MoveWindow(m_messageText, left, messages, client.right - left, bottom - messages, TRUE);
  const int button = 4 * ToPixels(kStatusHeight);
  MoveWindow(m_progress, 0, bottom, std::max<int>(client.right - button, 0), status, TRUE);
  MoveWindow(m_cancel, client.right - button, bottom, button, status, TRUE);
  ShowWindow(m_progress, status > 0 ? SW_SHOW : SW_HIDE);
  ShowWindow(m_cancel, status > 0 ? SW_SHOW : SW_HIDE);
  ShowTree();
}

void MainFrame::ShowTree() {
  const bool sets = SendMessageW(m_tabs, TCM_GETCURSEL, 0, 0) == 1;
  m_gsetBar.ShowWindow(sets);
  m_modelBar.ShowWindow(!sets);
}

/// The gap between the tree and the other panes moves it. True when the message was about it.
bool MainFrame::DragSplitter(UINT message, LPARAM place) {
  const int x = static_cast<short>(LOWORD(place));
  const bool over = std::abs(x - ToPixels(m_treeWidth) - ToPixels(kSplitter) / 2) <= ToPixels(kSplitter);
  if (message == WM_LBUTTONDOWN && over) {
    m_draggingSplitter = true;
    SetCapture(m_frame);
  } else if (message == WM_LBUTTONUP && m_draggingSplitter) {
    ReleaseCapture();
  } else if (message == WM_MOUSEMOVE && m_draggingSplitter) {
    m_treeWidth = std::max(kLeastPane, MulDiv(x, 96, static_cast<int>(GetDpiForWindow(m_frame))));
    Layout();
  }
  if (over || m_draggingSplitter) SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_SIZEWE)));
  return over || m_draggingSplitter;
}

// ---- texts ----------------------------------------------------------------------------------------------

void MainFrame::RefreshTexts() {
  SetWindowTextW(m_frame, (m_doc.GetPathName() + L" – " + Text("IDS_WB_APP")).c_str());
  const char* titles[] = {"IDS_WB_PANE_MODEL", "IDS_WB_PANE_GSET"};
  for (int index = 0; index < 2; ++index) {
    CString title = Text(titles[index]);
    TCITEMW tab{};
    tab.mask = TCIF_TEXT;
    tab.pszText = title.data();
    SendMessageW(m_tabs, TCM_SETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&tab));
  }
  SetWindowTextW(m_cancel, Text("IDS_WB_CANCEL").c_str());
  MakeMenu();
}

void MainFrame::MakeMenu() {
  const HMENU before = GetMenu(m_frame);
  SetMenu(m_frame, MakeMenuBar(m_messages));
  if (before != nullptr) DestroyMenu(before);
}

void MainFrame::SetLanguage(const std::string& code) {
  if (!m_messages.SetLanguage(code)) return;
  if (!m_named) m_session->Rename(Text("IDS_WB_UNTITLED"));
  RefreshTexts();
  m_session->Manager().OnChangeLanguage();
  m_properties->Refresh();
}

void MainFrame::Say(const CString& text) {
  CString line = text;
  std::replace(line.begin(), line.end(), L'\0', L' ');
  line += L"\r\n";
  const int end = GetWindowTextLengthW(m_messageText);
  SendMessageW(m_messageText, EM_SETSEL, static_cast<WPARAM>(end), end);
  SendMessageW(m_messageText, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(line.c_str()));
}

CString MainFrame::MessageText() const {
  CString text(static_cast<std::size_t>(GetWindowTextLengthW(m_messageText)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(m_messageText, text.data(), static_cast<int>(text.size()))));
  return text;
}

// ---- messages -------------------------------------------------------------------------------------------

void MainFrame::Later(std::function<void()> what) {
  m_later.push_back(std::move(what));
  if (m_later.size() == 1) PostMessageW(m_frame, kLaterMessage, 0, 0);
}

LRESULT CALLBACK MainFrame::Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_NCCREATE) {
    auto* self = static_cast<MainFrame*>(reinterpret_cast<const CREATESTRUCTW*>(l)->lpCreateParams);
    self->m_frame = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<MainFrame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return self != nullptr ? self->OnMessage(message, w, l) : DefWindowProcW(window, message, w, l);
}

LRESULT MainFrame::OnMessage(UINT message, WPARAM w, LPARAM l) {
  switch (message) {
    case WM_SIZE:
      Layout();
      return 0;
    case WM_DPICHANGED: {
      const auto& place = *reinterpret_cast<const RECT*>(l);
      MakeFont();
      SetWindowPos(m_frame, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
      return 0;
    }
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
      if (m_session == nullptr) return 0;
      SendMessageW(static_cast<HWND>(m_toolkit.HandleOf(m_modelBar)), message, w, l);
      MakeFont();
      Layout();
      return 0;
    case WM_ENTERIDLE:  // a menu is open, and the page is to be of the row that it was opened on
      if (w == MSGF_MENU && m_properties != nullptr) m_properties->ShowIfDue();
      return 0;
    case WM_SETFOCUS:
      m_modelBar.SetFocus();
      return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_MOUSEMOVE:
      DragSplitter(message, l);
      return 0;
    case WM_CAPTURECHANGED:
      m_draggingSplitter = false;
      return 0;
    case WM_INITMENUPOPUP:
      RefreshMenuBar(GetMenu(m_frame), *m_session);
      return 0;
    case WM_COMMAND:
      if (l == 0) {
        OnCommand(LOWORD(w));
      } else if (reinterpret_cast<HWND>(l) == m_cancel) {
        m_waiting.clear();
        if (m_import != nullptr) m_import->Cancel();
      } else if (HIWORD(w) == BN_CLICKED) {
        m_properties->OnCommand(reinterpret_cast<HWND>(l));
      }
      return 0;
    case WM_NOTIFY: {
      auto& notice = *reinterpret_cast<NMHDR*>(l);
      if (notice.hwndFrom == m_tabs && notice.code == static_cast<UINT>(TCN_SELCHANGE)) ShowTree();
      if (m_properties == nullptr) return 0;
      return m_properties->OnNotify(notice).value_or(0);
    }
    case WM_DROPFILES:
      OnDrop(reinterpret_cast<HDROP>(w));
      return 0;
    case kLaterMessage:
      for (const auto& what : std::exchange(m_later, {})) what();
      return 0;
    case kImportMessage:
      OnImportNews();
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      return DefWindowProcW(m_frame, message, w, l);
  }
}

void MainFrame::Handle(MSG& message) {
  if (m_toolkit.PreTranslateMessage(&message)) return;
  // Text boxes of the panes take in what they are sent; what the tree does not know is the program's.
  const bool boxed = NativeToolkit::IsTyping(&message) && message.hwnd != nullptr &&
                     (SendMessageW(message.hwnd, WM_GETDLGCODE, 0, 0) & DLGC_WANTALLKEYS) != 0;
  if (!boxed && TranslateAcceleratorW(m_frame, m_accelerators, &message) != 0) return;
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

void MainFrame::Idle() {
  m_properties->ShowIfDue();
}

int MainFrame::Run() {
  ShowWindow(m_frame, SW_SHOW);
  MSG message;
  while (true) {
    if (PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE) == 0) Idle();
    if (GetMessageW(&message, nullptr, 0, 0) <= 0) return static_cast<int>(message.wParam);
    Handle(message);
  }
}

}  // namespace qd::workbench
