#include "workbench/session/WorkedOn.h"

#include <algorithm>
#include <set>

#include "workbench/text/Shown.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

std::vector<iterator> PartsToWorkOn(WorkDocument& doc, const std::vector<iterator>& parts, Reach reach) {
  const Database& database = doc.GetDatabase();
  const GeomPool& pool = database.GetGeomPool();
  std::vector<iterator> some = parts;
  std::erase_if(some, [&](iterator part) {
    return database.GetDataType(part) != kDataGeom || (reach == Reach::ShownSolids && pool.IsSolid(part) == 0) ||
           (reach != Reach::All && !doc.GetDisplay().Parts().GetLook(pool.GetAtNU(part)->cadItem).shown);
  });
  return some;
}

WorkedOn SelectedParts(WorkDocument& doc, Reach reach, bool elseAll) {
  const Database& database = doc.GetDatabase();
  const std::vector<iterator>& selected = doc.GetSelectBuffer();
  if (selected.empty() && elseAll) {
    return {PartsToWorkOn(doc, database.GetGeomPool().GetItrList(), reach), true};
  }
  std::vector<iterator> parts;
  std::set<iterator> seen;
  const auto add = [&](iterator part) {
    if (seen.insert(part).second) parts.push_back(part);
  };
  for (const iterator itr : selected) {
    if (database.GetDataType(itr) == kDataGeom) add(itr);
    if (database.GetDataType(itr) != kDataGset) continue;
    for (const iterator part : database.GetGeomPool().PartsOf(itr)) add(part);
  }
  return {PartsToWorkOn(doc, parts, reach)};
}

WorkedOn SelectedMeshSets(WorkDocument& doc) {
  const bool all = doc.GetSelectBuffer().empty();
  WorkedOn sets{all ? doc.GetDatabase().GetMsetPool().GetItrList() : doc.GetSelectBuffer(), all};
  std::erase_if(sets.records, [&doc](iterator itr) {
    return doc.GetDatabase().GetDataType(itr) != kDataMset || doc.GetDisplay().Meshes().IsMsetShown(itr) == 0;
  });
  return sets;
}

template <typename Pool>
CString NamesOf(const Pool& pool, const std::vector<iterator>& records) {
  constexpr std::size_t kMostNames = 3;
  constexpr std::size_t kMostLetters = 30;
  CString names;
  for (std::size_t i = 0; i < std::min(records.size(), kMostNames); ++i) {
    if (i > 0) names += L", ";
    names += FromUtf8(ShownText(ToUtf8(pool.GetAtNU(records[i])->name), kMostLetters));
  }
  return records.size() > kMostNames ? names + L", …" : names;
}

template CString NamesOf(const GeomPool& pool, const std::vector<iterator>& records);
template CString NamesOf(const MsetPool& pool, const std::vector<iterator>& records);

}  // namespace qd::workbench
