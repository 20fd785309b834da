#include "workbench/display/DisplayState.h"

#include <utility>

namespace qd::workbench {

void DisplayState::MarkDirty() {
  if (std::exchange(m_dirty, true)) return;
  if (m_onDirty) m_onDirty();
}

bool DisplayState::TakeDirty() {
  return std::exchange(m_dirty, false);
}

const DisplayState::CadItem& DisplayState::GetCadItem(int cadItem) const {
  static const CadItem kAsMade;
  const auto index = static_cast<std::size_t>(cadItem);
  return cadItem >= 0 && index < m_items.size() ? m_items[index] : kAsMade;
}

DisplayState::CadItem& DisplayState::Need(int cadItem) {
  const auto index = static_cast<std::size_t>(cadItem < 0 ? 0 : cadItem);
  if (index >= m_items.size()) m_items.resize(index + 1);
  return m_items[index];
}

void DisplayState::NoteChanged(int cadItem) {
  m_changedItems.push_back(cadItem);
  if (m_changedItems.size() == 1 && m_onItemsChanged) m_onItemsChanged();
}

std::vector<int> DisplayState::TakeChangedItems() {
  return std::exchange(m_changedItems, {});
}

// ---- parts ----------------------------------------------------------------------------------------------

/// Keeps what an item shows before the open change touches it.
void DisplayState::NoteShown(int cadItem) {
  CadItem& item = Need(cadItem);
  if (std::exchange(item.change, m_change) == m_change) return;
  item.shownBefore = item.shown;
  m_changing.push_back(cadItem);
}

void DisplayState::SetShowHide(int cadItem, int show) {
  if (GetCadItem(cadItem).shown == (show != 0)) return;
  BeginShowHide();
  NoteShown(cadItem);
  Need(cadItem).shown = show != 0;
  NoteChanged(cadItem);
  MarkDirty();
  EndShowHide();
}

void DisplayState::BeginShowHide() {
  if (m_batches++ > 0) return;
  m_changing.clear();
  ++m_change;
}

void DisplayState::EndShowHide() {
  if (--m_batches > 0) return;
  // Items that ended as they began have not changed.
  std::erase_if(m_changing, [this](int cadItem) {
    const CadItem& item = GetCadItem(cadItem);
    return item.shown == item.shownBefore;
  });
  if (m_changing.empty()) return;
  m_previous.clear();
  for (const int cadItem : std::exchange(m_changing, {})) {
    m_previous.emplace_back(cadItem, GetCadItem(cadItem).shownBefore);
  }
}

void DisplayState::ChangePrevShowHide() {
  const std::vector<std::pair<int, bool>> previous = m_previous;
  BeginShowHide();
  for (const auto& [cadItem, shown] : previous) SetShowHide(cadItem, shown ? 1 : 0);
  EndShowHide();
}

void DisplayState::SetRenderMode(const std::vector<int>& cadItems, unsigned mode) {
  for (const int cadItem : cadItems) {
    Need(cadItem).mode = static_cast<std::uint8_t>(mode);
    NoteChanged(cadItem);
  }
  MarkDirty();
}

void DisplayState::SetTransparency(const std::vector<int>& cadItems, double fraction) {
  for (const int cadItem : cadItems) Need(cadItem).opacity = static_cast<float>(fraction);
  MarkDirty();
}

void DisplayState::SetMeshMark(int cadItem, int present) {
  Need(cadItem).meshed = present != 0;
  MarkDirty();
}

void DisplayState::SetAllColorModelType(int type) {
  m_colourModel = type;
  MarkDirty();
}

// ---- mesh sets ------------------------------------------------------------------------------------------

void DisplayState::ShowHideMsetUnit(iterator mset, int show) {
  if (IsMsetShown(mset) == (show != 0 ? 1 : 0)) return;
  if (show != 0) {
    m_hiddenMsets.Erase(mset);
  } else {
    m_hiddenMsets.Assign(mset, 1);
  }
  m_changedMsets.push_back(mset);
  m_changedMsetRows.push_back(mset);
  if (m_changedMsetRows.size() == 1 && m_onItemsChanged) m_onItemsChanged();
}

void DisplayState::ShowHideMset(iterator mset, int show) {
  ShowHideMsetUnit(mset, show);
  MarkDirty();
}

void DisplayState::ShowHideMset(const std::vector<iterator>& msets, int show) {
  for (const iterator mset : msets) ShowHideMsetUnit(mset, show);
  MarkDirty();
}

void DisplayState::SetMeshColorMode(unsigned mode) {
  m_meshColourMode = mode;
  MarkDirty();
}

// ---- labels ---------------------------------------------------------------------------------------------

int DisplayState::Labels::IsShown(std::int32_t id) const {
  return m_hidden.Contains(static_cast<std::uint32_t>(id)) ? 0 : 1;
}

void DisplayState::Labels::Show(std::int32_t id) {
  m_hidden.Erase(static_cast<std::uint32_t>(id));
  m_display.MarkDirty();
}

void DisplayState::Labels::Hide(std::int32_t id) {
  m_hidden.Assign(static_cast<std::uint32_t>(id), 1);
  m_display.MarkDirty();
}

int DisplayState::GetShowHide(int kind, std::int32_t id) {
  const CQDLabel* label = GetLabel(kind);
  return label != nullptr ? label->IsShown(id) : 0;
}

void DisplayState::SetShowHide(int show, int kind, std::int32_t id) {
  CQDLabel* label = GetLabel(kind);
  if (label == nullptr) return;
  if (show != 0) {
    label->Show(id);
  } else {
    label->Hide(id);
  }
}

// ---- looks of mesh sets ---------------------------------------------------------------------------------

DisplayState::MeshLook DisplayState::GetMeshLook(std::uint32_t key) const {
  const auto found = m_meshLooks.find(key);
  MeshLook look = found != m_meshLooks.end() ? found->second : MeshLook{};
  look.addOns ^= m_addOns;
  return look;
}

template <typename Change>
void DisplayState::ChangeLooks(const std::vector<std::uint32_t>& keys, const Change& change) {
  for (const std::uint32_t key : keys) change(m_meshLooks[key]);
  ++m_lookRevision;
  MarkDirty();
}

void DisplayState::SetRenderMode(const std::vector<std::uint32_t>& keys, unsigned mode) {
  ChangeLooks(keys, [mode](MeshLook& look) { look.mode = static_cast<std::uint8_t>(mode); });
}

void DisplayState::SetTransparency(const std::vector<std::uint32_t>& keys, unsigned char value) {
  ChangeLooks(keys, [value](MeshLook& look) { look.opacity = value; });
}

void DisplayState::ToggleShrink(const std::vector<std::uint32_t>& keys) {
  const bool shrink = !keys.empty() && !GetMeshLook(keys.front()).shrink;
  ChangeLooks(keys, [shrink](MeshLook& look) { look.shrink = shrink; });
}

int DisplayState::HasAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) const {
  for (const std::uint32_t key : keys) {
    if ((GetMeshLook(key).addOns & bits) != bits) return 0;
  }
  return keys.empty() ? 0 : 1;
}

void DisplayState::SetAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) {
  ChangeLooks(keys, [=, this](MeshLook& look) { look.addOns = ((look.addOns ^ m_addOns) | bits) ^ m_addOns; });
}

void DisplayState::DelAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) {
  ChangeLooks(keys, [=, this](MeshLook& look) { look.addOns = ((look.addOns ^ m_addOns) & ~bits) ^ m_addOns; });
}

int DisplayState::HasAddOnInfoAll(std::uint32_t bits) const {
  if ((m_addOns & bits) != bits) return 0;
  for (const auto& [key, look] : m_meshLooks) {
    if ((look.addOns & bits) != 0) return 0;
  }
  return 1;
}

void DisplayState::SetAddOnInfoAll(std::uint32_t bits) {
  m_addOns |= bits;
  for (auto& [key, look] : m_meshLooks) look.addOns &= ~bits;
  ++m_lookRevision;
  MarkDirty();
}

void DisplayState::DelAddOnInfoAll(std::uint32_t bits) {
  m_addOns &= ~bits;
  for (auto& [key, look] : m_meshLooks) look.addOns &= ~bits;
  ++m_lookRevision;
  MarkDirty();
}

}  // namespace qd::workbench
