#include "platform/BCMenu.h"

#include <utility>

#include "platform/Toolkit.h"

namespace qd {

int BCMenu::Append(Entry entry) {
  m_entries->push_back(std::move(entry));
  return 1;
}

int BCMenu::AppendSubMenu(BCMenu& subMenu, CString text) {
  Entry entry;
  entry.kind = Entry::Kind::SubMenu;
  entry.text = std::move(text);
  entry.subMenu = std::make_shared<BCMenu>(subMenu);
  return Append(std::move(entry));
}

BCMenu::Entry* BCMenu::Find(unsigned id) {
  for (Entry& entry : *m_entries) {
    if (entry.kind == Entry::Kind::Command && entry.id == id) return &entry;
    if (entry.subMenu == nullptr) continue;
    if (Entry* found = entry.subMenu->Find(id)) return found;
  }
  return nullptr;
}

int BCMenu::CheckMenu(unsigned id, int check) {
  Entry* entry = Find(id);
  if (entry == nullptr) return 0;
  entry->checked = check != 0;
  return 1;
}

unsigned BCMenu::Track(CPoint screen, CWnd& owner) const {
  return IToolkit::Instance().TrackMenu(owner, *this, screen);
}

}  // namespace qd
