#pragma once

#include <functional>
#include <vector>

#include "host/CQDDocBase.h"
#include "workbench/display/Display.h"
#include "workbench/display/Looking.h"
#include "workbench/display/MeasureMarks.h"
#include "workbench/display/Notice.h"
#include "workbench/display/Picks.h"
#include "workbench/display/Sections.h"
#include "workbench/display/Selection.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// Whether records of a type are among those of a change.
bool Concerns(const CQDUpdateRecord& record, std::uint16_t dataType);

/// An open document: its database, what is shown of it and what is selected in it.
class WorkDocument : public CQDDocBase, private IDatabaseListener {
 public:
  WorkDocument() { m_database.SetListener(this); }

  Database& GetDatabase() { return m_database; }
  const Database& GetDatabase() const { return m_database; }
  Display& GetDisplay() { return m_display; }
  const Display& GetDisplay() const { return m_display; }
  Looking& GetLooking() { return m_looking; }
  const Looking& GetLooking() const { return m_looking; }
  Sections& GetSections() { return m_sections; }
  const Sections& GetSections() const { return m_sections; }
  /// What clicks in the view take, and what of parts and mesh sets has been picked.
  Picks& GetPicks() { return m_picks; }
  const Picks& GetPicks() const { return m_picks; }
  /// What was measured, for the view to show where.
  MeasureMarks& GetMarks() { return m_marks; }
  const MeasureMarks& GetMarks() const { return m_marks; }
  void SetPathName(CString path) { m_path = std::move(path); }
  void SetActiveView(CQDViewBase* view) { m_view = view; }

  const Selection& GetSelection() const { return m_selection; }
  /// Selects something else, whoever asks for it; all who show the selection follow.
  void Select(Selection selection);
  [[nodiscard]] Subscription OnSelection(Notice<Selection>::Call call) {
    return m_selectionNotice.Subscribe(std::move(call));
  }
  /// How it is found out what lies below the selected rows that stand for no record, and whether one record does;
  /// null for nobody who knows.
  void SetBelowRows(std::function<std::vector<iterator>()> below, std::function<bool(iterator)> isBelow) {
    m_belowRows = std::move(below);
    m_isBelowRows = std::move(isBelow);
  }
  /// What an act on the selection means: the selected records and those below the other selected rows, some
  /// perhaps twice.
  std::vector<iterator> Meant() const;
  /// Whether one of them is there for a selected row that stands for no record.
  bool IsBelowRows(iterator itr) const { return m_selection.others != 0 && m_isBelowRows && m_isBelowRows(itr); }

  /// Follows what becomes of records by acts, undo and redo. Those that are gone can still be read meanwhile. The
  /// works trees are told first.
  [[nodiscard]] Subscription OnRecords(Notice<CQDUpdateRecord>::Call call) {
    return m_recordNotice.Subscribe(std::move(call));
  }
  /// Follows settings that are stored without an act.
  [[nodiscard]] Subscription OnSetting(Notice<WorkDocument>::Call call) {
    return m_settingNotice.Subscribe(std::move(call));
  }

  CString GetPathName() const override { return m_path; }
  CQDViewBase* GetActiveView() override { return m_view; }
  CQDDBSession* GetDBSession() override { return &m_database; }
  CCADSession* GetCADSession() override { return &m_display.Parts(); }
  CQDMeshManager* GetMeshManager() override { return &m_display.Meshes(); }
  CQDLabelManager* GetLabelManager() override { return &m_display.Labels(); }
  CQDModelRange* GetModelRange() override { return &m_display.Range(); }
  CQDPostManager* GetPostManager() override { return &m_display.Post(); }
  CMPUData* GetMPUData() override { return &m_display.Meshes(); }
  ISectionAPI* GetSectionAPI() override { return &m_display.Sections(); }
  CQDRowBoxes* GetRowBoxes() override { return &m_display.Boxes(); }
  void OnShowOnly() override { m_display.BeginIsolation(); }

  /// Called when the user asks for an import.
  void SetOnImport(std::function<void()> onImport) { m_onImport = std::move(onImport); }
  void Import() override;
  int RunCommand(const CQDCommandObj& command) override;
  int DeleteData(int operation, const std::vector<iterator>& itrs) override;
  IQDCurrentDialog* GetCurrentDialog() override { return m_dialog; }
  /// The dialog that the user works with now; null when it closes.
  void SetCurrentDialog(IQDCurrentDialog* dialog) { m_dialog = dialog; }
  void SetModelInfoChangedFlag(int) override {}  // what is kept beside the model is told by its own notices
  void SetPendingUpdate(int) override { m_display.MarkDirty(); }
  void ReMakeAllLabel(int) override { m_display.MarkDirty(); }

  void ClearSelectBuffer(int notify) override;
  void AddToSelBuffer(iterator itr) override;
  const std::vector<iterator>& GetSelectBuffer() const override { return m_selection.records; }
  int IsSelecting() const override { return 0; }

  void AddCheckedMset(iterator itr) override { m_checked.push_back(itr); }
  void AddCheckedPair(iterator itr) override { m_checked.push_back(itr); }
  void AddCheckedLoad(iterator itr) override { m_checked.push_back(itr); }
  void AddCheckedBoundary(iterator itr) override { m_checked.push_back(itr); }

 private:
  void OnDatabaseChanged(const CQDUpdateRecord& record) override {
    m_recordNotice.Tell(record);
    m_picks.Follow(record);
  }
  void OnSettingChanged() override { m_settingNotice.Tell(*this); }

  Database m_database;
  Display m_display{m_database};
  Looking m_looking;
  Sections m_sections;
  Picks m_picks{m_database};
  MeasureMarks m_marks;
  CString m_path;
  CQDViewBase* m_view = nullptr;
  Selection m_selection;
  Notice<Selection> m_selectionNotice;
  Notice<CQDUpdateRecord> m_recordNotice;
  Notice<WorkDocument> m_settingNotice;
  std::function<std::vector<iterator>()> m_belowRows;
  std::function<bool(iterator)> m_isBelowRows;
  bool m_selectionTold = true;  // false while a tree says what is selected
  std::vector<iterator> m_checked;
  std::function<void()> m_onImport;
  IQDCurrentDialog* m_dialog = nullptr;
};

}  // namespace qd::workbench
