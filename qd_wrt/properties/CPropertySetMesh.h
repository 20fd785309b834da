#pragma once

#include <vector>

#include "host/IPropertySet.h"
#include "host/Records.h"
#include "platform/Export.h"

namespace qd {

/// The page of one mesh set, whose name and colour can be changed, or of several, of which it shows the sums.
/// Elements and nodes are those of a set with all that is nested in it.
class QD_EXPORT CPropertySetMesh final : public IPropertySet {
 public:
  /// The page of one set.
  CPropertySetMesh(CQDDocBase* doc, iterator itr, std::uint16_t dataType) : IPropertySet(doc, itr, dataType) {}
  /// From now on the page is that of several sets.
  void SetSets(TArray<iterator> sets) { m_sets = std::move(sets); }

  void ShowProperty() override;
  /// Writes name and colour, if they were changed, in one transaction. A name that is in use is ignored.
  void ApplyProperty() override;
  void OnPropertyChanged(CBCGPProp* row, std::uint64_t data) override;
  /// A click on mass or centre computes all of them.
  void CalProp(CBCGPProp* row) override;

  void ShowMultiProperty(TArray<iterator>& sets);  ///< makes the rows of several sets
  /// Forgets the rows, which RemoveAllProperties takes away.
  void Clear();
  /// Computes the mass and its centre and writes them into their rows; a stopped computation leaves them empty.
  void InputMassCenter();
  /// @{
  /// Adds the rows of a method of the generator below its title: of each parameter that the generator was given.
  void ShowAutoSolid(const tagMGInfo& generation) { AddParameters(generation, tagMGInfo::kAutoSolid); }
  void ShowMapSolid(const tagMGInfo& generation) { AddParameters(generation, tagMGInfo::kMapSolid); }
  void Show2D3D(const tagMGInfo& generation) { AddParameters(generation, tagMGInfo::k2D3D); }
  void ShowAutoLayer(const tagMGInfo& generation) { AddParameters(generation, tagMGInfo::kAutoLayer); }
  /// @}
  /// The page never meshes anew; that is the dialogs'. Always 1.
  int PerformRemesh() { return 1; }
  /// Whether the user has changed a row of the mesh generation since the page was made.
  bool IsGenerationChanged() const { return m_generationChanged; }
  bool IsCalculating() const { return m_calculating; }  ///< whether mass and centre are being computed

 private:
  void AddIdentity(CBCGPProp* title, const tagTMset& record);
  void AddExtent(CBCGPProp* title, const std::vector<iterator>& sets);
  void AddProperty(CBCGPProp* title, const tagTMset& record);
  void AddMass();
  void AddGeneration(const tagTMset& record);
  void AddParameters(const tagMGInfo& generation, int method);
  CBCGPProp* AddNumber(CBCGPProp* title, const char* key, const char* description, std::uint64_t number);

  TArray<iterator> m_sets;
  bool m_calculating = false;
  bool m_generationChanged = false;
  // Rows that are read or written later; null while they are not there.
  CBCGPProp* m_name = nullptr;
  CBCGPProp* m_colour = nullptr;
  CBCGPProp* m_mass[4] = {};  // mass, then its centre
  CBCGPProp* m_generationTitle = nullptr;
  std::vector<const CBCGPProp*> m_generation;
};

}  // namespace qd
