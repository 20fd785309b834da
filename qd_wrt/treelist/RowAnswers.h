#pragma once

#include <cstdint>
#include <vector>

#include "platform/Export.h"
#include "platform/tree/RowBits.h"
#include "platform/tree/RowTree.h"
#include "qd_wrt/find/Query.h"
#include "qd_wrt/find/SearchKeys.h"
#include "qd_wrt/treelist/IRowFacts.h"
#include "qd_wrt/treelist/LaterRows.h"

namespace qd {

/// Where the answers to queries about rows come from. Nothing is owned; facts may be null, and what is selected
/// for a query that does not ask for it.
struct RowSources {
  const RowTree* rows = nullptr;         ///< the rows
  const IRowRecords* records = nullptr;  ///< what they show
  const SearchKeys* keys = nullptr;      ///< their titles
  const IRowFacts* facts = nullptr;      ///< what else is known of them
  const RowBits* selected = nullptr;     ///< what counts as selected
};

/// Says which rows of a tree list match one query.
class QD_EXPORT RowAnswers {
 public:
  /// All that the sources name must outlive this.
  RowAnswers(const Query& query, const RowSources& sources)
      : m_matcher(query), m_sources(sources), m_query(query) {}
  bool Matches(HTREEITEM row);  ///< whether it matches
  /// Remembers from now on what is known of ancestors, for questions about very many rows while no title changes.
  /// 8 bytes a row, when the query asks for ancestors.
  void RememberAncestors() { m_remembers = m_query.AsksForAncestors(); }

 private:
  std::uint64_t InsideOf(HTREEITEM row);

  Matcher m_matcher;
  RowSources m_sources;
  Query m_query;
  bool m_remembers = false;
  std::vector<std::uint64_t> m_inside;  // by row: what stands below it is inside of this
  RowBits m_known;
  std::vector<HTREEITEM> m_path;
};

}  // namespace qd
