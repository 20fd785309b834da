#pragma once

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "host/CMainFrame.h"
#include "host/CQDNullDocument.h"
#include "host/NullDatabase.h"

namespace qd {

// A display that draws nothing. What is shown and hidden is remembered, so that boxes of rows say it; a host that
// draws derives from what it follows and does so.

/// Parts that are shown, all until they are hidden.
class CQDNullRenderObjManager : public CRenderObjManager {
 public:
  virtual ~CQDNullRenderObjManager() = default;
  int GetShowHide(int cadItem) const override { return m_hidden.contains(cadItem) ? 0 : 1; }
  void SetShowHide(int cadItem, int show) override {
    if (m_open == 0) m_before = m_hidden;
    show != 0 ? static_cast<void>(m_hidden.erase(cadItem)) : static_cast<void>(m_hidden.insert(cadItem));
  }
  unsigned GetRenderMode(int cadItem) const override {
    const auto found = m_modes.find(cadItem);
    return found != m_modes.end() ? found->second : 0;
  }
  void SetRenderMode(const std::vector<int>& cadItems, unsigned mode) override {
    for (const int item : cadItems) m_modes[item] = mode;
  }
  void SetTransparency(const std::vector<int>&, double) override {}
  void ChangePrevShowHide() override { std::swap(m_hidden, m_before); }
  void SetMeshMark(int, int) override {}
  void BeginShowHide() override {
    if (m_open++ == 0) m_before = m_hidden;
  }
  void EndShowHide() override { --m_open; }

 private:
  std::set<int> m_hidden;
  std::set<int> m_before;
  std::map<int, unsigned> m_modes;
  int m_open = 0;
};

/// The CAD side with parts that are remembered and not drawn.
class CQDNullCADSession : public CCADSession {
 public:
  virtual ~CQDNullCADSession() = default;
  CRenderObjManager& GetRenderObjects() override { return m_objects; }

 private:
  CQDNullRenderObjManager m_objects;
};

/// Mesh sets that are shown, all until they are hidden.
class CQDNullMeshManager : public CQDMeshManager {
 public:
  virtual ~CQDNullMeshManager() = default;
  int IsMsetShown(iterator mset) const override { return m_hidden.contains(mset) ? 0 : 1; }
  void ShowHideMset(iterator mset, int show) override {
    show != 0 ? static_cast<void>(m_hidden.erase(mset)) : static_cast<void>(m_hidden.insert(mset));
  }
  void ShowHideMset(const std::vector<iterator>& msets, int show) override {
    for (const iterator mset : msets) ShowHideMset(mset, show);
  }
  void ShowHideMsetUnit(iterator mset, int show) override { ShowHideMset(mset, show); }
  void CommitShowHideMsetUnit() override {}
  void SetMeshColorMode(unsigned) override {}
  void UpdateMeshColor() override {}

 private:
  std::set<iterator> m_hidden;
};

/// Drawing of mesh sets that nobody draws.
class CQDNullMPUData : public CMPUData {
 public:
  virtual ~CQDNullMPUData() = default;
  void SetRenderMode(const std::vector<std::uint32_t>&, unsigned) override {}
  void ToggleShrink(const std::vector<std::uint32_t>&) override {}
  int HasAddOnInfo(const std::vector<std::uint32_t>&, std::uint32_t) const override { return 0; }
  void SetAddOnInfo(const std::vector<std::uint32_t>&, std::uint32_t) override {}
  void DelAddOnInfo(const std::vector<std::uint32_t>&, std::uint32_t) override {}
  int HasAddOnInfoAll(std::uint32_t) const override { return 0; }
  void SetAddOnInfoAll(std::uint32_t) override {}
  void DelAddOnInfoAll(std::uint32_t) override {}
  void SetTransparency(const std::vector<std::uint32_t>&, unsigned char) override {}
};

/// Labels that are shown when they were shown.
class CQDNullLabelManager : public CQDLabelManager {
 public:
  virtual ~CQDNullLabelManager() = default;
  CQDLabel* GetLabel(int) override { return nullptr; }
  int GetShowHide(int kind, std::int32_t id) override { return m_shown.contains({kind, id}) ? 1 : 0; }
  void SetShowHide(int show, int kind, std::int32_t id) override {
    show != 0 ? static_cast<void>(m_shown.insert({kind, id})) : static_cast<void>(m_shown.erase({kind, id}));
  }

