#pragma once

#include <functional>
#include <string>

#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "workbench/text/Utf8.h"

namespace qd::test {

/// What a screen reader must be told of a tree, taken from the rows: a line each, with the level as blanks, the
/// name and the states. `readsCheckable`: whether the system has a word for a row with a box.
inline std::string ReaderText(const CQDTreeListCtrl& tree, bool readsCheckable) {
  std::string text;
  const CRect client = tree.GetClientRect();
  const std::function<void(HTREEITEM, int, bool)> read = [&](HTREEITEM parent, int level, bool shown) {
    for (HTREEITEM row = tree.GetChildItem(parent); row; row = tree.GetNextSiblingItem(row)) {
      text +=
          std::string(static_cast<std::size_t>(level), ' ') + workbench::ToUtf8(tree.GetItemText(row, 0)) + ":";
      if (tree.IsSelected(row)) text += " selected";
      if (tree.HasFocus() && tree.GetFocusedItem() == row) text += " focused";
      const bool branch = tree.ItemHasChildren(row);
      if (branch) text += tree.IsExpanded(row) ? " expanded" : " collapsed";
      if (readsCheckable && tree.WhichCheck(row) != 0) text += " checkable";
      if (tree.WhichCheck(row) == kChecked) text += " checked";
      CRect place;
      if (!shown) text += " invisible";
      const bool onScreen =
          shown && tree.GetItemRect(row, place, false) && place.bottom > 0 && place.top < client.bottom;
      if (!onScreen) text += " offscreen";
      text += "\n";
      if (branch) read(row, level + 1, shown && tree.IsExpanded(row));
    }
  };
  read({}, 0, true);
  return text;
}

}  // namespace qd::test
