#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "workbench/model/Database.h"
#include "workbench/model/RecordStore.h"
#include "workbench/store/DocumentError.h"
#include "workbench/store/DocumentSchema.h"
#include "workbench/store/RecordTables.h"
#include "workbench/store/Sqlite.h"

namespace qd::workbench {

/// A document on disk: a database file that one program has open at a time. Each committed act is one transaction
/// of the file, which survives the end of the program and of the machine's power. docs/document-format.md
/// describes the contents.
class DocumentFile final : public IRecordStore {
 public:
  /// Makes a file that holds what the database holds; a file that is there is replaced. Null on failure. `vfs`
  /// names a file layer for tests.
  static std::unique_ptr<DocumentFile> Create(const std::string& path, const Database& database,
                                              DocumentError& error, const char* vfs = nullptr);
  /// Opens a file and fills a database that nothing was done with yet. Null on failure; the database may hold a
  /// part then.
  static std::unique_ptr<DocumentFile> Open(const std::string& path, Database& database, DocumentError& error,
                                            const char* vfs = nullptr, const ProgressCall& progress = {});
  /// Opens a file whose contents a database has already.
  static std::unique_ptr<DocumentFile> Attach(const std::string& path, DocumentError& error,
                                              const char* vfs = nullptr, const ProgressCall& progress = {});
  /// Whether the document is open for viewing only: nothing is written to the file, acts are refused. A document
  /// that stands where this program may not write is opened so.
  bool IsReadOnly() const { return m_viewed; }
  /// Writes a copy, complete or not at all; a file that is there is replaced, unless somebody has it open. False
  /// also when `progress` stops it.
  bool CopyTo(const std::string& path, DocumentError& error, const ProgressCall& progress = {});
  /// Whether a program has a file open.
  static bool IsInUse(const std::string& path);
  /// What a window wants to find again, apart from the model, by a name of its own; empty for none. False when it
  /// cannot be kept, which harms nothing.
  bool PutView(const std::string& name, const std::string& bytes);
  std::string View(const std::string& name);
  /// Whether there is anything but what every new document has.
  bool HoldsAnything();

  bool Write(const std::vector<JournalEntry>& net, bool forward) override;
  /// Told when a write fails.
  void SetOnFailure(std::function<void(const DocumentError&)> onFailure) { m_onFailure = std::move(onFailure); }

  const std::string& Path() const { return m_path; }

 private:
  DocumentFile(std::string path, Connection connection);

  bool TakeUp(int version, DocumentError& error);
  void Prepare();
  bool BringForward(int version);
  bool WriteEntries(const std::vector<JournalEntry>& net, bool forward);
  bool ReadInto(Database& database, DocumentError& error, const ProgressCall& progress);
  DocumentError Fault() const;
  IRecordTable* TableOf(iterator itr) const;

  std::string m_path;
  bool m_viewed = false;
  Connection m_file;
  std::vector<std::unique_ptr<IRecordTable>> m_tables;
  std::unique_ptr<Statement> m_noteNumber;
  std::function<void(const DocumentError&)> m_onFailure;
};

}  // namespace qd::workbench
