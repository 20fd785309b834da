// The interface for C in widgets of Qt, and what becomes of Qt's widgets and toolkit when another part goes first.

#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QThread>
#include <QVBoxLayout>
#include <stdexcept>
#include <utility>

#include "platform/headless/HeadlessToolkit.h"
#include "platform/qt/QtToolkit.h"
#include "qd_wrt/c/qd_wrt.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "widgets/WorksTreeWidget.h"

namespace qd::test {
namespace {

/// Catches what handlers throw where Qt wants that to be done.
class Application final : public QApplication {
 public:
  using QApplication::QApplication;
  bool notify(QObject* receiver, QEvent* event) override {
    try {
      return QApplication::notify(receiver, event);
    } catch (const std::runtime_error&) {
      ++thrown;
      return false;
    }
  }
  static inline int thrown = 0;
};

qd_tree_options Options() {
  qd_tree_options options{};
  options.size = sizeof(options);
  options.interface_number = QD_INTERFACE;
  return options;
}

qd_node Add(qd_tree* tree, const qd_callbacks& calls) {
  qd_kind kind = 0;
  EXPECT_EQ(qd_kind_create(tree, &calls, &kind), QD_OK);
  qd_row row{};
  row.size = sizeof(row);
  row.fields = QD_ROW_TITLE | QD_ROW_KIND;
  row.title = "row";
  row.kind = kind;
  qd_node node = 0;
  EXPECT_EQ(qd_node_add(tree, 0, &row, &node), QD_OK);
  return node;
}

/// Clicks the title of the first row of a tree's widget.
void Click(QWidget& panel) {
  QApplication::processEvents();
  for (QWidget* widget : panel.findChildren<QWidget*>()) {
    if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) continue;
    const QPointF place(60, 6);
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      QMouseEvent event(type, place, widget->mapToGlobal(place), Qt::LeftButton,
                        type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
      QApplication::postEvent(widget, event.clone());
    }
  }
  QApplication::processEvents();
}

TEST(Widgets, ATreeOfAProgramInCStandsInAWidget) {
  const QtToolkit toolkit;
  auto window = std::make_unique<QWidget>();
  auto* layout = new QVBoxLayout(window.get());
  const qd_tree_options options = Options();
  qd_tree* tree = nullptr;
  EXPECT_EQ(qd_tree_create_headless(&options, &tree), QD_ERROR_TOOLKIT);
  int nothing = 0;
  EXPECT_EQ(qd_tree_create_in_qwidget(&options, &nothing, &tree), QD_ERROR_WINDOW) << "no widget at all";
  EXPECT_EQ(tree, nullptr);
  ASSERT_EQ(qd_tree_create_in_qwidget(&options, window.get(), &tree), QD_OK) << qd_last_error();
  void* widget = nullptr;
  ASSERT_EQ(qd_tree_qwidget(tree, &widget), QD_OK);
  layout->addWidget(static_cast<QWidget*>(widget));
  window->resize(300, 200);
  window->show();
  int clicks = 0;
  qd_callbacks calls{};
  calls.size = sizeof(calls);
  calls.user = &clicks;
  calls.clicked = [](void* user, qd_tree*, qd_node) { ++*static_cast<int*>(user); };
  const qd_node node = Add(tree, calls);
  Click(*window);
  EXPECT_EQ(clicks, 1);
  qd_node selected = 0;
  std::size_t count = 0;
  EXPECT_EQ(qd_selection_get(tree, &selected, 1, &count), QD_OK);
  EXPECT_EQ(selected, node);
  // Qt takes the widget with its parent; the tree is left without a window.
  window.reset();
  EXPECT_EQ(qd_tree_clear(tree), QD_ERROR_WINDOW);
  EXPECT_EQ(qd_tree_qwidget(tree, &widget), QD_ERROR_WINDOW);
  EXPECT_EQ(qd_tree_destroy(tree), QD_OK);
  EXPECT_EQ(qd_shutdown(), QD_OK);
}

/// The panel stands below the handlers of its own mouse.
TEST(Widgets, ATreeGoesInItsOwnCallback) {
  const QtToolkit toolkit;
  const qd_tree_options options = Options();
  qd_tree* tree = nullptr;
  ASSERT_EQ(qd_tree_create_in_qwidget(&options, nullptr, &tree), QD_OK);
  void* widget = nullptr;
  ASSERT_EQ(qd_tree_qwidget(tree, &widget), QD_OK);
  static_cast<QWidget*>(widget)->show();
  qd_callbacks calls{};
  calls.size = sizeof(calls);
  calls.clicked = [](void*, qd_tree* own, qd_node) { EXPECT_EQ(qd_tree_destroy(own), QD_OK); };
  const qd_node node = Add(tree, calls);
  Click(*static_cast<QWidget*>(widget));
  EXPECT_EQ(qd_node_remove(tree, node), QD_ERROR_TREE);
  EXPECT_EQ(qd_shutdown(), QD_OK);
}

TEST(Widgets, AToolkitThatGoesFirstTakesItsWidgetsAlong) {
  auto toolkit = std::make_unique<QtToolkit>();
  CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 300, 200});
  QWidget window;
  auto* layout = new QVBoxLayout(&window);
  layout->addWidget(QtToolkit::WidgetOf(bar));
  WorksTreeWidget widget;
  widget.Root().Add({.title = L"row"});
  widget.show();
  window.show();
  QApplication::processEvents();
  toolkit.reset();
  EXPECT_FALSE(bar.IsCreated());
  QApplication::processEvents();  // what is left of the widgets shows nothing
  EXPECT_EQ(widget.Find(1), nullptr);
}

TEST(Widgets, AnExceptionOfACallLeavesTheTreeAsItWas) {
  const QtToolkit toolkit;
  WorksTreeWidget tree;
  bool throws = true;
  int clicks = 0;
  const auto kind = std::make_shared<const HostNodeKind>(HostNodeKind{.clicked = [&](HostNode&) {
    if (throws) throw std::runtime_error("host");
    ++clicks;
  }});
  tree.Root().Add({.title = L"row"}, kind);
  tree.show();
  Click(tree);
  EXPECT_EQ(std::exchange(Application::thrown, 0), 1);
  throws = false;
  Click(tree);
  EXPECT_EQ(Application::thrown, 0);
  EXPECT_EQ(clicks, 1);
}

TEST(WidgetsDeathTest, AToolkitOfAnotherVersionIsRefused) {
  EXPECT_DEATH(QtToolkit("0.0.9"), "QD_wrt: the toolkit was built against another version");
}

}  // namespace
}  // namespace qd::test

int main(int count, char** arguments) {
  ::testing::InitGoogleTest(&count, arguments);
  ::testing::FLAGS_gtest_death_test_style = "fast";
  const qd::test::Application application(count, arguments);
  return RUN_ALL_TESTS();
}
