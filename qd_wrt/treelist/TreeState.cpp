#include "qd_wrt/treelist/TreeState.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

namespace {

constexpr std::string_view kBegin = "qd-tree-state 1\n";
constexpr std::size_t kLongestText = 256U << 20U;
constexpr std::size_t kLongestKey = 1U << 16U;
constexpr std::size_t kMostColumns = 256;
constexpr int kWidest = 100'000;

/// A row of the state: how deep below the row of an earlier line it stands, and what it is.
struct Line {
  std::size_t depth = 0;
  bool open = false;
  bool selected = false;
  bool focused = false;
  bool top = false;
  std::string key;
};

struct State {
  ColumnLayout columns;
  bool allSelected = false;
  std::vector<Line> lines;
};

// ---- text -----------------------------------------------------------------------------------------------

void AppendKey(std::string& text, std::string_view key) {
  for (const char byte : key) {
    const auto value = static_cast<unsigned char>(byte);
    const bool plain = value > ' ' && value < 0x7F && byte != '%';
    if (plain) {
      text += byte;
    } else {
      text += '%';
      text += "0123456789ABCDEF"[value >> 4U];
      text += "0123456789ABCDEF"[value & 0xFU];
    }
  }
}

std::optional<std::string> ReadKey(std::string_view text) {
  std::string key;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '%') {
      if (text[at] <= ' ' || text[at] >= 0x7F) return std::nullopt;
      key += text[at];
      continue;
    }
    unsigned value = 0;
    const char* end = text.data() + std::min(at + 3, text.size());
    const auto read = std::from_chars(text.data() + at + 1, end, value, 16);
    if (read.ec != std::errc() || read.ptr != text.data() + at + 3) return std::nullopt;
    key += static_cast<char>(value);
    at += 2;
  }
  if (key.empty() || key.size() > kLongestKey) return std::nullopt;
  return key;
}

/// The next word of a line, taken off it.
std::string_view TakeWord(std::string_view& line) {
  const std::size_t end = std::min(line.find(' '), line.size());
  const std::string_view word = line.substr(0, end);
  line.remove_prefix(std::min(end + 1, line.size()));
  return word;
}

template <typename Number>
bool ReadNumber(std::string_view word, Number& number) {
  const auto read = std::from_chars(word.data(), word.data() + word.size(), number);
  return !word.empty() && read.ec == std::errc() && read.ptr == word.data() + word.size();
}

bool ReadNumbers(std::string_view line, int greatest, std::vector<int>& numbers) {
  if (!numbers.empty()) return false;  // a second line of the kind
  while (!line.empty() && numbers.size() < kMostColumns) {
    int number = 0;
    if (!ReadNumber(TakeWord(line), number) || number < 0 || number > greatest) return false;
    numbers.push_back(number);
  }
  return line.empty();
}

bool ReadSorted(std::string_view line, ColumnLayout& columns) {
  const std::string_view way = TakeWord(line);
  columns.descending = way == "down";
  return (way == "up" || way == "down") && ReadNumber(line, columns.sorted) && columns.sorted >= 0 &&
         static_cast<std::size_t>(columns.sorted) < kMostColumns;
}

bool ReadRow(std::string_view line, const std::vector<Line>& before, Line& row) {
  if (!ReadNumber(TakeWord(line), row.depth)) return false;
  if (row.depth > (before.empty() ? 0 : before.back().depth + 1)) return false;
  for (const char flag : TakeWord(line)) {
    bool* what = flag == 'o'   ? &row.open
                 : flag == 's' ? &row.selected
                 : flag == 'f' ? &row.focused
                 : flag == 't' ? &row.top
                               : nullptr;
    if (flag == '-') continue;
    if (what == nullptr || std::exchange(*what, true)) return false;
  }
  std::optional<std::string> key = ReadKey(line);
  if (!key.has_value()) return false;
  row.key = *std::move(key);
  return true;
}

std::optional<State> ReadState(std::string_view text) {
  if (text.size() > kLongestText || !text.starts_with(kBegin) || text.back() != '\n') return std::nullopt;
  text.remove_prefix(kBegin.size());
  State state;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    const std::string_view kind = TakeWord(line);
    if (kind == "columns") {
      if (!ReadNumbers(line, kWidest, state.columns.widths)) return std::nullopt;
    } else if (kind == "order") {
      if (!ReadNumbers(line, static_cast<int>(kMostColumns), state.columns.order)) return std::nullopt;
    } else if (kind == "sorted") {
      if (!ReadSorted(line, state.columns)) return std::nullopt;
    } else if (kind == "all" && line.empty()) {
      state.allSelected = true;
    } else if (Line row; kind == "row" && ReadRow(line, state.lines, row)) {
      state.lines.push_back(std::move(row));
    } else {
      return std::nullopt;
    }
  }
  return state;
}

// ---- the tree -------------------------------------------------------------------------------------------

/// Writes rows from the top down; those above a row that is to be written come before it.
class Writer {
 public:
  Writer(const CTreeListCtrl& tree, ITreeKeys& keys) : m_tree(tree), m_keys(keys) {
    m_top = tree.GetFirstVisibleItem();
    m_focused = tree.GetFocusedItem();
    m_all = tree.RowCount() != 0 && tree.GetSelectedRowCount() == tree.RowCount();
  }

