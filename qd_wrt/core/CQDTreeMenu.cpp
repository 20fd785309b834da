#include "qd_wrt/core/CQDTreeMenu.h"

#include <utility>

#include "qd_wrt/core/CQDTreeIcon.h"

namespace qd {

CQDTreeMenu::CQDTreeMenu() : m_icons(CQDTreeIcon::Instance().GetMenuImageList()) {}

int CQDTreeMenu::AddMenu(unsigned id, const wchar_t* text, int icon) {
  Entry entry;
  entry.id = id;
  entry.text = text;
  if (icon != -1) entry.picture = m_icons.GetPicture(icon);
  return Append(std::move(entry));
}

int CQDTreeMenu::AddCheckMenu(unsigned id, const wchar_t* text, int icon) {
  const int result = AddMenu(id, text, icon);
  CheckMenu(id, 1);
  return result;
}

int CQDTreeMenu::AddSeparator() {
  Entry entry;
  entry.kind = Entry::Kind::Separator;
  return Append(std::move(entry));
}

int CQDTreeMenu::AddSubMenu(CQDTreeMenu& sub, const wchar_t* text) {
  return AppendSubMenu(sub, text);
}

}  // namespace qd
