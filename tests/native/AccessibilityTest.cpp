// The tree as screen readers see it.

#include <windows.h>
// After what they build on.
#include <oleauto.h>
//
#include <oleacc.h>

#include "host/CQDNullDocument.h"
#include "native/Window.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "qd_wrt/panel/FindBar.h"
#include "support/InputRows.h"
#include "support/ReaderText.h"

namespace qd::test {
namespace {

VARIANT Number(LONG number) {
  VARIANT value{};
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}

/// An object of the tree that is released at the end.
class Object {
 public:
  explicit Object(IAccessible* object) : m_object(object) {}
  explicit Object(IDispatch* object) {
    if (object == nullptr) return;
    object->QueryInterface(IID_IAccessible, reinterpret_cast<void**>(&m_object));
    object->Release();
  }
  ~Object() {
    if (m_object != nullptr) m_object->Release();
  }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  IAccessible* operator->() const { return m_object; }
  explicit operator bool() const { return m_object != nullptr; }

  Object Child(LONG place) const {
    IDispatch* child = nullptr;
    m_object->get_accChild(Number(place), &child);
    return Object(child);
  }
  Object Next(LONG direction) const {
    VARIANT to{};
    m_object->accNavigate(direction, Number(CHILDID_SELF), &to);
    return Object(to.vt == VT_DISPATCH ? to.pdispVal : nullptr);
  }
  std::string Name() const { return Text(&IAccessible::get_accName); }
  std::string Level() const { return Text(&IAccessible::get_accValue); }
  std::string Action() const { return Text(&IAccessible::get_accDefaultAction); }
  LONG State() const {
    VARIANT state{};
    m_object->get_accState(Number(CHILDID_SELF), &state);
    return state.lVal;
  }

 private:
  std::string Text(HRESULT (STDMETHODCALLTYPE IAccessible::*ask)(VARIANT, BSTR*)) const {
    BSTR text = nullptr;
    if ((m_object->*ask)(Number(CHILDID_SELF), &text) != S_OK) return "none";
    const std::string result = workbench::ToUtf8(CString(text, SysStringLen(text)));
    SysFreeString(text);
    return result;
  }
  IAccessible* m_object = nullptr;
};

class TreeReader : public NativeTest {
 protected:
  TreeReader() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    m_bar = std::make_unique<CWorksTreeBar>();
    m_bar->Create(nullptr, 0, {0, 0, 400, 500});
    m_toolkit->Embed(*m_bar, m_window.Handle());
    MoveWindow(HandleOf(*m_bar), 0, 0, 400, 500, TRUE);
    m_bar->SetDocument(&m_doc);
    m_bar->CreateTreeItems(1, &m_rows, 1);
    Wait(100);
  }
  ~TreeReader() override {
    m_bar.reset();
    CoUninitialize();
  }
  CQDTreeListCtrl& Tree() { return m_bar->GetTreeCtrl(); }
  Object Ask() { return Ask(HandleOf(Tree())); }
  static Object Ask(HWND window) {
    void* object = nullptr;
    const HRESULT found =
        AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible, &object);
    EXPECT_EQ(found, S_OK);
    return Object(static_cast<IAccessible*>(object));
  }

  CQDNullDocument m_doc{L"rows"};
  InputRows m_rows;
  std::unique_ptr<CWorksTreeBar> m_bar;
};

