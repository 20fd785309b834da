// Looking at a model with the display's own mouse and keys; what is picked against geometry that is computed here.

#include <QMouseEvent>
#include <QRubberBand>
#include <cmath>

#include "InWindow.h"
#include "workbench/display/ViewSettings.h"
#include "workbench/view/SectionHandles.h"
#include "workbench/view/ViewCube.h"

namespace qd::test {
namespace {

using namespace workbench;

class LookingAt : public InWindow {
 protected:
  LookingAt() {
    m_window->resize(900, 650);
    m_window->activateWindow();
    Wait(100);
  }

  Looking& Look() { return m_window->Document().GetLooking(); }
  ModelView& View() { return m_window->View(); }
  /// In half heights from the middle of the view.
  QPointF PlaceOf(const QPointF& at) {
    const double half = View().height() / 2.0;
    return {(at.x() - View().width() / 2.0) / half, (half - at.y()) / half};
  }
  bool IsCutAway(const Vector3& point) {
    for (const SectionPlane& plane : m_window->Document().GetSections().Planes()) {
      if (Dot(point - plane.point, plane.normal) > 0) return true;
    }
    return false;
  }
  /// The part that a line of sight meets first, by its triangles, and how far before the eye; 0 for none. Where a
  /// section cuts the line inside a part, that part is seen.
  std::pair<iterator, double> Seen(const QPointF& at) {
    const ViewCamera& camera = Look().Camera();
    const QPointF place = PlaceOf(at);
    const Vector3 eye = camera.PointAt(place.x(), place.y(), 0);
    const Vector3 ahead = camera.PointAt(place.x(), place.y(), 1) - eye;
    std::pair<iterator, double> first{0, 1e30};
    const auto meet = [&](iterator itr, double depth) {
      if (depth > 0 && depth < first.second && !IsCutAway(eye + ahead * (depth + 1e-6))) first = {itr, depth};
    };
    for (const iterator itr : Data().GetGeomPool().GetItrList()) {
      const PartFacets& facets = Data().GetGeomPool().GetAtNU(itr)->shape->facets;
      std::vector<double> depths;
      for (std::size_t i = 0; i < facets.triangles.size(); i += 3) {
        Vector3 corner[3];
        for (std::size_t c = 0; c < 3; ++c) {
          const float* point = &facets.points[facets.triangles[i + c] * 3];
          corner[c] = {point[0], point[1], point[2]};
        }
        const Vector3 a = corner[1] - corner[0];
        const Vector3 b = corner[2] - corner[0];
        const double volume = Dot(Cross(ahead, b), a);
        if (std::abs(volume) < 1e-12) continue;
        const Vector3 from = eye - corner[0];
        const double u = Dot(Cross(ahead, b), from) / volume;
        const double v = Dot(Cross(from, a), ahead) / volume;
        const double t = Dot(Cross(from, a), b) / volume;
        if (u >= 0 && v >= 0 && u + v <= 1) depths.push_back(t);
      }
      for (const double depth : depths) {
        if (!IsCutAway(eye + ahead * depth)) meet(itr, depth);
      }
      for (const SectionPlane& plane : m_window->Document().GetSections().Planes()) {
        const double slope = Dot(ahead, plane.normal);
        const double depth = Dot(plane.point - eye, plane.normal) / slope;
        const auto before = std::count_if(depths.begin(), depths.end(), [=](double one) { return one < depth; });
        if (slope < -1e-9 && before % 2 == 1) meet(itr, depth);
      }
    }
    return first;
  }
  /// Whether it is clear which part is seen: not at an edge.
  bool IsClear(const QPointF& at) {
    const iterator part = Seen(at).first;
    for (const QPointF& aside : {QPointF(2, 0), QPointF(-2, 0), QPointF(0, 2), QPointF(0, -2)}) {
      if (Seen(at + aside).first != part) return false;
    }
    return true;
  }
  void Mouse(QEvent::Type type, const QPointF& at, Qt::MouseButton button, Qt::MouseButtons buttons,
             Qt::KeyboardModifiers keys = {}) {
    QMouseEvent event(type, at, View().mapToGlobal(at), button, buttons, keys);
    QApplication::sendEvent(&View(), &event);
  }
  iterator Pick(const QPointF& at) {
    Mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
    const auto& picked = m_window->Document().GetSelectBuffer();
    return picked.size() == 1 ? picked.front() : 0;
  }
  /// Picks all over the view; how many parts were met.
  std::size_t ExpectPicksAsSeen() {
    std::set<iterator> met;
    constexpr int kStep = 97;
    for (int y = kStep; y < View().height(); y += kStep) {
      for (int x = kStep; x < View().width(); x += kStep) {
        const QPointF at(x + 0.5, y + 0.5);
        if (!IsClear(at)) continue;
        const iterator part = Seen(at).first;
        EXPECT_EQ(Pick(at), part) << x << ' ' << y;
        met.insert(part);
      }
    }
    return met.size();
  }
};

TEST_F(LookingAt, KeysLookFromEverywhereAndClicksPickWhatIsSeen) {
  Open(m_files.Make({"pump"}, "pump.step"));
  for (const bool parallel : {false, true}) {
    if (parallel) Display({"key", "ctrl+shift+o"});
    ASSERT_EQ(Look().Camera().IsParallel(), parallel);
    for (const char* key : {"1", "2", "3", "4", "5", "6", "7"}) {
      SCOPED_TRACE(key);
      const ViewCamera before = Look().Camera();
      Display({"key", QString("ctrl+") + key});
      EXPECT_NE(Look().Camera(), before);
      EXPECT_GE(ExpectPicksAsSeen(), 1U);
    }
  }
}

TEST_F(LookingAt, TheSelectionIsZoomedToAndTheWayBackIsKept) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const ViewCamera all = Look().Camera();
  CQDTreeItem* bolt = Tree().GetQDRootItem()->GetChild(1)->GetChild(5);
  Tree().SelectCTItem(bolt);
  Tree().OnSelchangAction();
  Display({"key", "ctrl+8"});
  EXPECT_LT(Look().Camera().Distance(), all.Distance() / 3);
  EXPECT_EQ(Seen(QRectF(View().rect()).center()).first, bolt->GetIterator());
  const ViewCamera near = Look().Camera();
  Display({"key", "ctrl+shift+b"});
  EXPECT_EQ(Look().Camera(), all);
  Display({"key", "ctrl+shift+n"});
  EXPECT_EQ(Look().Camera(), near);
  Display({"key", "ctrl+0"});
  EXPECT_NEAR(Look().Camera().Distance(), all.Distance(), 1e-9);
}

/// What was under the pointer when a drag began is under it while the wheel turns, and stands still while turning.
/// Edges lie on their faces; those behind a face do not show through it, however near one looks.
TEST_F(LookingAt, HiddenEdgesStayHiddenFromNear) {
  Open(m_files.Make({"pump"}, "pump.step"));
  ViewCamera camera = Look().Camera();
  camera.Zoom(4, 0.1, 0.1);
  Look().Keep();
  Look().Move(camera);
  const auto picture = [this] {
    EXPECT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    return View().grabFramebuffer();
  };
  const QImage edges = picture();
  std::vector<int> items;
  for (const iterator part : Data().GetGeomPool().GetItrList()) {
    items.push_back(Data().GetGeomPool().GetAtNU(part)->cadItem);
  }
  m_window->Document().GetDisplay().Parts().SetRenderMode(items, 0);
  m_window->Document().GetDisplay().Deliver();
  const QImage faces = picture();
  int drawn = 0;
  for (int y = 0; y < faces.height(); ++y) {
    for (int x = 0; x < faces.width(); ++x) {
      const int darker = faces.pixelColor(x, y).lightness() - edges.pixelColor(x, y).lightness();
      drawn += darker > 12 ? 1 : 0;
    }
  }
  // What is seen of the edges is some two and a half times as long as the picture is wide; with the hidden ones it
  // is thirteen times as long.
  EXPECT_GT(drawn, faces.width());
  EXPECT_LT(drawn, faces.width() * 4);
}

TEST_F(LookingAt, TheModelFollowsThePointer) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const QPointF at = QRectF(View().rect()).center() + QPointF(0.33, 0.42) * (View().height() / 2.0);
  const auto pointAt = [this](const QPointF& place) {
    const QPointF half = PlaceOf(place);
    return Look().Camera().PointAt(half.x(), half.y(), Seen(place).second);
  };
  ASSERT_NE(Seen(at).first, 0);
  const Vector3 point = pointAt(at);
  const auto expectStill = [&](double pixels) {
    const double pixel = Look().Camera().HalfHeight() / (View().height() / 2.0);
    EXPECT_LT(Length(pointAt(at) - point), pixels * pixel);
  };
  const QPoint on = View().mapToGlobal(at.toPoint());
  Display(QStringList{"mousemove"} << At({on.x(), on.y()}) << QStringList{"click", "4", "click", "4"});
  expectStill(3);
  const ViewCamera before = Look().Camera();
  Mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
  Mouse(QEvent::MouseMove, at - QPointF(40, 10), Qt::NoButton, Qt::LeftButton);
  Mouse(QEvent::MouseMove, at - QPointF(60, 20), Qt::NoButton, Qt::LeftButton);
  Mouse(QEvent::MouseButtonRelease, at - QPointF(60, 20), Qt::LeftButton, Qt::NoButton);
  EXPECT_GT(Length(Look().Camera().Eye() - before.Eye()), before.Distance() / 10);
  expectStill(3);
  Display({"key", "ctrl+shift+b"});
  EXPECT_EQ(Look().Camera(), before) << "a drag is one step";
}

