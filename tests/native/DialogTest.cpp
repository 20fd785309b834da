// Dialogs and message boxes of the native toolkit.

#include <array>

#include "host/CMSGFunction.h"
#include "native/Window.h"
#include "platform/CWnd.h"
#include "qd_wrt/core/RenameDialog.h"
#include "qd_wrt/mesh/CQDMsetOperation.h"
#include "workbench/native/NativeMessages.h"

// Behind the header that the window's brings.
#include <commctrl.h>

namespace qd::test {
namespace {

/// Runs something in a handler of the window, as programs do.
class Runner final : public CWnd {
 public:
  std::function<void()> run;

 protected:
  void OnPosted(unsigned, std::uint64_t) override { run(); }
};

class DialogTest : public NativeTest {
 protected:
  DialogTest() {
    m_runner.Create(nullptr, 0, {0, 0, 10, 10});
    m_toolkit->Embed(m_runner, m_window.Handle());
    Wait(50);
  }
  /// Does `run` and, while its window is open, `input`.
  void RunDuring(std::function<void()> run, Input input) {
    m_runner.run = std::move(run);
    m_runner.Post(1, 0);
    Play(Input().Wait(250).Then(std::move(input)).Wait(150));
  }

  Runner m_runner;
};

struct OperationCase {
  const char* name;
  std::vector<WORD> keys;
  int result;
  int operation;
};
class DialogOperation : public DialogTest, public ::testing::WithParamInterface<OperationCase> {};

TEST_P(DialogOperation, OfMeshSetsIsChosen) {
  int result = 0;
  int operation = 0;
  Input input;
  input.Picture("dialog");
  for (const WORD key : GetParam().keys) input.Keys({key});
  RunDuring(
      [&] {
        CQDMsetOperation dialog(nullptr);
        result = dialog.DoModal();
        operation = dialog.GetOperation();
      },
      input);
  EXPECT_EQ(result, GetParam().result);
  EXPECT_EQ(operation, GetParam().operation);
  EXPECT_TRUE(IsWindowEnabled(m_window.Handle()));
}
INSTANTIATE_TEST_SUITE_P(
    Ways, DialogOperation,
    ::testing::Values(OperationCase{"ok_at_once", {VK_RETURN}, 1, 1},
                      OperationCase{"move", {VK_TAB, VK_TAB, VK_DOWN, VK_RETURN}, 1, 2},
                      OperationCase{"move_then_merge", {VK_TAB, VK_TAB, VK_DOWN, VK_UP, VK_RETURN}, 1, 1},
                      OperationCase{"escape", {VK_ESCAPE}, 2, 1}),
    [](const auto& way) { return std::string(way.param.name); });

TEST_F(DialogTest, ControlsStandWhereTheTemplateSaysAndTextsFit) {
  workbench::NativeMessages messages;
  messages.SetLanguage("de");
  std::vector<int> cut;
  std::vector<int> ids;
  Input input;
  input.Picture("dialog_de").Do([&] {
    const HWND dialog = FindWindowW(reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(32770)), nullptr);
    for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr;
         control = GetWindow(control, GW_HWNDNEXT)) {
      ids.push_back(GetDlgCtrlID(control));
      wchar_t text[200];
      const int length = GetWindowTextW(control, text, 200);
      RECT area{};
      GetClientRect(control, &area);
      SIZE size{};
      const HDC dc = GetDC(control);
      SelectObject(dc, reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0)));
      GetTextExtentPoint32W(dc, text, length, &size);
      ReleaseDC(control, dc);
      if (size.cx > area.right) cut.push_back(ids.back());
    }
  });
  RunDuring([] { CQDMsetOperation(nullptr).DoModal(); }, input.Keys({VK_ESCAPE}));
  EXPECT_EQ(ids, (std::vector{10415, 10413, 10414, 1, 2}));
  EXPECT_TRUE(cut.empty()) << cut.front();
}

