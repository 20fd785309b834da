#include "host/CMSGFunction.h"

#include <algorithm>

#include "host/BuiltInTexts.h"

namespace qd {

namespace {
const CMSGFunction::ITable* theTable = nullptr;
}

CMSGFunction::ITable::ITable() {
  theTable = this;
}

CMSGFunction::ITable::~ITable() {
  if (theTable == this) theTable = nullptr;
}

CString CMSGFunction::GetValue(std::string_view key) {
  CString text;
  if (theTable != nullptr && theTable->Find(key, text)) return text;
  const std::span<const BuiltInText> texts = BuiltInTexts();
  const auto found = std::ranges::lower_bound(texts, key, {}, &BuiltInText::key);
  if (found != texts.end() && found->key == key) return CString(found->text);
  return CString(key.begin(), key.end());
}

}  // namespace qd
