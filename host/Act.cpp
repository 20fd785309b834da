#include "host/Act.h"

#include "host/CMSGFunction.h"
#include "host/CTransaction.h"
#include "host/MessageOutput.h"

namespace qd {

int RunAct(CQDDBSession* session, std::string_view titleKey, const std::function<int()>& writes, int redraw) {
  CTransaction transaction(session);
  if (transaction.Begin(CMSGFunction::GetValue(titleKey)) == 0 || writes() == 0) return 0;
  return transaction.Commit(redraw);
}

std::optional<CString> NewName(const CString& old, const CString& wanted,
                               const std::function<bool(const CString&)>& isTaken, NameRefusal refusal) {
  if (wanted == old) return std::nullopt;
  const CString name = CutName(wanted);
  const bool told = refusal == NameRefusal::Told;
  if (isTaken && (isTaken(wanted) || (name != old && isTaken(name)))) {
    if (told) qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_DB_EXIST_NEW_DATA_NAME"), {wanted});
    return std::nullopt;
  }
  if (name.empty()) {
    if (told) qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_DB_NAME_EMPTY"));
    return std::nullopt;
  }
  return name != old ? std::optional(name) : std::nullopt;
}

}  // namespace qd
