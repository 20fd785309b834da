#pragma once

#include <cstdint>
#include <functional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/Display.h"
#include "platform/FlatMap.h"

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
  /// How a mesh set is drawn.
  struct MeshLook {
    std::uint8_t mode = 1;
    std::uint8_t opacity = 255;
    bool shrink = false;
    std::uint32_t addOns = 0;
    bool operator==(const MeshLook&) const = default;
  };

  /// Called at the first mark after the marks were last taken, so that a frame can be scheduled.
  void SetOnDirty(std::function<void()> onDirty) { m_onDirty = std::move(onDirty); }
  /// Called at the first change of a part's visibility or render mode, or of a mesh set's visibility, after the
  /// changed ones were last taken.
  void SetOnItemsChanged(std::function<void()> onItemsChanged) { m_onItemsChanged = std::move(onItemsChanged); }
  /// The CAD items that have changed so since the last call.
  std::vector<int> TakeChangedItems();
  /// Whether anything was marked since the last call; clears the marks.
  bool TakeDirty();

  const CadItem& GetCadItem(int cadItem) const;

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

  int IsMsetShown(iterator mset) const override { return m_hiddenMsets.Contains(mset) ? 0 : 1; }
  void ShowHideMset(iterator mset, int show) override;
  void ShowHideMset(const std::vector<iterator>& msets, int show) override;
  void ShowHideMsetUnit(iterator mset, int show) override;
  void CommitShowHideMsetUnit() override { MarkDirty(); }
  void SetMeshColorMode(unsigned mode) override;
  void UpdateMeshColor() override { MarkDirty(); }
  unsigned GetMeshColorMode() const { return m_meshColourMode; }
  /// The mesh sets whose visibility has changed since the last call, for the view and for rows.
  std::vector<iterator> TakeChangedMsets() { return std::exchange(m_changedMsets, {}); }
  std::vector<iterator> TakeChangedMsetRows() { return std::exchange(m_changedMsetRows, {}); }

  MeshLook GetMeshLook(std::uint32_t key) const;
  /// Counts the changes of the looks of mesh sets.
  std::uint64_t MeshLookRevision() const { return m_lookRevision; }
  void SetRenderMode(const std::vector<std::uint32_t>& keys, unsigned mode) override;
  void SetTransparency(const std::vector<std::uint32_t>& keys, unsigned char value) override;
  void ToggleShrink(const std::vector<std::uint32_t>& keys) override;
  int HasAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) const override;
  void SetAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) override;
  void DelAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) override;
  int HasAddOnInfoAll(std::uint32_t bits) const override;
  void SetAddOnInfoAll(std::uint32_t bits) override;
  void DelAddOnInfoAll(std::uint32_t bits) override;

  void UpdateClipSlice(CQDViewBase&) override { MarkDirty(); }
  void UpdateClipVect(CQDViewBase&) override { MarkDirty(); }

  void SetAllColorModelType(int type) override;
  /// 0: parts in their own colours, 1: in those of their materials.
  int GetColorModelType() const { return m_colourModel; }

  void UpdateAllRange(int) override { MarkDirty(); }
  void UpdateCADRange(int) override { MarkDirty(); }
  void UpdateShowHideGeom(CQDViewBase&) override { MarkDirty(); }
  void UpdateActivity(CQDViewBase&, int) override { MarkDirty(); }
  void UpdateShowHideMSet(CQDViewBase&, int) override { MarkDirty(); }

  /// Only coordinate systems have labels: their symbols.
  CQDLabel* GetLabel(int itemType) override { return itemType == kLabelCord ? &m_cordLabels : nullptr; }
  int GetShowHide(int kind, std::int32_t id) override;
  void SetShowHide(int show, int kind, std::int32_t id) override;

  void MarkDirty();

 private:
  CadItem& Need(int cadItem);
  void NoteShown(int cadItem);
  void NoteChanged(int cadItem);

  std::vector<CadItem> m_items;  // by CAD item number; items beyond the end are as made
  template <typename Change>
  void ChangeLooks(const std::vector<std::uint32_t>& keys, const Change& change);

  /// Labels are shown until they are hidden.
  class Labels final : public CQDLabel {
   public:
    explicit Labels(DisplayState& display) : m_display(display) {}
    int IsShown(std::int32_t id) const override;
    void Show(std::int32_t id) override;
    void Hide(std::int32_t id) override;

   private:
    DisplayState& m_display;
    FlatMap m_hidden;
  };

  Labels m_cordLabels{*this};
  FlatMap m_hiddenMsets;
  std::vector<iterator> m_changedMsets;
  std::vector<iterator> m_changedMsetRows;
  std::unordered_map<std::uint32_t, MeshLook> m_meshLooks;  // their add-ons are those that differ from m_addOns
  std::uint32_t m_addOns = 0;                               // of all sets without a choice of their own
  std::uint64_t m_lookRevision = 0;
  unsigned m_meshColourMode = 0;
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
