#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/DocumentScript.h"
#include "support/ScratchFolder.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentFile.h"

namespace qd::test {

/// A folder with documents in it, which goes with the test.
class DocumentFolder : public ::testing::Test {
 protected:
  std::string Path(const char* name) const { return (m_folder / name).string(); }

  /// A database with its file.
  struct Document {
    workbench::Database data;
    std::unique_ptr<workbench::DocumentFile> file;
    workbench::DocumentError error;
    std::string said;

    void Keep() {
      if (file == nullptr) return;
      file->SetOnFailure([this](const workbench::DocumentError& fault) { said = fault.key; });
      data.SetStore(file.get());
    }
  };
  std::unique_ptr<Document> Create(const std::string& path, const char* vfs = nullptr) {
    auto document = std::make_unique<Document>();
    document->file = workbench::DocumentFile::Create(path, document->data, document->error, vfs);
    document->Keep();
    return document;
  }
  std::unique_ptr<Document> Open(const std::string& path, const char* vfs = nullptr) {
    auto document = std::make_unique<Document>();
    document->file = workbench::DocumentFile::Open(path, document->data, document->error, vfs);
    document->Keep();
    return document;
  }
  /// A closed document with the first acts of the script. Returns what it holds.
  std::string Make(const std::string& path, int acts = 30) {
    const auto document = Create(path);
    DocumentScript script(document->data);
    for (int act = 0; act < acts; ++act) EXPECT_TRUE(script.Run(act));
    return Contents(document->data);
  }
  /// Repairs one document into another one, which is sound then; what was said is kept.
  bool Repair(const std::string& from, const std::string& to) {
    m_notes.clear();
    workbench::DocumentError error;
    if (!workbench::RepairDocument(from, to, m_notes, error)) return false;
    EXPECT_TRUE(workbench::VerifyDocument(to).empty());
    return true;
  }
  /// The key of the fault of opening a file; empty when it opens.
  std::string FaultOf(const std::string& path) {
    const auto document = Open(path);
    return document->file == nullptr ? document->error.key : "";
  }
  /// Runs statements on a file from outside.
  static void Sql(const std::string& path, const char* sql) {
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &handle), SQLITE_OK);
    char* fault = nullptr;
    EXPECT_EQ(sqlite3_exec(handle, sql, nullptr, nullptr, &fault), SQLITE_OK) << fault;
    sqlite3_close(handle);
  }

  ScratchFolder m_folder;
  std::vector<workbench::DocumentError> m_notes;  // of the last repair
};

}  // namespace qd::test
