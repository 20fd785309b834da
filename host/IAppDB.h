#pragma once

#include <functional>
#include <vector>

#include "host/Types.h"

namespace qd {

/// Called now and then during long work with the share done, 0 to 1; false asks the work to stop.
using ProgressCall = std::function<bool(double done)>;

/// What the application's own database knows beyond the pools.
class IAppDB {
 public:
  /// A line of a menu of materials.
  struct Material {
    CString label;     ///< what the menu shows
    iterator itr = 0;  ///< the record
  };
  /// What rows and pages show of a property of elements.
  struct Property {
    std::int32_t number = 0;          ///< shown to the user, 0 none
    CString name;                     ///< may be empty
    bool hasMaterial = false;         ///< whether the next two say anything
    std::int32_t materialNumber = 0;  ///< shown to the user, 0 none
    CString materialName;             ///< may be empty
  };
  /// What GetMassCentre finds.
  struct MassCentre {
    double mass = 0;         ///< model units
    double centre[3] = {0};  ///< likewise; the origin for a set without mass
  };
  /// All materials, in the order in which menus list them.
  virtual std::vector<Material> ListMaterials() const = 0;
  /// The parts that name a material, oldest first.
  virtual std::vector<iterator> GetPartsOfMaterial(iterator material) const = 0;
  /// 1 when a part is a flexible body; 0 for a rigid one and for what is no solid.
  virtual int IsFlexibleBody(iterator geom) const = 0;
  /// Sets the body type of parts inside the open transaction. Returns 1, 0 on failure.
  virtual int SetBodyType(const std::vector<iterator>& geoms, int flexible) = 0;
  /// Describes a property of elements. Returns 1; 0 with `property` as it was when there is none.
  virtual int GetProperty(iterator itr, Property& property) const = 0;
  /// Sums up the elements of a mesh set, those of nested sets left out. Returns 1; 0 when there is no such set or
  /// the work was stopped.
  virtual int GetMassCentre(iterator mset, MassCentre& result, const ProgressCall& progress) const = 0;

 protected:
  ~IAppDB() = default;
};

}  // namespace qd
