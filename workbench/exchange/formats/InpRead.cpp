#include "workbench/exchange/formats/InpRead.h"

namespace qd::workbench {

InpRead::InpRead(InpLines from, const std::string& name) : lines(std::move(from)) {
  parts.emplace_back();
  parts.front().mesh.name = name;
}

std::string InpRead::Counted(const std::map<std::string, std::size_t>& keywords) {
  std::string all;
  for (const auto& [keyword, count] : keywords) {
    all += (all.empty() ? "" : ", ") + keyword + " (" + std::to_string(count) + ")";
  }
  return all;
}

/// A few bytes of a deck can ask for all elements again and again.
void InpRead::CountListed(std::uint64_t elements) {
  constexpr std::uint64_t kMost = 250'000'000;
  m_listed += elements;
  if (m_listed > kMost) throw ImportError{"IDS_WB_IMPORT_INP_TOO_MUCH", lines.Place()};
}

void InpRead::CountNames(std::uint64_t names, std::size_t bytes) {
  CountListed(names * ((sizeof(std::string) + bytes) / sizeof(std::uint32_t)));
}

/// What stands once in the file stands once more in the model, so a short deck can ask for anything.
void InpRead::CountCopied(const InpReadPart& part) {
  constexpr std::uint64_t kMost = 100'000'000;
  // A set is copied with its name, its lists and its place in maps; names take more than numbers too.
  constexpr std::uint64_t kSet = 40;
  constexpr std::uint64_t kName = 16;
  const InpPart& mesh = part.mesh;
  m_copied += mesh.nodeIds.size() + mesh.elements.size() + mesh.elementNodes.size() +
              kSet * (part.sections.size() + mesh.sets.size());
  for (const InpSet& set : mesh.sets) m_copied += set.elements.size();
  for (const std::vector<std::string>& names : part.children) m_copied += kName * names.size();
  if (m_copied > kMost) throw ImportError{"IDS_WB_IMPORT_INP_TOO_MUCH", lines.Place()};
  m_copiedBytes += part.textBytes;
  CheckDeckLength(m_copiedBytes, lines.Place());
}

InpReadPart& InpRead::AddInstance(const InpReadPart& part, const std::string& name, bool placed) {
  CountCopied(part);
  if (!instances.Add({name, part.mesh.name, placed}))
    throw ImportError{"IDS_WB_IMPORT_INP_TWICE", lines.Quoted(name)};
  return partOfInstance[&instances.All().back()] = part;
}

}  // namespace qd::workbench
