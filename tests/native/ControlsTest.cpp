// Messages, captures, controls and menus of the native toolkit.

#include <stdexcept>

#include "native/Canvas.h"
#include "platform/BCMenu.h"
#include "platform/CEdit.h"
#include "platform/RegisteredMessage.h"
#include "qd_wrt/core/CQDTreeIcon.h"

namespace qd::test {
namespace {

// ---- messages -------------------------------------------------------------------------------------------

TEST_F(ToolkitTest, TimersRunUntilTheyAreKilled) {
  m_canvas.GetPeer()->SetTimer(7, 20);
  Wait(100);
  EXPECT_TRUE(m_canvas.log.starts_with("timer 7 timer 7 ")) << m_canvas.log;
  Sleep(60);  // one is due now
  m_canvas.GetPeer()->KillTimer(7);
  m_canvas.log.clear();
  Wait(60);
  EXPECT_EQ(m_canvas.log, "");
}

TEST_F(ToolkitTest, PostedAndRegisteredMessagesArrive) {
  m_canvas.Post(0x7F00, 0xFFFFFFFFFFFFFFFF);
  EXPECT_EQ(m_canvas.log, "") << "not before the queue is handled";
  const unsigned number = RegisterMessage("WM_MATERIAL_CUSTOMIZED");
  EXPECT_EQ(number, RegisterWindowMessageW(L"WM_MATERIAL_CUSTOMIZED"));
  PostMessageW(HandleOf(m_canvas), number, 3, 0);
  Wait(30);
  EXPECT_EQ(m_canvas.log, "posted 32512 18446744073709551615 posted " + std::to_string(number) + " 3 ");
}

/// It cannot go through the system's frames, which called us.
TEST_F(ToolkitTest, WhatACallThrowsComesOutOfTheProgramsOwnLoop) {
  struct Thrower final : CWnd {
    void OnPosted(unsigned, std::uint64_t) override { throw std::runtime_error("host"); }
  } thrower;
  thrower.Create(nullptr, 0, {0, 0, 10, 10});
  thrower.Post(1, 0);
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) DispatchMessageW(&message);
  EXPECT_THROW(m_toolkit->PreTranslateMessage(&message), std::runtime_error);
  EXPECT_FALSE(m_toolkit->PreTranslateMessage(&message)) << "it is told once";
}

TEST_F(ToolkitTest, ButtonsAndKeysAreReported) {
  Play(Input().RightClick(Screen({50, 50})));
  EXPECT_EQ(m_canvas.log, "down up menu ");
  m_canvas.log.clear();
  Play(Input().Wait(600).DoubleClick(Screen({60, 60})));
  EXPECT_EQ(m_canvas.log, "double ");
  m_canvas.log.clear();
  Play(Input().Keys({VK_SHIFT, VK_F2}).Keys({VK_CONTROL, 'I'}).Keys({VK_DELETE}).Type(L"\x5EA7 z").Keys({VK_ADD}));
  EXPECT_EQ(m_canvas.log, "key 113/4 key 73/8 char 24231 char 32 char 122 key 107/0 ")
      << "what Delete does is the program's business";
  m_canvas.log.clear();
  Play(Input().Keys({VK_APPS}));
  EXPECT_EQ(m_canvas.log, "menu ");
  m_canvas.log.clear();
  Play(Input().Move(Screen({300, 300})).Wait(200));
  EXPECT_TRUE(m_canvas.log.starts_with("leave ")) << m_canvas.log;
}

TEST_F(ToolkitTest, ACaptureSeesEverythingFirst) {
  std::string seen;
  CaptureEnd end = CaptureEnd::Stopped;
  m_canvas.paint = nullptr;
  // The loop begins in the handler of a posted message and ends with the release.
  struct Holder final : CWnd {
    std::function<void()> run;
    void OnPosted(unsigned, std::uint64_t) override { run(); }
  } holder;
  holder.Create(nullptr, 0, {0, 0, 100, 100});
  m_toolkit->Embed(holder, m_window.Handle());
  MoveWindow(HandleOf(holder), 0, 160, 100, 100, TRUE);
  const auto hold = [&] {
    end = m_toolkit->RunCapture(holder, [&](const Message& message) {
      if (message.kind == MessageKind::MouseMove && message.target == &holder) seen += "m";
      if (message.kind == MessageKind::KeyDown) seen += "k";
      return message.kind == MessageKind::LeftUp ? CaptureVerdict::Stop : CaptureVerdict::Dispatch;
    });
  };
  holder.run = hold;
  Input input;
  input.Move(Screen({20, 180})).Do([&] { PostMessageW(HandleOf(holder), WM_APP, 1, 0); }).Wait(50);
  input.Press().Move(Screen({150, 20})).Move(Screen({400, 400})).Keys({VK_ESCAPE}).Release();
  Play(input);
  EXPECT_EQ(end, CaptureEnd::Stopped);
  EXPECT_NE(seen.find("mm"), std::string::npos) << seen;
  EXPECT_NE(seen.find('k'), std::string::npos) << "Escape reaches the holder without the focus";
  // Another window takes the mouse.
  Play(Input()
           .Do([&] { PostMessageW(HandleOf(holder), WM_APP, 1, 0); })
           .Wait(80)
           .Do([&] { PostMessageW(HandleOf(holder), WM_CANCELMODE, 0, 0); })
           .Wait(80));
  EXPECT_EQ(end, CaptureEnd::Lost);
  EXPECT_EQ(GetCapture(), nullptr);
}

// ---- controls and menus ---------------------------------------------------------------------------------

TEST_F(ToolkitTest, ListsOfferWhatTheyWereGiven) {
  CComboBox box;
  box.Create(&m_canvas, 1, {10, 10, 150, 34});
  const CString hostile = std::wstring(L"zero\0inside", 11);
  for (const CString& text : {CString(L"one"), hostile, CString(L"two"), CString(L"one ")}) box.AddString(text);
  EXPECT_EQ(box.GetText(), L"one");
  box.SelectString(hostile);
  EXPECT_EQ(box.GetText(), hostile);
  box.SelectString(L"none");
  EXPECT_EQ(box.GetText(), L"");
  box.SelectString(L"one ");
  box.SetFocus();
  Play(Input().Keys({VK_UP}));
  EXPECT_EQ(box.GetText(), L"two");
}

TEST_F(ToolkitTest, BoxesGiveBackWhatNobodyChanged) {
  CEdit box;
  box.Create(&m_canvas, 1, {10, 10, 150, 34});
  const CString hostile = std::wstring(L"a\0b\r\nc\td", 8) + std::wstring(40'000, L'x');
  box.SetText(hostile);
  EXPECT_EQ(box.GetText(), hostile);
  box.SetFocus();
  box.SelectAll();
  Play(Input().Type(L"new"));
  EXPECT_EQ(box.GetText(), L"new");
}

struct MenuCase {
  const char* name;
  std::function<void(Input&)> act;
  unsigned chosen;
};
class ToolkitMenus : public ToolkitTest, public ::testing::WithParamInterface<MenuCase> {};

TEST_P(ToolkitMenus, AnswerWithWhatWasChosen) {
  using Entry = BCMenu::Entry;
  BCMenu below;
  below.Append({.id = 41009, .text = L"Inner"});
  BCMenu menu;
  const Picture* picture = CQDTreeIcon::Instance().GetRowImageList().GetPicture(0);
  menu.Append({.id = 41007, .text = L"Show && <all>", .picture = picture});
  menu.Append({.id = 0x12345, .text = L"Checked", .checked = true});
  Entry line;
  line.kind = Entry::Kind::Separator;
  menu.Append(line);
  menu.AppendSubMenu(below, L"More");
  menu.Append({.id = 1, .text = std::wstring(100'000, L'w')});
  unsigned chosen = 99;
  struct Opener final : CWnd {
    std::function<void()> run;
    void OnPosted(unsigned, std::uint64_t) override { run(); }
  } opener;
  opener.Create(nullptr, 0, {0, 0, 10, 10});
  m_toolkit->Embed(opener, m_window.Handle());
  opener.run = [&] { chosen = menu.Track({220, 200}, opener); };
  Input input;
  input.Move({50, 700}).Do([&] { PostMessageW(HandleOf(opener), WM_APP, 1, 0); }).Wait(200).Picture("menu");
  GetParam().act(input);
  Play(input.Wait(100));
  EXPECT_EQ(chosen, GetParam().chosen);
}
INSTANTIATE_TEST_SUITE_P(
    Ways, ToolkitMenus,
    ::testing::Values(
        MenuCase{"enter", [](Input& input) { input.Keys({VK_DOWN}).Keys({VK_RETURN}); }, 41007},
        MenuCase{"large_id", [](Input& input) { input.Keys({VK_DOWN}).Keys({VK_DOWN}).Keys({VK_RETURN}); },
                 0x12345},
        MenuCase{"letter", [](Input& input) { input.Keys({'C'}); }, 0x12345},
        MenuCase{"below", [](Input& input) { input.Keys({'M'}).Wait(100).Keys({VK_RETURN}); }, 41009},
        MenuCase{"click",
                 [](Input& input) {
                   input.Click({260, 210});
                 },
                 41007},
        MenuCase{"escape", [](Input& input) { input.Keys({VK_ESCAPE}); }, 0},
        MenuCase{"elsewhere",
                 [](Input& input) {
                   input.Click({60, 705});
                 },
                 0}),
    [](const auto& way) { return std::string(way.param.name); });

}  // namespace
}  // namespace qd::test
