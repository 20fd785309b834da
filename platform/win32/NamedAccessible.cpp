#include "platform/win32/NamedAccessible.h"

#include "platform/win32/AccessibleObject.h"
#include "platform/win32/NativeWindow.h"

namespace qd {

namespace {

using Role = Accessible::Role;

/// The system's object of a window, in front of which this stands. It may outlive the window.
class NamedObject final : public AccessibleObject {
 public:
  /// Takes over one reference.
  NamedObject(HWND window, IAccessible* system) : m_window(window), m_system(system) {}

  // ---- what its owner says ------------------------------------------------------------------------------
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT which, BSTR* name) override {
    const Accessible* what = Of(which);
    if (what == nullptr) return m_system->get_accName(which, name);
    *name = SysAllocStringLen(what->name.data(), static_cast<UINT>(what->name.size()));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT which, VARIANT* role) override {
    const Accessible* what = Of(which);
    if (what == nullptr || what->role == Role::Plain) return m_system->get_accRole(which, role);
    role->vt = VT_I4;
    role->lVal = what->role == Role::Button   ? ROLE_SYSTEM_PUSHBUTTON
                 : what->role == Role::Choice ? ROLE_SYSTEM_RADIOBUTTON
                                              : ROLE_SYSTEM_STATICTEXT;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT which, VARIANT* state) override {
    const HRESULT result = m_system->get_accState(which, state);
    const Accessible* what = Of(which);
    if (what != nullptr && what->chosen && state->vt == VT_I4) state->lVal |= STATE_SYSTEM_CHECKED;
    return result;
  }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT which, BSTR* action) override {
    if (!IsButton(which)) return m_system->get_accDefaultAction(which, action);
    *action = SysAllocString(L"Press");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT which) override {
    if (!IsButton(which)) return m_system->accDoDefaultAction(which);
    PostMessageW(m_window, WM_KEYDOWN, VK_SPACE, 1);
    return S_OK;
  }

  // ---- what the system knows ----------------------------------------------------------------------------
  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override { return m_system->get_accParent(parent); }
  HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override { return m_system->get_accChildCount(count); }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT which, IDispatch** child) override {
    return m_system->get_accChild(which, child);
  }
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT which, BSTR* value) override {
    return m_system->get_accValue(which, value);
  }
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT which, BSTR* text) override {
    return m_system->get_accDescription(which, text);
  }
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT which, BSTR* text) override {
    return m_system->get_accHelp(which, text);
  }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT which, LONG* topic) override {
    return m_system->get_accHelpTopic(file, which, topic);
  }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT which, BSTR* text) override {
    return m_system->get_accKeyboardShortcut(which, text);
  }
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* focus) override { return m_system->get_accFocus(focus); }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* selected) override {
    return m_system->get_accSelection(selected);
  }
  HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT which) override {
    return m_system->accSelect(flags, which);
  }
  HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT which) override {
    return m_system->accLocation(left, top, width, height, which);
  }
  HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT from, VARIANT* to) override {
    return m_system->accNavigate(direction, from, to);
  }
  HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* hit) override {
    return m_system->accHitTest(x, y, hit);
  }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT which, BSTR value) override {
    return m_system->put_accValue(which, value);
  }

 private:
  ~NamedObject() override { m_system->Release(); }

  /// What the window itself is; null for its parts, and when it is gone.
  const Accessible* Of(const VARIANT& which) const {
    const NativeWindow* window = NativeWindow::Of(m_window);
    const bool isItself = which.vt == VT_I4 && which.lVal == CHILDID_SELF;
    return window != nullptr && isItself ? &window->GetAccessible() : nullptr;
  }
  bool IsButton(const VARIANT& which) const {
    const Accessible* what = Of(which);
    return what != nullptr && (what->role == Role::Button || what->role == Role::Choice);
  }

  HWND m_window;
  IAccessible* m_system;
};

}  // namespace

LRESULT AnswerWithName(HWND window, WPARAM w) {
  void* system = nullptr;
  if (CreateStdAccessibleObject(window, static_cast<LONG>(OBJID_CLIENT), IID_IAccessible, &system) != S_OK)
    return 0;
  return AccessibleObject::Give(new NamedObject(window, static_cast<IAccessible*>(system)), w);
}

}  // namespace qd
