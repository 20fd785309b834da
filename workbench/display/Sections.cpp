#include "workbench/display/Sections.h"

#include <algorithm>

namespace qd::workbench {

bool Sections::HasAxis(unsigned axis) const {
  return std::any_of(m_planes.begin(), m_planes.end(),
                     [axis](const SectionPlane& plane) { return plane.axis == axis; });
}

void Sections::ToggleAxis(unsigned axis, const Vector3& through) {
  if (HasAxis(axis)) {
    std::erase_if(m_planes, [axis](const SectionPlane& plane) { return plane.axis == axis; });
    return m_notice.Tell(*this);
  }
  SectionPlane plane{through, {}, axis};
  // What stands before the model in the isometric view is cut away.
  plane.normal[axis] = axis == 1 ? -1 : 1;
  Add(plane);
}

void Sections::Add(const SectionPlane& plane) {
  if (m_planes.size() == kMost) return;
  m_planes.push_back(plane);
  m_notice.Tell(*this);
}

void Sections::MoveBy(std::size_t plane, double distance) {
  if (plane >= m_planes.size() || distance == 0) return;
  m_planes[plane].point = m_planes[plane].point + m_planes[plane].normal * distance;
  m_notice.Tell(*this);
}

void Sections::FlipLast() {
  if (m_planes.empty()) return;
  m_planes.back().normal = m_planes.back().normal * -1;
  m_notice.Tell(*this);
}

void Sections::Clear() {
  if (m_planes.empty()) return;
  m_planes.clear();
  m_notice.Tell(*this);
}

}  // namespace qd::workbench
