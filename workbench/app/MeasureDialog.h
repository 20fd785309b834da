#pragma once

#include <QDialog>
#include <QTimer>

#include "workbench/app/ToldLabel.h"
#include "workbench/app/WorkBeside.h"
#include "workbench/session/FollowedWork.h"
#include "workbench/session/MeasurePicks.h"

class QTreeWidget;

namespace qd::workbench {

/// What is picked in the view measures, or else what the selected parts and mesh sets do; always that of now. It
/// is copied as text, and the view shows where distances, radii and angles are.
class MeasureDialog final : public QDialog {
  Q_OBJECT

 public:
  MeasureDialog(WorkDocument& doc, QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  struct Result;
  struct Rows;
  void Later();
  void Measure();
  void MeasurePicked();
  void Show(const Result& result);
  void ShowPicked(const PicksMeasure& measure, std::size_t count);
  /// What there is to be said below the list; null for nothing.
  void Note(const char* key, const QStringList& arguments = {});
  void Copy() const;

  WorkDocument& m_doc;
  FollowedWork m_parts;
  FollowedWork m_sets;
  WorkBeside m_work;
  QTimer m_later;
  Subscription m_onRecords;
  Subscription m_onPicks;
  ToldLabel* m_named;  // both are owned by this dialog
  QTreeWidget* m_list;
  ToldLabel* m_note;
};

}  // namespace qd::workbench
