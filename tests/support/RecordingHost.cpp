#include "support/RecordingHost.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <list>
#include <sstream>
#include <utility>
#include <variant>

#include "host/CQDCommandObj.h"
#include "workbench/text/Utf8.h"

namespace qd::test {

namespace {

std::string Number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

template <typename Values, typename Write>
std::string List(const Values& values, const Write& write) {
  std::string text;
  for (const auto& value : values) text += (text.empty() ? "" : " ") + write(value);
  return "[" + text + "]";
}

std::string Braced(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : " ") + part;
  return "{" + text + "}";
}

}  // namespace

// ---- the log --------------------------------------------------------------------------------------------

HostLog::~HostLog() {
  for (const auto& [call, count] : m_brackets) EXPECT_EQ(count, 0) << call << ", begun less ended";
}

void HostLog::Write(const std::string& call, const std::vector<std::string>& arguments) {
  m_text += std::string(static_cast<std::size_t>(m_depth) * 2, ' ') + call;
  if (!arguments.empty()) {
    std::string list;
    for (const std::string& argument : arguments) list += (list.empty() ? "" : ", ") + argument;
    m_text += "(" + list + ")";
  }
  m_text += "\n";
}

bool HostLog::Act(const std::string& call, const std::vector<std::string>& arguments) {
  const auto refused = m_refused.find(call);
  const bool refuse = refused != m_refused.end() && refused->second-- <= 0;
  Write(refuse ? "refused: " + call : call, arguments);
  return !refuse;
}

void HostLog::Ask(const std::string& call, const std::vector<std::string>& arguments) {
  if (m_questions) Write(call + "?", arguments);
}

std::string HostLog::Take() {
  return std::exchange(m_text, {});
}

// ---- arguments ------------------------------------------------------------------------------------------

std::string HostLog::Word(const CString& text) {
  return workbench::ToUtf8(text);
}

std::string HostLog::Colour(COLORREF colour) {
  char text[16];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", colour & 0xFF, colour >> 8 & 0xFF, colour >> 16);
  return text;
}

std::string HostLog::Record(iterator itr) const {
  if (itr == 0) return "none";
  switch (workbench::TypeOf(itr)) {
    case kDataGeom:
      if (const tagTGeom* part = m_data.GetGeomPool().GetAtNU(itr)) return Word(part->name);
      break;
    case kDataMset:
      if (const tagTMset* mset = m_data.GetMsetPool().GetAtNU(itr)) {
        return mset->name.empty() ? "mesh of " + Record(mset->geom) : Word(mset->name);
      }
      break;
    case kDataGset:
      if (const tagTGset* gset = m_data.GetGsetPool().GetAtNU(itr)) return Word(gset->name);
      break;
    case kDataMaterial:
      if (const tagTMaterial* material = m_data.GetMaterialPool().GetAtNU(itr)) return Word(material->name);
      break;
    case kDataCord:
      if (const tagTCord* cord = m_data.GetCordPool().GetAtNU(itr)) return Word(cord->GetName());
      break;
    case kDataGKey:
      return "key of " + Record(workbench::GKeyPool::GeomOfKey(itr));
    case kDataMGInfo:
      return "generation " + std::to_string(workbench::NumberOf(itr));
    default:
      return std::to_string(itr);
  }
  return "gone";
}

std::string HostLog::Records(const std::vector<iterator>& itrs) const {
  return List(itrs, [this](iterator itr) { return Record(itr); });
}

std::string HostLog::Part(int cadItem) const {
  return Record(m_data.GetGeomPool().ItrOfNumber(cadItem));
}

std::string HostLog::Parts(const std::vector<int>& cadItems) const {
  return List(cadItems, [this](int cadItem) { return Part(cadItem); });
}

std::string HostLog::Mset(std::uint32_t key) const {
  const iterator itr = m_data.GetMsetPool().GetItrByKey(key & kMsetKeyMask);
  return key == (key & kMsetKeyMask) ? Record(itr) : "key with flags of " + Record(itr);
}

std::string HostLog::Msets(const std::vector<std::uint32_t>& keys) const {
  return List(keys, [this](std::uint32_t key) { return Mset(key); });
}

std::string HostLog::Change(const tagTGeom& record, const tagTGeom* old) {
  const tagTGeom was = old != nullptr ? *old : tagTGeom();
  std::vector<std::string> parts;
  if (record.name != was.name) parts.push_back("name=" + Word(record.name));
  if (record.colour != was.colour) parts.push_back("colour=" + Colour(record.colour));
  if (record.material != was.material) parts.emplace_back("material");
  if (record.gset != was.gset) parts.emplace_back("gset");
  if (record.kind != was.kind || record.flexible != was.flexible || record.shape != was.shape ||
      record.origin != was.origin || record.id != was.id || record.cadItem != was.cadItem) {
    parts.emplace_back("more");
  }
  return Braced(parts);
}

