#include "widgets/WorksTreePanel.h"

#include <QApplication>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/QtToolkit.h"
#include "qd_wrt/core/CQDTreeIcon.h"
#include "qd_wrt/panel/CWorksTreeBar.h"

namespace qd {

namespace {

/// The toolkit of programs that make none; it goes with the application, behind its windows.
void NeedToolkit() {
  static std::unique_ptr<QtToolkit> toolkit;
  if (!IToolkit::Exists()) {
    toolkit = std::make_unique<QtToolkit>();
    qAddPostRoutine([] { toolkit.reset(); });
  }
  if (dynamic_cast<QtToolkit*>(&IToolkit::Instance()) == nullptr) {
    qFatal("QD_wrt: the program has made a toolkit that is not Qt's; its widgets need that");
  }
}

}  // namespace

WorksTreePanel::WorksTreePanel(QWidget* parent) : QWidget(parent) {
  NeedToolkit();
  m_bar = std::make_unique<CWorksTreeBar>();
  const CPoint size = m_bar->GetPreferredSize();
  m_bar->Create(nullptr, 0, {0, 0, size.x, size.y});
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(QtToolkit::WidgetOf(*m_bar));
  setFocusProxy(QtToolkit::WidgetOf(m_bar->GetTreeCtrl()));
}

WorksTreePanel::~WorksTreePanel() {
  m_bar->DestroyTreeItems();
  m_bar->DestroyWindow();
}

unsigned WorksTreePanel::IconNumber(const QIcon& icon) {
  constexpr int kSize = 32;  // an icon's place at twice the usual resolution
  return icon.isNull() ? 0 : IconNumber(icon.pixmap(QSize(kSize, kSize), 1.0).toImage());
}

unsigned WorksTreePanel::IconNumber(const QImage& image) {
  if (image.isNull()) return 0;
  constexpr int kLargest = 1024;
  QImage source = image;
  if (std::max(source.width(), source.height()) > kLargest) {
    source = source.scaled(kLargest, kLargest, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  }
  source = source.convertToFormat(QImage::Format_ARGB32);
  IconImage given{.width = source.width(), .height = source.height(), .pixels = {}};
  for (int y = 0; y < source.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(source.constScanLine(y));
    given.pixels.insert(given.pixels.end(), line, line + source.width());
  }
  return CQDTreeIcon::AddIcon(given);
}

QSize WorksTreePanel::sizeHint() const {
  const CPoint size = m_bar->GetPreferredSize();
  return {size.x, size.y};
}

}  // namespace qd
