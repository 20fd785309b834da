#include "host/CQDCommandObj.h"

#include <utility>

namespace qd {

CQDCommandObj& CQDCommandObj::Set(const CString& parameter, Value value) {
  m_parameters.insert_or_assign(parameter, std::move(value));
  return *this;
}

int CQDCommandObj::Execute() {
  return m_doc != nullptr ? m_doc->RunCommand(*this) : 0;
}

}  // namespace qd
