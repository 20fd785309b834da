#include "workbench/session/WindowCommands.h"

#include <algorithm>

#include "platform/Message.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/display/ViewSettings.h"
#include "workbench/session/Session.h"

namespace qd::workbench {

namespace {

using Windows = WindowCommand::Windows;

constexpr const char* kFile = "IDS_WB_MENU_FILE";
constexpr const char* kEdit = "IDS_WB_MENU_EDIT";
constexpr const char* kView = "IDS_WB_MENU_VIEW";
constexpr const char* kPicks = "IDS_WB_MENU_PICK";
constexpr const char* kViews = "IDS_WB_MENU_VIEWS";
constexpr const char* kSections = "IDS_WB_MENU_SECTIONS";
constexpr const char* kMouse = "IDS_WB_MENU_MOUSE";
constexpr const char* kGround = "IDS_WB_MENU_GROUND";
constexpr const char* kMesh = "IDS_WB_MENU_MESH";
constexpr const char* kQualities = "IDS_WB_MENU_COLOUR_QUALITY";
constexpr const char* kChecks = "IDS_WB_MENU_CHECKS";
constexpr const char* kScripts = "IDS_WB_MENU_SCRIPTS";
constexpr const char* kHelp = "IDS_WB_MENU_HELP";

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
const char* WithoutParts(const Session& session) {
  return DataOf(session).GetGeomPool().Count() != 0 ? nullptr : "IDS_WB_WHY_EMPTY";
}
const char* WithoutMeantSets(const Session& session) {
  if (const char* none = WithoutMeshSets(session)) return none;
  return session.Document().GetSelection().IsEmpty() ? "IDS_WB_WHY_NO_MESH_SET" : nullptr;
}
const char* WithoutSections(const Session& session) {
  return session.Document().GetSections().Planes().empty() ? "IDS_WB_WHY_NO_SECTION" : nullptr;
}
const char* WithoutSelection(const Session& session) {
  if (session.CanDelete()) return nullptr;
  return session.Document().GetSelection().IsEmpty() ? "IDS_WB_WHY_NOTHING_SELECTED" : "IDS_WB_WHY_ROWS";
}

bool FadesMeshed(const Session& session) {
  return session.Document().GetDisplay().Parts().FadesMeshed();
}

/// The window's own work.
constexpr WindowCommand Own(unsigned number, const char* key, const char* menu, Windows windows,
                            CommandKeys keys = {}) {
  return {.number = number, .key = key, .menu = menu, .windows = windows, .keys = {keys}};
}
/// A menu in a menu.
constexpr WindowCommand Menu(unsigned number, const char* key, const char* menu) {
  return {.number = number, .key = key, .menu = menu, .windows = Windows::Desktop, .submenu = true};
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
/// A dialog that looks through mesh sets.
constexpr WindowCommand Checks(unsigned number, const char* key) {
  return {
      .number = number, .key = key, .menu = kChecks, .windows = Windows::Desktop, .hindrance = WithoutMeshSets};
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
/// A way to colour all elements by how good they are, which come one after another.
constexpr WindowCommand Qualities(QualityMeasure measure, const char* key) {
  return {.number = kColourByQuality + static_cast<unsigned>(measure),
          .key = key,
          .menu = kQualities,
          .windows = Windows::Desktop,
          .run =
              [](Session& session, unsigned command) {
                session.ColourBy({.measure = static_cast<QualityMeasure>(command - kColourByQuality)});
              },
          .hindrance = WithoutMeshSets,
          .checked =
              [](const Session& session, unsigned command) {
                const MeshDisplay::Quality* quality = session.Document().GetDisplay().Meshes().ColouringQuality();
                return quality != nullptr &&
                       quality->measure == static_cast<QualityMeasure>(command - kColourByQuality);
              }};
}
/// What clicks in the view take, one after another.
constexpr WindowCommand PicksOnly(PickFilter filter, const char* key, char digit) {
  return {
      .number = kPickWhole + static_cast<unsigned>(filter),
      .key = key,
      .menu = kPicks,
      .windows = Windows::Desktop,
      .keys = {ControlShift(digit)},
      .run = [](Session& session,
                unsigned command) { session.Picked().SetFilter(static_cast<PickFilter>(command - kPickWhole)); },
      .checked =
          [](const Session& session, unsigned command) {
            return session.Document().GetPicks().Filter() == static_cast<PickFilter>(command - kPickWhole);
          },
      .toolbar = true};
}
/// One of the standard views, which come one after another.
constexpr WindowCommand Views(StandardView view, const char* key, char digit) {
  return {
      .number = kViewFront + static_cast<unsigned>(view),
      .key = key,
      .menu = kViews,
      .windows = Windows::Desktop,
      .keys = {Control(digit)},
      .run = [](Session& session,
                unsigned command) { session.Look().LookFrom(static_cast<StandardView>(command - kViewFront)); },
      .toolbar = true};
}
/// A cut across one of the axes, which come one after another.
constexpr WindowCommand Cuts(unsigned number, const char* key, char letter) {
  return {
      .number = number,
      .key = key,
      .menu = kSections,
      .windows = Windows::Desktop,
      .keys = {ControlShift(letter)},
      .run =
          [](Session& session, unsigned command) {
            const ViewBox box = session.Look().Shown().value_or(ViewBox{});
            session.Cuts().ToggleAxis(command - kSectionX, (box.least + box.greatest) * 0.5);
          },
      .checked = [](const Session& session,
                    unsigned command) { return session.Document().GetSections().HasAxis(command - kSectionX); },
      .toolbar = true};
}
/// One of the customs of the mouse.
constexpr WindowCommand Mouse(MouseHabits habits, const char* key) {
  return {.number = kMouseOwn + static_cast<unsigned>(habits),
          .key = key,
          .menu = kMouse,
          .windows = Windows::Desktop,
          .run =
              [](Session&, unsigned command) {
                ViewSettings::Ours().SetHabits(static_cast<MouseHabits>(command - kMouseOwn));
              },
          .checked =
              [](const Session&, unsigned command) {
                return ViewSettings::Ours().Habits() == static_cast<MouseHabits>(command - kMouseOwn);
              }};
}
/// One of the grounds behind the model.
constexpr WindowCommand Grounds(Ground ground, const char* key) {
  return {.number = kGroundAsWindow + static_cast<unsigned>(ground),
          .key = key,
          .menu = kGround,
          .windows = Windows::Desktop,
          .run =
              [](Session&, unsigned command) {
                ViewSettings::Ours().SetGround(static_cast<Ground>(command - kGroundAsWindow));
              },
          .checked =
              [](const Session&, unsigned command) {
                return ViewSettings::Ours().GetGround() == static_cast<Ground>(command - kGroundAsWindow);
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
    Own(kOpenExample, "IDS_WB_OPEN_EXAMPLE", kFile, Windows::All),
    Own(kExport, "IDS_WB_EXPORT", kFile, Windows::Desktop, Control('E')),
    Own(kPicture, "IDS_WB_PICTURE", kFile, Windows::Desktop, ControlShift('P')),
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
    {.number = kRenameRows,
     .key = "IDS_WB_RENAME",
     .menu = kEdit,
     .keys = {CommandKeys{.letter = kKeyF2}},
     .run = [](Session& session, unsigned) { session.Trees().TouchedBar().GetTreeCtrl().RenameSelected(); },
     .hindrance =
         [](const Session& session) {
           return session.Trees().TouchedBar().GetTreeCtrl().CanRename() ? nullptr : "IDS_WB_WHY_NO_NAME";
         },
     .inTrees = "IDS_QD_WRT_RENAME",
     .asks = true},
    Line(kEdit),
    {.number = kFindRows,
     .key = "IDS_WB_FIND",
     .menu = kEdit,
     .keys = {Control('F')},
     .run = [](Session& session, unsigned) { session.Trees().TouchedBar().ShowFindBar(1); }},
    Line(kEdit, Windows::Desktop),
    Menu(kPickMenu, kPicks, kEdit),
    PicksOnly(PickFilter::Whole, "IDS_WB_PICK_WHOLE", '1'),
    PicksOnly(PickFilter::Parts, "IDS_WB_PICK_PARTS", '2'),
    PicksOnly(PickFilter::Faces, "IDS_WB_PICK_FACES", '3'),
    PicksOnly(PickFilter::Edges, "IDS_WB_PICK_EDGES", '4'),
    PicksOnly(PickFilter::Points, "IDS_WB_PICK_POINTS", '5'),
    PicksOnly(PickFilter::MeshSets, "IDS_WB_PICK_MSETS", '6'),
    PicksOnly(PickFilter::Elements, "IDS_WB_PICK_ELEMENTS", '7'),
    PicksOnly(PickFilter::Nodes, "IDS_WB_PICK_NODES", '8'),
    Line(kPicks, Windows::Desktop),
    {.number = kPickRectangle,
     .key = "IDS_WB_PICK_RECTANGLE",
     .menu = kPicks,
     .windows = Windows::Desktop,
     .keys = {ControlShift('E')},
     .toolbar = true},
    {.number = kPickLasso,
     .key = "IDS_WB_PICK_LASSO",
     .menu = kPicks,
     .windows = Windows::Desktop,
     .keys = {ControlShift('L')},
     .toolbar = true},
    {.number = kPickHidden,
     .key = "IDS_WB_PICK_HIDDEN",
     .menu = kPicks,
     .windows = Windows::Desktop,
     .keys = {ControlShift('T')},
     .run = [](Session&, unsigned) { ViewSettings::Ours().SetTakesHidden(!ViewSettings::Ours().TakesHidden()); },
     .checked = [](const Session&, unsigned) { return ViewSettings::Ours().TakesHidden(); },
     .toolbar = true},
    Line(kPicks, Windows::Desktop),
    {.number = kPickHover,
     .key = "IDS_WB_PICK_HOVER",
     .menu = kPicks,
     .windows = Windows::Desktop,
     .run = [](Session&, unsigned) { ViewSettings::Ours().SetHovering(!ViewSettings::Ours().IsHovering()); },
     .checked = [](const Session&, unsigned) { return ViewSettings::Ours().IsHovering(); }},
    {.number = kTreesFollow,
     .key = "IDS_WB_TREES_FOLLOW",
     .menu = kPicks,
     .windows = Windows::Desktop,
     .run = [](Session&, unsigned) { ViewSettings::Ours().SetTreesFollow(!ViewSettings::Ours().DoTreesFollow()); },
     .checked = [](const Session&, unsigned) { return ViewSettings::Ours().DoTreesFollow(); }},
    Line(kPicks, Windows::Desktop),
    {.number = kPickIntoSet,
     .key = "IDS_WB_PICKED_INTO_SET_MENU",
     .menu = kPicks,
     .windows = Windows::Desktop,
     .keys = {ControlShift('M')},
     .run = [](Session& session, unsigned) { session.OpenPickedDialog(); },
     .hindrance =
         [](const Session& session) {
           const auto& all = session.Document().GetPicks().All();
           const bool any = std::any_of(all.begin(), all.end(),
                                        [](const Picked& one) { return one.kind == PickFilter::Elements; });
           return any ? nullptr : "IDS_WB_WHY_NO_ELEMENTS_PICKED";
         }},
    {.number = kPickTakeOut,
     .key = "IDS_WB_PICKED_TAKE_OUT_MENU",
     .menu = kPicks,
     .windows = Windows::Desktop,
     .keys = {ControlShift('G')},
     .hindrance =
         [](const Session& session) {
           const auto& all = session.Document().GetPicks().All();
           const bool any = std::any_of(all.begin(), all.end(), [](const Picked& one) {
             return one.kind != PickFilter::Elements && one.kind != PickFilter::Nodes;
           });
           return any ? nullptr : "IDS_WB_WHY_NO_FACES_PICKED";
         }},
    {.number = kPickNone,
     .key = "IDS_WB_PICK_NONE",
     .menu = kPicks,
     .windows = Windows::Desktop,
     .run = [](Session& session, unsigned) { session.Picked().Clear(); },
     .hindrance =
         [](const Session& session) {
           return session.Document().GetPicks().IsEmpty() ? "IDS_WB_WHY_NOTHING_PICKED" : nullptr;
         }},

    {.number = kFit,
     .key = "IDS_WB_FIT",
     .menu = kView,
     .windows = Windows::Desktop,
     .keys = {Control('0')},
     .run = [](Session& session, unsigned) { session.Look().FitAll(); },
     .toolbar = true},
    {.number = kFitSelection,
     .key = "IDS_WB_FIT_SELECTION",
     .menu = kView,
     .windows = Windows::Desktop,
     .keys = {Control('8')},
     .run = [](Session& session, unsigned) { session.Look().FitSelection(); },
     .hindrance =
         [](const Session& session) {
           const bool any =
               !session.Document().GetSelection().IsEmpty() || !session.Document().GetPicks().IsEmpty();
           return any ? nullptr : "IDS_WB_WHY_NOTHING_SELECTED";
         },
     .toolbar = true,
     .inTrees = "IDS_WB_SHOW_IN_VIEW"},
    Menu(kViewsMenu, kViews, kView),
    Views(StandardView::Front, "IDS_WB_VIEW_FRONT", '1'),
    Views(StandardView::Back, "IDS_WB_VIEW_BACK", '2'),
    Views(StandardView::Left, "IDS_WB_VIEW_LEFT", '3'),
    Views(StandardView::Right, "IDS_WB_VIEW_RIGHT", '4'),
    Views(StandardView::Top, "IDS_WB_VIEW_TOP", '5'),
    Views(StandardView::Bottom, "IDS_WB_VIEW_BOTTOM", '6'),
    Views(StandardView::Isometric, "IDS_WB_VIEW_ISOMETRIC", '7'),
    {.number = kZoomRectangle,
     .key = "IDS_WB_ZOOM_RECTANGLE",
     .menu = kView,
     .windows = Windows::Desktop,
     .keys = {ControlShift('R')},
     .toolbar = true},
    {.number = kViewBefore,
     .key = "IDS_WB_VIEW_BEFORE",
     .menu = kView,
     .windows = Windows::Desktop,
     .keys = {ControlShift('B')},
     .run = [](Session& session, unsigned) { session.Look().GoBack(); },
     .hindrance =
         [](const Session& session) {
           return session.Document().GetLooking().CanGoBack() ? nullptr : "IDS_WB_WHY_NO_VIEW";
         },
     .toolbar = true},
    {.number = kViewAfter,
     .key = "IDS_WB_VIEW_AFTER",
     .menu = kView,
     .windows = Windows::Desktop,
     .keys = {ControlShift('N')},
     .run = [](Session& session, unsigned) { session.Look().GoForward(); },
     .hindrance =
         [](const Session& session) {
           return session.Document().GetLooking().CanGoForward() ? nullptr : "IDS_WB_WHY_NO_VIEW";
         },
     .toolbar = true},
    {.number = kParallel,
     .key = "IDS_WB_PARALLEL",
     .menu = kView,
     .windows = Windows::Desktop,
     .keys = {ControlShift('O')},
     .run = [](Session& session, unsigned) { session.Look().SetParallel(!session.Look().Camera().IsParallel()); },
     .checked = [](const Session& session,
                   unsigned) { return session.Document().GetLooking().Camera().IsParallel(); },
     .toolbar = true},
    Menu(kSectionsMenu, kSections, kView),
    Cuts(kSectionX, "IDS_WB_SECTION_X", 'X'),
    Cuts(kSectionY, "IDS_WB_SECTION_Y", 'Y'),
    Cuts(kSectionZ, "IDS_WB_SECTION_Z", 'C'),
    Own(kSectionFace, "IDS_WB_SECTION_FACE", kSections, Windows::Desktop),
    {.number = kSectionFlip,
     .key = "IDS_WB_SECTION_FLIP",
     .menu = kSections,
     .windows = Windows::Desktop,
     .keys = {ControlShift('V')},
     .run = [](Session& session, unsigned) { session.Cuts().FlipLast(); },
     .hindrance = WithoutSections},
    {.number = kSectionClear,
     .key = "IDS_WB_SECTION_CLEAR",
     .menu = kSections,
     .windows = Windows::Desktop,
     .run = [](Session& session, unsigned) { session.Cuts().Clear(); },
     .hindrance = WithoutSections},
    Menu(kMouseMenu, kMouse, kView),
    Mouse(MouseHabits::Own, "IDS_WB_MOUSE_OWN"),
    Mouse(MouseHabits::Gmsh, "IDS_WB_MOUSE_GMSH"),
    Mouse(MouseHabits::ParaView, "IDS_WB_MOUSE_PARAVIEW"),
    Mouse(MouseHabits::FreeCad, "IDS_WB_MOUSE_FREECAD"),
    Menu(kGroundMenu, kGround, kView),
    Grounds(Ground::AsWindow, "IDS_WB_GROUND_AS_WINDOW"),
    Grounds(Ground::Light, "IDS_WB_GROUND_LIGHT"),
    Grounds(Ground::Dark, "IDS_WB_GROUND_DARK"),
    Line(kGround, Windows::Desktop),
    {.number = kGroundPlain,
     .key = "IDS_WB_GROUND_PLAIN",
     .menu = kGround,
     .windows = Windows::Desktop,
     .run = [](Session&, unsigned) { ViewSettings::Ours().SetPlain(!ViewSettings::Ours().IsPlain()); },
     .checked = [](const Session&, unsigned) { return ViewSettings::Ours().IsPlain(); }},
    {.number = kSmooth,
     .key = "IDS_WB_SMOOTH",
     .menu = kView,
     .windows = Windows::Desktop,
     .run = [](Session&, unsigned) { ViewSettings::Ours().SetSmooth(!ViewSettings::Ours().IsSmooth()); },
     .checked = [](const Session&, unsigned) { return ViewSettings::Ours().IsSmooth(); }},
    {.number = kFadeMeshed,
     .key = "IDS_WB_FADE_MESHED",
     .menu = kView,
     .windows = Windows::Desktop,
     .run = [](Session& session, unsigned) { session.FadeMeshed(!FadesMeshed(session)); },
     .checked = [](const Session& session, unsigned) { return FadesMeshed(session); }},
    Line(kView, Windows::Desktop),
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
    Line(kView, Windows::Desktop),
    Own(kMeasure, "IDS_WB_MEASURE", kView, Windows::Desktop, ControlShift('D')),
    {.number = kContacts,
     .key = "IDS_WB_CONTACTS",
     .menu = kView,
     .windows = Windows::Desktop,
     .hindrance = WithoutParts},
    Own(kConsole, "IDS_WB_CONSOLE", kView, Windows::Desktop, ControlShift('K')),
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
    Menu(kCheckMenu, kChecks, kMesh),
    Checks(kCheckQuality, "IDS_WB_CHECK_QUALITY"),
    Checks(kCheckFreeEdges, "IDS_WB_CHECK_FREE_EDGES"),
    Checks(kCheckDuplicateNodes, "IDS_WB_CHECK_DUPLICATE_NODES"),
    Checks(kCheckUnconnected, "IDS_WB_CHECK_UNCONNECTED"),
    Checks(kCheckTurned, "IDS_WB_CHECK_TURNED"),
    Checks(kCheckVolumes, "IDS_WB_CHECK_VOLUMES"),
    Checks(kCheckDuplicates, "IDS_WB_CHECK_DUPLICATES"),
    Line(kMesh, Windows::Desktop),
    Colours(0, "IDS_WB_COLOUR_BY_SET"),
    Colours(1, "IDS_WB_COLOUR_BY_PROPERTY"),
    Colours(2, "IDS_WB_COLOUR_BY_MATERIAL"),
    Colours(3, "IDS_WB_COLOUR_BY_TYPE"),
    Colours(4, "IDS_WB_COLOUR_BY_TOP_SET"),
    Menu(kQualityMenu, kQualities, kMesh),
    Qualities(QualityMeasure::AspectRatio, "IDS_WB_QUALITY_ASPECT"),
    Qualities(QualityMeasure::ScaledJacobian, "IDS_WB_QUALITY_JACOBIAN"),
    Qualities(QualityMeasure::Skewness, "IDS_WB_QUALITY_SKEWNESS"),
    Qualities(QualityMeasure::Warpage, "IDS_WB_QUALITY_WARPAGE"),
    Qualities(QualityMeasure::LeastAngle, "IDS_WB_QUALITY_LEAST_ANGLE"),
    Qualities(QualityMeasure::GreatestAngle, "IDS_WB_QUALITY_GREATEST_ANGLE"),
    Line(kQualities, Windows::Desktop),
    {.number = kColourRange,
     .key = "IDS_WB_COLOUR_RANGE_MENU",
     .menu = kQualities,
     .windows = Windows::Desktop,
     .hindrance =
         [](const Session& session) {
           const bool coloured = session.Document().GetDisplay().Meshes().ColouringQuality() != nullptr;
           return coloured ? nullptr : "IDS_WB_WHY_NO_QUALITY";
         }},
    {.number = kCommandMeshRandomColour,
     .key = "IDS_QD_WRT_RANDOM_COLOR",
     .menu = kMesh,
     .windows = Windows::Desktop,
     .run = [](Session& session, unsigned command) { session.SendToMeshes(command); },
     .hindrance = WithoutMeshSets},

    Own(kRunScript, "IDS_WB_RUN_SCRIPT", kScripts, Windows::Desktop),
    Own(kRecordActs, "IDS_WB_RECORD_ACTS", kScripts, Windows::Desktop),

    Own(kManual, "IDS_WB_MANUAL", kHelp, Windows::Desktop, CommandKeys{.letter = kKeyF1}),
    Own(kKeysPage, "IDS_WB_KEYS", kHelp, Windows::Desktop),
    Line(kHelp, Windows::Desktop),
    Own(kAbout, "IDS_WB_ABOUT", kHelp, Windows::Desktop),
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
