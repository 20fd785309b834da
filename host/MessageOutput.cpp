#include "host/MessageOutput.h"

namespace qd {

namespace {
IMessageOutput* s_output = nullptr;
}

IMessageOutput::IMessageOutput() {
  s_output = this;
}

IMessageOutput::~IMessageOutput() {
  if (s_output == this) s_output = nullptr;
}

CString qdFormat(const CString& format, std::span<const CString> arguments) {
  CString text;
  std::size_t next = 0;
  std::size_t from = 0;
  for (std::size_t at = format.find(L'%'); at != CString::npos && at + 1 < format.size();
       at = format.find(L'%', at)) {
    const wchar_t kind = format[at + 1];
    const bool numbered = kind >= L'1' && kind <= L'9';
    const std::size_t number = numbered ? static_cast<std::size_t>(kind - L'1') : next;
    if ((!numbered && kind != L's') || number >= arguments.size()) {
      ++at;
      continue;
    }
    text.append(format, from, at - from);
    text += arguments[number];
    next += numbered ? 0 : 1;
    at += 2;
    from = at;
  }
  return text + format.substr(from);
}

void qdMsgOutFormatWarning(const CString& format, std::initializer_list<CString> arguments) {
  if (s_output != nullptr) s_output->Warn(qdFormat(format, arguments));
}

}  // namespace qd
