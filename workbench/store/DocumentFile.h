#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "workbench/model/Database.h"
#include "workbench/model/RecordStore.h"
#include "workbench/store/DocumentError.h"
#include "workbench/store/DocumentHold.h"
#include "workbench/store/DocumentMark.h"
#include "workbench/store/DocumentSchema.h"
#include "workbench/store/RecordTables.h"
#include "workbench/store/Sqlite.h"

namespace qd::workbench {

/// A document on disk: a database file that one program holds at a time. Each committed act is one transaction of
/// the file, which survives the end of the program and of the machine's power; between two acts the file is whole
/// by itself. Before each act it is seen to that the file is still the one that was opened, in the state in which
/// the last act has left it. docs/document-format.md describes the contents.
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
  /// Likewise, for viewing only: nothing is written to the file or changed beside it, and others may view it too.
  /// A log of another file is left where it lies, and is not used.
  static std::unique_ptr<DocumentFile> View(const std::string& path, Database& database, DocumentError& error,
                                            const ProgressCall& progress = {});
  /// Opens a file whose contents a database has already.
  static std::unique_ptr<DocumentFile> Attach(const std::string& path, DocumentError& error,
                                              const char* vfs = nullptr, const ProgressCall& progress = {});
  /// Whether the document is open for viewing only: nothing is written to the file, acts are refused. A document
  /// that stands where this program may not write, or that has several names, is opened so, and one that was
  /// mended, until that is kept.
  bool IsReadOnly() const { return m_viewed != nullptr || !m_unkept.empty(); }
  /// Whether the file has an earlier version of the format. It stays as it is until the first act, which brings it
  /// forward.
  bool IsOlder() const { return m_older != 0; }
  /// The key of the sentence that says so.
  const char* ViewedKey() const { return m_viewed != nullptr ? m_viewed : "IDS_WB_DOC_VIEWED"; }
  /// Writes a copy, complete or not at all; a file that is there is replaced, unless somebody has it open. False
  /// also when `progress` stops it. Acts that are done in the call of `progress` are refused.
  bool CopyTo(const std::string& path, DocumentError& error, const ProgressCall& progress = {});
  /// Likewise, and opens the copy; nobody else gets hold of it before. Null on failure.
  std::unique_ptr<DocumentFile> CopyAndOpen(const std::string& path, DocumentError& error,
                                            const ProgressCall& progress = {});
  /// Whether a program has a file open.
  static bool IsInUse(const std::string& path);
  /// What a window wants to find again, apart from the model, by a name of its own; empty for none. False when it
  /// cannot be kept, which harms nothing.
  bool PutView(const std::string& name, const std::string& bytes);
  std::string View(const std::string& name);
  /// Takes over all that windows have left in another document.
  void TakeViews(DocumentFile& other);
  /// Whether there is anything but what every new document has.
  bool HoldsAnything();
  /// How many rows a table has.
  std::int64_t Count(const char* table);

  /// References to nothing that were mended in memory when the file was read, one line for each. The file itself
  /// stays as it is, open for viewing only, until the mended state is kept.
  const std::vector<std::string>& Mended() const { return m_mended; }
  bool KeepMended(DocumentError& error);
  bool MayKeepMended() const { return m_viewed == nullptr && !m_unkept.empty(); }

  bool Write(const std::vector<JournalEntry>& net, bool forward) override;
  /// Told when a write fails.
  void SetOnFailure(std::function<void(const DocumentError&)> onFailure) { m_onFailure = std::move(onFailure); }

  /// Where the file is, after all links.
  const std::string& Path() const { return m_path; }
  /// Whether the file still stands at its path, as this program has left it.
  bool Stands();
  /// The name that a log was given which lay beside the file and was that of another one; empty for none.
  const std::string& ForeignLog() const { return m_foreignLog; }

 private:
  DocumentFile(std::string path, Connection connection, std::unique_ptr<DocumentHold> hold);

  static std::unique_ptr<DocumentFile> AttachHeld(const std::string& path, std::unique_ptr<DocumentHold> hold,
                                                  DocumentError& error, const char* vfs,
                                                  const ProgressCall& progress = {});
  static std::unique_ptr<DocumentFile> AttachOwn(const std::string& path, std::unique_ptr<DocumentHold> hold,
                                                 DocumentError& error, const char* vfs);
  std::unique_ptr<DocumentHold> WriteCopy(const std::string& path, DocumentError& error,
                                          const ProgressCall& progress);

  static std::unique_ptr<DocumentFile> AttachPresent(const std::string& path, std::unique_ptr<DocumentHold>& hold,
                                                     DocumentError& error, const char* vfs);
  static std::unique_ptr<DocumentFile> AttachOlder(const std::string& path, std::unique_ptr<DocumentHold>& hold,
                                                   DocumentError& error, const char* vfs,
                                                   const ProgressCall& progress);
  static std::unique_ptr<DocumentFile> AttachViewed(const std::string& path, const char* why, DocumentError& error,
                                                    const char* vfs, const ProgressCall& progress);

  bool TakeUp(int version, DocumentError& error);
  bool MakeWritable();
  void Prepare();
  bool BringForward(int version);
  bool Begin();
  bool Commit();
  bool PutMark(const DocumentMark& mark);
  /// In one transaction; `numbers` are not given out again even if nothing stands there.
  bool WriteEntries(const std::vector<JournalEntry>& net, bool forward, const std::vector<iterator>& numbers = {});
  bool ReadInto(Database& database, DocumentError& error, const ProgressCall& progress);
  DocumentError Fault() const;
  IRecordTable* TableOf(iterator itr) const;

  std::string m_path;
  const char* m_viewed = nullptr;        // the key of why it is only viewed
  std::unique_ptr<DocumentHold> m_hold;  // outlives the connection; null while the file is made, or viewed
  Connection m_file;
  DocumentMark m_mark;
  DocumentMark m_nextMark;  // of the act that is being written
  std::string m_foreignLog;
  const char* m_vfs = nullptr;
  int m_older = 0;                                  // the version of a file that is only read so far
  std::pair<std::int64_t, std::int64_t> m_state{};  // of such a file when it was read
  DocumentError m_lost;                             // why the last act could not begin
  bool m_working = false;  // a copy is being made, and the events of a window come in meanwhile
  std::vector<std::unique_ptr<IRecordTable>> m_tables;
  std::unique_ptr<Statement> m_noteNumber;
  std::function<void(const DocumentError&)> m_onFailure;
  std::vector<std::string> m_mended;
  std::vector<JournalEntry> m_unkept;  // mended and not written yet
};

}  // namespace qd::workbench
