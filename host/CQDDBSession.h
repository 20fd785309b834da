#pragma once

#include <cstdint>

#include "host/DPool.h"
#include "host/IAppDB.h"
#include "platform/Types.h"

namespace qd {

/// The database of one open document.
class CQDDBSession {
 public:
  /// @{
  /// A pool, or what is known beyond them; lives as long as the session.
  virtual DPoolGeom& GetGeomPool() = 0;
  virtual DPoolMset& GetMsetPool() = 0;
  virtual DPoolMGInfo& GetMGInfoPool() = 0;
  virtual DPoolGset& GetGsetPool() = 0;
  virtual DPoolMaterial& GetMaterialPool() = 0;
  virtual DPoolCord& GetCordPool() = 0;
  virtual DPoolGKey& GetGKeyPool() = 0;
  virtual IAppDB& GetAppDB() = 0;
  /// @}

  /// The pool that an iterator belongs to, 0 when it names no living record. Iterators are unique over all pools.
  virtual std::uint16_t GetDataType(iterator itr) const = 0;
  /// The number of a record that is shown to the user, 0 for none.
  virtual std::int32_t GetRecordID(iterator itr) const = 0;

  /// Opens a transaction; 0 when one is open already or the database refuses.
  virtual int BeginTransaction(const CString& title) = 0;
  /// Makes the open transaction's writes final, as one undoable act, and announces them; `redraw` is 0 when
  /// the views need not be drawn again for it, else 1. Returns 1, or 0 after having rolled everything back.
  virtual int CommitTransaction(int redraw) = 0;
  /// Takes the open transaction's writes back; nothing is announced.
  virtual void RollbackTransaction() = 0;

 protected:
  ~CQDDBSession() = default;
};

}  // namespace qd
