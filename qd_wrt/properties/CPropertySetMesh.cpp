#include "qd_wrt/properties/CPropertySetMesh.h"

#include <algorithm>
#include <cwchar>
#include <string>
#include <unordered_set>
#include <variant>

#include "host/Act.h"
#include "host/CMSGFunction.h"
#include "host/CQDUnitCtrl.h"
#include "host/LongWork.h"
#include "platform/Toolkit.h"
#include "qd_wrt/properties/MeshParameters.h"
#include "qd_wrt/properties/MsetName.h"

namespace qd {

namespace {

constexpr std::uint64_t kMassRow = 100;
constexpr std::uint64_t kLastMassRow = 103;
constexpr int kMeshInfo = 2;

CString Text(std::string_view key) {
  return CMSGFunction::GetValue(key);
}

/// "12 : name", as properties and materials are listed.
CString NumberAndName(std::int32_t number, const CString& name) {
  return std::to_wstring(number) + L" : " + name;
}

CString WithUnit(double value, const CString& unit) {
  constexpr std::size_t kRoom = 40;
  wchar_t text[kRoom];
  std::swprintf(text, kRoom, L"%5g ", value);
  return text + unit;
}

CString Number(double value) {
  constexpr std::size_t kRoom = 40;
  wchar_t text[kRoom];
  std::swprintf(text, kRoom, L"%g", value);
  return text;
}

/// How much mesh there is in some sets and in all that is nested in them, each set counted once.
struct Extent {
  std::uint64_t elements = 0;
  std::uint64_t nodes = 0;
};

Extent ExtentOf(const DPoolMset& pool, std::vector<iterator> sets) {
  Extent extent;
  std::unordered_set<iterator> counted;
  while (!sets.empty()) {
    const iterator itr = sets.back();
    sets.pop_back();
    const tagTMset* record = counted.insert(itr).second ? pool.GetAtNU(itr) : nullptr;
    if (record == nullptr) continue;
    extent.elements += record->elementCount;
    extent.nodes += record->nodeCount;
    TArray<iterator> nested;
    pool.GetItrListByParentMsetK(record->key & kMsetKeyMask, nested);
    sets.insert(sets.end(), nested.begin(), nested.end());
  }
  return extent;
}

/// A parameter's value as the page shows it.
CString ValueOf(const MeshParameter& parameter, const tagMGInfo::Option& option) {
  if (const bool* on = std::get_if<bool>(&option)) return Text(*on ? "IDS_QD_WRT_YES" : "IDS_QD_WRT_NO");
  if (const int* place = std::get_if<int>(&option)) {
    const bool choice = *place >= 0 && static_cast<std::size_t>(*place) < parameter.choices.size();
    return choice ? Text(parameter.choices[static_cast<std::size_t>(*place)]) : std::to_wstring(*place);
  }
  return Number(std::get<double>(option));
}

}  // namespace

void CPropertySetMesh::Clear() {
  m_name = m_colour = m_generationTitle = nullptr;
  std::fill(std::begin(m_mass), std::end(m_mass), nullptr);
  m_generation.clear();
  m_generationChanged = false;
}

CBCGPProp* CPropertySetMesh::AddNumber(CBCGPProp* title, const char* key, const char* description,
                                       std::uint64_t number) {
  return AddText(title, Text(key), std::to_wstring(number), 0, true, Text(description));
}

// ---- one set --------------------------------------------------------------------------------------------

void CPropertySetMesh::ShowProperty() {
  if (!m_sets.empty()) return ShowMultiProperty(m_sets);
  Clear();
  RemoveAllProperties();
  CQDDBSession* session = GetDocument()->GetDBSession();
  if (session != nullptr && session->GetDataType(GetIterator()) == GetDataType()) {
    const tagTMset record = *session->GetMsetPool().GetAtNU(GetIterator());
    CBCGPProp* title = AddTitle(nullptr, Text("IDS_DB_DATA_NAME_MESH"));
    AddIdentity(title, record);
    AddProperty(title, record);
    AddMass();
    AddGeneration(record);
  }
  AdjustLayout();
  SetInfo(kMeshInfo);
  ShowApplyBtn(1);
}

void CPropertySetMesh::AddIdentity(CBCGPProp* title, const tagTMset& record) {
  const DPoolMset& pool = GetDocument()->GetDBSession()->GetMsetPool();
  AddNumber(title, "IDS_QD_WRT_ID", "IDS_QD_WRT_ID_DESC", record.key & kMsetKeyMask);
  m_name = AddText(title, Text("IDS_QD_WRT_NAME"), record.name, 0, pool.GetDefaultMset() == GetIterator(),
                   Text("IDS_QD_WRT_NAME_DESC"));
  m_colour = AddColour(title, Text("IDS_QD_WRT_Color"), record.colour, 0, Text("IDS_QD_WRT_COLOR_DESC"));
  AddExtent(title, {GetIterator()});
}

/// Who has put sets into a set means them too when he speaks of it.
void CPropertySetMesh::AddExtent(CBCGPProp* title, const std::vector<iterator>& sets) {
  CQDDBSession* session = GetDocument()->GetDBSession();
  const Extent extent = session != nullptr ? ExtentOf(session->GetMsetPool(), sets) : Extent();
  AddNumber(title, "IDS_QD_WRT_MESH_ELEM_COUNT", "IDS_QD_WRT_MESH_ELEM_COUNT_DESC", extent.elements);
  AddNumber(title, "IDS_QD_WRT_MESH_NODE_COUNT", "IDS_QD_WRT_MESH_NODE_COUNT_DESC", extent.nodes);
}

void CPropertySetMesh::AddProperty(CBCGPProp* title, const tagTMset& record) {
  IAppDB::Property property;
  const bool known = record.property != 0 &&
                     GetDocument()->GetDBSession()->GetAppDB().GetProperty(record.property, property) != 0;
  if (!known) return;
  AddText(title, Text("IDS_QD_WRT_MESH_PROPERTY"), NumberAndName(property.number, property.name), 0, true,
          Text("IDS_QD_WRT_MESH_PROPERTY_DESC"));
  if (!property.hasMaterial) return;
  AddText(title, Text("IDS_QD_WRT_MESH_MATERIAL"), NumberAndName(property.materialNumber, property.materialName),
          0, true, Text("IDS_QD_WRT_MESH_MATERIAL_DESC"));
}

void CPropertySetMesh::AddMass() {
  constexpr const char* kRows[][2] = {{"IDS_QD_WRT_MESH_MASS", "IDS_QD_WRT_MESH_MASS_DESC"},
                                      {"IDS_QD_WRT_MASSX", "IDS_QD_WRT_MASSX_DESC"},
                                      {"IDS_QD_WRT_MASSY", "IDS_QD_WRT_MASSY_DESC"},
                                      {"IDS_QD_WRT_MASSZ", "IDS_QD_WRT_MASSZ_DESC"}};
  CBCGPProp* title = AddTitle(nullptr, Text("IDS_QD_WRT_MESH_MASS"));
  title->collapsed = true;
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    m_mass[i] = AddText(title, Text(kRows[i][0]), {}, kMassRow + i, true, Text(kRows[i][1]));
    m_mass[i]->calculate = true;
  }
}

