#include "workbench/model/Journal.h"

#include "platform/FlatMap.h"
#include "workbench/model/Pool.h"

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
