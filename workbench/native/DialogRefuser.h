#pragma once

#include "host/Dialogs.h"
#include "host/MessageOutput.h"
#include "qd_wrt/core/IAppWrt.h"
#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// Of the dialogs that the works trees ask for this program has the one for colours; of the others it says that it
/// has none.
class DialogRefuser final : public IAppWrt, public IGeomDialog, public IQDMeshgDialog, public IQDCmdDialog {
 public:
  explicit DialogRefuser(WorkDocument& doc) : m_doc(doc) {}
  void OpenDialog(int, CQDDocBase*, const CString& dialogClass, void*) override { Refuse(dialogClass); }
  void CloseDialog(CQDDocBase*, const CString&) override {}
  void OpenMeshDialog(int, CQDDocBase*, const CString& dialogClass, void*) override { Refuse(dialogClass); }
  void CloseMeshDialog(CQDDocBase*, const CString&) override {}
  void SetSelectAssignedContact(CQDDocBase*, std::list<iterator>& parts) override;
  int GetMenuIndexOfAutoSolid() const override { return 0; }
  int GetMenuIndexOfMapSolid() const override { return 0; }
  int GetMenuIndexOf2D3D() const override { return 0; }
  int GetMenuIndexOfAutoLayer() const override { return 0; }

 protected:
  void Open(CQDDocBase*, const CString& dialogClass, const void* first, const void*) override;

 private:
  static void Refuse(const CString& dialogClass);

  WorkDocument& m_doc;
};

}  // namespace qd::workbench
