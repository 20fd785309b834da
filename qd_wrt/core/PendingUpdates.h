#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/Types.h"
#include "platform/Export.h"

namespace qd {

/// Change records of one notice and data type in the order of the notice, shared by all nodes that follow the
/// type. `sequence` holds each record's place in the whole notice.
struct UpdateBatch {
  std::vector<tagTRNotify> records;     ///< in the order of the notice
  std::vector<std::uint32_t> sequence;  ///< beside `records`, ascending
};

/// The change records that wait for a node.
class QD_EXPORT PendingUpdates {
 public:
  /// @{
  /// Adds records behind those that wait.
  void Push(const tagTRNotify& record);
  void Push(std::shared_ptr<const UpdateBatch> batch);
  /// @}
  /// All records; those of one notice in its order whatever their types.
  std::vector<tagTRNotify> Collect() const;

 private:
  std::vector<std::shared_ptr<const UpdateBatch>> m_batches;
};

}  // namespace qd
