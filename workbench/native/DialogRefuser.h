#pragma once

#include "host/Dialogs.h"
#include "host/MessageOutput.h"
#include "qd_wrt/core/IAppWrt.h"

namespace qd::workbench {

/// This program has none of the dialogs that the works trees ask for: it says so.
class DialogRefuser final : public IAppWrt, public IGeomDialog, public IQDMeshgDialog, public IQDCmdDialog {
 public:
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
  void Open(CQDDocBase*, const CString& dialogClass, const void*, const void*) override { Refuse(dialogClass); }

 private:
  static void Refuse(const CString& dialogClass);
};

}  // namespace qd::workbench
