#include "workbench/app/WorkBeside.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>
#include <utility>

namespace qd::workbench {

WorkBeside::~WorkBeside() {
  Stop();
}

void WorkBeside::Stop() {
  if (m_stop != nullptr) *m_stop = true;
  m_stop.reset();
}

void WorkBeside::Start(Work work) {
  constexpr int kSteps = 1000;
  Stop();
  m_stop = std::make_shared<std::atomic<bool>>(false);
  // Whether this still lives, and still wants the result, is found out on its own thread.
  const auto here = [self = QPointer<WorkBeside>(this), stop = m_stop](std::function<void(WorkBeside&)> what) {
    QMetaObject::invokeMethod(
        qApp,
        [self, stop, what = std::move(what)] {
          if (self != nullptr && !*stop) what(*self);
        },
        Qt::QueuedConnection);
  };
  QThreadPool::globalInstance()->start([work = std::move(work), stop = m_stop, here] {
    int last = -1;
    const Finish finish = work([&](double done) {
      const int thousandths = static_cast<int>(done * kSteps);
      if (std::exchange(last, thousandths) != thousandths) {
        here([thousandths](WorkBeside& self) { emit self.Progress(thousandths); });
      }
      return !*stop;
    });
    here([finish](WorkBeside& self) {
      self.m_stop.reset();
      finish();
    });
  });
}

}  // namespace qd::workbench
