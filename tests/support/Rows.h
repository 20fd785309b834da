#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/CMSGFunction.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/text/Utf8.h"
#include "workbench/tree/DocumentNode.h"

namespace qd::test {

/// A row as a user sees it. Boxes of leaves only: those of roots, sets of parts and groups are what was written to
/// them last, and follow nothing.
struct SeenRow {
  CString title;
  int icon = 0;
  std::uint32_t id = 0;  ///< 0 for none
  bool coloured = false;
  COLORREF colour = 0;
  int box = 0;  ///< 0 for none, or one that is not looked at
  std::vector<SeenRow> children{};
  bool bold = false;

  std::string Line() const {
    std::string line = workbench::ToUtf8(title) + " icon " + std::to_string(icon);
    if (id != 0) line += " id " + std::to_string(id);
    if (coloured) line += " colour " + std::to_string(colour);
    if (bold) line += " bold";
    if (box != 0) line += box == kChecked ? " [x]" : " [ ]";
    return line;
  }
};

/// Rows as lines, one below the other, in their order or, as sets of children, sorted.
inline std::string Lines(const SeenRow& row, bool asSets, int level = 0) {
  std::string text = std::string(static_cast<std::size_t>(level) * 2, ' ') + row.Line() + "\n";
  std::vector<std::string> below;
  for (const SeenRow& child : row.children) below.push_back(Lines(child, asSets, level + 1));
  if (asSets) std::sort(below.begin(), below.end());
  for (const std::string& child : below) text += child;
  return text;
}

/// What a tree shows.
inline SeenRow RowsOf(const CQDTreeListCtrl& tree, HTREEITEM row) {
  const CTLItem* record = tree.GetRecord(row);
  SeenRow seen{tree.GetItemText(row, 0), tree.GetItemImage(row), record->GetItemKey(), record->HasColor(),
               record->HasColor() ? record->GetColor() : 0};
  seen.bold = record->IsBold();
  const iterator itr = tree.NodeOf(row) != nullptr ? tree.NodeOf(row)->GetIterator() : 0;
  const auto type = itr >> 48U;
  if (type == kDataGeom || type == kDataMset || tree.GetItemImage(tree.GetParentItem(row)) == 161) {
    seen.box = tree.WhichCheck(row);
  }
  for (HTREEITEM child = tree.GetChildItem(row); child; child = tree.GetNextSiblingItem(child)) {
    seen.children.push_back(RowsOf(tree, child));
  }
  return seen;
}

/// What a tree has to show, listed from the raw records and from what the display says of each, in the order of a
/// tree that is built anew. It asks no index of the pools, and nothing of the tree.
class ExpectedRows {
 public:
  /// `materials`: whether titles of parts name their material.
  explicit ExpectedRows(workbench::WorkDocument& doc, bool materials = false)
      : m_doc(doc), m_withMaterials(materials) {
    for (const workbench::JournalEntry& entry : doc.GetDatabase().AllRecords()) {
      m_records[entry.itr >> 48U][entry.itr] = entry.after.get();
    }
    Each<tagTMset>(kDataMset, [this](iterator, const tagTMset& set) { m_meshed.insert(set.geom); });
  }

  SeenRow Tree(long type) {
    SeenRow root{m_doc.GetPathName()};
    if (type == workbench::kGeometrySetTree) {
      root.children = {Sets()};
      return root;
    }
    root.children = {Systems(), Parts()};
    if (!m_records[kDataMaterial].empty()) root.children.push_back(Materials());
    root.children.push_back(Meshes());
    return root;
  }

 private:
  static constexpr int kPartIcon = 21;
  static constexpr int kMeshIcon = 1;
  static constexpr int kSystemIcon = 161;
  static constexpr int kMaterialIcon = 10;

  template <typename Record, typename Visit>
  void Each(std::uint16_t type, const Visit& visit) {
    for (const auto& [itr, record] : m_records[type]) visit(itr, static_cast<const Record&>(*record));
  }
  static int BoxOf(bool shown) { return shown ? kChecked : kUnchecked; }

