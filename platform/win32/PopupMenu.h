#pragma once

#include <vector>

#include "platform/BCMenu.h"
#include "platform/win32/Handles.h"
#include "platform/win32/Scale.h"

namespace qd {

class Win32Toolkit;

/// A pop-up menu while it is open. Its entries are drawn here, with their pictures.
class PopupMenu {
 public:
  PopupMenu(Win32Toolkit& toolkit, const BCMenu& entries, Scale scale);
  ~PopupMenu();
  PopupMenu(const PopupMenu&) = delete;
  PopupMenu& operator=(const PopupMenu&) = delete;

  /// Returns the chosen command, 0 for none. `at` is a place on the screen, in pixels.
  unsigned Track(HWND owner, POINT at);
  /// What the system asks the owner about entries.
  LRESULT OnMessage(UINT message, WPARAM w, LPARAM l);

 private:
  HMENU Make(const BCMenu& entries);
  void Measure(MEASUREITEMSTRUCT& item) const;
  void Draw(const DRAWITEMSTRUCT& item) const;
  LRESULT FindByCharacter(wchar_t character, HMENU menu) const;
  const BCMenu::Entry* EntryOf(ULONG_PTR data) const;

  Win32Toolkit& m_toolkit;
  Scale m_scale;
  std::vector<const BCMenu::Entry*> m_entries;  // an entry's data is its place here plus one
  HMENU m_menu;
};

}  // namespace qd
