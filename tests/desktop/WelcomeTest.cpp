// What an empty window offers to begin with.

#include <QSettings>
#include <QToolButton>

#include "InWindow.h"

namespace qd::test {
namespace {

using namespace workbench;

class Welcome : public InWindow {
 protected:
  QWidget& Panel() { return *m_window->findChild<QWidget*>("welcome"); }
  QToolButton* Button(const QString& text) {
    for (auto* button : Panel().findChildren<QToolButton*>()) {
      if (button->text() == text) return button;
    }
    return nullptr;
  }
  void Click(QWidget* button) {
    ASSERT_NE(button, nullptr);
    const QPoint at = button->mapToGlobal(button->rect().center());
    Display(QStringList{"mousemove"} << At({at.x(), at.y()}) << QStringList{"click", "1"});
  }
};

TEST_F(Welcome, TheExampleIsAClickAwayAndTheOfferGoesWithTheFirstRecord) {
  const QString grid = m_files.Make({"grid", "2"}, "grid.step");
  QSettings().setValue("recent", QStringList{grid, Path("gone & away.step")});
  Restart();
  ASSERT_TRUE(Panel().isVisible());
  EXPECT_TRUE(WaitUntil([this] { return !Button("gone && away.step")->isEnabled(); })) << "missing";
  EXPECT_TRUE(Button("grid.step")->isEnabled());
  Keep("welcome");
  Click(Button("Example Model"));
  EXPECT_TRUE(WaitUntil([this] { return Data().GetGeomPool().Count() == 9 && m_window->IsUpToDate(); }));
  EXPECT_FALSE(Panel().isVisible());
  while (Data().CanUndo()) Data().Undo();
  EXPECT_FALSE(Panel().isVisible()) << "what was undone can be done again";
  Restart();
  Click(Button("grid.step"));
  EXPECT_TRUE(WaitUntil([this] { return Data().GetGeomPool().Count() == 2; }));
  EXPECT_FALSE(Panel().isVisible());
}

TEST_F(Welcome, ComesBackAfterAFileThatCannotBeRead) {
  ASSERT_TRUE(Panel().isVisible());
  m_window->Import({Path("nothing.step")});
  EXPECT_TRUE(WaitUntil([this] { return m_window->IsUpToDate() && Panel().isVisible(); }));
  m_window->resize(500, 300);
  Keep("welcome-small");
}

}  // namespace
}  // namespace qd::test
