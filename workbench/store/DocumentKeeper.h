#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "workbench/store/DocumentFile.h"

namespace qd::workbench {

/// A recovery file that nobody is using, and what to tell of it.
struct RecoverableDocument {
  std::string path;
  std::string title;  ///< UTF-8; what the window called the document, empty if it said nothing
  std::int64_t parts = 0;
  std::int64_t meshSets = 0;
  DocumentError fault{};  ///< why it cannot be taken up as it is; without a key when it can
};

/// Keeps the document of a window on disk at all times: in the file that the user gave it, or, until it has one,
/// in a recovery file, which a crash leaves behind for the next start.
class DocumentKeeper final : public IRecordStore {
 public:
  /// `folder` is where recovery files stand; it is made when it is needed. Both must outlive this.
  DocumentKeeper(Database& database, std::string folder);
  /// Takes a recovery file away: who wanted it has saved it.
  ~DocumentKeeper();
  DocumentKeeper(const DocumentKeeper&) = delete;
  DocumentKeeper& operator=(const DocumentKeeper&) = delete;

  bool Write(const std::vector<JournalEntry>& net, bool forward) override;
  /// Told when something cannot be kept, and when a document that could not be protected is protected again.
  void SetOnFailure(std::function<void(const DocumentError&)> onFailure) { m_onFailure = std::move(onFailure); }

  /// Fills the database, with which nothing was done yet, from a document.
  bool Open(const std::string& path, DocumentError& error, const ProgressCall& progress = {});
  /// Likewise from a recovery file, which stays one.
  bool Recover(const std::string& path, DocumentError& error);
  /// Copies the document to a path and goes on there, also when the file that it was in is not there any more.
  bool SaveAs(const std::string& path, DocumentError& error, const ProgressCall& progress = {});

  /// Whether the user has given the document a file. Such a document never waits to be saved.
  bool IsNamed() const { return m_named; }
  /// Whether it is open for viewing only: acts are refused until it is saved under another name.
  bool IsReadOnly() const { return m_file != nullptr && m_file->IsReadOnly(); }
  /// Whether closing now would lose something.
  bool IsUnsaved() const;
  /// Whether the document has a file that somebody has taken away, replaced or written to.
  bool HasLostFile() const { return m_named && m_file != nullptr && !m_file->Stands(); }
  /// What a recovery file is to be called when it is offered; UTF-8.
  void SetTitle(const std::string& title);
  const std::string& Title() const { return m_title; }
  /// The file itself; null while there is none.
  DocumentFile* File() { return m_file.get(); }
  /// Its path; empty while there is none.
  std::string Path() const { return m_file != nullptr ? m_file->Path() : std::string(); }

  /// Recovery files that no program has open and that hold something, latest first. Empty ones are taken away.
  static std::vector<RecoverableDocument> FindRecoverable(const std::string& folder);
  /// Takes a recovery file away; false when somebody is using it.
  static bool Discard(const std::string& path);

 private:
  void MakeRecoveryFile();
  void Use(std::unique_ptr<DocumentFile> file, bool named);
  void LeaveRecoveryFile();

  Database& m_database;
  std::string m_folder;
  std::unique_ptr<DocumentFile> m_file;
  bool m_named = false;
  bool m_withoutRecovery = false;  // it was told that there is none
  std::string m_title;
  std::function<void(const DocumentError&)> m_onFailure;
};

}  // namespace qd::workbench