TEST_F(LookingAt, DragsWithTwoButtonsAreStepsAndNoClicks) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const ViewCamera before = Look().Camera();
  const QPointF at = QRectF(View().rect()).center();
  ASSERT_NE(Seen(at).first, 0);
  Mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
  EXPECT_TRUE(m_window->Document().GetSelectBuffer().empty()) << "it was pressed elsewhere";
  ViewSettings::Ours().SetHabits(MouseHabits::FreeCad);
  Mouse(QEvent::MouseButtonPress, at, Qt::MiddleButton, Qt::MiddleButton);
  Mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::MiddleButton | Qt::LeftButton);
  Mouse(QEvent::MouseMove, at + QPointF(60, 20), Qt::NoButton, Qt::MiddleButton | Qt::LeftButton);
  Mouse(QEvent::MouseButtonRelease, at + QPointF(60, 20), Qt::LeftButton, Qt::MiddleButton);
  Mouse(QEvent::MouseMove, at + QPointF(61, 20), Qt::NoButton, Qt::MiddleButton);
  Mouse(QEvent::MouseButtonRelease, at + QPointF(61, 20), Qt::MiddleButton, Qt::NoButton);
  EXPECT_GT(Length(Look().Camera().Eye() - before.Eye()), before.Distance() / 10);
  Look().GoBack();
  EXPECT_EQ(Look().Camera(), before);
  EXPECT_FALSE(Look().CanGoBack());
  // A drag without an act is no click either; one that returns is no step.
  Mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
  Mouse(QEvent::MouseMove, at + QPointF(60, 20), Qt::NoButton, Qt::LeftButton);
  Mouse(QEvent::MouseButtonRelease, at + QPointF(60, 20), Qt::LeftButton, Qt::NoButton);
  EXPECT_TRUE(m_window->Document().GetSelectBuffer().empty());
  ViewSettings::Ours().SetHabits(MouseHabits::Own);
  Mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
  Mouse(QEvent::MouseMove, at + QPointF(60, 20), Qt::NoButton, Qt::LeftButton);
  Mouse(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton);
  Mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
  EXPECT_FALSE(Look().CanGoBack());
}

