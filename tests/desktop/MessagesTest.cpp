// What the program tells: how much it weighs, what of it is seen, and where it leads.

#include <QComboBox>
#include <QDesktopServices>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QToolButton>
#include <QUrl>

#include "InWindow.h"
#include "workbench/app/MessagePane.h"

namespace qd::test {
namespace {

using namespace workbench;

class ToldMessages : public InWindow {
 protected:
  QPlainTextEdit& Lines() { return *m_window->findChild<QPlainTextEdit*>("messageText"); }
  QComboBox& Least() { return *m_window->findChild<QComboBox*>("messageSeverity"); }
  QLineEdit& Part() { return *m_window->findChild<QLineEdit*>("messageFilter"); }
  MessagePane& Pane() { return *m_window->findChild<MessagePane*>(); }
  QStringList Seen() {
    QStringList seen;
    for (QTextBlock block = Lines().document()->begin(); block.isValid(); block = block.next()) {
      if (block.isVisible() && !block.text().isEmpty()) seen << block.text();
    }
    return seen;
  }
  /// Clicks into the line that holds a text.
  void ClickOn(const QString& text) {
    QTextCursor cursor = Lines().document()->find(text);
    ASSERT_FALSE(cursor.isNull()) << text.toStdString();
    cursor.clearSelection();
    Lines().setTextCursor(cursor);
    Lines().ensureCursorVisible();
    WaitForEvents();
    const QPoint place = Lines().viewport()->mapToGlobal(Lines().cursorRect(cursor).center());
    Display(QStringList{"mousemove"} << At({place.x() - 5, place.y()}) << QStringList{"click", "1"});
  }
};

TEST_F(ToldMessages, WeighAndCanBeLeftOut) {
  QFile bad(Path("bad.step"));
  ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
  bad.write("nothing");
  bad.close();
  Open(bad.fileName());
  Open(m_files.Make({"grid", "2"}, "grid.step"));
  Pane().Add({"two\nlines", Severity::Warning});
  ASSERT_EQ(Seen().size(), 4) << Seen().join('\n').toStdString();
  EXPECT_TRUE(QRegularExpression("^\\d\\d:\\d\\d:\\d\\d  \u2716 .*bad\\.step").match(Seen()[0]).hasMatch());
  Keep("messages");
  const auto* hidden = Pane().findChild<QLabel*>();
  Least().setCurrentIndex(1);
  EXPECT_EQ(Seen().size(), 3);
  EXPECT_TRUE(hidden->text().contains("1")) << hidden->text().toStdString();
  Least().setCurrentIndex(2);
  EXPECT_EQ(Seen().size(), 1);
  Pane().Add({"a note"});
  EXPECT_EQ(Seen().size(), 1);
  EXPECT_TRUE(WaitUntil([&] { return hidden->text().contains("4"); })) << hidden->text().toStdString();
  Keep("messages-errors");
  Least().setCurrentIndex(0);
  Part().setText("GRID");
  ASSERT_EQ(Seen().size(), 1);
  EXPECT_TRUE(Seen()[0].contains("grid.step"));
  Part().clear();
  EXPECT_EQ(Seen().size(), 5);
  EXPECT_TRUE(hidden->text().isEmpty());
  m_window->findChild<QToolButton*>("messageClear")->click();
  EXPECT_TRUE(Seen().isEmpty());
}

TEST_F(ToldMessages, AreSeenFromTheFirstOnAndLeaveTheReaderWhereHeReads) {
  MessagePane pane(nullptr);
  pane.Add({"before it shows"});
  pane.resize(500, 120);
  pane.show();
  auto* lines = pane.findChild<QPlainTextEdit*>("messageText");
  ASSERT_TRUE(WaitUntil([&] { return lines->isVisible(); }));
  WaitForEvents();
  EXPECT_EQ(lines->verticalScrollBar()->value(), 0);
  for (int i = 0; i < 50; ++i) pane.Add({"more"});
  EXPECT_EQ(lines->verticalScrollBar()->value(), lines->verticalScrollBar()->maximum());
  lines->verticalScrollBar()->setValue(3);
  pane.Add({"while somebody reads"});
  EXPECT_EQ(lines->verticalScrollBar()->value(), 3);
}

TEST_F(ToldMessages, LeadToRowsAndFolders) {
  QTextBrowser opener;  // whoever opens folders for the program
  QDesktopServices::setUrlHandler("file", &opener, "setSource");
  Open(m_files.Make({"grid", "2"}, "grid.step"));
  const std::vector<iterator> parts = Data().GetGeomPool().GetItrList();
  Pane().Add({"about a part", Severity::Note, {}, {parts[1]}});
  Pane().Add({"about nothing"});
  ClickOn("about a part");
  EXPECT_EQ(m_window->Document().GetSelectBuffer(), std::vector<iterator>{parts[1]});
  m_window->Document().Select({});
  Display({"key", "Return"});
  EXPECT_EQ(m_window->Document().GetSelectBuffer(), std::vector<iterator>{parts[1]}) << "Enter in the line";
  ClickOn("about nothing");
  EXPECT_EQ(m_window->Document().GetSelectBuffer(), std::vector<iterator>{parts[1]});
  EXPECT_TRUE(opener.source().isEmpty());
  ClickOn("grid.step");
  EXPECT_EQ(opener.source().toLocalFile(), m_files.Folder());
  // What is gone is said to be gone.
  EXPECT_EQ(Data().Delete({parts[1]}), 1);
  ClickOn("about a part");
  EXPECT_TRUE(Messages().contains("is gone")) << Messages().toStdString();
  QDesktopServices::unsetUrlHandler("file");
}

}  // namespace
}  // namespace qd::test
