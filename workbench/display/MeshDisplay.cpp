#include "workbench/display/MeshDisplay.h"

#include <memory>
#include <utility>

#include "workbench/display/DisplayChange.h"

namespace qd::workbench {

// ---- visibility -----------------------------------------------------------------------------------------

std::vector<iterator> MeshDisplay::Hidden() const {
  std::vector<iterator> hidden;
  m_hidden.ForEach([&hidden](std::uint64_t mset, std::uint64_t) { hidden.push_back(mset); });
  return hidden;
}

void MeshDisplay::ShowHideMset(iterator mset, int show) {
  if (IsMsetShown(mset) == (show != 0 ? 1 : 0)) return;
  if (show != 0) {
    m_hidden.Erase(mset);
  } else {
    m_hidden.Assign(mset, 1);
  }
  if (DisplayChange* change = m_log.Recorded()) change->msets.push_back({mset, show == 0, show != 0});
  m_log.Noted().msets.push_back(mset);
}

void MeshDisplay::ShowHideMset(const std::vector<iterator>& msets, int show) {
  for (const iterator mset : msets) ShowHideMset(mset, show);
}

void MeshDisplay::SetMeshColorMode(unsigned mode) {
  Colouring colouring = m_colouring;
  colouring.mode = mode;
  PutColouring(colouring);
}

void MeshDisplay::PutColouring(const Colouring& colouring) {
  if (colouring == m_colouring) return;
  if (DisplayChange* change = m_log.Recorded()) change->meshColours.push_back({m_colouring, colouring});
  m_colouring = colouring;
  m_log.Noted().colours = true;
}

// ---- looks ----------------------------------------------------------------------------------------------

MeshDisplay::Look MeshDisplay::GetLook(std::uint32_t key) const {
  const auto found = m_looks.looks.find(key);
  Look look = found != m_looks.looks.end() ? found->second : Look{};
  look.addOns ^= m_looks.addOns;
  return look;
}

void MeshDisplay::PutLook(std::uint32_t key, const Look& look) {
  const auto known = m_looks.looks.find(key);
  const Look before = known != m_looks.looks.end() ? known->second : Look{};
  if (before == look) return;
  if (DisplayChange* change = m_log.Recorded()) change->looks.push_back({key, before, look});
  if (look == Look{}) {
    m_looks.looks.erase(known);
  } else {
    m_looks.looks[key] = look;
  }
  m_log.Noted().looks = true;
}

void MeshDisplay::PutLooks(const LookTable& looks) {
  if (looks == m_looks) return;
  if (DisplayChange* change = m_log.Recorded()) {
    auto all = std::make_shared<const DisplayChange::Looks>(DisplayChange::Looks{m_looks, looks});
    change->looks.push_back({.all = std::move(all)});
  }
  m_looks = looks;
  m_log.Noted().looks = true;
}

template <typename Change>
void MeshDisplay::ChangeLooks(const std::vector<std::uint32_t>& keys, const Change& change) {
  for (const std::uint32_t key : keys) {
    const auto known = m_looks.looks.find(key);
    Look look = known != m_looks.looks.end() ? known->second : Look{};
    change(look);
    PutLook(key, look);
  }
}

void MeshDisplay::SetRenderMode(const std::vector<std::uint32_t>& keys, unsigned mode) {
  ChangeLooks(keys, [mode](Look& look) { look.mode = static_cast<std::uint8_t>(mode); });
}

void MeshDisplay::SetTransparency(const std::vector<std::uint32_t>& keys, unsigned char value) {
  ChangeLooks(keys, [value](Look& look) { look.opacity = value; });
}

void MeshDisplay::ToggleShrink(const std::vector<std::uint32_t>& keys) {
  const bool shrink = !keys.empty() && !GetLook(keys.front()).shrink;
  ChangeLooks(keys, [shrink](Look& look) { look.shrink = shrink; });
}

int MeshDisplay::HasAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) const {
  for (const std::uint32_t key : keys) {
    if ((GetLook(key).addOns & bits) != bits) return 0;
  }
  return keys.empty() ? 0 : 1;
}

void MeshDisplay::SetAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) {
  const std::uint32_t all = m_looks.addOns;
  ChangeLooks(keys, [=](Look& look) { look.addOns = ((look.addOns ^ all) | bits) ^ all; });
}

void MeshDisplay::DelAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) {
  const std::uint32_t all = m_looks.addOns;
  ChangeLooks(keys, [=](Look& look) { look.addOns = ((look.addOns ^ all) & ~bits) ^ all; });
}

int MeshDisplay::HasAddOnInfoAll(std::uint32_t bits) const {
  if ((m_looks.addOns & bits) != bits) return 0;
  for (const auto& [key, look] : m_looks.looks) {
    if ((look.addOns & bits) != 0) return 0;
  }
  return 1;
}

template <typename Change>
void MeshDisplay::ChangeAllLooks(const Change& change) {
  LookTable looks = m_looks;
  change(looks);
  PutLooks(looks);
}

void MeshDisplay::SetAddOnInfoAll(std::uint32_t bits) {
  ChangeAllLooks([bits](LookTable& table) {
    table.addOns |= bits;
    for (auto& [key, look] : table.looks) look.addOns &= ~bits;
  });
}

void MeshDisplay::DelAddOnInfoAll(std::uint32_t bits) {
  ChangeAllLooks([bits](LookTable& table) {
    table.addOns &= ~bits;
    for (auto& [key, look] : table.looks) look.addOns &= ~bits;
  });
}

}  // namespace qd::workbench
