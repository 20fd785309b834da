// What a click in the view takes, against the picture: parts in colours that cannot be mistaken.

#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <QMouseEvent>
#include <array>
#include <optional>
#include <random>

#include "InWindow.h"
#include "support/ManyParts.h"
#include "workbench/view/ViewPicking.h"

namespace qd::test {
namespace {

using workbench::ModelView;

/// Nothing for what is no part: the background and lines.
std::optional<int> HueOf(const QColor& colour) {
  if (colour.saturation() < 120 || colour.value() < 60) return std::nullopt;
  return colour.hue();
}

QColor Seen(COLORREF colour) {
  return {static_cast<int>(colour & 0xFFU), static_cast<int>(colour >> 8U & 0xFFU),
          static_cast<int>(colour >> 16U & 0xFFU)};
}

class Pick : public InWindow {
 protected:
  /// Blocks in a heap, some through others.
  void MakeHeap(int count) {
    constexpr std::array kColours{Rgb(255, 0, 0), Rgb(0, 255, 0), Rgb(0, 0, 255), Rgb(0, 255, 255),
                                  Rgb(255, 0, 255)};
    std::mt19937 random(7);
    std::uniform_real_distribution<float> place(0, 3);
    Data().BeginTransaction(L"heap");
    tagTGset set;
    set.name = L"Heap";
    const iterator gset = Data().GetGsetPool().Add(set);
    for (int i = 0; i < count; ++i) {
      tagTGeom part;
      part.name = L"Block " + std::to_wstring(i);
      part.gset = gset;
      part.cadItem = Data().GetGeomPool().NextNumber();
      part.colour = kColours[static_cast<std::size_t>(i) % kColours.size()];
      part.shape = SmallBlock(place(random), place(random), place(random));
      m_parts.push_back(Data().GetGeomPool().Add(std::move(part)));
    }
    Data().CommitTransaction(1);
    ASSERT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
  }
  iterator Click(QPointF at) {
    iterator picked = 0;
    ModelView& view = m_window->View();
    view.Picking().SetOnPick([&picked](const std::vector<iterator>& records, workbench::PickMode) {
      picked = records.empty() ? 0 : records.front();
    });
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      QMouseEvent event(type, at, view.mapToGlobal(at), Qt::LeftButton, Qt::NoButton, {});
      QApplication::sendEvent(&view, &event);
    }
    return picked;
  }
  /// Clicks all over the view; how many clicks took something else than what is seen there.
  void ExpectTheSeenParts() {
    ASSERT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    Wait(50);
    const QImage image = m_window->View().grabFramebuffer();
    int compared = 0;
    int wrong = 0;
    for (int y = 5; y < image.height(); y += 11) {
      for (int x = 3; x < image.width(); x += 11) {
        const QPointF at(x + 0.25, y + 0.25);
        const iterator picked = Click(at / m_window->View().devicePixelRatioF());
        const std::optional<int> seen = HueOf(image.pixelColor(x, y));
        if (seen) {
          ++compared;
          const tagTGeom* part = Data().GetGeomPool().GetAtNU(picked);
          const int hue = part != nullptr ? Seen(part->colour).hue() : -1;
          const int apart = std::abs(*seen - hue) % 360;
          wrong += std::min(apart, 360 - apart) < 25 ? 0 : 1;
        }
      }
    }
    EXPECT_GT(compared, 300);
    EXPECT_EQ(wrong, 0);
  }

