#include "qd_wrt/core/MenuTable.h"

#include <utility>

#include "host/CMSGFunction.h"

namespace qd {

std::vector<MenuEntry> JoinMenus(std::initializer_list<std::span<const MenuEntry>> tables) {
  std::vector<MenuEntry> joined;
  for (const auto& table : tables) joined.insert(joined.end(), table.begin(), table.end());
  return joined;
}

TableMenu::TableMenu(std::span<const MenuEntry> table, MenuFill fill) : m_fill(std::move(fill)) {
  Build(table);
}

CQDTreeMenu& TableMenu::Build(std::span<const MenuEntry> table) {
  CQDTreeMenu& menu = *m_menus.emplace_back(std::make_unique<CQDTreeMenu>());
  for (const MenuEntry& entry : table) {
    if (entry.when != nullptr && !entry.when()) continue;
    if (entry.list) {
      if (m_fill.list) m_fill.list(menu);
      continue;
    }
    if (entry.key.empty()) {
      menu.AddSeparator();
      continue;
    }
    CString text = entry.literal ? CString(entry.key.begin(), entry.key.end()) : CMSGFunction::GetValue(entry.key);
    text.append(entry.suffix.begin(), entry.suffix.end());
    if (entry.opensDialog) text += L"...";
    if (!entry.submenu.empty()) {
      menu.AddSubMenu(Build(entry.submenu), text.c_str());
    } else if (entry.checkable && m_fill.isChecked && m_fill.isChecked(entry.command)) {
      menu.AddCheckMenu(entry.command, text.c_str(), entry.icon);
    } else {
      menu.AddMenu(entry.command, text.c_str(), entry.icon);
    }
  }
  return menu;
}

}  // namespace qd
