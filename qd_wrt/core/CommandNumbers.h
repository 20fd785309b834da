#pragma once

namespace qd {

/// Numbers of context-menu commands. A number may mean different things in different branches; the branch of the
/// first selected node decides.
enum CommandNumber : unsigned {
  kCommandFirstOfSets = 41000,  ///< sets look at commands up to kCommandLastOfSets only
  kCommandNewSet = 41000,
  kCommandDelete = 41002,
  kCommandCurrentSet = 41003,
  kCommandImport = 41006,
  kCommandShowAll = 41007,
  kCommandHideAll = 41008,
  kCommandShowOnly = 41009,
  kCommandHideOnly = 41010,
  kCommandReverseAll = 41011,
  kCommandReverse = 41017,
  kCommandSortByCreation = 41037,
  kCommandSortByName = 41038,
  kCommandShow = 41100,
  kCommandHide = 41101,
  kCommandEdgeShading = 41105,
  kCommandShading = 41106,
  kCommandWireframe = 41107,
  kCommandBoundingBox = 41108,
  kCommandTransparent = 41109,  ///< from here to kCommandOpaque in ten steps
  kCommandOpaque = 41119,
  kCommandRandomColour = 41120,
  kCommandTranslate = 41121,
  kCommandRotate = 41122,
  kCommandMirror = 41123,
  kCommandScale = 41124,
  kCommandProject = 41125,
  kCommandAttach = 41126,
  kCommandIncludeExclude = 41131,
  kCommandMaterialDialog = 41133,
  kCommandSimplify = 41134,
  kCommandFirstShortcut = 41135,  ///< render mode to random colours again, for all parts
  kCommandLastShortcut = 41150,
  kCommandPrevious = 41151,
  kCommandSweep = 41152,
  kCommandLastOfSets = 41152,
  kCommandShowMesh = 41200,
  kCommandHideMesh = 41201,
  kCommandShowMeshUnits = 41205,
  kCommandGenerateMesh = 41240,
  kCommandDeleteMesh = 41245,
  kCommandContacts = 41300,
  kCommandRigid = 41548,
  kCommandFlexible = 41549,
};

}  // namespace qd
