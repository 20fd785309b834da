#include "workbench/exchange/formats/InpDeckProperties.h"

#include <algorithm>

#include "workbench/exchange/formats/InpLines.h"
#include "workbench/exchange/formats/InpText.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

/// Puts another value in place of a field of a line.
std::string WithField(std::string_view line, std::size_t place, const std::string& value) {
  std::vector<std::string_view> fields;
  InpLines::Fields(line, fields);
  std::string text;
  for (std::size_t i = 0; i < std::max(fields.size(), place + 1); ++i) {
    if (i > 0) text += ", ";
    text += i == place ? value : i < fields.size() ? std::string(fields[i]) : std::string();
  }
  return text;
}

}  // namespace

void InpDeckProperties::FitSection(InpFittedDeck& deck, const InpCard& card, InpFitted& fitted) {
  const std::size_t section = deck.sections++;
  if (section >= deck.kept->properties.size()) return;
  const std::int32_t place = deck.kept->properties[section];
  const auto set = deck.setOf.find(UpperCase(card.Value("ELSET")));
  if (place >= 0 && set != deck.setOf.end()) {
    for (const std::size_t element : ElementsOf(m_mesh, deck, set->second)) m_propertyOf[element] = place;
  }
  if (fitted.loss.IsAny()) return;
  if (place < 0) {
    fitted.loss = {"the property of this section was deleted", card.Value("ELSET")};
    return;
  }
  const ImportedProperty& property = m_mesh.Model().properties[static_cast<std::size_t>(place)];
  const tagTDeck::Section& came = deck.kept->record.sections[section];
  if (property.material != deck.kept->sectionMaterials[section]) FitMaterial(deck, card, property, fitted);
  if (fitted.loss.IsAny()) return;
  if (property.size == came.size) return;
  const bool isThickness = card.keyword == "SHELLSECTION" || card.keyword == "MEMBRANESECTION" ||
                           card.keyword == "SHELLGENERALSECTION" || card.keyword == "SOLIDSECTION";
  const auto line = std::find_if(fitted.lines.begin(), fitted.lines.end(),
                                 [](const InpFitted::Line& known) { return !IsComment(known.text); });
  if (!isThickness || card.Has("COMPOSITE") || line == fitted.lines.end()) {
    m_notes.Add("IDS_WB_EXPORT_DECK_VALUE", card.Value("ELSET"));
    m_file << "** QD: the size that was entered in the property of " << card.Value("ELSET")
           << " does not fit this section, which is as it came\n";
    return;
  }
  line->text = WithField(line->text, 0, InpDigits(property.size));
}

void InpDeckProperties::FitMaterial(const InpFittedDeck& deck, const InpCard& card,
                                    const ImportedProperty& property, InpFitted& fitted) const {
  const auto parameter = std::find_if(card.parameters.begin(), card.parameters.end(),
                                      [](const auto& known) { return known.name == "MATERIAL"; });
  const std::string name = property.material >= 0
                               ? m_mesh.Model().materials[static_cast<std::size_t>(property.material)].name
                               : std::string();
  if (name.empty() || parameter == card.parameters.end() || card.Has("COMPOSITE")) {
    fitted.loss = {"the material of its property has changed in a way that this section cannot tell",
                   card.Value("ELSET")};
    return;
  }
  InpCard other = card;
  other.header.replace(parameter->at, parameter->length, QuotedInpName(name));
  const std::size_t longer = other.header.size() - card.header.size();
  for (InpCard::Parameter& known : other.parameters) {
    if (known.at > parameter->at) known.at += longer;
    if (known.name == "MATERIAL") known.length = 0;  // it is called as it should be
  }
  fitted.header = Fit(other, deck.fit).header;
}

void InpDeckProperties::FitValues(const InpFittedDeck& deck, const InpCard& card, InpFitted& fitted) {
  if (card.keyword == "MATERIAL") {
    m_material = kNone;
    const auto& materials = deck.kept->record.materials;
    for (std::size_t i = 0; i < materials.size(); ++i) {
      if (UpperCase(materials[i].name) == UpperCase(card.Value("NAME"))) m_material = static_cast<std::int32_t>(i);
    }
    return;
  }
  if (m_material < 0) return;
  const tagTDeck::Material& came = deck.kept->record.materials[static_cast<std::size_t>(m_material)];
  const std::int32_t place = deck.kept->materials[static_cast<std::size_t>(m_material)];
  if (place < 0) return;
  const ImportedMaterial& is = m_mesh.Model().materials[static_cast<std::size_t>(place)];
  const bool isElastic = card.keyword == "ELASTIC";
  const bool same = isElastic ? is.youngsModulus == came.youngsModulus && is.poissonsRatio == came.poissonsRatio
                              : is.density == came.density;
  if (same) return;
  std::vector<InpFitted::Line*> data;
  for (InpFitted::Line& line : fitted.lines) {
    if (!IsComment(line.text)) data.push_back(&line);
  }
  const std::string type = UpperCase(card.Value("TYPE"));
  if (data.size() != 1 || !(type.empty() || type == "ISO" || type == "ISOTROPIC")) {
    m_file << "** QD: the values that were entered for this material do not fit this card, which is as it came\n";
    m_notes.Add("IDS_WB_EXPORT_DECK_VALUE", is.name);
    return;
  }
  data.front()->text = WithField(data.front()->text, 0, InpDigits(isElastic ? is.youngsModulus : is.density));
  if (isElastic) data.front()->text = WithField(data.front()->text, 1, InpDigits(is.poissonsRatio));
}

std::vector<std::uint64_t> InpDeckProperties::ElementsWithAnother(std::size_t set) const {
  const ExportSet& written = m_mesh.Model().sets[set];
  std::vector<std::uint64_t> elements;
  if (written.mesh == nullptr || written.property < 0) return elements;
  for (const MeshData::Block& block : written.mesh->blocks) {
    for (const std::uint64_t id : block.elementIds) {
      if (m_propertyOf[m_mesh.Range(id, id).first] != written.property) elements.push_back(id);
    }
  }
  return elements;
}

}  // namespace qd::workbench