TEST_F(TreeReader, WalksTheRowsAndWorksThem) {
  const Object tree = Ask();
  ASSERT_TRUE(tree);
  VARIANT role{};
  tree->get_accRole(Number(CHILDID_SELF), &role);
  EXPECT_EQ(role.lVal, ROLE_SYSTEM_OUTLINE);
  const Object root = tree.Child(1);
  ASSERT_TRUE(root);
  EXPECT_EQ(root.Name(), "Root");
  EXPECT_EQ(root.Level(), "0");
  LONG count = 0;
  root->get_accChildCount(&count);
  EXPECT_EQ(count, 40);
  const Object item = root.Child(4);
  EXPECT_EQ(item.Name(), "Item 3");
  EXPECT_EQ(item.Level(), "1");
  EXPECT_EQ(item.Next(NAVDIR_NEXT).Name(), "Item 4");
  EXPECT_EQ(item.Next(NAVDIR_PREVIOUS).Name(), "Item 2");
  EXPECT_EQ(root.Next(NAVDIR_LASTCHILD).Name(), "Item 39");
  EXPECT_FALSE(root.Child(41));
  EXPECT_FALSE(tree.Next(NAVDIR_NEXT));

  EXPECT_TRUE(item.State() & STATE_SYSTEM_CHECKED);
  EXPECT_EQ(item.Action(), "Uncheck");
  item->accSelect(SELFLAG_TAKESELECTION | SELFLAG_TAKEFOCUS, Number(CHILDID_SELF));
  EXPECT_TRUE(item.State() & STATE_SYSTEM_SELECTED);
  VARIANT focus{};
  ASSERT_EQ(tree->get_accFocus(&focus), S_OK);
  EXPECT_EQ(Object(focus.pdispVal).Name(), "Item 3");
  LONG x = 0;
  LONG y = 0;
  LONG width = 0;
  LONG height = 0;
  item->accLocation(&x, &y, &width, &height, Number(CHILDID_SELF));
  VARIANT hit{};
  tree->accHitTest(x + 2, y + height / 2, &hit);
  ASSERT_EQ(hit.vt, VT_DISPATCH);
  EXPECT_EQ(Object(hit.pdispVal).Name(), "Item 3");

  EXPECT_EQ(root.Action(), "Collapse");
  root->accDoDefaultAction(Number(CHILDID_SELF));
  EXPECT_TRUE(root.State() & STATE_SYSTEM_COLLAPSED);
  EXPECT_TRUE(item.State() & STATE_SYSTEM_INVISIBLE);
}

/// A branch as a reader hears it; each row's parent, place and number of children must fit too.
void Read(const Object& above, int level, std::string& text) {
  LONG count = 0;
  ASSERT_EQ(above->get_accChildCount(&count), S_OK);
  for (LONG place = 1; place <= count; ++place) {
    const Object row = above.Child(place);
    ASSERT_TRUE(row);
    VARIANT role{};
    row->get_accRole(Number(CHILDID_SELF), &role);
    EXPECT_EQ(role.lVal, ROLE_SYSTEM_OUTLINEITEM);
    EXPECT_EQ(row.Level(), std::to_string(level));
    IDispatch* parent = nullptr;
    ASSERT_EQ(row->get_accParent(&parent), S_OK);
    EXPECT_EQ(Object(parent).Name(), above.Name());
    EXPECT_EQ(static_cast<bool>(row.Next(NAVDIR_PREVIOUS)), place > 1);
    EXPECT_EQ(static_cast<bool>(row.Next(NAVDIR_NEXT)), place < count);
    text += std::string(static_cast<std::size_t>(level), ' ') + row.Name() + ":";
    for (const auto& [bit, word] : {std::pair<LONG, const char*>{STATE_SYSTEM_SELECTED, " selected"},
                                    {STATE_SYSTEM_FOCUSED, " focused"},
                                    {STATE_SYSTEM_EXPANDED, " expanded"},
                                    {STATE_SYSTEM_COLLAPSED, " collapsed"},
                                    {STATE_SYSTEM_CHECKED, " checked"},
                                    {STATE_SYSTEM_INVISIBLE, " invisible"},
                                    {STATE_SYSTEM_OFFSCREEN, " offscreen"}}) {
      if ((row.State() & bit) != 0) text += word;
    }
    text += "\n";
    Read(row, level + 1, text);
  }
}

