#include "workbench/view/PickTrees.h"

#include <QCoreApplication>
#include <QThreadPool>
#include <utility>

namespace qd::workbench {

namespace {

constexpr std::size_t kSmall = 2'000;  // triangles, lines or points, which are looked at one by one in no time

/// Of things with some corners each.
PickTree TreeOf(const std::vector<float>& points, const std::vector<std::uint32_t>& numbers, std::size_t corners) {
  return {numbers.size() / corners, [&](std::size_t i) {
            Bounds box = NoBounds();
            for (std::size_t c = 0; c < corners; ++c)
              Widen(box, &points[std::size_t{numbers[i * corners + c]} * 3]);
            return box;
          }};
}

PickTree TreeOfSpots(const std::vector<float>& points) {
  return {points.size() / 3, [&](std::size_t i) {
            Bounds box = NoBounds();
            Widen(box, &points[i * 3]);
            return box;
          }};
}

}  // namespace

std::shared_ptr<const PickIndex> PickTrees::Of(const std::shared_ptr<const PartShape>& shape) {
  const PartFacets& facets = shape->facets;
  if (facets.triangles.size() / 3 + facets.lines.size() < kSmall) return nullptr;
  return Find(shape, [shape] {
    const PartFacets& of = shape->facets;
    std::vector<std::uint32_t> segments;
    std::size_t at = 0;
    for (const std::uint32_t size : of.lineSizes) {
      for (std::uint32_t i = 1; i < size; ++i)
        segments.insert(segments.end(), {of.lines[at + i - 1], of.lines[at + i]});
      at += size;
    }
    PickIndex index;
    index.pieces.push_back({TreeOf(of.points, of.triangles, 3), TreeOf(of.points, segments, 2), {}});
    return index;
  });
}

std::shared_ptr<const PickIndex> PickTrees::Of(const std::shared_ptr<const MeshSkin>& skin) {
  if (skin->TriangleCount() + skin->LineCount() < kSmall) return nullptr;
  return Find(skin, [skin] {
    PickIndex index;
    for (const MeshSkin::Piece& piece : skin->pieces) {
      index.pieces.push_back({TreeOf(piece.points, piece.triangles, 3), TreeOf(piece.points, piece.lines, 2),
                              TreeOfSpots(piece.points)});
    }
    return index;
  });
}

std::shared_ptr<const PickIndex> PickTrees::Find(const std::shared_ptr<const void>& of,
                                                 std::function<PickIndex()> make) {
  const auto known = m_entries.find(of.get());
  if (known != m_entries.end() && known->second.of.lock() == of) return known->second.index;
  if (m_entries.size() >= m_sweepAt) {
    std::erase_if(m_entries, [](const auto& entry) { return entry.second.of.expired(); });
    constexpr std::size_t kFewest = 64;
    m_sweepAt = std::max(kFewest, m_entries.size() * 2);
  }
  m_entries[of.get()] = {of, nullptr};
  ++m_building;
  QThreadPool::globalInstance()->start([this, of, make = std::move(make), stop = m_stop] {
    if (*stop) return;
    auto index = std::make_shared<const PickIndex>(make());
    // This lives on the other thread, and only there it may be looked at.
    QMetaObject::invokeMethod(qApp, [this, of, index, stop] {
      if (*stop) return;
      --m_building;
      const auto entry = m_entries.find(of.get());
      if (entry != m_entries.end() && entry->second.of.lock() == of) entry->second.index = index;
    });
  });
  return nullptr;
}

}  // namespace qd::workbench
