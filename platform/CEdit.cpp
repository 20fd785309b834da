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

std::size_t CEdit::GetCaret() const {
  const ITextBox* box = BoxOf(*this);
  return box != nullptr ? box->GetCaret() : 0;
}

void CEdit::Select(std::size_t from, std::size_t to) {
  if (ITextBox* box = BoxOf(*this)) box->Select(from, to);
}

void CEdit::ReplaceSelection(const CString& text) {
  if (ITextBox* box = BoxOf(*this)) box->ReplaceSelection(text);
}

void CEdit::SetHint(const CString& text) {
  if (ITextBox* box = BoxOf(*this)) box->SetHint(text);
}

void CEdit::SetColours(const std::optional<ITextBox::Colours>& colours) {
  if (ITextBox* box = BoxOf(*this)) box->SetColours(colours);
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
