#pragma once

#include "platform/BCMenu.h"
#include "platform/CImageList.h"
#include "platform/Export.h"

namespace qd {

/// A context menu of the works tree: entries with texts, looked up by the caller, and icons of the menu icon set.
class QD_EXPORT CQDTreeMenu : public BCMenu {
 public:
  CQDTreeMenu();

  /// Appends an entry; `icon` -1 gives it no picture. Returns the append result.
  int AddMenu(unsigned id, const wchar_t* text, int icon);
  /// Likewise, checked from the start.
  int AddCheckMenu(unsigned id, const wchar_t* text, int icon);
  int AddSeparator();  ///< returns 1
  /// Appends a submenu; the object may go before this menu.
  int AddSubMenu(CQDTreeMenu& sub, const wchar_t* text);

 private:
  const CImageList& m_icons;
};

}  // namespace qd
