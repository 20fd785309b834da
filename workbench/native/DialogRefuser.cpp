#include "workbench/native/DialogRefuser.h"

#include "host/CMSGFunction.h"

namespace qd::workbench {

void DialogRefuser::Refuse(const CString& dialogClass) {
  qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_WB_NO_DIALOG"), {dialogClass});
}

void DialogRefuser::SetSelectAssignedContact(CQDDocBase*, std::list<iterator>&) {
  qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_WB_NO_CONTACTS"));
}

}  // namespace qd::workbench
