#include "platform/win32/RowsAccessible.h"

#include <array>
#include <string>

#include "platform/AccessibleRows.h"
#include "platform/CWnd.h"
#include "platform/win32/AccessibleObject.h"
#include "platform/win32/NativeWindow.h"

namespace qd {

namespace {

/// Events name rows by numbers: the rows that had the focus last have negative ones, in turn.
class AnnouncedRows {
 public:
  LONG Add(HTREEITEM row) {
    m_last = (m_last + 1) % m_rows.size();
    m_rows[m_last] = row;
    return -1 - static_cast<LONG>(m_last);
  }
  HTREEITEM RowOf(LONG number) const {
    const auto place = static_cast<std::size_t>(-1LL - number);
    return place < m_rows.size() ? m_rows[place] : HTREEITEM{};
  }
  HTREEITEM Last() const { return m_rows[m_last]; }

 private:
  std::array<HTREEITEM, 64> m_rows{};
  std::size_t m_last = 0;
};
AnnouncedRows theAnnounced;

/// The tree of a window, or one of its rows. It may outlive both: then it answers that it is not connected.
class RowObject final : public AccessibleObject {
 public:
  RowObject(HWND window, HTREEITEM row) : m_window(window), m_row(row) {}

  // ---- the rows -----------------------------------------------------------------------------------------
  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
    *parent = nullptr;
    const IAccessibleRows* rows = Rows();
    if (rows == nullptr) return CO_E_OBJNOTCONNECTED;
    if (!m_row)
      return AccessibleObjectFromWindow(m_window, static_cast<DWORD>(OBJID_WINDOW), IID_IDispatch,
                                        reinterpret_cast<void**>(parent));
    *parent = new RowObject(m_window, rows->Parent(m_row));  // the caller releases it
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override {
    const IAccessibleRows* rows = Rows();
    *count = rows != nullptr ? rows->ChildCount(m_row) : 0;
    return rows != nullptr ? S_OK : CO_E_OBJNOTCONNECTED;
  }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT which, IDispatch** child) override {
    *child = nullptr;
    HTREEITEM row;
    if (Find(which, row) == nullptr || row == m_row) return E_INVALIDARG;
    *child = new RowObject(m_window, row);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT which, BSTR* name) override {
    *name = nullptr;
    HTREEITEM row;
    const IAccessibleRows* rows = Find(which, row);
    if (rows == nullptr) return CO_E_OBJNOTCONNECTED;
    if (!row) return S_FALSE;
    const CString text = rows->Name(row);
    *name = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return S_OK;
  }
  /// Of a row its level, as screen readers expect it of outlines.
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT which, BSTR* value) override {
    *value = nullptr;
    HTREEITEM row;
    const IAccessibleRows* rows = Find(which, row);
    if (rows == nullptr) return CO_E_OBJNOTCONNECTED;
    if (!row) return S_FALSE;
    int level = 0;
    for (HTREEITEM above = rows->Parent(row); above; above = rows->Parent(above)) ++level;
    *value = SysAllocString(std::to_wstring(level).c_str());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT which, VARIANT* role) override {
    HTREEITEM row;
    role->vt = VT_EMPTY;
    if (Find(which, row) == nullptr) return CO_E_OBJNOTCONNECTED;
    return Answer(*role, row ? ROLE_SYSTEM_OUTLINEITEM : ROLE_SYSTEM_OUTLINE);
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT which, VARIANT* state) override {
    HTREEITEM row;
    state->vt = VT_EMPTY;
    const IAccessibleRows* rows = Find(which, row);
    if (rows == nullptr) return CO_E_OBJNOTCONNECTED;
    return Answer(*state, row ? StateOf(*rows, row) : STATE_SYSTEM_FOCUSABLE);
  }
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* focus) override {
    focus->vt = VT_EMPTY;
    const IAccessibleRows* rows = Rows();
    if (rows == nullptr) return CO_E_OBJNOTCONNECTED;
    const HTREEITEM row = theAnnounced.Last();
    if (!row || !rows->IsLive(row) || !rows->IsFocused(row)) return S_FALSE;
    return AnswerRow(*focus, row);
  }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT which, BSTR* action) override {
    *action = nullptr;
    HTREEITEM row;
    const IAccessibleRows* rows = Find(which, row);
    if (rows == nullptr) return CO_E_OBJNOTCONNECTED;
    const wchar_t* name = nullptr;
    if (row && rows->IsExpandable(row)) {
      name = rows->IsExpanded(row) ? L"Collapse" : L"Expand";
    } else if (row && rows->IsCheckable(row)) {
      name = rows->IsChecked(row) ? L"Uncheck" : L"Check";
    }
    if (name == nullptr) return S_FALSE;
    *action = SysAllocString(name);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT which) override {
    HTREEITEM row;
    const IAccessibleRows* rows = Find(which, row);
    if (rows == nullptr) return CO_E_OBJNOTCONNECTED;
    if (row && rows->IsExpandable(row)) {
      rows->Toggle(row);
    } else if (row && rows->IsCheckable(row)) {
      rows->PressCheck(row);
    }
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT which) override {
    HTREEITEM row;
    const IAccessibleRows* rows = Find(which, row);
    if (rows == nullptr) return CO_E_OBJNOTCONNECTED;
    if (!row || (flags & (SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION)) == 0) return E_INVALIDARG;
    if ((flags & SELFLAG_TAKEFOCUS) != 0) SetFocus(m_window);
    rows->Select(row);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT which) override {
    *left = *top = *width = *height = 0;
    HTREEITEM row;
    const IAccessibleRows* rows = Find(which, row);
    if (rows == nullptr) return CO_E_OBJNOTCONNECTED;
    RECT place{};
    if (row) {
      place = Scale::Of(m_window).ToPixels(rows->ScreenPlace(row));
    } else {
      GetWindowRect(m_window, &place);
    }
    *left = place.left;
    *top = place.top;
    *width = place.right - place.left;
    *height = place.bottom - place.top;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* hit) override {
    hit->vt = VT_EMPTY;
    const IAccessibleRows* rows = Rows();
    if (rows == nullptr) return CO_E_OBJNOTCONNECTED;
    const HTREEITEM row = rows->RowAtScreen(Scale::Of(m_window).FromPixels(POINT{x, y}));
    return row && row != m_row ? AnswerRow(*hit, row) : Answer(*hit, CHILDID_SELF);
  }
  HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT from, VARIANT* to) override {
    to->vt = VT_EMPTY;
    HTREEITEM row;
    const IAccessibleRows* rows = Find(from, row);
    if (rows == nullptr) return CO_E_OBJNOTCONNECTED;
    HTREEITEM target;
    const bool inward = direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD;
    const HTREEITEM above = inward ? row : row ? rows->Parent(row) : HTREEITEM{};
    const int count = rows->ChildCount(above);
    const int here = row && !inward ? rows->IndexInParent(row) : 0;
    int place = -1;
    if (direction == NAVDIR_FIRSTCHILD) place = 0;
    if (direction == NAVDIR_LASTCHILD) place = count - 1;
    if (row && (direction == NAVDIR_NEXT || direction == NAVDIR_DOWN)) place = here + 1;
    if (row && (direction == NAVDIR_PREVIOUS || direction == NAVDIR_UP)) place = here - 1;
    if (place < 0 || place >= count) return S_FALSE;
    target = rows->Child(above, place);
    return target ? AnswerRow(*to, target) : S_FALSE;
  }

  // ---- nothing to say -----------------------------------------------------------------------------------
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT, BSTR* text) override { return Nothing(text); }
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR* text) override { return Nothing(text); }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR* text) override { return Nothing(text); }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT, LONG*) override { return Nothing(file); }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* rows) override {
    rows->vt = VT_EMPTY;  // rows say themselves whether they are selected
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }

 private:
  static HRESULT Nothing(BSTR* text) {
    *text = nullptr;
    return S_FALSE;
  }
  static HRESULT Answer(VARIANT& result, LONG number) {
    result.vt = VT_I4;
    result.lVal = number;
    return S_OK;
  }
  HRESULT AnswerRow(VARIANT& result, HTREEITEM row) const {
    result.vt = VT_DISPATCH;
    result.pdispVal = new RowObject(m_window, row);
    return S_OK;
  }
  static LONG StateOf(const IAccessibleRows& rows, HTREEITEM row) {
    LONG state = STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_MULTISELECTABLE | STATE_SYSTEM_FOCUSABLE;
    if (rows.IsSelected(row)) state |= STATE_SYSTEM_SELECTED;
    if (rows.IsFocused(row)) state |= STATE_SYSTEM_FOCUSED;
    if (rows.IsExpandable(row)) state |= rows.IsExpanded(row) ? STATE_SYSTEM_EXPANDED : STATE_SYSTEM_COLLAPSED;
    if (rows.IsChecked(row)) state |= STATE_SYSTEM_CHECKED;
    if (!rows.IsShown(row)) state |= STATE_SYSTEM_INVISIBLE;
    if (rows.ScreenPlace(row).IsEmpty()) state |= STATE_SYSTEM_OFFSCREEN;
    return state;
  }

  /// Null when the window or the row is gone.
  const IAccessibleRows* Rows() const {
    const NativeWindow* peer = NativeWindow::Of(m_window);
    const IAccessibleRows* rows = peer != nullptr ? peer->Owner().GetAccessibleRows() : nullptr;
    return rows != nullptr && (!m_row || rows->IsLive(m_row)) ? rows : nullptr;
  }
  /// The row that a number means: this one itself, one of its children, or one that an event has named.
  const IAccessibleRows* Find(const VARIANT& which, HTREEITEM& row) const {
    const IAccessibleRows* rows = Rows();
    if (rows == nullptr || which.vt != VT_I4) return nullptr;
    row = m_row;
    if (which.lVal == CHILDID_SELF) return rows;
    if (which.lVal > rows->ChildCount(m_row)) return nullptr;
    row = which.lVal > 0 ? rows->Child(m_row, static_cast<int>(which.lVal) - 1) : theAnnounced.RowOf(which.lVal);
    return row && rows->IsLive(row) ? rows : nullptr;
  }

  HWND m_window;
  HTREEITEM m_row;  // none: the tree itself
};

}  // namespace

LRESULT AnswerScreenReader(HWND window, WPARAM w, LPARAM l) {
  const NativeWindow* peer = NativeWindow::Of(window);
  const bool asked = static_cast<LONG>(l) == OBJID_CLIENT;
  if (!asked || peer == nullptr || peer->Owner().GetAccessibleRows() == nullptr) return 0;
  return AccessibleObject::Give(new RowObject(window, {}), w);
}

void AnnounceRow(HWND window, HTREEITEM row) {
  NotifyWinEvent(EVENT_OBJECT_FOCUS, window, OBJID_CLIENT, theAnnounced.Add(row));
}

}  // namespace qd
