#include "workbench/native/DialogRefuser.h"

#include "host/CMSGFunction.h"
#include "workbench/native/PickColour.h"
#include "workbench/session/RecordColour.h"

namespace qd::workbench {

void DialogRefuser::Refuse(const CString& dialogClass) {
  qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_WB_NO_DIALOG"), {dialogClass});
}

void DialogRefuser::Open(CQDDocBase*, const CString& dialogClass, const void* first, const void*) {
  if (dialogClass != L"CQDCmdColorDlg") return Refuse(dialogClass);
  const iterator record = *static_cast<const iterator*>(first);
  const std::optional<qd::COLORREF> colour = ColourOf(m_doc.GetDatabase(), record);
  if (!colour.has_value()) return;
  qd::COLORREF chosen = *colour;
  if (PickColour(GetActiveWindow(), chosen)) static_cast<void>(Recolour(m_doc.GetDatabase(), record, chosen));
}

void DialogRefuser::SetSelectAssignedContact(CQDDocBase*, std::list<iterator>&) {
  qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_WB_NO_CONTACTS"));
}

}  // namespace qd::workbench
