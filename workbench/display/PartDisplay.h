#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "host/Display.h"
#include "workbench/display/DisplayLog.h"

namespace qd::workbench {

/// Which parts are shown, and how they are drawn, by CAD item number.
class PartDisplay final : public CCADSession, public CRenderObjManager, public CQDRenderManager {
 public:
  /// What a user can change of how a part is drawn.
  struct Look {
    bool shown = true;
    std::uint8_t mode = 1;
    float opacity = 1;
    bool operator==(const Look&) const = default;
  };

  explicit PartDisplay(DisplayLog& log) : m_log(log) {}

  const Look& GetLook(int cadItem) const;
  void SetLook(int cadItem, const Look& look);
  /// Whether a mesh stands for a part.
  bool IsMeshed(int cadItem) const;
  /// The CAD items that are hidden now, ascending.
  std::vector<int> Hidden() const;
  /// Those that are not drawn as they were made, ascending.
  std::vector<std::pair<int, Look>> Looks() const;

  CRenderObjManager& GetRenderObjects() override { return *this; }
  int GetShowHide(int cadItem) const override { return GetLook(cadItem).shown ? 1 : 0; }
  void SetShowHide(int cadItem, int show) override;
  unsigned GetRenderMode(int cadItem) const override { return GetLook(cadItem).mode; }
  void SetRenderMode(const std::vector<int>& cadItems, unsigned mode) override;
  void SetTransparency(const std::vector<int>& cadItems, double fraction) override;
  void ChangePrevShowHide() override;
  void SetMeshMark(int cadItem, int present) override;
  /// The outermost bracket keeps what was shown before it, if anything changes inside.
  void BeginShowHide() override;
  void EndShowHide() override;

  void SetAllColorModelType(int type) override;
  /// 0: parts in their own colours, 1: in those of their materials.
  int GetColorModelType() const { return m_colours & kByMaterial; }
  /// Whether parts fade whose own mesh is shown, so that the mesh is seen.
  bool FadesMeshed() const { return (m_colours & kMeshedStay) == 0; }
  void SetFadesMeshed(bool fades) { PutColours(fades ? m_colours & ~kMeshedStay : m_colours | kMeshedStay); }
  /// Both as one number, 0 to 3, and back.
  int Colours() const { return m_colours; }
  void PutColours(int colours);

 private:
  struct Item {
    Look look;
    bool meshed = false;
    bool shownBefore = true;   ///< the change of visibility `change`
    std::uint32_t change = 0;  ///< the last one that the item took part in
  };

  enum ColourBits : int { kByMaterial = 1, kMeshedStay = 2 };

  const Item& At(int cadItem) const;
  Item& Need(int cadItem);
  void NoteShown(int cadItem);

  DisplayLog& m_log;
  std::vector<Item> m_items;                     // by CAD item number; items beyond the end are as made
  std::vector<std::pair<int, bool>> m_previous;  // what the last change turned round: items and their state before
  std::vector<int> m_changing;                   // items that the open change has touched
  std::uint32_t m_change = 0;                    // counts the changes
  int m_brackets = 0;
  int m_colours = 0;
};

}  // namespace qd::workbench
