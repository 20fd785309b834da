#include "workbench/view/PickRay.h"

#include <vtkCamera.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "workbench/display/ViewCamera.h"
#include "workbench/view/PickTree.h"

namespace qd::workbench {

namespace {

using Point = PickRay::Point;

Point At(const float* point) {
  return {point[0], point[1], point[2]};
}

bool IsCutAway(const PickRay& ray, double distance) {
  return std::any_of(ray.cuts.begin(), ray.cuts.end(), [&](const PickRay::Cut& cut) {
    double side = cut[3];
    for (std::size_t axis = 0; axis < 3; ++axis) {
      side += cut[axis] * (ray.origin[axis] + distance * ray.direction[axis]);
    }
    return side < 0;
  });
}

}  // namespace

PickRay RayThrough(vtkRenderer& renderer, QSize view, QPointF at, double reach) {
  const double width = std::max(view.width(), 1);
  const double height = std::max(view.height(), 1);
  vtkNew<vtkMatrix4x4> back;
  back->DeepCopy(renderer.GetActiveCamera()->GetCompositeProjectionTransformMatrix(width / height, -1, 1));
  back->Invert();
  const auto place = [&](double x, double y, double depth) {
    const double image[4] = {2 * x / width - 1, 1 - 2 * y / height, depth, 1};
    double world[4];
    back->MultiplyPoint(image, world);
    return Point{world[0] / world[3], world[1] / world[3], world[2] / world[3]};
  };
  PickRay ray;
  ray.origin = place(at.x(), at.y(), -1);
  const Point end = place(at.x(), at.y(), 1);
  const Point along = end - ray.origin;
  ray.most = Length(along);
  for (std::size_t axis = 0; axis < 3; ++axis) ray.direction[axis] = along[axis] / ray.most;
  ray.reach = Length(place(at.x() + reach, at.y(), -1) - ray.origin);
  ray.spread = (Length(place(at.x() + reach, at.y(), 1) - end) - ray.reach) / ray.most;
  return ray;
}

Bounds NoBounds() {
  constexpr float kFar = std::numeric_limits<float>::max();
  return {kFar, -kFar, kFar, -kFar, kFar, -kFar};
}

bool IsNowhere(const Bounds& bounds) {
  return bounds[0] > bounds[1];
}

void Widen(Bounds& bounds, const float* point) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    bounds[2 * axis] = std::min(bounds[2 * axis], point[axis]);
    bounds[2 * axis + 1] = std::max(bounds[2 * axis + 1], point[axis]);
  }
}

void Widen(Bounds& bounds, const Bounds& other) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    bounds[2 * axis] = std::min(bounds[2 * axis], other[2 * axis]);
    bounds[2 * axis + 1] = std::max(bounds[2 * axis + 1], other[2 * axis + 1]);
  }
}

std::optional<double> DistanceTo(const PickRay& ray, const Bounds& box) {
  // The box grows by what a line at its far end may lie beside the ray.
  const double size = static_cast<double>(box[1]) - box[0] + box[3] - box[2] + box[5] - box[4];
  const Point first{box[0], box[2], box[4]};
  const Point offset = first - ray.origin;
  const double away = std::abs(offset[0]) + std::abs(offset[1]) + std::abs(offset[2]) + size;
  const double margin = ray.reach + ray.spread * away;
  double from = ray.least;
  double to = ray.most;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double low = box[2 * axis] - margin - ray.origin[axis];
    const double high = box[2 * axis + 1] + margin - ray.origin[axis];
    if (ray.direction[axis] == 0) {
      if (low > 0 || high < 0) return std::nullopt;
      continue;
    }
    const double one = low / ray.direction[axis];
    const double other = high / ray.direction[axis];
    from = std::max(from, std::min(one, other));
    to = std::min(to, std::max(one, other));
  }
  return from <= to ? std::optional(from) : std::nullopt;
}

bool NearestHit::Take(double distance) {
  if (!(distance >= m_ray.least && distance < m_distance) || IsCutAway(m_ray, distance)) return false;
  m_distance = distance;
  return true;
}

bool NearestHit::Triangle(const float* points, const std::uint32_t* corners) {
  const Point a = At(points + std::size_t{corners[0]} * 3);
  const Point ab = At(points + std::size_t{corners[1]} * 3) - a;
  const Point ac = At(points + std::size_t{corners[2]} * 3) - a;
  const Point across = Cross(m_ray.direction, ac);
  const double size = Dot(ab, across);
  if (size == 0) return false;  // seen from the edge
  const Point offset = m_ray.origin - a;
  const double u = Dot(offset, across) / size;
  if (!(u >= 0 && u <= 1)) return false;
  const Point along = Cross(offset, ab);
  const double v = Dot(m_ray.direction, along) / size;
  return v >= 0 && u + v <= 1 && Take(Dot(ac, along) / size);
}

std::optional<std::size_t> NearestHit::Triangles(const float* points, const std::vector<std::uint32_t>& corners,
                                                 const PickTree* tree) {
  std::optional<std::size_t> nearest;
  const auto look = [&](std::size_t first) {
    if (Triangle(points, &corners[first])) nearest = first;
  };
  if (tree != nullptr) {
    tree->Along(
        m_ray, [this] { return m_distance; }, [&](std::uint32_t triangle) { look(std::size_t{triangle} * 3); });
  } else {
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3) look(i);
  }
  return nearest;
}

std::optional<Approach> ApproachOf(const PickRay& ray, const float* from, const float* to) {
  const Point a = At(from) - ray.origin;
  const Point b = At(to) - ray.origin;
  const Point ab = b - a;
  // The place on the line that is nearest to the ray: seen along the ray the line is a shorter one.
  const double alongA = Dot(a, ray.direction);
  const double alongLine = Dot(ab, ray.direction);
  const double square = Dot(ab, ab) - alongLine * alongLine;
  const double place = square > 0 ? std::clamp((alongA * alongLine - Dot(a, ab)) / square, 0.0, 1.0) : 0;
  Point at{};
  for (std::size_t axis = 0; axis < 3; ++axis) at[axis] = a[axis] + place * ab[axis];
  const double distance = alongA + place * alongLine;
  if (!(distance >= ray.least && distance < ray.most)) return std::nullopt;
  const double beside = std::sqrt(std::max(0.0, Dot(at, at) - distance * distance));
  const double reach = ray.reach + ray.spread * std::max(distance, 0.0);
  if (!(beside <= reach) || IsCutAway(ray, distance)) return std::nullopt;
  return Approach{distance, reach > 0 ? beside / reach : 0, at + ray.origin};
}

bool NearestHit::Line(const float* from, const float* to) {
  const auto approach = ApproachOf(m_ray, from, to);
  return approach && Take(approach->distance);
}

bool NearestHit::Outline(const Bounds& box) {
  bool taken = false;
  const auto corner = [&box](unsigned number) {
    return std::array<float, 3>{box[number & 1U], box[2 + (number >> 1U & 1U)], box[4 + (number >> 2U & 1U)]};
  };
  for (unsigned number = 0; number < 8; ++number) {
    for (const unsigned axis : {1U, 2U, 4U}) {
      if ((number & axis) == 0) taken = Line(corner(number).data(), corner(number | axis).data()) || taken;
    }
  }
  return taken;
}

}  // namespace qd::workbench
