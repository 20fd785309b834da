#pragma once

#include <vector>

#include "workbench/app/DialogFrame.h"
#include "workbench/session/FollowedWork.h"
#include "workbench/text/MaterialLibrary.h"

class QComboBox;
class QLineEdit;

namespace qd::workbench {

/// Makes and edits isotropic materials and applies them to parts.
class MaterialDialog final : public DialogFrame {
 public:
  /// Edits a material, 0 for a new one. Works on these parts until something else is selected, then on what is.
  MaterialDialog(WorkDocument& doc, iterator material, std::vector<iterator> parts, QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void ShowParts();
  void FollowRecords(const CQDUpdateRecord& record);
  void ListMaterials();
  void ShowChosen();
  /// Fills in the values of a common material.
  void FillIn(int place);
  /// Whether the chosen material stands no more; then nothing can be applied.
  bool IsGone() const;
  /// Stores what is entered and applies it to the parts, as one act; what was not taken stays as it was entered.
  void Apply();
  /// `material` is 0 for a new one, and is then filled in.
  bool Store(iterator& material, const tagTMaterial& record);

  WorkDocument& m_doc;
  iterator m_chosen;
  FollowedWork m_parts;
  Subscription m_onRecords;
  ToldLabel* m_named;  // all are owned by this dialog
  QComboBox* m_list;
  QComboBox* m_library;
  std::vector<CommonMaterial> m_common;  // in the usual units
  QLineEdit* m_name;
  NumberRow* m_young;
  NumberRow* m_poisson;
  NumberRow* m_density;
};

}  // namespace qd::workbench
