#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "host/Records.h"
#include "host/Types.h"

namespace qd::workbench {

/// One write of one record; null before means added, null after deleted. Records are immutable, so an entry
/// shares them with the pools instead of copying.
struct JournalEntry {
  iterator itr = 0;
  std::shared_ptr<const tagTRecord> before;
  std::shared_ptr<const tagTRecord> after;
};

/// The net effect of a run of writes: one entry per record, in the order in which they were first touched, and
/// none for a record that ends as it began.
std::vector<JournalEntry> NetEffect(const std::vector<JournalEntry>& entries);

/// About how many bytes net entries keep alive, large parts included that both sides do not share.
std::size_t BytesOf(const std::vector<JournalEntry>& net);

/// What the works trees are told of net entries; `forward` false tells of their undoing.
CQDUpdateRecord UpdateRecordFor(const std::vector<JournalEntry>& net, bool forward);

}  // namespace qd::workbench
