#include "host/CTransaction.h"

#include <utility>

namespace qd {

int CTransaction::Begin(const CString& title) {
  m_open = m_session != nullptr && m_session->BeginTransaction(title) != 0;
  return m_open ? 1 : 0;
}

int CTransaction::Commit(int redraw) {
  return std::exchange(m_open, false) && m_session->CommitTransaction(redraw) != 0 ? 1 : 0;
}

void CTransaction::Rollback() {
  if (std::exchange(m_open, false)) m_session->RollbackTransaction();
}

}  // namespace qd
