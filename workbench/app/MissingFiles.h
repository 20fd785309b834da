#pragma once

#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

namespace qd::workbench {

/// Finds out which files are not there, without waiting: a file on a drive of the network that does not answer may
/// take minutes to be missed. What is not known yet counts as there.
class MissingFiles final : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// Calls back for each file that is missing, in place of what was called before. While the last search hangs, no
  /// other one is begun.
  void Look(const QStringList& paths, std::function<void(const QString&)> missing);

 private:
  void Fetch();

  struct Search;
  std::shared_ptr<Search> m_search;  // shared with the thread, which may outlive this
  std::function<void(const QString&)> m_missing;
};

}  // namespace qd::workbench
