#pragma once

#include <QDialog>
#include <array>
#include <vector>

#include "workbench/app/OperationRunner.h"

class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QPushButton;

namespace qd::workbench {

/// What a dialog on shapes asks for and does.
struct OperationForm {
  const char* titleKey;
  ShapeOperationKind kind;
  const char* pointKey = nullptr;   ///< null: not asked for
  const char* vectorKey = nullptr;  ///< likewise
  std::array<double, 3> vector{0, 0, 1};
  const char* amountKey = nullptr;
  double amount = 1;
  bool target = false;     ///< another part takes part
  bool alignment = false;  ///< the way follows from how two boxes are brought together
  bool solidsOnly = false;
};

/// A modeless dialog that works on parts. It stays open, so that a step can be repeated.
class OperationDialog final : public QDialog {
 public:
  OperationDialog(WorkDocument& doc, OperationRunner& runner, const OperationForm& form,
                  std::vector<iterator> parts, QWidget* parent);

 private:
  using Triple = std::array<QDoubleSpinBox*, 3>;

  Triple AddTriple(QFormLayout& layout, const char* key, const std::array<double, 3>& values);
  void Apply();
  /// The way that brings the parts to the target as chosen.
  std::array<double, 3> AlignmentWay() const;

  WorkDocument& m_doc;
  OperationRunner& m_runner;
  OperationForm m_form;
  std::vector<iterator> m_parts;
  Triple m_point{};
  Triple m_vector{};
  QDoubleSpinBox* m_amount = nullptr;  // all are owned by this dialog
  QComboBox* m_target = nullptr;
  QComboBox* m_alignment = nullptr;
  QPushButton* m_apply = nullptr;
};

}  // namespace qd::workbench
