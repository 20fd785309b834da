#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"
#include "qd_wrt/find/Query.h"

namespace qd {

/// What the titles of all rows are searched by, for as long as somebody searches: folded once, behind each other
/// in one piece of memory, so that a word is looked for in all of them as in one text. Costs the folded title in
/// UTF-8 and 17 bytes a row. Rows go by small numbers of the owner's, as the places of a table.
class QD_EXPORT SearchKeys {
 public:
  /// Room for rows and for bytes of titles, so that adding them moves nothing.
  void Reserve(std::size_t rows, std::size_t bytes);
  /// Adds a row or gives it another title. What a row had before stays where it is, without an owner, until a
  /// third of all is like this; so this costs as much as the title is long, now and then a pass over all.
  void Set(std::uint32_t row, std::wstring_view title);
  void Erase(std::uint32_t row);  ///< forgets a row
  /// Forgets all and gives the memory back.
  void Clear();

  /// Whether it has the row.
  bool Has(std::uint32_t row) const { return row < m_entryOf.size() && m_entryOf[row] != kNone; }
  /// Empty for a row that it has not; valid until the next change.
  std::string_view Key(std::uint32_t row) const;
  std::size_t Count() const { return m_count; }  ///< how many rows it has
  /// Counts how often all was put together anew. Who goes through the keys begins anew then.
  std::uint64_t Revision() const { return m_revision; }
  /// Memory in bytes.
  std::size_t Bytes() const;

 private:
  friend class Search;
  static constexpr std::uint32_t kNone = UINT32_MAX;
  /// Stands behind each key; no UTF-8 holds it.
  static constexpr char kDivider = '\xFF';
  std::string_view KeyAt(std::size_t entry) const;
  void Drop(std::uint32_t row);
  void Tidy();

  std::string m_text;
  std::vector<std::size_t> m_starts;     ///< places in m_text, in order
  std::vector<std::uint32_t> m_rows;     ///< whose they are; kNone when nobody has them any more
  std::vector<std::uint32_t> m_entryOf;  ///< by row: the index of its place
  std::size_t m_count = 0;
  std::uint64_t m_revision = 0;
  std::size_t m_lost = 0;  ///< bytes without an owner
};

/// Looks through all keys for the rows that a query may match, a slice at a time. The keys must outlive it;
/// keys that come meanwhile are looked at too, and the owner begins anew when their revision changes.
class QD_EXPORT Search {
 public:
  Search(const SearchKeys& keys, const Query& query);  ///< the keys must outlive this; the query is copied
  /// Goes on through about `bytes` bytes of keys and appends the rows there whose keys hold what its needles
  /// are, or all when it has none; each row once, in no order. False when everything has been looked at.
  bool Next(std::size_t bytes, std::vector<std::uint32_t>& rows);

 private:
  void Find(std::string_view needle, std::size_t end, std::vector<std::uint32_t>& entries) const;

  const SearchKeys* m_keys;
  Query m_query;
  std::size_t m_entry = 0;
  // Kept between calls so that they need not be made each time.
  std::vector<std::uint32_t> m_entries;
  std::vector<std::uint32_t> m_holders;
};

namespace find {
/// The first place of `needle`, which is not empty, in `text` from `at` on; npos when there is none.
QD_EXPORT std::size_t FindBytes(std::string_view text, std::string_view needle, std::size_t at);
}  // namespace find

}  // namespace qd