 private:
  std::set<std::pair<int, std::int32_t>> m_shown;
};

/// An extent that nobody asks for.
class CQDNullModelRange : public CQDModelRange {
 public:
  virtual ~CQDNullModelRange() = default;
  void UpdateAllRange(int) override {}
  void UpdateCADRange(int) override {}
};

/// Post-processing that a host has not.
class CQDNullPostManager : public CQDPostManager {
 public:
  virtual ~CQDNullPostManager() = default;
  void UpdateShowHideGeom(CQDViewBase&) override {}
  void UpdateActivity(CQDViewBase&, int) override {}
  void UpdateShowHideMSet(CQDViewBase&, int) override {}
};

/// Section planes that a view has not.
class CQDNullSectionAPI : public ISectionAPI {
 public:
  virtual ~CQDNullSectionAPI() = default;
  void UpdateClipSlice(CQDViewBase&) override {}
  void UpdateClipVect(CQDViewBase&) override {}
};

/// Boxes of rows that stand for nothing that could be shown, as they were left.
class CQDNullRowBoxes : public CQDRowBoxes {
 public:
  virtual ~CQDNullRowBoxes() = default;
  int GetBox(const RowBox& box) const override {
    constexpr int kChecked = 3;
    const auto found = m_states.find(box);
    return found != m_states.end() ? found->second : kChecked;
  }
  void SetBox(const RowBox& box, int state) override { m_states[box] = state; }

 private:
  std::map<RowBox, int> m_states;
};

/// Colours of parts that nobody draws.
class CQDNullRenderManager : public CQDRenderManager {
 public:
  virtual ~CQDNullRenderManager() = default;
  void SetAllColorModelType(int) override {}
};

/// A view of which nothing is seen.
class CQDNullView : public CQDViewBase {
 public:
  virtual ~CQDNullView() = default;
  CQDRenderManager* GetRenderManager() override { return &m_render; }
  int IsPostMode() const override { return 0; }
  void Invalidate(int) override {}
  void Redraw(int) override {}
  bool IsOver(CPoint) const override { return false; }

 private:
  CQDNullRenderManager m_render;
};

/// A property window that holds its page and shows it nowhere.
class CQDNullPropertiesWnd : public CPropertiesWnd {
 public:
  virtual ~CQDNullPropertiesWnd() = default;
  void SetPropertySet(std::unique_ptr<IPropertySet> page) override {
    m_page = std::move(page);
    if (m_page != nullptr) m_page->ShowProperty();
  }
  void Refresh() override {
    if (m_page != nullptr) m_page->ShowProperty();
  }
  IPropertySet* GetPropertySet() const override { return m_page.get(); }

 private:
  std::unique_ptr<IPropertySet> m_page;
};

/// A main window without panes.
class CQDNullMainFrame : public CMainFrame {
 public:
  CPropertiesWnd* GetPropertiesWnd(CQDDocBase*) override { return nullptr; }
  IWorksTreeManager* GetWorksTreeManager() override { return nullptr; }
};

/// A document with a model: everything that a document may be asked for is there, with nothing in it. A host
/// overrides the calls that give what it has.
class CQDNullModelDocument : public CQDNullDocument {
 public:
  using CQDNullDocument::CQDNullDocument;
  CQDViewBase* GetActiveView() override { return &m_view; }
  CQDDBSession* GetDBSession() override { return &m_session; }
  CCADSession* GetCADSession() override { return &m_cad; }
  CQDMeshManager* GetMeshManager() override { return &m_meshes; }
  CQDLabelManager* GetLabelManager() override { return &m_labels; }
  CQDModelRange* GetModelRange() override { return &m_range; }
  CQDPostManager* GetPostManager() override { return &m_post; }
  CMPUData* GetMPUData() override { return &m_meshLook; }
  ISectionAPI* GetSectionAPI() override { return &m_sections; }
  CQDRowBoxes* GetRowBoxes() override { return &m_boxes; }

 private:
  CQDNullView m_view;
  CQDNullDBSession m_session;
  CQDNullCADSession m_cad;
  CQDNullMeshManager m_meshes;
  CQDNullLabelManager m_labels;
  CQDNullModelRange m_range;
  CQDNullPostManager m_post;
  CQDNullMPUData m_meshLook;
  CQDNullSectionAPI m_sections;
  CQDNullRowBoxes m_boxes;
};

}  // namespace qd