std::string HostLog::Change(const tagTMset& record, const tagTMset* old) const {
  const tagTMset was = old != nullptr ? *old : tagTMset();
  std::vector<std::string> parts;
  if (record.name != was.name) parts.push_back("name=" + Word(record.name));
  if (record.colour != was.colour) parts.push_back("colour=" + Colour(record.colour));
  if (record.key != was.key) parts.push_back("key=" + std::to_string(record.key));
  if (record.parent != was.parent) {
    parts.push_back("parent=" + (record.parent != 0 ? Mset(record.parent) : std::string("none")));
  }
  if (record.geom != was.geom || record.property != was.property || record.mgInfo != was.mgInfo ||
      record.mesh != was.mesh || record.id != was.id || record.nodeCount != was.nodeCount ||
      record.elementCount != was.elementCount) {
    parts.emplace_back("more");
  }
  return Braced(parts);
}

std::string HostLog::Change(const tagTCord& record, const tagTCord* old) const {
  const tagTCord was = old != nullptr ? *old : tagTCord();
  std::vector<std::string> parts;
  if (record.GetName() != was.GetName()) parts.push_back("name=" + Word(record.GetName()));
  if (record.kind != was.kind || record.parent != was.parent || record.origin != was.origin ||
      record.xAxis != was.xAxis || record.xyPlane != was.xyPlane || record.id != was.id) {
    parts.emplace_back("more");
  }
  return Braced(parts);
}

namespace {

/// What every interface of the recording host is made of.
struct Heard {
  HostLog& m_log;

  static std::string N(double value) { return Number(value); }
  std::string R(iterator itr) const { return m_log.Record(itr); }
  std::string R(const std::vector<iterator>& itrs) const { return m_log.Records(itrs); }
};

// ---- pools ----------------------------------------------------------------------------------------------

/// What all pools have in common, told on under the pool's own name.
template <typename T, typename Interface>
class RecordingPool : public Interface, protected Heard {
 public:
  RecordingPool(HostLog& log, const char* name, Interface& real) : Heard{log}, m_real(real), m_name(name) {}
  std::vector<iterator> GetItrList() const override { return Ask("GetItrList"), m_real.GetItrList(); }
  const T* GetAtNU(iterator itr) const override { return Ask("GetAtNU", {R(itr)}), m_real.GetAtNU(itr); }
  int TR_Del(const std::vector<iterator>& itrs) override {
    return Told("TR_Del", {R(itrs)}, [&] { return m_real.TR_Del(itrs); });
  }

 protected:
  void Ask(const char* what, const std::vector<std::string>& arguments = {}) const {
    m_log.Ask(m_name + "." + what, arguments);
  }
  template <typename Call>
  auto Told(const char* what, const std::vector<std::string>& arguments, const Call& call) -> decltype(call()) {
    if (!m_log.Act(m_name + "." + what, arguments)) return 0;
    const HostLog::Inside inside(m_log);
    return call();
  }

  ~RecordingPool() = default;
  Interface& m_real;

