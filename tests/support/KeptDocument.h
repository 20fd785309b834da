#pragma once

#include <gtest/gtest.h>

#include "workbench/model/Database.h"

#ifdef QD_STORE
#include <filesystem>

#include "support/DocumentScript.h"
#include "support/ScratchFolder.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentKeeper.h"
#include "workbench/store/RecordCheck.h"
#endif

namespace qd::test {

#ifdef QD_STORE

/// The file of a document as a window keeps it, act by act, and whether it can be trusted.
class KeptDocument final {
 public:
  explicit KeptDocument(workbench::Database& data)
      : m_data(data), m_keeper(data, (m_folder / "recovery").string()) {
    m_keeper.SetOnFailure([](const workbench::DocumentError& error) {
      ADD_FAILURE() << "not kept: " << (error.key != nullptr ? error.key : "") << " " << error.detail;
    });
  }
  workbench::DocumentKeeper& Keeper() { return m_keeper; }

  /// Records and references fit each other. With the acts 1, 2, 4, 8 …, or when all of it is wanted: a copy of the
  /// file as it was written act by act, and a new file with all records, open and hold the same.
  void Check(bool all) {
    const std::uint64_t acts = m_data.ActNumber();
    if (acts == m_checked && !all) return;
    m_checked = acts;
    ExpectSound();
    if (all || (acts & (acts - 1)) == 0) ExpectFilesOpen();
  }
  /// Whether the file and a new one open and hold what the database holds.
  void ExpectFilesOpen() {
    if (m_keeper.File() == nullptr) return;
    const ScratchFolder folder(ScratchFolder::Place::Memory);
    std::filesystem::copy_file(m_keeper.Path(), folder / "same.qdw");
    workbench::DocumentError error;
    EXPECT_NE(workbench::DocumentFile::Create((folder / "new.qdw").string(), m_data, error), nullptr) << error.key;
    for (const char* name : {"same.qdw", "new.qdw"}) {
      workbench::Database opened;
      const auto file = workbench::DocumentFile::Open((folder / name).string(), opened, error);
      ASSERT_NE(file, nullptr) << name << ": " << error.key << " " << error.detail;
      EXPECT_EQ(file->Mended(), std::vector<std::string>()) << name;
      EXPECT_EQ(Contents(opened), Contents(m_data)) << name;
    }
  }

 private:
  void ExpectSound() const {
    workbench::RecordCheck check;
    for (const workbench::JournalEntry& entry : m_data.AllRecords()) check.Add(entry.itr, entry.after);
    check.Run();
    EXPECT_EQ(check.Faults(), std::vector<std::string>()) << "after act " << m_checked;
    EXPECT_EQ(check.Mended(), std::vector<std::string>()) << "after act " << m_checked;
  }

  ScratchFolder m_folder{ScratchFolder::Place::Memory};
  workbench::Database& m_data;
  workbench::DocumentKeeper m_keeper;
  std::uint64_t m_checked = 0;
};

#else

/// Without documents there is nothing to keep.
class KeptDocument final {
 public:
  explicit KeptDocument(workbench::Database&) {}
  void Check(bool) {}
};

#endif

}  // namespace qd::test
