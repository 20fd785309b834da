#pragma once

#include <string_view>

#include "host/ProductVariant.h"
#include "workbench/session/WorksTrees.h"

namespace qd::workbench {

/// What stands behind a window of a document, whatever window system it is made with: the works trees, in step
/// with the document, and the acts of the window's own menus.
class Session final {
 public:
  /// Gives a bar its window, without rows yet, to be shown for a document.
  static void MakeBar(CWorksTreeBar& bar, CQDDocBase& doc);

  /// Makes the rows. The bars have their windows already; like the document they outlive this.
  Session(WorkDocument& doc, CWorksTreeBar& model, CWorksTreeBar& sets, WorksTrees::Later later);

  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  const WorkDocument& Document() const { return m_doc; }
  WorksTrees& Trees() { return m_trees; }
  const WorksTrees& Trees() const { return m_trees; }
  Looking& Look() { return m_doc.GetLooking(); }
  Sections& Cuts() { return m_doc.GetSections(); }
  Picks& Picked() { return m_doc.GetPicks(); }
  CWorksTreeManager& Manager() { return m_trees.Manager(); }
  CQDTreeListCtrl& ModelTree() { return m_trees.Bar(kModelTree).GetTreeCtrl(); }

  /// The trees take up what the database was filled with behind their backs; the document has a new name, and is
  /// shown as BytesOfDisplay has it; as it was made for other bytes.
  void TakeUp(const CString& path, std::string_view shown = {});
  /// Gives the document another name.
  void Rename(const CString& path);
  /// Whether there are neither parts nor meshes: the first file that is imported names the document.
  bool IsEmpty() const;

  void Undo() { m_doc.GetDatabase().Undo(); }
  void Redo() { m_doc.GetDatabase().Redo(); }
  /// Deletes the selected records, in whichever tree they were selected, as one act; for mesh sets it asks whether
  /// nested ones are to go with them. Nothing when rows without records are all that is selected.
  void Delete();
  bool CanDelete() const;
  void ShowAll();
  void HideAll();
  void FadeMeshed(bool fades) { m_doc.GetDisplay().Parts().SetFadesMeshed(fades); }
  /// Colours all elements by how good they are.
  void ColourBy(const MeshDisplay::Quality& quality);
  void LeaveIsolation() { m_doc.GetDisplay().LeaveIsolation(); }
  /// A command for the mesh branch.
  void SendToMeshes(unsigned command);
  /// Meshes again as the first of the mesh sets that are meant was made; says so when there is none of them that a
  /// generator made.
  void MeshAgain();
  /// Opens a dialog on mesh sets, which finds out itself what it works on.
  void OpenMeshDialog(unsigned command);
  /// Opens the dialog that puts picked elements into a mesh set.
  void OpenPickedDialog();
  void ChangeVariant(ProductVariant variant);
  /// What stands below the menus of rows in both trees, whichever are selected; replaces what was given before.
  /// Numbers are those from kFirstOfHost on.
  void SetMore(CQDTreeListCtrl::MoreEntries more) { m_more = std::move(more); }
  static constexpr unsigned kFirstOfHost = 60000;

 private:
  void AddCommandsTo(CQDTreeListCtrl& tree);
  bool TakeNestedAlong(std::vector<iterator>& records) const;

  WorkDocument& m_doc;
  WorksTrees m_trees;
  CQDTreeListCtrl::MoreEntries m_more;
};

}  // namespace qd::workbench
