#include "qd_wrt/core/MenuTable.h"

#include "host/CMSGFunction.h"

namespace qd {

TableMenu::TableMenu(std::span<const MenuEntry> table) {
  Build(table);
}

CQDTreeMenu& TableMenu::Build(std::span<const MenuEntry> table) {
  CQDTreeMenu& menu = *m_menus.emplace_back(std::make_unique<CQDTreeMenu>());
  for (const MenuEntry& entry : table) {
    if (entry.when != nullptr && !entry.when()) continue;
    if (entry.key.empty()) {
      menu.AddSeparator();
      continue;
    }
    CString text = CMSGFunction::GetValue(entry.key);
    if (entry.opensDialog) text += L"...";
    if (entry.submenu.empty()) {
      menu.AddMenu(entry.command, text.c_str(), entry.icon);
    } else {
      menu.AddSubMenu(Build(entry.submenu), text.c_str());
    }
  }
  return menu;
}

}  // namespace qd
