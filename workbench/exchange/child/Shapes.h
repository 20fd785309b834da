#pragma once

#include <Quantity_Color.hxx>
#include <TopoDS_Shape.hxx>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/Records.h"
#include "workbench/exchange/child/Facets.h"

namespace qd::workbench {

struct Body {
  TopoDS_Shape shape;
  TopologyKind kind;
};

/// The bodies of a shape: solids, and what does not belong to one, each at its own level.
std::vector<Body> BodiesOf(const TopoDS_Shape& shape);

/// A shape with its exchange form, its facets and its measures; `drawn` tells what the facets show of it. Null for
/// one that is not drawn, which gets none.
PartShape PartShapeOf(const TopoDS_Shape& shape, Drawn* drawn);

/// Makes the same of many shapes. What stands in several places is faceted, measured and written once, and moved.
class PartShapes {
 public:
  explicit PartShapes(bool areDrawn) : m_areDrawn(areDrawn) {}
  /// Tells that a shape is going to be made; one that is told of twice is kept.
  void Expect(const TopoDS_Shape& shape) { ++m_uses[shape.TShape().get()]; }
  /// As PartShapeOf; `sound` tells whether the library finds nothing wrong with the shape. The shape must live as
  /// long as this does.
  PartShape Make(const TopoDS_Shape& shape, Drawn& drawn, bool& sound);

 private:
  struct Made {
    PartShape shape;
    Drawn drawn = Drawn::All;
    bool sound = true;
  };
  bool m_areDrawn;
  std::unordered_map<const TopoDS_TShape*, int> m_uses;
  std::map<std::pair<const TopoDS_TShape*, int>, Made> m_made;  // by orientation too
};

/// The exchange form of a shape.
std::string BrepOf(const TopoDS_Shape& shape);

/// A colour of the library as the screen shows it.
COLORREF RgbOf(const Quantity_Color& colour);
/// The other way.
Quantity_Color ColourOf(COLORREF rgb);

/// The shape of an exchange form; null when it is none.
TopoDS_Shape ShapeOf(const std::string& brep);

}  // namespace qd::workbench