 private:
  std::string m_name;
};

class RecordingGeoms final : public RecordingPool<tagTGeom, DPoolGeom> {
 public:
  using RecordingPool::RecordingPool;
  int Private_Modify(iterator itr, const tagTGeom& record, int direct, int announce) override {
    return Told("Private_Modify", {R(itr), HostLog::Change(record, m_real.GetAtNU(itr)), N(direct), N(announce)},
                [&] { return m_real.Private_Modify(itr, record, direct, announce); });
  }
  int Private_ApplyGset(const std::vector<iterator>& itrs, iterator gset) override {
    return Told("Private_ApplyGset", {R(itrs), R(gset)}, [&] { return m_real.Private_ApplyGset(itrs, gset); });
  }
  void GetHCADItemArray(const std::vector<iterator>& itrs, std::vector<int>& items) const override {
    Ask("GetHCADItemArray", {R(itrs)});
    m_real.GetHCADItemArray(itrs, items);
  }
  int IsSolid(iterator itr) const override { return Ask("IsSolid", {R(itr)}), m_real.IsSolid(itr); }
  void GetTypeExist(iterator gset, int (&exists)[5]) const override {
    Ask("GetTypeExist", {R(gset)});
    m_real.GetTypeExist(gset, exists);
  }
  void GetItrGsetTypeList(iterator gset, int kind, std::vector<iterator>& itrs) const override {
    Ask("GetItrGsetTypeList", {R(gset), N(kind)});
    m_real.GetItrGsetTypeList(gset, kind, itrs);
  }
};

class RecordingMsets final : public RecordingPool<tagTMset, DPoolMset> {
 public:
  using RecordingPool::RecordingPool;
  void GetItrListByParentMsetK(std::uint32_t key, TArray<iterator>& itrs) const override {
    Ask("GetItrListByParentMsetK", {m_log.Mset(key)});
    m_real.GetItrListByParentMsetK(key, itrs);
  }
  iterator GetItrByKey(std::uint32_t key) const override {
    return Ask("GetItrByKey", {m_log.Mset(key)}), m_real.GetItrByKey(key);
  }
  iterator GetItrByGeomItr(iterator geom) const override {
    return Ask("GetItrByGeomItr", {R(geom)}), m_real.GetItrByGeomItr(geom);
  }
  iterator GetItr(const CString& name) const override {
    return Ask("GetItr", {HostLog::Word(name)}), m_real.GetItr(name);
  }
  int Exist(const CString& name) const override { return Ask("Exist", {HostLog::Word(name)}), m_real.Exist(name); }
  CString GetNewCopyName(const CString& text) const override {
    return Ask("GetNewCopyName", {HostLog::Word(text)}), m_real.GetNewCopyName(text);
  }
  COLORREF GetNewColor() override { return Ask("GetNewColor"), m_real.GetNewColor(); }
  std::uint32_t GetNewKey() const override { return Ask("GetNewKey"), m_real.GetNewKey(); }
  iterator GetDefaultMset() const override { return Ask("GetDefaultMset"), m_real.GetDefaultMset(); }
  iterator AddMset(const tagTMset& record) override {
    return Told("AddMset", {m_log.Change(record, nullptr)}, [&] { return m_real.AddMset(record); });
  }
  int Modify(iterator itr, const tagTMset& record) override {
    return Told("Modify", {R(itr), m_log.Change(record, m_real.GetAtNU(itr))},
                [&] { return m_real.Modify(itr, record); });
  }
  int Merge(iterator target, const TArray<iterator>& itrs) override {
    return Told("Merge", {R(target), R(itrs)}, [&] { return m_real.Merge(target, itrs); });
  }
  int TR_Del_All() override {
    return Told("TR_Del_All", {}, [&] { return m_real.TR_Del_All(); });
  }
  int TR_Del_EmptyMset() override {
    return Told("TR_Del_EmptyMset", {}, [&] { return m_real.TR_Del_EmptyMset(); });
  }
};

class RecordingGenerations final : public DPoolMGInfo, Heard {
 public:
  RecordingGenerations(HostLog& log, DPoolMGInfo& real) : Heard{log}, m_real(real) {}
  iterator GetItrByKey(std::uint32_t key) const override {
    return m_log.Ask("mginfos.GetItrByKey", {N(key)}), m_real.GetItrByKey(key);
  }
  int GetAt(iterator itr, tagTMGInfo& record) const override {
    return m_log.Ask("mginfos.GetAt", {R(itr)}), m_real.GetAt(itr, record);
  }
  int Delete(iterator itr) override { return m_log.Act("mginfos.Delete", {R(itr)}) ? m_real.Delete(itr) : 0; }

 private:
  DPoolMGInfo& m_real;
};

class RecordingGsets final : public RecordingPool<tagTGset, DPoolGset> {
 public:
  using RecordingPool::RecordingPool;
  CString GetNewCopyName(const CString& text) const override {
    return Ask("GetNewCopyName", {HostLog::Word(text)}), m_real.GetNewCopyName(text);
  }
  int Exist(const CString& name) const override { return Ask("Exist", {HostLog::Word(name)}), m_real.Exist(name); }
  iterator GetCurrentSet() const override { return Ask("GetCurrentSet"), m_real.GetCurrentSet(); }
  void PutCurrentSet(iterator itr) override {
    m_log.Act("gsets.PutCurrentSet", {R(itr)});
    m_real.PutCurrentSet(itr);
  }
  int SetCurrentSet(iterator itr) override {
    return Told("SetCurrentSet", {R(itr)}, [&] { return m_real.SetCurrentSet(itr); });
  }
  int Delete(iterator itr) override {
    return Told("Delete", {R(itr)}, [&] { return m_real.Delete(itr); });
  }
};

class RecordingCords final : public RecordingPool<tagTCord, DPoolCord> {
 public:
  using RecordingPool::RecordingPool;
  int Exist(const CString& name) const override { return Ask("Exist", {HostLog::Word(name)}), m_real.Exist(name); }
  int IsDefaultCord(iterator itr) const override {
    return Ask("IsDefaultCord", {R(itr)}), m_real.IsDefaultCord(itr);
  }
  int Modify(iterator itr, const tagTCord& record) override {
    return Told("Modify", {R(itr), m_log.Change(record, m_real.GetAtNU(itr))},
                [&] { return m_real.Modify(itr, record); });
  }
  int Delete(iterator itr) override {
    return Told("Delete", {R(itr)}, [&] { return m_real.Delete(itr); });
  }
  int UpdateAfterDeletion() override {
    return Told("UpdateAfterDeletion", {}, [&] { return m_real.UpdateAfterDeletion(); });
  }
};

class RecordingMaterials final : public RecordingPool<tagTMaterial, DPoolMaterial> {
 public:
  using RecordingPool::RecordingPool;
};

class RecordingKeys final : public DPoolGKey, Heard {
 public:
  RecordingKeys(HostLog& log, DPoolGKey& real) : Heard{log}, m_real(real) {}
  iterator GetItrByGeomItr(iterator geom) const override {
    return m_log.Ask("keys.GetItrByGeomItr", {R(geom)}), m_real.GetItrByGeomItr(geom);
  }

