#include "workbench/native/Commands.h"

#include <array>
#include <vector>

#include "host/CMSGFunction.h"
#include "workbench/session/VariantNames.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// An entry of the menu bar. One without command begins a menu, one without key divides.
struct Entry {
  const char* key = nullptr;
  unsigned command = 0;
  BYTE modifiers = 0;
  WORD letter = 0;
  const wchar_t* keys = L"";
};

constexpr std::array kMenu{
    Entry{"IDS_WB_MENU_FILE"},
    Entry{"IDS_WB_IMPORT", kImport, FCONTROL, 'O', L"Ctrl+O"},
    Entry{"IDS_WB_OPEN_EXAMPLE", kExample},
    Entry{},
    Entry{"IDS_WB_EXIT", kExit, FCONTROL, 'Q', L"Ctrl+Q"},
    Entry{"IDS_WB_MENU_EDIT"},
    Entry{"IDS_WB_UNDO", kUndo, FCONTROL, 'Z', L"Ctrl+Z"},
    Entry{"IDS_WB_REDO", kRedo, FCONTROL | FSHIFT, 'Z', L"Ctrl+Shift+Z"},
    Entry{},
    Entry{"IDS_WB_DELETE", kDelete, 0, VK_DELETE, L"Del"},
    Entry{"IDS_WB_MENU_VIEW"},
    Entry{"IDS_QD_WRT_SHOW_ALL", kShowAll},
    Entry{"IDS_QD_WRT_HIDE_ALL", kHideAll},
    Entry{"IDS_WB_LEAVE_ISOLATION", kLeaveIsolation},
    Entry{},
    Entry{"IDS_WB_MENU_LANGUAGE", kFirstLanguage},
    Entry{"IDS_WB_MENU_VARIANT", kFirstVariant},
};

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
  HMENU menu = nullptr;
  for (const Entry& entry : kMenu) {
    const CString text = entry.key != nullptr ? CMSGFunction::GetValue(entry.key) : CString();
    if (entry.key == nullptr) {
      AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    } else if (entry.command == 0) {
      menu = CreatePopupMenu();
      AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(menu), text.c_str());
    } else if (entry.command == kFirstLanguage || entry.command == kFirstVariant) {
      const HMENU choices = entry.command == kFirstLanguage ? MakeLanguages(messages) : MakeVariants();
      AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(choices), text.c_str());
    } else {
      const CString keys = entry.letter != 0 ? CString(L"\t") + entry.keys : CString();
      AppendMenuW(menu, MF_STRING, entry.command, (text + keys).c_str());
    }
  }
  return bar;
}

HACCEL MakeAccelerators() {
  std::vector<ACCEL> keys;
  for (const Entry& entry : kMenu) {
    if (entry.letter == 0) continue;
    keys.push_back(
        {static_cast<BYTE>(FVIRTKEY | entry.modifiers), entry.letter, static_cast<WORD>(entry.command)});
  }
  return CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size()));
}

}  // namespace qd::workbench