  SeenRow Systems() {
    SeenRow root{CMSGFunction::GetValue("IDS_QD_WRT_Coordinate_System"), kSystemIcon};
    Each<tagTCord>(kDataCord, [&](iterator, const tagTCord& system) {
      SeenRow row{system.name, kSystemIcon};
      row.box = BoxOf(m_doc.GetDisplay().Labels().GetShowHide(kLabelCord, system.id) != 0);
      root.children.push_back(row);
    });
    return root;
  }
  SeenRow Part(iterator itr, const tagTGeom& part) {
    // Shading, shading with edges, lines, a box; the same four once more for parts with a mesh.
    constexpr int kIcons[] = {22, 21, 23, 24};
    const auto& drawn = m_doc.GetDisplay().Parts().GetLook(part.cadItem);
    const int icon = drawn.mode > 3 ? kPartIcon : kIcons[drawn.mode] + (m_meshed.contains(itr) ? 4 : 0);
    return {part.name,         icon, static_cast<std::uint32_t>(part.id), true, part.colour & 0xFFFFFFU,
            BoxOf(drawn.shown)};
  }
  SeenRow Parts() {
    SeenRow root{CMSGFunction::GetValue("IDS_DB_DATA_NAME_GEOM"), kPartIcon};
    Each<tagTGeom>(kDataGeom, [&](iterator itr, const tagTGeom& part) {
      SeenRow row = Part(itr, part);
      const auto material = m_records[kDataMaterial].find(part.material);
      if (m_withMaterials && material != m_records[kDataMaterial].end()) {
        row.title += L" (" + static_cast<const tagTMaterial&>(*material->second).name + L")";
      }
      root.children.push_back(row);
    });
    return root;
  }
  SeenRow Materials() {
    SeenRow root{CMSGFunction::GetValue("IDS_WB_MATERIALS"), kMaterialIcon};
    Each<tagTMaterial>(kDataMaterial, [&](iterator, const tagTMaterial& material) {
      root.children.push_back({material.name, kMaterialIcon, static_cast<std::uint32_t>(material.id), true,
                               material.colour & 0xFFFFFFU});
    });
    return root;
  }
  SeenRow Meshes() {
    SeenRow root{CMSGFunction::GetValue("IDS_QD_WRT_MESH"), kMeshIcon};
    std::multimap<std::uint32_t, std::pair<iterator, const tagTMset*>> below;
    Each<tagTMset>(kDataMset, [&](iterator itr, const tagTMset& set) {
      below.emplace(set.parent & kMsetKeyMask, std::pair(itr, &set));
    });
    root.children = MeshesBelow(0, below);
    return root;
  }
  template <typename Below>
  std::vector<SeenRow> MeshesBelow(std::uint32_t parent, const Below& below) {
    std::vector<SeenRow> rows;
    const auto [first, last] = below.equal_range(parent);
    for (auto at = first; at != last; ++at) {
      const auto& [itr, set] = at->second;
      const std::uint32_t key = set->key & kMsetKeyMask;
      const int box = BoxOf(m_doc.GetDisplay().Meshes().IsMsetShown(itr) != 0);
      rows.push_back({set->name, kMeshIcon, key, true, set->colour & 0xFFFFFFU, box, MeshesBelow(key, below)});
    }
    std::sort(rows.begin(), rows.end(), [](const SeenRow& a, const SeenRow& b) { return a.id < b.id; });
    return rows;
  }
  /// The one that was made current, or the first when that is gone or none was.
  iterator CurrentSet() {
    const auto& sets = m_records[kDataGset];
    iterator current = sets.empty() ? 0 : sets.begin()->first;
    Each<workbench::tagTSettings>(workbench::kDataSettings,
                                  [&](iterator, const workbench::tagTSettings& settings) {
                                    if (sets.contains(settings.currentGset)) current = settings.currentGset;
                                  });
    return current;
  }
  SeenRow Sets() {
    constexpr const char* kKinds[] = {"IDS_QD_WRT_GEOMSET_POINT", "IDS_QD_WRT_GEOMSET_CURVE",
                                      "IDS_QD_WRT_GEOMSET_SURFACE", "IDS_QD_WRT_GEOMSET_SOLID",
                                      "IDS_QD_WRT_GEOMSET_COMPOUND"};
    SeenRow root{CMSGFunction::GetValue("IDS_DB_DATA_NAME_GEOM"), kPartIcon};
    Each<tagTGset>(kDataGset, [&](iterator itr, const tagTGset& set) {
      SeenRow row{set.name, kPartIcon};
      row.bold = itr == CurrentSet();
      for (int kind = 0; kind < 5; ++kind) {
        SeenRow group{CMSGFunction::GetValue(kKinds[kind]), kPartIcon};
        Each<tagTGeom>(kDataGeom, [&](iterator part, const tagTGeom& record) {
          if (record.gset == itr && static_cast<int>(record.kind) == kind)
            group.children.push_back(Part(part, record));
        });
        if (group.children.empty()) continue;
        group.title += L" [" + std::to_wstring(group.children.size()) + L"]";
        row.children.push_back(group);
      }
      root.children.push_back(row);
    });
    return root;
  }

  workbench::WorkDocument& m_doc;
  bool m_withMaterials;
  std::map<std::uint64_t, std::map<iterator, const tagTRecord*>> m_records;
  std::set<iterator> m_meshed;
};

}  // namespace qd::test
