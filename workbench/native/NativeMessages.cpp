#include "workbench/native/NativeMessages.h"

#include <windows.h>

#include <algorithm>

#include "workbench/native/Resource.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

constexpr const wchar_t* kTables = L"MESSAGES";

MessageTexts Read(const std::string& code) {
  return ParseMessages(ReadResource(FromUtf8(code), kTables)).texts;
}

BOOL CALLBACK NoteName(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR names) {
  std::string code = ToUtf8(name);
  std::transform(code.begin(), code.end(), code.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
  });
  reinterpret_cast<std::vector<std::string>*>(names)->push_back(code);
  return TRUE;
}

}  // namespace

NativeMessages::NativeMessages() : m_english(Read("en")) {}

std::vector<std::string> NativeMessages::Languages() {
  std::vector<std::string> codes;
  EnumResourceNamesW(nullptr, kTables, NoteName, reinterpret_cast<LONG_PTR>(&codes));
  std::sort(codes.begin(), codes.end());
  return codes;
}

bool NativeMessages::SetLanguage(const std::string& code) {
  MessageTexts texts = Read(code);
  if (texts.empty()) return false;
  m_texts = std::move(texts);
  m_language = code;
  return true;
}

bool NativeMessages::Find(std::string_view key, CString& text) const {
  return LookUpText(key, {&m_texts, &m_english}, text);
}

}  // namespace qd::workbench
