#pragma once

#include <array>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/Export.h"
#include "qd_wrt/core/CQDTreeMenu.h"

namespace qd {

/// One line of a menu table. An entry without text is a separator, or the place of a list.
struct MenuEntry {
  unsigned command = 0;                  ///< above 0 for an entry that can be chosen
  std::string_view key{};                ///< message key of the text
  int icon = -1;                         ///< of the menu images, -1 for none
  bool opensDialog = false;              ///< adds "..." to the text
  bool (*when)() = nullptr;              ///< left out unless this is null or answers true
  std::span<const MenuEntry> submenu{};  ///< makes it a submenu
  bool literal = false;                  ///< the key is the text itself
  bool list = false;                     ///< what the branch lists at the time stands here
  bool checkable = false;                ///< may have a check mark
  std::string_view suffix{};             ///< behind the text
};

/// The entries of a transparency submenu: transparent, nine steps, opaque, with commands from `transparent` on.
constexpr std::array<MenuEntry, 11> TransparencyEntries(unsigned transparent) {
  constexpr std::array<std::string_view, 9> kSteps{"1", "2", "3", "4", "5", "6", "7", "8", "9"};
  std::array<MenuEntry, 11> entries{};
  entries.front() = {.command = transparent, .key = "IDS_QD_WRT_PART_TRANSPARENT"};
  for (unsigned step = 1; step <= kSteps.size(); ++step) {
    entries[step] = {.command = transparent + step, .key = kSteps[step - 1], .literal = true};
  }
  entries.back() = {.command = transparent + 10, .key = "IDS_QD_WRT_PART_OPAQUE"};
  return entries;
}

/// Tables one after another.
QD_EXPORT std::vector<MenuEntry> JoinMenus(std::initializer_list<std::span<const MenuEntry>> tables);

/// What a table leaves open.
struct MenuFill {
  std::function<void(CQDTreeMenu&)> list{};           ///< fills the place of a list; without it that stays empty
  std::function<bool(unsigned command)> isChecked{};  ///< asked for checkable entries
};

/// A menu built from a table, with its submenus.
class QD_EXPORT TableMenu {
 public:
  /// `fill` adds what no table can know; both are used here only.
  explicit TableMenu(std::span<const MenuEntry> table, MenuFill fill = {});
  CQDTreeMenu& Menu() { return *m_menus.front(); }  ///< the menu, which goes with this

 private:
  CQDTreeMenu& Build(std::span<const MenuEntry> table);

  MenuFill m_fill;
  std::vector<std::unique_ptr<CQDTreeMenu>> m_menus;
};

}  // namespace qd