 private:
  DPoolGKey& m_real;
};

class RecordingAppDB final : public IAppDB, Heard {
 public:
  RecordingAppDB(HostLog& log, IAppDB& real) : Heard{log}, m_real(real) {}
  std::vector<Material> ListMaterials() const override {
    return m_log.Ask("appdb.ListMaterials"), m_real.ListMaterials();
  }
  int IsFlexibleBody(iterator geom) const override {
    return m_log.Ask("appdb.IsFlexibleBody", {R(geom)}), m_real.IsFlexibleBody(geom);
  }
  int SetBodyType(const std::vector<iterator>& geoms, int flexible) override {
    return m_log.Act("appdb.SetBodyType", {R(geoms), N(flexible)}) ? m_real.SetBodyType(geoms, flexible) : 0;
  }
  int GetProperty(iterator itr, Property& property) const override {
    return m_log.Ask("appdb.GetProperty", {R(itr)}), m_real.GetProperty(itr, property);
  }
  int GetMassCentre(iterator mset, MassCentre& result, const ProgressCall& progress) const override {
    return m_log.Ask("appdb.GetMassCentre", {R(mset)}), m_real.GetMassCentre(mset, result, progress);
  }

 private:
  IAppDB& m_real;
};

class RecordingSession final : public CQDDBSession, Heard {
 public:
  RecordingSession(HostLog& log, CQDDBSession& real)
      : Heard{log},
        m_real(real),
        m_geoms(log, "geoms", real.GetGeomPool()),
        m_msets(log, "msets", real.GetMsetPool()),
        m_generations(log, real.GetMGInfoPool()),
        m_gsets(log, "gsets", real.GetGsetPool()),
        m_materials(log, "materials", real.GetMaterialPool()),
        m_cords(log, "cords", real.GetCordPool()),
        m_keys(log, real.GetGKeyPool()),
        m_appDB(log, real.GetAppDB()) {}
  DPoolGeom& GetGeomPool() override { return m_geoms; }
  DPoolMset& GetMsetPool() override { return m_msets; }
  DPoolMGInfo& GetMGInfoPool() override { return m_generations; }
  DPoolGset& GetGsetPool() override { return m_gsets; }
  DPoolMaterial& GetMaterialPool() override { return m_materials; }
  DPoolCord& GetCordPool() override { return m_cords; }
  DPoolGKey& GetGKeyPool() override { return m_keys; }
  IAppDB& GetAppDB() override { return m_appDB; }
  std::uint16_t GetDataType(iterator itr) const override {
    return m_log.Ask("session.GetDataType", {R(itr)}), m_real.GetDataType(itr);
  }
  std::int32_t GetRecordID(iterator itr) const override {
    return m_log.Ask("session.GetRecordID", {R(itr)}), m_real.GetRecordID(itr);
  }
  int BeginTransaction(const CString& title) override {
    if (!m_log.Act("session.Begin", {HostLog::Word(title)}) || m_real.BeginTransaction(title) == 0) return 0;
    m_log.Bracket("transactions", 1);
    return 1;
  }
  int CommitTransaction() override {
    m_log.Bracket("transactions", -1);
    if (!m_log.Act("session.Commit")) return m_real.RollbackTransaction(), 0;
    const HostLog::Inside inside(m_log);
    return m_real.CommitTransaction();
  }
  void RollbackTransaction() override {
    m_log.Bracket("transactions", -1);
    m_log.Act("session.Rollback");
    m_real.RollbackTransaction();
  }

 private:
  CQDDBSession& m_real;
  RecordingGeoms m_geoms;
  RecordingMsets m_msets;
  RecordingGenerations m_generations;
  RecordingGsets m_gsets;
  RecordingMaterials m_materials;
  RecordingCords m_cords;
  RecordingKeys m_keys;
  RecordingAppDB m_appDB;
};

// ---- display --------------------------------------------------------------------------------------------

class RecordingParts final : public CRenderObjManager, public CCADSession, Heard {
 public:
  RecordingParts(HostLog& log, CRenderObjManager& real) : Heard{log}, m_real(real) {}
  CRenderObjManager& GetRenderObjects() override { return *this; }
  int GetShowHide(int item) const override {
    return m_log.Ask("parts.GetShowHide", {m_log.Part(item)}), m_real.GetShowHide(item);
  }
  void SetShowHide(int item, int show) override {
    m_log.Act("parts.SetShowHide", {m_log.Part(item), N(show)});
    m_real.SetShowHide(item, show);
  }
  unsigned GetRenderMode(int item) const override {
    return m_log.Ask("parts.GetRenderMode", {m_log.Part(item)}), m_real.GetRenderMode(item);
  }
  void SetRenderMode(const std::vector<int>& items, unsigned mode) override {
    m_log.Act("parts.SetRenderMode", {m_log.Parts(items), N(mode)});
    m_real.SetRenderMode(items, mode);
  }
  void SetTransparency(const std::vector<int>& items, double fraction) override {
    m_log.Act("parts.SetTransparency", {m_log.Parts(items), N(fraction)});
    m_real.SetTransparency(items, fraction);
  }
  void ChangePrevShowHide() override {
    m_log.Act("parts.ChangePrevShowHide");
    m_real.ChangePrevShowHide();
  }
  void SetMeshMark(int item, int present) override {
    m_log.Act("parts.SetMeshMark", {m_log.Part(item), N(present)});
    m_real.SetMeshMark(item, present);
  }
  void BeginShowHide() override {
    m_log.Bracket("changes of visibility", 1);
    m_log.Act("parts.BeginShowHide");
    m_real.BeginShowHide();
  }
  void EndShowHide() override {
    m_log.Bracket("changes of visibility", -1);
    m_log.Act("parts.EndShowHide");
    m_real.EndShowHide();
  }

