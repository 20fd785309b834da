// What the user has made of a tree, as a text that the program keeps: a line for what it is, then one for each
// open row, selected row and column.

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "qd_wrt/c/CopyOut.h"
#include "qd_wrt/c/Tree.h"

namespace qd::c {

namespace {

constexpr std::string_view kHead = "qd_wrt state 1";

struct State {
  std::vector<std::uint64_t> open;  // from the top down
  std::vector<std::uint64_t> selected;
  ColumnLayout columns;
  std::uint64_t first = 0;  // the first row on screen
};

template <typename Number>
std::optional<Number> NumberOf(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

bool TakeLine(std::string_view line, State& state) {
  const std::size_t blank = line.find(' ');
  if (blank == std::string_view::npos) return false;
  const std::string_view what = line.substr(0, blank);
  if (what == "column" || what == "shown" || what == "sorted-up" || what == "sorted-down") {
    const std::optional<int> number = NumberOf<int>(line.substr(blank + 1));
    if (!number) return false;
    if (what == "column") {
      state.columns.widths.push_back(*number);
    } else if (what == "shown") {
      state.columns.order.push_back(*number);
    } else {
      state.columns.sorted = *number;
      state.columns.descending = what == "sorted-down";
    }
    return true;
  }
  const std::optional<std::uint64_t> key = NumberOf<std::uint64_t>(line.substr(blank + 1));
  if (!key) return false;
  if (what == "open") {
    state.open.push_back(*key);
  } else if (what == "selected") {
    state.selected.push_back(*key);
  } else if (what == "first") {
    state.first = *key;
  } else {
    return false;
  }
  return true;
}

std::optional<State> Parse(std::string_view text) {
  State state;
  bool isHead = true;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) return std::nullopt;  // cut off
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    if (isHead ? line != kHead : !TakeLine(line, state)) return std::nullopt;
    isHead = false;
  }
  return isHead ? std::nullopt : std::optional(std::move(state));
}

std::string Write(Tree& tree) {
  std::string text(kHead);
  const auto add = [&text](std::string_view what, std::uint64_t number) {
    if (number != 0) text.append("\n").append(what).append(" ").append(std::to_string(number));
  };
  const CQDTreeListCtrl& rows = tree.Rows();
  tree.Nodes().Root().ForEachBelow([&](const CQDTreeItem* node) {
    if (rows.WasExpanded(node->GetTreeItemHandle())) add("open", tree.KeyOf(node->GetIterator()));
  });
  for (const HostNode* node : tree.Nodes().Selected()) add("selected", tree.KeyOf(node->GetKey()));
  const ColumnLayout columns = tree.Bar().GetColumnLayout();
  for (const int width : columns.widths) add("column", static_cast<std::uint64_t>(width));
  for (const int column : columns.order) text.append("\nshown ").append(std::to_string(column));
  if (columns.sorted >= 0) {
    text.append(columns.descending ? "\nsorted-down " : "\nsorted-up ").append(std::to_string(columns.sorted));
  }
  const CQDTreeItem* first = rows.NodeOf(rows.GetFirstVisibleItem());
  if (first != nullptr) add("first", tree.KeyOf(first->GetIterator()));
  return text + "\n";
}

/// Opening rows calls the program, which may take anything down.
qd_status Apply(Tree& tree, const State& state) {
  const auto nodeOf = [&tree](std::uint64_t key) {
    const qd_node number = tree.NodeOfKey(key);
    return number != 0 ? tree.Nodes().Find(number) : nullptr;
  };
  for (const std::uint64_t key : state.open) {
    if (HostNode* node = nodeOf(key)) node->Expand(1);
    if (!tree.Stands()) return Fail(QD_ERROR_WINDOW);
  }
  std::vector<qd_node> selected;
  for (const std::uint64_t key : state.selected) selected.push_back(tree.NodeOfKey(key));
  tree.Rows().ShowSelection(selected, false);
  tree.Bar().SetColumnLayout(state.columns);
  if (!tree.Stands()) return Fail(QD_ERROR_WINDOW);
  CRect line;
  if (const HostNode* first = nodeOf(state.first)) {
    CQDTreeListCtrl& rows = tree.Rows();
    rows.EnsureVisible(first->GetTreeItemHandle());
    if (tree.Stands() && rows.GetItemRect(first->GetTreeItemHandle(), line, false)) {
      rows.ScrollTo(rows.TopPosition() + static_cast<std::size_t>(line.top / rows.GetItemHeight()));
    }
  }
  return QD_OK;
}

}  // namespace

}  // namespace qd::c

using namespace qd::c;

qd_status qd_state_save(qd_tree* handle, char* text, size_t capacity, size_t* needed) {
  return WithTree(handle, [=](Tree& tree) { return CopyOut(Write(tree), text, capacity, needed); });
}

qd_status qd_state_load(qd_tree* handle, const char* text) {
  return WithTree(handle, [=](Tree& tree) {
    if (text == nullptr) return Fail(QD_ERROR_NULL, "No state is given.");
    const std::optional<State> state = Parse(text);
    return state ? Apply(tree, *state) : Fail(QD_ERROR_VALUE, "It is no text of qd_state_save.");
  });
}
