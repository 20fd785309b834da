#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"
#include "platform/Types.h"
#include "qd_wrt/find/IRow.h"
#include "qd_wrt/find/QueryFault.h"
#include "qd_wrt/find/QueryWords.h"

namespace qd {

namespace find {
struct QueryTree;
class MatcherState;
}  // namespace find

/// A query over the rows of a tree that has been understood; never changes, and copies cost nothing.
class QD_EXPORT Query {
 public:
  /// The query that every row matches.
  Query();
  /// None when something is wrong, which `fault` says then. What may stand in a query: docs/manual/find.md.
  static std::optional<Query> Parse(std::wstring_view text, const QueryWords& words, QueryFault& fault);

  /// Every row matches.
  bool IsEmpty() const;
  /// The key of the title of each row that matches holds one of each of these; nothing is known when there are
  /// none. Search looks for them in all keys at once.
  const std::vector<std::vector<std::string>>& Needles() const;
  /// A row matches as soon as its key holds those; nothing else needs to be asked.
  bool IsNeedlesOnly() const;
  /// Whether it depends on the titles of ancestors (`in:`), so that Matcher::InsideOf must go down the tree.
  bool AsksForAncestors() const;
  /// Whether it depends on more than titles: on what rows may change without being renamed.
  bool AsksForFacts() const;
  /// Whether it depends on what is selected.
  bool AsksForSelection() const;
  /// Whether it depends on numbers and texts that others know, as material and set.
  bool AsksForFields() const;

 private:
  friend class Matcher;
  friend QD_EXPORT bool Narrows(const Query& former, const Query& next);
  std::shared_ptr<const find::QueryTree> m_tree;
};

/// Whether every row that matches `next` is known to match `former`, at one and the same time: those that match
/// `next` need only be looked for among the former matches. Both queries must come from the same words.
QD_EXPORT bool Narrows(const Query& former, const Query& next);

/// Asks rows whether they match a query. Remembers what costs time to find out; one thread at a time, a thread of
/// its own has a matcher of its own.
class QD_EXPORT Matcher {
 public:
  explicit Matcher(const Query& query);  ///< the query is copied
  ~Matcher();
  Matcher(const Matcher&) = delete;
  Matcher& operator=(const Matcher&) = delete;

  /// `inside`: the bits of InsideOf of all ancestors together; 0 at the top, or when the query does not ask.
  bool Matches(const IRow& row, std::uint64_t inside = 0);
  /// Which conditions on ancestors a title fulfils. What lies below a row is inside of this and of what the row
  /// itself is inside of; so one walk down, or one look at the parent, answers for all.
  std::uint64_t InsideOf(std::string_view key, std::wstring_view title);

 private:
  Query m_query;
  std::unique_ptr<find::MatcherState> m_state;
};

}  // namespace qd
