#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/Export.h"
#include "qd_wrt/core/CQDTreeMenu.h"

namespace qd {

/// One line of a menu table. An entry without text is a separator.
struct MenuEntry {
  unsigned command = 0;
  std::string_view key{};  ///< message key of the text
  int icon = -1;
  bool opensDialog = false;              ///< adds "..." to the text
  bool (*when)() = nullptr;              ///< left out unless this is null or answers true
  std::span<const MenuEntry> submenu{};  ///< makes it a submenu
};

/// A menu built from a table, with its submenus.
class QD_EXPORT TableMenu {
 public:
  explicit TableMenu(std::span<const MenuEntry> table);
  CQDTreeMenu& Menu() { return *m_menus.front(); }

 private:
  CQDTreeMenu& Build(std::span<const MenuEntry> table);

  std::vector<std::unique_ptr<CQDTreeMenu>> m_menus;
};

}  // namespace qd
