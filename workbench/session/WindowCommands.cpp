#include "workbench/session/WindowCommands.h"

#include <algorithm>

#include "platform/Message.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/session/Session.h"

namespace qd::workbench {

namespace {

using Windows = WindowCommand::Windows;

constexpr const char* kFile = "IDS_WB_MENU_FILE";
constexpr const char* kEdit = "IDS_WB_MENU_EDIT";
constexpr const char* kView = "IDS_WB_MENU_VIEW";
constexpr const char* kMesh = "IDS_WB_MENU_MESH";

constexpr CommandKeys Control(char letter) {
  return {.control = true, .letter = letter};
}
constexpr CommandKeys ControlShift(char letter) {
  return {.control = true, .shift = true, .letter = letter};
}

const Database& DataOf(const Session& session) {
  return session.Document().GetDatabase();
}

// Why there is nothing to do.
const char* WithoutRecords(const Session& session) {
  const bool any = !session.IsEmpty() || DataOf(session).GetCordPool().Count() > 1;
  return any ? nullptr : "IDS_WB_WHY_EMPTY";
}
const char* WithoutMeshSets(const Session& session) {
  return DataOf(session).GetMsetPool().Count() != 0 ? nullptr : "IDS_WB_WHY_NO_MESH_SETS";
}
const char* WithoutMeantSets(const Session& session) {
  if (const char* none = WithoutMeshSets(session)) return none;
  return session.Document().GetSelection().IsEmpty() ? "IDS_WB_WHY_NO_MESH_SET" : nullptr;
}
const char* WithoutSelection(const Session& session) {
  if (session.CanDelete()) return nullptr;
  return session.Document().GetSelection().IsEmpty() ? "IDS_WB_WHY_NOTHING_SELECTED" : "IDS_WB_WHY_ROWS";
}

/// The window's own work.
constexpr WindowCommand Own(unsigned number, const char* key, const char* menu, Windows windows,
                            CommandKeys keys = {}) {
  return {.number = number, .key = key, .menu = menu, .windows = windows, .keys = {keys}};
}
constexpr WindowCommand Line(const char* menu, Windows windows = Windows::All) {
  return {.menu = menu, .windows = windows};
}
/// A dialog that makes meshes.
constexpr WindowCommand Maker(unsigned number, const char* key) {
  return {.number = number,
          .key = key,
          .menu = kMesh,
          .windows = Windows::Desktop,
          .run = [](Session& session, unsigned command) { session.SendToMeshes(command); }};
}
/// A dialog on mesh sets, which their menus do not list.
constexpr WindowCommand OnSets(unsigned number, const char* key) {
  return {.number = number,
          .key = key,
          .menu = kMesh,
          .windows = Windows::Desktop,
          .run = [](Session& session, unsigned command) { session.OpenMeshDialog(command); },
          .hindrance = WithoutMeshSets};
}
/// A way to colour all meshes.
constexpr WindowCommand Colours(unsigned mode, const char* key) {
  return {.number = kCommandMeshColourMode + mode,
          .key = key,
          .menu = kMesh,
          .windows = Windows::Desktop,
          .run = [](Session& session, unsigned command) { session.SendToMeshes(command); },
          .hindrance = WithoutMeshSets,
          .checked =
              [](const Session& session, unsigned command) {
                const MeshDisplay& meshes = session.Document().GetDisplay().Meshes();
                return meshes.GetMeshColorMode() == command - kCommandMeshColourMode;
              }};
}

constexpr WindowCommand kCommands[] = {
    Own(kNewWindow, "IDS_WB_NEW_WINDOW", kFile, Windows::Desktop, Control('N')),
    Own(kOpen, "IDS_WB_OPEN", kFile, Windows::Desktop, Control('O')),
    Own(kRecentMenu, "IDS_WB_OPEN_RECENT", kFile, Windows::Desktop),
    Own(kSave, "IDS_WB_SAVE", kFile, Windows::Desktop, Control('S')),
    Own(kSaveAs, "IDS_WB_SAVE_AS", kFile, Windows::Desktop, ControlShift('S')),
    Line(kFile, Windows::Desktop),
    Own(kImport, "IDS_WB_IMPORT", kFile, Windows::All, ControlShift('I')),
    Own(kOpenExample, "IDS_WB_OPEN_EXAMPLE", kFile, Windows::Native),
    Own(kExport, "IDS_WB_EXPORT", kFile, Windows::Desktop, Control('E')),
    Line(kFile),
    Own(kExit, "IDS_WB_EXIT", kFile, Windows::All, Control('Q')),

    {.number = kUndo,
     .key = "IDS_WB_UNDO",
     .menu = kEdit,
     .keys = {Control('Z')},
     .run = [](Session& session, unsigned) { session.Undo(); },
     .hindrance =
         [](const Session& session) { return DataOf(session).CanUndo() ? nullptr : "IDS_WB_WHY_NO_UNDO"; },
     .detail = [](const Session& session) { return DataOf(session).UndoTitle(); }},
    {.number = kRedo,
     .key = "IDS_WB_REDO",
     .menu = kEdit,
     .keys = {ControlShift('Z'), Control('Y')},
     .run = [](Session& session, unsigned) { session.Redo(); },
     .hindrance =
         [](const Session& session) { return DataOf(session).CanRedo() ? nullptr : "IDS_WB_WHY_NO_REDO"; },
     .detail = [](const Session& session) { return DataOf(session).RedoTitle(); }},
    Line(kEdit),
    {.number = kDelete,
     .key = "IDS_WB_DELETE",
     .menu = kEdit,
     .keys = {CommandKeys{.letter = kKeyDelete}},
     .run = [](Session& session, unsigned) { session.Delete(); },
     .hindrance = WithoutSelection},

    Own(kFit, "IDS_WB_FIT", kView, Windows::Desktop, Control('0')),
    {.number = kShowAll,
     .key = "IDS_QD_WRT_SHOW_ALL",
     .menu = kView,
     .run = [](Session& session, unsigned) { session.ShowAll(); },
     .hindrance = WithoutRecords},
    {.number = kHideAll,
     .key = "IDS_QD_WRT_HIDE_ALL",
     .menu = kView,
     .run = [](Session& session, unsigned) { session.HideAll(); },
     .hindrance = WithoutRecords},
    {.number = kLeaveIsolation,
     .key = "IDS_WB_LEAVE_ISOLATION",
     .menu = kView,
     .run = [](Session& session, unsigned) { session.LeaveIsolation(); },
     .hindrance =
         [](const Session& session) {
           const bool isolated = session.Document().GetDisplay().Isolation() != nullptr;
           return isolated ? nullptr : "IDS_WB_WHY_NO_ISOLATION";
         }},
    Line(kView),
    Own(kLanguageMenu, "IDS_WB_MENU_LANGUAGE", kView, Windows::All),
    Own(kUnitMenu, "IDS_WB_MENU_UNITS", kView, Windows::Desktop),
    Own(kVariantMenu, "IDS_WB_MENU_VARIANT", kView, Windows::All),

    Maker(kCommandMeshNode, "IDS_MENU_WRT_MESH_ADD_NODE"),
    Maker(kCommandMeshElement, "IDS_MENU_WRT_MESH_ADD_ELEM"),
    Maker(kCommandMeshAuto2D, "IDS_MENU_WRT_MESH_ADD_2D_AUTO"),
    Maker(kCommandMeshMap2D, "IDS_MENU_WRT_MESH_ADD_2D_MAP"),
    Maker(kCommandMeshAuto3D, "IDS_MENU_WRT_MESH_ADD_3D_AUTO"),
    Maker(kCommandMeshMap3D, "IDS_MENU_WRT_MESH_ADD_3D_MAP"),
    {.number = kCommandRemesh,
     .key = "IDS_WB_MESH_AGAIN",
     .menu = kMesh,
     .windows = Windows::Desktop,
     .run = [](Session& session, unsigned) { session.MeshAgain(); },
     .hindrance = WithoutMeantSets},
    Line(kMesh, Windows::Desktop),
    OnSets(kCommandMeshTranslate, "IDS_QD_WRT_TRANSFORM_TRANSLATE"),
    OnSets(kCommandMeshRotate, "IDS_QD_WRT_TRANSFORM_ROTATE"),
    OnSets(kCommandMeshMirror, "IDS_QD_WRT_TRANSFORM_MIRROR"),
    OnSets(kCommandMeshScale, "IDS_QD_WRT_TRANSFORM_SCALE"),
    OnSets(kCommandMeshSweep, "IDS_QDMESH_TAB_GENERATE_2D_TO_3D"),
    Line(kMesh, Windows::Desktop),
    Colours(0, "IDS_WB_COLOUR_BY_SET"),
    Colours(1, "IDS_WB_COLOUR_BY_PROPERTY"),
    Colours(2, "IDS_WB_COLOUR_BY_MATERIAL"),
    Colours(3, "IDS_WB_COLOUR_BY_TYPE"),
    Colours(4, "IDS_WB_COLOUR_BY_TOP_SET"),
    {.number = kCommandMeshRandomColour,
     .key = "IDS_QD_WRT_RANDOM_COLOR",
     .menu = kMesh,
     .windows = Windows::Desktop,
     .run = [](Session& session, unsigned command) { session.SendToMeshes(command); },
     .hindrance = WithoutMeshSets},
};

}  // namespace

std::span<const WindowCommand> WindowCommands() {
  return kCommands;
}

const WindowCommand* FindWindowCommand(unsigned number) {
  const auto* found = std::find_if(std::begin(kCommands), std::end(kCommands), [number](const auto& command) {
    return number != 0 && command.number == number;
  });
  return found != std::end(kCommands) ? found : nullptr;
}

const char* HindranceOf(const WindowCommand& command, const Session& session) {
  return command.hindrance != nullptr ? command.hindrance(session) : nullptr;
}

bool RunWindowCommand(Session& session, unsigned number) {
  const WindowCommand* command = FindWindowCommand(number);
  if (command == nullptr || command->run == nullptr) return false;
  if (IsPossible(*command, session)) command->run(session, number);
  return true;
}

}  // namespace qd::workbench
