#pragma once

#include <map>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

#include "workbench/model/Placement.h"
#include "workbench/model/Pool.h"

namespace qd::workbench {

/// Coordinate systems, with indexes by name and parent. The first one is the global system, on which all others
/// stand in the end; it neither changes nor goes.
class CordPool final : public Pool<tagTCord, DPoolCord> {
  using Pool::Change;  // Modify looks for circles first

 public:
  using Pool::Pool;

  /// Makes the global system, before anything else.
  void MakeDefault();
  iterator GetDefaultCord() const { return ItrOfNumber(1); }
  int IsDefaultCord(iterator itr) const override { return itr == GetDefaultCord() ? 1 : 0; }
  int Exist(const CString& name) const override { return m_names.contains(name) ? 1 : 0; }
  CString GetNewCopyName(const CString& text) const;
  /// 0 for a system without name or place, or with a parent that does not stand. Parent 0 is the global system.
  iterator Add(tagTCord record);
  /// Refuses the same, and a parent that is the system itself or stands on it.
  int Modify(iterator itr, const tagTCord& record) override;
  /// Systems that stood on it stay where they are, on the nearest one below that is left.
  int Delete(iterator itr) override { return TR_Del({itr}); }
  /// Every deletion has done it.
  int UpdateAfterDeletion() override { return 1; }
  int TR_Del(const std::vector<iterator>& itrs) override;

  /// Whether a system is another one, or stands on it, directly or by others.
  bool StandsOn(iterator itr, iterator other) const;
  /// The systems that stand on another one, oldest first.
  std::vector<iterator> ChildrenOf(iterator itr) const;
  /// Where a system stands in the global one.
  Placement GlobalPlacement(iterator itr) const;

 private:
  void OnEnter(iterator itr, const tagTCord& record) override;
  void OnLeave(iterator itr, const tagTCord& record) override;
  bool IsSound(const tagTCord& record) const;

  std::map<CString, int> m_names;
  std::unordered_map<iterator, std::set<iterator>> m_children;
};

}  // namespace qd::workbench
