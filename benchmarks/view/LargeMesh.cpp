#include <QApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

#include "benchmarks/view/ViewBench.h"
#include "platform/qt/QtToolkit.h"
#include "workbench/app/MainWindow.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/view/ModelView.h"
#include "workbench/view/ViewPicking.h"

namespace qd::bench {
namespace {

/// A wavy sheet of quadrangles.
std::shared_ptr<const MeshData> Sheet(int side) {
  auto mesh = std::make_shared<MeshData>();
  MeshData::Block block{3, 4, {}, {}};
  for (int y = 0; y <= side; ++y) {
    for (int x = 0; x <= side; ++x) {
      mesh->nodeIds.push_back(mesh->nodeIds.size() + 1);
      mesh->coordinates.insert(mesh->coordinates.end(), {x * 1.0, y * 1.0, 10 * std::sin(x * 0.05)});
    }
  }
  const auto node = [side](int x, int y) {
    const int number = 1 + x + y * (side + 1);
    return static_cast<std::uint64_t>(number);
  };
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      block.elementIds.push_back(block.elementIds.size() + 1);
      for (const std::uint64_t corner : {node(x, y), node(x + 1, y), node(x + 1, y + 1), node(x, y + 1)})
        block.nodeIds.push_back(corner);
    }
  }
  mesh->blocks.push_back(std::move(block));
  return mesh;
}

}  // namespace

void PicksInOneMesh(int triangles) {
  workbench::MessageTables messages;
  QtToolkit toolkit;
  workbench::MainWindow window(messages);
  window.show();
  workbench::WorkDocument& doc = window.Document();
  tagTMset set;
  set.name = L"Sheet";
  workbench::PutMesh(set, Sheet(static_cast<int>(std::sqrt(triangles / 2))));
  doc.GetDatabase().BeginTransaction(L"mesh");
  doc.GetDatabase().GetMsetPool().Add(set);
  doc.GetDatabase().CommitTransaction(1);
  const auto settle = [&window](int rounds) {
    for (int quiet = 0; quiet < rounds; ++quiet) {
      QApplication::processEvents(QEventLoop::AllEvents, 20);
      if (!window.IsUpToDate()) quiet = 0;
    }
  };
  settle(50);
  workbench::ViewPicking& picking = window.View().Picking();
  const auto pick = [&](workbench::PickFilter filter) {
    doc.GetPicks().SetFilter(filter);
    double slowest = 0;
    std::size_t picked = 0;
    constexpr int kClicks = 9;
    for (int click = 0; click < kClicks; ++click) {
      const QPointF at(window.View().width() * (40 + 2 * click) / 100.0, window.View().height() / 2.0);
      QElapsedTimer time;
      time.start();
      picking.Click(at, Qt::ShiftModifier);
      slowest = std::max(slowest, static_cast<double>(time.nsecsElapsed()) / 1e6);
      picked = doc.GetPicks().All().size();
    }
    doc.GetPicks().Clear();
    return std::pair(slowest, picked > kClicks / 2);
  };
  const auto tell = [](const char* what, const std::pair<double, bool>& done) {
    Tell(what, done.first, done.second);
  };
  tell("one mesh: pick of an element, before its tree", pick(workbench::PickFilter::Elements));
  constexpr int kPatience = 400;
  settle(kPatience);
  tell("one mesh: pick of an element", pick(workbench::PickFilter::Elements));
  tell("one mesh: pick of a node", pick(workbench::PickFilter::Nodes));
}

}  // namespace qd::bench
