#pragma once

#include <gtest/gtest.h>

#include "workbench/model/Database.h"

#ifdef QD_STORE
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <map>

#include "support/DocumentScript.h"
#include "support/ScratchFolder.h"
#include "workbench/store/DocumentFile.h"
#include "workbench/store/RecordCheck.h"
#endif

namespace qd::test {

#ifdef QD_STORE

/// Stands where documents are kept, and checks after every act, undo and redo that the records fit each other; now
/// and then, and in the end, that a document with them opens and holds the same.
class CheckedStore final : public workbench::IRecordStore {
 public:
  explicit CheckedStore(workbench::Database& data) : m_data(data) {
    for (const workbench::JournalEntry& entry : data.AllRecords()) m_kept[entry.itr] = entry.after;
    data.SetStore(this);
  }
  ~CheckedStore() {
    m_data.SetStore(nullptr);
    if (m_acts == 0) return;
    std::map<iterator, std::shared_ptr<const tagTRecord>> held;
    for (const workbench::JournalEntry& entry : m_data.AllRecords()) held[entry.itr] = entry.after;
    EXPECT_EQ(held, m_kept) << "what was kept is what there is";
    ExpectCopyOpens();
  }
  CheckedStore(const CheckedStore&) = delete;
  CheckedStore& operator=(const CheckedStore&) = delete;

  bool Write(const std::vector<workbench::JournalEntry>& net, bool forward) override {
    for (const workbench::JournalEntry& entry : net) {
      const auto& before = forward ? entry.before : entry.after;
      const auto& after = forward ? entry.after : entry.before;
      EXPECT_EQ(m_kept[entry.itr], before) << "record " << entry.itr;
      m_kept[entry.itr] = after;
      if (after == nullptr) m_kept.erase(entry.itr);
    }
    ++m_acts;
    constexpr std::size_t kLarge = 500;
    constexpr int kNowAndThen = 16;
    if (m_kept.size() < kLarge || m_acts % kNowAndThen == 0) ExpectSound();
    // Often at first and seldom later: with the acts 1, 2, 4, 8 …
    if ((m_acts & (m_acts - 1)) == 0) ExpectCopyOpens();
    return true;
  }

 private:
  void ExpectSound() const {
    workbench::RecordCheck check;
    for (const auto& [itr, record] : m_kept) check.Add(itr, record);
    check.Run();
    EXPECT_EQ(check.Faults(), std::vector<std::string>()) << "after act " << m_acts;
    EXPECT_EQ(check.Mended(), std::vector<std::string>()) << "after act " << m_acts;
  }
  void ExpectCopyOpens() const {
    const ScratchFolder folder(ScratchFolder::Place::Memory);
    const std::string path = (folder / "copy.qdw").string();
    workbench::Database copy;
    for (const auto& [itr, record] : m_kept) copy.Load(itr, record);
    workbench::Database opened;
    workbench::DocumentError error;
    EXPECT_NE(workbench::DocumentFile::Create(path, copy, error), nullptr) << error.detail;
    EXPECT_NE(workbench::DocumentFile::Open(path, opened, error), nullptr) << error.detail;
    EXPECT_EQ(Contents(opened), Contents(copy)) << "after act " << m_acts;
  }

  workbench::Database& m_data;
  std::map<iterator, std::shared_ptr<const tagTRecord>> m_kept;
  int m_acts = 0;
};

#else

/// Without documents there is nothing to keep.
class CheckedStore final {
 public:
  explicit CheckedStore(workbench::Database&) {}
};

#endif

}  // namespace qd::test
