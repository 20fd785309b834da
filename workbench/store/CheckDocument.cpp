#include "workbench/store/CheckDocument.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "workbench/store/DocumentReading.h"
#include "workbench/store/DocumentRows.h"
#include "workbench/store/RecordCheck.h"
#include "workbench/text/Shown.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

constexpr const char* kDamaged = "IDS_WB_DOC_DAMAGED";
constexpr const char* kMended = "IDS_WB_DOC_MENDED";

}  // namespace

std::vector<DocumentError> VerifyDocument(const std::string& path, const ProgressCall& progress) {
  DocumentError error;
  const std::unique_ptr<Connection> file = OpenToRead(path, error, nullptr, progress);
  const int version = file != nullptr ? ReadVersion(*file, path, error) : 0;
  if (version == 0) return {error};
  std::vector<DocumentError> faults;
  for (const SchemaFault& fault : CheckSchema(*file, version)) faults.push_back({fault.key, fault.detail});
  if (!faults.empty()) return faults;
  file->Allow(Connection::Scope::Rows, DocumentTables());
  bool stopped = false;
  file->SetProgress([&] {
    stopped = progress && !progress(file->Taken());
    return !stopped;
  });
  RecordCheck records;
  bool whole = true;
  // What later versions brought is not there.
  for (const auto& table : MakeRecordTables([&](const std::string& name) { return IsTableOf(name, version); })) {
    const std::size_t known = records.Faults().size();
    const bool read = table->Read(
        *file, [&](iterator itr, std::shared_ptr<tagTRecord> record) { records.Add(itr, std::move(record)); },
        [&](const RecordFault& fault) { records.Complain(fault); });
    if (stopped) return {{"IDS_WB_IMPORT_CANCELLED", path}};
    whole = whole && read;
    // Unless it was stopped for what stands in it.
    if (!read && records.Faults().size() == known) {
      faults.push_back({kDamaged, std::string(table->Name()) + ": " + ShownText(file->Error())});
    }
  }
  records.Run();
  for (const std::string& fault : records.Faults()) faults.push_back({kDamaged, fault});
  for (const std::string& line : records.Mended()) faults.push_back({kMended, line});
  DocumentMark mark;
  const bool hasMark = IsTableOf("document", version);
  for (const std::string& fault :
       {hasMark ? ReadMark(*file, mark) : std::string(), ReadNumbers(*file, [](iterator) {}), CheckViews(*file)}) {
    if (!fault.empty()) faults.push_back({kDamaged, fault});
  }
  // Pages are looked at last, and only when all tables have an end.
  if (!whole) return faults;
  if (const std::string fault = CheckPages(*file); !fault.empty()) faults.push_back({kDamaged, fault});
  return faults;
}

bool MayRepairInto(const std::string& path, const std::string& repaired, bool replace, DocumentError& error) {
  std::error_code none;
  // A link to nothing counts too: it says where something is to be.
  if (std::filesystem::symlink_status(repaired, none).type() == std::filesystem::file_type::not_found) return true;
  if (std::filesystem::equivalent(path, repaired, none)) {
    error = {"IDS_WB_REPAIR_ITSELF", repaired};
  } else if (!IsPlainFile(repaired, error)) {
    return false;
  } else if (!replace) {
    error = {"IDS_WB_REPAIR_EXISTS", repaired};
  } else if (DocumentFile::IsInUse(repaired)) {
    error = {"IDS_WB_DOC_BUSY", repaired};
  } else {
    return true;
  }
  return false;
}

bool RepairDocument(const std::string& path, const std::string& repaired, std::vector<DocumentError>& notes,
                    DocumentError& error, const ProgressCall& progress) {
  const std::unique_ptr<Connection> file = OpenToRead(path, error, nullptr, progress);
  if (file == nullptr) return false;
  // Even the numbers in the head may be damaged; a document is told by its tables then.
  const int version = ReadVersion(*file, path, error);
  // A table that is not ours may be anything; nothing is asked of it.
  std::vector<std::string> sound = DocumentTables();
  // An older document is measured by its own version; what later ones brought is not there to be read.
  const int measure = version != 0 ? version : kDocumentVersion;
  std::erase_if(sound, [measure](const std::string& table) { return !IsTableOf(table, measure); });
  for (const SchemaFault& fault : CheckSchema(*file, measure)) {
    notes.push_back({fault.key, fault.detail});
    std::erase(sound, fault.table);
  }
  if (version == 0) notes.push_back(error);
  error = {};
  file->Allow(Connection::Scope::Rows, sound);
  bool stopped = false;
  file->SetProgress([&] {
    stopped = progress && !progress(file->Taken());
    return !stopped;
  });
  RecordCheck records;
  const auto isSound = [&sound](const std::string& table) {
    return std::find(sound.begin(), sound.end(), table) != sound.end();
  };
  for (const auto& table : MakeRecordTables(isSound)) {
    const auto keep = [&](iterator itr, std::shared_ptr<tagTRecord> record) {
      records.Add(itr, std::move(record));
    };
    const auto skip = [&notes](const RecordFault& fault) { notes.push_back({kDamaged, ToUtf8(fault.Text())}); };
    // Where a page of the file is damaged reading ends, so what lies behind it is read from the other end.
    const std::size_t known = notes.size();
    if (table->Read(*file, keep, skip)) continue;
    if (stopped) break;
    if (notes.size() == known) {
      notes.push_back({kDamaged, std::string(table->Name()) + ": " + ShownText(file->Error())});
    }
    table->ReadBackwards(*file, keep, skip);
  }
  if (stopped) {
    error = {"IDS_WB_IMPORT_CANCELLED", path};
    return false;
  }
  if (records.All().empty()) {
    error = {kDamaged, path};
    return false;
  }
  records.Repair();
  records.Run();
  for (const std::string& line : records.Mended()) notes.push_back({kMended, line});
  // What is missing is what every new document has.
  for (const std::string& fault : records.Faults()) notes.push_back({kDamaged, fault});
  Database database;
  for (const auto& [itr, record] : records.All()) database.Load(itr, record);
  if (isSound("pool")) {
    ReadNumbers(*file, [&database](iterator last) { database.ReserveNumbers(last); });
  }
  return DocumentFile::Create(repaired, database, error) != nullptr;
}

}  // namespace qd::workbench
