#pragma once

#include <QDialog>

#include "workbench/display/WorkDocument.h"

class QListWidget;

namespace qd::workbench {

/// Moves parts into a geometry set and out of it. Parts that leave go to another set.
class IncludeExcludeDialog final : public QDialog {
 public:
  IncludeExcludeDialog(WorkDocument& doc, iterator gset, QWidget* parent);

 private:
  void ListParts();
  void Move(const QListWidget& from, iterator to);
  /// Where parts that are excluded go: the current set, or the first other one; 0 when there is none.
  iterator OtherSet() const;

  WorkDocument& m_doc;
  iterator m_gset;
  QListWidget* m_outside;  // owned by this dialog
  QListWidget* m_inside;
};

}  // namespace qd::workbench
