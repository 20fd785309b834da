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
                           public CMPUData,
                           public ISectionAPI,
                           public CQDRenderManager,
                           public CQDLabelManager {
 public:
  struct CadItem {
    bool shown = true;
    bool meshed = false;
    std::uint8_t mode = 1;
    float opacity = 1;
    bool shownBefore = true;   ///< the change of visibility `change`
    std::uint32_t change = 0;  ///< the last one that the item took part in
  };
  struct MeshLook {
    unsigned mode = 1;
    unsigned char opacity = 255;
  };

  /// Called at the first mark after the marks were last taken, so that a frame can be scheduled.
  void SetOnDirty(std::function<void()> onDirty) { m_onDirty = std::move(onDirty); }
  /// Called at the first change of a part's visibility or render mode after the changed ones were last taken.
  void SetOnItemsChanged(std::function<void()> onItemsChanged) { m_onItemsChanged = std::move(onItemsChanged); }
  /// The CAD items that have changed so since the last call.
  std::vector<int> TakeChangedItems();
  /// Whether anything was marked since the last call; clears the marks.
  bool TakeDirty();

  const CadItem& GetCadItem(int cadItem) const;
  bool IsMsetShown(iterator mset) const { return !m_hiddenMsets.contains(mset); }

  CRenderObjManager& GetRenderObjects() override { return *this; }

  int GetShowHide(int cadItem) const override { return GetCadItem(cadItem).shown ? 1 : 0; }
  void SetShowHide(int cadItem, int show) override;
  unsigned GetRenderMode(int cadItem) const override { return GetCadItem(cadItem).mode; }
  void SetRenderMode(const std::vector<int>& cadItems, unsigned mode) override;
  void SetTransparency(const std::vector<int>& cadItems, double fraction) override;
  void ChangePrevShowHide() override;
  void SetMeshMark(int cadItem, int present) override;
  /// The outermost bracket keeps what was shown before it, if anything changes inside.
  void BeginShowHide() override;
  void EndShowHide() override;

  void ShowHideMset(iterator mset, int show) override;
  void ShowHideMset(const std::vector<iterator>& msets, int show) override;
  void ShowHideMsetUnit(iterator mset, int show) override { m_units.emplace_back(mset, show); }
  void CommitShowHideMsetUnit() override;

  MeshLook GetMeshLook(std::uint32_t key) const;
  void SetRenderMode(const std::vector<std::uint32_t>& keys, unsigned mode) override;
  void SetTransparency(const std::vector<std::uint32_t>& keys, unsigned char value) override;

  void UpdateClipSlice(CQDViewBase&) override { MarkDirty(); }
  void UpdateClipVect(CQDViewBase&) override { MarkDirty(); }

  void SetAllColorModelType(int type) override;
  /// 0: parts in their own colours, 1: in those of their materials.
  int GetColorModelType() const { return m_colourModel; }

  void UpdateAllRange(int) override { MarkDirty(); }
  void UpdateCADRange(int) override { MarkDirty(); }
  void UpdateShowHideGeom(CQDViewBase&) override { MarkDirty(); }
  void UpdateActivity(CQDViewBase&, int) override { MarkDirty(); }

  /// No record of the workbench has labels of its own yet.
  CQDLabel* GetLabel(int) override { return nullptr; }

  void MarkDirty();

 private:
  CadItem& Need(int cadItem);
  void NoteShown(int cadItem);
  void NoteChanged(int cadItem);

  std::vector<CadItem> m_items;  // by CAD item number; items beyond the end are as made
  std::set<iterator> m_hiddenMsets;
  std::vector<std::pair<iterator, int>> m_units;
  std::map<std::uint32_t, MeshLook> m_meshLooks;
  std::vector<std::pair<int, bool>> m_previous;  // what the last change turned round: items and their state before
  std::vector<int> m_changing;                   // items that the open change has touched
  std::uint32_t m_change = 0;                    // counts the changes
  int m_colourModel = 0;
  std::function<void()> m_onDirty;
  std::function<void()> m_onItemsChanged;
  std::vector<int> m_changedItems;
  int m_batches = 0;
  bool m_dirty = false;
};

}  // namespace qd::workbench
