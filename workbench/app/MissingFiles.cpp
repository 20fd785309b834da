#include "workbench/app/MissingFiles.h"

#include <QFileInfo>
#include <QTimer>
#include <mutex>
#include <thread>
#include <utility>

namespace qd::workbench {

/// What a thread has found so far.
struct MissingFiles::Search {
  std::mutex mutex;
  QStringList missing;
  bool done = false;
};

/// A thread that hangs is left alone, for it touches nothing but what it shares; the next search has its own, as
/// long as the last one has come to an end.
void MissingFiles::Look(const QStringList& paths, std::function<void(const QString&)> missing) {
  m_missing = std::move(missing);
  if (m_search != nullptr) {
    const std::lock_guard lock(m_search->mutex);
    if (!m_search->done) return;
  }
  m_search = std::make_shared<Search>();
  std::thread([search = m_search, paths] {
    for (const QString& path : paths) {
      if (QFileInfo::exists(path)) continue;
      const std::lock_guard lock(search->mutex);
      search->missing << path;
    }
    const std::lock_guard lock(search->mutex);
    search->done = true;
  }).detach();
  Fetch();
}

void MissingFiles::Fetch() {
  QStringList missing;
  bool done = false;
  {
    const std::lock_guard lock(m_search->mutex);
    missing = std::exchange(m_search->missing, {});
    done = m_search->done;
  }
  for (const QString& path : missing) m_missing(path);
  constexpr int kOften = 20;  // milliseconds
  if (!done) QTimer::singleShot(kOften, this, &MissingFiles::Fetch);
}

}  // namespace qd::workbench
