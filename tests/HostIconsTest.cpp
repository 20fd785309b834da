// Icons of hosts: any size comes out as what rows show, once for each image.

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/core/CQDTreeIcon.h"
#include "qd_wrt/nodes/HostTree.h"
#include "qd_wrt/panel/CWorksTreeBar.h"

namespace qd::test {
namespace {

IconImage Filled(int width, int height, std::uint32_t pixel) {
  return {.width = width,
          .height = height,
          .pixels = std::vector<std::uint32_t>(static_cast<std::size_t>(width * height), pixel)};
}

const Picture& PictureOf(unsigned icon) {
  return *CQDTreeIcon::Instance().GetRowImageList().GetPicture(static_cast<int>(icon));
}

TEST(HostIcons, OfAnySizeFitTheirPlace) {
  const unsigned red = CQDTreeIcon::AddIcon(Filled(100, 100, 0x80FF0000U), L"red");
  ASSERT_GT(red, 378U) << "behind those of the module";
  EXPECT_EQ(PictureOf(red).pixels, std::vector<std::uint32_t>(256, 0x80800000U)) << "multiplied with alpha";
  EXPECT_EQ(PictureOf(red).pixelsDouble, std::vector<std::uint32_t>(1024, 0x80800000U));

  IconImage checks = Filled(32, 32, 0xFF000000U);
  for (std::size_t at = 0; at < checks.pixels.size(); ++at) {
    if ((at + at / 32) % 2 != 0) checks.pixels[at] = 0xFFFFFFFFU;
  }
  const Picture& checked = PictureOf(CQDTreeIcon::AddIcon(checks));
  EXPECT_EQ(checked.pixels, std::vector<std::uint32_t>(256, 0xFF808080U)) << "each the mean of four";
  EXPECT_EQ(checked.pixelsDouble, checks.pixels);

  // In its own proportions, in the middle; what is small is enlarged.
  const Picture& wide = PictureOf(CQDTreeIcon::AddIcon(Filled(4, 2, 0xFF0000FFU)));
  for (const std::size_t row : {0U, 3U, 12U, 15U}) EXPECT_EQ(wide.pixels[row * 16 + 8], 0U) << row;
  for (const std::size_t row : {4U, 11U}) EXPECT_EQ(wide.pixels[row * 16], 0xFF0000FFU) << row;
}

TEST(HostIcons, AreKeptOnceAndFoundByName) {
  const unsigned first = CQDTreeIcon::AddIcon(Filled(5, 5, 0xFF112233U), L"tool");
  EXPECT_EQ(CQDTreeIcon::AddIcon(Filled(5, 5, 0xFF112233U)), first);
  EXPECT_EQ(CQDTreeIcon::FindIcon(L"tool"), first);
  const unsigned other = CQDTreeIcon::AddIcon(Filled(5, 5, 0xFF112234U), L"tool");
  EXPECT_NE(other, first);
  EXPECT_EQ(CQDTreeIcon::FindIcon(L"tool"), other);
  EXPECT_EQ(CQDTreeIcon::FindIcon(L"nothing"), 0U);
  const int count = CQDTreeIcon::Instance().GetRowImageList().GetImageCount();
  IconImage torn = Filled(5, 5, 0);
  torn.pixels.pop_back();
  for (const IconImage& wrong : {torn, IconImage{}, Filled(1025, 1, 0), IconImage{-1, -25, {}}}) {
    EXPECT_EQ(CQDTreeIcon::AddIcon(wrong, L"tool"), 0U);
  }
  EXPECT_EQ(CQDTreeIcon::FindIcon(L"tool"), other);
  EXPECT_EQ(CQDTreeIcon::Instance().GetRowImageList().GetImageCount(), count);
}

TEST(HostIcons, StandInRows) {
  HeadlessToolkit toolkit;
  CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 300, 100});
  HostTree tree(bar.GetTreeCtrl());
  const unsigned icon = CQDTreeIcon::AddIcon(Filled(9, 9, 0xFF00FF00U));
  const auto images = [&] {
    const std::vector<std::string> calls = toolkit.Paint(bar.GetTreeCtrl());
    return std::count_if(calls.begin(), calls.end(), [](const auto& call) { return call.starts_with("image"); });
  };
  HostNode& row = tree.Root().Add({.title = L"a", .icon = 379 + 70'000});
  toolkit.Pump();
  const auto without = images();
  row.ChangeImage(static_cast<int>(icon));
  EXPECT_EQ(images(), without + 1);
  bar.DestroyWindow();
}

}  // namespace
}  // namespace qd::test
