#pragma once

#include <array>
#include <span>

#include "platform/Types.h"

namespace qd::workbench {

class Session;

/// What a window of a document can be told by its menu bar and its keys. The menus of the works trees are the
/// module's own; where a command is one of the module's, it has the module's number.
enum WindowCommandNumber : unsigned {
  kNewWindow = 100,
  kOpen,
  kRecentMenu,
  kOpenExample,
  kSave,
  kSaveAs,
  kImport,
  kExport,
  kExit,
  kUndo,
  kRedo,
  kDelete,
  kRenameRows,
  kFindRows,
  kPickMenu,
  kPickWhole,  ///< and the others in the order of PickFilter
  kPickParts,
  kPickFaces,
  kPickEdges,
  kPickPoints,
  kPickMeshSets,
  kPickElements,
  kPickNodes,
  kPickRectangle,
  kPickLasso,
  kPickHidden,
  kPickHover,
  kTreesFollow,
  kPickIntoSet,
  kPickTakeOut,
  kPickNone,
  kFit,
  kShowAll,
  kHideAll,
  kLeaveIsolation,
  kContacts,
  kMeasure,
  kViewsMenu,
  kViewFront,  ///< and the others in the order of StandardView
  kViewBack,
  kViewLeft,
  kViewRight,
  kViewTop,
  kViewBottom,
  kViewIsometric,
  kFitSelection,
  kViewBefore,
  kViewAfter,
  kParallel,
  kZoomRectangle,
  kSectionsMenu,
  kSectionX,
  kSectionY,
  kSectionZ,
  kSectionFace,
  kSectionFlip,
  kSectionClear,
  kPicture,
  kMouseMenu,
  kMouseOwn,  ///< and the others in the order of MouseHabits
  kMouseGmsh,
  kMouseParaView,
  kMouseFreeCad,
  kGroundMenu,
  kGroundAsWindow,  ///< and the others in the order of Ground
  kGroundLight,
  kGroundDark,
  kGroundPlain,
  kSmooth,
  kFadeMeshed,
  kQualityMenu,
  kColourByQuality,  ///< and the others in the order of QualityMeasure
  kColourRange = kColourByQuality + 6,
  kCheckMenu,
  kCheckQuality,  ///< and the others in the order of MeshCheck
  kCheckFreeEdges,
  kCheckDuplicateNodes,
  kCheckUnconnected,
  kCheckTurned,
  kCheckVolumes,
  kCheckDuplicates,
  kLanguageMenu,
  kUnitMenu,
  kVariantMenu,
  kConsole,
  kRunScript,
  kRecordActs,
  kManual,
  kKeysPage,
  kAbout,
  kFirstLanguage = 200,  ///< plus the place in the list of languages
  kFirstVariant = 300    ///< plus the place in the list of variants
};

/// A key that runs a command; no letter, no key.
struct CommandKeys {
  bool control = false;
  bool shift = false;
  int letter = 0;  ///< a capital letter, a digit, kKeyDelete, kKeyF1 or kKeyF2
};

/// One command of a window. All menu bars and keys are made from it.
struct WindowCommand {
  enum class Windows { All, Desktop, Native };
  unsigned number = 0;         ///< 0 divides what is above from what is below
  const char* key = nullptr;   ///< of its text
  const char* menu = nullptr;  ///< key of the menu that lists it
  Windows windows = Windows::All;
  std::array<CommandKeys, 2> keys{};  ///< the menu shows the first one
  /// What the session does; null for what is the window's own work, or a menu of choices.
  void (*run)(Session& session, unsigned number) = nullptr;
  /// Key of the sentence that says why there is nothing to do now; no key when there is. Null: there always is.
  const char* (*hindrance)(const Session& session) = nullptr;
  /// Whether it is what holds now, for one of several that exclude each other; null: it is no such choice.
  bool (*checked)(const Session& session, unsigned number) = nullptr;
  /// What stands behind the text, as the title of the act to undo; null: nothing.
  CString (*detail)(const Session& session) = nullptr;
  bool toolbar = false;  ///< it stands in the toolbar too
  /// Key of its text in the trees' menus of several rows, which list it when it is possible; null: they do not.
  const char* inTrees = nullptr;
  bool asks = false;     ///< the trees' menus say that it asks for something more
  bool submenu = false;  ///< it is no command but a menu, for those that name its key as theirs
};

/// In the order of the menus.
std::span<const WindowCommand> WindowCommands();
/// Null for an unknown number.
const WindowCommand* FindWindowCommand(unsigned number);
/// Key of the sentence that says why there is nothing to do now, null when there is.
const char* HindranceOf(const WindowCommand& command, const Session& session);
inline bool IsPossible(const WindowCommand& command, const Session& session) {
  return HindranceOf(command, session) == nullptr;
}
/// Runs what the session does, if it is possible now. False for what is left to the window.
bool RunWindowCommand(Session& session, unsigned number);

}  // namespace qd::workbench
