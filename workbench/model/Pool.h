#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "host/DPool.h"
#include "platform/FlatMap.h"
#include "workbench/model/Journal.h"
#include "workbench/model/Values.h"

namespace qd::workbench {

/// What a pool needs of the database: where its writes are noted and where deleted records can still be read.
class IJournalKeeper {
 public:
  /// Notes a write of the open transaction; false refuses it.
  virtual bool Note(JournalEntry entry) = 0;
  /// The last contents of a record whose deletion is being announced, null otherwise.
  virtual const tagTRecord* Ghost(iterator itr) const = 0;
  /// Runs `work` in the open transaction or in one of its own; 0 rolls back.
  virtual int InTransaction(const char* titleKey, const std::function<int()>& work) = 0;
  /// Brings in order what refers to records that are about to be deleted. 0 when they have to stay.
  virtual int LetGo(const std::vector<iterator>& itrs) = 0;
  /// Told of every record that comes into its place or leaves it, in whatever way.
  virtual void OnPlaced(iterator itr, const tagTRecord* before, const tagTRecord* after) = 0;
  /// Stores a record at once, kept in the document, but as no act: nothing takes it back and nobody is told.
  virtual void PutAside(JournalEntry entry) = 0;

 protected:
  ~IJournalKeeper() = default;
};

/// Iterators carry their pool in the top bits and count up from 1 below, so they are unique over all pools and
/// are never given out twice.
constexpr int kTypeShift = 48;
constexpr std::uint16_t TypeOf(iterator itr) {
  return static_cast<std::uint16_t>(itr >> kTypeShift);
}

/// The running number of a record within its pool, from 1 on.
constexpr iterator NumberOf(iterator itr) {
  return itr & ((iterator{1} << kTypeShift) - 1);
}

/// The writing side that every pool has, for undo and rollback.
class IPoolStore {
 public:
  /// Puts a record into its place without noting it; null takes it out.
  virtual void Restore(iterator itr, std::shared_ptr<const tagTRecord> record) = 0;
  virtual std::shared_ptr<const tagTRecord> Get(iterator itr) const = 0;
  /// Stores a changed record inside the open transaction. False when it is refused.
  virtual bool Rewrite(iterator itr, std::shared_ptr<const tagTRecord> record) = 0;
  /// Deletes records as DPool does.
  virtual int DeleteAll(const std::vector<iterator>& itrs) = 0;
  /// Makes places for records up to this one.
  virtual void Reserve(iterator last) = 0;
  /// The place that was made last, of a record that stands or does not; of number 0 for none.
  virtual iterator Last() const = 0;
  /// Appends an entry for each record, as if it had just been added.
  virtual void AppendAdded(std::vector<JournalEntry>& out) const = 0;
  virtual void AppendAll(std::vector<std::shared_ptr<const tagTRecord>>& out) const = 0;

 protected:
  ~IPoolStore() = default;
};

/// For host interfaces that are no record pools themselves.
template <typename T, typename Interface>
class RecordPool : public DPool<T>, public Interface {
 protected:
  ~RecordPool() = default;
};

/// Records of one type, behind the host's pool interface.
template <typename T, typename Interface>
class Pool : public Interface, public IPoolStore {
 public:
  Pool(std::uint16_t type, IJournalKeeper& keeper) : m_type(type), m_keeper(keeper) {}

  /// Adds a record inside the open transaction and gives it the pool's next number. Returns its iterator, 0 on
  /// failure.
  iterator Add(T record) {
    const iterator itr = ItrOfNumber(NextNumber());
    record.id = NextNumber();
    if (m_places >= kMostRecords) {
      m_keeper.Note({itr, nullptr, std::make_shared<const T>(std::move(record))});  // which refuses it
      return 0;
    }
    Reserve(itr);
    return Write(itr, std::make_shared<const T>(std::move(record))) ? itr : 0;
  }

  /// Stores a changed record inside the open transaction. 1, or 0 for an unknown record or on failure.
  int Change(iterator itr, T record) {
    const T* old = Live(itr);
    if (old == nullptr) return 0;
    record.id = old->id;
    return Write(itr, std::make_shared<const T>(std::move(record))) ? 1 : 0;
  }

  std::vector<iterator> GetItrList() const override {
    std::vector<iterator> all;
    all.reserve(m_count);
    ForEach([&all](iterator itr, const auto&) { all.push_back(itr); });
    return all;
  }

  const T* GetAtNU(iterator itr) const override {
    const T* live = Live(itr);
    return live != nullptr || TypeOf(itr) != m_type ? live : static_cast<const T*>(m_keeper.Ghost(itr));
  }

  int TR_Del(const std::vector<iterator>& itrs) override {
    return m_keeper.InTransaction("IDS_QD_TRANS_Delete", [&] {
      if (m_keeper.LetGo(itrs) == 0) return 0;
      for (const iterator itr : itrs) {
        if (Live(itr) == nullptr || !Write(itr, nullptr)) return 0;
      }
      return 1;
    });
  }

