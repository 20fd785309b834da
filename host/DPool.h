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

/// Geometry parts.
class DPoolGeom : public DPool<tagTGeom> {
 public:
  /// Stores a changed record inside the open transaction. The two flags are the host's: write through (0) and
  /// announce (1). Returns 1, 0 on failure.
  virtual int Private_Modify(iterator itr, const tagTGeom& record, int direct, int announce) = 0;
  /// Puts parts into a geometry set inside the open transaction. Returns 1, 0 on failure.
  virtual int Private_ApplyGset(const std::vector<iterator>& itrs, iterator gset) = 0;
  /// Appends the CAD item numbers of parts; iterators that name no part are left out.
  virtual void GetHCADItemArray(const std::vector<iterator>& itrs, std::vector<int>& cadItems) const = 0;
  /// 1 for a part whose topology is a solid.
  virtual int IsSolid(iterator itr) const = 0;
  /// Tells for each kind of topology whether a geometry set holds parts of it.
  virtual void GetTypeExist(iterator gset, int (&exists)[5]) const = 0;
  /// The parts of one kind in a geometry set, oldest first.
  virtual void GetItrGsetTypeList(iterator gset, int kind, std::vector<iterator>& itrs) const = 0;

 protected:
  ~DPoolGeom() = default;
};

/// Mesh sets. Writes without a note run inside the open transaction; integer results are 1, or 0 on failure.
class DPoolMset : public DPool<tagTMset> {
 public:
  /// Appends the mesh sets whose parent has this key, oldest first; 0 stands for the top level.
  virtual void GetItrListByParentMsetK(std::uint32_t key, TArray<iterator>& itrs) const = 0;
  /// The mesh set with a key, 0 when there is none.
  virtual iterator GetItrByKey(std::uint32_t key) const = 0;
  /// The mesh set that meshes a part, 0 when it has none.
  virtual iterator GetItrByGeomItr(iterator geom) const = 0;
  /// A mesh set of this name, 0 when there is none.
  virtual iterator GetItr(const CString& name) const = 0;
  virtual int Exist(const CString& name) const = 0;  ///< 1 when a set has this name
  /// A name that no set has: `text` with the first free number behind it.
  virtual CString GetNewCopyName(const CString& text) const = 0;
  virtual COLORREF GetNewColor() = 0;           ///< a colour for another set, easy to tell from those given before
  virtual std::uint32_t GetNewKey() const = 0;  ///< a key that no set has
  /// The set that takes what belongs to no other, 0 when there is none. It cannot be deleted or merged away.
  virtual iterator GetDefaultMset() const = 0;
  /// Returns the new record's iterator, 0 on failure.
  virtual iterator AddMset(const tagTMset& record) = 0;
  /// Stores a changed record. A parent that is the set itself or stands below it is refused.
  virtual int Modify(iterator itr, const tagTMset& record) = 0;
  /// Moves the nodes and elements of sets into another and deletes the sets; sets nested in them move up under
  /// the target.
  virtual int Merge(iterator target, const TArray<iterator>& itrs) = 0;
  /// @{
  /// Each one undoable act of its own: deletes all sets but the default one, which is emptied; deletes all sets
  /// without nodes. Sets nested in deleted ones move to the nearest set above that stays.
  virtual int TR_Del_All() = 0;
  virtual int TR_Del_EmptyMset() = 0;
  /// @}

 protected:
  ~DPoolMset() = default;
};

/// How meshes were generated.
class DPoolMGInfo {
 public:
  /// The record with a key, 0 when there is none.
  virtual iterator GetItrByKey(std::uint32_t key) const = 0;
  /// Reads a record. Returns 1; 0 with `record` as it was when there is none.
  virtual int GetAt(iterator itr, tagMGInfo& record) const = 0;
  /// Deletes a record inside the open transaction. Returns 1, 0 on failure.
  virtual int Delete(iterator itr) = 0;

 protected:
  ~DPoolMGInfo() = default;
};

/// Sets of geometry parts.
class DPoolGset : public DPool<tagTGset> {
 public:
  /// A name that no set has: `text` with the first free number behind it.
  virtual CString GetNewCopyName(const CString& text) const = 0;
  /// 1 when a set has this name.
  virtual int Exist(const CString& name) const = 0;
  /// The set that new parts go to; 0 when there is none.
  virtual iterator GetCurrentSet() const = 0;
  /// Makes a set the current one at once: no transaction, no undo. The host has the rows of the old and the new
  /// one read again (CQDTreeListCtrl::RefreshRows).
  virtual void PutCurrentSet(iterator itr) = 0;
  /// Likewise inside the open transaction. Returns 1, 0 on failure.
  virtual int SetCurrentSet(iterator itr) = 0;
  /// Deletes an empty set inside the open transaction. Returns 1, 0 on failure.
  virtual int Delete(iterator itr) = 0;

 protected:
  ~DPoolGset() = default;
};

/// Keys of parts, by which commands on shapes name them.
class DPoolGKey {
 public:
  /// The key of a part, 0 when it has none.
  virtual iterator GetItrByGeomItr(iterator geom) const = 0;

 protected:
  ~DPoolGKey() = default;
};

/// Coordinate systems. Writes run inside the open transaction; integer results are 1, or 0 on failure.
class DPoolCord : public DPool<tagTCord> {
 public:
  /// 1 when a system has this name.
  virtual int Exist(const CString& name) const = 0;
  /// 1 for a system that belongs to the model from its beginning and cannot be changed or deleted.
  virtual int IsDefaultCord(iterator itr) const = 0;
  /// Stores a changed record; one of those from the beginning is refused.
  virtual int Modify(iterator itr, const tagTCord& record) = 0;
  /// Deletes one system. After the last one of an act UpdateAfterDeletion is due.
  virtual int Delete(iterator itr) = 0;
  /// Brings what referred to deleted systems in order.
  virtual int UpdateAfterDeletion() = 0;

 protected:
  ~DPoolCord() = default;
};

/// Materials; what the module reads of them goes through IAppDB.
class DPoolMaterial : public DPool<tagTMaterial> {
 protected:
  ~DPoolMaterial() = default;
};

}  // namespace qd
