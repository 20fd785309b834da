#include "workbench/display/ViewSettings.h"

namespace qd::workbench {

ViewSettings& ViewSettings::Ours() {
  static ViewSettings settings;
  return settings;
}

}  // namespace qd::workbench
