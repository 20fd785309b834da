#include "qd_wrt/properties/MsetName.h"

namespace qd {

std::optional<CString> NewMsetName(CQDDBSession& session, const tagTMset& old, const CString& text) {
  const auto isTaken = [&session](const CString& name) { return session.GetMsetPool().GetItr(name) != 0; };
  return NewName(old.name, text, isTaken, NameRefusal::Silent);
}

}  // namespace qd
