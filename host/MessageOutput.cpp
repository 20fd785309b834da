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

CString qdFormat(const CString& format, std::initializer_list<CString> arguments) {
  CString text;
  std::size_t from = 0;
  for (const CString& argument : arguments) {
    const std::size_t at = format.find(L"%s", from);
    if (at == CString::npos) break;
    text += format.substr(from, at - from) + argument;
    from = at + 2;
  }
  return text + format.substr(from);
}

void qdMsgOutFormatWarning(const CString& format, std::initializer_list<CString> arguments) {
  if (s_output != nullptr) s_output->Warn(qdFormat(format, arguments));
}

}  // namespace qd
