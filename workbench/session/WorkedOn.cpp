#include "workbench/session/WorkedOn.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "workbench/text/Shown.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// Keeps the first of each.
class EachOnce {
 public:
  void Add(iterator itr) {
    if (m_seen.insert(itr).second) m_records.push_back(itr);
  }
  std::vector<iterator> Take() { return std::move(m_records); }

 private:
  std::unordered_set<iterator> m_seen;
  std::vector<iterator> m_records;
};

}  // namespace

bool IsTaken(const WorkDocument& doc, std::uint16_t type, iterator itr, Reach reach) {
  const Database& database = doc.GetDatabase();
  if (database.GetDataType(itr) != type) return false;
  if (reach == Reach::All) return true;
  if (type == kDataMset) return doc.GetDisplay().Meshes().IsMsetShown(itr) != 0;
  const GeomPool& pool = database.GetGeomPool();
  if (reach == Reach::ShownSolids && pool.IsSolid(itr) == 0) return false;
  return doc.GetDisplay().Parts().GetLook(pool.GetAtNU(itr)->cadItem).shown;
}

std::vector<iterator> MeantParts(const WorkDocument& doc) {
  const Database& database = doc.GetDatabase();
  EachOnce parts;
  for (const iterator itr : doc.Meant()) {
    if (database.GetDataType(itr) == kDataGeom) parts.Add(itr);
    if (database.GetDataType(itr) != kDataGset) continue;
    for (const iterator part : database.GetGeomPool().PartsOf(itr)) parts.Add(part);
  }
  return parts.Take();
}

std::vector<iterator> MeantMeshSets(const WorkDocument& doc) {
  const Database& database = doc.GetDatabase();
  EachOnce sets;
  for (const iterator itr : doc.Meant()) {
    if (database.GetDataType(itr) == kDataMset) sets.Add(itr);
  }
  for (const iterator part : MeantParts(doc)) {
    if (const iterator mesh = database.GetMsetPool().GetItrByGeomItr(part); mesh != 0) sets.Add(mesh);
  }
  return sets.Take();
}

template <typename Pool>
CString NamesOf(const Pool& pool, const std::vector<iterator>& records) {
  constexpr std::size_t kMostLetters = 30;
  CString names;
  for (std::size_t i = 0; i < std::min(records.size(), kMostNames); ++i) {
    if (i > 0) names += L", ";
    const CString& name = pool.GetAtNU(records[i])->name;
    const CString shown = name.substr(0, CutLength(name, kMostLetters));
    names += FromUtf8(ShownText(ToUtf8(shown)));
    if (shown.size() < name.size()) names += L'…';
  }
  return records.size() > kMostNames ? names + L", …" : names;
}

template CString NamesOf(const GeomPool& pool, const std::vector<iterator>& records);
template CString NamesOf(const MsetPool& pool, const std::vector<iterator>& records);

}  // namespace qd::workbench
