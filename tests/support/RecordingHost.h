#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/CMainFrame.h"
#include "host/Dialogs.h"
#include "host/LongWork.h"
#include "host/MessageOutput.h"
#include "qd_wrt/core/IAppWrt.h"
#include "workbench/display/WorkDocument.h"

namespace qd::test {

/// What the module has asked of its host: a line a call, in order, with the arguments by name. Calls that reach
/// the host while it handles another one, as the trees do when a commit is announced, stand indented below that
/// one.
class HostLog {
 public:
  explicit HostLog(const workbench::Database& data) : m_data(data) {}
  /// Complains of what was begun and never ended.
  ~HostLog();
  HostLog(const HostLog&) = delete;
  HostLog& operator=(const HostLog&) = delete;

  /// Notes a call that changes or announces something. False when the host is to refuse it.
  bool Act(const std::string& call, const std::vector<std::string>& arguments = {});
  /// From now on the host refuses a call, known by its name; `after` calls still pass.
  void Refuse(const std::string& call, int after = 0) { m_refused[call] = after; }
  bool WasRefused() const { return m_wasRefused; }
  void RefuseNothing() { m_refused.clear(); }
  /// Counts what has to be ended by whoever began it.
  void Bracket(const std::string& what, int change) { m_brackets[what] += change; }
  /// All calls since the last time.
  std::string Take();

  /// While one lives, calls count as made inside the last one.
  class Inside {
   public:
    explicit Inside(HostLog& log) : m_log(log) { ++m_log.m_depth; }
    ~Inside() { --m_log.m_depth; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

   private:
    HostLog& m_log;
  };

  // ---- how arguments are written
  static std::string Number(double value);
  static std::string Word(const CString& text);
  static std::string Colour(COLORREF colour);
  /// A record by its name: "Bolt", "mesh of Bolt", "key of Bolt"; "none", or "gone" for what is no record.
  std::string Record(iterator itr) const;
  std::string Records(const std::vector<iterator>& itrs) const;
  std::string Part(int cadItem) const;
  std::string Parts(const std::vector<int>& cadItems) const;
  std::string Mset(std::uint32_t key) const;
  std::string Msets(const std::vector<std::uint32_t>& keys) const;
  /// A record by what differs from the one that stands, or from a new one for null.
  static std::string Change(const tagTGeom& record, const tagTGeom* old);
  std::string Change(const tagTMset& record, const tagTMset* old) const;
  std::string Change(const tagTCord& record, const tagTCord* old) const;

 private:
  void Write(const std::string& call, const std::vector<std::string>& arguments);

  const workbench::Database& m_data;
  std::string m_text;
  std::map<std::string, int> m_refused;   // and how many calls still pass
  std::map<std::string, int> m_brackets;  // begun less ended
  int m_depth = 0;
  bool m_wasRefused = false;
};

/// A document of the workbench that writes down what reaches it through the host's interfaces. Its own code, which
/// knows the database and the display state themselves, is not heard.
class RecordingDocument final : public workbench::WorkDocument {
 public:
  RecordingDocument();
  ~RecordingDocument() override;

  HostLog& Log() { return m_log; }
  void SetPostMode(bool on);
  void SetSelecting(bool on) { m_selecting = on; }
  /// A modeless dialog stands open and hears of changes.
  void SetDialogOpen(bool open);
  /// Without a view there is nothing to redraw.
  void SetViewOpen(bool open) { m_viewOpen = open; }

  CQDViewBase* GetActiveView() override;
  CQDDBSession* GetDBSession() override;
  CCADSession* GetCADSession() override;
  CQDMeshManager* GetMeshManager() override;
  CQDLabelManager* GetLabelManager() override;
  CQDModelRange* GetModelRange() override;
  CQDPostManager* GetPostManager() override;
  CMPUData* GetMPUData() override;
  ISectionAPI* GetSectionAPI() override;

  void Import() override;
  int RunCommand(const CQDCommandObj& command) override;
  int DeleteData(int operation, const std::vector<iterator>& itrs) override;
  void SetModelInfoChangedFlag(int changed) override;
  void SetPendingUpdate(int pending) override;
  void ReMakeAllLabel(int notify) override;
  void ClearSelectBuffer(int notify) override;
  void AddToSelBuffer(iterator itr) override;
  int IsSelecting() const override;
  void AddCheckedMset(iterator itr) override;
  void AddCheckedPair(iterator itr) override;
  void AddCheckedLoad(iterator itr) override;
  void AddCheckedBoundary(iterator itr) override;

 private:
  struct Interfaces;
  class Dialog;

  mutable HostLog m_log{GetDatabase()};
  std::unique_ptr<Interfaces> m_interfaces;
  std::unique_ptr<Dialog> m_dialog;
  bool m_selecting = false;
  bool m_viewOpen = true;
};

/// The property window of the recording host.
class RecordingProperties final : public CPropertiesWnd {
 public:
  explicit RecordingProperties(HostLog& log) : m_log(log) {}
  void SetPropertySet(std::unique_ptr<IPropertySet> page) override;
  void Refresh() override;
  IPropertySet* GetPropertySet() const override { return m_page.get(); }

 private:
  HostLog& m_log;
  std::unique_ptr<IPropertySet> m_page;
};

/// The application around the documents of the recording host: dialogs, warnings, long work.
class RecordingApp final : public IAppWrt,
                           public IGeomDialog,
                           public IQDMeshgDialog,
                           public IQDCmdDialog,
                           public IMessageOutput,
                           public ILongWork {
 public:
  explicit RecordingApp(HostLog& log);
  /// The user stops long work as soon as it shows how far it is.
  void StopLongWork() { m_stop = true; }

  void OpenDialog(int flag, CQDDocBase* doc, const CString& dialogClass, void* data) override;
  void CloseDialog(CQDDocBase* doc, const CString& dialogClass) override;
  void OpenMeshDialog(int flag, CQDDocBase* doc, const CString& dialogClass, void* data) override;
  void CloseMeshDialog(CQDDocBase* doc, const CString& dialogClass) override;
  void SetSelectAssignedContact(CQDDocBase* doc, std::list<iterator>& parts) override;
  int GetMenuIndexOfAutoSolid() const override { return 1; }
  int GetMenuIndexOfMapSolid() const override { return 2; }
  int GetMenuIndexOf2D3D() const override { return 3; }
  int GetMenuIndexOfAutoLayer() const override { return 4; }
  void Warn(const CString& text) override;
  int Run(const CString& title, const std::function<int(const ProgressCall&)>& work) override;

 protected:
  void Open(CQDDocBase* doc, const CString& dialogClass, const void* first, const void* second) override;

 private:
  HostLog& m_log;
  bool m_stop = false;
};

}  // namespace qd::test
