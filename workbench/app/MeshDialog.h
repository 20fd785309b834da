#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "workbench/app/DialogFrame.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/model/MeshActs.h"
#include "workbench/session/FollowedWork.h"

class QComboBox;
class QLabel;
class QLineEdit;

namespace qd::workbench {

/// A modeless dialog that works on nodes, elements and mesh sets. Each press of its button is one undoable act; it
/// stays open, so that a step can be repeated.
class MeshDialog final : public DialogFrame, public IQDCurrentDialog {
 public:
  MeshDialog(WorkDocument& doc, const char* titleKey, QWidget* parent);
  ~MeshDialog() override;

  /// Lists the mesh sets anew.
  void Update(int reserved) override;

  // What there is to enter, from top to bottom; the fields belong to the dialog.
  /// The set that the dialog is about; when it is gone there is nothing to do.
  void SetOwn(iterator mset) { m_own = mset; }
  /// `without` is a set that is not offered, 0 for none.
  QComboBox* AddSetField(const char* key, bool withDefault, iterator without = 0);
  QComboBox* AddTypeField();
  QLineEdit* AddTextField(const char* key, const char* hintKey);
  using DialogFrame::AddNumbers;
  /// Acts are done to the mesh sets that are selected, or to all: a line names them, and without any there is
  /// nothing to do.
  void AddSetsInView();
  std::vector<iterator> SetsInView() const { return m_worked->Records(); }
  /// A line that is made anew with every update.
  void AddInfo(std::function<void(QLabel&)> info);
  /// A button that runs an act, when all numbers are good; what came of it is shown below. `doneKey` gets the
  /// number of the result. `text` is the field that is wrong when numbers in it are, null for none.
  void AddMeshAct(const char* key, const char* name, const char* doneKey,
                  std::function<ActResult(const CString&)> act, QLineEdit* text = nullptr);
  /// Closes the list of fields.
  void FinishFields();

 protected:
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  struct SetField {
    QComboBox* box;
    bool withDefault;
    iterator without;
    iterator chosen = 0;     // perhaps gone
    bool hasChosen = false;  // there was one to choose
  };
  void ListSets(SetField& field);
  void ShowSetsInView();
  /// Says why there is nothing to do, if so; then nothing can be applied.
  void ShowWork();
  /// The key of why, null when there is something.
  const char* Hindrance() const;

  WorkDocument& m_doc;
  iterator m_own = 0;
  std::vector<SetField> m_sets;
  std::vector<std::pair<QLabel*, std::function<void(QLabel&)>>> m_infos;
  ToldLabel* m_named = nullptr;            // where acts are done to sets
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
