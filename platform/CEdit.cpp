#include "platform/CEdit.h"

namespace qd {

namespace {

ITextBox* BoxOf(const CWnd& window) {
  return window.GetPeer() != nullptr ? window.GetPeer()->TextBox() : nullptr;
}

}  // namespace

void CEdit::SetText(const CString& text) {
  if (ITextBox* box = BoxOf(*this)) box->SetText(text);
}

CString CEdit::GetText() const {
  const ITextBox* box = BoxOf(*this);
  return box != nullptr ? box->GetText() : CString();
}

void CEdit::SelectAll() {
  if (ITextBox* box = BoxOf(*this)) box->SelectAll();
}

void CEdit::HandleKey() {
  if (ITextBox* box = BoxOf(*this)) box->HandleKey();
}

void CComboBox::AddString(const CString& text) {
  if (ITextBox* box = BoxOf(*this)) box->AddChoice(text);
}

void CComboBox::SelectString(const CString& text) {
  if (ITextBox* box = BoxOf(*this)) box->SetText(text);
}

CString CComboBox::GetText() const {
  const ITextBox* box = BoxOf(*this);
  return box != nullptr ? box->GetText() : CString();
}

void CComboBox::HandleKey() {
  if (ITextBox* box = BoxOf(*this)) box->HandleKey();
}

}  // namespace qd
