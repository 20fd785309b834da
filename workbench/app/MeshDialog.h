#pragma once

#include <QDialog>
#include <functional>
#include <memory>
#include <vector>

#include "workbench/app/NumberField.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/model/MeshActs.h"
#include "workbench/session/FollowedWork.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace qd::workbench {

/// A modeless dialog that works on nodes, elements and mesh sets. Each press of its button is one undoable act; it
/// stays open, so that a step can be repeated.
class MeshDialog final : public QDialog, public IQDCurrentDialog {
 public:
  MeshDialog(WorkDocument& doc, const char* titleKey, QWidget* parent);
  ~MeshDialog() override;

  /// Lists the mesh sets anew.
  void Update(int reserved) override;

  // What there is to enter, from top to bottom; the fields belong to the dialog.
  /// `without` is a set that is not offered, 0 for none.
  QComboBox* AddSetField(const char* key, bool withDefault, iterator without = 0);
  QComboBox* AddTypeField();
  QLineEdit* AddTextField(const char* key, const char* hintKey);
  NumberRow* AddNumbers(const char* key, const std::vector<double>& values, const NumberKind& kind) {
    return workbench::AddNumbers(*m_layout, key, values, kind);
  }
  /// Acts are done to the mesh sets that are selected, or to all: a line names them, and without any there is
  /// nothing to do.
  void AddSetsInView();
  std::vector<iterator> SetsInView() const { return m_worked->Records(); }
  /// A line that is made anew with every update.
  void AddInfo(std::function<void(QLabel&)> info);
  /// A button that runs an act, when all numbers are good; what came of it is shown below. `doneKey` gets the
  /// number of the result.
  void AddAct(const char* key, const char* name, const char* doneKey,
              std::function<ActResult(const CString&)> act);
  /// Closes the list of fields.
  void Finish();

 protected:
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  struct SetField {
    QComboBox* box;
    bool withDefault;
    iterator without;
  };
  void ShowSetsInView();
  bool HasWork() const { return m_worked == nullptr || m_worked->Count() != 0; }

  WorkDocument& m_doc;
  QFormLayout* m_layout;
  QLabel* m_outcome;
  std::vector<SetField> m_sets;
  std::vector<std::pair<QLabel*, std::function<void(QLabel&)>>> m_infos;
  std::vector<QWidget*> m_buttons;
  QLabel* m_named = nullptr;               // where acts are done to sets
  std::unique_ptr<FollowedWork> m_worked;  // likewise
  Subscription m_onRecords;
};

/// The mesh set chosen in a field, 0 for the default one.
iterator ChosenSet(const QComboBox& field);

/// The dialogs on meshes by class name; null for a name that is none of theirs. `mset` is the set that the dialog
/// is opened for, `command` the one that opened it.
MeshDialog* MakeMeshDialog(WorkDocument& doc, const CString& dialogClass, iterator mset, unsigned command,
                           QWidget* parent);

}  // namespace qd::workbench
