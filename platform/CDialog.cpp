#include "platform/CDialog.h"

#include "platform/Toolkit.h"

namespace qd {

CDialog::~CDialog() = default;

int CDialog::DoModal() {
  m_peer = IToolkit::Instance().MakeDialog(*this, m_layout);
  OnInitDialog();
  const int result = m_peer->Run();
  m_peer.reset();
  return result;
}

void CDialog::SetCaption(const CString& text) {
  if (m_peer != nullptr) m_peer->SetCaption(text);
}

void CDialog::SetItemText(int id, const CString& text) {
  if (m_peer != nullptr) m_peer->SetText(id, text);
}

CString CDialog::GetItemText(int id) const {
  return m_peer != nullptr ? m_peer->GetText(id) : CString();
}

void CDialog::EnableItem(int id, bool enable) {
  if (m_peer != nullptr) m_peer->Enable(id, enable);
}

void CDialog::ShowLines(int id, std::size_t count) {
  if (m_peer != nullptr) m_peer->ShowLines(id, count);
}

void CDialog::CheckDlgButton(int id, bool checked) {
  if (m_peer != nullptr) m_peer->SetChecked(id, checked);
}

bool CDialog::IsDlgButtonChecked(int id) const {
  return m_peer != nullptr && m_peer->IsChecked(id);
}

void CDialog::EndDialog(int result) {
  if (m_peer != nullptr) m_peer->End(result);
}

void CDialog::OnCommand(int id) {
  if (id == kDialogOk || id == kDialogCancel) EndDialog(id);
}

MessageAnswer AfxMessageBox(const CString& text, MessageButtons buttons) {
  return IToolkit::Instance().ShowMessage(text, buttons);
}

}  // namespace qd
