#pragma once

#include <QObject>
#include <QTimer>
#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>

namespace qd::workbench {

/// When a whole picture takes long, quick ones that show some of it come first, and the whole one follows as soon
/// as nothing has been asked for a while. How much a quick one may show follows from how long the last ones took.
class FramePace {
 public:
  /// `draw` asks for a frame.
  explicit FramePace(std::function<void()> draw) {
    m_pause.setSingleShot(true);
    QObject::connect(&m_pause, &QTimer::timeout, [this, draw = std::move(draw)] {
      m_wholeIsDue = true;
      draw();
    });
  }

  /// Whether a frame that shows something new, of so many triangles as a whole, is to be a quick one.
  bool WantsQuick(std::size_t faces) const {
    return !m_wholeIsDue && faces > m_faces && m_each * static_cast<double>(faces) > kSlow;
  }
  /// The triangles of a quick frame.
  std::size_t Faces() const { return m_faces; }
  void DrewWhole(qint64 milliseconds, std::size_t faces) {
    m_wholeIsDue = false;
    m_pause.stop();
    if (faces > m_faces) m_each = static_cast<double>(milliseconds) / static_cast<double>(faces);
  }
  void DrewQuick(qint64 milliseconds, std::size_t faces) {
    constexpr qint64 kAim = 70;
    constexpr std::size_t kLeast = 10'000;
    constexpr std::size_t kMost = 2'000'000;
    const double change =
        std::clamp(static_cast<double>(kAim) / std::max<double>(static_cast<double>(milliseconds), 1), 0.5, 1.5);
    // One that had little to draw says nothing of how fast much is drawn.
    if (change < 1 || faces >= m_faces) {
      m_faces = std::clamp(static_cast<std::size_t>(static_cast<double>(m_faces) * change), kLeast, kMost);
    }
    m_pause.start(kPause);
  }
  /// Whether a whole picture is still to come.
  bool IsWaiting() const { return m_wholeIsDue || m_pause.isActive(); }

 private:
  static constexpr double kSlow = 80;  // milliseconds
  static constexpr int kPause = 150;

  QTimer m_pause;
  bool m_wholeIsDue = false;
  double m_each = 0.001;  // milliseconds of a triangle in a whole picture
  std::size_t m_faces = 100'000;
};

}  // namespace qd::workbench
