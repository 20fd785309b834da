#include "workbench/store/CheckDocument.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "workbench/store/RecordCheck.h"

namespace qd::workbench {

namespace {

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

std::vector<std::string> VerifyDocument(const std::string& path) {
  DocumentError error;
  if (DocumentFile::Attach(path, error) == nullptr) return {std::string(error.key) + " " + error.detail};
  Connection file(path, Connection::Mode::Write);
  file.Allow(Connection::Scope::Rows, DocumentTables());
  std::vector<std::string> faults;
  Statement check = file.Prepare("PRAGMA integrity_check");
  while (check.Step()) {
    const std::string line(check.Bytes(0));
    if (line != "ok") faults.push_back(line);
  }
  if (check.Failed()) faults.push_back(file.Error());
  RecordCheck records;
  std::vector<std::shared_ptr<tagTRecord>> read;
  for (const auto& table : MakeRecordTables()) {
    const bool whole = table->Read(
        file,
        [&](iterator itr, std::shared_ptr<tagTRecord> record) {
          records.Add(itr, *record);
          read.push_back(std::move(record));
        },
        [&](iterator itr, const std::string& fault) { records.Complain(table->Name(), itr, fault); });
    if (!whole) faults.push_back(std::string(table->Name()) + ": " + file.Error());
  }
  records.CheckReferences();
  faults.insert(faults.end(), records.Faults().begin(), records.Faults().end());
  return faults;
}

bool RepairDocument(const std::string& path, const std::string& repaired, std::vector<std::string>& notes,
                    DocumentError& error) {
  Connection file(path, Connection::Mode::Write);
  if (!file.IsOpen() || !std::filesystem::exists(std::filesystem::u8path(path))) {
    error = {"IDS_WB_IMPORT_UNREADABLE", path};
    return false;
  }
  // A table that is not ours may be anything; nothing is asked of it.
  std::vector<std::string> sound = DocumentTables();
  for (const SchemaFault& fault : CheckSchema(file, kDocumentVersion)) {
    notes.push_back(fault.key + (": " + fault.detail));
    std::erase(sound, fault.table);
  }
  file.Allow(Connection::Scope::Rows, sound);
  Records records;
  for (const auto& table : MakeRecordTables()) {
    if (std::find(sound.begin(), sound.end(), table->Name()) == sound.end()) continue;
    const auto keep = [&](iterator itr, std::shared_ptr<tagTRecord> record) { records[itr] = std::move(record); };
    const auto skip = [&](iterator itr, const std::string& fault) {
      notes.push_back(std::string(table->Name()) + " " + std::to_string(NumberOf(itr)) + ": " + fault);
    };
    // Where a page of the file is damaged reading ends, so what lies behind it is read from the other end.
    if (table->Read(file, keep, skip)) continue;
    notes.push_back(std::string(table->Name()) + ": " + file.Error());
    table->ReadBackwards(file, keep, skip);
  }
  if (records.empty()) {
    error = {"IDS_WB_DOC_DAMAGED", path};
    return false;
  }
  Mender(records, notes).Mend();
  Database database;
  for (auto& [itr, record] : records) database.Load(itr, record);
  return DocumentFile::Create(repaired, database, error) != nullptr;
}

}  // namespace qd::workbench
