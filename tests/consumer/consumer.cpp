// The smallest host: has the works-tree manager of the installed module ready for its panes.
#include <qd_wrt/core/CQDTreeIcon.h>
#include <qd_wrt/core/CWorksTreeManager.h>

int main() {
  qd::CWorksTreeManager manager({}, nullptr);
  manager.OnChangeLanguage();
  return qd::CQDTreeIcon::Instance().GetRowImageList().GetImageCount() == 379 ? 0 : 1;
}
