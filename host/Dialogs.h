#pragma once

#include <map>
#include <vector>

#include "host/CQDDocBase.h"
#include "platform/Export.h"

namespace qd {

/// What the dialogs on shapes get: the type of the operation's operands and their keys.
struct tagTGeomGUI {
  int type = 0;
  std::vector<iterator> keys;
};

/// What the dialogs on meshes get.
struct tagTMeshGUI {
  std::vector<iterator> targets;  ///< parts to mesh
  bool remesh = false;            ///< in place of the mesh of a set
  void Init() { *this = {}; }
};

/// What the dialog on coordinate systems gets. The iterator follows the mode without a gap.
#pragma pack(push, 4)
struct tagTCordGUI {
  static constexpr std::uint32_t kEdit = 1;
  std::uint32_t mode = 0;
  iterator itr = 0;  ///< the system to edit
};
#pragma pack(pop)
static_assert(sizeof(tagTCordGUI) == 12, "the host reads the iterator behind four bytes");

/// A family of the host's dialogs. The host makes one object, which registers itself.
template <typename Family>
class QD_EXPORT IHostDialogs {
 public:
  IHostDialogs();
  virtual ~IHostDialogs();
  IHostDialogs(const IHostDialogs&) = delete;
  IHostDialogs& operator=(const IHostDialogs&) = delete;

  /// Opens a dialog by its class name, modeless. What the pointers refer to, the last command and its index are
  /// copied before the call returns; what the pointers are depends on the dialog. Without a host nothing happens.
  static void DoModeless(CQDDocBase* doc, const CString& dialogClass, const void* first, const void* second);

 protected:
  virtual void Open(CQDDocBase* doc, const CString& dialogClass, const void* first, const void* second) = 0;
};

extern template class QD_EXPORT IHostDialogs<struct GeometryDialogs>;
extern template class QD_EXPORT IHostDialogs<struct MeshDialogs>;
extern template class QD_EXPORT IHostDialogs<struct CommandDialogs>;

/// Dialogs on shapes: they get a tagTGeomGUI or nothing.
using IGeomDialog = IHostDialogs<struct GeometryDialogs>;
/// Dialogs on meshes: they get a tagTMeshGUI, or the iterator of a mesh set, or nothing.
using IQDMeshgDialog = IHostDialogs<struct MeshDialogs>;
/// Dialogs on other records: they get a tagTCordGUI, or nothing for a new record.
using IQDCmdDialog = IHostDialogs<struct CommandDialogs>;

/// The last menu command, for dialogs that serve several, and what menus note about a command.
class QD_EXPORT IQueryMenuID2Idx {
 public:
  static IQueryMenuID2Idx& Instance();

  void SetMenuID(unsigned command, int index) { m_indexes[command] = index; }
  /// 0 for a command that nothing was noted about.
  int GetIndex(unsigned command) const;
  void SetLastCommand(unsigned command) { m_lastCommand = command; }
  unsigned GetLastCommand() const { return m_lastCommand; }

 private:
  std::map<unsigned, int> m_indexes;
  unsigned m_lastCommand = 0;
};

}  // namespace qd
