#include "workbench/display/DisplayState.h"

#include <algorithm>
#include <utility>

#include "workbench/display/DisplayChange.h"

namespace qd::workbench {

DisplayState::DisplayState() = default;

DisplayState::~DisplayState() = default;

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
  PartLook look = LookOf(cadItem);
  look.shown = show != 0;
  ChangePart(cadItem, look);
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
    PartLook look = LookOf(cadItem);
    look.mode = static_cast<std::uint8_t>(mode);
    ChangePart(cadItem, look);
    NoteChanged(cadItem);
  }
  MarkDirty();
}

void DisplayState::SetTransparency(const std::vector<int>& cadItems, double fraction) {
  for (const int cadItem : cadItems) {
    PartLook look = LookOf(cadItem);
    look.opacity = static_cast<float>(fraction);
    ChangePart(cadItem, look);
  }
  MarkDirty();
}

void DisplayState::SetMeshMark(int cadItem, int present) {
  Need(cadItem).meshed = present != 0;
  MarkDirty();
}

void DisplayState::SetAllColorModelType(int type) {
  ColourModes modes = m_colourModes;
  modes.parts = type;
  SetColourModes(modes);
}

// ---- mesh sets ------------------------------------------------------------------------------------------

void DisplayState::ShowHideMsetUnit(iterator mset, int show) {
  if (IsMsetShown(mset) == (show != 0 ? 1 : 0)) return;
  if (show != 0) {
    m_hiddenMsets.Erase(mset);
  } else {
    m_hiddenMsets.Assign(mset, 1);
  }
  if (DisplayChange* change = Recorded()) change->msets.push_back({mset, show != 0});
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
  ColourModes modes = m_colourModes;
  modes.meshes = mode;
  SetColourModes(modes);
}

// ---- labels ---------------------------------------------------------------------------------------------

int DisplayState::Labels::IsShown(std::int32_t id) const {
  return m_hidden.Contains(static_cast<std::uint32_t>(id)) ? 0 : 1;
}

void DisplayState::Labels::Show(std::int32_t id) {
  if (!m_hidden.Erase(static_cast<std::uint32_t>(id))) return;
  m_display.NoteLabel(id, true);
}

void DisplayState::Labels::Hide(std::int32_t id) {
  if (IsShown(id) == 0) return;
  m_hidden.Assign(static_cast<std::uint32_t>(id), 1);
  m_display.NoteLabel(id, false);
}

void DisplayState::NoteLabel(std::int32_t id, bool shown) {
  if (DisplayChange* change = Recorded()) change->labels.push_back({static_cast<std::uint32_t>(id), shown});
  m_changedLabels.push_back(id);
  if (m_changedLabels.size() == 1 && m_onItemsChanged) m_onItemsChanged();
  MarkDirty();
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
  const auto found = m_looks.looks.find(key);
  MeshLook look = found != m_looks.looks.end() ? found->second : MeshLook{};
  look.addOns ^= m_looks.addOns;
  return look;
}

template <typename Change>
void DisplayState::ChangeLooks(const std::vector<std::uint32_t>& keys, const Change& change) {
  DisplayChange* recorded = Recorded();
  for (const std::uint32_t key : keys) {
    MeshLook& look = m_looks.looks[key];
    const MeshLook before = look;
    change(look);
    if (recorded != nullptr && !(look == before)) recorded->looks.push_back({key, before, look});
  }
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
  ChangeLooks(
      keys, [=, this](MeshLook& look) { look.addOns = ((look.addOns ^ m_looks.addOns) | bits) ^ m_looks.addOns; });
}

void DisplayState::DelAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) {
  ChangeLooks(keys, [=, this](MeshLook& look) {
    look.addOns = ((look.addOns ^ m_looks.addOns) & ~bits) ^ m_looks.addOns;
  });
}

int DisplayState::HasAddOnInfoAll(std::uint32_t bits) const {
  if ((m_looks.addOns & bits) != bits) return 0;
  for (const auto& [key, look] : m_looks.looks) {
    if ((look.addOns & bits) != 0) return 0;
  }
  return 1;
}

template <typename Change>
void DisplayState::ChangeAllLooks(const Change& change) {
  DisplayChange* recorded = Recorded();
  LookTable before;
  if (recorded != nullptr) before = m_looks;
  change(m_looks);
  if (recorded != nullptr) {
    auto looks = std::make_shared<const DisplayChange::Looks>(DisplayChange::Looks{std::move(before), m_looks});
    recorded->looks.push_back({.all = std::move(looks)});
  }
  ++m_lookRevision;
  MarkDirty();
}

