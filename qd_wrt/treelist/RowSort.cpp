#include "qd_wrt/treelist/RowSort.h"

#include <algorithm>
#include <string_view>

#include "platform/tree/StableMerge.h"
#include "qd_wrt/treelist/NameSort.h"
#include "qd_wrt/treelist/RowRecord.h"

namespace qd {

namespace {

/// Calls `act` with each record, an empty one for null. Records of sorted rows lie anywhere in memory: what is
/// asked for next is fetched meanwhile.
template <typename Act>
void ForEachRecord(const std::vector<const CTLItem*>& records, const Act& act) {
  static const CTLItem kNone;
  constexpr std::size_t kAhead = 12;
  for (std::size_t at = 0; at < records.size(); ++at) {
    if (at + 2 * kAhead < records.size()) __builtin_prefetch(records[at + 2 * kAhead]);
    if (at + kAhead < records.size() && records[at + kAhead] != nullptr) {
      const CString& text = records[at + kAhead]->GetItemString();
      __builtin_prefetch(text.data());
      __builtin_prefetch(text.data() + text.size());
    }
    act(records[at] != nullptr ? *records[at] : kNone);
  }
}

}  // namespace

std::vector<HTREEITEM> SortedChildren(const RowTree& rows, HTREEITEM parent, const SortParameters& by) {
  std::vector<HTREEITEM> children;
  std::vector<const CTLItem*> records;
  children.reserve(rows.ChildCount(parent));
  records.reserve(rows.ChildCount(parent));
  for (HTREEITEM child = parent ? rows.FirstChild(parent) : rows.First(); child; child = rows.NextSibling(child)) {
    children.push_back(child);
    records.push_back(RecordOf(rows.Word(child)));
  }
  // Texts are taken apart once per row, not once per comparison.
  std::vector<std::uint32_t> order;
  if (by.byName != 0) {
    std::vector<NameKey> names;
    names.reserve(children.size());
    ForEachRecord(records, [&](const CTLItem& record) { names.emplace_back(record.View(by.column)); });
    order = OrderOfNames(names, 1);
  } else {
    std::vector<std::uint64_t> numbers;
    numbers.reserve(children.size());
    ForEachRecord(records, [&](const CTLItem& record) {
      const std::uint32_t key = record.GetItemKey();
      const std::int32_t bracket = key == 0 ? BracketNumber(record.View(by.column)) : 0;
      numbers.push_back(NumberOf({key, static_cast<std::uint32_t>(bracket)}));
    });
    order = OrderOfNumbers(numbers);
  }
  if (std::is_sorted(order.begin(), order.end())) return {};
  std::vector<HTREEITEM> sorted(children.size());
  std::transform(order.begin(), order.end(), sorted.begin(),
                 [&children](std::uint32_t at) { return children[at]; });
  return sorted;
}

std::vector<std::uint32_t> OrderOfCells(const std::vector<TreeCell>& cells, int direction) {
  std::vector<std::uint32_t> order;
  std::vector<std::uint32_t> named;
  std::vector<NameKey> names;
  for (std::uint32_t at = 0; at < cells.size(); ++at) {
    if (cells[at].number.has_value()) {
      order.push_back(at);
    } else {
      named.push_back(at);
      names.emplace_back(cells[at].text);
    }
  }
  StableMerge(order, [&](std::uint32_t a, std::uint32_t b) {
    const double left = *cells[a].number;
    const double right = *cells[b].number;
    return left < right ? -direction : left > right ? direction : 0;
  });
  for (const std::uint32_t at : OrderOfNames(names, direction)) order.push_back(named[at]);
  return order;
}

}  // namespace qd
