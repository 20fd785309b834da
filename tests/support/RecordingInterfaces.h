#pragma once

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/RecordingHost.h"

namespace qd::test {

// ---- arguments that do not tell by their type what they are ----------------------------------------------

struct CadItem {
  int item;
  operator int() const { return item; }
};
struct MsetKey {
  std::uint32_t key;
  operator std::uint32_t() const { return key; }
};
struct AddOns {
  std::uint32_t bits;
  operator std::uint32_t() const { return bits; }
};
struct LabelId {
  std::int32_t id;
  const workbench::CordPool& cords;
  operator std::int32_t() const { return id; }
};
/// A record to be stored in the place of another one, null for none.
template <typename T>
struct Changed {
  const T& record;
  const T* old;
  operator const T&() const { return record; }
};
template <typename T>
struct IsChange : std::false_type {};
template <typename T>
struct IsChange<Changed<T>> : std::true_type {};

// ---- an interface that is heard --------------------------------------------------------------------------

/// Notes every call of one of the host's interfaces and passes it on to the real one.
template <typename Interface>
class Recording : public Interface {
 public:
  Recording(HostLog& log, std::string name, Interface& real) : m_log(log), m_real(real), m_name(std::move(name)) {}

 protected:
  ~Recording() = default;

  /// Something that is to happen; 0 comes back when the host is to refuse it.
  template <typename Result, typename Owner, typename... Parameters, typename... Arguments>
  Result Act(Result (Owner::*method)(Parameters...), const char* name, Arguments&&... arguments) {
    if (!m_log.Act(m_name + "." + name, {Text(arguments)...})) return Result();
    const HostLog::Inside inside(m_log);
    return (m_real.*method)(static_cast<Parameters>(arguments)...);
  }
  template <typename Result, typename Owner, typename... Parameters, typename... Arguments>
  Result Ask(Result (Owner::*method)(Parameters...) const, Arguments&&... arguments) const {
    return (m_real.*method)(static_cast<Parameters>(arguments)...);
  }
  template <typename Result, typename Owner, typename... Parameters, typename... Arguments>
  Result Ask(Result (Owner::*method)(Parameters...), Arguments&&... arguments) {
    return (m_real.*method)(static_cast<Parameters>(arguments)...);
  }

  HostLog& m_log;
  Interface& m_real;

 private:
  template <typename T>
  std::string Text(const T& value) const {
    if constexpr (std::is_same_v<T, CadItem>) return m_log.Part(value);
    if constexpr (std::is_same_v<T, MsetKey>) return m_log.Mset(value);
    if constexpr (std::is_same_v<T, AddOns>) return value == kAddOnAll ? "all" : std::to_string(value.bits);
    if constexpr (std::is_same_v<T, LabelId>) return m_log.Record(value.cords.ItrOfNumber(value));
    if constexpr (IsChange<T>::value) return m_log.Change(value.record, value.old);
    if constexpr (std::is_same_v<T, iterator>) return m_log.Record(value);
    if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, iterator>) return HostLog::Number(value);
    if constexpr (std::is_same_v<T, std::vector<iterator>>) return m_log.Records(value);
    if constexpr (std::is_same_v<T, std::vector<int>>) return m_log.Parts(value);
    if constexpr (std::is_same_v<T, std::vector<std::uint32_t>>) return m_log.Msets(value);
    if constexpr (std::is_same_v<T, CString>) return HostLog::Word(value);
    if constexpr (std::is_same_v<T, CQDViewBase>) return "view";
    return "…";  // what questions bring back
  }

  std::string m_name;
};

// ---- pools ----------------------------------------------------------------------------------------------

template <typename T, typename Interface>
class RecordingPool : public Recording<Interface> {
 public:
  RecordingPool(HostLog& log, const char* name, Interface& real) : Recording<Interface>(log, name, real) {}
  std::vector<iterator> GetItrList() const override { return this->Ask(&Interface::GetItrList); }
  const T* GetAtNU(iterator itr) const override { return this->Ask(&Interface::GetAtNU, itr); }
  int TR_Del(const std::vector<iterator>& itrs) override { return this->Act(&Interface::TR_Del, "TR_Del", itrs); }

 protected:
  ~RecordingPool() = default;
  Changed<T> ChangeOf(iterator itr, const T& record) const { return {record, this->m_real.GetAtNU(itr)}; }
};

