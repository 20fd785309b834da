#pragma once

#include <functional>

#include "host/IAppDB.h"
#include "platform/Export.h"

namespace qd {

/// Where the host shows the progress of long work and lets the user stop it. The object registers itself; there is
/// one at a time.
class QD_EXPORT ILongWork {
 public:
  ILongWork();
  virtual ~ILongWork();
  ILongWork(const ILongWork&) = delete;
  ILongWork& operator=(const ILongWork&) = delete;
  /// Runs `work` with a call that shows its progress. Messages other than input to the progress display are not
  /// handled meanwhile, so that nobody changes the model.
  virtual int Run(const CString& title, const std::function<int(const ProgressCall&)>& work) = 0;
};

/// Runs work that may take long and returns its result. Without a host it runs unseen and to its end.
QD_EXPORT int qdRunLongWork(const CString& title, const std::function<int(const ProgressCall&)>& work);

}  // namespace qd
