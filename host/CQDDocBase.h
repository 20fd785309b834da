#pragma once

#include <vector>

#include "host/CQDDBSession.h"
#include "host/Display.h"

namespace qd {

/// What docking panes know of a document.
class CDocument {
 public:
  virtual ~CDocument() = default;
};

/// An open document. It outlives its works trees' items.
class CQDDocBase : public CDocument {
 public:
  /// Full path of the file; a word for an unsaved document.
  virtual CString GetPathName() const = 0;
  /// Null while no view is open.
  virtual CQDViewBase* GetActiveView() = 0;
  virtual CQDDBSession* GetDBSession() = 0;
  virtual CCADSession* GetCADSession() = 0;
  virtual CQDMeshManager* GetMeshManager() = 0;
  virtual CQDLabelManager* GetLabelManager() = 0;
  virtual CQDModelRange* GetModelRange() = 0;
  virtual CQDPostManager* GetPostManager() = 0;

  /// The selection buffer: what is selected in the document, whoever selected it.
  virtual void ClearSelectBuffer(int notify) = 0;
  virtual void AddToSelBuffer(iterator itr) = 0;
  virtual const std::vector<iterator>& GetSelectBuffer() const = 0;
  /// Non-zero while a command collects a selection, which must not be cleared then.
  virtual int IsSelecting() const = 0;

  /// Collectors of checked records by tree-item type: 10, 13, 14, 15.
  virtual void AddCheckedMset(iterator itr) = 0;
  virtual void AddCheckedPair(iterator itr) = 0;
  virtual void AddCheckedLoad(iterator itr) = 0;
  virtual void AddCheckedBoundary(iterator itr) = 0;
};

}  // namespace qd
