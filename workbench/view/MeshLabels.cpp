#include "workbench/view/MeshLabels.h"

#include <vtkCamera.h>
#include <vtkMatrix4x4.h>
#include <vtkRenderer.h>

#include <QPainter>
#include <array>

#include "host/Display.h"
#include "workbench/view/MeshScene.h"

namespace qd::workbench {

MeshLabels::MeshLabels(const MeshScene& scene, vtkRenderer& renderer, QWidget* view)
    : QWidget(view), m_scene(scene), m_renderer(renderer) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  hide();
}

namespace {

using Point = std::array<double, 3>;

/// Where a point is on the screen, -1 to 1, and how far behind the glass.
Point Project(const double matrix[16], const float* at) {
  double image[4];
  for (int row = 0; row < 4; ++row) {
    const double* m = &matrix[static_cast<std::ptrdiff_t>(row) * 4];
    image[row] = m[0] * at[0] + m[1] * at[1] + m[2] * at[2] + m[3];
  }
  const double w = image[3] != 0 ? image[3] : 1;
  return {image[0] / w, image[1] / w, image[2] / w};
}

}  // namespace

/// One label for each cell of a grid, the nearest one: the others would be written over each other. Faces that
/// look away are left out, and with them what lies behind the mesh.
void MeshLabels::Collect(const MsetDrawing& drawing, const double matrix[16],
                         std::map<std::pair<int, int>, Label>& cells) {
  constexpr int kCellWidth = 46;
  constexpr int kCellHeight = 15;
  const auto put = [&](const Point& at, std::uint64_t number, bool element) {
    if (at[0] < -1 || at[0] > 1 || at[1] < -1 || at[1] > 1 || at[2] < -1 || at[2] > 1) return;
    const QPointF place((at[0] + 1) / 2 * width(), (1 - at[1]) / 2 * height());
    const std::pair cell(static_cast<int>(place.x()) / kCellWidth, static_cast<int>(place.y()) / kCellHeight);
    const auto known = cells.find(cell);
    if (known == cells.end() || at[2] < known->second.depth) cells[cell] = {place, at[2], number, element};
  };
  const std::uint32_t addOns = drawing.look->addOns;
  for (const MeshSkin::Piece& piece : drawing.skin->pieces) {
    std::vector<Point> images(piece.nodes.size());
    for (std::size_t i = 0; i < images.size(); ++i) images[i] = Project(matrix, &piece.points[i * 3]);
    std::vector<bool> seen(piece.nodes.size(), piece.triangles.empty());
    const bool solid = piece.elementType >= 4 && piece.elementType != 8 && piece.elementType != 9;
    for (std::size_t i = 0; i + 2 < piece.triangles.size(); i += 3) {
      const Point& a = images[piece.triangles[i]];
      const Point& b = images[piece.triangles[i + 1]];
      const Point& c = images[piece.triangles[i + 2]];
      const double turn = (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
      if (solid && turn < 0) continue;
      for (std::size_t corner = 0; corner < 3; ++corner) seen[piece.triangles[i + corner]] = true;
      if ((addOns & kAddOnElementIds) == 0) continue;
      put({(a[0] + b[0] + c[0]) / 3, (a[1] + b[1] + c[1]) / 3, (a[2] + b[2] + c[2]) / 3}, piece.elements[i / 3],
          true);
    }
    for (std::size_t i = 0; i < images.size() && (addOns & kAddOnNodeIds) != 0; ++i) {
      if (seen[i]) put(images[i], piece.nodes[i], false);
    }
  }
}

void MeshLabels::Follow() {
  const std::vector<const MsetDrawing*> drawings = m_scene.ShownWith(kAddOnNodeIds | kAddOnElementIds);
  m_labels.clear();
  if (drawings.empty()) return hide();
  setGeometry(parentWidget()->rect());
  const double aspect = height() > 0 ? width() / double(height()) : 1;
  vtkMatrix4x4* matrix = m_renderer.GetActiveCamera()->GetCompositeProjectionTransformMatrix(aspect, -1, 1);
  std::map<std::pair<int, int>, Label> cells;
  for (const MsetDrawing* drawing : drawings) Collect(*drawing, matrix->GetData(), cells);
  for (const auto& [cell, label] : cells) m_labels.push_back(label);
  show();
  update();
}

void MeshLabels::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QFont font = painter.font();
  font.setPixelSize(11);
  painter.setFont(font);
  for (const Label& label : m_labels) {
    painter.setPen(label.element ? QColor(0x7A, 0x10, 0x60) : QColor(0x10, 0x40, 0xA0));
    painter.drawText(label.at + QPointF(3, -2), QString::number(label.number));
  }
}

}  // namespace qd::workbench
