#pragma once

#include "workbench/app/DialogFrame.h"
#include "workbench/display/WorkDocument.h"

class QComboBox;
class QLineEdit;

namespace qd::workbench {

/// Makes coordinate systems and edits one. What is entered is checked as a whole before anything is stored.
class CordDialog final : public DialogFrame, public IQDCurrentDialog {
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
  void ListParents();
  /// Says what is gone; nothing can be applied then.
  void ShowGone();
  /// Proposes a name for the next new system.
  void ProposeName();
  void FollowRecords(const CQDUpdateRecord& record);
  /// The key of what is gone, null for nothing.
  const char* Gone() const;
  tagTCord Entered() const;
  /// Tells what is wrong with what was entered, where it is wrong. False for nothing.
  bool TellFaultOf(const tagTCord& record);
  void Apply();
  CordPool& Pool() const { return m_doc.GetDatabase().GetCordPool(); }

  WorkDocument& m_doc;
  iterator m_edited;
  iterator m_base = 0;  // chosen, perhaps gone
  QString m_proposed;   // name of a new system
  Subscription m_onRecords;
  QLineEdit* m_name;  // all are owned by this dialog
  QComboBox* m_kind;
  QComboBox* m_parent;
  NumberRow* m_origin;
  NumberRow* m_xAxis;
  NumberRow* m_xyPlane;
  ToldLabel* m_work;
};

}  // namespace qd::workbench
