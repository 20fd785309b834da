// Columns that programs add.

#include <algorithm>
#include <optional>

#include "platform/text/Utf8.h"
#include "qd_wrt/c/Tree.h"

using namespace qd::c;

namespace {

qd_status NoColumn() {
  return Fail(QD_ERROR_VALUE, "It is the number of a column.");
}

}  // namespace

qd_status qd_column_add(qd_tree* handle, const qd_column* what, int32_t* column) {
  if (column != nullptr) *column = 0;
  return WithTree(handle, [=](Tree& tree) -> qd_status {
    if (what == nullptr || column == nullptr)
      return Fail(QD_ERROR_NULL, "It is that of the column or its number.");
    if (what->size != sizeof(qd_column)) return Fail(QD_ERROR_SIZE, "It is that of qd_column.");
    if (what->title == nullptr) return Fail(QD_ERROR_NULL, "The column has no title.");
    std::optional<qd::CString> title = qd::DecodeUtf8(what->title);
    if (!title) return Fail(QD_ERROR_TEXT);
    constexpr int kWidest = 10'000;
    constexpr int kMost = 200;
    const bool isRight = what->width >= 0 && what->width <= kWidest && what->align >= 0 && what->align <= 2;
    if (!isRight) return Fail(QD_ERROR_VALUE, "It is the width or the place of texts in a column.");
    if (tree.Rows().GetColumnsNum() >= kMost) return Fail(QD_ERROR_STATE, "There are too many columns.");
    *column = tree.Bar().AddColumn({.title = std::move(*title),
                                    .width = what->width == 0 ? -1 : what->width,
                                    .align = what->align,
                                    .sortable = what->unsortable == 0,
                                    .shown = what->hidden == 0});
    return QD_OK;
  });
}

qd_status qd_column_title(qd_tree* handle, int32_t column, const char* title) {
  return WithTree(handle, [=](Tree& tree) -> qd_status {
    if (title == nullptr) return Fail(QD_ERROR_NULL, "The column has no title.");
    const std::optional<qd::CString> shown = qd::DecodeUtf8(title);
    if (!shown) return Fail(QD_ERROR_TEXT);
    if (column < 0 || column >= tree.Rows().GetColumnsNum()) return NoColumn();
    tree.Bar().SetColumnTitle(column, *shown);
    return QD_OK;
  });
}

qd_status qd_columns_show(qd_tree* handle, const int32_t* columns, size_t count) {
  return WithTree(handle, [=](Tree& tree) -> qd_status {
    if (columns == nullptr) return Fail(QD_ERROR_NULL, "No columns are given.");
    if (count > static_cast<std::size_t>(tree.Rows().GetColumnsNum())) return NoColumn();
    return tree.Bar().ShowColumns({columns, columns + count}) != 0 ? QD_OK : NoColumn();
  });
}

qd_status qd_columns_get(qd_tree* handle, int32_t* columns, size_t capacity, size_t* count) {
  if (count != nullptr) *count = 0;
  return WithTree(handle, [=](Tree& tree) -> qd_status {
    if (count == nullptr || (columns == nullptr && capacity != 0)) {
      return Fail(QD_ERROR_NULL, "It is that of the columns or their count.");
    }
    const std::vector<int>& shown = tree.Rows().GetShownColumns();
    *count = shown.size();
    if (shown.size() > capacity) return Fail(QD_ERROR_SPACE);
    std::copy(shown.begin(), shown.end(), columns);
    return QD_OK;
  });
}

qd_status qd_columns_sort(qd_tree* handle, int32_t column, int32_t direction) {
  return WithTree(handle, [=](Tree& tree) -> qd_status {
    if (column < 0 || column >= tree.Rows().GetColumnsNum()) return NoColumn();
    if (direction < -1 || direction > 1) return Fail(QD_ERROR_VALUE, "It is the direction of sorting.");
    tree.Rows().SortByColumn(column, direction);
    return QD_OK;
  });
}

qd_status qd_node_refresh(qd_tree* handle, qd_node number) {
  return WithNode(handle, number, [](Tree&, qd::HostNode& node) {
    node.RefreshCells();
    return QD_OK;
  });
}
