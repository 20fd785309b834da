#pragma once

#include "host/IPropertySet.h"
#include "platform/Export.h"

namespace qd {

/// The page of one part: name, colour, material and body type, which can be changed, and its measures.
class QD_EXPORT CPropertySetGeom final : public IPropertySet {
 public:
  CPropertySetGeom(CQDDocBase* doc, iterator itr);  ///< the page of a part

  void ShowProperty() override;
  void OnPropertyChanged(CBCGPProp* row, std::uint64_t data) override;

 private:
  void ApplyMaterial(const CString& label);
  void AddOrigin(CBCGPProp* parent, const tagTGeom& record);
  void AddMeasures(CBCGPProp* parent, const tagTGeom& record);
};

}  // namespace qd
