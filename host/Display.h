#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include "host/Types.h"

namespace qd {

/// Shown state and render mode of the CAD items. All calls are marks; the view draws once per frame.
class CRenderObjManager {
 public:
  virtual int GetShowHide(int cadItem) const = 0;       ///< other than 0 when the item is shown
  virtual void SetShowHide(int cadItem, int show) = 0;  ///< shows (other than 0) or hides an item
  /// 0 shading, 1 edge shading, 2 wireframe, 3 bounding box.
  virtual unsigned GetRenderMode(int cadItem) const = 0;
  /// Numbers as in GetRenderMode.
  virtual void SetRenderMode(const std::vector<int>& cadItems, unsigned mode) = 0;
  /// 0 is transparent, 1 opaque.
  virtual void SetTransparency(const std::vector<int>& cadItems, double fraction) = 0;
  /// Swaps what is shown with what was shown before the last change.
  virtual void ChangePrevShowHide() = 0;
  /// Marks whether a part has a mesh that stands for it.
  virtual void SetMeshMark(int cadItem, int present) = 0;
  /// @{
  /// Bracket a change of visibility; the outermost pair keeps the state before it as the previous one.
  virtual void BeginShowHide() = 0;
  virtual void EndShowHide() = 0;
  /// @}

 protected:
  ~CRenderObjManager() = default;
};

/// The CAD side of a document.
class CCADSession {
 public:
  virtual CRenderObjManager& GetRenderObjects() = 0;  ///< lives as long as the session

 protected:
  ~CCADSession() = default;
};

/// Shown state of mesh sets.
class CQDMeshManager {
 public:
  virtual int IsMsetShown(iterator mset) const = 0;  ///< other than 0 when the set is shown
  /// @{
  /// Shows (other than 0) or hides sets; those nested in them are not touched.
  virtual void ShowHideMset(iterator mset, int show) = 0;
  virtual void ShowHideMset(const std::vector<iterator>& msets, int show) = 0;
  /// @}
  /// Changes without asking for a frame; the commit, or any other change, brings all of them to the screen.
  virtual void ShowHideMsetUnit(iterator mset, int show) = 0;
  virtual void CommitShowHideMsetUnit() = 0;  ///< brings what ShowHideMsetUnit changed to the screen
  /// How all meshes are coloured: by set 0, by property 1, by material 2, by element type 3, by top-level set 4.
  virtual void SetMeshColorMode(unsigned mode) = 0;
  /// The colours of mesh sets have changed.
  virtual void UpdateMeshColor() = 0;

 protected:
  ~CQDMeshManager() = default;
};

/// What can be drawn beside the elements of a mesh set; bits.
enum MeshAddOn : std::uint32_t {
  kAddOnNodes = 1,
  kAddOnNodeIds = 2,
  kAddOnElementIds = 4,
  kAddOnNodalSystems = 8,
  kAddOnElementSystems = 16,
  kAddOnMaterialSystems = 32,
  kAddOnAll = 0xFFFFFFFF
};

/// Drawing of mesh sets, by key. "All" means the sets to come, too.
class CMPUData {
 public:
  /// 0 shading, 1 shading with element edges, 2 wireframe, 3 wireframe of the free faces, 4 feature edges,
  /// 5 shading with feature edges, 6 bounding box.
  virtual void SetRenderMode(const std::vector<std::uint32_t>& keys, unsigned mode) = 0;
  /// Elements drawn smaller, each by itself: on where it was off for the first of the sets.
  virtual void ToggleShrink(const std::vector<std::uint32_t>& keys) = 0;
  /// 1 when all the sets have all of the bits; 0 for no sets.
  virtual int HasAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) const = 0;
  /// Has the sets draw these things, too.
  virtual void SetAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) = 0;
  /// Has the sets draw them no longer.
  virtual void DelAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) = 0;
  /// @{
  /// Likewise for all sets.
  virtual int HasAddOnInfoAll(std::uint32_t bits) const = 0;
  virtual void SetAddOnInfoAll(std::uint32_t bits) = 0;
  virtual void DelAddOnInfoAll(std::uint32_t bits) = 0;
  /// @}
  /// 0 is transparent, 255 opaque.
  virtual void SetTransparency(const std::vector<std::uint32_t>& keys, unsigned char value) = 0;

 protected:
  ~CMPUData() = default;
};