void CPropertySetMesh::AddGeneration(const tagTMset& record) {
  const DPoolMGInfo& pool = GetDocument()->GetDBSession()->GetMGInfoPool();
  tagMGInfo generation;
  const iterator itr = record.mgInfo != 0 ? pool.GetItrByKey(record.mgInfo) : 0;
  constexpr int kKindOfOtherSolids = 2;
  if (itr == 0 || pool.GetAt(itr, generation) == 0 || (generation.kind & ~kKindOfOtherSolids) != 0) return;
  m_generationTitle = AddTitle(nullptr, Text("IDS_QD_MESH_GEN_INFO"));
  CBCGPProp* method = AddGeneralPropertyWithOption(
      m_generationTitle, Text("IDS_QDMESH_METHOD"),
      {Text("IDS_QDMESH_TAB_AUTO_SOLID"), Text("IDS_QDMESH_TAB_MAP_SOLID"),
       Text("IDS_QDMESH_TAB_GENERATE_2D_TO_3D"), Text("IDS_QDMESH_TAB_AUTO_SOLID_LAYERED")},
      generation.method, {}, 0, 1);
  method->readOnly = true;
  m_generation.push_back(method);
  switch (generation.method) {
    case tagMGInfo::kAutoSolid:
      return ShowAutoSolid(generation);
    case tagMGInfo::kMapSolid:
      return ShowMapSolid(generation);
    case tagMGInfo::k2D3D:
      return Show2D3D(generation);
    case tagMGInfo::kAutoLayer:
      return ShowAutoLayer(generation);
    default:
      return;
  }
}