/// A program's own dialog, which is no resource of the module.
TEST_F(DialogTest, TemplatesOfProgramsWorkToo) {
  static constexpr std::array<DialogControl, 3> kControls{
      {{7, DialogControl::Kind::RadioButton, L"One & only", 10, 10, 80, 10},
       {8, DialogControl::Kind::RadioButton, L"Two", 10, 25, 80, 10},
       {kDialogOk, DialogControl::Kind::PushButton, L"OK", 10, 40, 40, 13}}};
  static constexpr DialogTemplate kTemplate{77, L"Own", 120, 60, kControls};
  class Own final : public CDialog {
   public:
    Own() : CDialog(kTemplate) {}
    bool second = false;

   protected:
    void OnInitDialog() override {
      CheckDlgButton(8, true);
      SetItemText(999, L"nobody");
      SetCaption(std::wstring(5000, L'x'));
    }
    void OnCommand(int id) override {
      second = IsDlgButtonChecked(8);
      CDialog::OnCommand(id);
    }
  };
  int result = 0;
  bool second = false;
  RunDuring(
      [&] {
        Own dialog;
        result = dialog.DoModal();
        second = dialog.second;
      },
      Input().Picture("own_dialog").Keys({VK_RETURN}));
  EXPECT_EQ(result, kDialogOk);
  EXPECT_TRUE(second);
}

TEST_F(DialogTest, FieldsAndListsOfTheDialogForNames) {
  const auto read = [](std::size_t row) {
    return row == 0 ? RenamePlan::Row{L"bolt", 1} : RenamePlan::Row{L"nut", 2};
  };
  RenamePlan plan(2, read, [](std::size_t, const CString&) { return false; });
  int result = 0;
  std::vector<CString> lines;
  Input input;
  input.Keys({VK_HOME}).Type(L"x").Picture("rename_many").Do([&] {
    const HWND dialog = FindWindowW(reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(32770)), nullptr);
    const HWND list = GetDlgItem(dialog, RenameDialog::kList);
    for (int row = 0; row < ListView_GetItemCount(list); ++row) {
      wchar_t text[100] = L"";
      LVITEMW item{};
      item.pszText = text;
      item.cchTextMax = 100;
      SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
      lines.emplace_back(text);
    }
  });
  RunDuring([&] { result = RenameDialog(nullptr, plan).DoModal(); }, input.Keys({VK_RETURN}));
  EXPECT_EQ(result, kDialogOk);
  EXPECT_EQ(plan.NewNameOf(1), L"xnut");
  EXPECT_EQ(lines, (std::vector<CString>{L"bolt \x2192 xbolt", L"nut \x2192 xnut"}));
}

TEST_F(DialogTest, AProgramThatEndsTakesItsDialogAlong) {
  int result = 0;
  RunDuring([&] { result = CQDMsetOperation(nullptr).DoModal(); },
            Input().Do([this] { PostMessageW(m_window.Handle(), WM_CLOSE, 0, 0); }).Wait(100));
  EXPECT_EQ(result, kDialogCancel);
  EXPECT_FALSE(IsWindow(m_window.Handle()));
}

struct BoxCase {
  const char* name;
  MessageButtons buttons;
  WORD key;
  MessageAnswer answer;
};
class DialogBoxes : public DialogTest, public ::testing::WithParamInterface<BoxCase> {};

TEST_P(DialogBoxes, Answer) {
  MessageAnswer answer = MessageAnswer::Ok;
  RunDuring(
      [&] {
        answer = AfxMessageBox(std::wstring(L"a\0b & c\n", 8) + std::wstring(2000, L'x'), GetParam().buttons);
      },
      Input().Picture("box").Keys({GetParam().key}));
  EXPECT_EQ(answer, GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Ways, DialogBoxes,
                         ::testing::Values(BoxCase{"ok", MessageButtons::Ok, VK_RETURN, MessageAnswer::Ok},
                                           BoxCase{"ok_closed", MessageButtons::Ok, VK_ESCAPE, MessageAnswer::Ok},
                                           BoxCase{"yes", MessageButtons::YesNo, VK_RETURN, MessageAnswer::Yes},
                                           BoxCase{"three_closed", MessageButtons::YesNoCancel, VK_ESCAPE,
                                                   MessageAnswer::Cancel}),
                         [](const auto& way) { return std::string(way.param.name); });

}  // namespace
}  // namespace qd::test
