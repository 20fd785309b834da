#include "workbench/display/PartDisplay.h"

#include <utility>

#include "workbench/display/DisplayChange.h"

namespace qd::workbench {

const PartDisplay::Item& PartDisplay::At(int cadItem) const {
  static const Item kAsMade;
  const auto index = static_cast<std::size_t>(cadItem);
  return cadItem >= 0 && index < m_items.size() ? m_items[index] : kAsMade;
}

PartDisplay::Item& PartDisplay::Need(int cadItem) {
  const auto index = static_cast<std::size_t>(cadItem < 0 ? 0 : cadItem);
  if (index >= m_items.size()) m_items.resize(index + 1);
  return m_items[index];
}

const PartDisplay::Look& PartDisplay::GetLook(int cadItem) const {
  return At(cadItem).look;
}

bool PartDisplay::IsMeshed(int cadItem) const {
  return At(cadItem).meshed;
}

std::vector<int> PartDisplay::Hidden() const {
  std::vector<int> hidden;
  for (std::size_t i = 0; i < m_items.size(); ++i) {
    if (!m_items[i].look.shown) hidden.push_back(static_cast<int>(i));
  }
  return hidden;
}

std::vector<std::pair<int, PartDisplay::Look>> PartDisplay::Looks() const {
  std::vector<std::pair<int, Look>> looks;
  for (std::size_t i = 0; i < m_items.size(); ++i) {
    if (m_items[i].look != Look{}) looks.emplace_back(static_cast<int>(i), m_items[i].look);
  }
  return looks;
}

void PartDisplay::SetLook(int cadItem, const Look& look) {
  const Look before = GetLook(cadItem);
  if (look == before) return;
  Need(cadItem).look = look;
  if (DisplayChange* change = m_log.Recorded()) change->parts.push_back({cadItem, before, look});
  m_log.Noted().parts.push_back(cadItem);
}

// ---- visibility -----------------------------------------------------------------------------------------

/// Keeps what an item shows before the open change touches it.
void PartDisplay::NoteShown(int cadItem) {
  Item& item = Need(cadItem);
  if (std::exchange(item.change, m_change) == m_change) return;
  item.shownBefore = item.look.shown;
  m_changing.push_back(cadItem);
}

void PartDisplay::SetShowHide(int cadItem, int show) {
  Look look = GetLook(cadItem);
  if (look.shown == (show != 0)) return;
  BeginShowHide();
  NoteShown(cadItem);
  look.shown = show != 0;
  SetLook(cadItem, look);
  EndShowHide();
}

void PartDisplay::BeginShowHide() {
  if (m_brackets++ > 0) return;
  m_changing.clear();
  ++m_change;
}

void PartDisplay::EndShowHide() {
  if (--m_brackets > 0) return;
  // Items that ended as they began have not changed.
  std::erase_if(m_changing, [this](int cadItem) { return At(cadItem).look.shown == At(cadItem).shownBefore; });
  if (m_changing.empty()) return;
  m_previous.clear();
  for (const int cadItem : std::exchange(m_changing, {})) {
    m_previous.emplace_back(cadItem, At(cadItem).shownBefore);
  }
}

void PartDisplay::ChangePrevShowHide() {
  const std::vector<std::pair<int, bool>> previous = m_previous;
  BeginShowHide();
  for (const auto& [cadItem, shown] : previous) SetShowHide(cadItem, shown ? 1 : 0);
  EndShowHide();
}

// ---- drawing --------------------------------------------------------------------------------------------

void PartDisplay::SetRenderMode(const std::vector<int>& cadItems, unsigned mode) {
  for (const int cadItem : cadItems) {
    Look look = GetLook(cadItem);
    look.mode = static_cast<std::uint8_t>(mode);
    SetLook(cadItem, look);
  }
}

void PartDisplay::SetTransparency(const std::vector<int>& cadItems, double fraction) {
  for (const int cadItem : cadItems) {
    Look look = GetLook(cadItem);
    look.opacity = static_cast<float>(fraction);
    SetLook(cadItem, look);
  }
}

void PartDisplay::SetMeshMark(int cadItem, int present) {
  if (IsMeshed(cadItem) == (present != 0)) return;
  Need(cadItem).meshed = present != 0;
  m_log.Mark();
}

void PartDisplay::SetAllColorModelType(int type) {
  PutColours((m_colours & ~kByMaterial) | (type & kByMaterial));
}

void PartDisplay::PutColours(int colours) {
  if (colours == m_colours) return;
  if (DisplayChange* change = m_log.Recorded()) change->partColours.push_back({m_colours, colours});
  m_colours = colours;
  m_log.Noted().colours = true;
}

}  // namespace qd::workbench
