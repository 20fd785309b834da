#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Types.h"
#include "platform/text/Characters.h"

namespace qd {

/// Numbers of the host's data pools.
enum DataType : std::uint16_t {
  kDataCord = 2,           ///< coordinate systems
  kDataMset = 5,           ///< mesh sets
  kDataProperty = 6,       ///< properties of elements
  kDataMaterial = 7,       ///< materials, which geometry refers to
  kDataMaterialTitle = 8,  ///< records that titles of parts with a material depend on
  kDataGeom = 9,           ///< geometry parts
  kDataGKey = 11,          ///< keys of geometry parts
  kDataGset = 21,          ///< geometry sets
  kDataMGInfo = 64         ///< how meshes were generated
};

/// What happened to a record.
enum ChangeKind : std::uint16_t { kChangeAdded = 100, kChangeDeleted = 101, kChangeModified = 102 };

/// One change of one record. A deleted record stays readable until the notice that says so has been handled.
struct tagTRNotify {
  std::uint16_t dataType = 0;                           ///< the pool, as DataType has them
  std::uint16_t kind = 0;                               ///< what happened, as ChangeKind has it
  iterator itr = 0;                                     ///< the record
  bool operator==(const tagTRNotify&) const = default;  ///< member by member
};

/// The host's update record: the net changes of one commit, undo or redo, in the order in which the records were
/// first touched.
struct CQDUpdateRecord {
  std::vector<tagTRNotify> changes;  ///< each record once
};

/// The hint of UpdateDB designates an update record.
inline std::uint64_t HintOf(const CQDUpdateRecord& record) {
  return reinterpret_cast<std::uint64_t>(&record);
}
/// The record that a hint designates, null for 0. It is good during the call of UpdateDB only.
inline const CQDUpdateRecord* UpdateRecordOf(std::uint64_t hint) {
  return reinterpret_cast<const CQDUpdateRecord*>(hint);
}

/// Longest name of a model entity, in elements.
inline constexpr std::size_t kMaxNameLength = 63;

/// A name cut to what records hold, between two characters.
inline CString CutName(const CString& text) {
  return text.substr(0, CutLength(text, kMaxNameLength));
}

}  // namespace qd
