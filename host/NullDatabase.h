#pragma once

#include <utility>
#include <vector>

#include "host/CQDDBSession.h"

namespace qd {

// A database with nothing in it, piece by piece: what a host of its own has not. Reading finds nothing, writing
// fails. A host derives from what it has in part, and gives its pools to CQDNullDBSession.

/// A pool without records.
template <typename Pool, typename Record>
class NullPool : public Pool {
 public:
  virtual ~NullPool() = default;
  std::vector<iterator> GetItrList() const override { return {}; }    ///< none
  const Record* GetAtNU(iterator) const override { return nullptr; }  ///< none
  int TR_Del(const std::vector<iterator>&) override { return 0; }     ///< nothing to delete
};

/// Parts: none, or what the records of a derived pool say of themselves.
class CQDNullGeomPool : public NullPool<DPoolGeom, tagTGeom> {
 public:
  int Private_Modify(iterator, const tagTGeom&, int, int) override { return 0; }
  int Private_ApplyGset(const std::vector<iterator>&, iterator) override { return 0; }
  /// What the records say.
  void GetHCADItemArray(const std::vector<iterator>& itrs, std::vector<int>& cadItems) const override {
    for (const iterator itr : itrs) {
      if (const tagTGeom* record = GetAtNU(itr)) cadItems.push_back(record->cadItem);
    }
  }
  int IsSolid(iterator itr) const override {
    const tagTGeom* record = GetAtNU(itr);
    return record != nullptr && record->kind == TopologyKind::Solid ? 1 : 0;
  }
  void GetTypeExist(iterator gset, int (&exists)[5]) const override {
    for (int& exist : exists) exist = 0;
    for (const iterator itr : GetItrList()) {
      const tagTGeom* record = GetAtNU(itr);
      if (record != nullptr && record->gset == gset) exists[static_cast<std::size_t>(record->kind)] = 1;
    }
  }
  void GetItrGsetTypeList(iterator gset, int kind, std::vector<iterator>& itrs) const override {
    itrs.clear();
    for (const iterator itr : GetItrList()) {
      const tagTGeom* record = GetAtNU(itr);
      if (record != nullptr && record->gset == gset && static_cast<int>(record->kind) == kind) itrs.push_back(itr);
    }
  }
};

/// Mesh sets: none.
class CQDNullMsetPool : public NullPool<DPoolMset, tagTMset> {
 public:
  void GetItrListByParentMsetK(std::uint32_t, TArray<iterator>&) const override {}
  iterator GetItrByKey(std::uint32_t) const override { return 0; }
  iterator GetItrByGeomItr(iterator) const override { return 0; }
  iterator GetItr(const CString&) const override { return 0; }
  int Exist(const CString&) const override { return 0; }
  CString GetNewCopyName(const CString& text) const override { return text; }
  COLORREF GetNewColor() override { return 0; }
  std::uint32_t GetNewKey() const override { return 0; }
  iterator GetDefaultMset() const override { return 0; }
  iterator AddMset(const tagTMset&) override { return 0; }
  int Modify(iterator, const tagTMset&) override { return 0; }
  int Merge(iterator, const TArray<iterator>&) override { return 0; }
  int TR_Del_All() override { return 0; }
  int TR_Del_EmptyMset() override { return 0; }
};

/// How meshes were generated: nobody knows.
class CQDNullMGInfoPool : public DPoolMGInfo {
 public:
  virtual ~CQDNullMGInfoPool() = default;
  iterator GetItrByKey(std::uint32_t) const override { return 0; }
  int GetAt(iterator, tagMGInfo&) const override { return 0; }
  int Delete(iterator) override { return 0; }
};

/// Geometry sets: none.
class CQDNullGsetPool : public NullPool<DPoolGset, tagTGset> {
 public:
  CString GetNewCopyName(const CString& text) const override { return text; }
  int Exist(const CString&) const override { return 0; }
  iterator GetCurrentSet() const override { return 0; }
  void PutCurrentSet(iterator) override {}
  int SetCurrentSet(iterator) override { return 0; }
  int Delete(iterator) override { return 0; }
};

/// Keys of parts: none.
class CQDNullGKeyPool : public DPoolGKey {
 public:
  virtual ~CQDNullGKeyPool() = default;
  iterator GetItrByGeomItr(iterator) const override { return 0; }
};

/// Coordinate systems: none.
class CQDNullCordPool : public NullPool<DPoolCord, tagTCord> {
 public:
  int Exist(const CString&) const override { return 0; }
  int IsDefaultCord(iterator) const override { return 0; }
  int Modify(iterator, const tagTCord&) override { return 0; }
  int Delete(iterator) override { return 0; }
  int UpdateAfterDeletion() override { return 1; }
};

class CQDNullMaterialPool : public NullPool<DPoolMaterial, tagTMaterial> {};

/// What the application knows beyond the pools: nothing.
class CQDNullAppDB : public IAppDB {
 public:
  virtual ~CQDNullAppDB() = default;
  std::vector<Material> ListMaterials() const override { return {}; }
  std::vector<iterator> GetPartsOfMaterial(iterator) const override { return {}; }
  int IsFlexibleBody(iterator) const override { return 0; }
  int SetBodyType(const std::vector<iterator>&, int) override { return 0; }
  int GetProperty(iterator, Property&) const override { return 0; }
  int GetMassCentre(iterator, MassCentre&, const ProgressCall&) const override { return 0; }
};

/// A database of the pools that a host has; of the others there is nothing in it. No transaction can begin.
class CQDNullDBSession : public CQDDBSession {
 public:
  virtual ~CQDNullDBSession() = default;
  DPoolGeom& GetGeomPool() override { return m_geom; }
  DPoolMset& GetMsetPool() override { return m_mset; }
  DPoolMGInfo& GetMGInfoPool() override { return m_mgInfo; }
  DPoolGset& GetGsetPool() override { return m_gset; }
  DPoolMaterial& GetMaterialPool() override { return m_material; }
  DPoolCord& GetCordPool() override { return m_cord; }
  DPoolGKey& GetGKeyPool() override { return m_gKey; }
  IAppDB& GetAppDB() override { return m_appDB; }
  /// The pool that has a record of this iterator.
  std::uint16_t GetDataType(iterator itr) const override {
    auto& self = const_cast<CQDNullDBSession&>(*this);  // the pools are asked only
    if (self.GetGeomPool().GetAtNU(itr) != nullptr) return kDataGeom;
    if (self.GetMsetPool().GetAtNU(itr) != nullptr) return kDataMset;
    if (self.GetGsetPool().GetAtNU(itr) != nullptr) return kDataGset;
    if (self.GetCordPool().GetAtNU(itr) != nullptr) return kDataCord;
    return self.GetMaterialPool().GetAtNU(itr) != nullptr ? kDataMaterial : 0;
  }
  /// The number in that record.
  std::int32_t GetRecordID(iterator itr) const override {
    auto& self = const_cast<CQDNullDBSession&>(*this);  // likewise
    if (const auto* geom = self.GetGeomPool().GetAtNU(itr)) return geom->id;
    if (const auto* mset = self.GetMsetPool().GetAtNU(itr)) return mset->id;
    if (const auto* gset = self.GetGsetPool().GetAtNU(itr)) return gset->id;
    if (const auto* cord = self.GetCordPool().GetAtNU(itr)) return cord->id;
    const auto* material = self.GetMaterialPool().GetAtNU(itr);
    return material != nullptr ? material->id : 0;
  }
  int BeginTransaction(const CString&) override { return 0; }
  int CommitTransaction(int) override { return 0; }
  void RollbackTransaction() override {}

 private:
  CQDNullGeomPool m_geom;
  CQDNullMsetPool m_mset;
  CQDNullMGInfoPool m_mgInfo;
  CQDNullGsetPool m_gset;
  CQDNullMaterialPool m_material;
  CQDNullCordPool m_cord;
  CQDNullGKeyPool m_gKey;
  CQDNullAppDB m_appDB;
};

}  // namespace qd
