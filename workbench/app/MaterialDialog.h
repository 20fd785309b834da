#pragma once

#include <QDialog>
#include <vector>

#include "workbench/app/NumberField.h"
#include "workbench/session/FollowedWork.h"

class QComboBox;
class QLineEdit;
class QLabel;

namespace qd::workbench {

/// Makes and edits isotropic materials and applies them to parts.
class MaterialDialog final : public QDialog {
 public:
  /// Works on these parts until something else is selected, then on what is.
  MaterialDialog(WorkDocument& doc, std::vector<iterator> parts, QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void ShowParts();
  void FollowRecords(const CQDUpdateRecord& record);
  void ListMaterials(iterator chosen);
  void ShowChosen();
  /// Stores what is entered and applies it to the parts, as one act; what was not taken stays as it was entered.
  void Apply();
  /// `material` is 0 for a new one, and is then filled in.
  bool Store(iterator& material, const tagTMaterial& record);
  iterator Chosen() const;

  WorkDocument& m_doc;
  FollowedWork m_parts;
  Subscription m_onRecords;
  QLabel* m_named;  // all are owned by this dialog
  QComboBox* m_list;
  QLineEdit* m_name;
  NumberRow* m_young;
  NumberRow* m_poisson;
  NumberRow* m_density;
  QLabel* m_fault;
};

}  // namespace qd::workbench
