#include "workbench/batch/Windowless.h"

#include "host/CMSGFunction.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

CString Sentence(std::string_view key, std::initializer_list<std::string> arguments) {
  std::vector<CString> texts;
  for (const std::string& argument : arguments) texts.push_back(FromUtf8(argument));
  return qdFormat(CMSGFunction::GetValue(key), texts);
}

}  // namespace qd::workbench
