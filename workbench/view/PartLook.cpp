#include "workbench/view/PartLook.h"

#include <algorithm>
#include <cmath>

#include "workbench/display/Highlight.h"

namespace qd::workbench {

namespace {

constexpr COLORREF kEdge = Rgb(0x28, 0x2C, 0x32);
constexpr float kOpaque = 255;
constexpr std::uint8_t kFaded = 40;
constexpr std::uint8_t kFadedSelected = 120;

enum Mode : unsigned { kShading, kEdgeShading, kWireframe, kBoundingBox };

/// Whether the part's own mesh is seen in its place.
bool IsFaded(WorkDocument& doc, const tagTGeom& record) {
  const Database& database = doc.GetDatabase();
  if (!doc.GetDisplay().Parts().FadesMeshed() || database.GetMsetPool().Count() == 0) return false;
  const iterator part = database.GetGeomPool().ItrOfNumber(record.cadItem);
  const tagTMset* set = database.GetMsetPool().GetAtNU(database.GetMsetPool().GetItrByGeomItr(part));
  return set != nullptr && set->elementCount != 0 &&
         doc.GetDisplay().Meshes().IsMsetShown(database.GetMsetPool().GetItrByGeomItr(part)) != 0;
}

}  // namespace

PartLook LookOf(WorkDocument& doc, const tagTGeom& record, bool selected) {
  const PartDisplay::Look& item = doc.GetDisplay().Parts().GetLook(record.cadItem);
  const bool thin = record.kind == TopologyKind::Curve || record.kind == TopologyKind::Point;
  PartLook look;
  look.opacity = static_cast<std::uint8_t>(std::lround(std::clamp(item.opacity, 0.0F, 1.0F) * kOpaque));
  look.box = item.shown && item.mode == kBoundingBox;
  const bool seen = item.shown && look.opacity != 0;  // a box always is
  look.faces = seen && item.mode <= kEdgeShading;
  look.edges = seen && !look.box && (thin || item.mode != kShading);
  const tagTMaterial* material = doc.GetDisplay().Parts().GetColorModelType() == 1
                                     ? doc.GetDatabase().GetMaterialPool().GetAtNU(record.material)
                                     : nullptr;
  look.colour = material != nullptr ? material->colour : record.colour;
  if (selected) look.colour = HighlightOn(look.colour);
  if (IsFaded(doc, record)) {
    look.opacity = std::min(look.opacity, selected ? kFadedSelected : kFaded);
    look.edges = look.edges && (selected || !look.faces);
  }
  look.lineColour = thin || selected || item.mode >= kWireframe ? look.colour : kEdge;
  return look;
}

}  // namespace qd::workbench
