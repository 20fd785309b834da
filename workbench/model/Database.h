#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "host/CQDDBSession.h"
#include "workbench/model/CordPool.h"
#include "workbench/model/Journal.h"
#include "workbench/model/MsetPool.h"
#include "workbench/model/Pools.h"
#include "workbench/model/RecordFault.h"
#include "workbench/model/RecordStore.h"
#include "workbench/model/References.h"
#include "workbench/model/UndoableChange.h"

namespace qd::workbench {

/// Hears of every change of a database, after it is final.
class IDatabaseListener {
 public:
  /// A commit, an undo or a redo. Records that it deleted can still be read until this returns.
  virtual void OnDatabaseChanged(const CQDUpdateRecord& record) = 0;
  /// A setting was stored that is no act.
  virtual void OnSettingChanged() {}

 protected:
  ~IDatabaseListener() = default;
};

/// The model database of one document: pools of records in memory, transactions, undo and redo.
///
/// Every write happens inside a transaction. One journal of records before and after serves rollback, undo and
/// redo alike. After a commit, an undo or a redo the listener gets the net changes once.
///
/// Every reference between records keeps its rule: what a deletion touches changes in the same transaction, and a
/// transaction that would leave a reference to nothing is rolled back. So is one with a value that no record may
/// have. The user is told why, through the host's message output.
class Database final : public CQDDBSession, public IAppDB, private IJournalKeeper, private IRecordLookup {
 public:
  Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  /// Null for none; not owned.
  void SetListener(IDatabaseListener* listener) { m_listener = listener; }

  GeomPool& GetGeomPool() override { return m_geoms; }
  const GeomPool& GetGeomPool() const { return m_geoms; }
  MsetPool& GetMsetPool() override { return m_msets; }
  const MsetPool& GetMsetPool() const { return m_msets; }
  MGInfoPool& GetMGInfoPool() override { return m_generations; }
  PropertyPool& GetPropertyPool() { return m_properties; }
  const PropertyPool& GetPropertyPool() const { return m_properties; }
  GsetPool& GetGsetPool() override { return m_gsets; }
  const GsetPool& GetGsetPool() const { return m_gsets; }
  MaterialPool& GetMaterialPool() override { return m_materials; }
  const MaterialPool& GetMaterialPool() const { return m_materials; }
  CordPool& GetCordPool() override { return m_cords; }
  const CordPool& GetCordPool() const { return m_cords; }
  GKeyPool& GetGKeyPool() override { return m_keys; }
  DeckPool& GetDeckPool() { return m_decks; }
  const DeckPool& GetDeckPool() const { return m_decks; }
  IAppDB& GetAppDB() override { return *this; }

  std::vector<Material> ListMaterials() const override;
  std::vector<iterator> GetPartsOfMaterial(iterator material) const override;
  int IsFlexibleBody(iterator geom) const override;
  int SetBodyType(const std::vector<iterator>& geoms, int flexible) override;
  int GetProperty(iterator itr, Property& property) const override;
  int GetMassCentre(iterator mset, MassCentre& result, const ProgressCall& progress) const override;

  std::uint16_t GetDataType(iterator itr) const override;
  std::int32_t GetRecordID(iterator itr) const override;

  /// Deletes records of any pools as one undoable act. Returns 1, or 0 with nothing changed.
  int Delete(const std::vector<iterator>& itrs);

  int BeginTransaction(const CString& title) override;
  /// Our views find out from the changes what they have to draw again.
  int CommitTransaction(int redraw) override;
  void RollbackTransaction() override;
  bool IsInTransaction() const { return m_open; }
  /// A guard is asked before each write and refuses it with false; null lets everything pass.
  void SetWriteGuard(std::function<bool(iterator)> guard) { m_guard = std::move(guard); }

  /// Commits, undos and redos are kept there first and do not happen when that fails. Null for none; not owned.
  void SetStore(IRecordStore* store) { m_store = store; }
  /// Puts a record of a document into its place, without a trace, before anybody looks.
  void Load(iterator itr, std::shared_ptr<const tagTRecord> record);
  /// Numbers up to this one are not given out again.
  void ReserveNumbers(iterator last);
  /// The last number of each pool that was given out, though its record may be gone.
  std::vector<iterator> LastNumbers() const;
  /// Every record as if it had just been added.
  std::vector<JournalEntry> AllRecords() const;

