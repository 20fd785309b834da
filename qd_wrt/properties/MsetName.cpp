#include "qd_wrt/properties/MsetName.h"

namespace qd {

std::optional<CString> FreeMsetName(CQDDBSession& session, iterator mset, const CString& text) {
  const CString name = CutName(text);
  if (name.empty()) return std::nullopt;
  for (const CString* wanted : {&text, &name}) {
    const iterator known = session.GetMsetPool().GetItr(*wanted);
    if (known != 0 && known != mset) return std::nullopt;
  }
  return name;
}

}  // namespace qd
