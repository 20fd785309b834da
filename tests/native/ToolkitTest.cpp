// The native toolkit piece by piece: painting, metrics, resources, menus, messages.

#include <windows.h>
// After what it builds on.
#include <commctrl.h>

#include <algorithm>
#include <array>
#include <set>

#include "native/Window.h"
#include "platform/BCMenu.h"
#include "platform/CDC.h"
#include "platform/CEdit.h"
#include "platform/CScrollBar.h"
#include "platform/RegisteredMessage.h"
#include "platform/win32/Scale.h"
#include "qd_wrt/core/CQDTreeIcon.h"

namespace qd::test {
namespace {

constexpr COLORREF kWhite = Rgb(255, 255, 255);
constexpr COLORREF kRed = Rgb(255, 0, 0);
constexpr COLORREF kBlue = Rgb(0, 0, 255);

/// A window that paints what the test says and notes what it is told.
class Canvas final : public CWnd {
 public:
  void OnPaint(CDC& dc) override {
    ++paints;
    dc.FillSolidRect(GetClientRect(), kWhite);
    if (paint) paint(dc);
  }
  std::function<void(CDC&)> paint;
  std::string log;
  int paints = 0;

 protected:
  void OnTimer(unsigned id) override { log += "timer " + std::to_string(id) + " "; }
  void OnPosted(unsigned id, std::uint64_t parameter) override {
    log += "posted " + std::to_string(id) + " " + std::to_string(parameter) + " ";
  }
  void OnRButtonDown(unsigned, CPoint) override { log += "down "; }
  void OnRButtonUp(unsigned, CPoint) override { log += "up "; }
  void OnContextMenu(CPoint) override { log += "menu "; }
  void OnMouseLeave() override { log += "leave "; }
  void OnLButtonDblClk(unsigned, CPoint) override { log += "double "; }
  void OnChar(int character) override { log += "char " + std::to_string(character) + " "; }
  void OnKeyDown(int key, unsigned flags) override {
    log += "key " + std::to_string(key) + "/" + std::to_string(flags) + " ";
  }
};

class ToolkitTest : public NativeTest {
 protected:
  ToolkitTest() {
    m_canvas.Create(nullptr, 0, {0, 0, 200, 150});
    m_toolkit->Embed(m_canvas, m_window.Handle());
    MoveWindow(HandleOf(m_canvas), 0, 0, 200, 150, TRUE);
    Wait(60);
    m_canvas.log.clear();
  }
  void Paint(std::function<void(CDC&)> paint) {
    m_canvas.paint = std::move(paint);
    m_canvas.Invalidate();
    m_canvas.GetPeer()->PaintNow();
  }
  COLORREF At(int x, int y) {
    const HDC dc = GetDC(HandleOf(m_canvas));
    const COLORREF pixel = GetPixel(dc, x, y);
    ReleaseDC(HandleOf(m_canvas), dc);
    return pixel;
  }
  /// Pixels of a colour in a rectangle.
  int Count(const CRect& area, COLORREF colour) {
    int count = 0;
    for (int y = area.top; y < area.bottom; ++y) {
      for (int x = area.left; x < area.right; ++x) count += At(x, y) == colour ? 1 : 0;
    }
    return count;
  }
  CPoint Screen(CPoint place) {
    POINT point{place.x, place.y};
    ClientToScreen(HandleOf(m_canvas), &point);
    return {static_cast<int>(point.x), static_cast<int>(point.y)};
  }

