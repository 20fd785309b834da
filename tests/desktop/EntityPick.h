#pragma once

#include <QLabel>

#include "InWindow.h"
#include "support/ManyParts.h"
#include "workbench/display/PickedShape.h"

namespace qd::test {

/// A window whose view is clicked at, by the display's own mouse, where points of the model are seen.
class EntityPick : public InWindow {
 protected:
  using PickFilter = workbench::PickFilter;
  using Vector3 = workbench::Vector3;
  EntityPick() {
    m_window->resize(1000, 700);
    m_window->activateWindow();
    Wait(100);
  }
  workbench::ModelView& View() { return m_window->View(); }
  workbench::Looking& Look() { return m_window->Document().GetLooking(); }
  workbench::Picks& Picked() { return m_window->Document().GetPicks(); }
  /// Where a point of the model is seen, in pixels of the view.
  QPointF SeenAt(const Vector3& point) {
    using namespace workbench;
    const workbench::ViewCamera& camera = Look().Camera();
    const Vector3 from = point - camera.Eye();
    const double depth = Dot(from, camera.Ahead());
    const double half = View().height() / 2.0;
    const double size =
        camera.HalfHeight() / camera.Distance() * (camera.IsParallel() ? camera.Distance() : depth);
    return {View().width() / 2.0 + Dot(from, camera.Right()) / size * half,
            View().height() / 2.0 - Dot(from, camera.Up()) / size * half};
  }
  /// The display's own click at a point of the model, and the keys that are held.
  void Click(const Vector3& point, const QStringList& held = {}, const QString& button = "1",
             const QPointF& aside = {}) {
    const QPoint on = View().mapToGlobal((SeenAt(point) + aside).toPoint());
    QStringList what = QStringList{"mousemove"} << At({on.x(), on.y()});
    for (const QString& key : held) what << "keydown" << key;
    what << "click" << button;
    for (const QString& key : held) what << "keyup" << key;
    Display(what);
  }
  iterator AddBlock(float x, float y, float z) {
    Data().BeginTransaction(L"block");
    tagTGeom part;
    part.name = L"Block";
    part.gset = Data().GetGsetPool().GetCurrentSet();
    part.cadItem = Data().GetGeomPool().NextNumber();
    part.colour = Rgb(90, 160, 90);
    part.shape = SmallBlock(x, y, z);
    const iterator itr = Data().GetGeomPool().Add(std::move(part));
    Data().CommitTransaction(1);
    EXPECT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    Wait(50);
    return itr;
  }
  /// Rows of hexahedra, each of side 1.
  iterator AddMesh(int x, int y, int z) {
    auto mesh = std::make_shared<MeshData>();
    const auto node = [&](int i, int k, int l) {
      const int number = 1 + i + (x + 1) * (k + (y + 1) * l);
      return static_cast<std::uint64_t>(number);
    };
    for (int l = 0; l <= z; ++l) {
      for (int k = 0; k <= y; ++k) {
        for (int i = 0; i <= x; ++i) {
          mesh->nodeIds.push_back(node(i, k, l));
          for (const int at : {i, k, l}) mesh->coordinates.push_back(at);
        }
      }
    }
    MeshData::Block block{5, 8, {}, {}};
    for (int l = 0; l < z; ++l) {
      for (int k = 0; k < y; ++k) {
        for (int i = 0; i < x; ++i) {
          block.elementIds.push_back(static_cast<std::uint64_t>(1 + i + x * (k + y * l)));
          for (const int up : {0, 1}) {
            const auto corners = {node(i, k, l + up), node(i + 1, k, l + up), node(i + 1, k + 1, l + up),
                                  node(i, k + 1, l + up)};
            block.nodeIds.insert(block.nodeIds.end(), corners);
          }
        }
      }
    }
    tagTMset set;
    set.name = L"Mesh";
    set.colour = Rgb(120, 120, 200);
    set.nodeCount = mesh->nodeIds.size();
    set.elementCount = block.elementIds.size();
    mesh->blocks.push_back(std::move(block));
    set.mesh = std::move(mesh);
    Data().BeginTransaction(L"mesh");
    const iterator itr = Data().GetMsetPool().Add(set);
    Data().CommitTransaction(1);
    EXPECT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    Wait(100);
    return itr;
  }
  QString Status() { return m_window->findChild<QLabel*>("selection")->text(); }
  QColor Pixel(const Vector3& point) {
    EXPECT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    Wait(30);
    return View().grabFramebuffer().pixelColor((SeenAt(point) * View().devicePixelRatioF()).toPoint());
  }
};

}  // namespace qd::test
