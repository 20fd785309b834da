#pragma once

#include "host/CQDDBSession.h"
#include "platform/Export.h"

namespace qd {

/// A transaction as a scope: leaving it without a commit rolls it back.
class QD_EXPORT CTransaction {
 public:
  explicit CTransaction(CQDDBSession* session) : m_session(session) {}
  ~CTransaction() { Rollback(); }
  CTransaction(const CTransaction&) = delete;
  CTransaction& operator=(const CTransaction&) = delete;

  /// `title` is what undo shows. Returns 1; 0 when it cannot begin.
  int Begin(const CString& title);
  /// Returns 1, or 0 with everything rolled back. `announce` non-zero tells the works trees.
  int Commit(int announce);
  void Rollback();

 private:
  CQDDBSession* m_session;
  bool m_open = false;
};

}  // namespace qd
