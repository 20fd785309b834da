#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <vector>

#include "workbench/display/WorkDocument.h"
#include "workbench/model/Placement.h"

class QDialog;
class QToolButton;

namespace qd::workbench {

class NumberRow;

/// Lets the places and ways of a dialog be picked in the view: each has a button, and while one is down the next
/// picks are taken for it, until there is an answer. Escape ends that, wherever the focus is.
class PickedPlaces final : public QObject {
  Q_OBJECT

 public:
  /// `frame` says where the system stands in which the numbers are meant; null for that of the model.
  PickedPlaces(WorkDocument& doc, QDialog& dialog, std::function<Placement()> frame);
  ~PickedPlaces() override;

  /// A row that is no place and no way gets no button. A direction belongs to the place that was offered before
  /// it.
  void Offer(NumberRow& row);
  /// Takes no more picks.
  void End();

  bool eventFilter(QObject* watched, QEvent* event) override;

 signals:
  /// What is to be done now, or why a pick gives nothing, by its key; null for nothing to say.
  void Told(const char* key);

 private:
  struct Row {
    NumberRow* numbers;
    QToolButton* button;
    NumberRow* direction = nullptr;  // of a place
  };
  void Begin(Row& row);
  void Follow();
  /// Whether that was the answer.
  bool Take(const Picked& one);
  void Fill(NumberRow& numbers, Vector3 value, bool isPlace) const;
  void Ask();

  WorkDocument& m_doc;
  QDialog& m_dialog;
  std::function<Placement()> m_frame;
  std::vector<Row> m_rows;
  std::size_t m_awaiting = kNone;  // the row
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::optional<Vector3> m_first;         // of two points
  std::optional<PickFilter> m_oldFilter;  // what clicks took before, where that was changed
  PickFilter m_ownFilter = PickFilter::Points;
  Subscription m_onPicks;
};

}  // namespace qd::workbench
