// What somebody types to find rows, and the titles that it is tried on. The first line is the query, the second
// the one that was there before it, the others are titles.

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "qd_wrt/find/Completion.h"
#include "qd_wrt/find/SearchKeys.h"
#include "support/FindRow.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qd;
  std::vector<CString> lines{CString()};
  // A text of elements of any value, rather than of UTF-8 only: two bytes each.
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    const auto element = static_cast<wchar_t>(data[i] | data[i + 1] << 8);
    if (element == L'\n') {
      lines.emplace_back();
    } else {
      lines.back() += element;
    }
  }
  lines.resize(std::max<std::size_t>(lines.size(), 3));
  const QueryWords& words = test::TestWords();
  for (std::size_t caret = 0; caret <= lines[0].size(); caret += 1 + lines[0].size() / 8) {
    const Completion completion = Complete(lines[0], caret, words);
    if (completion.from > completion.to || completion.to > lines[0].size()) std::abort();
  }
  QueryFault fault;
  const std::optional<Query> query = Query::Parse(lines[0], words, fault);
  if (!query && (fault.key == nullptr || fault.at + fault.length > lines[0].size())) std::abort();
  const std::optional<Query> former = Query::Parse(lines[1], words, fault);
  if (!query || !former) return 0;
  const bool narrows = Narrows(*former, *query);
  Matcher matcher(*query);
  Matcher formerMatcher(*former);
  SearchKeys keys;
  std::vector<std::uint32_t> candidates;
  for (std::size_t i = 2; i < lines.size(); ++i) keys.Set(static_cast<std::uint32_t>(i), lines[i]);
  Search search(keys, *query);
  while (search.Next(64, candidates)) {
  }
  for (std::size_t i = 2; i < lines.size(); ++i) {
    test::FindRow row(lines[i]);
    row.id = i;
    row.texts[kMaterialField] = {lines.back()};
    const std::uint64_t inside = matcher.InsideOf(row.key, row.title);
    const bool matches = matcher.Matches(row, inside);
    const auto number = static_cast<std::uint32_t>(i);
    const bool isCandidate = std::find(candidates.begin(), candidates.end(), number) != candidates.end();
    if (matches && !isCandidate) std::abort();
    if (query->IsNeedlesOnly() && matches != isCandidate) std::abort();
    if (narrows && matches && !formerMatcher.Matches(row, formerMatcher.InsideOf(row.key, row.title)))
      std::abort();
  }
  return 0;
}
