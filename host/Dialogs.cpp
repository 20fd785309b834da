#include "host/Dialogs.h"

namespace qd {

namespace {
IGeomDialog* s_dialogs = nullptr;
unsigned s_command = 0;
}  // namespace

IGeomDialog::IGeomDialog() {
  s_dialogs = this;
}

IGeomDialog::~IGeomDialog() {
  if (s_dialogs == this) s_dialogs = nullptr;
}

void IGeomDialog::DoModeless(CQDDocBase* doc, const CString& dialogClass, const void* first, const void* second) {
  if (s_dialogs != nullptr) s_dialogs->Open(doc, dialogClass, first, second);
}

void IQueryMenuID2Idx::SetMenuID(unsigned command) {
  s_command = command;
}

unsigned IQueryMenuID2Idx::GetMenuID() {
  return s_command;
}

}  // namespace qd
