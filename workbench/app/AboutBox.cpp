#include "workbench/app/AboutBox.h"

#include <QGridLayout>
#include <QIcon>
#include <QMessageBox>

#include "platform/Version.h"
#include "workbench/app/MessageTables.h"

namespace qd::workbench {

void ShowAboutBox(QWidget& parent) {
  auto* box = new QMessageBox(&parent);  // deletes itself
  box->setObjectName("about");
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setWindowTitle(Text("IDS_WB_APP"));
  box->setIconPixmap(QIcon(":/org.qdwrt.workbench.svg").pixmap(64, 64));
  box->setTextFormat(Qt::PlainText);
  box->setText(Text("IDS_WB_APP") + " " QD_WRT_VERSION "\nQt " + qVersion());
  box->setInformativeText(Text("IDS_WB_ABOUT_LIBRARIES"));
  box->setStandardButtons(QMessageBox::Close);
  // A box is as wide as its shortest text, unless something in it is wider.
  constexpr int kWidth = 420;
  if (auto* grid = qobject_cast<QGridLayout*>(box->layout())) {
    grid->addItem(new QSpacerItem(kWidth, 0), grid->rowCount(), 0, 1, grid->columnCount());
  }
  box->open();
}

}  // namespace qd::workbench
