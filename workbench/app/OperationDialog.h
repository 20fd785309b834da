#pragma once

#include <QDialog>
#include <array>
#include <vector>

#include "workbench/app/NumberField.h"
#include "workbench/app/OperationRunner.h"
#include "workbench/session/FollowedWork.h"

class QCheckBox;
class QComboBox;
class QPushButton;

namespace qd::workbench {

/// What a dialog on shapes asks for and does.
struct OperationForm {
  const char* titleKey;
  ShapeOperationKind kind;
  const char* pointKey = nullptr;   ///< null: not asked for
  const char* vectorKey = nullptr;  ///< likewise
  std::vector<double> vector{0, 0, 1};
  NumberKind vectorKind = NumberKinds::kDirection;
  const char* amountKey = nullptr;
  double amount = 1;
  NumberKind amountKind{};
  bool target = false;     ///< another part takes part
  bool alignment = false;  ///< the way follows from how two boxes are brought together
  bool solidsOnly = false;
  int dimension = 3;         ///< of a mesh
  bool mapped = false;       ///< likewise
  bool secondOrder = false;  ///< what is chosen at first
};

/// What a dialog on shapes works on when it opens, and then.
struct OperationParts {
  std::vector<iterator> given;  ///< at first, where the dialog was opened for them
  bool follows = true;          ///< what is selected from then on
  bool elseAll = false;         ///< what is selected from the start, all that is shown when nothing is
};

/// A modeless dialog that works on parts. It stays open, so that a step can be repeated, names what it works on
/// and follows the selection.
class OperationDialog final : public QDialog {
 public:
  OperationDialog(WorkDocument& doc, OperationRunner& runner, const OperationForm& form, OperationParts parts,
                  QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Apply();
  void ListTargets();
  iterator Target() const;
  /// Leaves the chosen target out of what is worked on.
  void TakeTarget();
  /// Says what there is to work on now.
  void ShowParts();
  /// The way that brings the parts to the target as chosen.
  std::array<double, 3> AlignmentWay() const;

  WorkDocument& m_doc;
  OperationRunner& m_runner;
  OperationForm m_form;
  FollowedWork m_parts;
  Subscription m_onRecords;
  NumberRow* m_point = nullptr;  // all are owned by this dialog
  NumberRow* m_vector = nullptr;
  NumberRow* m_amount = nullptr;
  QComboBox* m_target = nullptr;
  QCheckBox* m_secondOrder = nullptr;
  QComboBox* m_alignment = nullptr;
  QLabel* m_named = nullptr;
  QPushButton* m_apply = nullptr;
};

}  // namespace qd::workbench
