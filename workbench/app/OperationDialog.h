#pragma once

#include <array>
#include <vector>

#include "workbench/app/DialogFrame.h"
#include "workbench/app/OperationRunner.h"
#include "workbench/session/FollowedWork.h"

class QCheckBox;
class QComboBox;

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
  bool amountOfModel = false;  ///< see NumberField::SetValue
  bool target = false;         ///< another part takes part
  bool alignment = false;      ///< the way follows from how two boxes are brought together
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
class OperationDialog final : public DialogFrame {
 public:
  OperationDialog(WorkDocument& doc, OperationRunner& runner, const OperationForm& form, OperationParts parts,
                  QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  /// How two parts are brought together: by their boxes, or as somebody says.
  enum Alignment { kCentres, kOnTop, kLeastCorners, kByWay };
  void Apply();
  void ListTargets();
  iterator Target() const;
  /// Leaves the chosen target out of what is worked on.
  void TakeTarget();
  /// A size of elements that suits the parts, until somebody chooses another one.
  void OfferSize();
  /// Says what there is to work on now.
  void ShowParts();
  /// The way that brings the parts to the target as chosen.
  std::array<double, 3> AlignmentWay() const;

  WorkDocument& m_doc;
  OperationRunner& m_runner;
  OperationForm m_form;
  FollowedWork m_parts;
  iterator m_chosen = 0;     // target, perhaps gone
  bool m_hasChosen = false;  // there was one to choose
  Subscription m_onRecords;
  double m_offered = 0;          // size of elements
  NumberRow* m_point = nullptr;  // all are owned by this dialog
  NumberRow* m_vector = nullptr;
  NumberRow* m_amount = nullptr;
  NumberRow* m_way = nullptr;
  QComboBox* m_target = nullptr;
  QCheckBox* m_secondOrder = nullptr;
  QComboBox* m_alignment = nullptr;
  ToldLabel* m_named = nullptr;
  bool m_mine = false;  // what runs was begun here
};

}  // namespace qd::workbench
