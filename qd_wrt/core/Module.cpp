#include "platform/ExtensionLibrary.h"

namespace qd {

int ModuleEntry(ModuleReason reason, IExtensionLibrary& library) {
  if (reason == ModuleReason::ProcessAttach) {
    if (library.InitExtensionModule() == 0) return 0;
    library.AttachToModuleList();
  } else if (reason == ModuleReason::ProcessDetach) {
    library.TermExtensionModule();
  }
  return 1;
}

}  // namespace qd
