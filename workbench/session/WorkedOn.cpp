#include "workbench/session/WorkedOn.h"

#include <algorithm>

#include "workbench/session/RecordQuery.h"
#include "workbench/text/Shown.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

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
  return PartsAmong(doc.GetDatabase(), doc.Meant());
}

std::vector<iterator> MeantMeshSets(const WorkDocument& doc) {
  return MeshSetsAmong(doc.GetDatabase(), doc.Meant());
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
