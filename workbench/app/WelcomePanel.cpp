#include "workbench/app/WelcomePanel.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

#include "workbench/app/Translated.h"

namespace qd::workbench {

namespace {

constexpr int kMostFiles = 5;

QToolButton* AddButton(QVBoxLayout& rows) {
  auto* button = new QToolButton;
  button->setAutoRaise(true);
  button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  rows.addWidget(button);
  return button;
}

}  // namespace

WelcomePanel::WelcomePanel(QWidget* over, const QList<QAction*>& commands,
                           std::function<void(const QString&)> open)
    : QFrame(over), m_open(std::move(open)) {
  setObjectName("welcome");
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  setCursor(Qt::ArrowCursor);
  auto* rows = new QVBoxLayout(this);
  QLabel* title = NewLabel("IDS_WB_WELCOME");
  QFont large = title->font();
  large.setPointSizeF(large.pointSizeF() * 1.3);
  title->setFont(large);
  rows->addWidget(title);
  for (QAction* command : commands) AddButton(*rows)->setDefaultAction(command);
  m_recentTitle = NewLabel("IDS_WB_WELCOME_RECENT");
  rows->addWidget(m_recentTitle);
  m_files = new QVBoxLayout;
  rows->addLayout(m_files);
  rows->addWidget(NewLabel("IDS_WB_WELCOME_DROP"));
  auto* place = new QGridLayout(over);
  place->setSizeConstraint(QLayout::SetNoConstraint);  // the view may be smaller
  place->addWidget(this, 0, 0, Qt::AlignCenter);
  hide();
}

void WelcomePanel::ShowFor(bool nothingYet, const QStringList& recent) {
  if (nothingYet && (isHidden() || m_recent != recent)) {
    m_recent = recent;
    ListFiles();
  }
  setVisible(nothingYet);
}

void WelcomePanel::ListFiles() {
  while (m_files->count() != 0) {
    const QLayoutItem* item = m_files->takeAt(0);
    item->widget()->deleteLater();  // perhaps it is in the middle of its click
    delete item;
  }
  m_recentTitle->setHidden(m_recent.isEmpty());
  constexpr int kWidth = 340;  // pixels
  for (const QString& path : m_recent.mid(0, kMostFiles)) {
    QToolButton* button = AddButton(*m_files);
    const QFontMetrics metrics(button->font());
    button->setText(metrics.elidedText(QFileInfo(path).fileName(), Qt::ElideMiddle, kWidth).replace('&', "&&"));
    button->setToolTip("<p style='white-space:pre'>" + path.toHtmlEscaped());
    button->setProperty("path", path);
    connect(button, &QToolButton::clicked, this, [this, path] { m_open(path); });
  }
  m_missing.Look(m_recent, [this](const QString& path) {
    for (auto* button : findChildren<QToolButton*>()) {
      if (button->property("path") == path) button->setEnabled(false);
    }
  });
}

void WelcomePanel::changeEvent(QEvent* event) {
  // Cut anew for the width of other letters.
  if (event->type() == QEvent::FontChange && !isHidden()) ListFiles();
  QFrame::changeEvent(event);
}

QString ExampleFile() {
  for (const char* folder : {"../share/qd_wrt/examples", QD_EXAMPLES_FROM_PROGRAMS}) {
    const QFileInfo file(QCoreApplication::applicationDirPath() + "/" + folder + "/pump.step");
    if (file.isFile()) return file.canonicalFilePath();
  }
  return {};
}

}  // namespace qd::workbench
