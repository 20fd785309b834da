#pragma once

#include <QDialog>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "host/Dialogs.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/core/IAppWrt.h"
#include "workbench/app/OperationRunner.h"
#include "workbench/mesh/MeshChecks.h"

namespace qd::workbench {

/// Opens the dialogs that the works trees ask for by name. They are modeless and belong to the window.
class DialogHost final : public IAppWrt, public IGeomDialog, public IQDMeshgDialog, public IQDCmdDialog {
 public:
  DialogHost(WorkDocument& doc, OperationRunner& runner, QWidget* window);
  ~DialogHost() override;

  void OpenDialog(int flag, CQDDocBase* doc, const CString& dialogClass, void* data) override;
  void CloseDialog(CQDDocBase* doc, const CString& dialogClass) override;
  /// Closes all that are open.
  void CloseAll();
  /// Who shows what dialogs have to say of their acts.
  void SetOnSaid(std::function<void(const Message&)> said) { m_said = std::move(said); }
  void OpenCheck(MeshCheck check);
  void OpenContacts();
  void OpenColourRange();
  void OpenMeasure();
  void OpenMeshDialog(int flag, CQDDocBase* doc, const CString& dialogClass, void* data) override;
  void CloseMeshDialog(CQDDocBase* doc, const CString& dialogClass) override;
  /// Finds the contacts of parts.
  void SetSelectAssignedContact(CQDDocBase* doc, std::list<iterator>& parts) override;
  /// Layered and swept meshes are made anew as automatic ones; sweeping works on mesh sets, not on parts.
  int GetMenuIndexOfAutoSolid() const override { return kCommandMeshAuto3D; }
  int GetMenuIndexOfMapSolid() const override { return kCommandMeshMap3D; }
  int GetMenuIndexOf2D3D() const override { return kCommandMeshAuto3D; }
  int GetMenuIndexOfAutoLayer() const override { return kCommandMeshAuto3D; }

 protected:
  void Open(CQDDocBase* doc, const CString& dialogClass, const void* first, const void* second) override;

 private:
  /// `set` is the mesh set that is to be made anew, if any.
  void OpenMeshing(const CString& dialogClass, const tagTMeshGUI& arguments, const iterator* set);
  void OpenColour(const CString& dialogClass, iterator record);
  void Show(QDialog* dialog, const CString& dialogClass);
  std::vector<iterator> PartsOfKeys(const std::vector<iterator>& keys) const;

  WorkDocument& m_doc;
  OperationRunner& m_runner;
  QWidget* m_window;
  std::function<void(const Message&)> m_said;
  std::map<CString, QPointer<QDialog>> m_open;
};

}  // namespace qd::workbench
