#pragma once

#include <functional>
#include <list>
#include <memory>
#include <utility>

namespace qd::workbench {

/// Keeps somebody told for as long as it lives. It may outlive what it was made by.
class [[nodiscard]] Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::shared_ptr<void> entry) : m_entry(std::move(entry)) {}

 private:
  std::shared_ptr<void> m_entry;
};

/// Tells any number of followers of something, in the order in which they came. Followers may come and go while
/// they are being told; who comes meanwhile hears of the next one.
template <typename What>
class Notice {
 public:
  using Call = std::function<void(const What&)>;

  [[nodiscard]] Subscription Subscribe(Call call) {
    auto entry = std::make_shared<Call>(std::move(call));
    m_followers.push_back(entry);
    return Subscription(std::move(entry));
  }

  void Tell(const What& what) {
    m_followers.remove_if([](const std::weak_ptr<Call>& follower) { return follower.expired(); });
    const std::list<std::weak_ptr<Call>> told = m_followers;
    for (const std::weak_ptr<Call>& follower : told) {
      if (const std::shared_ptr<Call> call = follower.lock()) (*call)(what);
    }
  }

 private:
  std::list<std::weak_ptr<Call>> m_followers;
};

}  // namespace qd::workbench
