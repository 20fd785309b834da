#pragma once

#include "platform/Export.h"

namespace qd {

/// Why the loader calls the module.
enum class ModuleReason { ProcessAttach, ProcessDetach, Other };

/// The system's part of being an extension module of the host program.
class QD_EXPORT IExtensionLibrary {
 public:
  /// Initialises the module's own state; 0 on failure.
  virtual int InitExtensionModule() = 0;
  /// Puts the module on the program's list of places where resources are looked for.
  virtual void AttachToModuleList() = 0;
  virtual void TermExtensionModule() = 0;  ///< ends the module's own state, before it is unloaded

 protected:
  ~IExtensionLibrary() = default;
};

/// The module's entry, which it defines itself and the system's loader calls: 1 when the module may stay loaded, 0
/// when the load must fail. Starts nothing and runs nothing before the host asks for it.
QD_EXPORT int ModuleEntry(ModuleReason reason, IExtensionLibrary& library);

}  // namespace qd
