#include "workbench/session/SelectionPage.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <map>
#include <optional>

#include "host/Act.h"
#include "host/CMSGFunction.h"
#include "host/CQDUnitCtrl.h"
#include "host/MessageOutput.h"
#include "platform/text/Characters.h"
#include "workbench/session/DocumentPage.h"
#include "workbench/session/PickedText.h"
#include "workbench/text/Units.h"
#include "workbench/text/Utf8.h"

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

const UnitSystem& Units() {
  return FindUnitSystem(CQDUnitCtrl::GetUnitSystemLength());
}

CString Measured(double value, Quantity quantity) {
  const CString unit = UnitOf(quantity, Units());
  return unit.empty() ? Number(value) : Number(value) + L" " + unit;
}

CString Point(const std::array<double, 3>& at, Quantity quantity) {
  const CString unit = UnitOf(quantity, Units());
  const CString numbers = Number(at[0]) + L", " + Number(at[1]) + L", " + Number(at[2]);
  return unit.empty() ? numbers : numbers + L" " + unit;
}

/// What all of some records have, or that they differ.
template <typename Read>
CString Common(const std::vector<iterator>& records, const Read& read) {
  const CString first = read(records.front());
  const bool same = std::all_of(records.begin(), records.end(), [&](iterator itr) { return read(itr) == first; });
  return same ? first : Text("IDS_WB_MIXED");
}

/// The rows that can be changed.
enum Field : std::uint64_t { kNoField, kName, kYoung, kPoisson, kDensity, kColour, kMaterial };

/// A number of a material by its field, null for another field.
double tagTMaterial::*NumberOfField(std::uint64_t field) {
  if (field == kYoung) return &tagTMaterial::youngsModulus;
  if (field == kPoisson) return &tagTMaterial::poissonsRatio;
  return field == kDensity ? &tagTMaterial::density : nullptr;
}

