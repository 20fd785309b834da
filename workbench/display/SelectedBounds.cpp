#include "workbench/display/SelectedBounds.h"

#include <unordered_set>

#include "workbench/display/PickedShape.h"

namespace qd::workbench {

namespace {

template <typename Number>
void AddPoints(std::optional<ViewBox>& box, const std::vector<Number>& points) {
  for (std::size_t i = 0; i + 2 < points.size(); i += 3)
    Widen(box, Vector3{double{points[i]}, double{points[i + 1]}, double{points[i + 2]}});
}

}  // namespace

std::optional<ViewBox> SelectedBounds(const WorkDocument& doc) {
  const Database& database = doc.GetDatabase();
  std::vector<iterator> meant = doc.Meant();
  std::unordered_set<iterator> sets;
  std::unordered_set<iterator> parts;
  std::unordered_set<iterator> msets;
  std::optional<ViewBox> box;
  for (std::size_t i = 0; i < meant.size(); ++i) {
    const iterator itr = meant[i];
    if (database.GetDataType(itr) == kDataGset) sets.insert(itr);
    if (database.GetDataType(itr) == kDataGeom) parts.insert(itr);
    if (database.GetDataType(itr) == kDataCord) Widen(box, database.GetCordPool().GlobalPlacement(itr).origin);
    const tagTMset* mset = database.GetMsetPool().GetAtNU(itr);
    if (mset == nullptr || !msets.insert(itr).second) continue;
    if (mset->mesh != nullptr) AddPoints(box, mset->mesh->coordinates);
    TArray<iterator> nested;
    database.GetMsetPool().GetItrListByParentMsetK(mset->key & kMsetKeyMask, nested);
    meant.insert(meant.end(), nested.begin(), nested.end());
  }
  for (const Picked& one : doc.GetPicks().All()) {
    if (const auto around = BoxOf(database, doc.GetPicks(), one)) Widen(box, *around);
  }
  for (const iterator itr : database.GetGeomPool().GetItrList()) {
    const tagTGeom* part = database.GetGeomPool().GetAtNU(itr);
    const bool selected = parts.contains(itr) || sets.contains(part->gset);
    if (selected && part->shape != nullptr) AddPoints(box, part->shape->facets.points);
  }
  return box;
}

}  // namespace qd::workbench
