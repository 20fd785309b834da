#include "workbench/app/QuietTime.h"

#include <QPointer>
#include <utility>
#include <vector>

namespace qd::workbench {

namespace {

struct Waiting {
  QPointer<QObject> context;
  std::function<void()> what;
};
std::vector<Waiting>& WaitingOnes() {
  static std::vector<Waiting> waiting;
  return waiting;
}

}  // namespace

QuietTime::~QuietTime() {
  if (--s_depth > 0) return;
  for (const Waiting& waiting : std::exchange(WaitingOnes(), {})) {
    if (waiting.context == nullptr) continue;
    // Whoever did the work goes on with it first. It may be quiet again by then.
    QMetaObject::invokeMethod(
        waiting.context, [waiting] { WhenOver(waiting.context, waiting.what); }, Qt::QueuedConnection);
  }
}

void QuietTime::WhenOver(QObject* context, const std::function<void()>& what) {
  if (!IsNow()) return what();
  WaitingOnes().push_back({context, what});
}

}  // namespace qd::workbench
