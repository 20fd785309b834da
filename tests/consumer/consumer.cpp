// The smallest host: has the works-tree manager of the installed module ready for its panes, and its texts in
// German.
#include <host/MessageFile.h>
#include <qd_wrt/core/CQDTreeIcon.h>
#include <qd_wrt/core/CWorksTreeManager.h>
#include <fstream>

int main() {
  qd::CWorksTreeManager manager({}, nullptr);
  std::ifstream table(MESSAGES "/de.txt", std::ios::binary);
  const qd::MessageFile german = qd::ReadMessages(table);
  const qd::MessageTable texts(german.texts);
  manager.OnChangeLanguage();
  if (!german.faults.empty() || qd::CMSGFunction::GetValue("IDS_QD_WRT_Color") != L"Farbe") return 2;
  return qd::CQDTreeIcon::Instance().GetRowImageList().GetImageCount() == 379 ? 0 : 1;
}
