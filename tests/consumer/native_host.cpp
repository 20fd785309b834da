// A host for Windows: a window of its own with the works tree in it.
#include <platform/win32/NativeToolkit.h>
#include <qd_wrt/core/CQDTreeItem.h>
#include <qd_wrt/panel/CWorksTreeBar.h>

#define UNICODE
#include <windows.h>

namespace {

qd::NativeToolkit* toolkit = nullptr;
qd::CWorksTreeBar* pane = nullptr;

/// A node of the host's own; the root has three below it.
class Node final : public qd::CQDTreeItem {
 public:
  Node(qd::CQDTreeListCtrl* control, CQDTreeItem* parent, const wchar_t* title)
      : CQDTreeItem(control, parent, title, 21, 1) {}
  int MakeChildItems() override {
    if (GetParent() != nullptr) return 1;
    for (const wchar_t* title : {L"Housing", L"Shaft", L"Impeller"}) {
      (new Node(GetControl(), this, title))->MakeItem(qd::kInsertLast);  // the tree owns its nodes
    }
    return 1;
  }
};

class Factory final : public qd::IQDTreeGroupFactory {
 public:
  qd::CQDTreeItem* CreateRootItem(int, qd::CQDTreeListCtrl* control) override {
    return new Node(control, nullptr, L"Model");
  }
};

LRESULT CALLBACK FrameProcedure(HWND frame, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_SIZE && pane != nullptr) {
    MoveWindow(static_cast<HWND>(toolkit->HandleOf(*pane)), 0, 0, LOWORD(l), HIWORD(l), TRUE);
  }
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcW(frame, message, w, l);
}

}  // namespace

int main(int count, char**) {
  const auto native = qd::NativeToolkit::Make();
  if (native == nullptr) return MessageBoxW(nullptr, L"QD_wrt.dll has another version.", L"Host", MB_OK), 2;
  WNDCLASSW description{};
  description.lpfnWndProc = FrameProcedure;
  description.lpszClassName = L"Host";
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  RegisterClassW(&description);
  const HWND frame =
      CreateWindowW(L"Host", L"Host", WS_OVERLAPPEDWINDOW, 80, 80, 420, 320, nullptr, nullptr, nullptr, nullptr);
  Factory factory;
  qd::CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 420, 320});
  native->Embed(bar, frame);
  bar.CreateTreeItems(1, &factory, 1);
  toolkit = native.get();
  pane = &bar;
  ShowWindow(frame, SW_SHOW);
  if (count > 1) PostMessageW(frame, WM_CLOSE, 0, 0);  // for a trial: any argument ends it at once
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (native->PreTranslateMessage(&message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  bar.DestroyTreeItems();
  return 0;
}