  Canvas m_canvas;
};

// ---- painting -------------------------------------------------------------------------------------------

TEST_F(ToolkitTest, FillsFramesAndPolygonsCoverTheirPixels) {
  Paint([](CDC& dc) {
    dc.SetViewportOrg(10);
    dc.FillSolidRect({0, 0, 10, 10}, kRed);
    dc.FrameRect({20, 0, 30, 10}, kBlue);
    const std::array<CPoint, 3> triangle{CPoint{40, 0}, CPoint{60, 0}, CPoint{50, 10}};
    dc.Polygon(triangle, kRed);
    dc.SetViewportOrg(0);
    dc.SetClip({100, 0, 105, 5});
    dc.FillSolidRect({100, 0, 120, 20}, kBlue);
  });
  EXPECT_EQ(Count({0, 0, 30, 20}, kRed), 100);
  EXPECT_EQ(At(10, 0), kRed);
  EXPECT_EQ(At(9, 0), kWhite);
  EXPECT_EQ(Count({30, 0, 40, 10}, kBlue), 36);
  EXPECT_EQ(At(60, 3), kRed);
  EXPECT_EQ(At(51, 9), kWhite);
  EXPECT_EQ(Count({90, 0, 140, 30}, kBlue), 25);
}

TEST_F(ToolkitTest, HatchesLeaveEverySecondPixelAndStayInPlace) {
  Paint([](CDC& dc) {
    dc.FillSolidRect({0, 0, 40, 40}, kBlue);
    dc.HatchRect({0, 0, 40, 40}, kRed);
  });
  EXPECT_EQ(Count({0, 0, 40, 40}, kRed), 800);
  EXPECT_EQ(Count({0, 0, 40, 40}, kBlue), 800);
  EXPECT_NE(At(0, 0), At(1, 0));
  EXPECT_EQ(At(0, 0), At(1, 1));
  // A part that is painted later fits into what is there.
  const COLORREF corner = At(13, 7);
  m_canvas.InvalidateRect({13, 7, 20, 20});
  m_canvas.GetPeer()->PaintNow();
  EXPECT_EQ(At(13, 7), corner);
}

TEST_F(ToolkitTest, TextStaysInItsCell) {
  Paint([](CDC& dc) {
    dc.SetTextColor(0);
    dc.Text({20, 20, 60, 40}, L"MMMMMMMMMMMMMMMM & more", TextAlign::Left, true);
    dc.Text({100, 20, 180, 40}, std::wstring(100'000, L'M'), TextAlign::Left);
    dc.Text({20, 60, 180, 80}, std::wstring(L"a\0b", 3), TextAlign::Centre);
  });
  const auto inked = [this](const CRect& area) { return area.Width() * area.Height() - Count(area, kWhite); };
  EXPECT_GT(inked({20, 20, 60, 40}), 40);
  EXPECT_GT(inked({100, 20, 180, 40}), 40);
  EXPECT_GT(inked({20, 60, 180, 80}), 5);
  EXPECT_EQ(inked({0, 0, 20, 60}) + inked({60, 0, 100, 60}) + inked({180, 0, 200, 60}), 0);
}

TEST_F(ToolkitTest, PicturesAreDrawnThroughTheirMask) {
  Picture picture{.width = 2, .height = 2, .pixels = {0xFFFF0000, 0, 0, 0xFF0000FF}, .pixelsDouble = {}};
  Paint([&picture](CDC& dc) {
    dc.FillSolidRect({0, 0, 20, 20}, Rgb(0, 200, 0));
    dc.DrawPicture({5, 5}, picture);
  });
  EXPECT_EQ(At(5, 5), kRed);
  EXPECT_EQ(At(6, 5), Rgb(0, 200, 0));
  EXPECT_EQ(At(6, 6), kBlue);
  const Picture broken{.width = 500, .height = 500, .pixels = {1, 2, 3}, .pixelsDouble = {}};
  Paint([&broken](CDC& dc) { dc.DrawPicture({5, 5}, broken); });
  EXPECT_EQ(At(5, 5), kWhite);
}

TEST_F(ToolkitTest, OnlyWhatIsInvalidIsPainted) {
  Paint(nullptr);
  const int before = m_canvas.paints;
  Wait(50);
  EXPECT_EQ(m_canvas.paints, before);
  CRect clip;
  m_canvas.paint = [&clip](CDC& dc) { clip = dc.GetClipBox(); };
  m_canvas.InvalidateRect({10, 20, 30, 40});
  Wait(50);
  EXPECT_EQ(clip, (CRect{10, 20, 30, 40}));
}

TEST_F(ToolkitTest, FocusRectanglesAreDotted) {
  Paint([](CDC& dc) {
    dc.FillSolidRect({0, 0, 60, 30}, kBlue);
    dc.DrawFocusRect({0, 0, 60, 30});
  });
  const int dots = 60 * 30 - Count({0, 0, 60, 30}, kBlue);
  EXPECT_NEAR(dots, 60 + 30 - 2, 10);
  EXPECT_EQ(Count({1, 1, 59, 29}, kBlue), 58 * 28);
}

// ---- metrics --------------------------------------------------------------------------------------------

TEST_F(ToolkitTest, PrefixesOfATextGrow) {
  const CString text = L"Part (1) e\x301 \x5EA7\x6A19 \xD83D\xDE00";
  std::vector<int> widths;
  m_toolkit->PrefixWidths({}, text, widths);
  ASSERT_EQ(widths.size(), text.size() + 1);
  EXPECT_EQ(widths.front(), 0);
  EXPECT_TRUE(std::is_sorted(widths.begin(), widths.end()));
  EXPECT_GT(widths[4], 10);
  std::vector<int> bold;
  m_toolkit->PrefixWidths({.bold = true}, text, bold);
  EXPECT_GT(bold.back(), widths.back());
  EXPECT_GT(m_toolkit->FontHeight({.height = 40}), m_toolkit->FontHeight({}));
  EXPECT_GT(m_toolkit->FontHeight({.face = std::wstring(5000, L'x')}), 0);
}

class ToolkitScales : public ::testing::TestWithParam<unsigned> {};

TEST_P(ToolkitScales, WhatTouchesStillTouchesAndComesBack) {
  const Scale scale(GetParam());
  for (int x = -300; x < 300; ++x) {
    EXPECT_EQ(scale.ToPixels(CRect{x, 0, x + 7, 1}).right, scale.ToPixels(CRect{x + 7, 0, x + 9, 1}).left);
    EXPECT_LE(std::abs(scale.FromPixels(scale.ToPixels(x)) - x), GetParam() < 96 ? 1 : 1);
    if (GetParam() % 96 == 0) {
      EXPECT_EQ(scale.FromPixels(scale.ToPixels(x)), x);
    }
  }
  EXPECT_EQ(scale.FromPixels(-1), -1) << "the pixel left of the window is no pixel of it";
  const RECT dirty{3, 5, 11, 13};
  const RECT covered = scale.ToPixels(scale.Covering(dirty));
  EXPECT_LE(covered.left, dirty.left);
  EXPECT_GE(covered.right, dirty.right - 1);
}
INSTANTIATE_TEST_SUITE_P(Resolutions, ToolkitScales, ::testing::Values(96U, 120U, 144U, 168U, 192U, 240U));

TEST_F(ToolkitTest, ScrollBarsHoldTheLargestNumbers) {
  CScrollBar bar;
  bar.Create(&m_canvas, 1, {0, 100, 200, 117});
  SCROLLINFO numbers{};
  numbers.cbSize = sizeof(numbers);
  numbers.fMask = SIF_ALL;
  bar.SetState({.maximum = 2147483647, .page = 1000, .position = 5});
  GetScrollInfo(HandleOf(bar), SB_CTL, &numbers);
  EXPECT_EQ(numbers.nMax, 2147483646);
  EXPECT_EQ(numbers.nPos, 5);
  bar.SetState({.maximum = 10, .page = 4, .position = 10});
  GetScrollInfo(HandleOf(bar), SB_CTL, &numbers);
  EXPECT_EQ(numbers.nPos, 10) << "the last position leaves a page in sight";
}

TEST_F(ToolkitTest, ColoursFollowTheSystems) {
  const int index = COLOR_HIGHLIGHT;
  const ::COLORREF before = GetSysColor(index);
  const ::COLORREF contrast = Rgb(255, 255, 0);
  SetSysColors(1, &index, &contrast);
  EXPECT_EQ(m_toolkit->GetColour(SystemColour::Highlight), contrast);
  Paint(nullptr);
  const int paints = m_canvas.paints;
  SendMessageW(HandleOf(m_canvas), WM_SYSCOLORCHANGE, 0, 0);
  Wait(50);
  EXPECT_GT(m_canvas.paints, paints) << "the new colours are shown";
  SetSysColors(1, &index, &before);
}

/// The fonts of open edit boxes are replaced with those of everything else.
TEST_F(ToolkitTest, BoxesKeepAFontWhenTheSettingsChange) {
  CEdit box;
  box.Create(&m_canvas, 1, {10, 10, 150, 34});
  SendMessageW(HandleOf(m_canvas), WM_SETTINGCHANGE, 0, 0);
  const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(HandleOf(box), WM_GETFONT, 0, 0));
  EXPECT_EQ(GetObjectType(font), static_cast<DWORD>(OBJ_FONT));
}

// ---- resources ------------------------------------------------------------------------------------------

TEST(ToolkitResources, StandUnderTheirNumbers) {
  struct Size {
    int number;
    int width;
    int height;
  };
  const HMODULE module = GetModuleHandleW(L"QD_wrt.dll");
  for (const Size& size : {Size{10400, 32, 16}, Size{10401, 64, 16}, Size{10402, 1600, 30}, Size{10406, 1600, 30},
                           Size{10407, 1600, 43}, Size{10408, 1279, 26}, Size{10410, 2048, 30}}) {
    const auto bitmap = static_cast<HBITMAP>(
        LoadImageW(module, MAKEINTRESOURCEW(size.number), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
    ASSERT_NE(bitmap, nullptr) << size.number;
    BITMAP description{};
    GetObjectW(bitmap, sizeof(description), &description);
    EXPECT_EQ(description.bmWidth, size.width) << size.number;
    EXPECT_EQ(description.bmHeight, size.height) << size.number;
    DeleteObject(bitmap);
  }
  for (const int number : {10403, 10404}) {
    const HCURSOR cursor = LoadCursorW(module, MAKEINTRESOURCEW(number));
    ASSERT_NE(cursor, nullptr) << number;
    ICONINFO info{};
    GetIconInfo(cursor, &info);
    EXPECT_EQ(info.fIcon, FALSE);
    EXPECT_EQ(info.xHotspot + info.yHotspot, 0U);
  }
  EXPECT_NE(FindResourceW(module, MAKEINTRESOURCEW(10411), RT_DIALOG), nullptr);
}

/// What a program without alpha sees: drawings over the colour that stands for "transparent".
TEST(ToolkitResources, TheTransparentColourIsAroundTheDrawings) {
  const HMODULE module = GetModuleHandleW(L"QD_wrt.dll");
  for (const auto& [number, key] :
       {std::pair{10401, kWhite}, std::pair{10402, kWhite}, std::pair{10400, Rgb(0, 0, 0)}}) {
    const HANDLE bitmap = LoadImageW(module, MAKEINTRESOURCEW(number), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
    const HDC dc = CreateCompatibleDC(nullptr);
    const HGDIOBJ before = SelectObject(dc, bitmap);
    EXPECT_EQ(GetPixel(dc, 0, 0), key) << number;
    SelectObject(dc, before);
    DeleteDC(dc);
    DeleteObject(bitmap);
  }
}

/// A program may put the strips into image lists of the system's.
TEST(ToolkitResources, StripsFillTheSystemsImageLists) {
  const HMODULE module = GetModuleHandleW(L"QD_wrt.dll");
  const HIMAGELIST list = ImageList_LoadImageW(module, MAKEINTRESOURCEW(10402), 16, 32, kWhite, IMAGE_BITMAP, 0);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(ImageList_GetImageCount(list), 100);
  IMAGEINFO info{};
  EXPECT_NE(ImageList_GetImageInfo(list, 0, &info), 0);
  EXPECT_NE(info.hbmMask, nullptr);
  ImageList_Destroy(list);
}

TEST(ToolkitResources, PicturesComeWithTheirPlacesAndBothSizes) {
  const CQDTreeIcon& icons = CQDTreeIcon::Instance();
  EXPECT_EQ(icons.GetRowImageList().GetImageCount(), 379);
  int drawn = 0;
  for (int index = 0; index < icons.GetRowImageList().GetImageCount(); ++index) {
    const Picture* picture = icons.GetRowImageList().GetPicture(index);
    if (picture == nullptr) continue;
    ++drawn;
    EXPECT_EQ(picture->pixels.size(), 256U);
    EXPECT_EQ(picture->pixelsDouble.size(), 1024U);
    const bool premultiplied =
        std::all_of(picture->pixels.begin(), picture->pixels.end(), [](std::uint32_t pixel) {
          const std::uint32_t alpha = pixel >> 24U;
          return (pixel & 0xFFU) <= alpha && (pixel >> 8U & 0xFFU) <= alpha && (pixel >> 16U & 0xFFU) <= alpha;
        });
    EXPECT_TRUE(premultiplied) << index;
  }
  EXPECT_EQ(drawn, 12);
  for (const bool left : {true, false}) {
    ASSERT_NE(icons.GetDragCursor(left), nullptr);
    EXPECT_EQ(icons.GetDragCursor(left)->pixelsDouble.size(), 1024U);
  }
}

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

TEST_F(ToolkitTest, ButtonsAndKeysAreReported) {
  Play(Input().RightClick(Screen({50, 50})));
  EXPECT_EQ(m_canvas.log, "down up menu ");
  m_canvas.log.clear();
  Play(Input().Wait(600).DoubleClick(Screen({60, 60})));
  EXPECT_EQ(m_canvas.log, "double ");
  m_canvas.log.clear();
  Play(Input().Keys({VK_SHIFT, VK_F2}).Keys({VK_CONTROL, 'I'}).Keys({VK_DELETE}).Type(L"\x5EA7 z"));
  EXPECT_EQ(m_canvas.log, "key 113/4 key 73/8 char 24231 char 122 ")
      << "what Delete does is the program's business";
  m_canvas.log.clear();
  Play(Input().Keys({VK_APPS}));
  EXPECT_EQ(m_canvas.log, "menu ");
  m_canvas.log.clear();
  Play(Input().Move(Screen({300, 300})).Wait(200));
  EXPECT_EQ(m_canvas.log, "leave ");
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
