#include "qd_wrt/find/QueryWords.h"

#include <algorithm>

#include "platform/text/Folding.h"
#include "qd_wrt/find/ColourNames.h"
#include "qd_wrt/find/IRow.h"
#include "qd_wrt/find/TitleKey.h"

namespace qd {
namespace {

using find::KeyOf;

struct TypeName {
  const wchar_t* english;
  const char* message;
  std::uint32_t kind;
};
constexpr TypeName kTypes[]{{L"part", "IDS_QD_WRT_FIND_PART", kRowPart},
                            {L"solid", "IDS_QD_WRT_GEOMSET_SOLID", kRowSolid},
                            {L"surface", "IDS_QD_WRT_GEOMSET_SURFACE", kRowSurface},
                            {L"curve", "IDS_QD_WRT_GEOMSET_CURVE", kRowCurve},
                            {L"point", "IDS_QD_WRT_GEOMSET_POINT", kRowPoint},
                            {L"set", "IDS_QD_WRT_FIND_SET", kRowSet},
                            {L"mesh", "IDS_QD_WRT_MESH", kRowMesh},
                            {L"material", "IDS_QD_WRT_PROP_MATERIAL", kRowMaterial},
                            {L"coordinate", "IDS_QD_WRT_FIND_COORDINATE", kRowCoordinate}};

struct FieldName {
  const wchar_t* name;
  QueryWords::Value value;
  std::size_t number;
};
constexpr FieldName kFields[]{{L"id", QueryWords::Value::Ids, 0},
                              {L"type", QueryWords::Value::Type, 0},
                              {L"colour", QueryWords::Value::Colour, 0},
                              {L"material", QueryWords::Value::Text, kMaterialField},
                              {L"set", QueryWords::Value::Text, kSetField},
                              {L"shown", QueryWords::Value::Shown, 0},
                              {L"hidden", QueryWords::Value::Hidden, 0},
                              {L"selected", QueryWords::Value::Selected, 0},
                              {L"in", QueryWords::Value::In, 0}};

/// Some names are also titles, which begin with a capital; a query has them all alike.
QueryWords::Name NameOf(const wchar_t* english, const CString& text, std::uint32_t bit) {
  CString shown = InSmallLetters(text);
  std::string shownKey = KeyOf(shown);
  return {english, std::move(shown), KeyOf(english), std::move(shownKey), bit};
}

}  // namespace

QueryWords::QueryWords(TextOf textOf, const IRowFields* fields) {
  for (const TypeName& type : kTypes) m_types.push_back(NameOf(type.english, textOf(type.message), type.kind));
  for (std::size_t i = 0; i < find::kColourNames.size(); ++i) {
    const find::ColourName& colour = find::kColourNames[i];
    m_colours.push_back(NameOf(colour.english, textOf(colour.message), 1U << i));
  }
  for (const FieldName& field : kFields)
    m_fields.push_back({field.name, KeyOf(field.name), field.value, field.number});
  if (fields != nullptr) AddHostFields(*fields);
}

void QueryWords::AddHostFields(const IRowFields& fields) {
  const TArray<IRowFields::Field> offered = fields.GetFields();
  for (std::size_t number = 0; number < offered.size(); ++number) {
    std::string key = KeyOf(offered[number].name);
    const Value value = offered[number].isNumber ? Value::Number : Value::Text;
    const auto known =
        std::find_if(m_fields.begin(), m_fields.end(), [&](const Field& own) { return own.key == key; });
    if (known == m_fields.end()) {
      m_fields.push_back({offered[number].name, std::move(key), value, number});
    } else if (known->value == Value::Text && known->number >= kSetField) {
      known->value = value;
      known->number = number;
    }
  }
}

const QueryWords::Field* QueryWords::FindField(std::wstring_view name) const {
  std::string key = KeyOf(name);
  if (key == "color") key = "colour";
  const auto field =
      std::find_if(m_fields.begin(), m_fields.end(), [&](const Field& own) { return own.key == key; });
  return field == m_fields.end() ? nullptr : &*field;
}

std::uint32_t QueryWords::BitsOf(const TArray<Name>& names, std::wstring_view text) {
  const std::string key = KeyOf(text);
  std::uint32_t same = 0;
  std::uint32_t longer = 0;
  for (const Name& name : names) {
    if (key == name.englishKey || key == name.shownKey) same |= name.bit;
    if (name.englishKey.starts_with(key) || name.shownKey.starts_with(key)) longer |= name.bit;
  }
  return same != 0 ? same : longer;
}

}  // namespace qd
