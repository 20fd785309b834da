// A part of a program that uses the module and can be loaded and unloaded while the program runs.

#include <windows.h>

#include <memory>

#include "host/CQDNullDocument.h"
#include "platform/win32/NativeToolkit.h"
#include "qd_wrt/core/CQDTreeItem.h"
#include "qd_wrt/core/Factories.h"
#include "qd_wrt/panel/CWorksTreeBar.h"

namespace {

class Row final : public qd::CQDTreeItem {
 public:
  Row(qd::CQDTreeListCtrl* control, CQDTreeItem* parent, const wchar_t* title)
      : CQDTreeItem(control, parent, title, 21, 1) {
    m_editable = true;
  }
  int MakeChildItems() override {
    if (GetParent() == nullptr) (new Row(GetControl(), this, L"Row"))->MakeItem(qd::kInsertLast);
    return 1;
  }
};

class Rows final : public qd::IQDTreeGroupFactory {
 public:
  qd::CQDTreeItem* CreateRootItem(int, qd::CQDTreeListCtrl* control) override {
    return new Row(control, nullptr, L"Root");
  }
};

struct Pane {
  std::unique_ptr<qd::NativeToolkit> toolkit;
  Rows rows;
  qd::CQDNullDocument doc{L"plugin"};
  qd::CWorksTreeBar bar;
};
Pane* thePane = nullptr;  // no object with a destructor: a plugin that is taken out may leave its pane behind

}  // namespace

extern "C" {

/// Makes a pane in a window, for a plugin that says it was built against `version`. The tree's window, null when
/// the module refuses.
__declspec(dllexport) HWND OpenPane(HWND parent, const char* version) {
  auto toolkit = qd::NativeToolkit::Make(version);
  if (toolkit == nullptr) return nullptr;
  thePane = new Pane;
  thePane->toolkit = std::move(toolkit);
  thePane->bar.Create(nullptr, 0, {0, 0, 300, 300});
  thePane->toolkit->Embed(thePane->bar, parent);
  thePane->bar.SetDocument(&thePane->doc);
  thePane->bar.CreateTreeItems(1, &thePane->rows, 1);
  return static_cast<HWND>(thePane->toolkit->HandleOf(thePane->bar.GetTreeCtrl()));
}

/// Opens the editor of the first row.
__declspec(dllexport) void EditTitle() {
  qd::CQDTreeListCtrl& tree = thePane->bar.GetTreeCtrl();
  tree.SetFocus();
  tree.SelectItem(tree.GetRootItem());
  tree.OnChangeTitle();
}

__declspec(dllexport) void ClosePane() {
  thePane->bar.DestroyTreeItems();
  thePane->bar.DestroyWindow();
  delete thePane;
  thePane = nullptr;
}

}  // extern "C"
