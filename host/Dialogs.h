#pragma once

#include <map>
#include <vector>

#include "host/CQDDocBase.h"
#include "platform/Export.h"

namespace qd {

/// What the dialogs on shapes get: the type of the operation's operands and their keys.
struct tagTGeomGUI {
  int type = 0;                ///< number of the kind of operand; the dialog knows them
  std::vector<iterator> keys;  ///< the operands
};

/// What the dialogs on meshes get.
struct tagTMeshGUI {
  std::vector<iterator> targets;  ///< parts to mesh
  bool remesh = false;            ///< in place of the mesh of a set
  void Init() { *this = {}; }     ///< empties it
};

/// What the dialog on coordinate systems gets. The iterator follows the mode without a gap.
#pragma pack(push, 4)
struct tagTCordGUI {
  static constexpr std::uint32_t kEdit = 1;  ///< the mode that edits `itr`; any other makes a new system
  std::uint32_t mode = 0;                    ///< what the dialog is to do
  iterator itr = 0;                          ///< the system to edit
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
  /// What the host does for DoModeless.
  virtual void Open(CQDDocBase* doc, const CString& dialogClass, const void* first, const void* second) = 0;
};

extern template class QD_EXPORT IHostDialogs<struct GeometryDialogs>;
extern template class QD_EXPORT IHostDialogs<struct MeshDialogs>;
extern template class QD_EXPORT IHostDialogs<struct CommandDialogs>;

/// Dialogs on shapes: they get a tagTGeomGUI or nothing.
using IGeomDialog = IHostDialogs<struct GeometryDialogs>;
/// Dialogs on meshes: they get a tagTMeshGUI, or the iterator of a mesh set, or nothing.
using IQDMeshgDialog = IHostDialogs<struct MeshDialogs>;
/// Dialogs on other records: that on coordinate systems gets a tagTCordGUI, or nothing for a new record; the one
/// that asks for the colour of a record gets its iterator.
using IQDCmdDialog = IHostDialogs<struct CommandDialogs>;

/// The last menu command, for dialogs that serve several, and what menus note about a command.
class QD_EXPORT IQueryMenuID2Idx {
 public:
  static IQueryMenuID2Idx& Instance();  ///< the one of the process

  void SetMenuID(unsigned command, int index) { m_indexes[command] = index; }  ///< notes a number for a command
  /// 0 for a command that nothing was noted about.
  int GetIndex(unsigned command) const;
  void SetLastCommand(unsigned command) { m_lastCommand = command; }  ///< notes what was chosen in a menu last
  unsigned GetLastCommand() const { return m_lastCommand; }           ///< 0 before the first one

 private:
  std::map<unsigned, int> m_indexes;
  unsigned m_lastCommand = 0;
};

}  // namespace qd
