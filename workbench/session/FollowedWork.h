#pragma once

#include <functional>
#include <unordered_set>
#include <vector>

#include "workbench/session/WorkedOn.h"

namespace qd::workbench {

/// What an open dialog works on: kept as the selection, the records and the display change, and told only when it
/// is something else than before. What becomes of a record is looked at for that record alone; only when one comes
/// to a selected set or row without a record, or leaves it, what these hold is gathered anew.
class FollowedWork final {
 public:
  struct What {
    std::uint16_t type = kDataGeom;  ///< or kDataMset
    Reach reach = Reach::Shown;
    std::vector<iterator> given{};  ///< at first, where the dialog was opened for them
    bool follows = true;            ///< what is selected from then on
    bool elseAll = false;           ///< all that can be taken when nothing is selected; none when that is lost
  };

  /// `changed` is called when records, their names or their number may be others than before.
  FollowedWork(WorkDocument& doc, What what, std::function<void()> changed);

  /// Leaves a record out, as the target of what is done; 0 for none.
  void LeaveOut(iterator itr);

  std::size_t Count() const { return m_taken.size(); }
  bool IsAll() const { return m_all; }
  bool Contains(iterator itr) const { return m_taken.contains(itr); }
  /// All of them, in order.
  std::vector<iterator> Records() const { return First(m_taken.size()); }
  /// At most so many of them.
  std::vector<iterator> First(std::size_t most) const;
  /// The first names, as NamesOf.
  CString Names() const;

 private:
  void Gather();
  bool Look(iterator itr);
  /// Whether a part, or the mesh of one, is meant by what is selected.
  bool IsSelected(iterator itr) const;
  /// The record of our type that a change is about, 0 for none.
  iterator Concerned(const tagTRNotify& change) const;
  void FollowRecords(const CQDUpdateRecord& record);
  void FollowDisplay(const DisplayNotice& notice);

  WorkDocument& m_doc;
  What m_what;
  std::function<void()> m_changed;
  bool m_all = false;
  bool m_named = true;  // what is meant are records of the type themselves
  iterator m_leftOut = 0;
  std::vector<iterator> m_meant;  // taken or not, some perhaps gone
  std::unordered_set<iterator> m_isMeant;
  std::unordered_set<iterator> m_selected;  // where what is meant follows from other records
  std::unordered_set<iterator> m_taken;
  Subscription m_onSelection;
  Subscription m_onRecords;
  Subscription m_onDisplay;
};

}  // namespace qd::workbench
