#pragma once

#include <array>
#include <cmath>
#include <memory>
#include <string>

#include "workbench/model/Database.h"

namespace qd::test {

/// A small block, as an import brings it: points of their own for each face and each edge,
/// and an exchange form of some thousand bytes.
inline std::shared_ptr<const PartShape> SmallBlock(float x, float y, float z) {
  auto shape = std::make_shared<PartShape>();
  PartFacets& facets = shape->facets;
  const auto corner = [&](int number, float out[3]) {
    out[0] = x + ((number & 1) != 0 ? 0.7F : 0.0F);
    out[1] = y + ((number & 2) != 0 ? 0.7F : 0.0F);
    out[2] = z + ((number & 4) != 0 ? 0.7F : 0.0F);
  };
  const auto point = [&](int number, int axis, float normal) {
    float at[3];
    corner(number, at);
    for (int i = 0; i < 3; ++i) {
      facets.points.push_back(at[i]);
      facets.normals.push_back(i == axis ? normal : 0.0F);
    }
    return static_cast<std::uint32_t>(facets.points.size() / 3 - 1);
  };
  const auto sides = [](int axis) { return std::array{1 << axis, 1 << (axis + 1) % 3, 1 << (axis + 2) % 3}; };
  for (int axis = 0; axis < 3; ++axis) {
    const auto [a, b, c] = sides(axis);
    for (const int side : {0, a}) {
      const float normal = side != 0 ? 1.0F : -1.0F;
      const std::uint32_t first = point(side, axis, normal);
      point(side | b, axis, normal);
      point(side | b | c, axis, normal);
      point(side | c, axis, normal);
      facets.triangles.insert(facets.triangles.end(), {first, first + 1, first + 2, first, first + 2, first + 3});
    }
  }
  for (int axis = 0; axis < 3; ++axis) {
    const auto [a, b, c] = sides(axis);
    for (const int start : {0, b, c, b | c}) {
      facets.lineSizes.push_back(2);
      facets.lines.push_back(point(start, axis, 0));
      facets.lines.push_back(point(start | a, axis, 0));
    }
  }
  constexpr std::size_t kForm = 3'000;
  shape->brep = "block at " + std::to_string(x) + " " + std::to_string(y) + " " + std::to_string(z);
  shape->brep.resize(kForm, ' ');
  shape->volume = 0.343;
  shape->area = 2.94;
  shape->length = 8.4;
  return shape;
}

/// Adds blocks in a cube of rows, as one act.
inline void AddBlocks(workbench::Database& data, int count) {
  const int side = static_cast<int>(std::ceil(std::cbrt(count)));
  data.BeginTransaction(L"blocks");
  tagTGset set;
  set.name = L"Blocks";
  const iterator gset = data.GetGsetPool().Add(set);
  for (int i = 0; i < count; ++i) {
    tagTGeom part;
    part.name = L"Block " + std::to_wstring(i);
    part.gset = gset;
    part.cadItem = data.GetGeomPool().NextNumber();
    part.colour = Rgb(static_cast<unsigned>(40 + i % 3 * 20), 160, static_cast<unsigned>(60 + i % 5 * 10));
    part.shape = SmallBlock(static_cast<float>(i % side), static_cast<float>(i / side % side),
                            static_cast<float>(i / side / side));
    data.GetGeomPool().Add(std::move(part));
  }
  data.CommitTransaction(1);
}

}  // namespace qd::test
