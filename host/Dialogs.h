#pragma once

#include <vector>

#include "host/CQDDocBase.h"
#include "platform/Export.h"

namespace qd {

/// What the dialogs on shapes get: the type of the operation's operands and their keys.
struct tagTGeomGUI {
  int type = 0;
  std::vector<iterator> keys;
};

/// The host's dialogs on shapes. The host makes one object, which registers itself.
class QD_EXPORT IGeomDialog {
 public:
  IGeomDialog();
  virtual ~IGeomDialog();
  IGeomDialog(const IGeomDialog&) = delete;
  IGeomDialog& operator=(const IGeomDialog&) = delete;

  /// Opens a dialog by its class name, modeless. What the pointers refer to is copied before the call returns;
  /// what they are depends on the dialog. Without a host nothing happens.
  static void DoModeless(CQDDocBase* doc, const CString& dialogClass, const void* first, const void* second);

 protected:
  virtual void Open(CQDDocBase* doc, const CString& dialogClass, const void* first, const void* second) = 0;
};

/// The last menu command, for dialogs that serve several.
class QD_EXPORT IQueryMenuID2Idx {
 public:
  static void SetMenuID(unsigned command);
  static unsigned GetMenuID();
};

}  // namespace qd
