#include "workbench/view/ViewPicking.h"

#include <QElapsedTimer>
#include <algorithm>
#include <utility>

#include "workbench/display/PickedShape.h"
#include "workbench/display/ViewSettings.h"
#include "workbench/view/HoverMark.h"
#include "workbench/view/MeshScene.h"
#include "workbench/view/PartScene.h"
#include "workbench/view/RegionPick.h"
#include "workbench/view/SeenDepths.h"

namespace qd::workbench {

namespace {

constexpr int kRest = 25;         // milliseconds in which the pointer has not moved
constexpr qint64 kMostHover = 8;  // likewise, that finding it may take
constexpr int kMostSlow = 3;      // times

/// The edges of a box.
PickedShape ShapeOfBox(const Bounds& box) {
  PickedShape shape;
  for (unsigned corner = 0; corner < 8; ++corner) {
    shape.points.insert(shape.points.end(),
                        {box[corner & 1U], box[2 + (corner >> 1U & 1U)], box[4 + (corner >> 2U & 1U)]});
    for (const unsigned axis : {1U, 2U, 4U}) {
      if ((corner & axis) == 0) shape.lines.insert(shape.lines.end(), {corner, corner | axis});
    }
  }
  return shape;
}

}  // namespace

ViewPicking::ViewPicking(WorkDocument& doc, const PartScene& parts, const MeshScene& meshes,
                         const SectionScene& sections, vtkRenderer& renderer, Eye eye, QWidget* view)
    : m_doc(doc),
      m_parts(parts),
      m_meshes(meshes),
      m_renderer(renderer),
      m_eye(std::move(eye)),
      m_view(*view),
      m_picker(doc, parts, meshes, sections),
      m_mark(new HoverMark(view)),
      m_pulling(new RegionMouse(view, [this](const QPolygonF& region, Qt::KeyboardModifiers keys) {
        BeginRegion(region, ModeOf(keys));
      })) {
  m_rest.setSingleShot(true);
  m_rest.setInterval(kRest);
  QObject::connect(&m_rest, &QTimer::timeout, view, [this] { HoverNow(); });
  QObject::connect(&m_work, &QTimer::timeout, view, [this] { GoOn(); });
}

ViewPicking::~ViewPicking() = default;

// ---- clicks ---------------------------------------------------------------------------------------------

PickMode ViewPicking::ModeOf(Qt::KeyboardModifiers keys) {
  if (keys.testFlag(Qt::ControlModifier)) return PickMode::Toggle;
  return keys.testFlag(Qt::ShiftModifier) ? PickMode::Add : PickMode::Replace;
}

void ViewPicking::Take(const PickHit& hit, PickMode mode) {
  Picks& picks = m_doc.GetPicks();
  if (!TakesRecords(picks.Filter())) {
    return picks.Take(hit.picked ? std::vector{*hit.picked} : std::vector<Picked>(), mode);
  }
  if (mode == PickMode::Replace) picks.Clear();
  if (m_onPick) m_onPick(hit.record != 0 ? std::vector{hit.record} : std::vector<iterator>(), mode);
}

void ViewPicking::Click(const QPointF& at, Qt::KeyboardModifiers keys) {
  Take(HitAt(at), ModeOf(keys));
}

void ViewPicking::Menu(const QPointF& at, const QPoint& screen) {
  const PickHit hit = HitAt(at);
  const std::vector<iterator>& selected = m_doc.GetSelectBuffer();
  const bool picked = hit.picked ? m_doc.GetPicks().Contains(*hit.picked)
                                 : std::find(selected.begin(), selected.end(), hit.record) != selected.end();
  if (hit.record != 0 && !picked) Take(hit, PickMode::Replace);
  if (m_onMenu) m_onMenu(screen);
}

void ViewPicking::Clear() {
  if (!m_doc.GetPicks().IsEmpty()) return m_doc.GetPicks().Clear();
  if (m_onPick) m_onPick({}, PickMode::Replace);
}

void ViewPicking::NoteChange() {
  m_slow = 0;
  EndHover();
  EndRegion();
}

// ---- what a click would take ----------------------------------------------------------------------------

void ViewPicking::Hover(const QPointF& at) {
  m_hoverAt = at;
  if (ViewSettings::Ours().IsHovering() && m_slow < kMostSlow) {
    m_rest.start();
  } else {
    m_mark->hide();
  }
}

void ViewPicking::EndHover() {
  m_rest.stop();
  m_mark->hide();
}

void ViewPicking::HoverNow() {
  QElapsedTimer time;
  time.start();
  const PickHit hit = HitAt(m_hoverAt);
  m_slow = time.elapsed() > kMostHover ? m_slow + 1 : 0;
  const PickedShape shape = hit.record != 0 ? ShapeUnder(hit) : PickedShape();
  if (shape.IsEmpty()) return m_mark->hide();
  m_mark->Mark(m_renderer, shape, m_names ? m_names(hit) : QString(), m_hoverAt.toPoint());
}

/// Of what is large, only the box: the outline is drawn over the picture each time.
PickedShape ViewPicking::ShapeUnder(const PickHit& hit) const {
  constexpr std::size_t kMostLines = 4'000;
  if (hit.picked) {
    PickedShape shape = ShapeOf(m_doc.GetDatabase(), m_doc.GetPicks(), *hit.picked);
    if (shape.lines.size() / 2 <= kMostLines) return shape;
    Bounds box = NoBounds();
    for (std::size_t i = 0; i + 2 < shape.points.size(); i += 3) Widen(box, &shape.points[i]);
    return ShapeOfBox(box);
  }
  if (const PartDrawing* part = m_parts.Find(hit.record)) {
    const PartFacets& facets = part->shape->facets;
    if (facets.lines.empty() || facets.lines.size() > kMostLines) return ShapeOfBox(part->bounds);
    return {facets.points, {}, m_doc.GetPicks().PartsOf(part->shape)->Segments(), {}};
  }
  const MsetDrawing* set = m_meshes.Find(hit.record);
  if (set == nullptr || set->skin == nullptr) return {};
  Bounds box{};
  std::copy_n(set->skin->bounds, box.size(), box.begin());
  return ShapeOfBox(box);
}

// ---- regions --------------------------------------------------------------------------------------------

void ViewPicking::AwaitRegion(RegionMouse::Form form) {
  EndRegion();
  EndHover();
  m_pulling->Await(form);
}

bool ViewPicking::Cancel() {
  const bool any = m_pulling->IsAwaiting() || m_work.isActive();
  m_pulling->Cancel();
  EndRegion();
  return any;
}

void ViewPicking::BeginRegion(const QPolygonF& region, PickMode mode) {
  m_awaited = region;
  m_mode = mode;
  m_work.start(0);
  GoOn();
}

/// A run between the events; what is seen is known only when the picture is whole.
void ViewPicking::GoOn() {
  constexpr int kRun = 20;
  constexpr int kWait = 10;
  if (m_eye.isBuilding()) return m_work.setInterval(kWait);
  m_work.setInterval(0);
  if (m_region == nullptr) {
    std::unique_ptr<const SeenDepths> depths;
    if (!ViewSettings::Ours().TakesHidden()) {
      depths = m_eye.depths();
      if (depths == nullptr) return m_work.setInterval(kWait);
    }
    m_eye.rayAt({});  // which brings the camera to its place
    m_region = std::make_unique<RegionPick>(m_doc, m_parts, m_meshes, Projection(m_renderer, m_view.size()),
                                            m_awaited, std::move(depths));
    m_work.setInterval(0);
  }
  if (m_region->Run(kRun)) return;
  m_work.stop();
  const std::unique_ptr<RegionPick> done = std::move(m_region);
  Picks& picks = m_doc.GetPicks();
  if (!TakesRecords(done->Filter())) return picks.Take(done->Found(), m_mode);
  if (m_mode == PickMode::Replace) picks.Clear();
  if (m_onPick) m_onPick(done->Records(), m_mode);
}

void ViewPicking::EndRegion() {
  m_work.stop();
  m_region.reset();
}

}  // namespace qd::workbench
