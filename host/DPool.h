#pragma once

#include <vector>

#include "host/Records.h"
#include "host/Types.h"

namespace qd {

/// A pool of records of one type.
template <typename T>
class DPool {
 public:
  /// All iterators, oldest record first.
  virtual std::vector<iterator> GetItrList() const = 0;
  /// The record, null for an iterator that names none. Stays valid until the record changes; the last contents of
  /// a deleted record stay readable while its deletion is being announced.
  virtual const T* GetAtNU(iterator itr) const = 0;
  /// Deletes records as one undoable act of its own, or as part of the open transaction. Returns 1, or 0 with
  /// nothing deleted.
  virtual int TR_Del(const std::vector<iterator>& itrs) = 0;

 protected:
  ~DPool() = default;
};

class DPoolGeom : public DPool<tagTGeom> {
 public:
  /// Stores a changed record inside the open transaction. The two flags are the host's: write through (0) and
  /// announce (1). Returns 1, 0 on failure.
  virtual int Private_Modify(iterator itr, const tagTGeom& record, int direct, int announce) = 0;

 protected:
  ~DPoolGeom() = default;
};

class DPoolMset : public DPool<tagTMset> {
 public:
  /// The mesh set that meshes a part, 0 when it has none.
  virtual iterator GetItrByGeomItr(iterator geom) const = 0;

 protected:
  ~DPoolMset() = default;
};

class DPoolGset : public DPool<tagTGset> {
 protected:
  ~DPoolGset() = default;
};

class DPoolMaterial : public DPool<tagTMaterial> {
 protected:
  ~DPoolMaterial() = default;
};

}  // namespace qd
