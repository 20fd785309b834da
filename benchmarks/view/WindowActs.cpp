#include <QApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QMouseEvent>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>

#include "benchmarks/view/ViewBench.h"
#include "platform/qt/QtToolkit.h"
#include "support/ManyParts.h"
#include "workbench/app/MainWindow.h"
#include "workbench/view/ModelView.h"
#include "workbench/view/ViewPicking.h"

namespace qd::bench {
namespace {

using workbench::MainWindow;
using workbench::ModelView;

constexpr COLORREF kSelected = Rgb(0xFF, 0x8C, 0x1A);

class Acts {
 public:
  explicit Acts(MainWindow& window) : m_window(window), m_view(window.View()) {
    QObject::connect(&m_view, &QOpenGLWidget::frameSwapped, &m_view, [this] { ++m_frames; });
    QObject::connect(&m_tick, &QTimer::timeout, &m_view,
                     [this] { m_longest = std::max(m_longest, m_sinceTick.restart()); });
  }

  /// Does something and tells when the first frame after it was shown, when everything was, and the longest time
  /// in which the window handled no event.
  /// `proof` looks at a picture: of the first frame, of which a part is enough, and of the whole.
  using Proof = std::function<bool(const QImage&, double part)>;
  void Do(const char* what, const std::function<void()>& act, const Proof& proof) {
    Settle();
    const int frames = m_frames;
    QElapsedTimer time;
    time.start();
    act();
    const double own = Ms(time);
    m_longest = 0;
    m_sinceTick.start();
    m_tick.start(1);
    while (m_frames == frames && time.elapsed() < kPatience) QApplication::processEvents(QEventLoop::AllEvents, 5);
    const double seen = Ms(time);
    const QImage soon = OnScreen();
    const QString pictures = qEnvironmentVariable("QD_PICTURES");
    if (!pictures.isEmpty()) soon.save(pictures + "/" + what + ".png");
    const bool first = proof(soon, kSome);
    while (!m_window.IsUpToDate() && time.elapsed() < kPatience) {
      QApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 5);
    }
    const double whole = Ms(time);
    QApplication::processEvents();
    m_tick.stop();
    char line[120];
    std::snprintf(line, sizeof(line), "%s: the act itself", what);
    Tell(line, own, true);
    std::snprintf(line, sizeof(line), "%s: first frame", what);
    Tell(line, seen, first);
    std::snprintf(line, sizeof(line), "%s: longest wait", what);
    Tell(line, static_cast<double>(m_longest), true);
    Settle();
    std::snprintf(line, sizeof(line), "%s: whole", what);
    Tell(line, whole, proof(m_view.grabFramebuffer(), 1));
  }

  void Settle() {
    for (int quiet = 0; quiet < 20; ++quiet) {
      QApplication::processEvents(QEventLoop::AllEvents, 20);
      if (!m_window.IsUpToDate()) quiet = 0;
    }
  }

  void Mouse(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent event(type, at, m_view.mapToGlobal(at), button, held, {});
    QApplication::sendEvent(&m_view, &event);
  }

  /// Clicks here and there; how long the slowest one took.
  void Pick() {
    Settle();
    int picked = 0;
    double slowest = 0;
    m_view.Picking().SetOnPick(
        [&](const std::vector<iterator>& records, workbench::PickMode) { picked += records.empty() ? 0 : 1; });
    constexpr int kClicks = 9;
    for (int click = 0; click < kClicks; ++click) {
      const QPointF at(m_view.width() * (40 + 2 * click) / 100.0, m_view.height() * (44 + click) / 100.0);
      Mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
      QElapsedTimer time;
      time.start();
      Mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
      slowest = std::max(slowest, Ms(time));
      Settle();
    }
    Tell("pick, the slowest of nine", slowest, picked > kClicks / 2);
  }

  void Turn() {
    Settle();
    const QImage before = m_view.grabFramebuffer();
    QPointF at(m_view.width() / 2.0, m_view.height() / 2.0);
    Mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
    constexpr int kMoves = 20;
    double total = 0;
    int drawn = 0;
    QImage meanwhile;
    for (int move = 0; move < kMoves; ++move) {
      QElapsedTimer time;
      time.start();
      const int frames = m_frames;
      at += QPointF(6, 2);
      Mouse(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton);
      while (m_frames == frames && time.elapsed() < kPatience)
        QApplication::processEvents(QEventLoop::AllEvents, 5);
      if (move > 0) total += Ms(time);  // the first one makes what is drawn while it turns
      if (move == 0) Tell("turning: first frame", Ms(time), true);
      drawn += m_frames - frames;
    }
    meanwhile = m_view.grabFramebuffer();
    QElapsedTimer time;
    time.start();
    Mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
    Tell("turning: a frame", total / (kMoves - 1), drawn >= kMoves && Covered(meanwhile) > Covered(before) / 3);
    Settle();
    Tell("turning: still frame after it", Ms(time), Covered(m_view.grabFramebuffer()) > Covered(before) / 2);
  }