/// Labels of one kind of record.
class CQDLabel {
 public:
  /// Other than 0 when the label of the record with this number is shown.
  virtual int IsShown(std::int32_t id) const = 0;
  /// @{
  /// Shows or hides it; nothing for a number that no record has.
  virtual void Show(std::int32_t id) = 0;
  virtual void Hide(std::int32_t id) = 0;
  /// @}

 protected:
  ~CQDLabel() = default;
};

/// Kind of label, and item type of the branch, of coordinate systems.
inline constexpr int kLabelCord = 2;

/// Labels of records in the views.
class CQDLabelManager {
 public:
  /// The labels of an item type, null when it has none.
  virtual CQDLabel* GetLabel(int itemType) = 0;
  /// Whether the label of a record is shown, by the kind of label and the record's number.
  virtual int GetShowHide(int kind, std::int32_t id) = 0;
  virtual void SetShowHide(int show, int kind, std::int32_t id) = 0;  ///< shows (other than 0) or hides the label

 protected:
  ~CQDLabelManager() = default;
};

/// The extent of the model in the views. Both calls are marks.
class CQDModelRange {
 public:
  /// @{
  /// The extent of everything, or of parts alone, has to be found anew; with 0 nobody is told.
  virtual void UpdateAllRange(int notify) = 0;
  virtual void UpdateCADRange(int notify) = 0;
  /// @}

 protected:
  ~CQDModelRange() = default;
};

class CQDViewBase;

/// Post-processing displays that follow the visibility of parts. Both calls are marks.
class CQDPostManager {
 public:
  /// @{
  /// Follows the visibility of parts.
  virtual void UpdateShowHideGeom(CQDViewBase& view) = 0;
  virtual void UpdateActivity(CQDViewBase& view, int notify) = 0;
  /// @}
  /// Follows the visibility of mesh sets.
  virtual void UpdateShowHideMSet(CQDViewBase& view, int notify) = 0;

 protected:
  ~CQDPostManager() = default;
};

/// Section planes of a view follow what is shown. Both calls are marks.
class ISectionAPI {
 public:
  /// @{
  /// The faces of the cut, or what is drawn on them, have to be made anew.
  virtual void UpdateClipSlice(CQDViewBase& view) = 0;
  virtual void UpdateClipVect(CQDViewBase& view) = 0;
  /// @}

 protected:
  ~ISectionAPI() = default;
};

/// The check box of a row that stands for nothing that could be shown or hidden itself: the root of a branch, a
/// geometry set, or a group of one kind in it.
struct RowBox {
  std::uint16_t branch = 0;                        ///< data type of what the branch lists
  iterator itr = 0;                                ///< the geometry set, 0 for the root
  int kind = -1;                                   ///< topology kind of the group, -1 for none
  bool operator==(const RowBox&) const = default;  ///< member by member
  /// An order for maps.
  bool operator<(const RowBox& other) const {
    return std::tie(branch, itr, kind) < std::tie(other.branch, other.itr, other.kind);
  }
};

/// Keeps what was written to such boxes, so that undo can take it back and trees that are made anew show it. The
/// states are those of the rows: 1 unchecked, 3 checked.
class CQDRowBoxes {
 public:
  virtual int GetBox(const RowBox& box) const = 0;        ///< the state of a box, 0 when nothing was written to it
  virtual void SetBox(const RowBox& box, int state) = 0;  ///< keeps a state

 protected:
  ~CQDRowBoxes() = default;
};

/// How a view colours parts.
class CQDRenderManager {
 public:
  /// 0: by the part's colour, 1: by its material's colour.
  virtual void SetAllColorModelType(int type) = 0;

 protected:
  ~CQDRenderManager() = default;
};

/// A 3-D view of a document.
class CQDViewBase {
 public:
  virtual CQDRenderManager* GetRenderManager() = 0;  ///< lives as long as the view
  virtual int IsPostMode() const = 0;                ///< other than 0 while results are shown
  /// Repaints the window, without erasing for 0.
  virtual void Invalidate(int erase) = 0;
  /// Asks for a redraw at the next frame; `reserved` is 0.
  virtual void Redraw(int reserved) = 0;
  /// Whether a place on the screen is in the view's window, in sight.
  virtual bool IsOver(CPoint screen) const = 0;

 protected:
  ~CQDViewBase() = default;
};

}  // namespace qd
