// The find bar of a panel under the display's real mouse and keyboard.

#include <QAccessible>
#include <QGuiApplication>
#include <QLineEdit>
#include <QScreen>
#include <QShortcut>
#include <QWidget>

#include "Display.h"
#include "platform/qt/QtToolkit.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "qd_wrt/panel/FindBar.h"
#include "support/InputRows.h"
#include "workbench/app/MessageTables.h"
#include "workbench/display/WorkDocument.h"

namespace qd::test {
namespace {

class FindInput : public ::testing::Test {
 protected:
  FindInput() {
    if (qEnvironmentVariableIsSet("QD_DARK")) QGuiApplication::setPalette(QPalette(QColor(45, 45, 48)));
    if (qEnvironmentVariableIsSet("QD_LANGUAGE")) m_texts.SetLanguage(qEnvironmentVariable("QD_LANGUAGE"));
    m_panel.SetDocument(&m_doc);
    m_panel.Create(nullptr, 0, {0, 0, 400, 500});
    Widget(m_panel)->setParent(&m_window);
    m_window.setGeometry(100, 100, 400, 500);
    Widget(m_panel)->setGeometry(0, 0, 400, 500);
    m_window.show();
    m_window.activateWindow();
    Widget(m_panel)->show();
    m_panel.CreateTreeItems(1, &m_rows, 1);
    Tree().SetFocus();
    Wait(300);
  }
  ~FindInput() override {
    m_panel.DestroyTreeItems();
    Widget(m_panel)->setParent(nullptr);
    m_panel.DestroyWindow();
  }
  static QWidget* Widget(const CWnd& window) { return QtToolkit::WidgetOf(window); }
  CQDTreeListCtrl& Tree() { return m_panel.GetTreeCtrl(); }
  QLineEdit* Field() { return Widget(m_panel)->findChild<QLineEdit*>(); }
  static void Keys(const QStringList& keys) { Display(QStringList{"key", "--delay", "30"} << keys); }
  static void Type(const QString& text) { Display({"type", "--delay", "10", "--", text}); }
  CString Query() { return Tree().GetFinder().GetQuery(); }
  /// Keeps a picture of the window for whoever wants to look, where QD_PICTURES names a folder.
  void Picture(const QString& name) {
    const QString folder = qEnvironmentVariable("QD_PICTURES");
    const QPoint at = m_window.mapToGlobal(QPoint(0, 0));
    if (folder.isEmpty()) return;
    QGuiApplication::primaryScreen()
        ->grabWindow(0, at.x(), at.y(), m_window.width(), m_window.height())
        .save(folder + "/" + name + ".png");
  }

  QtToolkit m_toolkit;
  workbench::MessageTables m_texts;
  workbench::WorkDocument m_doc;
  InputRows m_rows;
  QWidget m_window;
  CWorksTreeBar m_panel;
};

TEST_F(FindInput, KeysStayInTheFieldAndWhatTheyMeanHappens) {
  int program = 0;
  for (const QKeySequence& keys : {QKeySequence(Qt::Key_F3), QKeySequence(Qt::Key_Escape),
                                   QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Delete)}) {
    QObject::connect(new QShortcut(keys, &m_window), &QShortcut::activated, [&program] { ++program; });
  }
  Keys({"ctrl+f"});
  ASSERT_TRUE(Field()->hasFocus());
  Picture("find-empty");
  Type("item 1");
  EXPECT_EQ(Query(), L"item 1");
  Picture("find-filter");
  Keys({"Return", "F3", "Delete"});
  EXPECT_TRUE(Field()->hasFocus());
  Keys({"ctrl+f"});
  Type("-ty");
  Picture("find-offered");
  Keys({"Tab"});
  EXPECT_EQ(Field()->text(), "-type:");
  Type("s");
  Keys({"Down", "Down"});
  Picture("find-chosen");
  Keys({"Return"});
  EXPECT_EQ(Field()->text(), "-type:surface");
  Type(" nofield:1");
  EXPECT_EQ(Query(), L"-type:surface nofield");
  EXPECT_NE(Field()->palette().color(QPalette::Base), QGuiApplication::palette().color(QPalette::Base));
  Picture("find-wrong");
  Keys({"ctrl+f"});
  Type("item 2");
  Keys({"Return", "Down"});
  Picture("find-history");
  Keys({"Escape", "Tab", "Tab", "Tab"});
  EXPECT_FALSE(Field()->hasFocus());
  Picture("find-focus");
  Keys({"shift+ctrl+f"});
  EXPECT_EQ(Tree().GetFinder().GetMode(), RowFinder::Mode::Find);
  Picture("find-marked");
  m_window.resize(700, 500);
  Widget(m_panel)->resize(700, 500);
  Wait(300);
  Picture("find-wide");
  Keys({"ctrl+f", "Escape"});
  EXPECT_EQ(program, 0);
  EXPECT_FALSE(Tree().GetFinder().IsOn());
  EXPECT_TRUE(Widget(Tree())->hasFocus());
  m_panel.SetFilter(L"item 3");
  Wait(300);
  Picture("find-line");
  m_panel.SetFilter(L"nothing is called like this, which is a long text");
  Wait(300);
  Picture("find-none");
}

}  // namespace
}  // namespace qd::test
