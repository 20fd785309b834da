#include "host/CQDDialog.h"

namespace qd {

void CDlgUtil::CtrlRadioSetCheck(CDialog& dialog, const std::vector<int>& group, int index) {
  for (std::size_t place = 0; place < group.size(); ++place) {
    dialog.CheckDlgButton(group[place], static_cast<int>(place) == index);
  }
}

}  // namespace qd