class RecordingGeoms final : public RecordingPool<tagTGeom, DPoolGeom> {
 public:
  using RecordingPool::RecordingPool;
  using Itrs = std::vector<iterator>;
  int Private_Modify(iterator itr, const tagTGeom& record, int direct, int announce) override {
    return Act(&DPoolGeom::Private_Modify, "Private_Modify", itr, ChangeOf(itr, record), direct, announce);
  }
  int Private_ApplyGset(const Itrs& itrs, iterator gset) override {
    return Act(&DPoolGeom::Private_ApplyGset, "Private_ApplyGset", itrs, gset);
  }
  void GetHCADItemArray(const Itrs& itrs, std::vector<int>& items) const override {
    Ask(&DPoolGeom::GetHCADItemArray, itrs, items);
  }
  int IsSolid(iterator itr) const override { return Ask(&DPoolGeom::IsSolid, itr); }
  void GetTypeExist(iterator gset, int (&exists)[5]) const override {
    Ask(&DPoolGeom::GetTypeExist, gset, exists);
  }
  void GetItrGsetTypeList(iterator gset, int kind, Itrs& itrs) const override {
    Ask(&DPoolGeom::GetItrGsetTypeList, gset, kind, itrs);
  }
};

class RecordingMsets final : public RecordingPool<tagTMset, DPoolMset> {
 public:
  using RecordingPool::RecordingPool;
  void GetItrListByParentMsetK(std::uint32_t key, TArray<iterator>& itrs) const override {
    Ask(&DPoolMset::GetItrListByParentMsetK, MsetKey{key}, itrs);
  }
  iterator GetItrByKey(std::uint32_t key) const override { return Ask(&DPoolMset::GetItrByKey, MsetKey{key}); }
  iterator GetItrByGeomItr(iterator geom) const override { return Ask(&DPoolMset::GetItrByGeomItr, geom); }
  iterator GetItr(const CString& name) const override { return Ask(&DPoolMset::GetItr, name); }
  int Exist(const CString& name) const override { return Ask(&DPoolMset::Exist, name); }
  CString GetNewCopyName(const CString& text) const override { return Ask(&DPoolMset::GetNewCopyName, text); }
  COLORREF GetNewColor() override { return Ask(&DPoolMset::GetNewColor); }
  std::uint32_t GetNewKey() const override { return Ask(&DPoolMset::GetNewKey); }
  iterator GetDefaultMset() const override { return Ask(&DPoolMset::GetDefaultMset); }
  iterator AddMset(const tagTMset& record) override {
    return Act(&DPoolMset::AddMset, "AddMset", Changed<tagTMset>{record, nullptr});
  }
  int Modify(iterator itr, const tagTMset& record) override {
    return Act(&DPoolMset::Modify, "Modify", itr, ChangeOf(itr, record));
  }
  int Merge(iterator target, const TArray<iterator>& itrs) override {
    return Act(&DPoolMset::Merge, "Merge", target, itrs);
  }
  int TR_Del_All() override { return Act(&DPoolMset::TR_Del_All, "TR_Del_All"); }
  int TR_Del_EmptyMset() override { return Act(&DPoolMset::TR_Del_EmptyMset, "TR_Del_EmptyMset"); }
};

class RecordingGenerations final : public Recording<DPoolMGInfo> {
 public:
  using Recording::Recording;
  iterator GetItrByKey(std::uint32_t key) const override { return Ask(&DPoolMGInfo::GetItrByKey, key); }
  int GetAt(iterator itr, tagMGInfo& record) const override { return Ask(&DPoolMGInfo::GetAt, itr, record); }
  int Delete(iterator itr) override { return Act(&DPoolMGInfo::Delete, "Delete", itr); }
};

class RecordingGsets final : public RecordingPool<tagTGset, DPoolGset> {
 public:
  using RecordingPool::RecordingPool;
  CString GetNewCopyName(const CString& text) const override { return Ask(&DPoolGset::GetNewCopyName, text); }
  int Exist(const CString& name) const override { return Ask(&DPoolGset::Exist, name); }
  iterator GetCurrentSet() const override { return Ask(&DPoolGset::GetCurrentSet); }
  void PutCurrentSet(iterator itr) override { Act(&DPoolGset::PutCurrentSet, "PutCurrentSet", itr); }
  int SetCurrentSet(iterator itr) override { return Act(&DPoolGset::SetCurrentSet, "SetCurrentSet", itr); }
  int Delete(iterator itr) override { return Act(&DPoolGset::Delete, "Delete", itr); }
};