  std::string Write(const ColumnLayout& columns) {
    m_text = kBegin;
    WriteNumbers("columns", columns.widths);
    WriteNumbers("order", columns.order);
    if (columns.sorted >= 0) {
      m_text += columns.descending ? "sorted down " : "sorted up ";
      m_text += std::to_string(columns.sorted) + '\n';
    }
    if (m_all) m_text += "all\n";
    HTREEITEM row = m_tree.GetRootItem();
    while (row) {
      const bool named = Look(row);
      HTREEITEM next = named ? m_tree.GetChildItem(row) : HTREEITEM{};
      if (next) {
        row = next;
        continue;
      }
      if (named) m_path.pop_back();
      for (next = m_tree.GetNextSiblingItem(row); !next;) {
        row = m_tree.GetParentItem(row);
        if (!row) break;
        m_path.pop_back();
        next = m_tree.GetNextSiblingItem(row);
      }
      row = next;
    }
    return std::move(m_text);
  }

 private:
  void WriteNumbers(std::string_view what, const std::vector<int>& numbers) {
    if (numbers.empty()) return;
    m_text += what;
    for (const int number : numbers) m_text += ' ' + std::to_string(number);
    m_text += '\n';
  }

  struct Step {
    HTREEITEM row;
    std::string key;
    bool written = false;
  };

  /// Looks at a row, and puts it into the path unless it has no name or nothing to do with anything.
  bool Look(HTREEITEM row) {
    Line line;
    line.open = m_tree.ItemHasChildren(row) && m_tree.WasExpanded(row);
    line.selected = !m_all && m_tree.IsSelected(row);
    line.focused = row == m_focused;
    line.top = row == m_top;
    const bool says = line.open || line.selected || line.focused || line.top;
    if (!says && !m_tree.ItemHasChildren(row)) return false;
    std::string key = m_keys.KeyOf(row);
    if (key.empty() || key.size() > kLongestKey) return false;
    m_path.push_back({row, std::move(key), false});
    if (!says) return true;
    for (std::size_t depth = 0; depth < m_path.size(); ++depth) {
      if (std::exchange(m_path[depth].written, true)) continue;
      WriteRow(depth, depth + 1 == m_path.size() ? line : Line());
    }
    return true;
  }

  void WriteRow(std::size_t depth, const Line& line) {
    std::string flags;
    if (line.open) flags += 'o';
    if (line.selected) flags += 's';
    if (line.focused) flags += 'f';
    if (line.top) flags += 't';
    m_text += "row " + std::to_string(depth) + ' ' + (flags.empty() ? "-" : flags) + ' ';
    AppendKey(m_text, m_path[depth].key);
    m_text += '\n';
  }

  const CTreeListCtrl& m_tree;
  ITreeKeys& m_keys;
  HTREEITEM m_top;
  HTREEITEM m_focused;
  bool m_all = false;
  std::string m_text;
  std::vector<Step> m_path;
};

/// Rows that the state does not open are closed: each branch that is open now, the innermost first.
void CloseAll(CTreeListCtrl& tree) {
  std::vector<HTREEITEM> open;
  for (HTREEITEM row = tree.GetRootItem(); row;) {
    if (tree.IsExpanded(row)) open.push_back(row);
    HTREEITEM next = tree.IsExpanded(row) ? tree.GetChildItem(row) : HTREEITEM{};
    for (HTREEITEM at = row; at && !next; at = tree.GetParentItem(at)) next = tree.GetNextSiblingItem(at);
    row = next;
  }
  for (auto row = open.rbegin(); row != open.rend(); ++row) tree.Expand(*row, ExpandAction::Collapse);
}

/// Makes a row the first one on screen, as far as there are rows below.
void ScrollToTop(CTreeListCtrl& tree, HTREEITEM row) {
  tree.EnsureVisible(row);
  CRect line;
  if (!tree.GetItemRect(row, line, false)) return;
  tree.ScrollTo(tree.TopPosition() + static_cast<std::size_t>(std::max(line.top, 0) / tree.GetItemHeight()));
}

void Show(CTreeListCtrl& tree, ITreeKeys& keys, const State& state) {
  const std::weak_ptr<void> life = tree.Life();  // who makes rows may take the tree down
  CloseAll(tree);
  if (life.expired()) return;
  tree.ClearAllSelected();
  HTREEITEM focused;
  HTREEITEM top;
  std::vector<HTREEITEM> path;
  for (const Line& line : state.lines) {
    path.resize(std::min(path.size(), line.depth));
    if (path.size() < line.depth) continue;  // below a row that is not there
    const HTREEITEM row = keys.FindBelow(path.empty() ? HTREEITEM{} : path.back(), line.key);
    if (life.expired()) return;
    if (!row) continue;
    path.push_back(row);
    if (line.open) tree.Expand(row, ExpandAction::Expand);
    if (life.expired()) return;
    if (line.selected) tree.SetItemState(row, kRowSelected, kRowSelected);
    if (line.focused) focused = row;
    if (line.top) top = row;
  }
  if (state.allSelected) tree.SelectAll(1);
  if (focused && tree.IsLive(focused)) {
    const unsigned selected = tree.IsSelected(focused) ? kRowSelected : 0U;
    tree.SetItemState(focused, kRowFocused | selected, kRowFocused | kRowSelected);
  }
  if (top && tree.IsLive(top)) ScrollToTop(tree, top);
}

}  // namespace

std::string SaveTreeState(const CTreeListCtrl& tree, ITreeKeys& keys, const ColumnLayout& columns) {
  return Writer(tree, keys).Write(columns);
}

int RestoreTreeState(CTreeListCtrl& tree, ITreeKeys& keys, std::string_view text, ColumnLayout& columns) {
  std::optional<State> state = ReadState(text);
  if (!state.has_value()) return 0;
  columns = std::move(state->columns);
  Show(tree, keys, *state);
  return 1;
}

}  // namespace qd
