#pragma once

#include <vector>

#include "host/Types.h"

namespace qd {

/// What the application's own database knows beyond the pools.
class IAppDB {
 public:
  struct Material {
    CString label;
    iterator itr = 0;
  };
  /// All materials, in the order in which menus list them.
  virtual std::vector<Material> ListMaterials() const = 0;
  /// 1 when a part is a flexible body; 0 for a rigid one and for what is no solid.
  virtual int IsFlexibleBody(iterator geom) const = 0;
  /// Sets the body type of parts inside the open transaction. Returns 1, 0 on failure.
  virtual int SetBodyType(const std::vector<iterator>& geoms, int flexible) = 0;

 protected:
  ~IAppDB() = default;
};

}  // namespace qd
