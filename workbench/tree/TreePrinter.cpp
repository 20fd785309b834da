#include "workbench/tree/TreePrinter.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "workbench/text/Shown.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// Deeper rows say their level: a chain of a hundred thousand sets would be gigabytes of blanks.
constexpr int kMostIndented = 100;

}  // namespace

void ForEachRow(const CQDTreeListCtrl& tree, const std::function<void(HTREEITEM row, int level)>& call) {
  int level = 0;
  for (HTREEITEM row = tree.GetRootItem(); row;) {
    call(row, level);
    // The next row in order: first child, else the next sibling of the nearest row that has one.
    HTREEITEM next = tree.GetChildItem(row);
    if (next) ++level;
    while (!next && row) {
      next = tree.GetNextSiblingItem(row);
      if (next) break;
      row = tree.GetParentItem(row);
      --level;
    }
    row = next;
  }
}

std::string PrintTree(const CQDTreeListCtrl& tree) {
  std::string out;
  ForEachRow(tree, [&](HTREEITEM row, int level) {
    out.append(static_cast<std::size_t>(std::min(level, kMostIndented)) * 2, ' ');
    if (level > kMostIndented) out += "(level " + std::to_string(level) + ") ";
    const int check = tree.WhichCheck(row);
    if (check != 0) out += check == kChecked ? "[x] " : "[ ] ";
    const std::string title = ToUtf8(tree.GetItemText(row, 0));
    out += ShownText(title, title.size());
    const CTLItem* record = tree.GetRecord(row);
    if (record->GetItemKey() != 0) out += "  id=" + std::to_string(record->GetItemKey());
    if (record->HasColor()) {
      std::array<char, 16> colour{};
      const COLORREF value = record->GetColor();
      std::snprintf(colour.data(), colour.size(), "  #%02X%02X%02X", value & 0xFFU, value >> 8U & 0xFFU,
                    value >> 16U & 0xFFU);
      out += colour.data();
    }
    out += '\n';
  });
  return out;
}

}  // namespace qd::workbench
