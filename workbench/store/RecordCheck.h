#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "workbench/model/Journal.h"
#include "workbench/model/RecordFault.h"
#include "workbench/model/References.h"

namespace qd::workbench {

/// The records of a document as they were read: whether their values are allowed, and whether they fit each other.
/// Opening, checking and repairing a document go through here, by the rules that acts go by.
class RecordCheck final : private IRecordLookup {
 public:
  using Records = std::map<iterator, std::shared_ptr<const tagTRecord>>;

  /// Takes a record that was read.
  void Add(iterator itr, std::shared_ptr<const tagTRecord> record);
  /// Notes what could not be read.
  void Complain(const RecordFault& fault);
  /// Looks at all records together. References to nothing are mended as if what they name had just been deleted;
  /// everything else that is wrong is a fault.
  void Run();
  /// Makes what it can of records with faults: puts values right, leaves out records that cannot stand, breaks
  /// circles. To be called before Run, which finds no fault then.
  void Repair();

  /// One line for each fault or mended reference, in the user's language, at most some of them.
  const std::vector<std::string>& Faults() const { return m_faults; }
  const std::vector<std::string>& Mended() const { return m_mended; }
  /// What was mended: records as they were read and as they are now.
  std::vector<JournalEntry> TakeChanges();
  const Records& All() const { return m_records; }

 private:
  const tagTRecord* Find(iterator itr) const override;
  iterator MsetOfKey(std::uint32_t key) const override;

  static void Note(std::vector<std::string>& lines, iterator itr, const char* key, const CString& what = {});
  bool AreOtherSettings(iterator itr) const;
  void FindKeys();
  void Mend(iterator itr, std::shared_ptr<const tagTRecord>& record, const ReferenceField& field);
  const char* PutRight(iterator itr, std::shared_ptr<const tagTRecord>& record);
  /// Whether the way up from a record comes back to it.
  bool StandsOnItself(iterator itr, const ReferenceField& field);

  Records m_records;
  std::unordered_map<std::uint32_t, iterator> m_msetOfKey;
  std::unordered_set<iterator> m_standing;  // records whose way up is known to end
  std::map<iterator, JournalEntry> m_changes;
  std::vector<std::string> m_faults;
  std::vector<std::string> m_mended;
};

}  // namespace qd::workbench
