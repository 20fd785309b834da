#include "workbench/session/SelectionPage.h"

#include <array>
#include <cwchar>
#include <map>

#include "host/CMSGFunction.h"
#include "workbench/session/DocumentPage.h"

namespace qd::workbench {

namespace {

CString Text(std::string_view key) {
  return CMSGFunction::GetValue(key);
}

CString Number(double value) {
  std::array<wchar_t, 40> text{};
  std::swprintf(text.data(), text.size(), L"%.6g", value);
  return text.data();
}

CString Point(const std::array<double, 3>& at) {
  return Number(at[0]) + L", " + Number(at[1]) + L", " + Number(at[2]);
}

struct Kind {
  std::uint16_t type;
  const char* key;
};
constexpr std::array<Kind, 5> kKinds{{{kDataGeom, "IDS_WB_KIND_PARTS"},
                                      {kDataGset, "IDS_WB_KIND_SETS"},
                                      {kDataMset, "IDS_WB_KIND_MSETS"},
                                      {kDataMaterial, "IDS_WB_MATERIALS"},
                                      {kDataCord, "IDS_QD_WRT_Coordinate_System"}}};

std::map<std::uint16_t, std::size_t> CountKinds(WorkDocument& doc) {
  std::map<std::uint16_t, std::size_t> counts;
  for (const iterator itr : doc.GetSelection().records) ++counts[doc.GetDatabase().GetDataType(itr)];
  return counts;
}

}  // namespace

CString SelectionText(WorkDocument& doc) {
  const auto counts = CountKinds(doc);
  CString text;
  for (const Kind& kind : kKinds) {
    const auto count = counts.find(kind.type);
    if (count == counts.end()) continue;
    if (!text.empty()) text += L", ";
    text += Text(kind.key) + L": " + std::to_wstring(count->second);
  }
  return text;
}

std::unique_ptr<IPropertySet> SelectionPage::For(WorkDocument& doc) {
  if (doc.GetSelection().records.empty()) return DocumentPage::For(doc);
  return std::make_unique<SelectionPage>(doc);
}

// ---- rows -----------------------------------------------------------------------------------------------

void SelectionPage::ShowProperty() {
  RemoveAllProperties();
  const std::vector<iterator>& records = m_document.GetSelection().records;
  const iterator one = records.size() == 1 ? records.front() : 0;
  switch (m_document.GetDatabase().GetDataType(one)) {
    case kDataGset:
      ShowSet(one);
      break;
    case kDataMaterial:
      ShowMaterial(one);
      break;
    case kDataCord:
      ShowSystem(one);
      break;
    default:
      ShowCounts();
      break;
  }
  AdjustLayout();
}

void SelectionPage::ShowSet(iterator itr) {
  const Database& database = m_document.GetDatabase();
  std::size_t parts = 0;
  for (int kind = 0; kind <= static_cast<int>(TopologyKind::Compound); ++kind) {
    std::vector<iterator> some;
    database.GetGeomPool().GetItrGsetTypeList(itr, kind, some);
    parts += some.size();
  }
  CBCGPProp* title = AddTitle(nullptr, Text("IDS_QD_WRT_GEOMSET"));
  AddText(title, Text("IDS_QD_WRT_PROP_NAME"), database.GetGsetPool().GetAtNU(itr)->name, 0, true);
  AddText(title, Text("IDS_WB_KIND_PARTS"), std::to_wstring(parts), 0, true);
}

void SelectionPage::ShowMaterial(iterator itr) {
  const tagTMaterial& material = *m_document.GetDatabase().GetMaterialPool().GetAtNU(itr);
  CBCGPProp* title = AddTitle(nullptr, Text("IDS_WB_MATERIAL"));
  AddText(title, Text("IDS_QD_WRT_PROP_NAME"), material.name, 0, true);
  AddText(title, Text("IDS_WB_MATERIAL_YOUNG"), Number(material.youngsModulus), 0, true);
  AddText(title, Text("IDS_WB_MATERIAL_POISSON"), Number(material.poissonsRatio), 0, true);
  AddText(title, Text("IDS_WB_MATERIAL_DENSITY"), Number(material.density), 0, true);
}

void SelectionPage::ShowSystem(iterator itr) {
  const tagTCord& system = *m_document.GetDatabase().GetCordPool().GetAtNU(itr);
  CBCGPProp* title = AddTitle(nullptr, Text("IDS_QD_WRT_Coordinate_System"));
  AddText(title, Text("IDS_QD_WRT_PROP_NAME"), system.GetName(), 0, true);
  AddText(title, Text("IDS_WB_CORD_ORIGIN"), Point(system.origin), 0, true);
  AddText(title, Text("IDS_WB_CORD_X_AXIS"), Point(system.xAxis), 0, true);
}

void SelectionPage::ShowCounts() {
  const auto counts = CountKinds(m_document);
  CBCGPProp* title = AddTitle(nullptr, Text("IDS_WB_SELECTED"));
  for (const Kind& kind : kKinds) {
    const auto count = counts.find(kind.type);
    if (count != counts.end()) AddText(title, Text(kind.key), std::to_wstring(count->second), 0, true);
  }
}

}  // namespace qd::workbench