TEST_F(TreeReader, HearsWhatTheRowsShowAfterEachAct) {
  const Object tree = Ask();
  ASSERT_TRUE(tree);
  const auto compare = [&](const char* act) {
    Wait(30);
    std::string text;
    Read(tree, 0, text);
    EXPECT_EQ(text, ReaderText(Tree(), false)) << act;
  };
  const auto row = [this](int index) {
    HTREEITEM at = Tree().GetChildItem(Tree().GetRootItem());
    while (index-- > 0) at = Tree().GetNextSiblingItem(at);
    return at;
  };
  compare("at first");
  SetFocus(HandleOf(Tree()));
  Tree().SelectAlone(row(5));
  compare("a row is selected");
  Tree().SetItemState(row(7), kRowSelected, kRowSelected);
  Tree().SetChecked(row(7), kUnchecked);
  compare("another one, and its box is empty");
  tree.Child(1).Child(3)->accDoDefaultAction(Number(CHILDID_SELF));
  compare("a reader pressed a box");
  EXPECT_EQ(Tree().WhichCheck(row(2)), kUnchecked);
  EXPECT_EQ(tree.Child(1).Child(3).Action(), "Check");
  Tree().GetQDRootItem()->DeleteChild(Tree().GetQDRootItem()->GetChild(0));
  compare("a row is gone");
  Tree().EnsureVisible(row(38));
  compare("scrolled");
  tree.Child(1)->accDoDefaultAction(Number(CHILDID_SELF));
  compare("a reader closed the branch");
  EXPECT_EQ(tree.Child(1).Action(), "Expand");
  SetFocus(m_window.Handle());
  compare("the focus is elsewhere");
}

/// The names that readers were told to say.
std::string theSaid;
void CALLBACK Hear(HWINEVENTHOOK, DWORD, HWND window, LONG object, LONG, DWORD, DWORD) {
  void* told = nullptr;
  if (AccessibleObjectFromWindow(window, static_cast<DWORD>(object), IID_IAccessible, &told) != S_OK) return;
  theSaid += Object(static_cast<IAccessible*>(told)).Name() + "|";
}

TEST_F(TreeReader, HearsTheFindBarAndPressesItsButtons) {
  const HWINEVENTHOOK hook = SetWinEventHook(EVENT_SYSTEM_ALERT, EVENT_SYSTEM_ALERT, nullptr, Hear,
                                             GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT);
  m_bar->ShowFindBar(1);
  Wait(100);
  const HWND field = GetFocus();
  std::map<int, HWND> parts;  // as they were made
  int part = FindBar::kField;
  for (HWND at = field; at != nullptr; at = GetWindow(at, GW_HWNDNEXT)) parts[part++] = at;
  const auto roleOf = [](const Object& object) {
    VARIANT role{};
    object->get_accRole(Number(CHILDID_SELF), &role);
    return role.lVal;
  };
  const Object text = Ask(field);
  EXPECT_EQ(text.Name(), "Find rows");
  EXPECT_EQ(roleOf(text), ROLE_SYSTEM_TEXT);
  Play(Input().Type(L"item 3").Wait(100));
  EXPECT_EQ(text.Level(), "item 3");  // of a field, its text
  EXPECT_EQ(theSaid.substr(theSaid.rfind('|', theSaid.size() - 2) + 1), Ask(parts[FindBar::kCount]).Name() + "|");
  const Object find = Ask(parts[FindBar::kFind]);
  EXPECT_EQ(find.Name(), "Find");
  EXPECT_EQ(roleOf(find), ROLE_SYSTEM_RADIOBUTTON);
  EXPECT_FALSE(find.State() & STATE_SYSTEM_CHECKED);
  EXPECT_EQ(find.Action(), "Press");
  find->accDoDefaultAction(Number(CHILDID_SELF));
  Wait(100);
  EXPECT_TRUE(find.State() & STATE_SYSTEM_CHECKED);
  EXPECT_EQ(Tree().GetFinder().GetMode(), RowFinder::Mode::Find);
  EXPECT_EQ(roleOf(Ask(parts[FindBar::kNext])), ROLE_SYSTEM_PUSHBUTTON);
  UnhookWinEvent(hook);
  m_bar->DestroyWindow();
  EXPECT_NE(find.Name(), "Find");
}

TEST_F(TreeReader, ObjectsOutliveTheirRowsAndWindows) {
  const Object tree = Ask();
  ASSERT_TRUE(tree);
  const Object root = tree.Child(1);
  const Object item = root.Child(1);
  m_bar->DestroyTreeItems();
  EXPECT_EQ(item.Name(), "none");
  LONG count = 7;
  EXPECT_NE(root->get_accChildCount(&count), S_OK);
  EXPECT_EQ(count, 0);
  m_bar->DestroyWindow();
  EXPECT_NE(tree->get_accChildCount(&count), S_OK);
  EXPECT_EQ(item->accDoDefaultAction(Number(CHILDID_SELF)), CO_E_OBJNOTCONNECTED);
}

}  // namespace
}  // namespace qd::test
