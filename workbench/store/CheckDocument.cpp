#include "workbench/store/CheckDocument.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "workbench/store/DocumentReading.h"
#include "workbench/store/DocumentRows.h"
#include "workbench/store/RecordCheck.h"
#include "workbench/text/Shown.h"

namespace qd::workbench {

namespace {

constexpr const char* kDamaged = "IDS_WB_DOC_DAMAGED";

using Records = std::map<iterator, std::shared_ptr<tagTRecord>>;

/// Takes out of records what they refer to and what is not there, and those that cannot stand at all.
class Mender {
 public:
  Mender(Records& records, std::vector<std::string>& notes) : m_records(records), m_notes(notes) {}

  void Mend() {
    std::erase_if(m_records, [this](const auto& entry) { return !MayStand(entry.first, *entry.second); });
    for (auto& [itr, record] : m_records) {
      switch (TypeOf(itr)) {
        case kDataGeom:
          MendPart(itr, static_cast<tagTGeom&>(*record));
          break;
        case kDataMset:
          MendSet(itr, static_cast<tagTMset&>(*record));
          break;
        case kDataCord:
          MendSystem(itr, static_cast<tagTCord&>(*record));
          break;
        case kDataProperty:
          Clear(itr, static_cast<tagTProperty&>(*record).material, "material");
          break;
        default:
          break;
      }
    }
  }

 private:
  static constexpr iterator kGlobal = static_cast<iterator>(kDataCord) << kTypeShift | 1;

  void Note(iterator itr, const std::string& what) {
    m_notes.push_back("record " + std::to_string(TypeOf(itr)) + "/" + std::to_string(NumberOf(itr)) + ": " + what);
  }
  void Clear(iterator itr, iterator& reference, const char* what) {
    if (reference == 0 || m_records.contains(reference)) return;
    Note(itr, std::string(what) + " is gone");
    reference = 0;
  }

  bool MayStand(iterator itr, const tagTRecord& record) {
    const char* fault = nullptr;
    if (NumberOf(itr) > RecordCheck::kMostRecords) fault = "a number beyond all";
    if (TypeOf(itr) == kDataCord && !IsPlaceable(static_cast<const tagTCord&>(record))) fault = "no axes";
    if (TypeOf(itr) == kDataMset) {
      const auto& set = static_cast<const tagTMset&>(record);
      const std::uint32_t key = set.key & kMsetKeyMask;
      if (key == 0 || !m_setOfKey.emplace(key, &set).second) fault = "a key that is none or taken";
    }
    if (fault != nullptr) Note(itr, std::string("left out: ") + fault);
    return fault == nullptr;
  }

  void MendPart(iterator itr, tagTGeom& part) {
    Clear(itr, part.material, "material");
    Clear(itr, part.gset, "geometry set");
    part.cadItem = part.id;
  }

  void MendSet(iterator itr, tagTMset& set) {
    Clear(itr, set.geom, "part");
    Clear(itr, set.property, "property");
    iterator generation = set.mgInfo != 0 ? static_cast<iterator>(kDataMGInfo) << kTypeShift | set.mgInfo : 0;
    Clear(itr, generation, "generation");
    if (generation == 0) set.mgInfo = 0;
    std::set<const void*> way;
    for (const tagTMset* at = &set; at->parent != 0;) {
      const auto above = m_setOfKey.find(at->parent);
      if (above != m_setOfKey.end() && way.insert(at).second) {
        at = above->second;
        continue;
      }
      Note(itr, "moved to the top: no way up");
      set.parent = 0;
      return;
    }
  }

  void MendSystem(iterator itr, tagTCord& system) {
    if (itr == kGlobal) {
      system.parent = 0;
      return;
    }
    std::set<const void*> way;
    for (const tagTCord* at = &system; at != nullptr;) {
      const auto above = m_records.find(at->parent);
      if (at->parent == kGlobal) return;
      if (above != m_records.end() && TypeOf(above->first) == kDataCord && way.insert(at).second) {
        at = static_cast<const tagTCord*>(above->second.get());
        continue;
      }
      Note(itr, "stands in the global system now");
      system.parent = kGlobal;
      return;
    }
  }

  Records& m_records;
  std::vector<std::string>& m_notes;
  std::map<std::uint32_t, const tagTMset*> m_setOfKey;
};

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
  std::vector<std::shared_ptr<tagTRecord>> all;
  for (const auto& table : MakeRecordTables()) {
    const bool read = table->Read(
        *file,
        [&](iterator itr, std::shared_ptr<tagTRecord> record) {
          records.Add(itr, *record);
          all.push_back(std::move(record));
        },
        [&](iterator itr, const std::string& fault) { records.Complain(table->Name(), itr, fault); });
    if (stopped) return {{"IDS_WB_IMPORT_CANCELLED", path}};
    whole = whole && read;
    if (!read) faults.push_back({kDamaged, std::string(table->Name()) + ": " + ShownText(file->Error())});
  }
  records.CheckReferences();
  for (const std::string& fault : records.Faults()) faults.push_back({kDamaged, fault});
  for (const std::string& fault : {ReadNumbers(*file, [](iterator) {}), CheckViews(*file)}) {
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
  for (const SchemaFault& fault : CheckSchema(*file, version != 0 ? version : kDocumentVersion)) {
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
  Records records;
  for (const auto& table : MakeRecordTables()) {
    if (std::find(sound.begin(), sound.end(), table->Name()) == sound.end()) continue;
    const auto keep = [&](iterator itr, std::shared_ptr<tagTRecord> record) { records[itr] = std::move(record); };
    const auto skip = [&](iterator itr, const std::string& fault) {
      notes.push_back({kDamaged, std::string(table->Name()) + " " + std::to_string(NumberOf(itr)) + ": " + fault});
    };
    // Where a page of the file is damaged reading ends, so what lies behind it is read from the other end.
    if (table->Read(*file, keep, skip)) continue;
    if (stopped) break;
    notes.push_back({kDamaged, std::string(table->Name()) + ": " + ShownText(file->Error())});
    table->ReadBackwards(*file, keep, skip);
  }
  if (stopped) {
    error = {"IDS_WB_IMPORT_CANCELLED", path};
    return false;
  }
  if (records.empty()) {
    error = {kDamaged, path};
    return false;
  }
  std::vector<std::string> mended;
  Mender(records, mended).Mend();
  for (const std::string& line : mended) notes.push_back({kDamaged, line});
  Database database;
  for (auto& [itr, record] : records) database.Load(itr, record);
  if (std::find(sound.begin(), sound.end(), "pool") != sound.end()) {
    ReadNumbers(*file, [&database](iterator last) { database.ReserveNumbers(last); });
  }
  return DocumentFile::Create(repaired, database, error) != nullptr;
}

}  // namespace qd::workbench