 private:
  CRenderObjManager& m_real;
};

class RecordingMeshes final : public CQDMeshManager, Heard {
 public:
  RecordingMeshes(HostLog& log, CQDMeshManager& real) : Heard{log}, m_real(real) {}
  int IsMsetShown(iterator mset) const override {
    return m_log.Ask("meshes.IsMsetShown", {R(mset)}), m_real.IsMsetShown(mset);
  }
  void ShowHideMset(iterator mset, int show) override {
    m_log.Act("meshes.ShowHideMset", {R(mset), N(show)});
    m_real.ShowHideMset(mset, show);
  }
  void ShowHideMset(const std::vector<iterator>& msets, int show) override {
    m_log.Act("meshes.ShowHideMset", {R(msets), N(show)});
    m_real.ShowHideMset(msets, show);
  }
  void ShowHideMsetUnit(iterator mset, int show) override {
    m_log.Act("meshes.ShowHideMsetUnit", {R(mset), N(show)});
    m_real.ShowHideMsetUnit(mset, show);
  }
  void CommitShowHideMsetUnit() override {
    m_log.Act("meshes.CommitShowHideMsetUnit");
    m_real.CommitShowHideMsetUnit();
  }
  void SetMeshColorMode(unsigned mode) override {
    m_log.Act("meshes.SetMeshColorMode", {N(mode)});
    m_real.SetMeshColorMode(mode);
  }
  void UpdateMeshColor() override {
    m_log.Act("meshes.UpdateMeshColor");
    m_real.UpdateMeshColor();
  }

 private:
  CQDMeshManager& m_real;
};

class RecordingLooks final : public CMPUData, Heard {
 public:
  using Keys = std::vector<std::uint32_t>;
  RecordingLooks(HostLog& log, CMPUData& real) : Heard{log}, m_real(real) {}
  void SetRenderMode(const Keys& keys, unsigned mode) override {
    m_log.Act("looks.SetRenderMode", {m_log.Msets(keys), N(mode)});
    m_real.SetRenderMode(keys, mode);
  }
  void ToggleShrink(const Keys& keys) override {
    m_log.Act("looks.ToggleShrink", {m_log.Msets(keys)});
    m_real.ToggleShrink(keys);
  }
  int HasAddOnInfo(const Keys& keys, std::uint32_t bits) const override {
    return m_log.Ask("looks.HasAddOnInfo", {m_log.Msets(keys), Bits(bits)}), m_real.HasAddOnInfo(keys, bits);
  }
  void SetAddOnInfo(const Keys& keys, std::uint32_t bits) override {
    m_log.Act("looks.SetAddOnInfo", {m_log.Msets(keys), Bits(bits)});
    m_real.SetAddOnInfo(keys, bits);
  }
  void DelAddOnInfo(const Keys& keys, std::uint32_t bits) override {
    m_log.Act("looks.DelAddOnInfo", {m_log.Msets(keys), Bits(bits)});
    m_real.DelAddOnInfo(keys, bits);
  }
  int HasAddOnInfoAll(std::uint32_t bits) const override {
    return m_log.Ask("looks.HasAddOnInfoAll", {Bits(bits)}), m_real.HasAddOnInfoAll(bits);
  }
  void SetAddOnInfoAll(std::uint32_t bits) override {
    m_log.Act("looks.SetAddOnInfoAll", {Bits(bits)});
    m_real.SetAddOnInfoAll(bits);
  }
  void DelAddOnInfoAll(std::uint32_t bits) override {
    m_log.Act("looks.DelAddOnInfoAll", {Bits(bits)});
    m_real.DelAddOnInfoAll(bits);
  }
  void SetTransparency(const Keys& keys, unsigned char value) override {
    m_log.Act("looks.SetTransparency", {m_log.Msets(keys), N(value)});
    m_real.SetTransparency(keys, value);
  }