/// The release may go to another program.
TEST_F(LookingAt, ARectangleGoesWithItsDrag) {
  View().AwaitRectangle();
  Mouse(QEvent::MouseButtonPress, {100, 100}, Qt::LeftButton, Qt::LeftButton);
  Mouse(QEvent::MouseMove, {200, 200}, Qt::NoButton, Qt::LeftButton);
  ASSERT_NE(View().findChild<QRubberBand*>(), nullptr);
  QFocusEvent lost(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
  QApplication::sendEvent(&View(), &lost);
  EXPECT_EQ(View().findChild<QRubberBand*>(), nullptr);
}

TEST_F(LookingAt, SectionsShowTheInsideAndPicksMeetIt) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const auto middle = [this] {
    const QImage image = View().grabFramebuffer();
    return image.pixelColor(image.rect().center());
  };
  Display({"key", "ctrl+4"});
  const QColor outside = middle();
  Display({"key", "ctrl+shift+x"});
  ASSERT_EQ(m_window->Document().GetSections().Planes().size(), 1U);
  EXPECT_GE(ExpectPicksAsSeen(), 3U) << "the inside of several parts";
  EXPECT_NE(middle().hue(), outside.hue());
  Keep("section-x");
  for (const char* key : {"ctrl+7", "ctrl+shift+y", "ctrl+shift+v", "ctrl+shift+o"}) {
    SCOPED_TRACE(key);
    Display({"key", key});
    EXPECT_GE(ExpectPicksAsSeen(), 3U);
    Keep(QString("section-") + key);
  }
  // By its handle a plane follows the pointer.
  auto* handles = static_cast<SectionHandles*>(View().findChild<QWidget*>("sectionHandles"));
  ASSERT_TRUE(handles != nullptr && handles->Handles().size() == 2);
  const SectionHandles::Handle handle = handles->Handles()[0];
  const Vector3 before = m_window->Document().GetSections().Planes()[0].point;
  const QPointF moved = (handle.tip - handle.at) / 2;
  Mouse(QEvent::MouseButtonPress, handle.tip, Qt::LeftButton, Qt::LeftButton);
  Mouse(QEvent::MouseMove, handle.tip + moved, Qt::NoButton, Qt::LeftButton);
  Mouse(QEvent::MouseButtonRelease, handle.tip + moved, Qt::LeftButton, Qt::NoButton);
  const Vector3 after = m_window->Document().GetSections().Planes()[0].point;
  EXPECT_NEAR(after[0] - before[0], handle.length / 2, handle.length / 20);
  m_window->Document().GetSections().Clear();
  Wait(50);
  // At a face: the plane is that of the face which is clicked.
  Display({"key", "ctrl+5"});
  View().AwaitFace();
  Pick({4, View().height() / 2.0});  // beside the model, which is no answer
  EXPECT_TRUE(m_window->Document().GetSections().Planes().empty());
  const QPointF at = QRectF(View().rect()).center() + QPointF(0.55 * View().height() / 2.0, 0);
  Pick(at);
  ASSERT_EQ(m_window->Document().GetSections().Planes().size(), 1U);
  EXPECT_NEAR(m_window->Document().GetSections().Planes()[0].normal[2], 1, 1e-6);
}

