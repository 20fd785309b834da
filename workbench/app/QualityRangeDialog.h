#pragma once

#include "workbench/app/DialogFrame.h"
#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// From which value to which elements are coloured by their quality: as somebody types it, or as it comes.
class QualityRangeDialog final : public DialogFrame {
 public:
  QualityRangeDialog(WorkDocument& doc, QWidget* parent);

 private:
  void Apply();
  void Automatic();
  /// Proposes the range of a measure, from good to bad.
  void Follow();

  WorkDocument& m_doc;
  Subscription m_onDisplay;
  QualityMeasure m_measure = QualityMeasure::ScaledJacobian;
  ToldLabel* m_named;  // all are owned by this dialog
  NumberRow* m_least;
  NumberRow* m_greatest;
};

}  // namespace qd::workbench
