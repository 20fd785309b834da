#include "workbench/session/RecordQuery.h"

#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

#include "host/CMSGFunction.h"
#include "qd_wrt/find/IRow.h"
#include "qd_wrt/find/Query.h"
#include "qd_wrt/find/TitleKey.h"
#include "workbench/tree/RowFields.h"

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

/// A row of a works tree as queries see it.
class TreeRow final : public IRow {
 public:
  TreeRow(const CQDTreeListCtrl& tree, HTREEITEM row)
      : m_tree(tree),
        m_row(row),
        m_node(tree.NodeOf(row)),
        m_record(tree.GetRecord(row)),
        m_title(tree.GetItemText(row, 0)),
        m_key(find::KeyOf(m_title)) {}

  const CQDTreeItem* Node() const { return m_node; }
  std::wstring_view Title() const override { return m_title; }
  std::string_view Key() const override { return m_key; }
  std::optional<std::uint64_t> Id() const override {
    if (m_record == nullptr || m_record->GetItemKey() == 0) return std::nullopt;
    return m_record->GetItemKey();
  }
  std::optional<COLORREF> Colour() const override {
    if (m_record == nullptr || !m_record->HasColor()) return std::nullopt;
    return m_record->GetColor();
  }
  std::optional<bool> IsShown() const override {
    const int check = m_tree.WhichCheck(m_row);
    return check != 0 ? std::optional(check == kChecked) : std::nullopt;
  }
  bool IsSelected() const override { return false; }
  std::uint32_t Kinds() const override { return m_node != nullptr ? m_node->GetRowKinds() : 0; }
  std::optional<double> Number(std::size_t field) const override {
    double value = 0;
    if (m_node == nullptr || DocumentFields().GetNumber(*m_node, field, value) == 0) return std::nullopt;
    return value;
  }
  void AppendTexts(std::size_t field, TArray<CString>& texts) const override {
    if (m_node == nullptr) return;
    if (field == kMaterialField) return m_node->AppendMaterials(texts);
    if (field != kSetField) return static_cast<void>(DocumentFields().GetTexts(*m_node, field, texts));
    m_node->AppendSets(texts);
    for (const CQDTreeItem* above = m_node->GetParent(); above != nullptr; above = above->GetParent()) {
      if ((above->GetRowKinds() & (kRowSet | kRowMesh)) != 0) texts.push_back(above->GetTitle());
    }
  }

 private:
  const CQDTreeListCtrl& m_tree;
  HTREEITEM m_row;
  const CQDTreeItem* m_node;
  const CTLItem* m_record;
  CString m_title;
  std::string m_key;
};

/// Goes through all rows from top to bottom, with what those above each one fulfil.
void FindIn(const CQDTreeListCtrl& tree, const Query& query, EachOnce& found) {
  Matcher matcher(query);
  std::vector<std::uint64_t> inside{0};  // of the levels down to the row
  for (HTREEITEM row = tree.GetRootItem(); row;) {
    const TreeRow seen(tree, row);
    const bool isRecord = seen.Node() != nullptr && seen.Node()->GetRecord() != 0;
    if (isRecord && matcher.Matches(seen, inside.back())) found.Add(seen.Node()->GetRecord());
    HTREEITEM next = tree.GetChildItem(row);
    if (next) {
      const std::uint64_t own = query.AsksForAncestors() ? matcher.InsideOf(seen.Key(), seen.Title()) : 0;
      inside.push_back(inside.back() | own);
    }
    while (!next && row) {
      next = tree.GetNextSiblingItem(row);
      if (next) break;
      row = tree.GetParentItem(row);
      inside.pop_back();
    }
    row = next;
  }
}

}  // namespace

QueryFault FaultOfQuery(const CString& query) {
  QueryFault fault;
  const QueryWords words(&CMSGFunction::GetValue, &DocumentFields());
  return Query::Parse(query, words, fault) ? QueryFault{} : fault;
}

FoundRecords FindRecords(Session& session, const CString& query) {
  FoundRecords outcome;
  const QueryWords words(&CMSGFunction::GetValue, &DocumentFields());
  const std::optional<Query> parsed = Query::Parse(query, words, outcome.fault);
  if (!parsed) return outcome;
  outcome.fault = {};
  EachOnce found;
  for (const TreeType tree : {kModelTree, kGeometrySetTree}) {
    FindIn(session.Trees().Bar(tree).GetTreeCtrl(), *parsed, found);
  }
  outcome.records = found.Take();
  return outcome;
}

std::vector<iterator> PartsAmong(const Database& database, const std::vector<iterator>& records) {
  EachOnce parts;
  for (const iterator itr : records) {
    if (database.GetDataType(itr) == kDataGeom) parts.Add(itr);
    if (database.GetDataType(itr) != kDataGset) continue;
    for (const iterator part : database.GetGeomPool().PartsOf(itr)) parts.Add(part);
  }
  return parts.Take();
}

std::vector<iterator> MeshSetsAmong(const Database& database, const std::vector<iterator>& records) {
  EachOnce sets;
  for (const iterator itr : records) {
    if (database.GetDataType(itr) == kDataMset) sets.Add(itr);
  }
  for (const iterator part : PartsAmong(database, records)) {
    if (const iterator mesh = database.GetMsetPool().GetItrByGeomItr(part); mesh != 0) sets.Add(mesh);
  }
  return sets.Take();
}

bool IsShown(const WorkDocument& doc, iterator itr) {
  const Database& database = doc.GetDatabase();
  if (database.GetDataType(itr) == kDataMset) return doc.GetDisplay().Meshes().IsMsetShown(itr) != 0;
  if (const tagTCord* system = database.GetCordPool().GetAtNU(itr)) {
    return doc.GetDisplay().Labels().IsShown(system->id) != 0;
  }
  const tagTGeom* part = database.GetGeomPool().GetAtNU(itr);
  return part == nullptr || doc.GetDisplay().Parts().GetLook(part->cadItem).shown;
}

void ShowRecords(WorkDocument& doc, const std::vector<iterator>& records, bool shown) {
  const Database& database = doc.GetDatabase();
  Display& display = doc.GetDisplay();
  display.Parts().BeginShowHide();
  for (const iterator part : PartsAmong(database, records)) {
    display.Parts().SetShowHide(database.GetGeomPool().GetAtNU(part)->cadItem, shown ? 1 : 0);
  }
  display.Parts().EndShowHide();
  for (const iterator itr : records) {
    const tagTCord* system = database.GetCordPool().GetAtNU(itr);
    if (system != nullptr) display.Labels().SetShowHide(shown ? 1 : 0, kLabelCord, system->id);
  }
  std::vector<iterator> sets = records;
  std::erase_if(sets, [&database](iterator itr) { return database.GetDataType(itr) != kDataMset; });
  if (!sets.empty()) display.Meshes().ShowHideMset(sets, shown ? 1 : 0);
  // In an act it is a part of it.
  if (!database.IsInTransaction()) display.Deliver();
}

}  // namespace qd::workbench
