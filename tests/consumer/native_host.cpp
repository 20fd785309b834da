// A host for Windows: a window of its own with the works tree in it.
#include <host/CQDNullDocument.h>
#include <platform/win32/NativeToolkit.h>
#include <qd_wrt/core/CQDTreeItem.h>
#include <qd_wrt/panel/CWorksTreeBar.h>
#include <windows.h>

/// A node of the host's own; the root has three below it, which the tree owns.
struct Node final : qd::CQDTreeItem {
  using CQDTreeItem::CQDTreeItem;
  int MakeChildItems() override {
    if (GetParent() != nullptr) return 1;
    for (const wchar_t* title : {L"Housing", L"Shaft", L"Impeller"}) {
      (new Node(GetControl(), this, title, 21, 1))->MakeItem(qd::kInsertLast);
    }
    return 1;
  }
};

struct Factory final : qd::IQDTreeGroupFactory {
  qd::CQDTreeItem* CreateRootItem(int, qd::CQDTreeListCtrl* control) override {
    return new Node(control, nullptr, L"Model", 21, 1);
  }
};

LRESULT CALLBACK FrameProcedure(HWND frame, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_SIZE) MoveWindow(GetWindow(frame, GW_CHILD), 0, 0, LOWORD(l), HIWORD(l), TRUE);
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcW(frame, message, w, l);
}

int main(int count, char**) {
  const auto toolkit = qd::NativeToolkit::Make();
  if (toolkit == nullptr) return 2;  // QD_wrt.dll has another version than the headers
  const WNDCLASSW description{.lpfnWndProc = FrameProcedure, .lpszClassName = L"Host"};
  RegisterClassW(&description);
  const HWND frame =
      CreateWindowW(L"Host", L"Host", WS_OVERLAPPEDWINDOW, 80, 80, 420, 320, nullptr, nullptr, nullptr, nullptr);
  Factory factory;
  qd::CQDNullDocument doc(L"no model");
  qd::CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 420, 320});
  toolkit->Embed(bar, frame);
  bar.SetDocument(&doc);
  bar.CreateTreeItems(1, &factory, 1);
  ShowWindow(frame, SW_SHOW);
  if (count > 1) PostMessageW(frame, WM_CLOSE, 0, 0);  // a trial ends at once
  for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
    if (toolkit->PreTranslateMessage(&message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  bar.DestroyTreeItems();
  return 0;
}
