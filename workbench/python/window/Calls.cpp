#include "workbench/python/window/Calls.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace qd::workbench::script {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::microseconds kNextCall{300};  // by when a loop has its next call
constexpr std::chrono::milliseconds kSlice{12};      // after which the window draws and hears its user

}  // namespace

void Calls::Open(std::function<void()> wake) {
  const std::lock_guard lock(m_mutex);
  m_thread = std::this_thread::get_id();
  m_wake = std::move(wake);
}

void Calls::GiveUp() {
  for (const auto& call : m_waiting) call->state = Call::State::GivenUp;
  m_waiting.clear();
  m_ended.notify_all();
}

void Calls::Close() {
  const std::lock_guard lock(m_mutex);
  m_wake = nullptr;
  GiveUp();
}

void Calls::Stop() {
  const std::lock_guard lock(m_mutex);
  std::deque<std::shared_ptr<Call>> kept;
  for (const auto& call : m_waiting) {
    if (!call->isAwaited) kept.push_back(call);
  }
  std::swap(kept, m_waiting);
  std::erase_if(kept, [](const auto& call) { return !call->isAwaited; });
  for (const auto& call : kept) call->state = Call::State::GivenUp;
  m_ended.notify_all();
}

bool Calls::Run(const std::function<void()>& work) {
  if (IsHere()) {
    work();
    return true;
  }
  std::unique_lock lock(m_mutex);
  if (m_wake == nullptr) return false;
  const auto call = std::make_shared<Call>(Call{work});
  m_waiting.push_back(call);
  if (!m_serves && m_waiting.size() == 1) m_wake();
  m_came.notify_all();
  m_ended.wait(lock, [&call] { return call->state >= Call::State::Done; });
  return call->state == Call::State::Done;
}

bool Calls::RunHere(const std::function<void()>& work) {
  const std::unique_lock lock(m_mutex, std::try_to_lock);
  if (!lock || !m_waits || m_wake == nullptr) return false;
  const std::thread::id window = m_thread.exchange(std::this_thread::get_id());
  m_works = true;
  work();
  m_works = false;
  m_thread = window;
  m_lastHere = Clock::now();
  return true;
}

void Calls::Later(std::function<void()> work) {
  if (IsHere()) return work();
  const std::lock_guard lock(m_mutex);
  if (m_wake == nullptr) return;
  m_waiting.push_back(std::make_shared<Call>(Call{std::move(work), Call::State::Waiting, false}));
  if (!m_serves && m_waiting.size() == 1) m_wake();
}

bool Calls::Serve() {
  const Clock::time_point end = Clock::now() + kSlice;
  std::unique_lock lock(m_mutex);
  if (m_serves) return false;  // events come in while a call runs; the next one follows it
  m_serves = true;
  const auto comes = [&] {
    const auto any = [this] { return !m_waiting.empty(); };
    m_lastHere = Clock::now();
    m_waits = true;
    while (!m_came.wait_for(lock, kNextCall, any) && Clock::now() < std::min(end, m_lastHere + kNextCall)) {
    }
    m_waits = false;
    return any();
  };
  while (!m_waiting.empty() || comes()) {
    if (Clock::now() > end) break;
    const std::shared_ptr<Call> call = m_waiting.front();
    m_waiting.pop_front();
    call->state = Call::State::Begun;
    lock.unlock();
    m_works = true;
    call->work();
    m_works = false;
    lock.lock();
    call->state = Call::State::Done;
    m_ended.notify_all();
  }
  m_serves = false;
  return !m_waiting.empty();
}

}  // namespace qd::workbench::script
