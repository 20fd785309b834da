#include "workbench/store/RecordCheck.h"

#include <iterator>
#include <utility>

#include "host/CMSGFunction.h"
#include "workbench/model/Pools.h"
#include "workbench/model/Values.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

constexpr std::size_t kMostLines = 100;
constexpr iterator kFirstSettings = static_cast<iterator>(kDataSettings) << kTypeShift | 1;
constexpr iterator kGlobal = static_cast<iterator>(kDataCord) << kTypeShift | 1;

std::int32_t IdOf(iterator itr) {
  return NumberOf(itr) <= kMostRecords ? static_cast<std::int32_t>(NumberOf(itr)) : 0;
}

/// Fields that make trees of records.
bool IsWayUp(const ReferenceField& field) {
  return field.whenGone == WhenGone::MoveUp || field.whenGone == WhenGone::KeepPlace;
}

}  // namespace

void RecordCheck::Note(std::vector<std::string>& lines, iterator itr, const char* key, const CString& what) {
  if (lines.size() < kMostLines)
    lines.push_back(ToUtf8(RecordFault{TypeOf(itr), NumberOf(itr), key, what}.Text()));
}

void RecordCheck::Complain(const RecordFault& fault) {
  if (m_faults.size() < kMostLines) m_faults.push_back(ToUtf8(fault.Text()));
}

void RecordCheck::Add(iterator itr, std::shared_ptr<const tagTRecord> record) {
  // Most come in ascending order.
  m_records.insert_or_assign(m_records.upper_bound(itr), itr, std::move(record));
}

const tagTRecord* RecordCheck::Find(iterator itr) const {
  const auto found = m_records.find(itr);
  return found != m_records.end() ? found->second.get() : nullptr;
}

iterator RecordCheck::MsetOfKey(std::uint32_t key) const {
  const auto found = m_msetOfKey.find(key);
  return found != m_msetOfKey.end() ? found->second : 0;
}

std::vector<JournalEntry> RecordCheck::TakeChanges() {
  std::vector<JournalEntry> changes;
  for (auto& [itr, change] : m_changes) {
    change.after = m_records[itr];
    changes.push_back(std::move(change));
  }
  m_changes.clear();
  return changes;
}

/// A document has one record of settings, of any number: a number that was taken back is not given out again.
bool RecordCheck::AreOtherSettings(iterator itr) const {
  return TypeOf(itr) == kDataSettings && m_records.lower_bound(kFirstSettings)->first != itr;
}

void RecordCheck::FindKeys() {
  for (const auto& [itr, record] : m_records) {
    if (TypeOf(itr) != kDataMset) continue;
    const std::uint32_t key = static_cast<const tagTMset&>(*record).key & kMsetKeyMask;
    if (!m_msetOfKey.emplace(key, itr).second) Note(m_faults, itr, "IDS_WB_FAULT_KEY_TAKEN");
  }
}

void RecordCheck::Mend(iterator itr, std::shared_ptr<const tagTRecord>& record, const ReferenceField& field) {
  for (std::size_t i = 0; i < field.count(*record);) {
    const iterator name = field.at(*record, i);
    const bool good = name == 0 || (TypeOf(name) == field.target && Resolve(*this, name) != 0);
    if (good) {
      ++i;
      continue;
    }
    Note(m_mended, itr, "IDS_WB_FAULT_REFERENCE", CMSGFunction::GetValue(field.what));
    m_changes.try_emplace(itr, JournalEntry{itr, record, nullptr});
    const auto oldest = [this](std::uint16_t type) {
      const auto first = m_records.lower_bound(static_cast<iterator>(type) << kTypeShift);
      return first != m_records.end() && TypeOf(first->first) == type ? first->first : iterator{0};
    };
    Departure departure{*this, [](iterator) { return false; }, oldest};
    std::shared_ptr<tagTRecord> mended = Released(field, *record, name, departure);
    if (mended == nullptr) {  // what the rule keeps is gone already
      mended = CopyRecord(TypeOf(itr), *record);
      field.replace(*mended, name, 0);
    }
    record = std::move(mended);
    if (field.whenGone != WhenGone::TakeOut) return;
  }
}

