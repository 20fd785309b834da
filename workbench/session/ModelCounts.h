#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>

#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// How many times something was counted, by its number; for any numbers, most of them close together.
class NumberUses final {
 public:
  /// True when the number was not there before.
  bool Add(std::uint64_t number);
  /// True when the number is there no more. It must have been added.
  bool Remove(std::uint64_t number);

 private:
  static constexpr std::size_t kPage = 32;  // numbers far from each other take a page each
  struct Page {
    std::array<std::uint32_t, kPage> uses{};
    std::size_t used = 0;
  };
  std::unordered_map<std::uint64_t, std::unique_ptr<Page>> m_pages;
};

/// How many parts, elements and nodes a document holds and shows. Kept up by what changes; what is much, as a
/// document that was opened, is counted in slices.
class ModelCounts final {
 public:
  struct Counts {
    std::uint64_t parts = 0;
    std::uint64_t partsShown = 0;
    std::uint64_t elements = 0;
    std::uint64_t elementsShown = 0;
    std::uint64_t nodes = 0;  ///< each once, in however many sets
    bool operator==(const Counts&) const = default;
  };
  /// Runs something when what is at hand is done.
  using Later = std::function<void(std::function<void()>)>;

  /// `changed` is called when there are other counts. Counts what is there.
  ModelCounts(WorkDocument& doc, Later later, std::function<void()> changed);

  const Counts& Now() const { return m_counts; }
  /// Whether all that has changed is counted.
  bool IsWhole() const { return m_waiting.empty(); }
  /// After the document was filled behind its notices.
  void CountAnew();

 private:
  struct Part {
    bool shown;
  };
  struct Set {
    std::shared_ptr<const MeshData> mesh;
    std::uint64_t elements = 0;
    bool shown = false;
  };

  void FollowRecords(const CQDUpdateRecord& record);
  void FollowDisplay(const DisplayNotice& notice);
  /// Counts what waits, for as long as a slice may take.
  void Work();
  /// Each returns how much work it was.
  std::size_t LookAtPart(iterator itr);
  std::size_t LookAtSet(iterator itr);

  WorkDocument& m_doc;
  Later m_later;
  std::function<void()> m_changed;
  Counts m_counts;
  std::unordered_map<iterator, Part> m_parts;
  std::unordered_map<iterator, Set> m_sets;
  NumberUses m_nodes;
  std::deque<std::pair<std::uint16_t, iterator>> m_waiting;  // with the type
  bool m_scheduled = false;
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);  // for slices that come after this is gone
  Subscription m_onRecords;
  Subscription m_onDisplay;
};

}  // namespace qd::workbench
