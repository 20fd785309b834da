// Painting and metrics of the native toolkit.

#include <algorithm>
#include <array>

#include "native/Canvas.h"
#include "platform/CEdit.h"
#include "platform/CScrollBar.h"
#include "platform/win32/Scale.h"

namespace qd::test {
namespace {

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
    // Only its first letter, at the right, is to be seen of a name.
    dc.Text({20, 100, 80, 120}, L"\x5D0" + std::wstring(60, L'\xA0'), TextAlign::Left);
  });
  const auto inked = [this](const CRect& area) { return area.Width() * area.Height() - Count(area, kWhite); };
  EXPECT_GT(inked({20, 20, 60, 40}), 40);
  EXPECT_GT(inked({100, 20, 180, 40}), 40);
  EXPECT_GT(inked({20, 60, 180, 80}), 5);
  EXPECT_GT(inked({60, 100, 80, 120}), 5);
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

}  // namespace
}  // namespace qd::test
