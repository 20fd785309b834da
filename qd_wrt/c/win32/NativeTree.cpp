// Trees of programs in C in native windows.

#include "platform/win32/NativeToolkit.h"
#include "platform/win32/System.h"
#include "qd_wrt/c/Tree.h"

namespace qd::c {

namespace {

NativeToolkit* Toolkit() {
  return IToolkit::Exists() ? dynamic_cast<NativeToolkit*>(&IToolkit::Instance()) : nullptr;
}

class NativePane final : public IPane {
 public:
  NativePane(const CRect& area, HWND parent) {
    m_bar.Create(nullptr, 0, area);
    Toolkit()->Embed(m_bar, parent);
  }
  /// The system takes the window with its parent, and leaves the rest.
  CWorksTreeBar* Bar() override { return Window() != nullptr ? &m_bar : nullptr; }
  void SetOnGoing(std::function<void()>) override {}
  void* Window() const { return Toolkit() != nullptr ? Toolkit()->HandleOf(m_bar) : nullptr; }

 private:
  CWorksTreeBar m_bar;
};

}  // namespace

}  // namespace qd::c

using namespace qd::c;

qd_status qd_tree_create_in_hwnd(const qd_tree_options* options, void* parent, qd_tree** tree) {
  return Guarded([=] {
    return MakeTree(options, tree, [=](const qd::CRect& area, std::unique_ptr<IPane>& pane) {
      const auto window = static_cast<HWND>(parent);
      if (IsWindow(window) == 0 || GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId()) {
        return Fail(QD_ERROR_WINDOW);
      }
      if (!qd::IToolkit::Exists()) KeepToolkit(qd::NativeToolkit::Make());
      if (Toolkit() == nullptr) return Fail(QD_ERROR_TOOLKIT);
      pane = std::make_unique<NativePane>(area, window);
      return QD_OK;
    });
  });
}

qd_status qd_tree_hwnd(qd_tree* handle, void** window) {
  if (window != nullptr) *window = nullptr;
  return WithTree(handle, [=](Tree& tree) {
    if (window == nullptr) return Fail(QD_ERROR_NULL, "There is nowhere to put the window.");
    const auto* pane = dynamic_cast<const NativePane*>(&tree.Pane());
    if (pane == nullptr) return Fail(QD_ERROR_TOOLKIT);
    *window = pane->Window();
    return QD_OK;
  });
}

int qd_translate_message(const void* message) {
  if (message == nullptr || !qd::IToolkit::IsOnItsThread()) return 0;
  int handled = 0;
  // What a program's own parts in C++ throw comes out here.
  Call([&] { handled = Toolkit() != nullptr && Toolkit()->PreTranslateMessage(message) ? 1 : 0; });
  return handled;
}
