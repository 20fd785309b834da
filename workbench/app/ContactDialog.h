#pragma once

#include <QDialog>
#include <vector>

#include "workbench/app/NumberField.h"
#include "workbench/app/WorkBeside.h"
#include "workbench/mesh/PartContacts.h"
#include "workbench/session/FollowedWork.h"

class QProgressBar;
class QPushButton;
class QTreeWidget;
class QVBoxLayout;

namespace qd::workbench {

/// Finds which parts touch the selected ones, or each other, and lists the pairs: one is selected, shown alone or
/// looked at from near, and all are copied as text. It is modeless and follows the selection.
class ContactDialog final : public QDialog {
  Q_OBJECT

 public:
  ContactDialog(WorkDocument& doc, QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void AddButtons(QVBoxLayout& layout);
  void Find();
  void Take(const PartContacts& found);
  void List();
  void ShowWork();
  void ShowWanted();
  /// The parts of the rows that are selected in the list, those that are still there.
  std::vector<iterator> Chosen() const;
  void SelectChosen();
  void ShowChosen();
  void Copy() const;

  WorkDocument& m_doc;
  FollowedWork m_worked;
  WorkBeside m_work;
  Subscription m_onRecords;
  std::vector<iterator> m_wanted;  // that are worked on
  std::vector<iterator> m_chosen;  // the selection that was made here, which is no work of its own
  std::vector<iterator> m_parts;   // that were looked at
  std::vector<std::shared_ptr<const PartShape>> m_shapes;  // of these; with another one contacts are others
  PartContacts m_found;
  NumberRow* m_tolerance = nullptr;  // all are owned by this dialog
  ToldLabel* m_named = nullptr;
  ToldLabel* m_outcome = nullptr;
  QTreeWidget* m_list = nullptr;
  QProgressBar* m_progress = nullptr;
  QPushButton* m_find = nullptr;
  QPushButton* m_stop = nullptr;
  std::vector<QPushButton*> m_onChosen;
};

}  // namespace qd::workbench
