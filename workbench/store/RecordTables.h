#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/Records.h"
#include "workbench/model/RecordFault.h"
#include "workbench/store/Sqlite.h"

namespace qd::workbench {

/// The table of one type of record: which column holds which field. DocumentSchema.h has the tables themselves.
class IRecordTable {
 public:
  virtual ~IRecordTable() = default;

  virtual std::uint16_t Type() const = 0;
  virtual const char* Name() const = 0;

  /// Prepares the statements; the table must stand.
  virtual void Attach(Connection& file) = 0;
  /// Writes a record, or takes it out for null. `before` is what stands there, null for nothing: of a large part
  /// that is the same object nothing is written.
  virtual bool Put(iterator itr, const tagTRecord* before, const tagTRecord* after) = 0;
  /// Reads all rows in ascending order. A row that cannot be read goes to `onFault` with a reason, and its record
  /// is left out; one whose large part cannot be read comes without it. False when the file itself failed.
  using Row = std::function<void(iterator, std::shared_ptr<tagTRecord>)>;
  using Fault = std::function<void(const RecordFault&)>;
  virtual bool Read(Connection& file, const Row& onRow, const Fault& onFault) = 0;
  virtual bool ReadBackwards(Connection& file, const Row& onRow, const Fault& onFault) = 0;
};

/// A table for each type of record that documents hold, as far as a file has the tables: nothing is asked of
/// others, and records come without the large parts that would stand in them.
std::vector<std::unique_ptr<IRecordTable>> MakeRecordTables(
    const std::function<bool(const std::string& table)>& has = [](const std::string&) { return true; });

}  // namespace qd::workbench