  /// The iterator of the record with a running number, whether it stands or not.
  iterator ItrOfNumber(int number) const {
    return static_cast<iterator>(m_type) << kTypeShift | static_cast<iterator>(number);
  }
  std::size_t Count() const { return m_count; }
  /// The oldest record that is wanted, 0 for none.
  template <typename Wanted>
  iterator FirstThat(const Wanted& wanted) const {
    while (m_first < m_places && Live(ItrOf(m_first)) == nullptr) {
      m_first += m_pages[m_first / kPage] == nullptr ? kPage - m_first % kPage : 1;
    }
    m_first = std::min(m_first, m_places);
    for (std::size_t i = m_first; i < m_places; ++i) {
      if (m_pages[i / kPage] == nullptr) {
        i += kPage - 1 - i % kPage;  // a document may hold few records with large numbers
        continue;
      }
      const iterator itr = ItrOf(i);
      if (Live(itr) != nullptr && wanted(itr)) return itr;
    }
    return 0;
  }
  /// The oldest record, 0 for none.
  iterator First() const {
    return FirstThat([](iterator) { return true; });
  }
  /// The number that the next record will get.
  int NextNumber() const { return static_cast<int>(m_places) + 1; }

  void Restore(iterator itr, std::shared_ptr<const tagTRecord> record) override {
    std::shared_ptr<const T>& place = Place(itr);
    const std::shared_ptr<const T> before =
        std::exchange(place, std::static_pointer_cast<const T>(std::move(record)));
    if (before != nullptr) OnLeave(itr, *before);
    m_count -= before != nullptr ? 1 : 0;
    m_count += place != nullptr ? 1 : 0;
    if (place != nullptr) m_first = std::min(m_first, Index(itr));
    m_keeper.OnPlaced(itr, before.get(), place.get());
    if (place != nullptr) OnEnter(itr, *place);
  }
  std::shared_ptr<const tagTRecord> Get(iterator itr) const override {
    return Live(itr) != nullptr ? (*m_pages[Index(itr) / kPage])[Index(itr) % kPage] : nullptr;
  }
  bool Rewrite(iterator itr, std::shared_ptr<const tagTRecord> record) override {
    return Live(itr) != nullptr && Write(itr, std::static_pointer_cast<const T>(std::move(record)));
  }
  void Reserve(iterator last) override {
    m_places = std::max(m_places, Index(last) + 1);
    m_pages.resize((m_places + kPage - 1) / kPage);
  }
  iterator Last() const override { return ItrOfNumber(static_cast<int>(m_places)); }
  void AppendAdded(std::vector<JournalEntry>& out) const override {
    ForEach([&out](iterator itr, const auto& record) { out.push_back({itr, nullptr, record}); });
  }
  int DeleteAll(const std::vector<iterator>& itrs) override { return this->TR_Del(itrs); }
  void AppendAll(std::vector<std::shared_ptr<const tagTRecord>>& out) const override {
    ForEach([&out](iterator, const auto& record) { out.push_back(record); });
  }

 protected:
  ~Pool() = default;
  IJournalKeeper& Keeper() { return m_keeper; }
  /// Makes the pool's first record as one that has always been there.
  void PutFirst(T record) {
    record.id = 1;
    Reserve(ItrOfNumber(1));
    Restore(ItrOfNumber(1), std::make_shared<const T>(std::move(record)));
  }
  /// Called after a record has come into its place and after it has left it, for indexes over the records.
  virtual void OnEnter(iterator, const T&) {}
  virtual void OnLeave(iterator, const T&) {}

 private:
  static std::size_t Index(iterator itr) { return static_cast<std::size_t>(NumberOf(itr)) - 1; }

  /// Places stand in pages, made when they are needed: a document may hold few records with large numbers.
  static constexpr std::size_t kPage = 64;
  using Page = std::array<std::shared_ptr<const T>, kPage>;

  const T* Live(iterator itr) const {
    if (TypeOf(itr) != m_type || Index(itr) >= m_places) return nullptr;
    const Page* page = m_pages[Index(itr) / kPage].get();
    return page != nullptr ? (*page)[Index(itr) % kPage].get() : nullptr;
  }
  std::shared_ptr<const T>& Place(iterator itr) {
    std::unique_ptr<Page>& page = m_pages[Index(itr) / kPage];
    if (page == nullptr) page = std::make_unique<Page>();
    return (*page)[Index(itr) % kPage];
  }
  template <typename Visit>
  void ForEach(const Visit& visit) const {
    for (std::size_t page = 0; page < m_pages.size(); ++page) {
      if (m_pages[page] == nullptr) continue;
      for (std::size_t i = 0; i < kPage; ++i) {
        if ((*m_pages[page])[i] != nullptr) visit(ItrOf(page * kPage + i), (*m_pages[page])[i]);
      }
    }
  }
  iterator ItrOf(std::size_t index) const { return static_cast<iterator>(m_type) << kTypeShift | (index + 1); }
  bool Write(iterator itr, std::shared_ptr<const T> record) {
    if (!m_keeper.Note({itr, Place(itr), record})) return false;
    Restore(itr, std::move(record));
    return true;
  }

  std::uint16_t m_type;
  IJournalKeeper& m_keeper;
  std::vector<std::unique_ptr<Page>> m_pages;
  std::size_t m_places = 0;         // numbers that were given out
  mutable std::size_t m_first = 0;  // no record stands before this place
  std::size_t m_count = 0;
};

}  // namespace qd::workbench
