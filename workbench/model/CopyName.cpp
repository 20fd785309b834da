#include "workbench/model/CopyName.h"

#include <string>

namespace qd::workbench {

CString CopyName(const CString& text, std::size_t first, const std::function<bool(const CString&)>& isTaken) {
  constexpr std::size_t kRoomForNumber = 11;
  const CString stem = text.substr(0, CutLength(text, kMaxNameLength - kRoomForNumber)) + L" ";
  std::size_t number = first;
  while (isTaken(stem + std::to_wstring(number))) ++number;
  return stem + std::to_wstring(number);
}

}  // namespace qd::workbench
