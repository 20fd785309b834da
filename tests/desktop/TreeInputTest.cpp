// A works tree in a window of its own under the display's real mouse and keyboard.

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include <array>
#include <random>

#include "Display.h"
#include "platform/qt/QtToolkit.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "support/InputRows.h"
#include "support/ReaderText.h"
#include "workbench/display/WorkDocument.h"

namespace qd::test {
namespace {

class TreeInput : public ::testing::Test {
 protected:
  TreeInput() {
    if (qEnvironmentVariableIsSet("QD_DARK")) QGuiApplication::setPalette(QPalette(QColor(45, 45, 48)));
    m_bar.SetDocument(&m_doc);
    m_bar.Create(nullptr, 0, {0, 0, 400, 500});
    QtToolkit::WidgetOf(m_bar)->setParent(&m_window);
    m_window.setGeometry(100, 100, 400, 500);
    QtToolkit::WidgetOf(m_bar)->setGeometry(0, 0, 400, 500);
    m_window.show();
    m_window.activateWindow();
    QtToolkit::WidgetOf(m_bar)->show();
    m_bar.CreateTreeItems(1, &m_factory, 1);
    Wait(300);
  }
  ~TreeInput() override {
    m_bar.DestroyTreeItems();
    QtToolkit::WidgetOf(m_bar)->setParent(nullptr);
    m_bar.DestroyWindow();
  }
  CQDTreeListCtrl& Tree() { return m_bar.GetTreeCtrl(); }
  /// A screen point on a line of the tree: on its title, or at x of the window.
  CPoint Line(int line, int x = 90) {
    return Tree().ClientToScreen({x, line * Tree().GetItemHeight() + Tree().GetItemHeight() / 2});
  }
  /// Presses at the first point, walks to the others, does what `last` says and releases.
  void Drag(const std::vector<CPoint>& points, const QString& picture, const QStringList& last = {}) {
    constexpr int kNearTheEnd = 550;
    QTimer::singleShot(kNearTheEnd, &m_window, [picture] { Picture(picture); });
    QStringList script = QStringList{"mousemove"} << At(points.front()) << QStringList{"mousedown", "1"};
    for (const CPoint& point : points) {
      script << QStringList{"sleep", "0.1", "mousemove"} << At(point);
    }
    Display(script << QStringList{"sleep", "0.5"} << last << QStringList{"sleep", "0.2", "mouseup", "1"});
  }
  /// Keeps a picture of the screen for whoever wants to look, where QD_PICTURES names a folder.
  static void Picture(const QString& name) {
    const QString folder = qEnvironmentVariable("QD_PICTURES");
    if (!folder.isEmpty()) QGuiApplication::primaryScreen()->grabWindow(0).save(folder + "/" + name + ".png");
  }

