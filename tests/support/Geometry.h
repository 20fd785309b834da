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

  iterator AddSet(const CString& name) {
    iterator set = 0;
    Act([&] {
      tagTGset record;
      record.name = name;
      set = Data().GetGsetPool().Add(record);
    });
    return set;
  }
  iterator AddPartTo(iterator set, const CString& name, TopologyKind kind = TopologyKind::Solid) {
    iterator part = 0;
    Act([&] {
      tagTGeom record;
      record.name = name;
      record.kind = kind;
      record.gset = set;
      record.cadItem = Data().GetGeomPool().NextNumber();
      part = Data().GetGeomPool().Add(record);
    });
    return part;
  }
  iterator AddMaterial(const CString& name) {
    iterator material = 0;
    Act([&] {
      tagTMaterial record;
      record.name = name;
      material = Data().GetMaterialPool().Add(record);
    });
    return material;
  }
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
  const tagTGeom& Part(iterator itr) { return *Data().GetGeomPool().GetAtNU(itr); }
  bool IsShown(iterator part) { return m_doc.GetDisplay().GetCadItem(Part(part).cadItem).shown; }
};

}  // namespace qd::test