 private:
  static std::string Bits(std::uint32_t bits) { return bits == kAddOnAll ? "all" : std::to_string(bits); }
  CMPUData& m_real;
};

class RecordingLabels final : public CQDLabelManager, public CQDLabel, Heard {
 public:
  RecordingLabels(HostLog& log, CQDLabelManager& real, const workbench::CordPool& cords)
      : Heard{log}, m_real(real), m_cords(cords) {}
  CQDLabel* GetLabel(int itemType) override {
    m_log.Ask("labels.GetLabel", {N(itemType)});
    m_label = m_real.GetLabel(itemType);
    return m_label != nullptr ? this : nullptr;
  }
  int GetShowHide(int kind, std::int32_t id) override {
    return m_log.Ask("labels.GetShowHide", {N(kind), Name(id)}), m_real.GetShowHide(kind, id);
  }
  void SetShowHide(int show, int kind, std::int32_t id) override {
    m_log.Act("labels.SetShowHide", {N(show), N(kind), Name(id)});
    m_real.SetShowHide(show, kind, id);
  }
  int IsShown(std::int32_t id) const override {
    return m_log.Ask("label.IsShown", {Name(id)}), m_label->IsShown(id);
  }
  void Show(std::int32_t id) override {
    m_log.Act("label.Show", {Name(id)});
    m_label->Show(id);
  }
  void Hide(std::int32_t id) override {
    m_log.Act("label.Hide", {Name(id)});
    m_label->Hide(id);
  }

 private:
  std::string Name(std::int32_t id) const { return R(m_cords.ItrOfNumber(id)); }
  CQDLabelManager& m_real;
  const workbench::CordPool& m_cords;
  CQDLabel* m_label = nullptr;  // the real one, of the only kind of records that has any
};

class RecordingView final : public CQDViewBase, public CQDRenderManager, Heard {
 public:
  RecordingView(HostLog& log, CQDRenderManager& real) : Heard{log}, m_real(real) {}
  /// A view that stands open beside, or null.
  void SetReal(CQDViewBase* view) { m_view = view; }
  void SetPostMode(bool on) { m_post = on; }
  std::string Name(const CQDViewBase& view) const { return &view == this ? "view" : "another view"; }

  CQDRenderManager* GetRenderManager() override { return this; }
  int IsPostMode() const override { return m_log.Ask("view.IsPostMode"), m_post ? 1 : 0; }
  void Invalidate(int erase) override {
    m_log.Act("view.Invalidate", {N(erase)});
    if (m_view != nullptr) m_view->Invalidate(erase);
  }
  void Redraw(int reserved) override {
    m_log.Act("view.Redraw", {N(reserved)});
    if (m_view != nullptr) m_view->Redraw(reserved);
  }
  bool IsOver(CPoint screen) const override { return m_view == nullptr || m_view->IsOver(screen); }
  void SetAllColorModelType(int type) override {
    m_log.Act("view.SetAllColorModelType", {N(type)});
    m_real.SetAllColorModelType(type);
  }

 private:
  CQDRenderManager& m_real;
  CQDViewBase* m_view = nullptr;
  bool m_post = false;
};

/// What only marks that something is to be brought up to date.
class RecordingMarks final : public CQDModelRange, public CQDPostManager, public ISectionAPI, Heard {
 public:
  RecordingMarks(HostLog& log, workbench::DisplayState& real, const RecordingView& view)
      : Heard{log}, m_real(real), m_view(view) {}
  void UpdateAllRange(int notify) override {
    m_log.Act("range.UpdateAllRange", {N(notify)});
    m_real.UpdateAllRange(notify);
  }
  void UpdateCADRange(int notify) override {
    m_log.Act("range.UpdateCADRange", {N(notify)});
    m_real.UpdateCADRange(notify);
  }
  void UpdateShowHideGeom(CQDViewBase& view) override {
    m_log.Act("post.UpdateShowHideGeom", {m_view.Name(view)});
    m_real.UpdateShowHideGeom(view);
  }
  void UpdateActivity(CQDViewBase& view, int notify) override {
    m_log.Act("post.UpdateActivity", {m_view.Name(view), N(notify)});
    m_real.UpdateActivity(view, notify);
  }
  void UpdateShowHideMSet(CQDViewBase& view, int notify) override {
    m_log.Act("post.UpdateShowHideMSet", {m_view.Name(view), N(notify)});
    m_real.UpdateShowHideMSet(view, notify);
  }
  void UpdateClipSlice(CQDViewBase& view) override {
    m_log.Act("sections.UpdateClipSlice", {m_view.Name(view)});
    m_real.UpdateClipSlice(view);
  }
  void UpdateClipVect(CQDViewBase& view) override {
    m_log.Act("sections.UpdateClipVect", {m_view.Name(view)});
    m_real.UpdateClipVect(view);
  }

 private:
  workbench::DisplayState& m_real;
  const RecordingView& m_view;
};

}  // namespace

// ---- the document ---------------------------------------------------------------------------------------