  QtToolkit m_toolkit;
  workbench::WorkDocument m_doc;
  InputRows m_factory;
  QWidget m_window;
  CWorksTreeBar m_bar;
};

TEST_F(TreeInput, ABandSelectsAndADragDrops) {
  Drag({Line(1, 8), Line(2, 30), Line(4, 60)}, "band");
  EXPECT_EQ(Tree().GetSelectedCount(), 4);
  Drag({Line(2), Line(3), Line(8)}, "drag");
  EXPECT_EQ(InputRow::dropped, "4 on Item 7");
  EXPECT_FALSE(Tree().IsDragging());
  InputRow::dropped.clear();
  m_window.setFocus();  // Escape is heard although the tree has no focus
  Drag({Line(5), Line(6), Line(9)}, "escape", {"key", "Escape"});
  EXPECT_EQ(InputRow::dropped, "");
  EXPECT_EQ(Tree().GetItemState(Tree().GetFirstSelectedItem(), kRowDropHighlight), 0U);
}

TEST_F(TreeInput, TitlesAreEditedInPlace) {
  Display(QStringList{"mousemove"} << At(Line(3)) << QStringList{"click", "1"});
  Display({"key", "F2"});
  ASSERT_EQ(Tree().IsEditing(), 1);
  Display({"type", "--delay", "5", "new.name (%1)"});
  Picture("rename");
  Display({"key", "Return"});
  EXPECT_EQ(InputRow::renamed, "new.name (%1)");
  EXPECT_TRUE(Tree().HasFocus());
  Display({"key", "F2"});
  Display({"type", "other"});
  Display({"key", "Escape"});
  EXPECT_EQ(Tree().GetItemText(Tree().GetFirstSelectedItem(), 0), L"new.name (%1)");
  Display({"key", "F2"});
  Display({"type", "clicked away"});
  Display(QStringList{"mousemove"} << At(Line(6)) << QStringList{"click", "1"});
  EXPECT_EQ(InputRow::renamed, "clicked away");
}

TEST_F(TreeInput, APressOnTheTipTakesItAway) {
  Tree().SetItemText(Tree().GetChildItem(Tree().GetRootItem()), 0, std::wstring(200, L'w'));
  const auto tip = [this]() -> QLabel* {
    for (QLabel* label : m_window.findChildren<QLabel*>()) {
      if (label->isVisible() && label->windowType() == Qt::ToolTip) return label;
    }
    return nullptr;
  };
  Display(QStringList{"mousemove"} << At(Line(3)));
  Display(QStringList{"mousemove"} << At(Line(1)));
  ASSERT_TRUE(WaitUntil([&] { return tip() != nullptr; }));
  // A pointer on its way to the tip would have left the row, which takes the tip away, too.
  const QPointF at(5, 5);
  QMouseEvent press(QEvent::MouseButtonPress, at, tip()->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, {});
  QApplication::sendEvent(tip(), &press);
  EXPECT_EQ(tip(), nullptr);
}

/// What stands on the screen is what painting everything anew shows.
TEST_F(TreeInput, NothingStaleStandsOnTheScreen) {
  std::mt19937 random(7);
  const auto roll = [&random](int sides) { return static_cast<int>(random() % static_cast<unsigned>(sides)); };
  QWidget* widget = QtToolkit::WidgetOf(Tree());
  const auto compare = [&](const std::string& act) {
    Wait(40);
    const QPoint at = widget->mapToGlobal(QPoint(0, 0));
    const QImage shown = QGuiApplication::primaryScreen()
                             ->grabWindow(0, at.x(), at.y(), widget->width(), widget->height())
                             .toImage()
                             .convertToFormat(QImage::Format_RGB32);
    const QImage whole = widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
    if (shown == whole) return;
    Picture("stale");
    FAIL() << "after " << act;
  };
  CQDTreeItem* deep = Tree().GetQDRootItem();
  for (int level = 0; level < 25; ++level) {
    auto* row = new InputRow(&Tree(), deep->GetChild(0) != nullptr ? deep->GetChild(0) : deep, L"Deep row");
    row->MakeItem(kInsertFirst);  // it belongs to the row above
    deep = row;
  }
  Tree().ExpandBelow(Tree().GetRootItem(), ExpandAction::Expand);
  compare("at first");
  for (int step = 0; step < 60 && !HasFailure(); ++step) {
    const int act = roll(7);
    const auto row = Tree().GetFirstVisibleItem();
    std::string did = std::to_string(act);
    switch (act) {
      case 0:
        Tree().GetHeader().SetItemWidth(0, std::array{60, 200, 390, 700}[static_cast<std::size_t>(roll(4))]);
        break;
      case 1:
      case 2:
        m_toolkit.Deliver({.kind = MessageKind::WheelAcross, .target = &Tree(), .amount = roll(30) - 10});
        break;
      case 3:
        Tree().ScrollTo(static_cast<std::size_t>(roll(40)));
        break;
      case 4:
        Tree().Expand(row, ExpandAction::Toggle);
        break;
      case 5:
        m_window.resize(std::array{150, 300, 400}[static_cast<std::size_t>(roll(3))], 500);
        QtToolkit::WidgetOf(m_bar)->setGeometry(m_window.rect());
        break;
      default:
        Tree().SelectAlone(row);
        break;
    }
    compare("act " + did + " of step " + std::to_string(step));
  }
}

TEST_F(TreeInput, KeysWalkTypeAndCheck) {
  Display(QStringList{"mousemove"} << At(Line(1)) << QStringList{"click", "1"});
  Display({"key", "shift+Down"});
  Display({"key", "shift+Down"});
  EXPECT_EQ(Tree().GetSelectedCount(), 3);
  Display({"key", "space"});
  EXPECT_EQ(Tree().WhichCheck(Tree().GetFirstSelectedItem()), kUnchecked);
  EXPECT_EQ(Tree().GetSelectedCount(), 3);
  Display({"key", "ctrl+a"});
  EXPECT_EQ(Tree().GetSelectedCount(), 41);
  Display({"type", "--delay", "5", "item 17"});
  EXPECT_EQ(Tree().GetItemText(Tree().GetFirstSelectedItem(), 0), L"Item 17") << "the blank belongs to the title";
  Display({"key", "ctrl+Down"});
  Display({"key", "ctrl+Down"});
  Display({"key", "ctrl+space"});
  EXPECT_EQ(Tree().GetSelectedCount(), 2);
  Picture("walked");
  Display({"key", "ctrl+c"});
  EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith("Item 17\t")) << "as lines with tabs";
  EXPECT_EQ(QGuiApplication::clipboard()->text().count('\n'), 2);
  EXPECT_TRUE(Tree().IsExpanded(Tree().GetRootItem()));
  Display({"key", "ctrl+Home"});
  Display({"key", "KP_Subtract"});
  EXPECT_FALSE(Tree().IsExpanded(Tree().GetRootItem()));
  Display({"key", "KP_Multiply"});
  EXPECT_TRUE(Tree().IsExpanded(Tree().GetRootItem()));
  Display({"key", "End"});
  EXPECT_EQ(Tree().GetItemText(Tree().GetFirstSelectedItem(), 0), L"Item 39");
}

// ---- as a screen reader hears it ------------------------------------------------------------------------

/// A branch in words; each row's parent and place must fit too.
void Read(QAccessibleInterface& above, int level, std::string& text) {
  for (int place = 0; place < above.childCount(); ++place) {
    QAccessibleInterface* row = above.child(place);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->role(), QAccessible::TreeItem);
    EXPECT_EQ(row->parent(), &above);
    EXPECT_EQ(above.indexOfChild(row), place);
    text += std::string(static_cast<std::size_t>(level), ' ') + row->text(QAccessible::Name).toStdString() + ":";
    const QAccessible::State state = row->state();
    EXPECT_EQ(state.expandable != 0, row->childCount() != 0);
    EXPECT_TRUE(state.selectable && state.multiSelectable && state.focusable && !state.invalid);
    for (const auto& [is, word] : {std::pair(state.selected != 0, " selected"),
                                   {state.focused != 0, " focused"},
                                   {state.expanded != 0, " expanded"},
                                   {state.collapsed != 0, " collapsed"},
                                   {state.checkable != 0, " checkable"},
                                   {state.checked != 0, " checked"},
                                   {state.invisible != 0, " invisible"},
                                   {state.offscreen != 0, " offscreen"}}) {
      if (is) text += word;
    }
    text += "\n";
    const QStringList actions = row->actionInterface()->actionNames();
    EXPECT_EQ(actions.contains("Expand"), state.expandable != 0);
    EXPECT_EQ(actions.contains(QAccessibleActionInterface::toggleAction()), state.checkable != 0);
    Read(*row, level + 1, text);
  }
}

