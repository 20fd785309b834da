#pragma once

#include <algorithm>
#include <cstddef>

#include "platform/Types.h"

namespace qd {

/// The queries that were used last, each once, the newest first.
class FindHistory {
 public:
  static constexpr std::size_t kMost = 20;  ///< how many are kept

  /// Nothing for an empty one.
  void Add(const CString& query) {
    if (query.empty()) return;
    std::erase(m_queries, query);
    m_queries.insert(m_queries.begin(), query);
    m_queries.resize(std::min(m_queries.size(), kMost));
  }
  const TArray<CString>& Queries() const { return m_queries; }  ///< the newest first

 private:
  TArray<CString> m_queries;
};

}  // namespace qd
