#pragma once

#include <set>
#include <vector>

#include "platform/Export.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

/// Nodes of parts below some nodes, these themselves included, each once.
QD_EXPORT std::vector<CQDTreeItem*> PartsOf(const std::vector<CQDTreeItem*>& nodes);
/// Likewise for the selected nodes of a tree.
QD_EXPORT std::vector<CQDTreeItem*> SelectedParts(const CQDTreeListCtrl& control);
/// Whether a selected node is unchecked.
QD_EXPORT bool IsAnySelectedHidden(const CQDTreeListCtrl& control);
/// Their records, in their order.
QD_EXPORT std::vector<iterator> IteratorsOf(const std::vector<CQDTreeItem*>& nodes);
/// The keys of those of the nodes that are shown.
QD_EXPORT std::vector<iterator> KeysOfShown(const std::vector<CQDTreeItem*>& parts);
/// Tells the document of a command that changes how the model is shown; other commands are no such news.
QD_EXPORT void MarkModelInfo(CQDDocBase* doc, unsigned command);
/// Applies a material to parts; nothing for an empty list.
QD_EXPORT void ApplyMaterialTo(CQDDocBase* doc, const std::vector<iterator>& parts, iterator material);
/// Inverts what the parts show, each once, then gives the boxes of the nodes above the state of what is below
/// them.
QD_EXPORT void InvertParts(const std::vector<CQDTreeItem*>& parts);

/// Commands on a list of parts, whichever node of whichever tree they were given to.
class QD_EXPORT PartCommands {
 public:
  /// Whether the meshes of the parts are drawn like the parts.
  enum class Meshes { Follow, StayAsTheyAre };

  /// `node` is where the command was given; its view-update flag decides about the redraw.
  PartCommands(CQDTreeItem& node, std::vector<CQDTreeItem*> parts, Meshes meshes);
  /// Runs a command; false when it is none of these.
  bool Run(unsigned command);

  void ShowHideMesh(int show);  ///< shows (other than 0) or hides the meshes of the parts
  void DeleteMeshes();          ///< deletes the meshes of the parts, as one act

 private:
  struct Entry;
  static const std::vector<Entry>& Table();

  void Import(unsigned);
  void Delete(unsigned);
  void SetRenderMode(unsigned command);
  void SetTransparency(unsigned command);
  void SetRandomColours(unsigned);
  void OpenTransform(unsigned command);
  void OpenProject(unsigned);
  void OpenAttach(unsigned);
  void OpenMaterials(unsigned);
  void OpenSimplify(unsigned);
  void SwitchMesh(unsigned command);
  void ShowMeshUnits(unsigned);
  void OpenMeshing(unsigned);
  void DeleteMesh(unsigned) { DeleteMeshes(); }
  void ShowContacts(unsigned);
  void SetBodyType(unsigned command);

  int Recolour();
  std::vector<int> CadItems() const;
  std::vector<std::uint32_t> MeshKeys() const;

  CQDTreeItem& m_node;
  CQDTreeListCtrl& m_control;
  CQDDocBase* m_doc;
  std::vector<CQDTreeItem*> m_parts;
  std::vector<iterator> m_itrs;  // of the parts; they outlast the nodes
  Meshes m_meshes;
};

}  // namespace qd
