#include "qd_wrt/core/PendingUpdates.h"

#include <algorithm>
#include <utility>

namespace qd {

void PendingUpdates::Push(const tagTRNotify& record) {
  auto batch = std::make_shared<UpdateBatch>();
  batch->records.push_back(record);
  batch->sequence.push_back(0xFFFFFFFFU);  // behind a notice, in the order of the calls
  m_batches.push_back(std::move(batch));
}

void PendingUpdates::Push(std::shared_ptr<const UpdateBatch> batch) {
  m_batches.push_back(std::move(batch));
}

std::vector<tagTRNotify> PendingUpdates::Collect() const {
  if (m_batches.size() == 1) return m_batches.front()->records;
  std::vector<std::pair<std::uint32_t, tagTRNotify>> ordered;
  for (const auto& batch : m_batches) {
    for (std::size_t i = 0; i < batch->records.size(); ++i) {
      ordered.emplace_back(batch->sequence[i], batch->records[i]);
    }
  }
  std::stable_sort(ordered.begin(), ordered.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<tagTRNotify> records;
  records.reserve(ordered.size());
  for (const auto& [place, record] : ordered) records.push_back(record);
  return records;
}

}  // namespace qd
