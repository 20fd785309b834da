#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "workbench/display/Notice.h"
#include "workbench/display/ViewCamera.h"

namespace qd::workbench {

/// A plane that cuts the picture: what lies ahead of its normal is not seen.
struct SectionPlane {
  Vector3 point{};
  Vector3 normal{0, 0, 1};       ///< of length 1
  std::optional<unsigned> axis;  ///< the axis that it was made for, 0 to 2
  bool operator==(const SectionPlane&) const = default;
};

/// The planes that cut a document's picture. Like the camera they are no part of the model and not undone.
class Sections {
 public:
  static constexpr std::size_t kMost = 6;  ///< more do not fit the graphics

  const std::vector<SectionPlane>& Planes() const { return m_planes; }
  bool HasAxis(unsigned axis) const;
  /// Cuts across an axis through a point, or no longer.
  void ToggleAxis(unsigned axis, const Vector3& through);
  /// One more plane; nothing when there are as many as can be.
  void Add(const SectionPlane& plane);
  /// Moves a plane along its normal.
  void MoveBy(std::size_t plane, double distance);
  /// Cuts away the other side of the plane that came last.
  void FlipLast();
  void Clear();

  /// Follows the planes.
  [[nodiscard]] Subscription Subscribe(Notice<Sections>::Call call) { return m_notice.Subscribe(std::move(call)); }

 private:
  std::vector<SectionPlane> m_planes;
  Notice<Sections> m_notice;
};

}  // namespace qd::workbench
