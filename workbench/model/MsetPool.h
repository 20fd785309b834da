#pragma once

#include <set>
#include <unordered_map>
#include <utility>

#include "host/CQDColorGenerator.h"
#include "workbench/model/Pools.h"

namespace qd::workbench {

/// Mesh sets, with indexes by key, name, parent and meshed part. Parents always stand and never form a circle.
class MsetPool final : public Pool<tagTMset, DPoolMset> {
  using Pool::Change;  // Modify looks for circles first

 public:
  MsetPool(std::uint16_t type, IJournalKeeper& keeper, SettingsPool& settings)
      : Pool(type, keeper), m_settings(settings) {}

  void GetItrListByParentMsetK(std::uint32_t key, TArray<iterator>& itrs) const override;
  iterator GetItrByKey(std::uint32_t key) const override;
  iterator GetItrByGeomItr(iterator geom) const override;
  iterator GetItr(const CString& name) const override;
  int Exist(const CString& name) const override { return GetItr(name) != 0 ? 1 : 0; }
  CString GetNewCopyName(const CString& text) const override;
  COLORREF GetNewColor() override { return m_colours.GetNextColor(); }
  std::uint32_t GetNewKey() const override;
  iterator GetDefaultMset() const override;
  /// A record without key gets one; a key that is taken, or a parent that does not stand, is refused.
  iterator Add(tagTMset record);
  iterator AddMset(const tagTMset& record) override { return Add(record); }
  int Modify(iterator itr, const tagTMset& record) override;
  int Merge(iterator target, const TArray<iterator>& itrs) override;
  /// Sets nested in deleted ones move to the nearest set above that stays; what is known of the generation of a
  /// deleted set goes with the last one that it is known of.
  int TR_Del(const std::vector<iterator>& itrs) override;
  int TR_Del_All() override;
  int TR_Del_EmptyMset() override;
  /// The default set, made inside the open transaction when there is none. 0 on failure.
  iterator NeedDefaultMset();

 private:
  void OnEnter(iterator itr, const tagTMset& record) override;
  void OnLeave(iterator itr, const tagTMset& record) override;
  bool MayStandBelow(std::uint32_t key, std::uint32_t parent) const;
  int Delete(const std::set<iterator>& gone) { return Pool::TR_Del({gone.begin(), gone.end()}); }

  SettingsPool& m_settings;
  std::set<std::pair<iterator, iterator>> m_msetsOfGeoms;  // parts that are meshed, and their mesh sets
  FlatMap m_msetOfKey;
  std::set<std::pair<CString, iterator>> m_names;
  std::unordered_map<std::uint32_t, std::set<iterator>> m_children;  // by key of the parent
  std::uint32_t m_lastKey = 0;
  CQDColorGenerator m_colours;
};

}  // namespace qd::workbench
