#pragma once

#include <set>
#include <vector>

#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

/// Nodes of parts below some nodes, these themselves included, each once.
std::vector<CQDTreeItem*> PartsOf(const std::vector<CQDTreeItem*>& nodes);
/// Likewise for the selected nodes of a tree.
std::vector<CQDTreeItem*> SelectedParts(const CQDTreeListCtrl& control);
/// Whether a selected node is unchecked.
bool IsAnySelectedHidden(const CQDTreeListCtrl& control);
std::vector<iterator> IteratorsOf(const std::vector<CQDTreeItem*>& nodes);
/// The keys of those of the nodes that are shown.
std::vector<iterator> KeysOfShown(const std::vector<CQDTreeItem*>& parts);
/// Tells the document of a command that changes how the model is shown; other commands are no such news.
void MarkModelInfo(CQDDocBase* doc, unsigned command);
/// Applies a material to parts; nothing for an empty list.
void ApplyMaterialTo(CQDDocBase* doc, const std::vector<iterator>& parts, iterator material);
/// Inverts what the parts show, each once, then gives the boxes of the nodes above the state of what is below
/// them.
void InvertParts(const std::vector<CQDTreeItem*>& parts);

/// Commands on a list of parts, whichever node of whichever tree they were given to.
class PartCommands {
 public:
  /// Whether the meshes of the parts are drawn like the parts.
  enum class Meshes { Follow, StayAsTheyAre };

  /// `node` is where the command was given; its view-update flag decides about the redraw.
  PartCommands(CQDTreeItem& node, std::vector<CQDTreeItem*> parts, Meshes meshes);
  /// Runs a command; false when it is none of these.
  bool Run(unsigned command);

  void ShowHideMesh(int show);
  void DeleteMeshes();

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
