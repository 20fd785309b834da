// Picking faces, edges and points of parts, elements and nodes of meshes with the display's own mouse and keys,
// against geometry that is known.

#include <QToolBar>

#include "EntityPick.h"

namespace qd::test {
namespace {

using namespace workbench;

TEST_F(EntityPick, FacesEdgesAndPointsArePickedAsTheyAreSeen) {
  const iterator part = AddBlock(0, 0, 0);
  AddBlock(0, 2, 0);  // behind the first one, from the front
  Display({"key", "ctrl+1"});
  Display({"key", "ctrl+shift+3"});
  ASSERT_EQ(Picked().Filter(), PickFilter::Faces);
  const auto faceAt = [&](const Vector3& at) {
    Click(at);
    const auto all = Picked().All();
    return all.size() == 1 ? BoxOf(Data(), Picked(), all[0]).value_or(ViewBox{}) : ViewBox{};
  };
  const ViewBox front = faceAt({0.35, 0, 0.35});
  EXPECT_EQ(front.least, (Vector3{0, 0, 0}));
  EXPECT_EQ(front.greatest, (Vector3{0.7F, 0, 0.7F}));
  EXPECT_EQ(Picked().All()[0].owner, part);
  EXPECT_TRUE(Status().contains("Block")) << Status().toStdString();
  EXPECT_GT(Pixel({0.35, 0, 0.35}).red(), 200) << "highlighted";
  Keep("pick-face");
  // Edges within some pixels; the edge behind, at the same place of the picture but for perspective, is hidden.
  Display({"key", "ctrl+shift+4"});
  Click({0.35, 0, 0.7}, {}, "1", {0, 3});
  ASSERT_EQ(Picked().All().size(), 1U);
  EXPECT_EQ(BoxOf(Data(), Picked(), Picked().All()[0])->least, (Vector3{0, 0, 0.7F}));
  EXPECT_EQ(BoxOf(Data(), Picked(), Picked().All()[0])->greatest, (Vector3{0.7F, 0, 0.7F}));
  Click({0.35, 0, 0.35});
  EXPECT_TRUE(Picked().IsEmpty()) << "no edge is seen there";
  Click(Vector3{0, 2, 0.35});
  EXPECT_TRUE(Picked().IsEmpty()) << "that edge of the block behind is covered";
  Display({"key", "ctrl+shift+5"});
  Click({0.7, 0, 0.7}, {}, "1", {-2, 2});
  ASSERT_EQ(Picked().All().size(), 1U);
  EXPECT_EQ(PlaceOf(Data(), Picked(), Picked().All()[0]), (Vector3{0.7F, 0, 0.7F}));
}

TEST_F(EntityPick, KeysAddAndTurnRoundAndEscapeClears) {
  const iterator set = AddMesh(3, 1, 2);
  Display({"key", "ctrl+1"});
  Display({"key", "ctrl+shift+7"});
  const auto numbers = [this] {
    std::vector<std::uint64_t> all;
    for (const auto& one : Picked().All()) all.push_back(one.number);
    return all;
  };
  using Numbers = std::vector<std::uint64_t>;
  Click({0.5, 0, 0.4});
  EXPECT_EQ(numbers(), Numbers{1});
  EXPECT_EQ(Picked().All()[0], (workbench::Picked{PickFilter::Elements, set, 1}));
  Click({2.5, 0, 1.4}, {"shift"});
  Click({2.5, 0, 1.4}, {"shift"});
  EXPECT_EQ(numbers(), (Numbers{1, 6}));
  Click({1.4, 0, 0.4}, {"ctrl"});
  Click({0.5, 0, 0.4}, {"ctrl"});
  EXPECT_EQ(numbers(), (Numbers{6, 2}));
  EXPECT_TRUE(Status().contains("2")) << Status().toStdString();
  Keep("pick-elements");
  Display({"key", "ctrl+shift+8"});
  Click({1, 0, 1}, {"shift"}, "1", {3, -2});
  ASSERT_EQ(Picked().All().size(), 3U);
  EXPECT_EQ(PlaceOf(Data(), Picked(), Picked().All()[2]), (Vector3{1, 0, 1}));
  Click({1.5, 0, 0.5}, {"shift"});
  EXPECT_EQ(Picked().All().size(), 3U) << "no node is there";
  Display({"key", "Escape"});
  EXPECT_TRUE(Picked().IsEmpty());
  // What a section has cut away is not picked, but what is seen through it.
  Display({"key", "ctrl+shift+7"});
  m_window->Document().GetSections().Add({{0, 0.5, 0}, {0, -1, 0}, std::nullopt});
  Wait(100);
  Click({0.5, 0, 0.5});
  EXPECT_TRUE(Picked().IsEmpty()) << "the cut is no element's face";
}

TEST_F(EntityPick, RegionsTakeWhatIsSeenOrAll) {
  const iterator set = AddMesh(4, 3, 3);
  Display({"key", "ctrl+1"});
  Display({"key", "ctrl+0"});
  const auto pull = [this](const Vector3& from, const Vector3& to) {
    const QPoint a = View().mapToGlobal(SeenAt(from).toPoint());
    const QPoint b = View().mapToGlobal(SeenAt(to).toPoint());
    Display(QStringList{"mousemove"} << At({a.x(), a.y()}) << QStringList{"mousedown", "1"});
    // One call a corner: moves that come while a frame is drawn are one event to the window, the last.
    Display(QStringList{"mousemove"} << At({b.x(), a.y()}));
    Display(QStringList{"mousemove"} << At({b.x(), b.y()}));
    Keep("pick-region");
    Display({"mouseup", "1"});
    const auto* pulled = View().findChild<QWidget*>("region");
    EXPECT_TRUE(WaitUntil([&] { return !pulled->isVisible() && m_window->IsUpToDate(); }));
    return Picked().All().size();
  };
  Display({"key", "ctrl+shift+7"});
  Display({"key", "ctrl+shift+e"});
  EXPECT_EQ(pull({-0.1, 0, -0.1}, {2.1, 0, 2.1}), 4U) << "the middles of four in front";
  EXPECT_TRUE(Picked().Contains({PickFilter::Elements, set, 14}));
  Display({"key", "ctrl+shift+t"});
  Display({"key", "ctrl+shift+e"});
  EXPECT_EQ(pull({-0.1, 0, -0.1}, {2.1, 0, 2.1}), 12U) << "and those behind them";
  Display({"key", "ctrl+shift+t"});
  Display({"key", "ctrl+shift+8"});
  Display({"key", "ctrl+shift+l"});
  EXPECT_EQ(pull({-0.1, 0, -0.1}, {2.2, 0, 2.5}), 6U) << "a triangle with the nodes below its long side";
  Display({"key", "ctrl+shift+e"});
  Display({"key", "Escape"});
  EXPECT_EQ(Picked().All().size(), 6U) << "that ended the rectangle only";
  Click({2, 0, 3}, {"shift"});
  EXPECT_EQ(Picked().All().size(), 7U);
}

TEST_F(EntityPick, PickedElementsGoIntoANewMeshSet) {
  const iterator set = AddMesh(3, 1, 2);
  Display({"key", "ctrl+1"});
  Display({"key", "ctrl+0"});
  Display({"key", "ctrl+shift+7"});
  Click({0.5, 0, 0.4});
  Click({2.5, 0, 1.4}, {"shift"});
  Display({"key", "ctrl+shift+m"});
  QDialog* dialog = Dialog("mesh");
  ASSERT_NE(dialog, nullptr);
  Keep("picked-into-set", dialog);
  dialog->findChild<QLineEdit*>("IDS_WB_PICKED_NEW_NAME")->setText("Ribs");
  dialog->findChild<QAbstractButton*>("intoNew")->click();
  const auto sets = Data().GetMsetPool().GetItrList();
  ASSERT_EQ(sets.size(), 2U);
  const tagTMset& made = *Data().GetMsetPool().GetAtNU(sets.back());
  EXPECT_EQ(made.name, L"Ribs");
  EXPECT_EQ(made.mesh->blocks[0].elementIds, (std::vector<std::uint64_t>{1, 6}));
  EXPECT_EQ(Data().GetMsetPool().GetAtNU(set)->elementCount, 4U);
  EXPECT_TRUE(Picked().IsEmpty()) << "they are of another set now";
  Data().Undo();
  EXPECT_EQ(Data().GetMsetPool().GetAtNU(set)->elementCount, 6U);
}

TEST_F(EntityPick, FacesAndEdgesAreTakenOutOfTheirPart) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const std::vector<iterator> before = Data().GetGeomPool().GetItrList();
  const iterator housing = before.front();
  const auto shape = Data().GetGeomPool().GetAtNU(housing)->shape;
  const auto parts = Picked().PartsOf(shape);
  std::vector<workbench::Picked> all;
  for (std::uint64_t face = 1; face <= parts->FaceCount(); ++face)
    all.push_back({PickFilter::Faces, housing, face});
  const auto faces = static_cast<std::ptrdiff_t>(all.size());
  all.push_back({PickFilter::Edges, housing, 1});
  all.push_back({PickFilter::Points, housing, 1});
  Picked().Set(all);
  Display({"key", "ctrl+shift+g"});
  ASSERT_TRUE(WaitUntil([this] { return !m_window->IsWorking(); }));
  const std::vector<iterator> after = Data().GetGeomPool().GetItrList();
  ASSERT_EQ(after.size(), before.size() + all.size()) << Messages().toStdString();
  double area = 0;
  std::set<std::string> shapes;
  for (std::size_t i = before.size(); i < after.size(); ++i) {
    const tagTGeom& taken = *Data().GetGeomPool().GetAtNU(after[i]);
    shapes.insert(taken.shape->brep);
    const auto place = static_cast<std::ptrdiff_t>(i - before.size());
    EXPECT_EQ(taken.kind, place < faces    ? TopologyKind::Surface
                          : place == faces ? TopologyKind::Curve
                                           : TopologyKind::Point);
    area += taken.shape->area;
  }
  EXPECT_EQ(shapes.size(), all.size()) << "each is another one";
  EXPECT_NEAR(area, shape->area, shape->area * 1e-6) << "all faces of the part";
  Data().Undo();
  EXPECT_EQ(Data().GetGeomPool().GetItrList(), before);
}

TEST_F(EntityPick, WhatAClickWouldTakeIsShownAndItsMenuOpens) {
  const iterator part = AddBlock(0, 0, 0);
  Display({"key", "ctrl+1"});
  auto* mark = View().findChild<QWidget*>("hover");
  const auto point = [this](const Vector3& at) {
    const QPoint on = View().mapToGlobal(SeenAt(at).toPoint());
    Display(QStringList{"mousemove"} << At({on.x(), on.y()}));
  };
  point({0.35, 0, 0.35});
  EXPECT_TRUE(mark->isVisible());
  Display({"key", "ctrl+shift+4"});
  point({0.35, 0, 0.697});
  EXPECT_TRUE(mark->isVisible());
  Keep("pick-hover");
  point({0.3, 0, 0.3});
  EXPECT_FALSE(mark->isVisible()) << "no edge is there";
  EXPECT_TRUE(Picked().IsEmpty());
  // The menu of a part is that of its row.
  Display({"key", "ctrl+shift+1"});
  const auto isOpen = [] { return QApplication::activePopupWidget() != nullptr; };
  bool opened = false;
  QTimer::singleShot(700, [&] {
    opened = isOpen();
    if (opened) QApplication::activePopupWidget()->close();
  });
  Click({0.35, 0, 0.35}, {}, "3");
  EXPECT_TRUE(WaitUntil([&] { return opened; }, 3));
  EXPECT_EQ(m_window->Document().GetSelectBuffer(), std::vector{part});
}

TEST_F(EntityPick, ASelectedPartIsSeenWhateverItsColour) {
  const iterator part = AddBlock(0, 0, 0);
  tagTGeom orange = *Data().GetGeomPool().GetAtNU(part);
  orange.colour = Rgb(0xF0, 0x90, 0x20);
  Data().BeginTransaction(L"colour");
  Data().GetGeomPool().Change(part, orange);
  Data().CommitTransaction(1);
  Display({"key", "ctrl+1"});
  const QColor before = Pixel({0.35, 0, 0.35});
  Click({0.35, 0, 0.35});
  ASSERT_EQ(m_window->Document().GetSelectBuffer(), std::vector{part});
  const QColor after = Pixel({0.35, 0, 0.35});
  Keep("selected-orange");
  EXPECT_GT(std::abs(before.hue() - after.hue()), 90)
      << before.name().toStdString() << " " << after.name().toStdString();
}

}  // namespace
}  // namespace qd::test
