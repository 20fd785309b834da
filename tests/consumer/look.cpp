// Linked to an example host: looks at its window when it is shown, keeps a picture where QD_PICTURE says, and ends
// the program: with 0 when a tree is to be seen, with titles and captions in words.
#include <QApplication>
#include <QSet>
#include <QTimer>
#include <QWidget>

static void Look() {
  const QWidgetList windows = QApplication::topLevelWidgets();
  const auto shown =
      std::find_if(windows.begin(), windows.end(), [](const QWidget* window) { return window->isVisible(); });
  if (shown == windows.end()) return QApplication::exit(3);
  const QImage picture = (*shown)->grab().toImage();
  if (const QByteArray place = qgetenv("QD_PICTURE"); !place.isEmpty()) picture.save(place);
  QSet<QRgb> colours;
  int dark = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      colours.insert(picture.pixel(x, y));
      dark += qGray(picture.pixel(x, y)) < 100 ? 1 : 0;
    }
  }
  QApplication::exit(colours.size() > 10 && dark > 300 ? 0 : 4);
}

static void Begin() {
  QTimer::singleShot(1000, qApp, Look);
}
Q_COREAPP_STARTUP_FUNCTION(Begin)
