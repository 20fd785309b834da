#include "workbench/display/MeshLook.h"

#include "host/CQDColorGenerator.h"
#include "workbench/display/Highlight.h"

namespace qd::workbench {

namespace {

enum Mode : unsigned {
  kShading,
  kEdgeShading,
  kWireframe,
  kFreeFaceWireframe,
  kFeatureEdges,
  kFeatureShading,
  kBoundingBox
};
enum ColourMode : unsigned { kBySet, kByProperty, kByMaterial, kByElementType, kByTopSet };

constexpr COLORREF kNone = Rgb(0xA0, 0xA0, 0xA0);

/// The same number always has the same colour, and neighbours are easy to tell apart.
COLORREF ColourOfNumber(std::int32_t number) {
  constexpr std::int32_t kColours = 64;
  static const std::vector<COLORREF> colours = [] {
    std::vector<COLORREF> made;
    made.reserve(kColours);
    CQDColorGenerator generator;
    for (std::int32_t i = 0; i < kColours; ++i) made.push_back(generator.GetNextColor());
    return made;
  }();
  return colours[static_cast<std::size_t>(number % kColours)];
}

COLORREF ColourOf(const Database& database, const tagTMset& record, unsigned mode, int elementType) {
  switch (mode) {
    case kByProperty:
      return record.property != 0 ? ColourOfNumber(database.GetRecordID(record.property)) : kNone;
    case kByMaterial: {
      IAppDB::Property property;
      const bool known = database.GetProperty(record.property, property) != 0 && property.hasMaterial;
      return known ? ColourOfNumber(property.materialNumber) : kNone;
    }
    case kByElementType:
      return ColourOfNumber(elementType);
    case kByTopSet: {
      const tagTMset* top = &record;
      while (top->parent != 0) {
        const tagTMset* above = database.GetMsetPool().GetAtNU(database.GetMsetPool().GetItrByKey(top->parent));
        if (above == nullptr) break;
        top = above;
      }
      return top->colour;
    }
    default:
      return record.colour;
  }
}

}  // namespace

SkinRequest RequestFor(const MeshDisplay::Look& look) {
  SkinRequest request;
  request.shrink = look.shrink;
  request.faces = look.mode <= kEdgeShading || look.mode == kFeatureShading;
  switch (look.mode) {
    case kShading:
      request.lines = MeshLines::None;
      break;
    case kWireframe:
      request.lines = MeshLines::AllElements;
      break;
    case kFeatureEdges:
    case kFeatureShading:
      request.lines = MeshLines::Features;
      break;
    default:
      request.lines = MeshLines::FreeFaces;
      break;
  }
  return request;
}

MsetLook LookOf(const Database& database, const Display& display, const tagTMset& record, iterator itr,
                const MeshSkin& skin, bool selected) {
  const MeshDisplay::Look wanted = display.Meshes().GetLook(record.key & kMsetKeyMask);
  MsetLook look;
  look.shown = display.Meshes().IsMsetShown(itr) != 0;
  look.box = wanted.mode == kBoundingBox;
  look.wire = look.box || (wanted.mode >= kWireframe && wanted.mode <= kFeatureEdges);
  look.opacity = wanted.opacity;
  look.addOns = wanted.addOns;
  look.colours.reserve(skin.pieces.size());
  for (const MeshSkin::Piece& piece : skin.pieces) {
    const COLORREF colour = ColourOf(database, record, display.Meshes().GetMeshColorMode(), piece.elementType);
    look.colours.push_back(selected ? HighlightOn(colour) : colour);
  }
  return look;
}

}  // namespace qd::workbench
