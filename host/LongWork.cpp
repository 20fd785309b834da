#include "host/LongWork.h"

namespace qd {

namespace {
ILongWork* s_host = nullptr;
}

ILongWork::ILongWork() {
  s_host = this;
}

ILongWork::~ILongWork() {
  if (s_host == this) s_host = nullptr;
}

int qdRunLongWork(const CString& title, const std::function<int(const ProgressCall&)>& work) {
  if (s_host != nullptr) return s_host->Run(title, work);
  return work([](double) { return true; });
}

}  // namespace qd
