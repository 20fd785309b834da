#pragma once

#include <functional>
#include <vector>

#include "host/CQDDocBase.h"
#include "workbench/display/DisplayState.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// An open document: its database, its display state and its selection buffer.
class WorkDocument : public CQDDocBase {
 public:
  Database& GetDatabase() { return m_database; }
  DisplayState& GetDisplay() { return m_display; }
  void SetPathName(CString path) { m_path = std::move(path); }
  void SetActiveView(CQDViewBase* view) { m_view = view; }
  /// Called whenever the selection buffer was changed by somebody who wants it known.
  void SetOnSelection(std::function<void()> onSelection) { m_onSelection = std::move(onSelection); }
  /// Replaces the selection buffer, as a pick in the view does. The caller tells the works trees.
  void SetSelectBuffer(std::vector<iterator> itrs);

  CString GetPathName() const override { return m_path; }
  CQDViewBase* GetActiveView() override { return m_view; }
  CQDDBSession* GetDBSession() override { return &m_database; }
  CCADSession* GetCADSession() override { return &m_display; }
  CQDMeshManager* GetMeshManager() override { return &m_display; }
  CQDLabelManager* GetLabelManager() override { return &m_display; }
  CQDModelRange* GetModelRange() override { return &m_display; }
  CQDPostManager* GetPostManager() override { return &m_display; }
  CMPUData* GetMPUData() override { return &m_display; }
  ISectionAPI* GetSectionAPI() override { return &m_display; }

  /// Called when the user asks for an import.
  void SetOnImport(std::function<void()> onImport) { m_onImport = std::move(onImport); }
  void Import() override;
  int RunCommand(const CQDCommandObj& command) override;
  int DeleteData(int operation, const std::vector<iterator>& itrs) override;
  IQDCurrentDialog* GetCurrentDialog() override { return m_dialog; }
  /// The dialog that the user works with now; null when it closes.
  void SetCurrentDialog(IQDCurrentDialog* dialog) { m_dialog = dialog; }
  void SetModelInfoChangedFlag(int changed) override { m_modelInfoChanged = changed != 0; }
  /// Whether something was changed that a save would keep beside the model.
  bool IsModelInfoChanged() const { return m_modelInfoChanged; }
  void SetPendingUpdate(int) override { m_display.MarkDirty(); }
  void ReMakeAllLabel(int) override { m_display.MarkDirty(); }

  void ClearSelectBuffer(int notify) override;
  void AddToSelBuffer(iterator itr) override;
  const std::vector<iterator>& GetSelectBuffer() const override { return m_selection; }
  int IsSelecting() const override { return 0; }

  void AddCheckedMset(iterator itr) override { m_checked.push_back(itr); }
  void AddCheckedPair(iterator itr) override { m_checked.push_back(itr); }
  void AddCheckedLoad(iterator itr) override { m_checked.push_back(itr); }
  void AddCheckedBoundary(iterator itr) override { m_checked.push_back(itr); }

 private:
  Database m_database;
  DisplayState m_display;
  CString m_path;
  CQDViewBase* m_view = nullptr;
  std::vector<iterator> m_selection;
  std::vector<iterator> m_checked;
  std::function<void()> m_onSelection;
  std::function<void()> m_onImport;
  IQDCurrentDialog* m_dialog = nullptr;
  bool m_modelInfoChanged = false;
};

}  // namespace qd::workbench