  std::vector<iterator> m_parts;
};

TEST_F(Pick, AClickTakesThePartThatIsSeenThere) {
  MakeHeap(40);
  ExpectTheSeenParts();
  workbench::PartDisplay& display = m_window->Document().GetDisplay().Parts();
  const auto item = [this](std::size_t part) { return Data().GetGeomPool().GetAtNU(m_parts[part])->cadItem; };
  display.BeginShowHide();
  for (std::size_t part = 0; part < 20; ++part) display.SetShowHide(item(part), 0);
  display.EndShowHide();
  ExpectTheSeenParts();
  m_window->Document().DeleteData(kDeleteModelData, {m_parts.begin() + 20, m_parts.begin() + 25});
  ExpectTheSeenParts();
  Data().Undo();
  display.SetShowHide(item(3), 1);
  ExpectTheSeenParts();
}

/// Pictures of many parts come in two steps; the last one is as if there had been no other.
TEST_F(Pick, AWholePictureFollowsEveryQuickOne) {
  AddBlocks(Data(), 12'000);
  const std::vector<iterator> all = Data().GetGeomPool().GetItrList();
  const auto picture = [this] {
    Wait(20);
    EXPECT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    return m_window->View().grabFramebuffer();
  };
  const auto parts = [](const QImage& image) {
    int green = 0;
    for (int y = 0; y < image.height(); y += 3) {
      for (int x = 0; x < image.width(); x += 3)
        green += std::abs(HueOf(image.pixelColor(x, y)).value_or(0) - 130) < 40 ? 1 : 0;
    }
    return green;
  };
  const QImage before = picture();
  EXPECT_GT(parts(before), 1000);
  m_window->Document().Select({all});
  const QImage selected = picture();
  EXPECT_LT(parts(selected), parts(before) / 100) << "all in one colour";
  m_window->Document().Select({});
  EXPECT_EQ(picture(), before);
  workbench::PartDisplay& display = m_window->Document().GetDisplay().Parts();
  for (const int shown : {0, 1}) {
    display.BeginShowHide();
    for (const iterator part : all) display.SetShowHide(Data().GetGeomPool().GetAtNU(part)->cadItem, shown);
    display.EndShowHide();
    EXPECT_EQ(picture() == before, shown != 0);
  }
}

/// What a section shows of the inside is what a new section would show, whatever was done meanwhile.
TEST_F(Pick, TheInsideOfPartsFollowsHowTheyAreDrawn) {
  MakeHeap(40);
  workbench::Sections& sections = m_window->Document().GetSections();
  workbench::PartDisplay& display = m_window->Document().GetDisplay().Parts();
  const auto item = [this](std::size_t part) { return Data().GetGeomPool().GetAtNU(m_parts[part])->cadItem; };
  const auto picture = [this] {
    EXPECT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    Wait(50);
    return m_window->View().grabFramebuffer();
  };
  sections.Add({{0, 0, 1.8}, {0, 0, 1}, std::nullopt});
  m_window->Document().GetLooking().LookFrom(workbench::StandardView::Top);
  QImage last = picture();
  const auto expectChange = [&](const char* what) {
    SCOPED_TRACE(what);
    const QImage now = picture();
    EXPECT_NE(now, last);
    const std::vector<workbench::SectionPlane> planes = sections.Planes();
    sections.Clear();
    EXPECT_NE(picture(), now);
    for (const workbench::SectionPlane& plane : planes) sections.Add(plane);
    EXPECT_EQ(picture(), now);
    last = now;
  };
  display.BeginShowHide();
  for (std::size_t part = 0; part < 10; ++part) display.SetShowHide(item(part), 0);
  display.EndShowHide();
  expectChange("hidden");
  m_window->Document().DeleteData(kDeleteModelData, {m_parts.begin() + 10, m_parts.begin() + 25});
  expectChange("deleted");
  Data().Undo();
  expectChange("back");
  m_window->Document().Select({m_parts});
  expectChange("selected");
  m_window->Document().Select({});
  expectChange("not selected");
  sections.MoveBy(0, 0.3);
  expectChange("moved");
  display.SetRenderMode({item(30), item(31), item(32), item(33), item(34), item(35)}, 2);
  expectChange("wires");
  for (std::size_t part = 0; part < 20; ++part) display.SetTransparency({item(part)}, 0.5);
  expectChange("half transparent");
}

/// What is wholly transparent hides nothing.
TEST_F(Pick, NothingIsTakenThatIsNotSeen) {
  MakeHeap(40);
  std::vector<int> items;
  for (std::size_t part = 0; part < 20; ++part)
    items.push_back(Data().GetGeomPool().GetAtNU(m_parts[part])->cadItem);
  m_window->Document().GetDisplay().Parts().SetTransparency(items, 0);
  ExpectTheSeenParts();
}

/// What is drawn as lines is taken by its lines, and what lies behind through its faces.
TEST_F(Pick, LinesAreTakenNearThem) {
  MakeHeap(1);
  ASSERT_EQ(m_parts.size(), 1U);
  const auto clicks = [this] {
    int taken = 0;
    const ModelView& view = m_window->View();
    for (int y = 0; y < view.height(); y += 7) {
      for (int x = 0; x < view.width(); x += 7) taken += Click(QPointF(x, y)) == m_parts[0] ? 1 : 0;
    }
    return taken;
  };
  const int faces = clicks();
  for (const unsigned mode : {2U, 3U}) {  // edges, bounding box
    m_window->Document().GetDisplay().Parts().SetRenderMode({Data().GetGeomPool().GetAtNU(m_parts[0])->cadItem},
                                                            mode);
    Wait(50);
    ASSERT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    const int lines = clicks();
    EXPECT_GT(lines, faces / 30);
    EXPECT_LT(lines, faces / 2);
  }
}

}  // namespace
}  // namespace qd::test
