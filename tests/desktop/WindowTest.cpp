// The window with real mouse and key events of the display.

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QTimer>

#include "InWindow.h"
#include "platform/qt/QtConvert.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {
namespace {

using namespace workbench;

class Window : public InWindow {
 protected:
  std::string Print() { return PrintTree(Tree()); }
  HTREEITEM Part(int index) {
    HTREEITEM row = Tree().GetChildItem(Tree().GetNextSiblingItem(Tree().GetChildItem(Tree().GetRootItem())));
    for (; index > 0; --index) row = Tree().GetNextSiblingItem(row);
    return row;
  }
  void ClickRow(int part, int right) {
    CRect area;
    ASSERT_TRUE(Tree().GetItemRect(Part(part), area, true));
    const CPoint at = Tree().ClientToScreen({area.left + right, (area.top + area.bottom) / 2});
    Display(QStringList{"mousemove"} << At(at) << QStringList{"click", "1"});
  }
  /// How many pixels of the view show a colour like this.
  int Pixels(const std::function<bool(const QColor&)>& like) {
    const QImage image = m_window->View().grabFramebuffer();
    int count = 0;
    for (int y = 0; y < image.height(); y += 2) {
      for (int x = 0; x < image.width(); x += 2) count += like(image.pixelColor(x, y)) ? 1 : 0;
    }
    return count;
  }
  int YellowPixels() {
    return Pixels([](const QColor& c) { return c.hue() > 40 && c.hue() < 55 && c.saturation() > 100; });
  }
};

TEST_F(Window, AClickOnACheckBoxHidesThePartInTheView) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const int shown = YellowPixels();  // the shaft is the only yellow part
  ASSERT_GT(shown, 200);
  constexpr int kCheckBox = -30;
  ClickRow(1, kCheckBox);
  EXPECT_LT(YellowPixels(), shown / 20);
  EXPECT_NE(Print().find("[ ] Shaft"), std::string::npos);
  ClickRow(1, kCheckBox);
  EXPECT_GT(YellowPixels(), shown * 9 / 10);
}

TEST_F(Window, SelectionDeletionAndUndoGoBothWays) {
  const auto empty = m_window->Document().GetDatabase().Snapshot();
  Open(m_files.Make({"pump"}, "pump.step"));
  ClickRow(1, 10);
  EXPECT_EQ(m_window->Document().GetSelectBuffer().size(), 1U);
  EXPECT_EQ(YellowPixels(), 0);  // highlighted
  Display({"key", "Delete"});
  EXPECT_EQ(Print().find("Shaft"), std::string::npos);
  Display({"key", "ctrl+z"});
  EXPECT_NE(Print().find("[x] Shaft"), std::string::npos);
  EXPECT_GT(YellowPixels(), 200);
  Display({"key", "ctrl+z"});
  EXPECT_EQ(m_window->Document().GetDatabase().Snapshot(), empty);  // the import is one act
  // A click in the middle of the view picks what stands there.
  Display({"key", "ctrl+shift+z"});
  const QPoint middle = m_window->View().mapToGlobal(m_window->View().rect().center());
  Display(QStringList{"mousemove"} << At({middle.x(), middle.y()}) << QStringList{"click", "1"});
  EXPECT_EQ(Tree().GetSelectedCount(), 1);
}

TEST_F(Window, TheStatusBarSaysWhatKeysDoWhereTheFocusIs) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const auto says = [this](const QString& text) {
    return WaitUntil([&] { return m_window->findChild<QLabel*>("hint")->text().contains(text); });
  };
  ClickRow(1, 10);
  EXPECT_TRUE(says("F2: rename"));
  Display({"key", "F2"});
  EXPECT_TRUE(says("Enter: keep"));
  Display({"key", "Escape", "ctrl+f"});
  EXPECT_TRUE(says("Enter: next match"));
}

/// The pane shows what is selected, whichever tree it was selected in, and survives what its own edits bring.
TEST_F(Window, ThePageIsOfWhatIsSelectedLast) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const auto lines = [this] {
    m_window->Properties().ShowNow();
    return m_window->Properties().Lines();
  };
  CQDTreeListCtrl& sets = m_window->SetTreePane().Bar().GetTreeCtrl();
  m_window->SetTreePane().raise();
  Wait(100);
  CQDTreeItem* set = sets.GetQDRootItem()->Children().front()->Children().front();
  sets.SelectCTItem(set);
  Wait(100);
  EXPECT_EQ(lines().value(1), "Name: " + ToQt(set->GetTitle()));
  auto* selection = m_window->findChild<QLabel*>("selection");
  ASSERT_NE(selection, nullptr);
  EXPECT_EQ(selection->text(), "Selected: Geometry sets: 1");
  m_window->ModelTreePane().raise();
  Wait(100);
  ClickRow(0, 10);
  EXPECT_EQ(selection->text(), "Selected: Parts: 1");
  const iterator part = Tree().NodeOf(Part(0))->GetIterator();
  EXPECT_EQ(sets.NodeOf(sets.GetFirstSelectedItem()), sets.FindGeomNode(part)) << "the other tree follows";
  const auto editors = m_window->Properties().findChildren<QLineEdit*>();
  ASSERT_FALSE(editors.isEmpty());
  editors.front()->setText("edited");
  emit editors.front()->editingFinished();
  Wait(100);
  EXPECT_EQ(Data().GetGeomPool().GetAtNU(part)->name, L"edited");
  EXPECT_TRUE(lines().join(' ').contains("edited"));
  Tree().SetItemState(Part(1), kRowSelected, kRowSelected);
  Tree().OnSelchangAction();
  EXPECT_EQ(lines().mid(0, 3), (QStringList{"Selected: ", "Parts: 2", "Geometry: "}));
}

TEST_F(Window, AnIsolationIsLeftByItsAction) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const std::string before = Print();
  Tree().SelectCTItem(Tree().NodeOf(Part(1)));
  Tree().OnMenuEvent(41009);  // shows the shaft only
  Wait(50);
  EXPECT_NE(Print(), before);
  for (QAction* action : m_window->findChildren<QAction*>()) {
    if (action->text() == Text("IDS_WB_LEAVE_ISOLATION")) action->trigger();
  }
  Wait(50);
  EXPECT_EQ(Print(), before);
}

TEST_F(Window, AnImportOfAThousandBodiesLeavesTheWindowAlive) {
  const QString path = m_files.Make({"grid", "1000"}, "grid.step");
  Wait(1000);  // the window's own first frames are not meant
  QElapsedTimer sinceTick;
  qint64 longest = 0;
  QTimer tick;
  QObject::connect(&tick, &QTimer::timeout, [&] { longest = std::max(longest, sinceTick.restart()); });
  sinceTick.start();
  tick.start(1);
  Open(path);
  tick.stop();
  std::cout << "longest time without handling events: " << longest << " ms\n";
  EXPECT_NE(Print().find("Body 1000  id=1000"), std::string::npos);
}

TEST_F(Window, ABadFileIsNamedAndChangesNothing) {
  const std::string before = Print();
  m_window->Import({m_files.Write("bad.step", "hello"), m_files.Folder() + "/none.step"});
  ASSERT_TRUE(WaitUntil([this] { return !m_window->IsImporting(); }));
  EXPECT_EQ(m_window->FailedImports(), 2);
  EXPECT_EQ(Print(), before);
}

}  // namespace
}  // namespace qd::test
