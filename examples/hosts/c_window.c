/* A program for Windows in C: a window of its own with the tree in it. Built by any compiler. */
#include <qd_wrt.h>
#include <windows.h>

static qd_tree* tree;

static LRESULT CALLBACK procedure(HWND frame, UINT message, WPARAM w, LPARAM l) {
  void* window = NULL;
  if (message == WM_SIZE && qd_tree_hwnd(tree, &window) == QD_OK)
    MoveWindow(window, 0, 0, LOWORD(l), HIWORD(l), TRUE);
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcW(frame, message, w, l);
}

int main(int count, char** arguments) {
  const WNDCLASSW description = {.lpfnWndProc = procedure, .lpszClassName = L"CHost"};
  const qd_tree_options options = {.size = sizeof options, .interface_number = QD_INTERFACE};
  const qd_row row = {.size = sizeof row, .fields = QD_ROW_TITLE | QD_ROW_CHECKED, .title = "Housing"};
  qd_node node = 0;
  MSG message;
  HWND frame;
  (void)arguments;
  RegisterClassW(&description);
  frame = CreateWindowW(L"CHost", L"Host", WS_OVERLAPPEDWINDOW, 80, 80, 420, 320, NULL, NULL, NULL, NULL);
  if (qd_tree_create_in_hwnd(&options, frame, &tree) || qd_node_add(tree, 0, &row, &node)) {
    MessageBoxA(frame, qd_last_error(), "Host", MB_OK);
    return 1;
  }
  ShowWindow(frame, SW_SHOW);
  if (count > 1) PostMessageW(frame, WM_CLOSE, 0, 0); /* a trial ends at once */
  while (GetMessageW(&message, NULL, 0, 0) > 0) {
    if (qd_translate_message(&message)) continue; /* before your accelerators */
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return qd_shutdown() == QD_OK ? 0 : 1;
}