class RecordingCords final : public RecordingPool<tagTCord, DPoolCord> {
 public:
  using RecordingPool::RecordingPool;
  int Exist(const CString& name) const override { return Ask(&DPoolCord::Exist, name); }
  int IsDefaultCord(iterator itr) const override { return Ask(&DPoolCord::IsDefaultCord, itr); }
  int Modify(iterator itr, const tagTCord& record) override {
    return Act(&DPoolCord::Modify, "Modify", itr, ChangeOf(itr, record));
  }
  int Delete(iterator itr) override { return Act(&DPoolCord::Delete, "Delete", itr); }
  int UpdateAfterDeletion() override { return Act(&DPoolCord::UpdateAfterDeletion, "UpdateAfterDeletion"); }
};

class RecordingMaterials final : public RecordingPool<tagTMaterial, DPoolMaterial> {
 public:
  using RecordingPool::RecordingPool;
};

class RecordingKeys final : public Recording<DPoolGKey> {
 public:
  using Recording::Recording;
  iterator GetItrByGeomItr(iterator geom) const override { return Ask(&DPoolGKey::GetItrByGeomItr, geom); }
};

class RecordingAppDB final : public Recording<IAppDB> {
 public:
  using Recording::Recording;
  std::vector<Material> ListMaterials() const override { return Ask(&IAppDB::ListMaterials); }
  std::vector<iterator> GetPartsOfMaterial(iterator material) const override {
    return Ask(&IAppDB::GetPartsOfMaterial, material);
  }
  int IsFlexibleBody(iterator geom) const override { return Ask(&IAppDB::IsFlexibleBody, geom); }
  int SetBodyType(const std::vector<iterator>& geoms, int flexible) override {
    return Act(&IAppDB::SetBodyType, "SetBodyType", geoms, flexible);
  }
  int GetProperty(iterator itr, Property& property) const override {
    return Ask(&IAppDB::GetProperty, itr, property);
  }
  int GetMassCentre(iterator mset, MassCentre& result, const ProgressCall& progress) const override {
    return Ask(&IAppDB::GetMassCentre, mset, result, progress);
  }
};

class RecordingSession final : public Recording<CQDDBSession> {
 public:
  RecordingSession(HostLog& log, CQDDBSession& real) : Recording(log, "session", real) {}
  DPoolGeom& GetGeomPool() override { return m_geoms; }
  DPoolMset& GetMsetPool() override { return m_msets; }
  DPoolMGInfo& GetMGInfoPool() override { return m_generations; }
  DPoolGset& GetGsetPool() override { return m_gsets; }
  DPoolMaterial& GetMaterialPool() override { return m_materials; }
  DPoolCord& GetCordPool() override { return m_cords; }
  DPoolGKey& GetGKeyPool() override { return m_keys; }
  IAppDB& GetAppDB() override { return m_appDB; }
  std::uint16_t GetDataType(iterator itr) const override { return Ask(&CQDDBSession::GetDataType, itr); }
  std::int32_t GetRecordID(iterator itr) const override { return Ask(&CQDDBSession::GetRecordID, itr); }
  int BeginTransaction(const CString& title) override {
    const int begun = Act(&CQDDBSession::BeginTransaction, "Begin", title);
    m_log.Bracket("transactions", begun);
    return begun;
  }
  int CommitTransaction(int redraw) override {
    m_log.Bracket("transactions", -1);
    const int done = Act(&CQDDBSession::CommitTransaction, "Commit", redraw);
    if (m_log.WasRefused()) m_real.RollbackTransaction();
    return done;
  }
  void RollbackTransaction() override {
    m_log.Bracket("transactions", -1);
    Act(&CQDDBSession::RollbackTransaction, "Rollback");
  }

 private:
  RecordingGeoms m_geoms{m_log, "geoms", m_real.GetGeomPool()};
  RecordingMsets m_msets{m_log, "msets", m_real.GetMsetPool()};
  RecordingGenerations m_generations{m_log, "mginfos", m_real.GetMGInfoPool()};
  RecordingGsets m_gsets{m_log, "gsets", m_real.GetGsetPool()};
  RecordingMaterials m_materials{m_log, "materials", m_real.GetMaterialPool()};
  RecordingCords m_cords{m_log, "cords", m_real.GetCordPool()};
  RecordingKeys m_keys{m_log, "keys", m_real.GetGKeyPool()};
  RecordingAppDB m_appDB{m_log, "appdb", m_real.GetAppDB()};
};

// ---- display --------------------------------------------------------------------------------------------

