#pragma once

#include "support/Geometry.h"
#include "workbench/mesh/MeshEdit.h"

namespace qd::test {

/// A model tree with mesh sets.
class MeshTest : public ModelTest {
 public:
  using ModelTest::Command;
  using ModelTest::Drag;
  using ModelTest::m_toolkit;
  using ModelTest::Node;
  using ModelTest::Select;

 protected:
  MeshTest() {
    Open();
    Heard();
  }
  ~MeshTest() override { SetProductVariant(ProductVariant::Standard); }

  /// A mesh of `count` triangles in a strip, with numbers from a thousand times `from` on.
  static workbench::MeshPtr Strip(int count, int from) {
    auto mesh = std::make_shared<MeshData>();
    const auto base = static_cast<std::uint64_t>(from) * 1000;
    MeshData::Block block;
    block.elementType = 2;
    block.nodesPerElement = 3;
    for (int i = 0; i < count + 2; ++i) {
      mesh->nodeIds.push_back(base + i + 1);
      mesh->coordinates.insert(mesh->coordinates.end(), {i / 2 * 1.0, i % 2 * 1.0, 0.0});
    }
    for (int i = 0; i < count; ++i) {
      block.elementIds.push_back(base + i + 1);
      for (int corner = 0; corner < 3; ++corner) block.nodeIds.push_back(base + i + corner + 1);
    }
    mesh->blocks.push_back(block);
    return mesh;
  }
  /// Adds a set with a few elements below another one and of a part, 0 for none.
  iterator AddMset(const CString& name, iterator parent = 0, int elements = 2, iterator part = 0) {
    iterator set = 0;
    Act([&] { set = PutMset(name, parent, elements, part); });
    return set;
  }
  /// Likewise inside an open transaction.
  iterator PutMset(const CString& name, iterator parent, int elements, iterator part = 0) {
    tagTMset record;
    record.name = name;
    record.geom = part;
    record.colour = Rgb(1, 2, 3);
    record.parent = parent != 0 ? Pool().GetAtNU(parent)->key : 0;
    if (elements != 0) workbench::PutMesh(record, Strip(elements, Pool().NextNumber()));
    return Pool().Add(record);
  }
  void ChangeMset(iterator itr, const std::function<void(tagTMset&)>& change) {
    Act([&] {
      tagTMset record = *Pool().GetAtNU(itr);
      change(record);
      ASSERT_EQ(Pool().Modify(itr, record), 1);
    });
  }
  workbench::MsetPool& Pool() { return Data().GetMsetPool(); }
  const tagTMset& Mset(iterator itr) { return *Pool().GetAtNU(itr); }
  bool IsShown(iterator itr) { return m_doc.GetDisplay().Meshes().IsMsetShown(itr) != 0; }
  /// The sets below the root as one line.
  std::string Sets() {
    const std::string all = Meshes();
    const std::size_t first = all.find('[');
    return first == std::string::npos ? "" : all.substr(first + 1, all.size() - first - 2);
  }
  /// All elements of all sets, sorted.
  std::vector<std::uint64_t> Elements() {
    std::vector<std::uint64_t> all;
    for (const iterator itr : Pool().GetItrList()) {
      if (Mset(itr).mesh == nullptr) continue;
      for (const MeshData::Block& block : Mset(itr).mesh->blocks) {
        all.insert(all.end(), block.elementIds.begin(), block.elementIds.end());
      }
    }
    std::sort(all.begin(), all.end());
    return all;
  }
};

inline const CString kMeshRoot = L"IDS_QD_WRT_MESH";

}  // namespace qd::test
