#pragma once

#include <QDialog>

#include "workbench/app/NumberField.h"
#include "workbench/display/WorkDocument.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace qd::workbench {

/// Makes coordinate systems and edits one. What is entered is checked as a whole before anything is stored.
class CordDialog final : public QDialog, public IQDCurrentDialog {
 public:
  /// `edited` is the system to edit, 0 for new ones.
  CordDialog(WorkDocument& doc, iterator edited, QWidget* parent);
  ~CordDialog() override;

  /// Lists the systems that there are now.
  void Update(int reserved) override;

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  void ShowRecord(const tagTCord& record);
  void ListParents(iterator chosen);
  /// Proposes a name for the next new system.
  void ProposeName();
  void FollowRecords(const CQDUpdateRecord& record);
  bool IsGone() const { return m_edited != 0 && m_doc.GetDatabase().GetDataType(m_edited) == 0; }
  tagTCord Entered() const;
  /// The key of what is wrong with what was entered, null for nothing.
  const char* FaultOf(const tagTCord& record) const;
  void Apply();
  CordPool& Pool() const { return m_doc.GetDatabase().GetCordPool(); }

  WorkDocument& m_doc;
  iterator m_edited;
  QString m_proposed;  // name of a new system
  Subscription m_onRecords;
  QLineEdit* m_name;  // all are owned by this dialog
  QComboBox* m_kind;
  QComboBox* m_parent;
  NumberRow* m_origin;
  NumberRow* m_xAxis;
  NumberRow* m_xyPlane;
  QLabel* m_outcome;
  QPushButton* m_apply;
};

}  // namespace qd::workbench
