#include "workbench/session/PickedText.h"

#include <array>
#include <string>

#include "host/CMSGFunction.h"
#include "host/MessageOutput.h"

namespace qd::workbench {

namespace {

struct Kind {
  PickFilter kind;
  const char* one;   // a sentence with the number, the name of the record and its number
  const char* some;  // a heading
};
constexpr std::array<Kind, 5> kKinds{{{PickFilter::Faces, "IDS_WB_PICKED_FACE", "IDS_WB_PICKED_FACES"},
                                      {PickFilter::Edges, "IDS_WB_PICKED_EDGE", "IDS_WB_PICKED_EDGES"},
                                      {PickFilter::Points, "IDS_WB_PICKED_POINT", "IDS_WB_PICKED_POINTS"},
                                      {PickFilter::Elements, "IDS_WB_PICKED_ELEMENT", "IDS_WB_PICKED_ELEMENTS"},
                                      {PickFilter::Nodes, "IDS_WB_PICKED_NODE", "IDS_WB_PICKED_NODES"}}};

const tagTRecord* RecordOf(const WorkDocument& doc, iterator itr, CString& name) {
  const Database& database = doc.GetDatabase();
  if (const tagTGeom* part = database.GetGeomPool().GetAtNU(itr)) {
    name = part->name;
    return part;
  }
  const tagTMset* set = database.GetMsetPool().GetAtNU(itr);
  if (set != nullptr) name = set->name;
  return set;
}

}  // namespace

CString NameOf(const WorkDocument& doc, const Picked& one) {
  CString name;
  const tagTRecord* record = RecordOf(doc, one.owner, name);
  for (const Kind& kind : kKinds) {
    if (kind.kind != one.kind || record == nullptr) continue;
    return qdFormat(CMSGFunction::GetValue(kind.one),
                    {std::to_wstring(one.number), name, std::to_wstring(record->id)});
  }
  return {};
}

CString NameOf(const WorkDocument& doc, iterator record) {
  CString name;
  const tagTRecord* known = RecordOf(doc, record, name);
  return known != nullptr
             ? qdFormat(CMSGFunction::GetValue("IDS_WB_PICKED_RECORD"), {name, std::to_wstring(known->id)})
             : CString();
}

CString PickedText(const WorkDocument& doc) {
  const Picks& picks = doc.GetPicks();
  if (picks.All().size() == 1) return NameOf(doc, picks.All().front());
  std::array<std::size_t, kPickFilters> counts{};
  for (const Picked& one : picks.All()) ++counts[static_cast<std::size_t>(one.kind)];
  CString text;
  for (const Kind& kind : kKinds) {
    const std::size_t count = counts[static_cast<std::size_t>(kind.kind)];
    if (count == 0) continue;
    if (!text.empty()) text += L", ";
    text += CMSGFunction::GetValue(kind.some) + L": " + std::to_wstring(count);
  }
  return text;
}

}  // namespace qd::workbench
