#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

#include "workbench/exchange/pipe/Protocol.h"

namespace qd::workbench {

/// Reads a solver deck on a thread of its own, so that the window stays alive.
class InpImport {
 public:
  /// `wake` is called on that thread whenever there is something to take.
  InpImport(std::filesystem::path path, std::function<void()> wake);
  ~InpImport();  // waits for the thread, which it has told to stop
  InpImport(const InpImport&) = delete;
  InpImport& operator=(const InpImport&) = delete;

  const std::filesystem::path& Path() const { return m_path; }
  void Cancel() { m_cancelled = true; }
  int Thousandths() const { return m_thousandths; }

  /// How it ended: with a model, with an error, or, cancelled, with neither.
  struct Result {
    std::optional<ImportedModel> model;
    std::optional<ImportError> error;
  };
  /// Once, when it has ended; nothing before.
  std::optional<Result> TakeResult();

 private:
  void Read();

  std::filesystem::path m_path;
  std::function<void()> m_wake;
  std::atomic<bool> m_cancelled = false;
  std::atomic<int> m_thousandths = 0;
  std::mutex m_mutex;
  std::optional<Result> m_result;  // guarded by the mutex
  std::thread m_thread;
};

}  // namespace qd::workbench
