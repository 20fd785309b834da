#include "platform/win32/PopupMenu.h"

#include <algorithm>

#include "platform/text/Characters.h"
#include "platform/text/Folding.h"
#include "platform/win32/Win32Toolkit.h"

namespace qd {

namespace {

// In device-independent pixels.
constexpr int kPicture = 16;
constexpr int kGap = 4;
constexpr int kColumn = kPicture + 2 * kGap;  // for the mark or the picture
constexpr int kArrow = 20;
constexpr int kSeparator = 9;
constexpr int kLeastHeight = kPicture + 2 * 3;

/// Texts of any length stay within the screen.
std::wstring_view Shown(const BCMenu::Entry& entry) {
  constexpr std::size_t kLongest = 200;
  return std::wstring_view(entry.text).substr(0, CutLength(entry.text, kLongest));
}

}  // namespace

PopupMenu::PopupMenu(Win32Toolkit& toolkit, const BCMenu& entries, Scale scale)
    : m_toolkit(toolkit), m_scale(scale), m_menu(Make(entries)) {}

PopupMenu::~PopupMenu() {
  DestroyMenu(m_menu);
}

HMENU PopupMenu::Make(const BCMenu& entries) {
  const HMENU menu = CreatePopupMenu();
  for (const BCMenu::Entry& entry : entries.Entries()) {
    m_entries.push_back(&entry);
    MENUITEMINFOW item{};
    item.cbSize = sizeof(item);
    item.fMask = MIIM_FTYPE | MIIM_ID | MIIM_DATA | MIIM_STATE;
    item.fType = MFT_OWNERDRAW;
    item.wID = static_cast<UINT>(m_entries.size());
    item.dwItemData = m_entries.size();
    // For screen readers; what is seen is drawn.
    CString name;
    for (const wchar_t unit : Shown(entry)) name.append(unit == L'&' ? 2 : 1, unit);
    if (!name.empty()) item.fMask |= MIIM_STRING;
    item.dwTypeData = name.data();
    if (entry.kind == BCMenu::Entry::Kind::Separator) item.fState = MFS_DISABLED;
    if (entry.checked) item.fState |= MFS_CHECKED;
    if (entry.subMenu != nullptr) {
      item.fMask |= MIIM_SUBMENU;
      item.hSubMenu = Make(*entry.subMenu);  // destroyed with this menu
    }
    InsertMenuItemW(menu, static_cast<UINT>(GetMenuItemCount(menu)), TRUE, &item);
  }
  return menu;
}

const BCMenu::Entry* PopupMenu::EntryOf(ULONG_PTR data) const {
  return data >= 1 && data <= m_entries.size() ? m_entries[data - 1] : nullptr;
}

unsigned PopupMenu::Track(HWND owner, POINT at) {
  const BOOL chosen =
      TrackPopupMenuEx(m_menu, TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON, at.x, at.y, owner, nullptr);
  const BCMenu::Entry* entry = EntryOf(static_cast<ULONG_PTR>(chosen));
  return entry != nullptr && entry->kind == BCMenu::Entry::Kind::Command ? entry->id : 0;
}

LRESULT PopupMenu::OnMessage(UINT message, WPARAM w, LPARAM l) {
  switch (message) {
    case WM_MEASUREITEM:
      Measure(*reinterpret_cast<MEASUREITEMSTRUCT*>(l));
      return TRUE;
    case WM_DRAWITEM:
      Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(l));
      return TRUE;
    default:
      return FindByCharacter(static_cast<wchar_t>(LOWORD(w)), reinterpret_cast<HMENU>(l));
  }
}

