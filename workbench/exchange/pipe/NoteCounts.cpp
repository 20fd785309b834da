#include "workbench/exchange/pipe/NoteCounts.h"

#include <algorithm>

namespace qd::workbench {

namespace {

constexpr std::size_t kNames = 5;
constexpr std::size_t kNameBytes = 80;  // of one name: they come from the file

/// Cut between characters: bytes that continue one stay with it or go with it.
std::string Shortened(const std::string& name) {
  if (name.size() <= kNameBytes) return name;
  std::size_t end = kNameBytes;
  while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) --end;
  return name.substr(0, end) + "…";
}

}  // namespace

void NoteCounts::Add(const std::string& key, const std::string& name, std::uint64_t times) {
  if (times == 0) return;
  const auto [place, isNew] = m_places.try_emplace(key, m_kinds.size());
  if (isNew) m_kinds.push_back({key, 0, {}, false});
  Kind& kind = m_kinds[place->second];
  kind.count += times;
  if (name.empty()) return;
  const std::string shown = Shortened(name);
  if (std::find(kind.names.begin(), kind.names.end(), shown) != kind.names.end()) return;
  if (kind.names.size() < kNames) {
    kind.names.push_back(shown);
  } else {
    kind.more = true;
  }
}

std::vector<ImportNote> NoteCounts::Notes() const {
  std::vector<ImportNote> notes;
  for (const Kind& kind : m_kinds) {
    std::string detail = std::to_string(kind.count);
    for (std::size_t i = 0; i < kind.names.size(); ++i) detail += (i == 0 ? " (" : ", ") + kind.names[i];
    if (!kind.names.empty()) detail += kind.more ? ", …)" : ")";
    notes.push_back({kind.key, detail});
  }
  return notes;
}

}  // namespace qd::workbench
