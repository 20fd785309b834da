#pragma once

#include "host/Dialogs.h"
#include "host/MessageOutput.h"
#include "host/ProductVariant.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/core/IAppWrt.h"
#include "support/Model.h"

namespace qd::test {

/// A model with geometry sets, materials and meshes, in the model tree or the geometry-set tree.
class GeometryTest : public ModelTest {
 protected:
  ~GeometryTest() override { SetProductVariant(ProductVariant::Standard); }

  iterator AddMesh(iterator part) {
    iterator mesh = 0;
    Act([&] {
      tagTMset record;
      record.geom = part;
      record.key = 0xE0000000U + static_cast<std::uint32_t>(Data().GetMsetPool().NextNumber());
      mesh = Data().GetMsetPool().Add(record);
    });
    return mesh;
  }
  bool IsShown(iterator part) { return m_doc.GetDisplay().Parts().GetLook(Part(part).cadItem).shown; }
};

}  // namespace qd::test
