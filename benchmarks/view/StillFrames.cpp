#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkFloatArray.h>
#include <vtkLightKit.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "benchmarks/view/ViewBench.h"
#include "support/ManyParts.h"
#include "workbench/view/PartScene.h"
#include "workbench/view/PickTrees.h"

namespace qd::bench {
namespace {

constexpr int kWidth = 820;
constexpr int kHeight = 700;

/// A mesh of all triangles, or of all edges, of the parts.
void AddMerged(const workbench::Database& data, bool faces, vtkRenderer& renderer) {
  vtkNew<vtkPoints> points;
  vtkNew<vtkFloatArray> normals;
  normals->SetNumberOfComponents(3);
  vtkNew<vtkCellArray> cells;
  for (const iterator itr : data.GetGeomPool().GetItrList()) {
    const PartFacets& facets = data.GetGeomPool().GetAtNU(itr)->shape->facets;
    const std::vector<std::uint32_t>& corners = faces ? facets.triangles : facets.lines;
    const vtkIdType base = points->GetNumberOfPoints();
    for (std::size_t i = 0, end = *std::max_element(corners.begin(), corners.end()) + 1U; i < end; ++i) {
      points->InsertNextPoint(&facets.points[i * 3]);
      if (faces) normals->InsertNextTuple(&facets.normals[i * 3]);
    }
    const int size = faces ? 3 : 2;
    for (std::size_t i = 0; i < corners.size();) {
      cells->InsertNextCell(size);
      for (int c = 0; c < size; ++c) cells->InsertCellPoint(base + corners[i++]);
    }
  }
  vtkNew<vtkPolyData> mesh;
  mesh->SetPoints(points);
  if (faces) mesh->GetPointData()->SetNormals(normals);
  faces ? mesh->SetPolys(cells) : mesh->SetLines(cells);
  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputData(mesh);
  vtkNew<vtkActor> actor;
  actor->SetMapper(mapper);
  actor->GetProperty()->SetColor(0.4, 0.6, 0.5);
  if (faces) {
    mapper->SetResolveCoincidentTopologyToPolygonOffset();
    mapper->SetRelativeCoincidentTopologyPolygonOffsetParameters(1, 1);
  } else {
    actor->GetProperty()->LightingOff();
    actor->GetProperty()->SetColor(0.16, 0.17, 0.2);
  }
  renderer.AddActor(actor);
}

void Light(vtkRenderer& renderer) {
  vtkNew<vtkLightKit> lights;
  lights->AddLightsToRenderer(&renderer);
  renderer.SetBackground(1, 1, 1);
}

void Aim(vtkRenderer& renderer) {
  renderer.GetActiveCamera()->SetPosition(1, -1.4, 0.9);
  renderer.GetActiveCamera()->SetFocalPoint(0, 0, 0);
  renderer.GetActiveCamera()->SetViewUp(0, 0, 1);
  renderer.ResetCamera();
}

double Frame(vtkRenderWindow& window) {
  const auto start = std::chrono::steady_clock::now();
  window.Render();
  window.WaitForCompletion();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// Pixels that show something.
int Drawn(vtkRenderWindow& window) {
  vtkNew<vtkUnsignedCharArray> pixels;
  window.GetPixelData(0, 0, kWidth - 1, kHeight - 1, 1, pixels);
  int drawn = 0;
  for (vtkIdType i = 0; i < pixels->GetNumberOfTuples(); ++i) {
    const unsigned char* rgb = pixels->GetPointer(i * 3);
    drawn += rgb[0] == 255 && rgb[1] == 255 && rgb[2] == 255 ? 0 : 1;
  }
  return drawn;
}

}  // namespace

void StillFrames(int parts) {
  workbench::WorkDocument doc;
  test::AddBlocks(doc.GetDatabase(), parts);
  vtkNew<vtkRenderer> ours;
  vtkNew<vtkRenderer> merged;
  vtkNew<vtkRenderWindow> window;
  window->SetOffScreenRendering(1);
  window->SetMultiSamples(0);
  window->SetSize(kWidth, kHeight);
  workbench::PickTrees trees;
  workbench::PartScene scene(doc, *ours, trees);
  CQDUpdateRecord all;
  for (const iterator itr : doc.GetDatabase().GetGeomPool().GetItrList()) {
    all.changes.push_back({kDataGeom, kChangeAdded, itr});
  }
  scene.Apply(all);
  while (scene.Build(1000)) {
  }
  scene.Update();
  AddMerged(doc.GetDatabase(), true, *merged);
  AddMerged(doc.GetDatabase(), false, *merged);
  double least[2] = {1e9, 1e9};
  int drawn[2] = {};
  constexpr int kRounds = 5;
  for (vtkRenderer* renderer : {ours.Get(), merged.Get()}) {
    Light(*renderer);
    Aim(*renderer);
  }
  for (int round = 0; round <= kRounds; ++round) {
    for (int which = 0; which < 2; ++which) {
      vtkRenderer* renderer = which == 0 ? ours.Get() : merged.Get();
      window->AddRenderer(renderer);
      renderer->GetActiveCamera()->Azimuth(1);
      const double time = Frame(*window);
      if (round > 0) least[which] = std::min(least[which], time);  // the first one makes the buffers
      drawn[which] = Drawn(*window);
      window->RemoveRenderer(renderer);
      if (round == 0) Tell(which == 0 ? "first frame of the parts" : "first frame of one merged mesh", time, true);
    }
  }
  const bool same = drawn[1] > kWidth * kHeight / 10 && std::abs(drawn[0] - drawn[1]) < drawn[1] / 100;
  Tell("still frame of the parts", least[0], same);
  Tell("still frame of one merged mesh", least[1], same);
  std::printf("%-44s %9.2f\n", "ratio", least[0] / least[1]);
  window->AddRenderer(ours);
}

}  // namespace qd::bench
