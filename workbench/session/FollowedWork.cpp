#include "workbench/session/FollowedWork.h"

#include <algorithm>
#include <utility>

namespace qd::workbench {

FollowedWork::FollowedWork(WorkDocument& doc, What what, std::function<void()> changed)
    : m_doc(doc), m_what(std::move(what)), m_changed(std::move(changed)) {
  Gather();
  if (m_what.follows) {
    m_onSelection = doc.OnSelection([this](const Selection&) {
      m_what.given.clear();
      Gather();
      m_changed();
    });
  }
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) { FollowRecords(record); });
  m_onDisplay = doc.GetDisplay().Subscribe([this](const DisplayNotice& notice) { FollowDisplay(notice); });
}

void FollowedWork::LeaveOut(iterator itr) {
  Look(std::exchange(m_leftOut, itr));
  Look(itr);
}

/// Finds out what is meant from the beginning.
void FollowedWork::Gather() {
  const Database& database = m_doc.GetDatabase();
  const bool given = !m_what.given.empty() || !m_what.follows;
  m_all = !given && m_what.elseAll && m_doc.GetSelection().IsEmpty() && !m_doc.GetSelection().lost;
  m_named = true;
  if (given) {
    m_meant = m_what.given;
  } else if (m_all) {
    m_meant = m_what.type == kDataGeom ? database.GetGeomPool().GetItrList() : database.GetMsetPool().GetItrList();
  } else {
    const Selection& selection = m_doc.GetSelection();
    m_named = selection.others == 0 &&
              std::all_of(selection.records.begin(), selection.records.end(),
                          [&](iterator itr) { return database.GetDataType(itr) == m_what.type; });
    m_meant = m_what.type == kDataGeom ? MeantParts(m_doc) : MeantMeshSets(m_doc);
    m_selected = {selection.records.begin(), selection.records.end()};
  }
  m_isMeant = {m_meant.begin(), m_meant.end()};
  m_taken.clear();
  for (const iterator itr : m_meant) Look(itr);
}

/// Looks at one record again. True when it comes or goes.
bool FollowedWork::Look(iterator itr) {
  const bool taken = m_isMeant.contains(itr) && itr != m_leftOut && IsTaken(m_doc, m_what.type, itr, m_what.reach);
  return taken ? m_taken.insert(itr).second : m_taken.erase(itr) != 0;
}

std::vector<iterator> FollowedWork::First(std::size_t most) const {
  std::vector<iterator> records;
  records.reserve(std::min(most, m_taken.size()));
  for (const iterator itr : m_meant) {
    if (records.size() == most) break;
    if (m_taken.contains(itr)) records.push_back(itr);
  }
  return records;
}

CString FollowedWork::Names() const {
  const std::vector<iterator> first = First(kMostNames + 1);
  const Database& database = m_doc.GetDatabase();
  return m_what.type == kDataGeom ? NamesOf(database.GetGeomPool(), first)
                                  : NamesOf(database.GetMsetPool(), first);
}

bool FollowedWork::IsSelected(iterator itr) const {
  const Database& database = m_doc.GetDatabase();
  if (m_selected.contains(itr) || m_doc.IsBelowRows(itr)) return true;
  if (database.GetDataType(itr) == kDataMset) {
    const iterator part = database.GetMsetPool().GetAtNU(itr)->geom;
    return part != 0 && IsSelected(part);
  }
  return database.GetDataType(itr) == kDataGeom && m_selected.contains(database.GetGeomPool().GetAtNU(itr)->gset);
}

iterator FollowedWork::Concerned(const tagTRNotify& change) const {
  if (change.dataType == m_what.type) return change.itr;
  const bool ofPart = m_what.type == kDataMset && change.dataType == kDataGeom && !m_named;
  return ofPart ? m_doc.GetDatabase().GetMsetPool().GetItrByGeomItr(change.itr) : 0;
}

void FollowedWork::FollowRecords(const CQDUpdateRecord& record) {
  bool changed = false;
  for (const tagTRNotify& change : record.changes) {
    const iterator itr = Concerned(change);
    if (itr == 0) continue;
    if (!m_named && (change.kind != kChangeModified || IsSelected(itr) != m_isMeant.contains(itr))) {
      Gather();
      return m_changed();
    }
    if (m_all && change.kind == kChangeAdded && m_isMeant.insert(itr).second) m_meant.push_back(itr);
    const bool was = m_taken.contains(itr);
    changed = Look(itr) || was || changed;  // or it has another name
  }
  if (changed) m_changed();
}

void FollowedWork::FollowDisplay(const DisplayNotice& notice) {
  if (m_what.reach == Reach::All) return;
  bool changed = false;
  if (m_what.type == kDataMset) {
    for (const iterator set : notice.msets) changed = Look(set) || changed;
  } else {
    const GeomPool& pool = m_doc.GetDatabase().GetGeomPool();
    for (const int cadItem : notice.parts) changed = Look(pool.ItrOfNumber(cadItem)) || changed;
  }
  if (changed) m_changed();
}

}  // namespace qd::workbench
