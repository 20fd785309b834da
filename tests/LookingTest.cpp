// Where the camera stands: what fills the picture, what stays under the hand, the way back.

#include <gmock/gmock.h>

#include <cmath>

#include "support/Mesh.h"
#include "workbench/display/Looking.h"
#include "workbench/display/SelectedBounds.h"
#include "workbench/display/ViewSettings.h"
#include "workbench/session/WindowCommands.h"

namespace qd::test {
namespace {

using namespace workbench;
using ::testing::Each;
using ::testing::Le;

/// Where a point stands in the picture, by similar triangles.
std::pair<double, double> Image(const ViewCamera& camera, const Vector3& point) {
  const Vector3 away = point - camera.Eye();
  const double half = camera.HalfHeight(Dot(away, camera.Ahead()));
  return {Dot(away, camera.Right()) / half, Dot(away, camera.Up()) / half};
}

class EachView : public ::testing::TestWithParam<std::tuple<int, bool>> {
 protected:
  EachView() {
    m_camera.SetParallel(std::get<1>(GetParam()));
    m_camera.LookFrom(static_cast<StandardView>(std::get<0>(GetParam())));
    m_camera.Fit(m_box, kAspect);
  }
  static constexpr double kAspect = 1.5;
  const ViewBox m_box{{10, 20, 30}, {14, 21, 36}};
  ViewCamera m_camera;
};
INSTANTIATE_TEST_SUITE_P(All, EachView, ::testing::Combine(::testing::Range(0, 7), ::testing::Bool()));

TEST_P(EachView, ABoxFillsThePicture) {
  std::vector<double> fill;
  for (unsigned corner = 0; corner < 8; ++corner) {
    const auto& [low, high] = m_box;
    const auto [x, y] =
        Image(m_camera, {(corner & 1) != 0 ? low[0] : high[0], (corner & 2) != 0 ? low[1] : high[1],
                         (corner & 4) != 0 ? low[2] : high[2]});
    fill.push_back(std::max(std::abs(x) / kAspect, std::abs(y)));
  }
  EXPECT_THAT(fill, Each(Le(1.0)));
  EXPECT_GT(*std::max_element(fill.begin(), fill.end()), 0.85);
  EXPECT_NEAR(Dot(m_camera.Ahead(), m_camera.Up()), 0, 1e-12);
}

TEST_P(EachView, WhatIsUnderTheHandStaysThere) {
  const auto expectAt = [](const std::pair<double, double>& image, double x, double y) {
    EXPECT_NEAR(image.first, x, 1e-9);
    EXPECT_NEAR(image.second, y, 1e-9);
  };
  constexpr double kX = 0.4;
  constexpr double kY = -0.3;
  const double depth = m_camera.Distance() * 0.8;
  const Vector3 point = m_camera.PointAt(kX, kY, depth);
  expectAt(Image(m_camera, point), kX, kY);
  ViewCamera moved = m_camera;
  moved.Pan(0.2, 0.1, depth);
  expectAt(Image(moved, point), kX + 0.2, kY + 0.1);
  moved = m_camera;
  moved.FocusAt(depth);
  expectAt(Image(moved, {1, 2, 3}), Image(m_camera, {1, 2, 3}).first, Image(m_camera, {1, 2, 3}).second);
  moved.Zoom(3, kX, kY);
  expectAt(Image(moved, point), kX, kY);
  moved = m_camera;
  moved.Turn(point, 0.7, -0.4);
  expectAt(Image(moved, point), kX, kY);
  moved = m_camera;
  moved.FocusAt(depth);
  moved.ZoomTo(kX, kY, 0.15, 0.1, kAspect);
  expectAt(Image(moved, point), 0, 0);
  expectAt(Image(moved, m_camera.PointAt(kX + 0.15, kY + 0.1, depth)), kAspect, 1);
  // What is near follows the hand: to the right, and up.
  moved = m_camera;
  const Vector3 near = moved.Focus() - moved.Ahead() * 0.1;
  moved.Turn(moved.Focus(), 0.1, 0.05);
  EXPECT_GT(Image(moved, near).first, 0);
  EXPECT_GT(Image(moved, near).second, 0);
  moved = m_camera;
  moved.Roll(0.5);
  EXPECT_GT(Image(moved, m_camera.PointAt(1, 0, depth)).second, 0);
}

TEST(ViewCamera, AnUpwardsOfStandardViewsIsTheUsualOne) {
  const std::pair<StandardView, Vector3> views[] = {
      {StandardView::Front, {0, -1, 0}}, {StandardView::Back, {0, 1, 0}}, {StandardView::Left, {-1, 0, 0}},
      {StandardView::Right, {1, 0, 0}},  {StandardView::Top, {0, 0, 1}},  {StandardView::Bottom, {0, 0, -1}}};
  for (const auto& [view, from] : views) {
    ViewCamera camera;
    camera.LookFrom(view);
    EXPECT_EQ(camera.Ahead() * -1, from);
    EXPECT_EQ(camera.Up(), from[2] == 0 ? (Vector3{0, 0, 1}) : (Vector3{0, from[2], 0}));
  }
}

/// Points, flat boxes and endless zooming leave a camera that can be drawn with.
TEST(ViewCamera, StaysUsable) {
  ViewCamera camera;
  camera.Fit({{5, 5, 5}, {5, 5, 5}}, 1);
  EXPECT_EQ(camera.Focus(), (Vector3{5, 5, 5}));
  EXPECT_EQ(camera.Distance(), 1) << "a point has no size";
  for (const double factor : {1e-3, 1e3}) {
    for (int i = 0; i < 200; ++i) camera.Zoom(factor, 0.5, 0.5);
    EXPECT_TRUE(std::isfinite(camera.Focus()[0]) && camera.Distance() > 0);
  }
  for (int i = 0; i < 100'000; ++i) camera.Turn({1, 2, 3}, 0.01, 0.007);
  EXPECT_NEAR(Length(camera.Up()), 1, 1e-12);
  EXPECT_NEAR(Dot(camera.Ahead(), camera.Up()), 0, 1e-12);
  const ViewCamera before = camera;
  camera.ZoomTo(0, 0, 0, 0, 1);
  EXPECT_EQ(camera, before);
}

TEST(Looking, GoesBackAndForward) {
  Looking looking;
  int told = 0;
  const Subscription follower = looking.Subscribe([&](const ViewCamera&) { ++told; });
  looking.SetPicture([] {
    const auto box = [] { return std::optional(ViewBox{{0, 0, 0}, {1, 1, 1}}); };
    return Looking::Picture{1, box, [] { return std::optional<ViewBox>(); }};
  });
  looking.Begin();
  EXPECT_FALSE(looking.CanGoBack());
  const ViewCamera first = looking.Camera();
  looking.LookFrom(StandardView::Top);
  const ViewCamera second = looking.Camera();
  looking.FitAll();
  looking.FitSelection();  // nothing is
  EXPECT_EQ(told, 2) << "what changes nothing is no step";
  looking.SetParallel(true);
  const ViewCamera third = looking.Camera();
  looking.GoBack();
  EXPECT_EQ(looking.Camera(), second);
  looking.GoBack();
  EXPECT_EQ(looking.Camera(), first);
  EXPECT_FALSE(looking.CanGoBack());
  looking.GoBack();
  looking.GoForward();
  looking.GoForward();
  EXPECT_EQ(looking.Camera(), third);
  EXPECT_FALSE(looking.CanGoForward());
  looking.GoBack();
  looking.LookAlong({1, 0, 0}, {0, 0, 1});
  EXPECT_FALSE(looking.CanGoForward()) << "another way was taken";
  for (int i = 0; i < 1000; ++i) looking.SetParallel(i % 2 == 0);
  int back = 0;
  for (; looking.CanGoBack(); ++back) looking.GoBack();
  EXPECT_EQ(back, 100);
}

TEST(Looking, FitsWhatHasComeUntilSomebodyLooks) {
  std::optional<ViewBox> shown;
  const auto picture = [&] {
    const auto box = [&] { return shown; };
    return Looking::Picture{1, box, box};
  };
  Looking looking;
  looking.SetPicture(picture);
  looking.LookFrom(StandardView::Top);
  shown = ViewBox{{0, 0, 0}, {1, 1, 1}};
  looking.Begin();
  EXPECT_EQ(looking.Camera().Focus(), (Vector3{0.5, 0.5, 0.5})) << "nobody looks at nothing";
  looking.SetParallel(true);
  const ViewCamera camera = looking.Camera();
  shown = ViewBox{{0, 0, 0}, {9, 9, 9}};
  looking.Begin();
  EXPECT_EQ(looking.Camera(), camera);
  Looking resumed;
  resumed.SetPicture(picture);
  resumed.Resume(camera);
  resumed.Begin();
  EXPECT_EQ(resumed.Camera(), camera);
}

class LookCommands : public MeshTest {};

TEST_F(LookCommands, WhatIsSelectedIsLookedAt) {
  const iterator outer = AddMset(L"outer", 0, 2);
  const iterator inner = AddMset(L"inner", outer, 5);
  EXPECT_FALSE(SelectedBounds(m_doc));
  EXPECT_FALSE(IsPossible(*FindWindowCommand(kFitSelection), *m_session));
  const auto width = [&](iterator itr) {
    m_doc.Select({.records = {itr}});
    const auto box = SelectedBounds(m_doc);
    return box ? box->greatest[0] - box->least[0] : -1;
  };
  EXPECT_EQ(width(inner), 3);
  EXPECT_EQ(width(outer), 3) << "nested sets belong to it";
  EXPECT_TRUE(IsPossible(*FindWindowCommand(kFitSelection), *m_session));
}

TEST(MouseHabitsTable, EachCustomTurnsPansAndHasItsOwnButtons) {
  EXPECT_EQ(ActOf(MouseHabits::Own, kLeftDown), MouseAct::Turn);
  EXPECT_EQ(ActOf(MouseHabits::Own, kLeftDown | kControlHeld), MouseAct::Turn) << "Ctrl adds to what is picked";
  EXPECT_EQ(ActOf(MouseHabits::Gmsh, kRightDown), MouseAct::Pan);
  EXPECT_EQ(ActOf(MouseHabits::ParaView, kMiddleDown), MouseAct::Pan);
  EXPECT_EQ(ActOf(MouseHabits::FreeCad, kLeftDown), MouseAct::None);
  EXPECT_EQ(ActOf(MouseHabits::FreeCad, kLeftDown | kMiddleDown), MouseAct::Turn);
  EXPECT_EQ(ActOf(MouseHabits::FreeCad, kRightDown | kShiftHeld | kControlHeld), MouseAct::Zoom);
}

}  // namespace
}  // namespace qd::test