TEST_F(TreeInput, AScreenReaderHearsWhatTheRowsShowAfterEachAct) {
  QAccessible::setActive(true);
  QAccessibleInterface* tree = QAccessible::queryAccessibleInterface(QtToolkit::WidgetOf(Tree()));
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->role(), QAccessible::Tree);
  const auto compare = [&](const char* act) {
    Wait(30);
    std::string text;
    Read(*tree, 0, text);
    EXPECT_EQ(text, ReaderText(Tree(), true)) << act;
  };
  const auto row = [&](int index) { return tree->child(0)->child(index); };
  const auto handle = [this](int index) {
    HTREEITEM at = Tree().GetChildItem(Tree().GetRootItem());
    while (index-- > 0) at = Tree().GetNextSiblingItem(at);
    return at;
  };
  compare("at first");
  Tree().SetFocus();
  row(5)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
  compare("a reader selected a row");
  EXPECT_TRUE(Tree().IsSelected(handle(5)));
  Display({"key", "shift+Down"});
  compare("the keys went on");
  row(2)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  compare("a reader pressed a box");
  EXPECT_EQ(Tree().WhichCheck(handle(2)), kUnchecked);
  const QRect place = row(4)->rect();
  EXPECT_EQ(tree->childAt(place.center().x(), place.center().y()), row(4));
  EXPECT_EQ(tree->childAt(place.left(), place.top()), row(4));
  EXPECT_EQ(tree->childAt(place.left(), place.top() - 1), row(3));
  QAccessibleInterface* gone = row(0);
  Tree().GetQDRootItem()->DeleteChild(Tree().GetQDRootItem()->GetChild(0));
  compare("a row is gone");
  EXPECT_FALSE(gone->isValid());
  EXPECT_TRUE(gone->state().invalid);
  gone->actionInterface()->doAction("Expand");  // harmless
  Tree().EnsureVisible(handle(38));
  compare("scrolled");
  tree->child(0)->actionInterface()->doAction("Expand");
  compare("a reader closed the branch");
  EXPECT_FALSE(Tree().IsExpanded(Tree().GetRootItem()));
}

TEST_F(TreeInput, NothingOfATreeIsLeftForScreenReadersWhenItIsGone) {
  QAccessible::setActive(true);
  const auto idOf = [](const CWnd& window) {
    return QAccessible::uniqueId(QAccessible::queryAccessibleInterface(QtToolkit::WidgetOf(window)));
  };
  CWorksTreeBar other;
  other.SetDocument(&m_doc);
  other.Create(nullptr, 0, {0, 0, 100, 100});
  const std::array ids{idOf(other), idOf(other.GetTreeCtrl())};
  for (const QAccessible::Id id : ids) EXPECT_NE(QAccessible::accessibleInterface(id), nullptr);
  other.DestroyWindow();
  Wait(30);
  for (const QAccessible::Id id : ids) EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

}  // namespace
}  // namespace qd::test
