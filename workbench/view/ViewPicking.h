#pragma once

#include <QPointF>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "workbench/display/WorkDocument.h"
#include "workbench/view/Picker.h"
#include "workbench/view/RegionMouse.h"

class QPoint;
class vtkRenderer;

namespace qd::workbench {

class HoverMark;
class RegionPick;
class SeenDepths;
struct PickedShape;

/// What the mouse picks in a view: clicks, regions, what a click would take, the menu of what is under the
/// pointer.
class ViewPicking final {
 public:
  /// What the view knows of lines of sight and its picture.
  struct Eye {
    std::function<PickRay(const QPointF&)> rayAt;
    std::function<Picker::RayTo()> rayTo;
    /// How deep the picture is; null while it does not show everything.
    std::function<std::unique_ptr<const SeenDepths>()> depths;
    /// Whether parts are being made anew, which frees what was drawn of them before.
    std::function<bool()> isBuilding;
  };
  using OnPick = std::function<void(const std::vector<iterator>&, PickMode)>;

  ViewPicking(WorkDocument& doc, const PartScene& parts, const MeshScene& meshes, const SectionScene& sections,
              vtkRenderer& renderer, Eye eye, QWidget* view);
  ~ViewPicking();
  ViewPicking(const ViewPicking&) = delete;
  ViewPicking& operator=(const ViewPicking&) = delete;

  /// Called with the parts and mesh sets that were picked, and what becomes of the others.
  void SetOnPick(OnPick onPick) { m_onPick = std::move(onPick); }
  /// Called when the menu of what is picked is wanted at a place of the screen.
  void SetOnMenu(std::function<void(const QPoint&)> onMenu) { m_onMenu = std::move(onMenu); }
  /// How things are called.
  void SetNames(std::function<QString(const PickHit&)> names) { m_names = std::move(names); }

  const Picker& Finder() const { return m_picker; }
  void Click(const QPointF& at, Qt::KeyboardModifiers keys);
  /// Picks what is under the pointer, unless it is picked already, and opens its menu.
  void Menu(const QPointF& at, const QPoint& screen);
  /// The pointer has come to a place; what a click takes there is shown as soon as it rests.
  void Hover(const QPointF& at);
  void EndHover();
  /// The next drag pulls a region.
  void AwaitRegion(RegionMouse::Form form);
  /// Whether a region is still looked through.
  bool IsWorking() const { return m_work.isActive(); }
  /// Ends a region; returns whether there was one.
  bool Cancel();
  /// Nothing is picked any more: what of records is goes first, then the records themselves.
  void Clear();
  /// What is shown has changed.
  void NoteChange();

 private:
  PickHit HitAt(const QPointF& at) const {
    const PickRay ray = m_eye.rayAt(at);  // which brings the camera to its place
    return m_picker.At(ray, m_doc.GetPicks().Filter(), m_eye.rayTo());
  }
  static PickMode ModeOf(Qt::KeyboardModifiers keys);
  void Take(const PickHit& hit, PickMode mode);
  void HoverNow();
  PickedShape ShapeUnder(const PickHit& hit) const;
  void BeginRegion(const QPolygonF& region, PickMode mode);
  void GoOn();
  void EndRegion();

  WorkDocument& m_doc;
  const PartScene& m_parts;
  const MeshScene& m_meshes;
  vtkRenderer& m_renderer;
  Eye m_eye;
  QWidget& m_view;
  Picker m_picker;
  OnPick m_onPick;
  std::function<void(const QPoint&)> m_onMenu;
  std::function<QString(const PickHit&)> m_names;
  HoverMark* m_mark;       // these belong to the view
  RegionMouse* m_pulling;  // likewise
  QTimer m_rest;
  QPointF m_hoverAt;
  int m_slow = 0;  // one after another that took too long
  QTimer m_work;
  std::unique_ptr<RegionPick> m_region;
  QPolygonF m_awaited;  // for a whole picture
  PickMode m_mode = PickMode::Replace;
};

}  // namespace qd::workbench
