#include "qd_wrt/treelist/TreeColumns.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>
#include <vector>

namespace qd {

namespace {

constexpr unsigned kFormatBase = 0x01000000;
constexpr int kDefaultColumnMargin = 24;

}  // namespace

int TreeColumns::Insert(int column, const CString& caption, int format, int width) {
  ++m_count;
  CHeaderBase::Item item;
  item.text = caption;
  item.format = kFormatBase | (format == 1   ? CHeaderBase::kFormatRight
                               : format == 2 ? CHeaderBase::kFormatCentre
                                             : 0U);
  item.width = width;
  if (width == -1) {
    std::vector<int> widths;
    IToolkit::Instance().PrefixWidths({}, caption, widths);
    item.width = widths.back() + kDefaultColumnMargin;
  }
  return m_header.InsertItem(column, std::move(item));
}

int TreeColumns::Add(const TreeColumn& column) {
  const int index = Insert(m_count, column.title, column.align, column.width);
  m_asked.push_back(column.shown);
  SetSortable(index, column.sortable);
  std::vector<int> shown = Shown();
  if (!column.shown) std::erase(shown, index);
  m_header.SetOrder(shown);
  return index;
}

int TreeColumns::RemoveLast() {
  if (m_asked.empty()) return 0;
  m_asked.pop_back();
  --m_count;
  m_sortable.resize(std::min(m_sortable.size(), static_cast<std::size_t>(m_count)));
  m_header.RemoveLastItem();
  return 1;
}

int TreeColumns::Show(const std::vector<int>& columns) {
  return !columns.empty() && columns.front() == 0 ? m_header.SetOrder(columns) : 0;
}

std::vector<int> TreeColumns::ShownAtFirst() const {
  std::vector<int> columns(static_cast<std::size_t>(m_count));
  std::iota(columns.begin(), columns.end(), 0);
  const std::size_t kept = columns.size() - m_asked.size();
  std::erase_if(columns, [&](int column) {
    const auto at = static_cast<std::size_t>(column);
    return at >= kept && !m_asked[at - kept];
  });
  return columns;
}

std::vector<int> TreeColumns::ShownAsked() const {
  std::vector<int> columns;
  if (m_asked.empty()) return columns;
  std::copy_if(Shown().begin(), Shown().end(), std::back_inserter(columns),
               [this](int column) { return IsAsked(column); });
  return columns;
}

bool TreeColumns::IsSortable(int column) const {
  const auto at = static_cast<std::size_t>(column);
  return column >= 0 && at < m_sortable.size() && m_sortable[at];
}

void TreeColumns::SetSortable(int column, bool sortable) {
  if (column < 0 || column >= m_count) return;
  const auto at = static_cast<std::size_t>(column);
  if (at >= m_sortable.size()) m_sortable.resize(at + 1);
  m_sortable[at] = sortable;
}

int TreeColumns::WidthOf(int column) const {
  const CHeaderBase::Item* item = m_header.GetItem(column);
  return item != nullptr && !item->hidden ? item->width : 0;
}

int TreeColumns::FullWidthOf(int column) const {
  const CHeaderBase::Item* item = m_header.GetItem(column);
  return item != nullptr ? item->width : 0;
}

int TreeColumns::AlignOf(int column) const {
  const CHeaderBase::Item* item = m_header.GetItem(column);
  if (item == nullptr) return 0;
  if ((item->format & CHeaderBase::kFormatRight) != 0) return 1;
  return static_cast<int>(item->format & CHeaderBase::kFormatCentre);
}

int TreeColumns::LeftOf(int column) const {
  int left = 0;
  for (const int shown : Shown()) {
    if (shown == column) break;
    left += WidthOf(shown);
  }
  return left;
}

void TreeColumns::Measure() {
  m_totalWidth = LeftOf(m_count);
}

bool TreeColumns::SetOffset(int x) {
  if (std::exchange(m_offset, x) == x) return false;
  m_header.SetOffset(x);
  return true;
}

}  // namespace qd
