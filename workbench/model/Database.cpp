#include "workbench/model/Database.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>

#include "host/Act.h"
#include "host/CMSGFunction.h"
#include "host/MessageOutput.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/mesh/ModelBytes.h"

namespace qd::workbench {

Database::Database()
    : m_geoms(kDataGeom, *this),
      m_settings(kDataSettings, *this),
      m_generations(kDataMGInfo, *this),
      m_msets(kDataMset, *this, m_settings),
      m_properties(kDataProperty, *this),
      m_gsets(kDataGset, *this, m_settings),
      m_materials(kDataMaterial, *this),
      m_cords(kDataCord, *this),
      m_decks(kDataDeck, *this),
      m_stores{{kDataGeom, &m_geoms},         {kDataMset, &m_msets},          {kDataSettings, &m_settings},
               {kDataMGInfo, &m_generations}, {kDataProperty, &m_properties}, {kDataGset, &m_gsets},
               {kDataMaterial, &m_materials}, {kDataCord, &m_cords},          {kDataDeck, &m_decks}} {
  m_cords.MakeDefault();
}

IPoolStore* Database::StoreOf(iterator itr) const {
  const auto found = m_stores.find(TypeOf(itr));
  return found != m_stores.end() ? found->second : nullptr;
}

std::uint16_t Database::GetDataType(iterator itr) const {
  const IPoolStore* store = StoreOf(itr);
  return store != nullptr && store->Get(itr) != nullptr ? TypeOf(itr) : 0;
}

std::int32_t Database::GetRecordID(iterator itr) const {
  const IPoolStore* store = StoreOf(itr);
  const auto record = store != nullptr ? store->Get(itr) : nullptr;
  return record != nullptr ? record->id : 0;
}

// ---- what the pools do not know --------------------------------------------------------------------------

std::vector<IAppDB::Material> Database::ListMaterials() const {
  std::vector<Material> list;
  for (const iterator itr : m_materials.GetItrList()) list.push_back({m_materials.GetAtNU(itr)->name, itr});
  return list;
}

std::vector<iterator> Database::GetPartsOfMaterial(iterator material) const {
  std::vector<iterator> parts;
  m_references.AppendHolders(material, kDataGeom, parts);
  return parts;
}

int Database::IsFlexibleBody(iterator geom) const {
  const tagTGeom* record = m_geoms.GetAtNU(geom);
  return record != nullptr && record->kind == TopologyKind::Solid && record->flexible ? 1 : 0;
}

int Database::SetBodyType(const std::vector<iterator>& geoms, int flexible) {
  for (const iterator geom : geoms) {
    const tagTGeom* old = m_geoms.GetAtNU(geom);
    if (old == nullptr) return 0;
    tagTGeom record = *old;
    record.flexible = flexible != 0;
    if (m_geoms.Change(geom, std::move(record)) == 0) return 0;
  }
  return 1;
}

int Database::GetProperty(iterator itr, Property& property) const {
  const tagTProperty* record = m_properties.GetAtNU(itr);
  if (record == nullptr) return 0;
  property = {record->id, record->name, false, 0, {}};
  if (const tagTMaterial* material = m_materials.GetAtNU(record->material)) {
    property.hasMaterial = true;
    property.materialNumber = material->id;
    property.materialName = material->name;
  }
  return 1;
}

/// Elements without property are of the material of the part that they mesh.
int Database::GetMassCentre(iterator mset, MassCentre& result, const ProgressCall& progress) const {
  const tagTMset* record = m_msets.GetAtNU(mset);
  if (record == nullptr) return 0;
  result = {};
  if (record->mesh == nullptr) return 1;
  const tagTProperty* property = m_properties.GetAtNU(record->property);
  const tagTGeom* part = m_geoms.GetAtNU(record->geom);
  const iterator made = property != nullptr ? property->material : part != nullptr ? part->material : 0;
  const tagTMaterial* material = m_materials.GetAtNU(made);
  return SumMass(*record->mesh, property, material != nullptr ? material->density : 0, result, progress);
}

// ---- transactions ---------------------------------------------------------------------------------------

int Database::BeginTransaction(const CString& title) {
  if (m_open) return 0;
  m_open = true;
  m_title = title;
  return 1;
}

namespace {

constexpr const char* kPoolFull = "IDS_WB_FAULT_POOL_FULL";

/// What is wrong with a record that is about to be written; a large part that stood there before is not looked at
/// again.
const char* FaultOfEntry(const JournalEntry& entry) {
  if (entry.after == nullptr) return nullptr;
  const std::uint16_t type = TypeOf(entry.itr);
  if (NumberOf(entry.itr) > kMostRecords) return kPoolFull;
  const char* fault = FaultOf(type, static_cast<std::int32_t>(NumberOf(entry.itr)), *entry.after);
  if (fault != nullptr) return fault;
  if (IsNamedByBlanks(type, entry.before.get(), *entry.after)) return "IDS_WB_FAULT_BLANK_NAME";
  const auto isNew = [&entry](const auto& part, const auto& before) {
    return part != nullptr && (entry.before == nullptr || part != before);
  };
  const auto faultOf = [](const auto& part) { return HangsTogether(part) ? FaultOf(part) : "IDS_WB_FAULT_APART"; };
  if (type == kDataMset) {
    const auto* before = static_cast<const tagTMset*>(entry.before.get());
    const MeshPtr& mesh = static_cast<const tagTMset&>(*entry.after).mesh;
    return isNew(mesh, before != nullptr ? before->mesh : nullptr) ? faultOf(*mesh) : nullptr;
  }
  if (type == kDataGeom) {
    const auto* before = static_cast<const tagTGeom*>(entry.before.get());
    const auto& shape = static_cast<const tagTGeom&>(*entry.after).shape;
    return isNew(shape, before != nullptr ? before->shape : nullptr) ? faultOf(*shape) : nullptr;
  }
  return nullptr;
}

}  // namespace

/// Notes why the open transaction does not happen; the first reason says most.
bool Database::Refuse(iterator itr, const char* key, CString what) {
  if (m_refusal.key == nullptr) m_refusal = {TypeOf(itr), NumberOf(itr), key, std::move(what)};
  return false;
}

bool Database::Note(JournalEntry entry) {
  if (!m_open || (m_guard && !m_guard(entry.itr))) return false;
  if (const char* fault = FaultOfEntry(entry)) return Refuse(entry.itr, fault);
  m_journal.push_back(std::move(entry));
  return true;
}

int Database::CommitTransaction(int) {
  if (!m_open) return 0;
  std::vector<JournalEntry> net = NetEffect(m_journal);
  const std::size_t writes = m_journal.size();
  bool sound = m_refusal.key == nullptr && DropUnused(net);
  if (m_journal.size() != writes) net = NetEffect(m_journal);
  sound = sound && std::all_of(net.begin(), net.end(), [this](const auto& entry) { return IsSound(entry); });
  if (!sound) {
    RollbackTransaction();
    return 0;
  }
  m_open = false;
  m_journal.clear();
  if (net.empty()) return 1;
  if (m_store != nullptr && !m_store->Write(net, true)) {
    Replay(net, false);
    return 0;
  }
  Remember({m_title, net, BytesOf(net)});
  Announce(net, true);
  return 1;
}

void Database::RollbackTransaction() {
  if (!m_open) return;
  m_open = false;
  Replay(std::exchange(m_journal, {}), false);
  const RecordFault refusal = std::exchange(m_refusal, {});
  if (refusal.key == nullptr) return;
  qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_WB_ACT_REFUSED"), {m_title, refusal.Text()});
}

int Database::InTransaction(const char* titleKey, const std::function<int()>& work) {
  if (m_open) return work();
  return RunAct(this, titleKey, work);
}

int Database::Delete(const std::vector<iterator>& itrs) {
  std::map<std::uint16_t, std::vector<iterator>> byType;
  for (const iterator itr : itrs) byType[GetDataType(itr)].push_back(itr);
  if (byType.empty() || byType.contains(0)) return 0;
  return InTransaction("IDS_QD_TRANS_Delete", [&] {
    for (const auto& [type, records] : byType) {
      if (m_stores.at(type)->DeleteAll(records) == 0) return 0;
    }
    return 1;
  });
}

// ---- references -----------------------------------------------------------------------------------------

const tagTRecord* Database::Find(iterator itr) const {
  const IPoolStore* store = StoreOf(itr);
  return store != nullptr ? store->Get(itr).get() : nullptr;
}

void Database::OnPlaced(iterator itr, const tagTRecord* before, const tagTRecord* after) {
  m_references.Follow(itr, before, after);
}

/// The records that name a record by a field, oldest first.
std::vector<iterator> Database::HoldersOf(const ReferenceField& field, iterator itr,
                                          const tagTRecord& record) const {
  std::vector<iterator> holders;
  if (!field.inPool) {
    m_references.AppendHolders(itr, field.holder, holders);
  } else if (field.holder == kDataGeom) {
    holders = m_geoms.PartsOf(itr);
  } else if (field.holder == kDataMset) {
    m_msets.GetItrListByParentMsetK(static_cast<const tagTMset&>(record).key, holders);
  } else if (field.holder == kDataCord) {
    holders = m_cords.ChildrenOf(itr);
  }
  return holders;
}

Departure Database::DepartureOf(std::function<bool(iterator)> goes) const {
  // Asked once for each part of a set.
  const auto defaultOf = [this, goes, heir = std::optional<iterator>()](std::uint16_t type) mutable {
    if (!heir) heir = m_gsets.HeirOf(goes);
    return type == kDataGset ? *heir : iterator{0};
  };
  return {*this, std::move(goes), defaultOf};
}

int Database::LetGo(const std::vector<iterator>& itrs) {
  const std::unordered_set<iterator> gone(itrs.begin(), itrs.end());
  Departure departure = DepartureOf([&gone](iterator itr) { return gone.contains(itr); });
  for (const iterator itr : itrs) {
    const IPoolStore* store = StoreOf(itr);
    const auto record = store != nullptr ? store->Get(itr) : nullptr;
    if (record == nullptr) return 0;
    for (const ReferenceField& field : ReferenceFields()) {
      if (field.target != TypeOf(itr)) continue;
      for (const iterator holder : HoldersOf(field, itr, *record)) {
        if (gone.contains(holder)) continue;
        auto changed = Released(field, *Find(holder), NameFor(field, itr, *record), departure);
        if (changed == nullptr) {
          Refuse(itr, "IDS_WB_FAULT_NEEDED", NameOfType(field.holder));
          return 0;
        }
        if (!StoreOf(holder)->Rewrite(holder, std::move(changed))) return 0;
      }
    }
  }
  return 1;
}

/// Deletes what was named before and is named no more, where the rule of the field says so.
bool Database::DropUnused(const std::vector<JournalEntry>& net) {
  std::unordered_set<iterator> unused;
  for (const JournalEntry& entry : net) {
    if (entry.before == nullptr) continue;
    for (const ReferenceField& field : ReferenceFieldsOf(TypeOf(entry.itr))) {
      if (!field.lastTakesTarget) continue;
      const iterator itr = Resolve(*this, field.at(*entry.before, 0));
      if (itr != 0 && HoldersOf(field, itr, *Find(itr)).empty()) unused.insert(itr);
    }
  }
  return std::all_of(unused.begin(), unused.end(),
                     [this](iterator itr) { return StoreOf(itr)->DeleteAll({itr}) != 0; });
}

/// Whether all that a record names stands, and nothing names a record that is gone.
bool Database::IsSound(const JournalEntry& entry) {
  if (entry.after == nullptr) {
    for (const ReferenceField& field : ReferenceFields()) {
      if (field.target == TypeOf(entry.itr) && !HoldersOf(field, entry.itr, *entry.before).empty()) {
        return Refuse(entry.itr, "IDS_WB_FAULT_NEEDED", NameOfType(field.holder));
      }
    }
    return true;
  }
  for (const ReferenceField& field : ReferenceFieldsOf(TypeOf(entry.itr))) {
    for (std::size_t i = 0; i < field.count(*entry.after); ++i) {
      const iterator name = field.at(*entry.after, i);
      if (name != 0 && (Resolve(*this, name) == 0 || TypeOf(name) != field.target)) {
        return Refuse(entry.itr, "IDS_WB_FAULT_REFERENCE", CMSGFunction::GetValue(field.what));
      }
    }
  }
  return true;
}

/// Undo and redo restore what acts have left in order; only what was put aside of them can name what goes then.
std::vector<JournalEntry> Database::LeftBehind(const std::vector<JournalEntry>& net, bool forward) const {
  std::vector<JournalEntry> left;
  std::unordered_set<iterator> touched;
  for (const JournalEntry& entry : net) touched.insert(entry.itr);
  Departure departure = DepartureOf([&touched](iterator itr) { return touched.contains(itr); });
  for (const JournalEntry& entry : net) {
    const auto& before = forward ? entry.before : entry.after;
    if (before == nullptr || (forward ? entry.after : entry.before) != nullptr) continue;
    for (const ReferenceField& field : ReferenceFields()) {
      if (field.target != TypeOf(entry.itr)) continue;
      for (const iterator holder : HoldersOf(field, entry.itr, *before)) {
        if (touched.contains(holder)) continue;
        auto changed = Released(field, *Find(holder), NameFor(field, entry.itr, *before), departure);
        if (changed != nullptr) left.push_back({holder, StoreOf(holder)->Get(holder), std::move(changed)});
      }
    }
  }
  return left;
}

void Database::PutAside(JournalEntry entry) {
  if (m_store != nullptr && !m_store->Write({entry}, true)) return;
  StoreOf(entry.itr)->Reserve(entry.itr);
  StoreOf(entry.itr)->Restore(entry.itr, entry.after);
  if (m_listener != nullptr) m_listener->OnSettingChanged();
}

// ---- history --------------------------------------------------------------------------------------------

/// A new act ends what could be redone.
void Database::Remember(Act act) {
  ++m_actNumber;
  for (const Act& undone : m_redo) m_historyBytes -= undone.bytes;
  m_redo.clear();
  m_historyBytes += act.bytes;
  m_undo.push_back(std::move(act));
  GiveUpOldest();
}

void Database::AddChange(const CString& title, std::shared_ptr<IUndoableChange> change, std::uint64_t since) {
  if (m_actNumber == since || m_undo.empty() || m_undo.back().change != nullptr) {
    const std::size_t bytes = change->Bytes();
    return Remember({title, {}, bytes, std::move(change)});
  }
  m_historyBytes += change->Bytes();
  m_undo.back().bytes += change->Bytes();
  m_undo.back().change = std::move(change);
  GiveUpOldest();
}

void Database::GiveUpOldest() {
  while (m_historyBytes > m_historyLimit && m_undo.size() > 1) {
    m_historyBytes -= m_undo.front().bytes;
    m_undo.pop_front();
  }
}

void Database::SetHistoryLimit(std::size_t bytes) {
  m_historyLimit = bytes;
  GiveUpOldest();
}

// ---- loading --------------------------------------------------------------------------------------------

void Database::Load(iterator itr, std::shared_ptr<const tagTRecord> record) {
  IPoolStore* pool = StoreOf(itr);
  if (pool == nullptr) return;
  pool->Reserve(itr);
  pool->Restore(itr, std::move(record));
}

void Database::ReserveNumbers(iterator last) {
  if (IPoolStore* pool = StoreOf(last)) pool->Reserve(last);
}

std::vector<iterator> Database::LastNumbers() const {
  std::vector<iterator> numbers;
  for (const auto& [type, pool] : m_stores) {
    if (NumberOf(pool->Last()) != 0) numbers.push_back(pool->Last());
  }
  return numbers;
}

std::vector<JournalEntry> Database::AllRecords() const {
  std::vector<JournalEntry> all;
  for (const auto& [type, pool] : m_stores) pool->AppendAdded(all);
  return all;
}

// ---- undo and redo --------------------------------------------------------------------------------------

int Database::Undo() {
  if (m_beforeHistory) m_beforeHistory();
  std::vector<JournalEntry> left;
  if (!CanUndo() || !Keep(m_undo.back(), false, left)) return 0;
  m_redo.push_back(std::move(m_undo.back()));
  m_undo.pop_back();
  Replay(Act(m_redo.back()), false, left);
  return 1;
}

int Database::Redo() {
  if (m_beforeHistory) m_beforeHistory();
  std::vector<JournalEntry> left;
  if (!CanRedo() || !Keep(m_redo.back(), true, left)) return 0;
  m_undo.push_back(std::move(m_redo.back()));
  m_redo.pop_back();
  Replay(Act(m_undo.back()), true, left);
  return 1;
}

bool Database::Keep(const Act& act, bool forward, std::vector<JournalEntry>& left) const {
  left = LeftBehind(act.net, forward);
  if (act.net.empty() || m_store == nullptr) return true;
  if (left.empty()) return m_store->Write(act.net, forward);
  std::vector<JournalEntry> all = left;
  for (const JournalEntry& entry : act.net) {
    all.push_back(forward ? entry : JournalEntry{entry.itr, entry.after, entry.before});
  }
  return m_store->Write(all, true);
}

void Database::Replay(const Act& act, bool forward, const std::vector<JournalEntry>& left) {
  Replay(act.net, forward);
  Replay(left, true);
  if (act.change != nullptr) act.change->Restore(forward);
  if (!act.net.empty()) Announce(act.net, forward);
}

void Database::Replay(const std::vector<JournalEntry>& entries, bool forward) {
  if (forward) {
    for (const JournalEntry& entry : entries) StoreOf(entry.itr)->Restore(entry.itr, entry.after);
    return;
  }
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    StoreOf(entry->itr)->Restore(entry->itr, entry->before);
  }
}

void Database::Announce(const std::vector<JournalEntry>& net, bool forward) {
  const auto outer = m_ghosts;
  for (const JournalEntry& entry : net) {
    const auto& gone = forward ? entry.before : entry.after;
    if ((forward ? entry.after : entry.before) == nullptr) m_ghosts[entry.itr] = gone;
  }
  if (m_listener != nullptr) m_listener->OnDatabaseChanged(UpdateRecordFor(net, forward));
  m_ghosts = outer;
}

const tagTRecord* Database::Ghost(iterator itr) const {
  const auto found = m_ghosts.find(itr);
  return found != m_ghosts.end() ? found->second.get() : nullptr;
}

std::vector<std::shared_ptr<const tagTRecord>> Database::Snapshot() const {
  std::vector<std::shared_ptr<const tagTRecord>> all;
  for (const auto& [type, store] : m_stores) store->AppendAll(all);
  return all;
}

}  // namespace qd::workbench
