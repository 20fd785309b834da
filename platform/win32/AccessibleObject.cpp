#include "platform/win32/AccessibleObject.h"

namespace qd {

HRESULT AccessibleObject::QueryInterface(REFIID id, void** object) {
  const bool known =
      IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) || IsEqualIID(id, IID_IAccessible);
  *object = known ? static_cast<IAccessible*>(this) : nullptr;
  if (known) AddRef();
  return known ? S_OK : E_NOINTERFACE;
}

ULONG AccessibleObject::Release() {
  const ULONG left = --m_references;
  if (left == 0) delete this;
  return left;
}

HRESULT AccessibleObject::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

LRESULT AccessibleObject::Give(AccessibleObject* object, WPARAM w) {
  // Readers hold on to objects as long as they like, so their code has to stay.
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                     reinterpret_cast<LPCWSTR>(&AccessibleObject::Give), &module);
  const LRESULT answer = LresultFromObject(IID_IAccessible, w, object);
  object->Release();
  return answer;
}

}  // namespace qd
