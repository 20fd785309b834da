#pragma once

#include <utility>
#include <vector>

#include "host/CQDDocBase.h"

namespace qd {

/// A document of a host that has no model: it has a name and a selection, and none of what could be asked for
/// beyond. Trees of host-made nodes need no more; others override what they have.
class CQDNullDocument : public CQDDocBase {
 public:
  explicit CQDNullDocument(CString name = {}) : m_name(std::move(name)) {}  ///< `name` is what GetPathName says

  CString GetPathName() const override { return m_name; }
  CQDViewBase* GetActiveView() override { return nullptr; }
  CQDDBSession* GetDBSession() override { return nullptr; }
  CCADSession* GetCADSession() override { return nullptr; }
  CQDMeshManager* GetMeshManager() override { return nullptr; }
  CQDLabelManager* GetLabelManager() override { return nullptr; }
  CQDModelRange* GetModelRange() override { return nullptr; }
  CQDPostManager* GetPostManager() override { return nullptr; }
  CMPUData* GetMPUData() override { return nullptr; }
  ISectionAPI* GetSectionAPI() override { return nullptr; }
  void Import() override {}
  int RunCommand(const CQDCommandObj&) override { return 0; }
  int DeleteData(int, const std::vector<iterator>&) override { return 0; }
  IQDCurrentDialog* GetCurrentDialog() override { return nullptr; }
  void SetModelInfoChangedFlag(int) override {}
  void SetPendingUpdate(int) override {}
  void ReMakeAllLabel(int) override {}
  void ClearSelectBuffer(int) override { m_selection.clear(); }
  void AddToSelBuffer(iterator itr) override { m_selection.push_back(itr); }
  const std::vector<iterator>& GetSelectBuffer() const override { return m_selection; }
  int IsSelecting() const override { return 0; }
  void AddCheckedMset(iterator) override {}
  void AddCheckedPair(iterator) override {}
  void AddCheckedLoad(iterator) override {}
  void AddCheckedBoundary(iterator) override {}

 private:
  CString m_name;
  std::vector<iterator> m_selection;
};

}  // namespace qd