/// A number as somebody has typed it; says what is wrong with it.
std::optional<double> Typed(const CString& text, std::uint64_t field) {
  const Quantity quantity = field == kYoung     ? Quantity::Stress
                            : field == kDensity ? Quantity::Density
                                                : Quantity::Plain;
  const NumberLimits limits = field == kYoung     ? NumberLimits::Positive()
                              : field == kDensity ? NumberLimits::NotNegative()
                                                  : NumberLimits{.least = -1, .greatest = 0.5, .aboveLeast = true};
  const NumberReading reading = ReadQuantity(ToUtf8(text), '.', quantity, Units(), limits);
  if (reading.IsGood()) return reading.value;
  const bool limit = reading.fault == NumberFault::AboveGreatest || reading.fault == NumberFault::BelowLeast ||
                     reading.fault == NumberFault::NotAboveLeast;
  const CString bound = Number(reading.fault == NumberFault::AboveGreatest ? limits.greatest : limits.least);
  qdMsgOutFormatWarning(Text(KeyOf(reading.fault)), {limit ? bound : text, L"."});
  return std::nullopt;
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

/// How many records of each kind are selected.
CString KindsText(WorkDocument& doc) {
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

}  // namespace

CString SelectionText(WorkDocument& doc) {
  const CString text = KindsText(doc);
  const CString picked = PickedText(doc);
  return text.empty() || picked.empty() ? text + picked : text + L"; " + picked;
}

const char* EmptyPageKey(const WorkDocument& doc) {
  return doc.GetSelection().IsEmpty() ? "IDS_WB_NO_PROPERTIES" : "IDS_WB_NO_PROPERTIES_OF";
}

std::unique_ptr<IPropertySet> SelectionPage::For(WorkDocument& doc) {
  if (doc.GetSelection().IsEmpty()) return DocumentPage::For(doc);
  // Rows that only gather others, and records of kinds that no page knows.
  if (CountKinds(doc).empty() || KindsText(doc).empty()) return nullptr;
  return std::make_unique<SelectionPage>(doc);
}

// ---- rows -----------------------------------------------------------------------------------------------

void SelectionPage::ShowProperty() {
  RemoveAllProperties();
  const bool one = Records().size() == 1;
  const std::uint16_t type = CommonType();
  if (type == kDataGset && one) {
    ShowSet(Records().front());
  } else if (type == kDataMaterial) {
    ShowMaterials();
  } else if (type == kDataCord && one) {
    ShowSystem(Records().front());
  } else {
    ShowCounts();
    if (type == kDataGeom) ShowParts();
  }
  AdjustLayout();
}

std::uint16_t SelectionPage::CommonType() const {
  const Database& database = m_document.GetDatabase();
  if (Records().empty()) return 0;
  const std::uint16_t type = database.GetDataType(Records().front());
  const bool same = std::all_of(Records().begin(), Records().end(),
                                [&](iterator itr) { return database.GetDataType(itr) == type; });
  return same ? type : std::uint16_t{0};
}

void SelectionPage::ShowParts() {
  const Database& database = m_document.GetDatabase();
  const GeomPool& pool = database.GetGeomPool();
  CBCGPProp* title = AddTitle(nullptr, Text("IDS_QD_WRT_PROP_GEOMETRY"));
  const iterator first = pool.GetAtNU(Records().front())->material;
  const bool same = std::all_of(Records().begin(), Records().end(),
                                [&](iterator itr) { return pool.GetAtNU(itr)->material == first; });
  std::vector<CString> names{Text("IDS_QD_WRT_PROP_NO_MATERIAL")};
  int current = 0;
  // A choice is known by its text, so no two may have the same.
  const std::vector<IAppDB::Material> materials = database.ListMaterials();
  std::map<CString, int> uses{{names.front(), 1}, {Text("IDS_WB_MIXED"), 1}};
  for (const IAppDB::Material& material : materials) ++uses[material.label];
  for (const IAppDB::Material& material : materials) {
    if (same && material.itr == first) current = static_cast<int>(names.size());
    names.push_back(
        uses[material.label] < 2
            ? material.label
            : qdFormat(Text("IDS_WB_NAME_AND_ID"), {material.label, std::to_wstring(NumberOf(material.itr))}));
  }
  if (!same) {
    current = static_cast<int>(names.size());
    names.push_back(Text("IDS_WB_MIXED"));
  }
  AddGeneralPropertyWithOption(title, Text("IDS_QD_WRT_PROP_MATERIAL"), names, current, {}, kMaterial, 0);
  AddColour(title, Text("IDS_QD_WRT_Color"), pool.GetAtNU(Records().front())->colour, kColour);
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

void SelectionPage::ShowMaterials() {
  const MaterialPool& pool = m_document.GetDatabase().GetMaterialPool();
  const bool one = Records().size() == 1;
  CBCGPProp* title = AddTitle(nullptr, Text(one ? "IDS_WB_MATERIAL" : "IDS_WB_MATERIALS"));
  const auto common = [&](const auto& read) {
    return Common(Records(), [&](iterator itr) { return read(*pool.GetAtNU(itr)); });
  };
  AddText(title, Text("IDS_QD_WRT_PROP_NAME"), common([](const tagTMaterial& each) { return each.name; }), kName,
          !one);
  const auto number = [&](const char* key, Field field, Quantity quantity) {
    AddText(title, Text(key),
            common([&](const tagTMaterial& each) { return Measured(each.*NumberOfField(field), quantity); }),
            field, false);
  };
  number("IDS_WB_MATERIAL_YOUNG", kYoung, Quantity::Stress);
  number("IDS_WB_MATERIAL_POISSON", kPoisson, Quantity::Plain);
  number("IDS_WB_MATERIAL_DENSITY", kDensity, Quantity::Density);
  AddColour(title, Text("IDS_QD_WRT_Color"), pool.GetAtNU(Records().front())->colour, kColour);
}

void SelectionPage::ShowSystem(iterator itr) {
  const tagTCord& system = *m_document.GetDatabase().GetCordPool().GetAtNU(itr);
  CBCGPProp* title = AddTitle(nullptr, Text("IDS_QD_WRT_Coordinate_System"));
  AddText(title, Text("IDS_QD_WRT_PROP_NAME"), system.GetName(), 0, true);
  AddText(title, Text("IDS_WB_CORD_ORIGIN"), Point(system.origin, Quantity::Length), 0, true);
  AddText(title, Text("IDS_WB_CORD_X_AXIS"), Point(system.xAxis, Quantity::Plain), 0, true);
}

void SelectionPage::ShowCounts() {
  const auto counts = CountKinds(m_document);
  CBCGPProp* title = AddTitle(nullptr, Text("IDS_WB_SELECTED"));
  for (const Kind& kind : kKinds) {
    const auto count = counts.find(kind.type);
    if (count != counts.end()) AddText(title, Text(kind.key), std::to_wstring(count->second), 0, true);
  }
}

// ---- changes --------------------------------------------------------------------------------------------

void SelectionPage::OnPropertyChanged(CBCGPProp* row, std::uint64_t data) {
  if (CommonType() == kDataMaterial) ChangeMaterials(*row, data);
  if (CommonType() == kDataGeom) ChangeParts(*row, data);
}

void SelectionPage::ChangeParts(const CBCGPProp& row, std::uint64_t field) {
  Database& database = m_document.GetDatabase();
  iterator material = 0;
  if (field == kMaterial) {
    const auto place = static_cast<std::size_t>(std::find(row.options.begin(), row.options.end(), row.value) -
                                                row.options.begin());
    const std::vector<IAppDB::Material> materials = database.ListMaterials();
    if (place > materials.size()) return;  // that they differ is nothing to make of them
    if (place != 0) material = materials[place - 1].itr;
  }
  const std::vector<iterator> parts = Records();
  static_cast<void>(RunAct(&database, "IDS_QD_TRANS_Modify_Geometry", [&] {
    return std::all_of(parts.begin(), parts.end(), [&](iterator part) {
      tagTGeom changed = *database.GetGeomPool().GetAtNU(part);
      if (field == kColour) {
        changed.colour = row.colour;
        return database.GetGeomPool().Private_Modify(part, changed, 0, 1) != 0;
      }
      changed.material = material;
      return database.GetGeomPool().Change(part, std::move(changed)) != 0;
    });
  }));
}

void SelectionPage::ChangeMaterials(const CBCGPProp& row, std::uint64_t field) {
  Database& database = m_document.GetDatabase();
  double tagTMaterial::*const number = NumberOfField(field);
  std::optional<double> value;
  if (number != nullptr && !(value = Typed(row.value, field)).has_value()) return;
  const CString name = CutName(row.value);
  if (field == kName && IsBlank(name)) return qdMsgOutFormatWarning(Text("IDS_QD_DB_NAME_EMPTY"));
  const std::vector<iterator> materials = Records();
  static_cast<void>(RunAct(&database, "IDS_WB_TRANS_MATERIAL", [&] {
    return std::all_of(materials.begin(), materials.end(), [&](iterator itr) {
      tagTMaterial changed = *database.GetMaterialPool().GetAtNU(itr);
      if (number != nullptr) changed.*number = *value;
      if (field == kName) changed.name = name;
      if (field == kColour) changed.colour = row.colour;
      return database.GetMaterialPool().Change(itr, changed) != 0;
    });
  }));
}

}  // namespace qd::workbench
