#include "workbench/model/Journal.h"

#include <set>
#include <utility>

#include "platform/FlatMap.h"
#include "workbench/model/Pools.h"
#include "workbench/model/Values.h"

namespace qd::workbench {

std::vector<JournalEntry> NetEffect(const std::vector<JournalEntry>& entries) {
  std::vector<JournalEntry> net;
  net.reserve(entries.size());
  FlatMap placeOf;  // of a record's entry in `net`, counted from 1
  for (const JournalEntry& entry : entries) {
    if (const std::uint64_t* place = placeOf.Find(entry.itr)) {
      net[*place - 1].after = entry.after;
      continue;
    }
    net.push_back(entry);
    placeOf.Assign(entry.itr, net.size());
  }
  std::erase_if(net, [](const JournalEntry& entry) { return entry.before == entry.after; });
  return net;
}

namespace {

/// The large part that a record of a type holds, and its size.
std::pair<const void*, std::size_t> LargePart(std::uint16_t type, const tagTRecord* record) {
  if (record != nullptr && type == kDataGeom) {
    if (const auto& shape = static_cast<const tagTGeom*>(record)->shape) return {shape.get(), BytesOf(*shape)};
  }
  if (record != nullptr && type == kDataMset) {
    if (const auto& mesh = static_cast<const tagTMset*>(record)->mesh) return {mesh.get(), BytesOf(*mesh)};
  }
  if (record != nullptr && type == kDataDeck) {
    if (const auto& text = static_cast<const tagTDeck*>(record)->text) return {text.get(), text->size()};
  }
  return {nullptr, 0};
}

const PartOrigin* OriginOf(std::uint16_t type, const tagTRecord* record) {
  return record != nullptr && type == kDataGeom ? static_cast<const tagTGeom*>(record)->origin.get() : nullptr;
}

}  // namespace

std::size_t BytesOf(const std::vector<JournalEntry>& net) {
  constexpr std::size_t kEntry = 400;  // two records with their names
  std::size_t bytes = net.size() * kEntry;
  std::set<const void*> counted;  // parts of one act may share a shape
  for (const JournalEntry& entry : net) {
    const PartOrigin* origin = OriginOf(TypeOf(entry.itr), entry.after.get());
    if (origin != nullptr && origin != OriginOf(TypeOf(entry.itr), entry.before.get())) bytes += BytesOf(*origin);
    const auto before = LargePart(TypeOf(entry.itr), entry.before.get());
    const auto after = LargePart(TypeOf(entry.itr), entry.after.get());
    if (before.first == after.first) continue;
    for (const auto& [part, size] : {before, after}) {
      if (part != nullptr && counted.insert(part).second) bytes += size;
    }
  }
  return bytes;
}

CQDUpdateRecord UpdateRecordFor(const std::vector<JournalEntry>& net, bool forward) {
  CQDUpdateRecord record;
  record.changes.reserve(net.size());
  for (const JournalEntry& entry : net) {
    const bool was = (forward ? entry.before : entry.after) != nullptr;
    const bool is = (forward ? entry.after : entry.before) != nullptr;
    const ChangeKind kind = !was ? kChangeAdded : is ? kChangeModified : kChangeDeleted;
    record.changes.push_back({TypeOf(entry.itr), kind, entry.itr});
  }
  return record;
}

}  // namespace qd::workbench
