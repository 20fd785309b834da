#include "workbench/view/CordSymbols.h"

#include <QPainter>
#include <cmath>
#include <set>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/view/AxisSymbol.h"
#include "workbench/view/Projection.h"

namespace qd::workbench {

namespace {

constexpr double kArrow = 46;  // pixels

/// Names of the axes by kind of system.
constexpr const char* kAxisNames[3][3] = {{"X", "Y", "Z"}, {"R", "θ", "Z"}, {"R", "θ", "φ"}};

Axis Short(const Vector3& a) {
  return {static_cast<float>(a[0]), static_cast<float>(a[1]), static_cast<float>(a[2])};
}

}  // namespace

CordSymbols::CordSymbols(WorkDocument& doc, vtkRenderer& renderer, QWidget* view)
    : QWidget(view), m_doc(doc), m_renderer(renderer) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  for (const iterator itr : doc.GetDatabase().GetCordPool().GetItrList()) Read(itr);
}

/// A system and all that stand on it.
void CordSymbols::Read(iterator itr) {
  const CordPool& pool = m_doc.GetDatabase().GetCordPool();
  m_placements[itr] = pool.GlobalPlacement(itr);
  std::vector<iterator> below = pool.ChildrenOf(itr);
  for (std::size_t i = 0; i < below.size(); ++i) {
    const tagTCord& record = *pool.GetAtNU(below[i]);
    m_placements[below[i]] = Compose(m_placements[record.parent], PlacementOf(record));
    const std::vector<iterator> next = pool.ChildrenOf(below[i]);
    below.insert(below.end(), next.begin(), next.end());
  }
}

void CordSymbols::Apply(const CQDUpdateRecord& record) {
  const Database& database = m_doc.GetDatabase();
  for (const tagTRNotify& change : record.changes) {
    if (change.dataType != kDataCord) continue;
    if (database.GetDataType(change.itr) == kDataCord) {
      Read(change.itr);
    } else {
      m_placements.erase(change.itr);
    }
  }
}

void CordSymbols::Follow() {
  setGeometry(parentWidget()->rect());
  const Projection project(m_renderer, size());
  const Database& database = m_doc.GetDatabase();
  m_symbols.clear();
  m_lines.clear();
  // Of many at one place one is drawn: the others could not be told from it.
  constexpr int kCell = 4;
  std::set<std::pair<int, int>> taken;
  for (const auto& [itr, placement] : m_placements) {
    if (m_doc.GetDisplay().Labels().GetShowHide(kLabelCord, database.GetRecordID(itr)) == 0) continue;
    const Vector3& at = placement.origin;
    const auto origin = project(at[0], at[1], at[2]);
    if (!origin || !rect().adjusted(-1, -1, 1, 1).contains(origin->at.toPoint())) continue;
    const std::pair cell(static_cast<int>(origin->at.x()) / kCell, static_cast<int>(origin->at.y()) / kCell);
    if (!taken.insert(cell).second) continue;
    const double length = kArrow * project.PixelAt(at[0], at[1], at[2]);
    Symbol symbol{origin->at, {}, itr};
    // Relative to the origin: far from zero the numbers of the picture would be too coarse.
    const std::array<Axis, 3> axes{Short(placement.axes[0]), Short(placement.axes[1]), Short(placement.axes[2])};
    for (const AxisSymbol::Line& line : AxisSymbol::Lines({}, axes, 1)) {
      const auto image = [&](const Axis& point) {
        return project(at[0] + length * point[0], at[1] + length * point[1], at[2] + length * point[2]);
      };
      const auto from = image(line.from);
      const auto to = image(line.to);
      if (!from || !to) continue;
      m_lines.push_back({from->at, to->at, line.axis});
      if (line.from == Axis{}) symbol.tips[line.axis] = to->at;
    }
    m_symbols.push_back(symbol);
  }
  setVisible(!m_symbols.empty());
  update();
}

void CordSymbols::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const Line& line : m_lines) {
    painter.setPen(QPen(ToQt(AxisSymbol::kColours[line.axis]), 1.6));
    painter.drawLine(line.from, line.to);
  }
  const CordPool& pool = m_doc.GetDatabase().GetCordPool();
  constexpr double kBeyond = 1.16;
  constexpr int kNameWidth = 160;
  constexpr double kNameAway = 12;
  for (const Symbol& symbol : m_symbols) {
    const tagTCord* record = pool.GetAtNU(symbol.itr);
    if (record == nullptr) continue;  // gone since the last frame
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const QPointF at = symbol.origin + (symbol.tips[axis] - symbol.origin) * kBeyond;
      painter.setPen(ToQt(AxisSymbol::kColours[axis]));
      painter.drawText(QRectF(at - QPointF(8, 8), QSizeF(16, 16)), Qt::AlignCenter,
                       QString::fromUtf8(kAxisNames[static_cast<std::size_t>(record->kind)][axis]));
    }
    const QString name = painter.fontMetrics().elidedText(ToQt(record->GetName()), Qt::ElideRight, kNameWidth);
    // On the side that the arrows leave free.
    QPointF away = symbol.origin * 3 - symbol.tips[0] - symbol.tips[1] - symbol.tips[2];
    const double length = std::hypot(away.x(), away.y());
    away = length > 1 ? away * (kNameAway / length) : QPointF(0, kNameAway);
    const QSizeF size(kNameWidth, painter.fontMetrics().height());
    QRectF place(symbol.origin + away, size);
    place.translate(-size.width() * (away.x() < 0 ? 1 : 0), -size.height() / 2);
    const int align = static_cast<int>(away.x() < 0 ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute;
    // On a light rim, so that it can be read on parts of any colour.
    painter.setPen(QColor(255, 255, 255, 150));
    for (const QPointF& rim : {QPointF(-1, 0), QPointF(1, 0), QPointF(0, -1), QPointF(0, 1)}) {
      painter.drawText(place.translated(rim), align, name);
    }
    painter.setPen(QColor(0x20, 0x20, 0x20));
    painter.drawText(place, align, name);
  }
}

}  // namespace qd::workbench
