#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <vector>

#include "host/Display.h"

namespace qd::workbench {

/// What is shown and how: state behind the host's display interfaces. Every call only marks; the view asks once
/// per frame what has changed.
class DisplayState final : public CCADSession,
                           public CRenderObjManager,
                           public CQDMeshManager,
                           public CQDModelRange,
                           public CQDPostManager,
                           public CQDLabelManager {
 public:
  struct CadItem {
    bool shown = true;
    bool meshed = false;
    std::uint8_t mode = 1;
  };

  /// Called at the first mark after the marks were last taken, so that a frame can be scheduled.
  void SetOnDirty(std::function<void()> onDirty) { m_onDirty = std::move(onDirty); }
  /// Whether anything was marked since the last call; clears the marks.
  bool TakeDirty();

  const CadItem& GetCadItem(int cadItem) const;
  bool IsMsetShown(iterator mset) const { return !m_hiddenMsets.contains(mset); }

  CRenderObjManager& GetRenderObjects() override { return *this; }

  int GetShowHide(int cadItem) const override { return GetCadItem(cadItem).shown ? 1 : 0; }
  void SetShowHide(int cadItem, int show) override;
  unsigned GetRenderMode(int cadItem) const override { return GetCadItem(cadItem).mode; }
  void SetMeshMark(int cadItem, int present) override;
  void BeginShowHide() override { ++m_batches; }
  void EndShowHide() override { --m_batches; }

  void ShowHideMset(iterator mset, int show) override;

  void UpdateAllRange(int) override { MarkDirty(); }
  void UpdateCADRange(int) override { MarkDirty(); }
  void UpdateShowHideGeom(CQDViewBase&) override { MarkDirty(); }
  void UpdateActivity(CQDViewBase&, int) override { MarkDirty(); }

  /// No record of the workbench has labels of its own yet.
  CQDLabel* GetLabel(int) override { return nullptr; }

  void MarkDirty();

 private:
  CadItem& Need(int cadItem);

  std::vector<CadItem> m_items;  // by CAD item number; items beyond the end are as made
  std::set<iterator> m_hiddenMsets;
  std::function<void()> m_onDirty;
  int m_batches = 0;
  bool m_dirty = false;
};

}  // namespace qd::workbench
