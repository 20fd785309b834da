#pragma once

#include <unordered_map>

#include "workbench/app/DialogFrame.h"
#include "workbench/display/WorkDocument.h"

class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace qd::workbench {

/// Moves parts into a geometry set and out of it. Parts that leave go to another set.
class IncludeExcludeDialog final : public DialogFrame {
 public:
  IncludeExcludeDialog(WorkDocument& doc, iterator gset, QWidget* parent);

 private:
  void Place(iterator part);
  void FollowRecords(const CQDUpdateRecord& record);
  void RefreshButtons();
  void Move(const QListWidget& from, iterator to);
  /// Where parts that are excluded go: the current set, or the first other one; 0 when there is none.
  iterator OtherSet() const;

  WorkDocument& m_doc;
  iterator m_gset;
  QListWidget* m_outside;  // owned by this dialog
  QListWidget* m_inside;
  QPushButton* m_include;
  QPushButton* m_exclude;
  ToldLabel* m_work;
  std::unordered_map<iterator, QListWidgetItem*> m_items;  // by part; owned by the lists
  Subscription m_onRecords;
};

}  // namespace qd::workbench
