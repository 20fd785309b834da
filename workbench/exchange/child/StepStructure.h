#pragma once

#include <TopLoc_Location.hxx>
#include <TopoDS_Shape.hxx>
#include <cstddef>
#include <string>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// A part that is written, with its shape in its place.
struct SolidPart {
  ExportedPart part;
  TopoDS_Shape shape;
};

/// A product of a file: bodies, or uses of other products. Products that are the same in all that a file says of
/// them are one, however often and wherever they are used.
struct StepProduct {
  struct OwnBody {
    std::string name;
    COLORREF colour = 0;
    TopLoc_Location place;  ///< in the product
    TopoDS_Shape shape;     ///< there; no other body's
  };
  struct Use {
    std::size_t product = 0;  ///< an earlier one
    std::string name;
    TopLoc_Location place;  ///< in this product
  };
  std::string name;
  std::vector<OwnBody> bodies;
  std::vector<Use> uses;
  TopoDS_Shape shape;  ///< the only body, or a compound of what it holds
};

/// The products of a file, each after those that it uses, and those that no other uses, in their places.
struct StepStructure {
  std::vector<StepProduct> products;
  std::vector<StepProduct::Use> roots;
};

/// Puts parts together as they came: bodies of one use of a product into that product, uses into their assemblies,
/// at any depth.
StepStructure StructureOf(std::vector<SolidPart> parts);

}  // namespace qd::workbench
