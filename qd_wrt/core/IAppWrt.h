#pragma once

#include <cstdint>
#include <list>

#include "host/CQDDocBase.h"
#include "platform/Export.h"

namespace qd {

/// What the module asks of the host application as a whole. The host implements it once; a second object replaces
/// the first, and the end of either leaves none. The operations stand in the order of their slots.
class QD_EXPORT IAppWrt {
 public:
  virtual ~IAppWrt();  // 0
  IAppWrt(const IAppWrt&) = delete;
  IAppWrt& operator=(const IAppWrt&) = delete;

  /// Null until the host has made its object.
  static IAppWrt* Instance();

  /// 1: opens a host dialog by its class name. `data` is the caller's and is copied before the call returns.
  virtual void OpenDialog(int flag, CQDDocBase* doc, const CString& dialogClass, void* data) = 0;
  /// 2: closes a dialog; not called by the module.
  virtual void CloseDialog(CQDDocBase* doc, const CString& dialogClass) = 0;
  /// 3: opens a dialog of the mesh generator; arguments as for OpenDialog.
  virtual void OpenMeshDialog(int flag, CQDDocBase* doc, const CString& dialogClass, void* data) = 0;
  /// 4: closes a dialog of the mesh generator; not called by the module.
  virtual void CloseMeshDialog(CQDDocBase* doc, const CString& dialogClass) = 0;
  /// 5: shows the contacts of parts.
  virtual void SetSelectAssignedContact(CQDDocBase*, std::list<iterator>&) {}
  /// @{
  /// 6 to 9: the command by which the dialog of the mesh generator knows its mode, by method: automatic solid,
  /// mapped solid, 2-D to 3-D, layered automatic solid.
  virtual int GetMenuIndexOfAutoSolid() const = 0;
  virtual int GetMenuIndexOfMapSolid() const = 0;
  virtual int GetMenuIndexOf2D3D() const = 0;
  virtual int GetMenuIndexOfAutoLayer() const = 0;
  /// @}

 protected:
  IAppWrt();

 private:
  static IAppWrt* m_pInstance;
};

}  // namespace qd