  /// How many bytes the acts that can be undone or redone may keep alive; the oldest are given up first, the last
  /// one never.
  static constexpr std::size_t kHistoryBytes = std::size_t{256} << 20U;
  void SetHistoryLimit(std::size_t bytes);

  /// Puts a change of something else among the acts, or, when an act was committed since `since`, into that one.
  void AddChange(const CString& title, std::shared_ptr<IUndoableChange> change, std::uint64_t since);
  /// Called before undo and redo, so that what belongs to the last act and is not among the acts yet comes there.
  void SetBeforeHistory(std::function<void()> call) { m_beforeHistory = std::move(call); }
  /// Counts the acts that were committed.
  std::uint64_t ActNumber() const { return m_actNumber; }

  bool CanUndo() const { return !m_open && !m_undo.empty(); }
  bool CanRedo() const { return !m_open && !m_redo.empty(); }
  /// Title of the act that undo would take back; empty when there is none.
  CString UndoTitle() const { return CanUndo() ? m_undo.back().title : CString(); }
  CString RedoTitle() const { return CanRedo() ? m_redo.back().title : CString(); }
  /// 1, or 0 when there is nothing to take back or a transaction is open.
  int Undo();
  int Redo();

  /// A record of any pool; null when there is none of this number.
  const tagTRecord* Find(iterator itr) const override;
  /// Every record of every pool. Two equal snapshots mean the same contents: records are shared, not copied.
  std::vector<std::shared_ptr<const tagTRecord>> Snapshot() const;

 private:
  struct Act {
    CString title;
    std::vector<JournalEntry> net;
    std::size_t bytes = 0;
    std::shared_ptr<IUndoableChange> change{};  // beside the records; null for none
  };

  bool Note(JournalEntry entry) override;
  const tagTRecord* Ghost(iterator itr) const override;
  int InTransaction(const char* titleKey, const std::function<int()>& work) override;
  int LetGo(const std::vector<iterator>& itrs) override;
  void OnPlaced(iterator itr, const tagTRecord* before, const tagTRecord* after) override;
  void PutAside(JournalEntry entry) override;
  iterator MsetOfKey(std::uint32_t key) const override { return m_msets.GetItrByKey(key); }

  std::vector<iterator> HoldersOf(const ReferenceField& field, iterator itr, const tagTRecord& record) const;
  Departure DepartureOf(std::function<bool(iterator)> goes) const;
  bool DropUnused(const std::vector<JournalEntry>& net);
  bool IsSound(const JournalEntry& entry);
  bool Refuse(iterator itr, const char* key, CString what = {});
  std::vector<JournalEntry> LeftBehind(const std::vector<JournalEntry>& net, bool forward) const;
  IPoolStore* StoreOf(iterator itr) const;
  void Replay(const std::vector<JournalEntry>& entries, bool forward);
  void Replay(const Act& act, bool forward, const std::vector<JournalEntry>& left);
  bool Keep(const Act& act, bool forward, std::vector<JournalEntry>& left) const;
  void Announce(const std::vector<JournalEntry>& net, bool forward);

  ReferenceIndex m_references;
  GeomPool m_geoms;
  SettingsPool m_settings;
  MGInfoPool m_generations;
  MsetPool m_msets;
  PropertyPool m_properties;
  GsetPool m_gsets;
  MaterialPool m_materials;
  CordPool m_cords;
  DeckPool m_decks;
  GKeyPool m_keys;
  std::map<std::uint16_t, IPoolStore*> m_stores;
  IDatabaseListener* m_listener = nullptr;
  IRecordStore* m_store = nullptr;
  std::function<bool(iterator)> m_guard;
  std::function<void()> m_beforeHistory;
  bool m_open = false;
  CString m_title;
  std::vector<JournalEntry> m_journal;
  RecordFault m_refusal;  // why the open transaction will not happen; no key while it may
  void Remember(Act act);
  void GiveUpOldest();

  std::deque<Act> m_undo;
  std::vector<Act> m_redo;
  std::size_t m_historyBytes = 0;
  std::uint64_t m_actNumber = 0;
  std::size_t m_historyLimit = kHistoryBytes;
  std::map<iterator, std::shared_ptr<const tagTRecord>> m_ghosts;
};

}  // namespace qd::workbench
