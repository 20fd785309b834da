#pragma once

#include "host/CQDDBSession.h"
#include "platform/Export.h"

namespace qd {

/// A transaction as a scope: leaving it without a commit rolls it back.
class QD_EXPORT CTransaction {
 public:
  /// Null for no database: Begin and Commit answer 0 then. Not owned.
  explicit CTransaction(CQDDBSession* session) : m_session(session) {}
  ~CTransaction() { Rollback(); }
  CTransaction(const CTransaction&) = delete;
  CTransaction& operator=(const CTransaction&) = delete;

  /// `title` is what undo shows. Returns 1; 0 when it cannot begin.
  int Begin(const CString& title);
  /// Returns 1, or 0 with everything rolled back. The works trees hear of it in any case; `redraw` is 0 when the
  /// views show nothing of what was written, else 1.
  int Commit(int redraw);
  void Rollback();  ///< takes back what was written; nothing when no transaction is open

 private:
  CQDDBSession* m_session;
  bool m_open = false;
};

}  // namespace qd
