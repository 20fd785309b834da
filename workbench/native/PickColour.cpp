#include "workbench/native/PickColour.h"

#include <commdlg.h>

namespace qd::workbench {

bool PickColour(HWND owner, qd::COLORREF& colour) {
  static ::COLORREF custom[16] = {};
  CHOOSECOLORW choose{};
  choose.lStructSize = sizeof(choose);
  choose.hwndOwner = owner;
  choose.rgbResult = colour;
  choose.lpCustColors = custom;
  choose.Flags = CC_RGBINIT | CC_FULLOPEN;
  if (ChooseColorW(&choose) == 0) return false;
  colour = choose.rgbResult;
  return true;
}

}  // namespace qd::workbench
