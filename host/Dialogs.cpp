#include "host/Dialogs.h"

namespace qd {

namespace {

template <typename Family>
IHostDialogs<Family>*& TheHost() {
  static IHostDialogs<Family>* host = nullptr;
  return host;
}

}  // namespace

template <typename Family>
IHostDialogs<Family>::IHostDialogs() {
  TheHost<Family>() = this;
}

template <typename Family>
IHostDialogs<Family>::~IHostDialogs() {
  if (TheHost<Family>() == this) TheHost<Family>() = nullptr;
}

template <typename Family>
void IHostDialogs<Family>::DoModeless(CQDDocBase* doc, const CString& dialogClass, const void* first,
                                      const void* second) {
  if (IHostDialogs* host = TheHost<Family>()) host->Open(doc, dialogClass, first, second);
}

template class IHostDialogs<struct GeometryDialogs>;
template class IHostDialogs<struct MeshDialogs>;
template class IHostDialogs<struct CommandDialogs>;

IQueryMenuID2Idx& IQueryMenuID2Idx::Instance() {
  static IQueryMenuID2Idx instance;
  return instance;
}

int IQueryMenuID2Idx::GetIndex(unsigned command) const {
  const auto found = m_indexes.find(command);
  return found != m_indexes.end() ? found->second : 0;
}

}  // namespace qd
