#include "workbench/native/Resource.h"

#include <windows.h>

namespace qd::workbench {

std::string ReadResource(const std::wstring& name, const wchar_t* type) {
  const HRSRC found = FindResourceW(nullptr, name.c_str(), type);
  const HGLOBAL loaded = found != nullptr ? LoadResource(nullptr, found) : nullptr;
  if (loaded == nullptr) return {};
  return {static_cast<const char*>(LockResource(loaded)), SizeofResource(nullptr, found)};
}

}  // namespace qd::workbench
