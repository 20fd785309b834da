#pragma once

#include <QWidget>

#include "host/LongWork.h"

namespace qd::workbench {

/// Shows the progress of long work that the module does, with a button that stops it.
class ProgressWindow final : public ILongWork {
 public:
  explicit ProgressWindow(QWidget* window) : m_window(window) {}
  int Run(const CString& title, const std::function<int(const ProgressCall&)>& work) override;

 private:
  QWidget* m_window;
};

}  // namespace qd::workbench
