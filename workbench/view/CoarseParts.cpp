#include "workbench/view/CoarseParts.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace qd::workbench {

namespace {

int SizeOf(const Bounds& bounds) {
  return std::ilogb(std::max({bounds[1] - bounds[0], bounds[3] - bounds[2], bounds[5] - bounds[4]}));
}

/// Brings neighbours far from each other.
std::uint64_t Scattered(std::uint64_t number) {
  constexpr std::uint64_t kMix = 0x9E3779B97F4A7C15U;
  return number * kMix;
}

/// Puts together a shape from some points of another one.
class Thin {
 public:
  explicit Thin(const PartFacets& from) : m_from(from), m_numbers(from.points.size() / 3, kNone) {}

  std::uint32_t Take(std::uint32_t number) {
    std::uint32_t& known = m_numbers[number];
    if (known != kNone) return known;
    const std::size_t at = std::size_t{number} * 3;
    const auto copy = [at](const std::vector<float>& from, std::vector<float>& to) {
      for (std::size_t i = at; i < at + 3 && i < from.size(); ++i) to.push_back(from[i]);
    };
    copy(m_from.points, shape->facets.points);
    copy(m_from.normals, shape->facets.normals);
    return known = static_cast<std::uint32_t>(shape->facets.points.size() / 3 - 1);
  }

  std::shared_ptr<PartShape> shape = std::make_shared<PartShape>();

 private:
  static constexpr std::uint32_t kNone = 0xFFFFFFFFU;
  const PartFacets& m_from;
  std::vector<std::uint32_t> m_numbers;  // in the new shape
};

/// A shape with every n-th triangle and piece of a line only, or of points alone with every n-th of them.
std::shared_ptr<const PartShape> Thinned(const PartFacets& facets, std::size_t every) {
  Thin thin(facets);
  PartFacets& few = thin.shape->facets;
  for (std::size_t i = 0; i + 2 < facets.triangles.size(); i += 3 * every) {
    for (std::size_t corner = 0; corner < 3; ++corner) {
      few.triangles.push_back(thin.Take(facets.triangles[i + corner]));
    }
  }
  std::size_t at = 0;
  std::size_t piece = 0;
  for (const std::uint32_t size : facets.lineSizes) {
    for (std::uint32_t i = 1; i < size; ++i) {
      if (piece++ % every != 0) continue;
      few.lineSizes.push_back(2);
      few.lines.push_back(thin.Take(facets.lines[at + i - 1]));
      few.lines.push_back(thin.Take(facets.lines[at + i]));
    }
    at += size;
  }
  const bool spots = facets.triangles.empty() && facets.lines.empty();
  for (std::size_t i = 0; spots && i < facets.points.size() / 3; i += every) {
    thin.Take(static_cast<std::uint32_t>(i));
  }
  return thin.shape;
}

}  // namespace

std::size_t CoarseParts::CostOf(const PartFacets& facets, const PartLook& look) {
  constexpr std::size_t kBox = 12;
  if (look.box) return kBox;
  if (look.opacity == 0) return 0;
  if (look.faces && !facets.triangles.empty()) return facets.triangles.size() / 3;
  if (!look.edges) return 0;
  const bool spots = facets.triangles.empty() && facets.lines.empty();
  return spots ? facets.points.size() / 3 : facets.lines.size();
}

void CoarseParts::Sort(std::vector<const PartDrawing*>& parts) {
  struct Candidate {
    int size;  // of its bounds, as a power of two
    std::uint64_t order;
    const PartDrawing* part;
    bool operator<(const Candidate& other) const {
      return size != other.size ? size > other.size : order < other.order;
    }
  };
  std::vector<Candidate> candidates;
  candidates.reserve(parts.size());
  for (const PartDrawing* part : parts) {
    if (!IsNowhere(part->bounds)) candidates.push_back({SizeOf(part->bounds), Scattered(part->itr), part});
  }
  std::sort(candidates.begin(), candidates.end());
  parts.clear();
  for (const Candidate& candidate : candidates) parts.push_back(candidate.part);
}

std::shared_ptr<const PartShape> CoarseParts::ShapeOf(const PartDrawing& part, std::size_t every) {
  if (every <= 1) return part.shape;
  Known& known = m_known[part.itr];
  if (known.of != part.shape || known.every != every) {
    known = {part.shape, every, Thinned(part.shape->facets, every)};
  }
  return known.thin;
}

std::size_t CoarseParts::Show(std::vector<const PartDrawing*> parts, std::size_t triangles,
                              const std::function<bool(const Bounds&)>& comesFirst) {
  if (comesFirst) {
    std::stable_partition(parts.begin(), parts.end(),
                          [&](const PartDrawing* part) { return comesFirst(part->bounds); });
  }
  Hide();
  m_batch = std::make_unique<PartBatch>(m_renderer, m_cuts);
  const std::size_t most = triangles / 4 + 1;  // of one part alone
  std::size_t left = triangles;
  for (const PartDrawing* whole : parts) {
    if (left == 0) break;
    const std::size_t cost = CostOf(whole->shape->facets, whole->look);
    if (cost == 0) continue;
    // In few steps, so that what was made for one frame mostly serves the next one too.
    const auto shape = ShapeOf(*whole, whole->look.box ? 1 : std::bit_ceil(cost / most + 1));
    PartDrawing& part = *m_parts.emplace_back(std::make_unique<PartDrawing>(whole->itr, shape));
    m_batch->Add(part);
    PartLook look = whole->look;
    look.edges = look.edges && (!look.faces || shape->facets.triangles.empty());
    m_batch->SetLook(part, look);
    left -= std::min(left, CostOf(shape->facets, look));
  }
  m_batch->Refresh();
  return triangles - left;
}

void CoarseParts::Hide() {
  m_batch.reset();
  m_parts.clear();
}

}  // namespace qd::workbench