  /// Pixels in the colours of blocks, which are the only green ones.
  static int Covered(const QImage& image) {
    return Count(image, [](const QColor& c) { return c.green() > c.blue() + 8 && c.hue() > 60; });
  }
  int Covered() { return Covered(m_view.grabFramebuffer()); }
  static int Highlighted(const QImage& image) {
    return Count(image, [](const QColor& c) { return c.hue() > 20 && c.hue() < 40 && c.red() > 100; });
  }

 private:
  static constexpr qint64 kPatience = 120'000;
  static constexpr double kSome = 0.02;  // of the whole picture is in a first frame
  /// What the window system shows.
  QImage OnScreen() {
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, m_view.mapToGlobal(QPoint()).x(), m_view.mapToGlobal(QPoint()).y(), m_view.width(),
                     m_view.height())
        .toImage();
  }
  static double Ms(const QElapsedTimer& time) { return static_cast<double>(time.nsecsElapsed()) / 1e6; }
  static int Count(const QImage& image, bool (*like)(const QColor&)) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) count += like(image.pixelColor(x, y)) ? 1 : 0;
    }
    return count;
  }

  MainWindow& m_window;
  ModelView& m_view;
  QTimer m_tick;
  QElapsedTimer m_sinceTick;
  qint64 m_longest = 0;
  int m_frames = 0;
};

double Resident() {
  std::FILE* file = std::fopen("/proc/self/statm", "r");
  long pages = 0;
  long resident = 0;
  if (file != nullptr && std::fscanf(file, "%ld %ld", &pages, &resident) != 2) resident = 0;
  if (file != nullptr) std::fclose(file);
  constexpr double kPage = 4096;
  return static_cast<double>(resident) * kPage / 1e6;
}

}  // namespace

void WindowActs(int parts) {
  workbench::MessageTables messages;
  QtToolkit toolkit;
  MainWindow window(messages);
  window.show();
  Acts acts(window);
  workbench::WorkDocument& doc = window.Document();
  workbench::Database& data = doc.GetDatabase();
  workbench::PartDisplay& display = doc.GetDisplay().Parts();
  const double before = Resident();
  const auto itrs = [&data] { return data.GetGeomPool().GetItrList(); };
  const auto show = [&](int shown) {
    display.BeginShowHide();
    for (const iterator itr : itrs()) display.SetShowHide(data.GetGeomPool().GetAtNU(itr)->cadItem, shown);
    display.EndShowHide();
  };
  const int least = window.View().width() * window.View().height() / 20;
  acts.Do(
      "add all", [&] { test::AddBlocks(data, parts); },
      [&](const QImage& p, double part) { return part < 1 || Acts::Covered(p) > least; });
  std::printf("%-44s %9.0f MB\n", "memory for it", Resident() - before);
  std::printf("%-44s %9.0f MB\n", "document",
              static_cast<double>(std::filesystem::file_size(window.Keeper().File()->Path())) / 1e6);
  const int covered = acts.Covered();
  acts.Turn();
  acts.Pick();
  acts.Do(
      "select all", [&] { doc.Select({itrs()}); },
      [&](const QImage& p, double part) { return Acts::Highlighted(p) > covered * part / 5; });
  acts.Do(
      "select none", [&] { doc.Select({}); },
      [&](const QImage& p, double part) { return Acts::Covered(p) > covered * part / 2; });
  acts.Do(
      "hide all", [&] { show(0); }, [&](const QImage& p, double) { return Acts::Covered(p) < covered / 100; });
  acts.Do(
      "show all", [&] { show(1); },
      [&](const QImage& p, double part) { return Acts::Covered(p) > covered * part / 2; });
  acts.Do(
      "hide one of all", [&] { doc.GetDisplay().Parts().SetShowHide(1, 0); },
      [&](const QImage& p, double part) { return Acts::Covered(p) > covered * part / 2; });
  const auto recolour = [&] {
    data.BeginTransaction(L"colour");
    for (const iterator itr : itrs()) {
      tagTGeom part = *data.GetGeomPool().GetAtNU(itr);
      part.colour = kSelected;
      data.GetGeomPool().Change(itr, part);
    }
    data.CommitTransaction(1);
  };
  acts.Do("colour of all", recolour,
          [&](const QImage& p, double part) { return Acts::Highlighted(p) > covered * part / 5; });
  acts.Do(
      "colour of all back", [&] { data.Undo(); },
      [&](const QImage& p, double part) { return Acts::Covered(p) > covered * part / 2; });
  acts.Do(
      "delete all", [&] { doc.DeleteData(kDeleteModelData, itrs()); },
      [&](const QImage& p, double) { return itrs().empty() && Acts::Covered(p) < covered / 100; });
  acts.Do(
      "undo of deleting all", [&] { data.Undo(); },
      [&](const QImage& p, double part) {
        // Parts come after the first frame.
        return itrs().size() == static_cast<std::size_t>(parts) && (part < 1 || Acts::Covered(p) > covered / 2);
      });
  std::printf("%-44s %9.0f MB\n", "memory at the end", Resident() - before);
}

}  // namespace qd::bench
