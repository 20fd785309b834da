// The manual in the window, and what its page of keys says.

#include <QTextBrowser>
#include <QTextDocument>

#include "InWindow.h"
#include "workbench/app/ManualWindow.h"
#include "workbench/session/WindowCommands.h"

namespace qd::test {
namespace {

using namespace workbench;

class Manual : public InWindow {
 protected:
  QTextBrowser& Open(unsigned command) {
    for (QAction* action : m_window->findChildren<QAction*>()) {
      if (action->text() == Text(FindWindowCommand(command)->key)) action->trigger();
    }
    return static_cast<ManualWindow*>(Dialog("manual"))->Browser();
  }
  static QStringList LinksOf(const QTextDocument& page) {
    QStringList links;
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
      for (auto at = block.begin(); !at.atEnd(); ++at) {
        const QTextCharFormat format = at.fragment().charFormat();
        if (format.isAnchor()) links << format.anchorHref();
        if (format.isImageFormat()) links << format.toImageFormat().name();
      }
    }
    return links;
  }
};

TEST_F(Manual, EveryPageIsThereThatALinkLeadsTo) {
  QTextBrowser& browser = Open(kManual);
  QStringList waiting{"index.md"};
  for (qsizetype i = 0; i < waiting.size(); ++i) {
    browser.setSource(QUrl(waiting[i]));
    EXPECT_GT(browser.toPlainText().size(), 100) << waiting[i].toStdString();
    for (const QString& link : LinksOf(*browser.document())) {
      if (!link.endsWith(".md")) {
        EXPECT_TRUE(QFile::exists(":/manual/" + link)) << waiting[i].toStdString() << ": " << link.toStdString();
      } else if (!waiting.contains(link)) {
        waiting << link;
      }
    }
  }
  EXPECT_GE(waiting.size(), 9);
  browser.setSource(QUrl("tree.md"));
  Wait(100);
  Keep("manual", Dialog("manual"));
}

TEST_F(Manual, ThePageOfKeysHasAllKeysOfTheWindow) {
  const QString page = Open(kKeysPage).toPlainText();
  for (const QAction* action : m_window->findChildren<QAction*>()) {
    for (const QKeySequence& key : action->shortcuts()) {
      const QString name = key == QKeySequence(Qt::Key_Delete) ? "Delete" : key.toString();
      EXPECT_TRUE(page.contains(name)) << name.toStdString() << " of " << action->text().toStdString();
    }
  }
}

}  // namespace
}  // namespace qd::test
