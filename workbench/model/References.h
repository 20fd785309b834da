#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/Records.h"

namespace qd::workbench {

/// What becomes of a field when the record that it names is deleted.
enum class WhenGone : std::uint8_t {
  Clear,      ///< it names nothing
  TakeOut,    ///< the name leaves the list
  MoveUp,     ///< it names the nearest record above the deleted one that stays, or nothing
  KeepPlace,  ///< likewise, and its own record stays where it is in space
  Default,    ///< it names the default record
  Refuse      ///< the record is not deleted
};

/// Mesh sets name the set above them by its key, which is no iterator; this makes a name of the same kind.
constexpr iterator NameOfMsetKey(std::uint32_t key) {
  constexpr iterator kByKey = static_cast<iterator>(kDataMset) << 48U | iterator{1} << 40U;
  return key != 0 ? kByKey | key : 0;
}
constexpr bool IsMsetKey(iterator name) {
  return (name >> 40U) == (static_cast<iterator>(kDataMset) << 8U | 1U);
}

/// One field by which records of a type name others, and its rule. Names are iterators or those of keys; 0 names
/// nothing.
struct ReferenceField {
  std::uint16_t holder;
  std::uint16_t target;
  const char* what;  ///< the key of what it names, for messages
  WhenGone whenGone;
  bool lastTakesTarget;  ///< a record goes as soon as the last field has stopped naming it
  bool inPool;           ///< the pool of the holders finds them by this field itself
  std::size_t (*count)(const tagTRecord& record);
  iterator (*at)(const tagTRecord& record, std::size_t place);
  /// Writes another name in place of one; 0 takes it out.
  void (*replace)(tagTRecord& record, iterator name, iterator instead);
};

/// Every reference between records. What is not in this table is none.
std::span<const ReferenceField> ReferenceFields();
/// Those of records of one type.
std::span<const ReferenceField> ReferenceFieldsOf(std::uint16_t holder);

/// Records as the rules see them.
class IRecordLookup {
 public:
  virtual const tagTRecord* Find(iterator itr) const = 0;
  /// The iterator of a mesh set, 0 for none.
  virtual iterator MsetOfKey(std::uint32_t key) const = 0;

 protected:
  ~IRecordLookup() = default;
};

/// The iterator of a named record; 0 when there is no such record.
iterator Resolve(const IRecordLookup& records, iterator name);
/// By what a field names a record of its target type.
iterator NameFor(const ReferenceField& field, iterator itr, const tagTRecord& record);

/// Records that go, and what the rules need to know then. A record that is not found counts as gone.
struct Departure {
  const IRecordLookup& records;
  std::function<bool(iterator)> goes;
  /// The default record of a type, 0 for none.
  std::function<iterator(std::uint16_t)> defaultOf;
  std::unordered_map<iterator, iterator> above{};  ///< names of records that stay, by those of records that go
};

/// A record as the rule of a field leaves it when what it names goes. Null when the rule refuses.
std::shared_ptr<tagTRecord> Released(const ReferenceField& field, const tagTRecord& holder, iterator name,
                                     Departure& departure);

/// A copy of a record of a type; null for a type that there is not.
std::shared_ptr<tagTRecord> CopyRecord(std::uint16_t type, const tagTRecord& record);

/// Who names a record, for the fields that no pool has an index of.
class ReferenceIndex {
 public:
  /// A record came (before null), changed or went (after null).
  void Follow(iterator itr, const tagTRecord* before, const tagTRecord* after);
  /// Appends the records of a type that name it, oldest first.
  void AppendHolders(iterator name, std::uint16_t holder, std::vector<iterator>& itrs) const;

 private:
  std::set<std::pair<iterator, iterator>> m_holders;  // by what they name
};

}  // namespace qd::workbench