class RecordingParts final : public Recording<CRenderObjManager>, public CCADSession {
 public:
  using Objects = CRenderObjManager;
  using Items = std::vector<int>;
  using Recording::Recording;
  CRenderObjManager& GetRenderObjects() override { return *this; }
  int GetShowHide(int item) const override { return Ask(&Objects::GetShowHide, CadItem{item}); }
  void SetShowHide(int item, int show) override { Act(&Objects::SetShowHide, "SetShowHide", CadItem{item}, show); }
  unsigned GetRenderMode(int item) const override { return Ask(&Objects::GetRenderMode, CadItem{item}); }
  void SetRenderMode(const Items& items, unsigned mode) override {
    Act(&Objects::SetRenderMode, "SetRenderMode", items, mode);
  }
  void SetTransparency(const Items& items, double fraction) override {
    Act(&Objects::SetTransparency, "SetTransparency", items, fraction);
  }
  void ChangePrevShowHide() override { Act(&Objects::ChangePrevShowHide, "ChangePrevShowHide"); }
  void SetMeshMark(int item, int present) override {
    Act(&Objects::SetMeshMark, "SetMeshMark", CadItem{item}, present);
  }
  void BeginShowHide() override {
    m_log.Bracket("changes of visibility", 1);
    Act(&Objects::BeginShowHide, "BeginShowHide");
  }
  void EndShowHide() override {
    m_log.Bracket("changes of visibility", -1);
    Act(&Objects::EndShowHide, "EndShowHide");
  }
};

class RecordingMeshes final : public Recording<CQDMeshManager> {
 public:
  using Meshes = CQDMeshManager;
  using Recording::Recording;
  int IsMsetShown(iterator mset) const override { return Ask(&Meshes::IsMsetShown, mset); }
  void ShowHideMset(iterator mset, int show) override {
    Act<void, Meshes, iterator, int>(&Meshes::ShowHideMset, "ShowHideMset", mset, show);
  }
  void ShowHideMset(const std::vector<iterator>& msets, int show) override {
    Act<void, Meshes, const std::vector<iterator>&, int>(&Meshes::ShowHideMset, "ShowHideMset", msets, show);
  }
  void ShowHideMsetUnit(iterator mset, int show) override {
    Act(&Meshes::ShowHideMsetUnit, "ShowHideMsetUnit", mset, show);
  }
  void CommitShowHideMsetUnit() override { Act(&Meshes::CommitShowHideMsetUnit, "CommitShowHideMsetUnit"); }
  void SetMeshColorMode(unsigned mode) override { Act(&Meshes::SetMeshColorMode, "SetMeshColorMode", mode); }
  void UpdateMeshColor() override { Act(&Meshes::UpdateMeshColor, "UpdateMeshColor"); }
};

class RecordingLooks final : public Recording<CMPUData> {
 public:
  using Keys = std::vector<std::uint32_t>;
  using Recording::Recording;
  void SetRenderMode(const Keys& keys, unsigned mode) override {
    Act(&CMPUData::SetRenderMode, "SetRenderMode", keys, mode);
  }
  void ToggleShrink(const Keys& keys) override { Act(&CMPUData::ToggleShrink, "ToggleShrink", keys); }
  int HasAddOnInfo(const Keys& keys, std::uint32_t bits) const override {
    return Ask(&CMPUData::HasAddOnInfo, keys, AddOns{bits});
  }
  void SetAddOnInfo(const Keys& keys, std::uint32_t bits) override {
    Act(&CMPUData::SetAddOnInfo, "SetAddOnInfo", keys, AddOns{bits});
  }
  void DelAddOnInfo(const Keys& keys, std::uint32_t bits) override {
    Act(&CMPUData::DelAddOnInfo, "DelAddOnInfo", keys, AddOns{bits});
  }
  int HasAddOnInfoAll(std::uint32_t bits) const override { return Ask(&CMPUData::HasAddOnInfoAll, AddOns{bits}); }
  void SetAddOnInfoAll(std::uint32_t bits) override {
    Act(&CMPUData::SetAddOnInfoAll, "SetAddOnInfoAll", AddOns{bits});
  }
  void DelAddOnInfoAll(std::uint32_t bits) override {
    Act(&CMPUData::DelAddOnInfoAll, "DelAddOnInfoAll", AddOns{bits});
  }
  void SetTransparency(const Keys& keys, unsigned char value) override {
    Act(&CMPUData::SetTransparency, "SetTransparency", keys, value);
  }
};

class RecordingLabel final : public Recording<CQDLabel> {
 public:
  RecordingLabel(HostLog& log, CQDLabel& real, const workbench::CordPool& cords)
      : Recording(log, "label", real), m_cords(cords) {}
  int IsShown(std::int32_t id) const override { return Ask(&CQDLabel::IsShown, LabelId{id, m_cords}); }
  void Show(std::int32_t id) override { Act(&CQDLabel::Show, "Show", LabelId{id, m_cords}); }
  void Hide(std::int32_t id) override { Act(&CQDLabel::Hide, "Hide", LabelId{id, m_cords}); }

