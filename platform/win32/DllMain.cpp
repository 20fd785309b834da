// Where the loader meets the module.

#include "platform/ExtensionLibrary.h"
#include "platform/win32/ModuleInstance.h"
#include "platform/win32/NativeWindow.h"

namespace qd {

namespace {

constinit HINSTANCE theInstance = nullptr;

/// Known to this process only.
constexpr wchar_t kLoadedName[] = L"QD_wrt.loaded";

class ExtensionLibrary final : public IExtensionLibrary {
 public:
  explicit ExtensionLibrary(HINSTANCE instance) : m_instance(instance) {}

  /// A second copy of the module would have the singletons and the window classes a second time.
  int InitExtensionModule() override {
    if (FindAtomW(kLoadedName) != 0 || AddAtomW(kLoadedName) == 0) return 0;
    DisableThreadLibraryCalls(m_instance);
    return 1;
  }
  void AttachToModuleList() override { SetModuleInstance(m_instance); }
  void TermExtensionModule() override {
    if (theInstance == nullptr) return;  // it never was attached
    NativeWindow::AbandonAll();
    DeleteAtom(FindAtomW(kLoadedName));
    SetModuleInstance(nullptr);
  }

 private:
  HINSTANCE m_instance;
};

}  // namespace

HINSTANCE ModuleInstance() {
  return theInstance;
}

void SetModuleInstance(HINSTANCE instance) {
  theInstance = instance;
}

}  // namespace qd

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID processEnds) {
  qd::ExtensionLibrary library(instance);
  if (reason == DLL_PROCESS_ATTACH) return qd::ModuleEntry(qd::ModuleReason::ProcessAttach, library);
  // At the end of the process its windows are gone and other libraries may be.
  if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
    return qd::ModuleEntry(qd::ModuleReason::ProcessDetach, library);
  }
  return qd::ModuleEntry(qd::ModuleReason::Other, library);
}
