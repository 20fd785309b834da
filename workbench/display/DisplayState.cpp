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

void DisplayState::ShowHideMset(iterator mset, int show) {
  if (show != 0) {
    m_hiddenMsets.erase(mset);
  } else {
    m_hiddenMsets.insert(mset);
  }
  MarkDirty();
}

void DisplayState::ShowHideMset(const std::vector<iterator>& msets, int show) {
  for (const iterator mset : msets) ShowHideMset(mset, show);
}

void DisplayState::CommitShowHideMsetUnit() {
  for (const auto& [mset, show] : std::exchange(m_units, {})) ShowHideMset(mset, show);
}

DisplayState::MeshLook DisplayState::GetMeshLook(std::uint32_t key) const {
  const auto found = m_meshLooks.find(key);
  return found != m_meshLooks.end() ? found->second : MeshLook{};
}

void DisplayState::SetRenderMode(const std::vector<std::uint32_t>& keys, unsigned mode) {
  for (const std::uint32_t key : keys) m_meshLooks[key].mode = mode;
  MarkDirty();
}

void DisplayState::SetTransparency(const std::vector<std::uint32_t>& keys, unsigned char value) {
  for (const std::uint32_t key : keys) m_meshLooks[key].opacity = value;
  MarkDirty();
}

}  // namespace qd::workbench