 private:
  const workbench::CordPool& m_cords;
};

class RecordingLabels final : public Recording<CQDLabelManager> {
 public:
  RecordingLabels(HostLog& log, CQDLabelManager& real, const workbench::CordPool& cords)
      : Recording(log, "labels", real), m_cords(cords), m_label(log, *real.GetLabel(kLabelCord), cords) {}
  CQDLabel* GetLabel(int itemType) override {
    return Ask(&CQDLabelManager::GetLabel, itemType) != nullptr ? &m_label : nullptr;
  }
  int GetShowHide(int kind, std::int32_t id) override {
    return Ask(&CQDLabelManager::GetShowHide, kind, LabelId{id, m_cords});
  }
  void SetShowHide(int show, int kind, std::int32_t id) override {
    Act(&CQDLabelManager::SetShowHide, "SetShowHide", show, kind, LabelId{id, m_cords});
  }

 private:
  const workbench::CordPool& m_cords;
  RecordingLabel m_label;  // of the only kind of records that has labels
};

class RecordingRange final : public Recording<CQDModelRange> {
 public:
  using Recording::Recording;
  void UpdateAllRange(int notify) override { Act(&CQDModelRange::UpdateAllRange, "UpdateAllRange", notify); }
  void UpdateCADRange(int notify) override { Act(&CQDModelRange::UpdateCADRange, "UpdateCADRange", notify); }
};

class RecordingPost final : public Recording<CQDPostManager> {
 public:
  using Post = CQDPostManager;
  using Recording::Recording;
  void UpdateShowHideGeom(CQDViewBase& view) override {
    Act(&Post::UpdateShowHideGeom, "UpdateShowHideGeom", view);
  }
  void UpdateActivity(CQDViewBase& view, int notify) override {
    Act(&Post::UpdateActivity, "UpdateActivity", view, notify);
  }
  void UpdateShowHideMSet(CQDViewBase& view, int notify) override {
    Act(&Post::UpdateShowHideMSet, "UpdateShowHideMSet", view, notify);
  }
};

class RecordingSections final : public Recording<ISectionAPI> {
 public:
  using Recording::Recording;
  void UpdateClipSlice(CQDViewBase& view) override { Act(&ISectionAPI::UpdateClipSlice, "UpdateClipSlice", view); }
  void UpdateClipVect(CQDViewBase& view) override { Act(&ISectionAPI::UpdateClipVect, "UpdateClipVect", view); }
};

/// What a document tells its display.
struct RecordingDisplay {
  RecordingDisplay(HostLog& log, workbench::Display& real, const workbench::CordPool& cords)
      : parts(log, "parts", real.Parts()),
        meshes(log, "meshes", real.Meshes()),
        looks(log, "looks", real.Meshes()),
        labels(log, real.Labels(), cords),
        range(log, "range", real.Range()),
        post(log, "post", real.Post()),
        sections(log, "sections", real.Sections()) {}
  RecordingParts parts;
  RecordingMeshes meshes;
  RecordingLooks looks;
  RecordingLabels labels;
  RecordingRange range;
  RecordingPost post;
  RecordingSections sections;
};

class RecordingRenderManager final : public Recording<CQDRenderManager> {
 public:
  using Recording::Recording;
  void SetAllColorModelType(int type) override {
    Act(&CQDRenderManager::SetAllColorModelType, "SetAllColorModelType", type);
  }
};

/// The view; another one may stand behind it.
class RecordingView final : public CQDViewBase {
 public:
  RecordingView(HostLog& log, CQDRenderManager& real) : m_log(log), m_manager(log, "view", real) {}
  void SetReal(CQDViewBase* view) { m_real = view; }
  void SetPostMode(bool on) { m_post = on; }

  CQDRenderManager* GetRenderManager() override { return &m_manager; }
  int IsPostMode() const override { return m_post ? 1 : 0; }
  void Invalidate(int erase) override {
    m_log.Act("view.Invalidate", {HostLog::Number(erase)});
    if (m_real != nullptr) m_real->Invalidate(erase);
  }
  void Redraw(int reserved) override {
    m_log.Act("view.Redraw", {HostLog::Number(reserved)});
    if (m_real != nullptr) m_real->Redraw(reserved);
  }
  bool IsOver(CPoint screen) const override { return m_real == nullptr || m_real->IsOver(screen); }

 private:
  HostLog& m_log;
  RecordingRenderManager m_manager;
  CQDViewBase* m_real = nullptr;
  bool m_post = false;
};

}  // namespace qd::test
