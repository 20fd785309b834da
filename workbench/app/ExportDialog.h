#pragma once

#include "workbench/app/DialogFrame.h"
#include "workbench/app/ExportScope.h"

class QButtonGroup;
class QLineEdit;

namespace qd::workbench {

/// Asks what is to be written, and to which file; the ending of its name tells the format.
class ExportDialog final : public DialogFrame {
 public:
  /// `path` is the name that it begins with.
  ExportDialog(WorkDocument& doc, const QString& path, QWidget* parent);

  ExportScope Scope() const;
  QString Path() const;
  /// Asks before a file that is there is replaced, unless the file dialog has asked already.
  void accept() override;

 private:
  void AddScope(ExportScope scope, const char* key);
  void Browse();
  /// Says what is wrong with the name, and lets go on when nothing is.
  void Check();

  WorkDocument& m_doc;
  QButtonGroup* m_scopes;  // these belong to the dialog
  QLineEdit* m_path;
  QString m_agreed;  // a file that may be replaced
};

}  // namespace qd::workbench
