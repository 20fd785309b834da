#include "workbench/app/ProgressWindow.h"

#include <QProgressDialog>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/QuietTime.h"

namespace qd::workbench {

int ProgressWindow::Run(const CString& title, const std::function<int(const ProgressCall&)>& work) {
  constexpr int kSteps = 1000;
  constexpr int kPatience = 300;  // milliseconds before it shows
  QProgressDialog dialog(ToQt(title), Text("IDS_WB_CANCEL"), 0, kSteps, m_window);
  dialog.setWindowModality(Qt::ApplicationModal);  // handles its own input while the work runs, and no other
  dialog.setMinimumDuration(kPatience);
  const QuietTime quiet;
  return work([&dialog](double done) {
    dialog.setValue(static_cast<int>(done * kSteps));
    return !dialog.wasCanceled();
  });
}

}  // namespace qd::workbench
