#pragma once

#include "platform/win32/System.h"

// After what they build on.
#include <oleauto.h>
//
#include <oleacc.h>

#include <atomic>

// Objects of this kind delete themselves, so their interfaces have no destructors.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace qd {

/// What all objects are that screen readers get from us: who holds one is counted, the last one who lets go of it
/// deletes it, and scripts have nothing to do with it. The maker holds the first reference.
class AccessibleObject : public IAccessible {
 public:
  AccessibleObject(const AccessibleObject&) = delete;
  AccessibleObject& operator=(const AccessibleObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }
  /// What things are called is their owners' business.
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }

  /// Answers a reader's message (WM_GETOBJECT, with its `w`) with a new object, which is the reader's from now on.
  static LRESULT Give(AccessibleObject* object, WPARAM w);

 protected:
  AccessibleObject() = default;
  virtual ~AccessibleObject() = default;

 private:
  std::atomic<ULONG> m_references = 1;
};

}  // namespace qd
