#pragma once

#include <vector>

#include "host/CQDDBSession.h"
#include "host/Display.h"
#include "platform/Export.h"

namespace qd {

class CQDCommandObj;

/// What docking panes know of a document.
class CDocument {
 public:
  virtual ~CDocument() = default;
};

/// A modeless dialog that shows what the model holds.
class IQDCurrentDialog {
 public:
  /// The model has changed; `reserved` is 0.
  virtual void Update(int reserved) = 0;

 protected:
  ~IQDCurrentDialog() = default;
};

/// What the document's delete operation is asked to delete.
inline constexpr int kDeleteModelData = 18;

/// Who shows a document, and must know when it goes.
class IDocumentFollower {
 public:
  /// The document is being destroyed: nothing may be asked of it any more.
  virtual void OnDocumentGone() = 0;

 protected:
  ~IDocumentFollower() = default;
};

/// An open document. When it goes before its works trees, they lose their rows.
class QD_EXPORT CQDDocBase : public CDocument {
 public:
  ~CQDDocBase() override;
  CQDDocBase(const CQDDocBase&) = delete;
  CQDDocBase& operator=(const CQDDocBase&) = delete;
  /// Tells a follower, which is not owned, when the document goes.
  void Follow(IDocumentFollower& follower) { m_followers.push_back(&follower); }
  /// Tells it no more.
  void Unfollow(IDocumentFollower& follower) { std::erase(m_followers, &follower); }

  /// Full path of the file; a word for an unsaved document.
  virtual CString GetPathName() const = 0;
  /// Null while no view is open.
  virtual CQDViewBase* GetActiveView() = 0;
  /// @{
  /// A part of the document, null when the host has none such; it lives as long as the document.
  virtual CQDDBSession* GetDBSession() = 0;
  virtual CCADSession* GetCADSession() = 0;
  virtual CQDMeshManager* GetMeshManager() = 0;
  virtual CQDLabelManager* GetLabelManager() = 0;
  virtual CQDModelRange* GetModelRange() = 0;
  virtual CQDPostManager* GetPostManager() = 0;
  virtual CMPUData* GetMPUData() = 0;
  virtual ISectionAPI* GetSectionAPI() = 0;
  /// @}
  /// Null for a host that does not keep the boxes of sets, groups and roots: rows that are made anew are checked
  /// then.
  virtual CQDRowBoxes* GetRowBoxes() { return nullptr; }
  /// Called before a command shows only what is selected of parts or of mesh sets, for hosts from which the user
  /// can go back to what was shown before.
  virtual void OnShowOnly() {}

  /// Asks the user for files and imports them.
  virtual void Import() = 0;
  /// Runs a command object. Returns 1, or 0 with nothing changed.
  virtual int RunCommand(const CQDCommandObj& command) = 0;
  /// Deletes records as one undoable act; `operation` is kDeleteModelData. Mesh sets nested in deleted ones move
  /// to the nearest set above that stays. Returns 1, or 0 with nothing changed.
  virtual int DeleteData(int operation, const std::vector<iterator>& itrs) = 0;
  /// The dialog that the user works with, null for none.
  virtual IQDCurrentDialog* GetCurrentDialog() = 0;
  /// Whether something was changed that is saved beside the model.
  virtual void SetModelInfoChangedFlag(int changed) = 0;
  /// Marks that views have something to draw; other than 0 when they have.
  virtual void SetPendingUpdate(int pending) = 0;
  virtual void ReMakeAllLabel(int notify) = 0;  ///< has all labels made anew at the next frame

  /// The selection buffer: what is selected in the document, whoever selected it.
  virtual void ClearSelectBuffer(int notify) = 0;
  virtual void AddToSelBuffer(iterator itr) = 0;  ///< adds a record; 0 is none
  /// What is selected, in the order in which it was added.
  virtual const std::vector<iterator>& GetSelectBuffer() const = 0;
  /// Non-zero while a command collects a selection, which must not be cleared then.
  virtual int IsSelecting() const = 0;

  /// Collectors of checked records by tree-item type: 10, 13, 14, 15.
  virtual void AddCheckedMset(iterator itr) = 0;
  /// @{
  /// Collects a checked record of types 13, 14 and 15.
  virtual void AddCheckedPair(iterator itr) = 0;
  virtual void AddCheckedLoad(iterator itr) = 0;
  virtual void AddCheckedBoundary(iterator itr) = 0;
  /// @}

 protected:
  CQDDocBase() = default;

 private:
  std::vector<IDocumentFollower*> m_followers;
};

}  // namespace qd