TEST_F(LookingAt, TheCubeLooksFromWhereItIsClicked) {
  auto* cube = static_cast<ViewCube*>(View().findChild<QWidget*>("viewCube"));
  ASSERT_NE(cube, nullptr);
  Display({"key", "ctrl+1"});
  const QPointF middle = QRectF(cube->rect()).center();
  const auto click = [&](const QPointF& at) {
    const QPoint screen = cube->mapToGlobal(at.toPoint());
    Display(QStringList{"mousemove"} << At({screen.x(), screen.y()}) << QStringList{"click", "1"});
    return Look().Camera().Ahead();
  };
  // The right rim of the front, then what is the middle from there, the top right corner.
  const Vector3 edge = click(middle + QPointF(25, 0));
  EXPECT_NEAR(edge[0], -std::sqrt(0.5), 1e-9);
  EXPECT_NEAR(edge[1], std::sqrt(0.5), 1e-9);
  const Vector3 corner = click(middle + QPointF(0, -25));
  EXPECT_NEAR(corner[2], -std::sqrt(1 / 3.0), 1e-9);
  EXPECT_EQ(cube->DirectionAt({1, 1}), std::nullopt);
  // Beside the cube the view is pressed, and dragged to wherever.
  const QPoint beside = cube->mapToGlobal(QPoint(1, 1));
  const QPoint on = cube->mapToGlobal(middle.toPoint());
  Display(QStringList{"mousemove"} << At({beside.x(), beside.y()}) << QStringList{"mousedown", "1"});
  Display(QStringList{"mousemove"} << At({on.x(), on.y()}));
  Display({"mouseup", "1"});
  EXPECT_GT(Length(Look().Camera().Ahead() - corner), 0.05);
  EXPECT_GT(std::abs(Look().Camera().Ahead()[2]), 0.05) << "no face, no edge";
}

TEST_F(LookingAt, APictureHasTheSizeThatWasAskedFor) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const QImage seen = View().grabFramebuffer();
  ASSERT_TRUE(m_window->SavePicture(Path("large.png"), {1600, 1200}));
  const QImage picture(Path("large.png"));
  ASSERT_EQ(picture.size(), QSize(1600, 1200));
  // By heights the same is at the same place.
  int different = 0;
  constexpr int kProbes = 40;
  for (int i = -kProbes; i < kProbes; ++i) {
    const double x = i * 0.5 / kProbes;
    const QColor a = seen.pixelColor(static_cast<int>(seen.width() / 2.0 + x * seen.height()), seen.height() / 3);
    const QColor b = picture.pixelColor(static_cast<int>(800 + x * 1200), 400);
    different += std::abs(a.lightness() - b.lightness()) > 24 ? 1 : 0;
  }
  EXPECT_LT(different, kProbes / 4);
  EXPECT_FALSE(m_window->SavePicture(Path("no/such/folder.png"), {64, 64}));
  const QString other = m_files.Write("notes.txt", "kept");
  EXPECT_FALSE(m_window->SavePicture(other, {64, 64}));
  EXPECT_EQ(QFileInfo(other).size(), 4) << "what is no picture is not replaced by one";
  EXPECT_EQ(View().grabFramebuffer().size(), seen.size());
}

}  // namespace
}  // namespace qd::test
