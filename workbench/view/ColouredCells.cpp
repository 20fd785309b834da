#include "workbench/view/ColouredCells.h"

#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkFloatArray.h>
#include <vtkIdTypeArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>

namespace qd::workbench {

void ColouredCells::Add(const std::vector<float>& some, const std::vector<std::uint32_t>& numbers, COLORREF colour,
                        const float* shift) {
  const auto base = static_cast<std::uint32_t>(points.size() / 3);
  for (std::size_t i = 0; i < some.size(); ++i) points.push_back(some[i] + (shift != nullptr ? shift[i % 3] : 0));
  for (std::size_t i = 0; i < some.size() / 3; ++i) {
    for (const unsigned place : {0U, 8U, 16U})
      colours.push_back(static_cast<unsigned char>(colour >> place & 0xFFU));
  }
  for (const std::uint32_t number : numbers) cells.push_back(base + number);
}

void Draw(vtkActor& actor, const ColouredCells& what, int corners) {
  vtkNew<vtkFloatArray> coordinates;
  coordinates->SetNumberOfComponents(3);
  coordinates->SetNumberOfTuples(static_cast<vtkIdType>(what.points.size() / 3));
  std::copy(what.points.begin(), what.points.end(), coordinates->GetPointer(0));
  vtkNew<vtkPoints> points;
  points->SetData(coordinates);
  vtkNew<vtkUnsignedCharArray> colours;
  colours->SetNumberOfComponents(3);
  colours->SetNumberOfTuples(static_cast<vtkIdType>(what.points.size() / 3));
  std::copy(what.colours.begin(), what.colours.end(), colours->GetPointer(0));
  vtkNew<vtkIdTypeArray> numbers;
  numbers->SetNumberOfValues(static_cast<vtkIdType>(what.cells.size()));
  std::copy(what.cells.begin(), what.cells.end(), numbers->GetPointer(0));
  vtkNew<vtkCellArray> cells;
  cells->SetData(corners, numbers);
  vtkNew<vtkPolyData> data;
  data->SetPoints(points);
  data->GetPointData()->SetScalars(colours);
  if (corners == 3) data->SetPolys(cells);
  if (corners == 2) data->SetLines(cells);
  if (corners == 1) data->SetVerts(cells);
  static_cast<vtkPolyDataMapper*>(actor.GetMapper())->SetInputData(data);
  actor.SetVisibility(what.cells.empty() ? 0 : 1);
}

}  // namespace qd::workbench
