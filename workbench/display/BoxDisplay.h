#pragma once

#include <map>

#include "host/Display.h"
#include "workbench/display/DisplayLog.h"

namespace qd::workbench {

/// The check boxes of rows that stand for nothing that could be shown or hidden itself: of sets, groups and roots
/// of branches. They keep what was written to them last, and are checked until then.
class BoxDisplay final : public CQDRowBoxes {
 public:
  explicit BoxDisplay(DisplayLog& log) : m_log(log) {}

  int GetBox(const RowBox& box) const override;
  void SetBox(const RowBox& box, int state) override;
  /// The states of those that are not checked.
  const std::map<RowBox, int>& States() const { return m_states; }
  void PutStates(const std::map<RowBox, int>& states);

 private:
  DisplayLog& m_log;
  std::map<RowBox, int> m_states;  // of those that are not checked
};

}  // namespace qd::workbench
