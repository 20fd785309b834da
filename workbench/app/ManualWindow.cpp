#include "workbench/app/ManualWindow.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "workbench/app/Translated.h"

namespace qd::workbench {

ManualWindow::ManualWindow(QWidget* parent) : QDialog(parent), m_browser(new QTextBrowser(this)) {
  setObjectName("manual");
  SetTitle(*this, "IDS_WB_MANUAL_TITLE");
  m_browser->setSearchPaths({":/manual"});
  auto* contents = new QPushButton(this);
  SetText(*contents, "IDS_WB_MANUAL_CONTENTS");
  connect(contents, &QPushButton::clicked, this, [this] { ShowPage("index.md"); });
  auto* back = new QPushButton(this);
  SetText(*back, "IDS_WB_MANUAL_BACK");
  back->setEnabled(false);
  connect(back, &QPushButton::clicked, m_browser, &QTextBrowser::backward);
  connect(m_browser, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
  auto* close = new QPushButton(this);
  SetText(*close, "IDS_WB_CLOSE");
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  for (QPushButton* button : {contents, back, close}) button->setAutoDefault(false);  // Enter follows links
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(contents);
  buttons->addWidget(back);
  buttons->addStretch();
  buttons->addWidget(close);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(m_browser);
  layout->addLayout(buttons);
  resize(760, 640);
}

void ManualWindow::ShowPage(const QString& name) {
  m_browser->setSource(QUrl(name));
  show();
  raise();
  activateWindow();
  m_browser->setFocus();
}

}  // namespace qd::workbench
