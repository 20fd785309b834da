#pragma once

#include <memory>

#include "host/IPropertySet.h"
#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// What is selected, in a few words: "Parts: 3, Mesh sets: 1". Empty for nothing.
CString SelectionText(WorkDocument& doc);

/// The property page of what is selected, where the works trees have none of their own: of a geometry set, a
/// material or a coordinate system; else how many of what there are.
class SelectionPage final : public IPropertySet {
 public:
  explicit SelectionPage(WorkDocument& doc) : IPropertySet(&doc, 0, 0), m_document(doc) { ShowApplyBtn(0); }
  /// The page of the selection, or of the document itself while nothing is selected. Null for nothing to show.
  static std::unique_ptr<IPropertySet> For(WorkDocument& doc);

  void ShowProperty() override;
  void OnPropertyChanged(CBCGPProp*, std::uint64_t) override {}  // nothing can be changed here

 private:
  void ShowSet(iterator itr);
  void ShowMaterial(iterator itr);
  void ShowSystem(iterator itr);
  void ShowCounts();

  WorkDocument& m_document;
};

}  // namespace qd::workbench
