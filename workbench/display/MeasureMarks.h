#pragma once

#include <vector>

#include "workbench/display/Notice.h"
#include "workbench/display/ViewCamera.h"

namespace qd::workbench {

/// A line in the view that shows where something was measured.
struct MeasureMark {
  Vector3 from{};
  Vector3 to{};
  CString text;  ///< written at its middle; empty for none
  bool operator==(const MeasureMark&) const = default;
};

/// What was measured last, for as long as somebody looks at it.
class MeasureMarks final {
 public:
  const std::vector<MeasureMark>& All() const { return m_all; }
  void Set(std::vector<MeasureMark> all) {
    if (all == m_all) return;
    m_all = std::move(all);
    m_notice.Tell(*this);
  }
  [[nodiscard]] Subscription Subscribe(Notice<MeasureMarks>::Call call) {
    return m_notice.Subscribe(std::move(call));
  }

 private:
  std::vector<MeasureMark> m_all;
  Notice<MeasureMarks> m_notice;
};

}  // namespace qd::workbench
