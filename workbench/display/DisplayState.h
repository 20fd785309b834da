#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/Display.h"
#include "platform/FlatMap.h"

namespace qd::workbench {

class DisplayChange;

/// What was hidden at a time.
struct Visibility {
  std::vector<int> hiddenParts;  ///< CAD item numbers
  std::vector<iterator> hiddenMsets;
};

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

  /// What a user can change of how a part is drawn.
  struct PartLook {
    bool shown = true;
    std::uint8_t mode = 1;
    float opacity = 1;
    bool operator==(const PartLook&) const = default;
  };
  /// The looks of mesh sets that differ from the one of all.
  struct LookTable {
    std::unordered_map<std::uint32_t, MeshLook> looks;
    std::uint32_t addOns = 0;
  };
  struct ColourModes {
    int parts = 0;
    unsigned meshes = 0;
  };

  DisplayState();
  ~DisplayState();

  /// Called at the first change of the user's after the changes were last taken. Without it none are recorded.
  void SetOnRecord(std::function<void()> onRecord) { m_onRecord = std::move(onRecord); }
  /// What was changed since the last call; null for nothing.
  std::unique_ptr<DisplayChange> TakeChange();
  /// While one lives nothing is recorded: a change is being taken back or done again.
  class Unrecorded {
   public:
    explicit Unrecorded(DisplayState& display);
    ~Unrecorded();
    Unrecorded(const Unrecorded&) = delete;
    Unrecorded& operator=(const Unrecorded&) = delete;

   private:
    DisplayState& m_display;
    std::function<void()> m_kept;
  };
  void SetPartLook(int cadItem, const PartLook& look);
  void SetLook(std::uint32_t key, const MeshLook& look);
  void SetLooks(const LookTable& looks);
  void SetColourModes(const ColourModes& modes);

  /// What is hidden now.
  Visibility HiddenNow() const;
  /// What was hidden before the user isolated something; null when nothing is isolated.
  const std::shared_ptr<const Visibility>& Isolation() const { return m_isolation; }
  void SetIsolation(std::shared_ptr<const Visibility> former) { m_isolation = std::move(former); }
  /// Brings back what was hidden before the isolation. Of what came since, what is hidden is shown.
  void LeaveIsolation();
  /// The labels whose visibility has changed since the last call.
  std::vector<std::int32_t> TakeChangedLabels() { return std::exchange(m_changedLabels, {}); }

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
  unsigned GetMeshColorMode() const { return m_colourModes.meshes; }
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
  int GetColorModelType() const { return m_colourModes.parts; }

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
  /// Where the change that is going on is noted; null while none is to be.
  DisplayChange* Recorded();
  PartLook LookOf(int cadItem) const;
  void ChangePart(int cadItem, const PartLook& look);
  template <typename Change>
  void ChangeAllLooks(const Change& change);
  void NoteShown(int cadItem);
  void NoteChanged(int cadItem);
  void NoteLabel(std::int32_t id, bool shown);

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
  LookTable m_looks;  // add-ons of single sets are those that differ from the ones of all
  std::uint64_t m_lookRevision = 0;
  std::vector<std::pair<int, bool>> m_previous;  // what the last change turned round: items and their state before
  std::vector<int> m_changing;                   // items that the open change has touched
  std::uint32_t m_change = 0;                    // counts the changes
  ColourModes m_colourModes;
  std::unique_ptr<DisplayChange> m_recorded;
  std::shared_ptr<const Visibility> m_isolation;
  std::vector<std::int32_t> m_changedLabels;
  std::function<void()> m_onRecord;
  std::function<void()> m_onDirty;
  std::function<void()> m_onItemsChanged;
  std::vector<int> m_changedItems;
  int m_batches = 0;
  bool m_dirty = false;
};

}  // namespace qd::workbench
