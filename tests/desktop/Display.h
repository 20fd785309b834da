#pragma once

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QProcess>
#include <QTimer>

#include "platform/Types.h"

namespace qd::test {

inline void Wait(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

template <typename Condition>
bool WaitUntil(const Condition& condition, int seconds = 60) {
  QElapsedTimer time;
  time.start();
  while (!condition() && time.elapsed() < seconds * 1000) Wait(10);
  return condition();
}

/// Until nothing in the program holds the events up, as a frame does that a slow machine draws.
inline void WaitForEvents() {
  QElapsedTimer time;
  int quick = 0;
  for (int i = 0; i < 100 && quick < 2; ++i) {
    time.start();
    Wait(10);
    quick = time.elapsed() < 30 ? quick + 1 : 0;
  }
}

/// The display's own pointer and keys. A press starts an event loop that ends with the release, so both must be in
/// one call.
inline void Display(const QStringList& what) {
  QProcess tool;
  tool.start("xdotool", what);
  ASSERT_TRUE(WaitUntil([&tool] { return tool.state() == QProcess::NotRunning; }));
  ASSERT_EQ(tool.exitCode(), 0);
  Wait(400);
  WaitForEvents();
}

/// A place on the screen as the display counts it, at any scale.
inline QStringList At(CPoint screen) {
  const double scale = qApp->devicePixelRatio();
  return {QString::number(screen.x * scale), QString::number(screen.y * scale)};
}

}  // namespace qd::test
