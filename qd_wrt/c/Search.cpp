// What is selected and searched for.

#include <algorithm>

#include "platform/text/Utf8.h"
#include "qd_wrt/c/Tree.h"

namespace qd::c {

namespace {

qd_status Search(Tree& tree, const char* query, int (CWorksTreeBar::*search)(const CString&)) {
  if (query == nullptr) return Fail(QD_ERROR_NULL, "No query is given.");
  const std::optional<CString> text = DecodeUtf8(query);
  if (!text) return Fail(QD_ERROR_TEXT);
  if (text->empty()) {
    tree.Bar().ClearFilter();
    return QD_OK;
  }
  return (tree.Bar().*search)(*text) != 0 ? QD_OK : Fail(QD_ERROR_QUERY);
}

qd_status Found(int result) {
  return result != 0 ? QD_OK : Fail(QD_ERROR_STATE, "Nothing matches.");
}

}  // namespace

}  // namespace qd::c

using namespace qd::c;

qd_status qd_selection_get(qd_tree* handle, qd_node* nodes, size_t capacity, size_t* count) {
  return WithTree(handle, [=](Tree& tree) {
    if (count == nullptr || (nodes == nullptr && capacity != 0))
      return Fail(QD_ERROR_NULL, "It is that of a buffer.");
    const std::vector<qd::HostNode*> selected = tree.Nodes().Selected();
    *count = selected.size();
    if (nodes == nullptr) return QD_OK;
    if (selected.size() > capacity) return Fail(QD_ERROR_SPACE);
    std::transform(selected.begin(), selected.end(), nodes,
                   [](const qd::HostNode* node) { return node->GetKey(); });
    return QD_OK;
  });
}

qd_status qd_selection_set(qd_tree* handle, const qd_node* nodes, size_t count) {
  return WithTree(handle, [=](Tree& tree) {
    if (nodes == nullptr && count != 0) return Fail(QD_ERROR_NULL, "No rows are given.");
    if (count > tree.Rows().RowCount()) return Fail(QD_ERROR_VALUE, "There are fewer rows than that.");
    std::vector<qd_node> wanted;
    wanted.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      qd::HostNode* node = nullptr;
      if (const qd_status found = FindNode(tree, nodes[i], node); found != QD_OK) return found;
      wanted.push_back(nodes[i]);
    }
    tree.Rows().ShowSelection(wanted);
    return QD_OK;
  });
}

qd_status qd_filter(qd_tree* handle, const char* query) {
  return WithTree(handle, [=](Tree& tree) { return Search(tree, query, &qd::CWorksTreeBar::SetFilter); });
}

qd_status qd_find(qd_tree* handle, const char* query) {
  return WithTree(handle, [=](Tree& tree) { return Search(tree, query, &qd::CWorksTreeBar::SetFind); });
}

qd_status qd_find_count(qd_tree* handle, size_t* matches, int* done) {
  return WithTree(handle, [=](Tree& tree) {
    if (matches == nullptr) return Fail(QD_ERROR_NULL, "There is nowhere to put the number.");
    *matches = static_cast<std::size_t>(tree.Bar().GetMatchCount());
    if (done != nullptr) *done = tree.Bar().IsFilterDone();
    return QD_OK;
  });
}

qd_status qd_find_next(qd_tree* handle, int forward) {
  return WithTree(handle, [=](Tree& tree) { return Found(tree.Bar().FindNext(forward)); });
}

qd_status qd_find_select(qd_tree* handle) {
  return WithTree(handle, [](Tree& tree) { return Found(tree.Bar().SelectMatches()); });
}

qd_status qd_find_bar(qd_tree* handle, int show) {
  return WithTree(handle, [=](Tree& tree) {
    tree.Bar().ShowFindBar(show);
    return QD_OK;
  });
}
