#pragma once

#include <random>
#include <string>

#include "host/CTransaction.h"
#include "support/RecordText.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/model/Database.h"

namespace qd::test {

/// A session that always goes the same way: act n does the same to the same model wherever it runs.
class DocumentScript {
 public:
  explicit DocumentScript(workbench::Database& data) : m_data(data) {}

  /// Runs one act: adds, changes or deletes a few records of several pools. False when it was taken back.
  bool Run(int act) {
    std::mt19937 random(static_cast<unsigned>(act) * 7919 + 1);
    CTransaction transaction(&m_data);
    if (transaction.Begin(L"act " + std::to_wstring(act)) == 0) return false;
    Mark(act);
    switch (act % 6) {
      case 0:
        AddParts(random);
        break;
      case 1:
        AddMeshes(random);
        break;
      case 2:
        ChangeParts(random);
        break;
      case 3:
        AddSystem(act);
        break;
      case 4:
        DeleteSome(random);
        break;
      default:
        AddMaterial(act);
        break;
    }
    return transaction.Commit(1) != 0;
  }

  /// The last act that a database has seen; -1 for none.
  static int LastAct(const workbench::Database& data) {
    for (const workbench::JournalEntry& entry : data.AllRecords()) {
      if (workbench::TypeOf(entry.itr) != kDataGset) continue;
      return std::stoi(static_cast<const tagTGset&>(*entry.after).name.substr(4));
    }
    return -1;
  }

 private:
  /// The first geometry set says which act was the last.
  void Mark(int act) {
    workbench::GsetPool& sets = m_data.GetGsetPool();
    tagTGset set;
    set.name = L"act " + std::to_wstring(act);
    const auto all = sets.GetItrList();
    if (all.empty()) {
      sets.Add(set);
    } else {
      sets.Change(all.front(), set);
    }
  }
  void AddParts(std::mt19937& random) {
    auto shape = std::make_shared<PartShape>();
    shape->brep = std::string(200 + random() % 5000, static_cast<char>('a' + random() % 26));
    shape->facets.points = {0, 0, 0, 1, 0, 0, 0, 1, 0};
    shape->facets.triangles = {0, 1, 2};
    shape->geometry = {{"IDS_QD_WRT_PROP_RADIUS", 2.5}};
    for (unsigned i = 0; i < 3; ++i) {
      tagTGeom part;
      part.name = L"part " + std::to_wstring(random() % 1000);
      part.colour = random() % 0xFFFFFF;
      part.cadItem = m_data.GetGeomPool().NextNumber();
      part.gset = m_data.GetGsetPool().GetItrList().front();
      part.shape = shape;
      m_data.GetGeomPool().Add(part);
    }
  }
  void AddMeshes(std::mt19937& random) {
    auto mesh = std::make_shared<MeshData>();
    const std::uint64_t base = 100ULL * static_cast<std::uint64_t>(m_data.GetMsetPool().NextNumber());
    mesh->nodeIds = {base, base + 1, base + 2};
    mesh->coordinates = {0, 0, 0, 1, 0, 0, 0, 1, 0.5};
    mesh->blocks = {{2, 3, {base}, mesh->nodeIds}};
    tagTMset set;
    set.name = L"set " + std::to_wstring(random() % 1000);
    workbench::PutMesh(set, mesh);
    const auto all = m_data.GetMsetPool().GetItrList();
    if (!all.empty()) set.parent = m_data.GetMsetPool().GetAtNU(all[random() % all.size()])->key & kMsetKeyMask;
    tagMGInfo how;
    how.options = {{"A", true}, {"B", 3}, {"C", 0.25}};
    set.mgInfo = workbench::MGInfoPool::KeyOf(m_data.GetMGInfoPool().Add(how));
    m_data.GetMsetPool().Add(set);
  }
  void ChangeParts(std::mt19937& random) {
    const auto materials = m_data.GetMaterialPool().GetItrList();
    for (const iterator itr : m_data.GetGeomPool().GetItrList()) {
      if (random() % 2 == 0) continue;
      tagTGeom part = *m_data.GetGeomPool().GetAtNU(itr);
      part.name += L"'";
      if (!materials.empty()) part.material = materials[random() % materials.size()];
      if (part.shape != nullptr && random() % 2 == 0) {
        auto shape = std::make_shared<PartShape>(*part.shape);
        shape->volume = random() % 100;
        part.shape = shape;
      }
      m_data.GetGeomPool().Change(itr, part);
    }
  }
  void AddSystem(int act) {
    tagTCord system;
    system.SetName(L"system " + std::to_wstring(act));
    system.origin = {0.5 * act, 1, 2};
    system.parent = m_data.GetCordPool().GetItrList().back();
    m_data.GetCordPool().Add(system);
  }
  void DeleteSome(std::mt19937& random) {
    const auto parts = m_data.GetGeomPool().GetItrList();
    if (parts.size() > 4) m_data.GetGeomPool().TR_Del({parts[random() % parts.size()]});
    const auto sets = m_data.GetMsetPool().GetItrList();
    if (sets.size() > 3) m_data.GetMsetPool().TR_Del({sets[random() % sets.size()]});
  }
  void AddMaterial(int act) {
    tagTMaterial material;
    material.name = L"material " + std::to_wstring(act);
    material.density = 7.85e-9;
    const iterator itr = m_data.GetMaterialPool().Add(material);
    tagTProperty property;
    property.name = L"property";
    property.material = itr;
    m_data.GetPropertyPool().Add(property);
  }

  workbench::Database& m_data;
};

}  // namespace qd::test
