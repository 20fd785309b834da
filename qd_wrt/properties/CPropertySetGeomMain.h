#pragma once

#include <memory>

#include "host/IPropertySet.h"
#include "platform/Export.h"
#include "qd_wrt/properties/IGeomDisplayModes.h"

namespace qd {

/// The page of a geometry root: how all parts are coloured and titled. A choice takes effect at once.
class QD_EXPORT CPropertySetGeomMain final : public IPropertySet {
 public:
  /// `root` is not owned; once it is gone the page changes nothing.
  CPropertySetGeomMain(CQDDocBase* doc, iterator itr, std::uint16_t dataType, IGeomDisplayModes* root);

  void ShowProperty() override;
  void ApplyProperty() override {}
  void OnPropertyChanged(CBCGPProp* row, std::uint64_t data) override;
  void Clear();  ///< forgets the rows, which RemoveAllProperties takes away

 private:
  void ChangeColourMode(const CString& choice);
  void ChangeTitleMode(const CString& choice);

  CBCGPProp* m_title = nullptr;
  CBCGPProp* m_display = nullptr;
  CBCGPProp* m_colourMode = nullptr;
  CBCGPProp* m_titleMode = nullptr;
  IGeomDisplayModes* m_root;
  std::weak_ptr<void> m_rootLife;
};

}  // namespace qd
