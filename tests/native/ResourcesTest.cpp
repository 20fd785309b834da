// The resources of the module's library.

#include <gtest/gtest.h>
#include <windows.h>
// After what it builds on.
#include <commctrl.h>

#include <algorithm>

#include "platform/Types.h"
#include "qd_wrt/core/CQDTreeIcon.h"

namespace qd::test {
namespace {

constexpr COLORREF kWhite = Rgb(255, 255, 255);

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

}  // namespace
}  // namespace qd::test
