#include "qd_wrt/properties/CPropertySetGeom.h"

#include <cmath>
#include <cwchar>

#include "host/CMSGFunction.h"
#include "host/CQDCommandObj.h"
#include "qd_wrt/properties/PartEdits.h"

namespace qd {

namespace {

enum RowData : std::uint64_t { kReadOnlyRow, kNameRow, kColourRow, kMaterialRow, kBodyRow };

CString Text(const char* key) {
  return CMSGFunction::GetValue(key);
}

CString Number(double value) {
  constexpr std::size_t kRoom = 40;
  wchar_t text[kRoom];
  std::swprintf(text, kRoom, L"%.6g", value);
  return text;
}

}  // namespace

CPropertySetGeom::CPropertySetGeom(CQDDocBase* doc, iterator itr) : IPropertySet(doc, itr, kDataGeom) {}

void CPropertySetGeom::ShowProperty() {
  RemoveAllProperties();
  CQDDBSession* session = GetDocument()->GetDBSession();
  if (session != nullptr && session->GetDataType(GetIterator()) == kDataGeom) {
    const tagTGeom record = *session->GetGeomPool().GetAtNU(GetIterator());
    constexpr const char* kKinds[] = {"IDS_QD_WRT_GEOMSET_POINT", "IDS_QD_WRT_GEOMSET_CURVE",
                                      "IDS_QD_WRT_GEOMSET_SURFACE", "IDS_QD_WRT_GEOMSET_SOLID",
                                      "IDS_QD_WRT_GEOMSET_COMPOUND"};
    CBCGPProp* title = AddTitle(nullptr, Text(kKinds[static_cast<int>(record.kind)]));
    AddText(title, Text("IDS_QD_WRT_PROP_NAME"), record.name, kNameRow, false);
    AddText(title, Text("IDS_QD_WRT_ID"), std::to_wstring(record.id), kReadOnlyRow, true);
    AddColour(title, Text("IDS_QD_WRT_Color"), record.colour, kColourRow);
    std::vector<CString> materials{Text("IDS_QD_WRT_PROP_NO_MATERIAL")};
    int current = 0;
    for (const IAppDB::Material& material : session->GetAppDB().ListMaterials()) {
      if (material.itr == record.material) current = static_cast<int>(materials.size());
      materials.push_back(material.label);
    }
    AddGeneralPropertyWithOption(title, Text("IDS_QD_WRT_PROP_MATERIAL"), materials, current, {}, kMaterialRow, 1);
    if (record.kind == TopologyKind::Solid) {
      AddGeneralPropertyWithOption(title, Text("IDS_QD_DB_DEFORMABLE_BODY"),
                                   {Text("IDS_QD_DB_BODY_RIGID"), Text("IDS_QD_DB_BODY_FLEXIBLE")},
                                   session->GetAppDB().IsFlexibleBody(GetIterator()), {}, kBodyRow, 1);
    }
    AddOrigin(title, record);
    AddMeasures(title, record);
  }
  AdjustLayout();
  SetInfo(1);
  ShowApplyBtn(0);
}

/// What the file that the part came from calls it, and where it has it.
void CPropertySetGeom::AddOrigin(CBCGPProp* parent, const tagTGeom& record) {
  if (record.origin == nullptr) return;
  const auto add = [&](const char* key, const CString& text) {
    constexpr std::size_t kMost = 1000;  // names of files have no end
    if (text.empty()) return;
    const bool isLong = text.size() > kMost;
    const CString shown = isLong ? text.substr(0, CutLength(text, kMost)) + L"…" : text;
    AddText(parent, Text(key), shown, kReadOnlyRow, true);
  };
  add("IDS_QD_WRT_PROP_PRODUCT", record.origin->product);
  add("IDS_QD_WRT_PROP_INSTANCE", record.origin->instance);
  add("IDS_QD_WRT_PROP_ASSEMBLY", AssemblyPath(*record.origin));
  if (const CString uses = AssemblyPath(*record.origin, true); uses != AssemblyPath(*record.origin)) {
    add("IDS_QD_WRT_PROP_ASSEMBLY_USES", uses);
  }
}

void CPropertySetGeom::AddMeasures(CBCGPProp* parent, const tagTGeom& record) {
  if (record.shape == nullptr) return;
  const auto add = [&](const char* key, double value) {
    if (value > 0) AddText(parent, Text(key), Number(value), kReadOnlyRow, true);
  };
  const bool solid = record.kind == TopologyKind::Solid || record.kind == TopologyKind::Compound;
  if (solid) add("IDS_QD_WRT_PROP_VOLUME", record.shape->volume);
  if (record.kind >= TopologyKind::Surface) add("IDS_QD_WRT_PROP_AREA", record.shape->area);
  if (record.kind == TopologyKind::Curve) add("IDS_QD_WRT_PROP_LENGTH", record.shape->length);
  for (const auto& [key, value] : record.shape->geometry) {
    if (value > 0) {
      add(key.c_str(), value);
    } else {
      AddText(parent, Text("IDS_QD_WRT_PROP_GEOMETRY"), Text(key.c_str()), kReadOnlyRow, true);
    }
  }
  CQDDBSession* session = GetDocument()->GetDBSession();
  if (solid && session->GetDataType(record.material) == kDataMaterial) {
    add("IDS_QD_WRT_PROP_MASS",
        record.shape->volume * session->GetMaterialPool().GetAtNU(record.material)->density);
  }
}

/// A text that names no material takes the part's material away.
void CPropertySetGeom::ApplyMaterial(const CString& label) {
  iterator chosen = 0;
  for (const IAppDB::Material& material : GetDocument()->GetDBSession()->GetAppDB().ListMaterials()) {
    if (chosen == 0 && material.label == label) chosen = material.itr;
  }
  CQDCommandObj(GetDocument(), L"Geom")
      .Set(L"Action", CString(L"ApplyMaterial"))
      .Set(L"Itr", std::vector<iterator>{GetIterator()})
      .Set(L"ItrMaterial", chosen)
      .Execute();
}

void CPropertySetGeom::OnPropertyChanged(CBCGPProp* row, std::uint64_t) {
  CQDDBSession* session = GetDocument()->GetDBSession();
  if (row == nullptr || session == nullptr) return;
  // The change makes the page anew, and with it the row.
  const CBCGPProp changed = *row;
  switch (changed.data) {
    case kNameRow:
      RenamePart(session, GetIterator(), changed.value);
      break;
    case kColourRow:
      RecolourPart(session, GetIterator(), changed.colour);
      break;
    case kMaterialRow:
      ApplyMaterial(changed.value);
      break;
    case kBodyRow:
      SetPartsBodyType(session, {GetIterator()}, changed.value == Text("IDS_QD_DB_BODY_FLEXIBLE") ? 1 : 0);
      break;
    default:
      break;
  }
}

}  // namespace qd