void DisplayState::SetAddOnInfoAll(std::uint32_t bits) {
  ChangeAllLooks([bits](LookTable& table) {
    table.addOns |= bits;
    for (auto& [key, look] : table.looks) look.addOns &= ~bits;
  });
}

void DisplayState::DelAddOnInfoAll(std::uint32_t bits) {
  ChangeAllLooks([bits](LookTable& table) {
    table.addOns &= ~bits;
    for (auto& [key, look] : table.looks) look.addOns &= ~bits;
  });
}

// ---- what can be taken back -----------------------------------------------------------------------------

DisplayChange* DisplayState::Recorded() {
  if (!m_onRecord) return nullptr;
  if (m_recorded == nullptr) {
    m_recorded = std::make_unique<DisplayChange>(*this);
    m_recorded->isolationBefore = m_isolation;
    m_onRecord();
  }
  return m_recorded.get();
}

std::unique_ptr<DisplayChange> DisplayState::TakeChange() {
  if (m_recorded == nullptr) return nullptr;
  m_recorded->isolationAfter = m_isolation;
  std::unique_ptr<DisplayChange> change = std::move(m_recorded);
  return change->IsEmpty() ? nullptr : std::move(change);
}

DisplayState::Unrecorded::Unrecorded(DisplayState& display)
    : m_display(display), m_kept(std::exchange(display.m_onRecord, nullptr)) {}

DisplayState::Unrecorded::~Unrecorded() {
  m_display.m_onRecord = std::move(m_kept);
}

DisplayState::PartLook DisplayState::LookOf(int cadItem) const {
  const CadItem& item = GetCadItem(cadItem);
  return {item.shown, item.mode, item.opacity};
}

void DisplayState::ChangePart(int cadItem, const PartLook& look) {
  const PartLook before = LookOf(cadItem);
  if (look == before) return;
  CadItem& item = Need(cadItem);
  item.shown = look.shown;
  item.mode = look.mode;
  item.opacity = look.opacity;
  if (DisplayChange* change = Recorded()) change->parts.push_back({cadItem, before, look});
}

void DisplayState::SetPartLook(int cadItem, const PartLook& look) {
  ChangePart(cadItem, look);
  NoteChanged(cadItem);
  MarkDirty();
}

void DisplayState::SetLook(std::uint32_t key, const MeshLook& look) {
  m_looks.looks[key] = look;
  ++m_lookRevision;
  MarkDirty();
}

void DisplayState::SetLooks(const LookTable& looks) {
  m_looks = looks;
  ++m_lookRevision;
  MarkDirty();
}

void DisplayState::SetColourModes(const ColourModes& modes) {
  if (DisplayChange* change = Recorded()) change->modes.push_back({m_colourModes, modes});
  m_colourModes = modes;
  MarkDirty();
}

// ---- isolation ------------------------------------------------------------------------------------------

Visibility DisplayState::HiddenNow() const {
  Visibility now;
  for (std::size_t i = 0; i < m_items.size(); ++i) {
    if (!m_items[i].shown) now.hiddenParts.push_back(static_cast<int>(i));
  }
  m_hiddenMsets.ForEach([&now](std::uint64_t mset, std::uint64_t) { now.hiddenMsets.push_back(mset); });
  return now;
}

void DisplayState::LeaveIsolation() {
  const std::shared_ptr<const Visibility> former = m_isolation;
  if (former == nullptr) return;
  BeginShowHide();
  const Visibility now = HiddenNow();
  for (const int part : now.hiddenParts) {
    if (!std::binary_search(former->hiddenParts.begin(), former->hiddenParts.end(), part)) SetShowHide(part, 1);
  }
  for (const int part : former->hiddenParts) SetShowHide(part, 0);
  FlatMap hidden;
  for (const iterator mset : former->hiddenMsets) hidden.Assign(mset, 1);
  for (const iterator mset : now.hiddenMsets) {
    if (!hidden.Contains(mset)) ShowHideMset(mset, 1);
  }
  for (const iterator mset : former->hiddenMsets) ShowHideMset(mset, 0);
  EndShowHide();
  m_isolation = nullptr;
}

}  // namespace qd::workbench