/// They tell what was; they are not written back.
void CPropertySetMesh::AddParameters(const tagMGInfo& generation, int method) {
  for (const MeshParameter& parameter : ParametersOfMethod(method)) {
    const auto option = generation.options.find(std::string(parameter.key));
    if (option == generation.options.end()) continue;
    m_generation.push_back(
        AddText(m_generationTitle, Text(parameter.key), ValueOf(parameter, option->second), 0, true));
  }
}

// ---- several sets ---------------------------------------------------------------------------------------

void CPropertySetMesh::ShowMultiProperty(TArray<iterator>& sets) {
  IToolkit::Instance().SetWaitCursor(true);
  Clear();
  RemoveAllProperties();
  std::uint64_t count = 0;
  if (CQDDBSession* session = GetDocument()->GetDBSession()) {
    for (const iterator itr : sets) count += session->GetMsetPool().GetAtNU(itr) != nullptr ? 1U : 0U;
  }
  CBCGPProp* title = AddTitle(nullptr, Text("IDS_DB_DATA_NAME_MESH"));
  AddNumber(title, "IDS_QD_WRT_COUNT", "IDS_QD_WRT_COUNT_DESC", count);
  AddExtent(title, sets);
  AdjustLayout();
  SetInfo(kMeshInfo);
  ShowApplyBtn(0);  // there is nothing to apply
  IToolkit::Instance().SetWaitCursor(false);
}

// ---- mass -----------------------------------------------------------------------------------------------

void CPropertySetMesh::CalProp(CBCGPProp* row) {
  m_calculating = row != nullptr && row->data >= kMassRow && row->data <= kLastMassRow;
  if (m_calculating) InputMassCenter();
  m_calculating = false;
}

void CPropertySetMesh::InputMassCenter() {
  CQDDBSession* session = GetDocument()->GetDBSession();
  if (session == nullptr || m_mass[0] == nullptr) return;
  IAppDB::MassCentre result;
  const int done = qdRunLongWork(Text("IDS_QD_WRT_MESH_MASS"), [&](const ProgressCall& progress) {
    return session->GetAppDB().GetMassCentre(GetIterator(), result, progress);
  });
  m_mass[0]->value = done != 0 ? WithUnit(result.mass, CQDUnitCtrl::GetUnitSystemMass()) : CString();
  for (std::size_t axis = 0; axis < 3; ++axis) {
    m_mass[axis + 1]->value =
        done != 0 ? WithUnit(result.centre[axis], CQDUnitCtrl::GetUnitSystemLength()) : CString();
  }
}

// ---- changes --------------------------------------------------------------------------------------------

void CPropertySetMesh::OnPropertyChanged(CBCGPProp* row, std::uint64_t) {
  if (std::find(m_generation.begin(), m_generation.end(), row) != m_generation.end()) m_generationChanged = true;
}

void CPropertySetMesh::ApplyProperty() {
  CQDDBSession* session = GetDocument()->GetDBSession();
  if (session == nullptr || !m_sets.empty() || session->GetDataType(GetIterator()) != GetDataType()) return;
  const tagTMset old = *session->GetMsetPool().GetAtNU(GetIterator());
  tagTMset record = old;
  if (m_name != nullptr && m_name->value != old.name && !m_name->readOnly) {
    CString text;
    ExtractString(m_name, text);
    if (const auto name = NewMsetName(*session, old, text)) record.name = *name;
  }
  if (m_colour != nullptr) record.colour = m_colour->colour;
  if (record.name == old.name && record.colour == old.colour) return;
  RunAct(session, "IDS_QD_TRANS_Modify_Mset",
         [&] { return session->GetMsetPool().Modify(GetIterator(), record); });
}

}  // namespace qd
