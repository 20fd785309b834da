#pragma once

#include <initializer_list>

#include "host/CMSGFunction.h"
#include "host/MessageOutput.h"

namespace qd::workbench {

/// The text of a key in the language of now, with its arguments.
inline CString Text(const char* key, std::initializer_list<CString> arguments = {}) {
  return qdFormat(CMSGFunction::GetValue(key), arguments);
}

/// A menu's text without the mark of its letter.
inline CString WithoutMark(CString text) {
  std::erase(text, L'&');
  return text;
}

}  // namespace qd::workbench
