#pragma once

#include <memory>

#include "host/IPropertySet.h"
#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// What is selected, in a few words: "Parts: 3, Mesh sets: 1". Empty for nothing.
CString SelectionText(WorkDocument& doc);
/// Message key of what stands in place of a page where there is none.
const char* EmptyPageKey(const WorkDocument& doc);

/// The property page of what is selected, where the works trees have none of their own: of geometry sets,
/// materials, coordinate systems and several parts; else how many of what there are. What is changed is changed in
/// all that are selected, as one act; values that are not the same in all of them are shown as such.
class SelectionPage final : public IPropertySet {
 public:
  explicit SelectionPage(WorkDocument& doc) : IPropertySet(&doc, 0, 0), m_document(doc) { ShowApplyBtn(0); }
  /// The page of the selection, or of the document itself while nothing is selected. Null for nothing to show.
  static std::unique_ptr<IPropertySet> For(WorkDocument& doc);

  void ShowProperty() override;
  void OnPropertyChanged(CBCGPProp* row, std::uint64_t data) override;

 private:
  void ShowParts();
  void ShowSet(iterator itr);
  void ShowMaterials();
  void ShowSystem(iterator itr);
  void ShowCounts();
  /// The type of all selected records, 0 when they are of several.
  std::uint16_t CommonType() const;
  const std::vector<iterator>& Records() const { return m_document.GetSelection().records; }
  void ChangeParts(const CBCGPProp& row, std::uint64_t field);
  void ChangeMaterials(const CBCGPProp& row, std::uint64_t field);

  WorkDocument& m_document;
};

}  // namespace qd::workbench
