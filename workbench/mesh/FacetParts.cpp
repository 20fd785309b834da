#include "workbench/mesh/FacetParts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <unordered_map>
#include <utility>

namespace qd::workbench {

FacetParts::FacetParts(const PartFacets& facets) {
  FindFaces(facets);
  FindEdges(facets);
  FindCorners(facets);
}

void FacetParts::FindFaces(const PartFacets& facets) {
  std::vector<std::uint32_t> above(facets.points.size() / 3);
  std::iota(above.begin(), above.end(), 0U);
  const auto top = [&above](std::uint32_t point) {
    while (above[point] != point) point = above[point] = above[above[point]];
    return point;
  };
  for (std::size_t i = 0; i + 2 < facets.triangles.size(); i += 3) {
    const std::uint32_t first = top(facets.triangles[i]);
    above[top(facets.triangles[i + 1])] = first;
    above[top(facets.triangles[i + 2])] = first;
  }
  const std::size_t count = facets.triangles.size() / 3;
  std::vector<std::uint32_t> numbers(above.size(), 0);
  std::vector<std::size_t> sizes;
  m_faceOf.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    std::uint32_t& number = numbers[top(facets.triangles[i * 3])];
    if (number == 0) {
      sizes.push_back(0);
      number = static_cast<std::uint32_t>(sizes.size());
    }
    ++sizes[number - 1];
    m_faceOf[i] = number;
  }
  m_faceStarts.resize(sizes.size() + 1);
  std::partial_sum(sizes.begin(), sizes.end(), m_faceStarts.begin() + 1);
  std::vector<std::size_t> next(m_faceStarts.begin(), m_faceStarts.end());
  m_triangles.resize(count);
  for (std::size_t i = 0; i < count; ++i) m_triangles[next[m_faceOf[i] - 1]++] = static_cast<std::uint32_t>(i);
}

void FacetParts::FindEdges(const PartFacets& facets) {
  std::size_t at = 0;
  for (const std::uint32_t size : facets.lineSizes) {
    for (std::uint32_t i = 1; i < size; ++i) {
      m_segments.insert(m_segments.end(), {facets.lines[at + i - 1], facets.lines[at + i]});
      m_edgeOf.push_back(static_cast<std::uint32_t>(m_edgeStarts.size()));
    }
    m_edgeStarts.push_back(m_segments.size());
    at += size;
  }
}

/// Edges that meet have ends of their own, which are the same but for rounding.
void FacetParts::FindCorners(const PartFacets& facets) {
  // Of the extent; and of the largest coordinate, by which what is far away is rounded.
  constexpr double kSame = 1e-6;
  constexpr double kRounded = 2.4e-7;
  std::vector<std::uint32_t> ends;
  std::size_t first = 0;
  for (const std::uint32_t count : facets.lineSizes) {
    if (count != 0) ends.insert(ends.end(), {facets.lines[first], facets.lines[first + count - 1]});
    first += count;
  }
  if (facets.lines.empty() && facets.triangles.empty()) {
    ends.resize(facets.points.size() / 3);
    std::iota(ends.begin(), ends.end(), 0U);
  }
  double farthest = 0;
  std::array<double, 3> least{}, greatest{};
  for (std::size_t i = 0; i < facets.points.size(); ++i) {
    const double place = facets.points[i];
    farthest = std::max(farthest, std::abs(place));
    least[i % 3] = i < 3 ? place : std::min(least[i % 3], place);
    greatest[i % 3] = i < 3 ? place : std::max(greatest[i % 3], place);
  }
  double extent = 0;
  for (std::size_t axis = 0; axis < 3; ++axis) extent = std::max(extent, greatest[axis] - least[axis]);
  const double reach = std::max({extent * kSame, farthest * kRounded, double{std::numeric_limits<float>::min()}});
  // By cubes that are larger than what counts as the same, so that no more than eight have to be looked into.
  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> cubes;
  const auto cube = [reach](const std::array<double, 3>& place) {
    std::uint64_t key = 0;
    for (const double one : place) {
      key = key * 0x9E3779B97F4A7C15U + static_cast<std::uint64_t>(std::llround(one / (reach * 4)));
    }
    return key;
  };
  const auto placeOf = [&facets](std::uint32_t point) {
    const float* at = &facets.points[std::size_t{point} * 3];
    return std::array<double, 3>{at[0], at[1], at[2]};
  };
  const auto isKnown = [&](const std::array<double, 3>& place) {
    for (unsigned side = 0; side < 8; ++side) {
      std::array<double, 3> aside = place;
      for (std::size_t axis = 0; axis < 3; ++axis) aside[axis] += (side >> axis & 1U) != 0 ? reach : -reach;
      const auto known = cubes.find(cube(aside));
      if (known == cubes.end()) continue;
      for (const std::uint32_t other : known->second) {
        const std::array<double, 3> at = placeOf(other);
        const auto apart = [&](std::size_t axis) { return std::abs(at[axis] - place[axis]); };
        if (apart(0) <= reach && apart(1) <= reach && apart(2) <= reach) return true;
      }
    }
    return false;
  };
  for (const std::uint32_t end : ends) {
    const std::array<double, 3> place = placeOf(end);
    if (isKnown(place)) continue;
    cubes[cube(place)].push_back(end);
    m_corners.push_back(end);
  }
}

std::vector<std::uint32_t> FacetParts::OutlineOf(const PartFacets& facets, std::uint64_t face) const {
  std::vector<std::pair<std::uint32_t, std::uint32_t>> sides;
  for (const std::uint32_t triangle : TrianglesOf(face)) {
    for (std::size_t c = 0; c < 3; ++c) {
      const std::uint32_t a = facets.triangles[std::size_t{triangle} * 3 + c];
      const std::uint32_t b = facets.triangles[std::size_t{triangle} * 3 + (c + 1) % 3];
      sides.emplace_back(std::min(a, b), std::max(a, b));
    }
  }
  std::sort(sides.begin(), sides.end());
  std::vector<std::uint32_t> outline;
  for (std::size_t i = 0; i < sides.size();) {
    std::size_t end = i + 1;
    while (end < sides.size() && sides[end] == sides[i]) ++end;
    if (end == i + 1) outline.insert(outline.end(), {sides[i].first, sides[i].second});
    i = end;
  }
  return outline;
}

}  // namespace qd::workbench
