#pragma once

#include <array>
#include <functional>
#include <map>
#include <string>
#include <unordered_map>

#include "workbench/mesh/DeckRecord.h"
#include "workbench/model/Pool.h"

namespace qd::workbench {

/// Geometry parts, with an index by geometry set and kind of topology.
class GeomPool final : public Pool<tagTGeom, DPoolGeom> {
 public:
  using Pool::Pool;
  /// A part has the number of its record in the CAD session and the view.
  iterator Add(tagTGeom record) {
    record.cadItem = NextNumber();
    return Pool::Add(std::move(record));
  }
  int Private_Modify(iterator itr, const tagTGeom& record, int, int) override { return Change(itr, record); }
  int Private_ApplyGset(const std::vector<iterator>& itrs, iterator gset) override;
  void GetHCADItemArray(const std::vector<iterator>& itrs, std::vector<int>& cadItems) const override;
  int IsSolid(iterator itr) const override;
  void GetTypeExist(iterator gset, int (&exists)[5]) const override;
  void GetItrGsetTypeList(iterator gset, int kind, std::vector<iterator>& itrs) const override;
  /// All parts of a set.
  std::vector<iterator> PartsOf(iterator gset) const;

 private:
  /// Parts that are or were in a set: put in order, and cleared of those that left, only when they are asked for.
  struct Members {
    std::vector<iterator> itrs;
    std::size_t count = 0;
    bool tidy = true;
  };
  void OnEnter(iterator itr, const tagTGeom& record) override;
  void OnLeave(iterator itr, const tagTGeom& record) override;
  const Members* Find(iterator gset, int kind) const;

  mutable std::unordered_map<iterator, std::array<Members, 5>> m_sets;
};

/// Number of the pool of settings; no type of the host's.
inline constexpr std::uint16_t kDataSettings = 200;

/// What a document remembers beside its model.
struct tagTSettings : tagTRecord {
  iterator currentGset = 0;
  iterator defaultMset = 0;
};

/// Decks that were imported, in their order. They stay when their mesh goes; the user removes them.
class DeckPool final : public Pool<tagTDeck, DPool<tagTDeck>> {
 public:
  using Pool::Pool;
};

/// One record of settings, made with the first write.
class SettingsPool final : public Pool<tagTSettings, DPool<tagTSettings>> {
 public:
  using Pool::Pool;
  /// The settings, or the ones that a new document has.
  tagTSettings Current() const;
  /// Inside the open transaction.
  int Store(const tagTSettings& settings);
  /// At once and as no act.
  void Put(const tagTSettings& settings);
};

/// Geometry sets. Every part belongs to one, so the last set is not deleted; parts of a deleted set go to another.
class GsetPool final : public Pool<tagTGset, DPoolGset> {
 public:
  GsetPool(std::uint16_t type, IJournalKeeper& keeper, SettingsPool& settings)
      : Pool(type, keeper), m_settings(settings) {}
  CString GetNewCopyName(const CString& text) const override;
  int Exist(const CString& name) const override { return m_names.contains(name) ? 1 : 0; }
  /// The current set, or the oldest one where none was chosen.
  iterator GetCurrentSet() const override;
  void PutCurrentSet(iterator itr) override;
  int SetCurrentSet(iterator itr) override;
  int Delete(iterator itr) override { return TR_Del({itr}); }
  int TR_Del(const std::vector<iterator>& itrs) override;
  /// The set that takes the parts of sets that go: the current one, or the oldest, of those that stay. 0 for none.
  iterator HeirOf(const std::function<bool(iterator)>& goes) const;

 private:
  void OnEnter(iterator, const tagTGset& record) override { ++m_names[record.name]; }
  void OnLeave(iterator itr, const tagTGset& record) override;

  SettingsPool& m_settings;
  std::map<CString, int> m_names;
};

class MaterialPool final : public Pool<tagTMaterial, DPoolMaterial> {
 public:
  using Pool::Pool;
};

class PropertyPool final : public Pool<tagTProperty, DPool<tagTProperty>> {
 public:
  using Pool::Pool;
};

/// How meshes were generated; a record's key is its running number.
class MGInfoPool final : public Pool<tagMGInfo, RecordPool<tagMGInfo, DPoolMGInfo>> {
 public:
  using Pool::Pool;
  iterator GetItrByKey(std::uint32_t key) const override;
  int GetAt(iterator itr, tagMGInfo& record) const override;
  int Delete(iterator itr) override { return Pool::TR_Del({itr}); }
  static std::uint32_t KeyOf(iterator itr) { return static_cast<std::uint32_t>(itr); }
};

/// Every part has a key with the same running number.
class GKeyPool final : public DPoolGKey {
 public:
  iterator GetItrByGeomItr(iterator geom) const override {
    return TypeOf(geom) == kDataGeom ? Number(geom) | static_cast<iterator>(kDataGKey) << kTypeShift : 0;
  }
  static iterator GeomOfKey(iterator key) { return Number(key) | static_cast<iterator>(kDataGeom) << kTypeShift; }

 private:
  static iterator Number(iterator itr) { return itr & ((1ULL << kTypeShift) - 1); }
};

}  // namespace qd::workbench