void PopupMenu::Measure(MEASUREITEMSTRUCT& item) const {
  const BCMenu::Entry* entry = EntryOf(item.itemData);
  if (entry == nullptr) return;
  if (entry->kind == BCMenu::Entry::Kind::Separator) {
    item.itemHeight = static_cast<UINT>(m_scale.ToPixels(kSeparator));
    return;
  }
  const MemoryDc dc;
  const Selected font(dc.Get(), m_toolkit.GetFont({}, m_scale));
  SIZE size{};
  GetTextExtentPoint32W(dc.Get(), Shown(*entry).data(), static_cast<int>(Shown(*entry).size()), &size);
  item.itemWidth = static_cast<UINT>(size.cx + m_scale.ToPixels(kColumn + kArrow));
  item.itemHeight =
      static_cast<UINT>(std::max<LONG>(size.cy + 2 * m_scale.ToPixels(kGap), m_scale.ToPixels(kLeastHeight)));
}

void PopupMenu::Draw(const DRAWITEMSTRUCT& item) const {
  const BCMenu::Entry* entry = EntryOf(item.itemData);
  if (entry == nullptr) return;
  RECT area = item.rcItem;
  const bool separator = entry->kind == BCMenu::Entry::Kind::Separator;
  const bool selected = (item.itemState & ODS_SELECTED) != 0 && !separator;
  FillRect(item.hDC, &area, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_MENU));
  if (separator) {
    area.top = (area.top + area.bottom) / 2;
    DrawEdge(item.hDC, &area, EDGE_ETCHED, BF_TOP);
    return;
  }
  const int height = area.bottom - area.top;
  const int picture = m_scale.ToPixels(kPicture);
  const int left = area.left + m_scale.ToPixels(kGap);
  const int top = area.top + (height - picture) / 2;
  if (entry->checked) {
    RECT mark{left, top, left + picture, top + picture};
    // The system draws marks in black and white only: through a mask they take the colour of the text.
    const MemoryDc dc;
    const GdiObject<HBITMAP> bits(CreateBitmap(picture, picture, 1, 1, nullptr));
    const Selected bitmap(dc.Get(), bits.Get());
    RECT whole{0, 0, picture, picture};
    DrawFrameControl(dc.Get(), &whole, DFC_MENU, DFCS_MENUCHECK);
    SetTextColor(item.hDC, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_MENUTEXT));
    SetBkColor(item.hDC, GetSysColor(selected ? COLOR_HIGHLIGHT : COLOR_MENU));
    BitBlt(item.hDC, mark.left, mark.top, picture, picture, dc.Get(), 0, 0, SRCCOPY);
  } else if (entry->picture != nullptr) {
    m_toolkit.GetImages().Draw(item.hDC, {left, top}, *entry->picture, m_scale);
  }
  area.left += m_scale.ToPixels(kColumn);
  const Selected font(item.hDC, m_toolkit.GetFont({}, m_scale));
  SetBkMode(item.hDC, TRANSPARENT);
  SetTextColor(item.hDC, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_MENUTEXT));
  DrawTextW(item.hDC, Shown(*entry).data(), static_cast<int>(Shown(*entry).size()), &area,
            DT_LEFT | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
}

/// Typing chooses the entry that begins so; among several it goes from one to the next.
LRESULT PopupMenu::FindByCharacter(wchar_t character, HMENU menu) const {
  const int count = GetMenuItemCount(menu);
  int matches = 0;
  int first = -1;
  int next = -1;
  bool passed = false;  // the entry that is selected now
  for (int index = 0; index < count; ++index) {
    MENUITEMINFOW item{};
    item.cbSize = sizeof(item);
    item.fMask = MIIM_DATA | MIIM_STATE;
    GetMenuItemInfoW(menu, static_cast<UINT>(index), TRUE, &item);
    const BCMenu::Entry* entry = EntryOf(item.dwItemData);
    if (entry == nullptr || entry->text.empty()) continue;
    if (FoldCase(static_cast<char32_t>(entry->text.front())) == FoldCase(static_cast<char32_t>(character))) {
      ++matches;
      if (first < 0) first = index;
      if (next < 0 && passed) next = index;
    }
    passed = passed || (item.fState & MFS_HILITE) != 0;
  }
  if (matches == 0) return MAKELRESULT(0, MNC_IGNORE);
  return matches == 1 ? MAKELRESULT(first, MNC_EXECUTE) : MAKELRESULT(next >= 0 ? next : first, MNC_SELECT);
}

}  // namespace qd
