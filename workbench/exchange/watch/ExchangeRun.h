#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"
#include "workbench/exchange/pipe/Protocol.h"
#include "workbench/exchange/watch/ChildProcess.h"
#include "workbench/exchange/watch/ExchangeLimits.h"

namespace qd::workbench {

/// One run of the exchange program: starts it, watches that it gets on and keeps within its limits, and gathers
/// what it sends. Nothing of a run that fails is kept.
class ExchangeRun {
 public:
  struct Task {
    std::string program;  ///< the exchange program
    std::string file;     ///< to read, any bytes; empty for work on shapes
    std::string request;  ///< the work on shapes
    ExchangeLimits limits;
    /// Takes the bytes of a file that the program is to write, false when that cannot be; none for other work.
    std::function<bool(std::string_view)> take = nullptr;
    std::vector<std::string> includes{};  ///< folders that the user allows a deck to take files from this time
    bool isDrawn = true;                  ///< what comes of a file needs facets to be drawn with
  };
  /// A message key, empty for none, and a detail for its text.
  struct Message {
    std::string key;
    std::string detail;
    std::string wanted{};  ///< a file that the user could allow to be read; empty for none
  };
  struct Listener {
    virtual ~Listener() = default;
    /// 0 to 1000, never less than before.
    virtual void OnProgress(int thousandths) = 0;
    /// The program seems to be lost. True to wait for ExchangeRun::WaitLonger or Cancel, false to end it.
    virtual bool OnStalled(const Message& reason) = 0;
    /// It got on after all, or waits longer: nothing is to be asked any more.
    virtual void OnResumed() = 0;
    /// Asked every now and then; false cancels.
    virtual bool GoesOn() { return true; }
  };
  /// A model, or none and the reason; no reason after a cancel.
  struct Result {
    std::shared_ptr<ImportedModel> model;
    Message reason;
  };

  explicit ExchangeRun(Task task);
  ~ExchangeRun();
  ExchangeRun(const ExchangeRun&) = delete;
  ExchangeRun& operator=(const ExchangeRun&) = delete;

  /// Runs the program to its end; called once. The listener is called from this thread.
  Result Run(Listener& listener);
  /// Any thread, at any time: ends the run soon.
  void Cancel();
  /// Any thread: the limits of time begin anew.
  void WaitLonger();

 private:
  using Clock = std::chrono::steady_clock;
  enum class Step { GoOn, Finished, Failed };

  bool StartProgram(const std::string& folder);
  Step TakeBytes(Listener& listener);
  Step TakeFrame(const FrameReader::Frame& frame, Listener& listener);
  Step TakeEnd();
  Step Watch(Listener& listener);
  Step Fail(const std::string& key, std::string detail = {}, std::string wanted = {});
  void GotOn(Listener& listener);
  void StartAnew();
  Message Lost() const;
  void KeepNote(ImportNote note);

  Task m_task;
  int m_wake;  // an event that ends waiting
  std::atomic<bool> m_cancelled = false;
  std::atomic<bool> m_waitLonger = false;

  ChildProcess m_child;
  FrameReader m_frames;
  std::shared_ptr<ImportedModel> m_model = std::make_shared<ImportedModel>();
  Message m_reason;
  bool m_outOfMemory = false;  // the program was refused memory
  std::uint32_t m_progress = 0;
  std::uint64_t m_moved = 0;  // bytes that the program has read, as it says
  std::size_t m_arrived = 0;  // of a frame that is not whole
  std::uint64_t m_lostNotes = 0;
  Clock::time_point m_lastSign;  // of life
  Clock::time_point m_lastStep;  // of getting on
  std::chrono::milliseconds m_workAtLastStep{};
  bool m_asking = false;
};

}  // namespace qd::workbench