struct RecordingDocument::Interfaces {
  Interfaces(HostLog& log, workbench::Database& data, workbench::DisplayState& display)
      : session(log, data),
        parts(log, display),
        meshes(log, display),
        looks(log, display),
        labels(log, display, data.GetCordPool()),
        view(log, display),
        marks(log, display, view) {}
  RecordingSession session;
  RecordingParts parts;
  RecordingMeshes meshes;
  RecordingLooks looks;
  RecordingLabels labels;
  RecordingView view;
  RecordingMarks marks;
};

class RecordingDocument::Dialog final : public IQDCurrentDialog {
 public:
  explicit Dialog(HostLog& log) : m_log(log) {}
  void Update(int reserved) override { m_log.Act("dialog.Update", {Number(reserved)}); }

 private:
  HostLog& m_log;
};

RecordingDocument::RecordingDocument()
    : m_interfaces(std::make_unique<Interfaces>(m_log, GetDatabase(), GetDisplay())),
      m_dialog(std::make_unique<Dialog>(m_log)) {}

RecordingDocument::~RecordingDocument() = default;

void RecordingDocument::SetPostMode(bool on) {
  m_interfaces->view.SetPostMode(on);
}

void RecordingDocument::SetDialogOpen(bool open) {
  SetCurrentDialog(open ? m_dialog.get() : nullptr);
}

CQDViewBase* RecordingDocument::GetActiveView() {
  m_interfaces->view.SetReal(WorkDocument::GetActiveView());
  return m_viewOpen ? &m_interfaces->view : nullptr;
}
CQDDBSession* RecordingDocument::GetDBSession() {
  return &m_interfaces->session;
}
CCADSession* RecordingDocument::GetCADSession() {
  return &m_interfaces->parts;
}
CQDMeshManager* RecordingDocument::GetMeshManager() {
  return &m_interfaces->meshes;
}
CQDLabelManager* RecordingDocument::GetLabelManager() {
  return &m_interfaces->labels;
}
CQDModelRange* RecordingDocument::GetModelRange() {
  return &m_interfaces->marks;
}
CQDPostManager* RecordingDocument::GetPostManager() {
  return &m_interfaces->marks;
}
CMPUData* RecordingDocument::GetMPUData() {
  return &m_interfaces->looks;
}
ISectionAPI* RecordingDocument::GetSectionAPI() {
  return &m_interfaces->marks;
}

void RecordingDocument::Import() {
  m_log.Act("doc.Import");
  WorkDocument::Import();
}

int RecordingDocument::RunCommand(const CQDCommandObj& command) {
  std::vector<std::string> arguments{HostLog::Word(command.GetName())};
  for (const auto& [name, value] : command.GetParameters()) {
    std::string text;
    if (const int* number = std::get_if<int>(&value)) text = std::to_string(*number);
    if (const auto* word = std::get_if<CString>(&value)) text = HostLog::Word(*word);
    if (const auto* itr = std::get_if<iterator>(&value)) text = m_log.Record(*itr);
    if (const auto* itrs = std::get_if<std::vector<iterator>>(&value)) text = m_log.Records(*itrs);
    if (const auto* sets = std::get_if<std::vector<tagTGset>>(&value)) {
      text = List(*sets, [](const tagTGset& set) { return HostLog::Word(set.name); });
    }
    arguments.push_back(HostLog::Word(name) + "=" + text);
  }
  if (!m_log.Act("doc.RunCommand", arguments)) return 0;
  const HostLog::Inside inside(m_log);
  return WorkDocument::RunCommand(command);
}

int RecordingDocument::DeleteData(int operation, const std::vector<iterator>& itrs) {
  if (!m_log.Act("doc.DeleteData", {Number(operation), m_log.Records(itrs)})) return 0;
  const HostLog::Inside inside(m_log);
  return WorkDocument::DeleteData(operation, itrs);
}

void RecordingDocument::SetModelInfoChangedFlag(int changed) {
  m_log.Act("doc.SetModelInfoChangedFlag", {Number(changed)});
  WorkDocument::SetModelInfoChangedFlag(changed);
}

void RecordingDocument::SetPendingUpdate(int pending) {
  m_log.Act("doc.SetPendingUpdate", {Number(pending)});
  WorkDocument::SetPendingUpdate(pending);
}

void RecordingDocument::ReMakeAllLabel(int notify) {
  m_log.Act("doc.ReMakeAllLabel", {Number(notify)});
  WorkDocument::ReMakeAllLabel(notify);
}

void RecordingDocument::ClearSelectBuffer(int notify) {
  m_log.Act("doc.ClearSelectBuffer", {Number(notify)});
  const HostLog::Inside inside(m_log);
  WorkDocument::ClearSelectBuffer(notify);
}

void RecordingDocument::AddToSelBuffer(iterator itr) {
  m_log.Act("doc.AddToSelBuffer", {m_log.Record(itr)});
  WorkDocument::AddToSelBuffer(itr);
}

int RecordingDocument::IsSelecting() const {
  m_log.Ask("doc.IsSelecting");
  return m_selecting ? 1 : WorkDocument::IsSelecting();
}

