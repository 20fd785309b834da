#include "qd_wrt/mesh/CQDMsetOperation.h"

#include <array>

#include "host/CMSGFunction.h"

namespace qd {

namespace {

using Kind = DialogControl::Kind;

enum ControlId : int { kMergeButton = 10413, kMoveButton = 10414, kGroup = 10415 };

constexpr std::array<DialogControl, 5> kControls{{{kGroup, Kind::GroupBox, L" Operation ", 6, 5, 176, 25},
                                                  {kMergeButton, Kind::RadioButton, L"Merge", 43, 15, 54, 10},
                                                  {kMoveButton, Kind::RadioButton, L"Move", 120, 15, 54, 10},
                                                  {kDialogOk, Kind::PushButton, L"OK", 100, 35, 40, 13},
                                                  {kDialogCancel, Kind::PushButton, L"Cancel", 143, 35, 40, 13}}};
constexpr DialogTemplate kTemplate{10411, L"Mesh Set Operation", 189, 54, kControls};

}  // namespace

CQDMsetOperation::CQDMsetOperation(CQDDocBase* doc)
    : CQDDialog(kTemplate, doc), m_group{kMergeButton, kMoveButton} {}

void CQDMsetOperation::OnInitDialog() {
  CQDDialog::OnInitDialog();
  SetCaption(CMSGFunction::GetValue("IDS_QD_WRT_MESHSET_OPERATION"));
  SetItemText(kGroup, CMSGFunction::GetValue("IDS_QD_WRT_MESHSET_OPERATION_FR"));
  SetItemText(kMergeButton, CMSGFunction::GetValue("IDS_QD_WRT_MESH_MERGE"));
  SetItemText(kMoveButton, CMSGFunction::GetValue("IDS_QD_WRT_MESH_MOVE"));
  SetItemText(kDialogOk, CMSGFunction::GetValue("IDS_QD_BASE_OK"));
  SetItemText(kDialogCancel, CMSGFunction::GetValue("IDS_QD_BASE_CANCEL"));
  CDlgUtil::CtrlRadioSetCheck(*this, m_group, 0);
}

void CQDMsetOperation::OnCommand(int id) {
  if (id == kMergeButton) m_operation = kMerge;
  if (id == kMoveButton) m_operation = kMove;
  CQDDialog::OnCommand(id);
}

}  // namespace qd
