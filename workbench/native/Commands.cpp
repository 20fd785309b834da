#include "workbench/native/Commands.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <vector>

#include "host/CMSGFunction.h"
#include "host/Types.h"
#include "platform/Message.h"
#include "platform/text/Characters.h"
#include "workbench/native/Texts.h"
#include "workbench/session/VariantNames.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

bool IsHere(const WindowCommand& command) {
  return command.windows != WindowCommand::Windows::Desktop;
}

/// The text of a menu's entry, with the keys that it shows.
CString LabelOf(const WindowCommand& command) {
  const CommandKeys& keys = command.keys.front();
  CString text = CMSGFunction::GetValue(command.key);
  if (keys.letter == 0) return text;
  text += L'\t';
  if (keys.control) text += L"Ctrl+";
  if (keys.shift) text += L"Shift+";
  if (keys.letter == kKeyF2) return text + L"F2";
  return keys.letter == kKeyDelete ? text + L"Del" : text + static_cast<wchar_t>(keys.letter);
}

CString NameOfLanguage(const std::string& code) {
  std::array<wchar_t, 80> name{};
  const int length = GetLocaleInfoEx(FromUtf8(code).c_str(), LOCALE_SNATIVELANGUAGENAME, name.data(),
                                     static_cast<int>(name.size()));
  return length > 1 ? CString(name.data()) : FromUtf8(code);
}

void AppendChoice(HMENU menu, unsigned command, const CString& text, bool checked) {
  AppendMenuW(menu, MF_STRING | (checked ? MF_CHECKED : 0U), command, text.c_str());
}

HMENU MakeLanguages(const NativeMessages& messages) {
  const HMENU menu = CreatePopupMenu();
  unsigned command = kFirstLanguage;
  for (const std::string& code : NativeMessages::Languages()) {
    AppendChoice(menu, command++, NameOfLanguage(code), code == messages.Language());
  }
  return menu;
}

HMENU MakeVariants() {
  const HMENU menu = CreatePopupMenu();
  unsigned command = kFirstVariant;
  for (const VariantName& known : kVariants) {
    AppendChoice(menu, command++, CMSGFunction::GetValue(known.key), known.variant == GetProductVariant());
  }
  return menu;
}

}  // namespace

std::optional<ProductVariant> VariantOf(unsigned command) {
  const std::size_t place = command - kFirstVariant;
  if (command < kFirstVariant || place >= kVariants.size()) return std::nullopt;
  return kVariants[place].variant;
}

HMENU MakeMenuBar(const NativeMessages& messages) {
  const HMENU bar = CreateMenu();
  std::map<std::string_view, HMENU> menus;
  for (const WindowCommand& command : WindowCommands()) {
    if (!IsHere(command)) continue;
    HMENU& menu = menus[command.menu];
    if (menu == nullptr) {
      menu = CreatePopupMenu();
      AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(menu), CMSGFunction::GetValue(command.menu).c_str());
    }
    if (command.number == 0) {
      AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    } else if (command.number == kLanguageMenu || command.number == kVariantMenu) {
      const HMENU choices = command.number == kLanguageMenu ? MakeLanguages(messages) : MakeVariants();
      AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(choices), LabelOf(command).c_str());
    } else {
      AppendMenuW(menu, MF_STRING, command.number, LabelOf(command).c_str());
    }
  }
  return bar;
}

void RefreshMenuBar(HMENU bar, const Session& session) {
  constexpr std::size_t kLongestDetail = 60;
  for (const WindowCommand& command : WindowCommands()) {
    const bool choices = command.number == kLanguageMenu || command.number == kVariantMenu;
    if (!IsHere(command) || command.number == 0 || choices) continue;
    CString label = LabelOf(command);
    if (command.detail != nullptr) {
      CString detail = command.detail(session);
      detail = WithoutMark(detail.substr(0, CutLength(detail, kLongestDetail)));
      if (!detail.empty()) label.insert(std::min(label.find(L'\t'), label.size()), L" – " + detail);
    }
    MENUITEMINFOW item{};
    item.cbSize = sizeof(item);
    item.fMask = MIIM_STRING | MIIM_STATE;
    item.fState = IsPossible(command, session) ? MFS_ENABLED : MFS_GRAYED;
    item.dwTypeData = label.data();
    SetMenuItemInfoW(bar, command.number, FALSE, &item);
  }
}

HACCEL MakeAccelerators() {
  std::vector<ACCEL> keys;
  for (const WindowCommand& command : WindowCommands()) {
    if (!IsHere(command)) continue;
    for (const CommandKeys& one : command.keys) {
      if (one.letter == 0) continue;
      const int held = FVIRTKEY | (one.control ? FCONTROL : 0) | (one.shift ? FSHIFT : 0);
      keys.push_back({static_cast<BYTE>(held), static_cast<WORD>(one.letter), static_cast<WORD>(command.number)});
    }
  }
  return CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size()));
}

}  // namespace qd::workbench
