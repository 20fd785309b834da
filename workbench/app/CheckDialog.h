#pragma once

#include <QDialog>
#include <QTimer>
#include <vector>

#include "workbench/app/Message.h"
#include "workbench/app/NumberField.h"
#include "workbench/app/WorkBeside.h"
#include "workbench/mesh/MeshChecks.h"
#include "workbench/session/FollowedWork.h"

class QComboBox;
class QFormLayout;
class QProgressBar;
class QPushButton;

namespace qd::workbench {

/// Looks through the selected mesh sets, or all that are shown, for one thing that can be wrong with them, again
/// whenever they are others, and makes a mesh set of what it has found. It is modeless and stays open.
class CheckDialog final : public QDialog {
  Q_OBJECT

 public:
  CheckDialog(WorkDocument& doc, MeshCheck check, QWidget* parent);

 signals:
  /// What came of an act.
  void Said(const qd::workbench::Message& message);

 protected:
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  MeshCheck Chosen() const;
  const QualityRule& Rule() const;
  void AddFields(QFormLayout& layout, MeshCheck check);
  void AddButtons(QFormLayout& layout);
  void ShowFields();
  /// Looks again, soon: several things may change at once.
  void LookLater();
  void Look();
  void Take(CheckResult found);
  void ShowWork();
  void ShowFound();
  void Apply();
  /// What the new mesh set is called.
  QString Name() const;

  WorkDocument& m_doc;
  FollowedWork m_worked;
  WorkBeside m_work;
  QTimer m_later;
  Subscription m_onRecords;
  std::vector<iterator> m_sets;   // that were looked at
  std::vector<MeshPtr> m_meshes;  // of them, as they were then
  CheckRequest m_request;         // that was looked for
  CheckResult m_found;
  QFormLayout* m_layout = nullptr;  // all are owned by this dialog
  QComboBox* m_check = nullptr;
  QComboBox* m_measure = nullptr;
  NumberRow* m_limit = nullptr;
  NumberRow* m_angle = nullptr;
  NumberRow* m_tolerance = nullptr;
  ToldLabel* m_named = nullptr;
  ToldLabel* m_outcome = nullptr;
  ToldLabel* m_range = nullptr;
  QProgressBar* m_progress = nullptr;
  QPushButton* m_apply = nullptr;
  QPushButton* m_stop = nullptr;
};

}  // namespace qd::workbench
