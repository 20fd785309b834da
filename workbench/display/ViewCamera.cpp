#include "workbench/display/ViewCamera.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qd::workbench {

namespace {

const double kSlope = std::tan(ViewCamera::kAngle / 360 * std::numbers::pi);  // of the edge's line of sight
// Beyond these, what is drawn with short numbers falls apart.
constexpr double kLeastDistance = 1e-12;
constexpr double kGreatestDistance = 1e15;

Vector3 Unit(const Vector3& a) {
  return a * (1 / Length(a));
}

}  // namespace

Vector3 Cross(const Vector3& a, const Vector3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Length(const Vector3& a) {
  return std::sqrt(Dot(a, a));
}

void ViewBox::Add(const Vector3& point) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    least[axis] = std::min(least[axis], point[axis]);
    greatest[axis] = std::max(greatest[axis], point[axis]);
  }
}

void ViewBox::Add(const ViewBox& box) {
  Add(box.least);
  Add(box.greatest);
}

double ViewCamera::HalfHeight(double depth) const {
  return kSlope * (m_parallel ? m_distance : depth);
}

Vector3 ViewCamera::PointAt(double x, double y, double depth) const {
  const double half = HalfHeight(depth);
  return Eye() + m_ahead * depth + Right() * (x * half) + m_up * (y * half);
}

bool ViewCamera::LooksAs(const ViewCamera& other) const {
  constexpr double kRounded = 1e-9;
  const double size = std::max(m_distance, Length(m_focus)) * kRounded;
  return m_parallel == other.m_parallel && Length(Eye() - other.Eye()) < size &&
         Length(m_ahead - other.m_ahead) < kRounded && Length(m_up - other.m_up) < kRounded &&
         (!m_parallel || std::abs(m_distance - other.m_distance) < m_distance * kRounded);
}

// ---- looking from somewhere -----------------------------------------------------------------------------

void ViewCamera::LookFrom(StandardView view) {
  switch (view) {
    case StandardView::Front:
      return LookAlong({0, 1, 0}, {0, 0, 1});
    case StandardView::Back:
      return LookAlong({0, -1, 0}, {0, 0, 1});
    case StandardView::Left:
      return LookAlong({1, 0, 0}, {0, 0, 1});
    case StandardView::Right:
      return LookAlong({-1, 0, 0}, {0, 0, 1});
    case StandardView::Top:
      return LookAlong({0, 0, -1}, {0, 1, 0});
    case StandardView::Bottom:
      return LookAlong({0, 0, 1}, {0, -1, 0});
    case StandardView::Isometric:
      return LookAlong({-1, 1, -1}, {0, 0, 1});
  }
}

bool ViewCamera::Place(const Vector3& focus, const Vector3& ahead, const Vector3& up, double distance) {
  constexpr double kRounded = 1e-6;
  const bool isSquare = std::abs(Length(ahead) - 1) < kRounded && std::abs(Length(up) - 1) < kRounded &&
                        std::abs(Dot(ahead, up)) < kRounded;
  const bool isNear =
      Length(focus) <= kGreatestDistance && distance >= kLeastDistance && distance <= kGreatestDistance;
  if (!isSquare || !isNear) return false;
  m_focus = focus;
  m_distance = distance;
  LookAlong(ahead, up);
  return true;
}

void ViewCamera::LookAlong(const Vector3& ahead, const Vector3& up) {
  m_ahead = Unit(ahead);
  m_up = Unit(up - m_ahead * Dot(up, m_ahead));
}

void ViewCamera::Fit(const ViewBox& box, double aspect) {
  constexpr double kMargin = 1.08;
  const Vector3 middle = (box.least + box.greatest) * 0.5;
  const Vector3 half = (box.greatest - box.least) * 0.5;
  const Vector3 right = Right();
  double distance = 0;
  for (unsigned corner = 0; corner < 8; ++corner) {
    const Vector3 at{(corner & 1U) != 0 ? half[0] : -half[0], (corner & 2U) != 0 ? half[1] : -half[1],
                     (corner & 4U) != 0 ? half[2] : -half[2]};
    const double aside = std::max(std::abs(Dot(at, right)) / aspect, std::abs(Dot(at, m_up)));
    // In perspective a corner that is nearer looks larger.
    distance = std::max(distance, kMargin * aside / kSlope - (m_parallel ? 0 : Dot(at, m_ahead)));
  }
  m_focus = middle;
  if (distance > kLeastDistance) m_distance = std::min(distance, kGreatestDistance);
}

// ---- moving ---------------------------------------------------------------------------------------------

void ViewCamera::TurnAbout(const Vector3& pivot, const Vector3& axis, double angle) {
  const double cosine = std::cos(angle);
  const double sine = std::sin(angle);
  const auto turned = [&](const Vector3& a) {
    return a * cosine + Cross(axis, a) * sine + axis * (Dot(axis, a) * (1 - cosine));
  };
  m_focus = pivot + turned(m_focus - pivot);
  LookAlong(turned(m_ahead), turned(m_up));
}

void ViewCamera::Turn(const Vector3& pivot, double right, double up) {
  // In one, so that the way back undoes it.
  const double angle = std::hypot(right, up);
  if (angle > 0) TurnAbout(pivot, Right() * (up / angle) - m_up * (right / angle), angle);
}

void ViewCamera::Roll(double angle) {
  TurnAbout(m_focus, m_ahead, angle);
}

void ViewCamera::Pan(double right, double up, double depth) {
  const double half = HalfHeight(depth);
  m_focus = m_focus - Right() * (right * half) - m_up * (up * half);
}

void ViewCamera::FocusAt(double depth) {
  if (depth <= kLeastDistance || depth > kGreatestDistance) return;
  m_focus = Eye() + m_ahead * depth;
  if (!m_parallel) m_distance = depth;
}

void ViewCamera::Zoom(double factor, double x, double y) {
  const double distance = std::clamp(m_distance / factor, kLeastDistance, kGreatestDistance);
  const double moved = (m_distance - distance) * kSlope;
  m_focus = m_focus + Right() * (x * moved) + m_up * (y * moved);
  m_distance = distance;
}

void ViewCamera::ZoomTo(double x, double y, double halfWidth, double halfHeight, double aspect) {
  const double half = std::max(halfWidth / aspect, halfHeight);
  if (half <= 0) return;
  m_focus = PointAt(x, y, m_distance);
  Zoom(1 / half);
}

}  // namespace qd::workbench