bool RecordCheck::StandsOnItself(iterator itr, const ReferenceField& field) {
  if (field.at(*m_records.at(itr), 0) == 0) return false;
  std::unordered_set<iterator> way;
  for (iterator at = itr; at != 0 && !m_standing.contains(at);) {
    if (!way.insert(at).second) return true;
    const iterator name = field.at(*m_records.at(at), 0);
    at = TypeOf(name) == field.target ? Resolve(*this, name) : 0;
  }
  m_standing.insert(way.begin(), way.end());
  return false;
}

void RecordCheck::Run() {
  FindKeys();
  for (auto& [itr, record] : m_records) {
    if (AreOtherSettings(itr)) Note(m_faults, itr, "IDS_WB_FAULT_OTHERS");
    if (const char* fault = FaultOf(TypeOf(itr), IdOf(itr), *record)) Note(m_faults, itr, fault);
    for (const ReferenceField& field : ReferenceFieldsOf(TypeOf(itr))) Mend(itr, record, field);
  }
  for (const auto& [itr, record] : m_records) {
    for (const ReferenceField& field : ReferenceFieldsOf(TypeOf(itr))) {
      if (IsWayUp(field) && StandsOnItself(itr, field)) Note(m_faults, itr, "IDS_WB_FAULT_CIRCLE");
    }
    if (TypeOf(itr) == kDataCord && (itr == kGlobal) != (static_cast<const tagTCord&>(*record).parent == 0)) {
      Note(m_faults, itr, "IDS_WB_FAULT_NO_SYSTEM");
    }
  }
  if (!m_records.contains(kGlobal)) Note(m_faults, kGlobal, "IDS_WB_FAULT_MISSING");
}

/// Makes the values of a record fit; what is wrong with it in spite of that, null for nothing.
const char* RecordCheck::PutRight(iterator itr, std::shared_ptr<const tagTRecord>& record) {
  const char* fault = FaultOf(TypeOf(itr), IdOf(itr), *record);
  const std::shared_ptr<tagTRecord> fit = fault != nullptr ? CopyRecord(TypeOf(itr), *record) : nullptr;
  if (fit == nullptr) return fault;
  MakeFit(TypeOf(itr), IdOf(itr), *fit);
  const char* still = FaultOf(TypeOf(itr), IdOf(itr), *fit);
  if (still == nullptr) Note(m_mended, itr, "IDS_WB_FAULT_PUT_RIGHT", CMSGFunction::GetValue(fault));
  record = fit;
  return still;
}

void RecordCheck::Repair() {
  std::unordered_set<std::uint32_t> keys;
  for (auto at = m_records.begin(); at != m_records.end();) {
    const iterator itr = at->first;
    const char* fault = PutRight(itr, at->second);
    if (fault == nullptr && TypeOf(itr) == kDataMset &&
        !keys.insert(static_cast<const tagTMset&>(*at->second).key & kMsetKeyMask).second) {
      fault = "IDS_WB_FAULT_KEY_TAKEN";
    }
    if (AreOtherSettings(itr)) fault = "IDS_WB_FAULT_OTHERS";
    if (fault != nullptr) Note(m_mended, itr, "IDS_WB_FAULT_LEFT_OUT", CMSGFunction::GetValue(fault));
    at = fault != nullptr ? m_records.erase(at) : std::next(at);
  }
  FindKeys();
  for (auto& [itr, record] : m_records) {
    for (const ReferenceField& field : ReferenceFieldsOf(TypeOf(itr))) {
      if (!IsWayUp(field)) continue;
      const bool lost = field.target == kDataCord && itr != kGlobal && field.at(*record, 0) == 0;
      const bool global = itr == kGlobal && field.at(*record, 0) != 0;
      if (!lost && !global && !StandsOnItself(itr, field)) continue;
      Note(m_mended, itr, "IDS_WB_FAULT_MOVED_UP");
      const std::shared_ptr<tagTRecord> moved = CopyRecord(TypeOf(itr), *record);
      field.replace(*moved, field.at(*record, 0), field.target == kDataCord && !global ? kGlobal : 0);
      record = moved;
    }
  }
  m_standing.clear();
  m_msetOfKey.clear();
}

}  // namespace qd::workbench