void RecordingDocument::AddCheckedMset(iterator itr) {
  m_log.Act("doc.AddCheckedMset", {m_log.Record(itr)});
  WorkDocument::AddCheckedMset(itr);
}

void RecordingDocument::AddCheckedPair(iterator itr) {
  m_log.Act("doc.AddCheckedPair", {m_log.Record(itr)});
  WorkDocument::AddCheckedPair(itr);
}

void RecordingDocument::AddCheckedLoad(iterator itr) {
  m_log.Act("doc.AddCheckedLoad", {m_log.Record(itr)});
  WorkDocument::AddCheckedLoad(itr);
}

void RecordingDocument::AddCheckedBoundary(iterator itr) {
  m_log.Act("doc.AddCheckedBoundary", {m_log.Record(itr)});
  WorkDocument::AddCheckedBoundary(itr);
}

// ---- around the document --------------------------------------------------------------------------------

/// A page is known by its title and its first row.
void RecordingProperties::SetPropertySet(std::unique_ptr<IPropertySet> page) {
  if (page != nullptr) page->ShowProperty();
  m_page = std::move(page);
  std::string text = m_page == nullptr ? "none" : "empty page";
  if (m_page != nullptr && m_page->GetRows().size() > 1) {
    const CBCGPProp& first = *m_page->GetRows()[1];
    text = HostLog::Word(m_page->GetRows()[0]->name) + ": " + HostLog::Word(first.name);
    if (!first.value.empty()) text += " " + HostLog::Word(first.value);
  }
  m_log.Act("pages.SetPropertySet", {text});
}

void RecordingProperties::Refresh() {
  m_log.Act("pages.Refresh");
}

RecordingApp::RecordingApp(HostLog& log) : m_log(log) {
  IQueryMenuID2Idx::Instance().SetLastCommand(0);
}

void RecordingApp::OpenDialog(int flag, CQDDocBase*, const CString& dialogClass, void* data) {
  const auto& itrs = *static_cast<std::list<iterator>*>(data);
  m_log.Act("app.OpenDialog",
            {Number(flag), HostLog::Word(dialogClass), m_log.Records({itrs.begin(), itrs.end()})});
}

void RecordingApp::CloseDialog(CQDDocBase*, const CString& dialogClass) {
  m_log.Act("app.CloseDialog", {HostLog::Word(dialogClass)});
}

void RecordingApp::OpenMeshDialog(int flag, CQDDocBase*, const CString& dialogClass, void* data) {
  const auto& itrs = *static_cast<std::list<iterator>*>(data);
  m_log.Act("app.OpenMeshDialog",
            {Number(flag), HostLog::Word(dialogClass), m_log.Records({itrs.begin(), itrs.end()})});
}

void RecordingApp::CloseMeshDialog(CQDDocBase*, const CString& dialogClass) {
  m_log.Act("app.CloseMeshDialog", {HostLog::Word(dialogClass)});
}

void RecordingApp::SetSelectAssignedContact(CQDDocBase*, std::list<iterator>& parts) {
  m_log.Act("app.SetSelectAssignedContact", {m_log.Records({parts.begin(), parts.end()})});
}

void RecordingApp::Warn(const CString& text) {
  m_log.Act("warning", {HostLog::Word(text)});
}

int RecordingApp::Run(const CString& title, const std::function<int(const ProgressCall&)>& work) {
  m_log.Act("long work", {HostLog::Word(title)});
  return work([this](double) { return !m_stop; });
}

/// What the pointers are depends on the dialog.
void RecordingApp::Open(CQDDocBase*, const CString& dialogClass, const void* first, const void* second) {
  const std::string name = HostLog::Word(dialogClass);
  std::vector<std::string> arguments{name};
  const auto itr = [](const void* pointer) { return *static_cast<const iterator*>(pointer); };
  if (name.find("IncludeExclude") != std::string::npos) {
    arguments.push_back(m_log.Record(itr(first)));
  } else if (name == "CQDCmdCordDlg" && first != nullptr) {
    const auto* system = static_cast<const tagTCordGUI*>(first);
    arguments.push_back("mode " + std::to_string(system->mode));
    arguments.push_back(m_log.Record(system->itr));
  } else if (name.starts_with("CQDMesh") && first != nullptr) {
    const auto* mesh = static_cast<const tagTMeshGUI*>(first);
    arguments.push_back(m_log.Records(mesh->targets) + (mesh->remesh ? " again" : ""));
    if (second != nullptr) arguments.push_back(m_log.Record(itr(second)));
  } else if (first != nullptr) {
    const auto* operands = static_cast<const tagTGeomGUI*>(first);
    arguments.push_back("type " + std::to_string(operands->type));
    arguments.push_back(m_log.Records(operands->keys));
  }
  if (name.starts_with("CQDMesh") || name == "CQDGeomTransformDlg") {
    arguments.push_back("command " + std::to_string(IQueryMenuID2Idx::Instance().GetLastCommand()));
  }
  m_log.Act("DoModeless", arguments);
}

}  // namespace qd::test
