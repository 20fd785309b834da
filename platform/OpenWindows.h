#pragma once

namespace qd {

/// Takes down all windows that stand in no other one, and what stands in them.
void CloseAllWindows();
bool IsAnyWindowOpen();

}  // namespace qd
