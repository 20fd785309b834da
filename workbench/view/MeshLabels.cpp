#include "workbench/view/MeshLabels.h"

#include <QPainter>

#include "host/Display.h"
#include "workbench/view/MeshScene.h"
#include "workbench/view/Projection.h"

namespace qd::workbench {

MeshLabels::MeshLabels(const MeshScene& scene, vtkRenderer& renderer, QWidget* view)
    : QWidget(view), m_scene(scene), m_renderer(renderer) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  hide();
}

namespace {

/// Which way a triangle turns on the screen; positive for one that is seen from its front.
double Turn(const QPointF& a, const QPointF& b, const QPointF& c) {
  const QPointF u = b - a;
  const QPointF v = c - a;
  return u.y() * v.x() - u.x() * v.y();
}

}  // namespace

/// One label for each cell of a grid, the nearest one: the others would be written over each other. Faces that
/// look away are left out, and with them what lies behind the mesh.
void MeshLabels::Collect(const MsetDrawing& drawing, const Projection& project,
                         std::map<std::pair<int, int>, Label>& cells) {
  constexpr int kCellWidth = 46;
  constexpr int kCellHeight = 15;
  const auto put = [&](const Projection::Image& image, std::uint64_t number, bool element) {
    if (!QRectF(rect()).contains(image.at) || image.depth < 0 || image.depth > 1) return;
    const std::pair cell(static_cast<int>(image.at.x()) / kCellWidth,
                         static_cast<int>(image.at.y()) / kCellHeight);
    const auto known = cells.find(cell);
    if (known == cells.end() || image.depth < known->second.depth) {
      cells[cell] = {image.at, image.depth, number, element};
    }
  };
  const std::uint32_t addOns = drawing.look->addOns;
  for (const MeshSkin::Piece& piece : drawing.skin->pieces) {
    std::vector<Projection::Image> images(piece.nodes.size());
    const Projection::Image nowhere{{}, -1};
    for (std::size_t i = 0; i < images.size(); ++i) {
      const float* at = &piece.points[i * 3];
      images[i] = project(at[0], at[1], at[2]).value_or(nowhere);
    }
    std::vector<bool> seen(piece.nodes.size(), piece.triangles.empty());
    const bool solid = piece.elementType >= 4 && piece.elementType != 8 && piece.elementType != 9;
    for (std::size_t i = 0; i + 2 < piece.triangles.size(); i += 3) {
      const Projection::Image& a = images[piece.triangles[i]];
      const Projection::Image& b = images[piece.triangles[i + 1]];
      const Projection::Image& c = images[piece.triangles[i + 2]];
      if (solid && Turn(a.at, b.at, c.at) < 0) continue;
      for (std::size_t corner = 0; corner < 3; ++corner) seen[piece.triangles[i + corner]] = true;
      if ((addOns & kAddOnElementIds) == 0) continue;
      put({(a.at + b.at + c.at) / 3, (a.depth + b.depth + c.depth) / 3}, piece.elements[i / 3], true);
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
  const Projection project(m_renderer, size());
  std::map<std::pair<int, int>, Label> cells;
  for (const MsetDrawing* drawing : drawings) Collect(*drawing, project, cells);
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
