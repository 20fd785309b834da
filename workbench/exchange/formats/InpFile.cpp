#include "workbench/exchange/formats/InpFile.h"

#include <algorithm>
#include <array>
#include <deque>
#include <numbers>
#include <numeric>
#include <optional>
#include <set>
#include <utility>

#include "workbench/exchange/formats/InpCards.h"
#include "workbench/exchange/formats/InpDeck.h"
#include "workbench/exchange/formats/InpElements.h"
#include "workbench/exchange/formats/InpFlatten.h"
#include "workbench/exchange/formats/InpGroups.h"
#include "workbench/exchange/formats/InpInstances.h"
#include "workbench/exchange/formats/InpLines.h"
#include "workbench/exchange/formats/InpSets.h"
#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/NumberHash.h"
#include "workbench/text/Ascii.h"
#include "workbench/text/Paths.h"

namespace qd::workbench {

namespace {

/// A section, which says what the elements of a set are made of.
struct Section {
  std::string set;
  std::int32_t property;
  std::string place;  // where it was given
};

/// A part while it is read.
struct Part {
  InpPart mesh;
  NumberMap<std::uint32_t> placeOfElement;
  std::vector<std::vector<std::string>> children;  // by set: keys of sets that it lists
  std::vector<bool> gathered;                      // by set: it has the elements of all these
  std::vector<Section> sections;
  std::size_t textAt = 0;     // in the deck's text: where the part begins
  std::size_t textBytes = 0;  // and how much of it there is

  /// By what a set is known: sets that the assembly makes of elements of an instance are not those of its part.
  static std::string KeyOf(const std::string& name, bool ofAssembly) {
    return (ofAssembly ? "\n" : "") + UpperCase(name);
  }

  std::size_t NeedSet(const std::string& name, bool ofAssembly = false) {
    const auto [at, isNew] = mesh.setOf.try_emplace(KeyOf(name, ofAssembly), mesh.sets.size());
    if (isNew) {
      mesh.sets.emplace_back();
      mesh.sets.back().name = name;
      mesh.sets.back().ofAssembly = ofAssembly;
      children.emplace_back();
    }
    return at->second;
  }
};

class Reader {
 public:
  Reader(InpLines lines, const std::string& name, const std::function<void(double)>& progress)
      : m_lines(std::move(lines)), m_progress(progress) {
    m_parts.emplace_back();
    m_parts.back().mesh.name = name;
    m_part = &m_parts.back();
  }

  ImportedModel Read() {
    InpLine line;
    std::size_t count = 0;
    while (m_lines.Next(line)) {
      if (line.isKeyword) {
        EndBlock();
        Keyword(line);
        m_deckText.Keep(m_lines.TakeText());
      } else {
        if (m_data != nullptr) (this->*m_data)(line.text);
        // The mesh is kept in the sets; of a node or an element that was taken nothing is left here.
        const bool isMesh = m_data == &Reader::NodeData || m_data == &Reader::ElementData;
        if (!isMesh) m_deckText.Keep(m_lines.TakeText());
      }
      constexpr std::size_t kStep = 1U << 16U;
      if (++count % kStep == 0) m_progress(m_lines.Done() * 0.8);
    }
    EndBlock();
    m_deckText.Keep(m_lines.TakeText());
    if (!m_open.empty()) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
    return Finish();
  }

 private:
  using Data = void (Reader::*)(std::string_view);
  struct Piece {
    std::string name;
    std::size_t count = 0;    // parts and instances in which the set has elements
    std::string inDeck = {};  // what it is called without instances
  };
  using Pieces = std::map<std::string, Piece>;
  void Keyword(const InpLine& line);
  std::string Generators() const;
  void BeginElements(const InpLine& line);
  void BeginSet(const InpLine& line);
  void BeginSection(const InpLine& line, tagTProperty::Kind kind);
  void BeginInstance(const InpLine& line);
  void AddInstance(const Part& part, const std::string& name, bool placed);
  void EndBlock();

  void NodeData(std::string_view text);
  void ElementData(std::string_view text);
  void SetData(std::string_view text);
  void SectionData(std::string_view text);
  void InstanceData(std::string_view text);
  void ElasticData(std::string_view text);
  void DensityData(std::string_view text);

  void CountListed(std::uint64_t elements);
  void CountCopied(const Part& part);
  std::size_t NeedSet(Part& part);
  void AddToSet(Part& part, std::size_t set, std::int64_t element);
  void ListName(const std::string& name);
  void Generate(std::int64_t first, std::int64_t last, std::int64_t step);
  void StoreElement();
  std::int32_t MaterialOf(const std::string& name);
  const std::vector<std::uint32_t>& ElementsOf(Part& part, const std::string& name, int depth);
  void CheckPart(Part& part);
  void GiveProperties(Part& part);
  void SortNodes(InpPart& mesh);
  Pieces PiecesOfSets() const;
  static void NameSetsInDeck(InpPart& mesh, const std::string& instance, const Pieces& pieces);
  ImportedModel Finish();

  InpLines m_lines;
  const std::function<void(double)> m_progress;
  ImportedModel m_model;
  std::deque<Part> m_parts;  // the first holds what stands in no part
  InpInstances m_instances;
  InpInstance* m_instance = nullptr;  // the last one
  std::map<const InpInstance*, Part> m_partOfInstance;
  std::map<std::string, Part*> m_partOf;
  std::map<std::string, std::int32_t> m_materialOf;
  Part* m_part = nullptr;
  std::vector<std::string> m_open;  // blocks that need an end
  Data m_data = nullptr;
  std::vector<std::string_view> m_fields;

  const InpElement* m_element = nullptr;
  std::optional<std::size_t> m_elementSet;
  bool m_isNetwork = false;
  std::map<std::string, std::size_t> m_generators;  // keywords that make nodes and elements, which are not read
  std::set<std::string> m_leftOut;                  // kinds of elements of which some are not read
  std::set<std::int64_t> m_skipped;                 // the numbers of these elements
  std::vector<std::int64_t> m_numbers;              // of an element that goes on over several lines
  std::string m_setName;
  std::optional<std::size_t> m_set;  // its place in m_setPart, once it is there
  bool m_internal = false;
  bool m_ofAssembly = false;  // the set is
  Part* m_setPart = nullptr;  // whose elements it lists by number
  bool m_generate = false;
  std::uint64_t m_listed = 0;     // elements that sets get from runs of numbers and from other sets
  std::uint64_t m_copied = 0;     // what instances have of their parts
  std::size_t m_copiedBytes = 0;  // of the deck's text, likewise
  std::size_t m_surplus = 0;      // lines with more entries than their element takes
  std::string m_surplusPlace;     // of the first
  int m_dataLine = 0;
  std::string m_beamShape;
  bool m_composite = false;
  std::int32_t m_currentMaterial = -1;
  InpDeckText m_deckText;
};

// ---- keywords -------------------------------------------------------------------------------------------

void Reader::Keyword(const InpLine& line) {
  m_data = nullptr;
  m_dataLine = 0;
  const std::string& keyword = line.keyword;
  if (keyword == "NODE") {
    m_data = &Reader::NodeData;
  } else if (keyword == "ELEMENT") {
    BeginElements(line);
  } else if (keyword == "ELSET") {
    BeginSet(line);
  } else if (keyword == "SOLID SECTION" || keyword == "MEMBRANE SECTION") {
    BeginSection(line, keyword == "SOLID SECTION" ? tagTProperty::Kind::Solid : tagTProperty::Kind::Shell);
  } else if (keyword == "SHELL SECTION" || keyword == "SHELL GENERAL SECTION") {
    BeginSection(line, tagTProperty::Kind::Shell);
  } else if (keyword == "BEAM SECTION" || keyword == "BEAM GENERAL SECTION") {
    BeginSection(line, tagTProperty::Kind::Beam);
    m_beamShape = UpperCase(line.Parameter("SECTION"));
  } else if (keyword == "MATERIAL") {
    m_currentMaterial = MaterialOf(line.Parameter("NAME"));
  } else if (keyword == "ELASTIC") {
    m_data = &Reader::ElasticData;
  } else if (keyword == "DENSITY") {
    m_data = &Reader::DensityData;
  } else if (keyword == "PART") {
    m_open.emplace_back("PART");
    m_parts.emplace_back();
    m_part = &m_parts.back();
    m_part->mesh.name = line.Parameter("NAME");
    m_part->textAt = m_deckText.Size();
    if (m_part->mesh.name.empty()) m_lines.Fail("IDS_WB_IMPORT_INP_SET", line.text);
    if (!m_partOf.emplace(UpperCase(m_part->mesh.name), m_part).second) {
      m_lines.Fail("IDS_WB_IMPORT_INP_TWICE", m_part->mesh.name);
    }
  } else if (keyword == "INSTANCE") {
    BeginInstance(line);
  } else if (keyword == "ASSEMBLY") {
    m_open.push_back(keyword);
  } else if (keyword == "END PART" || keyword == "END INSTANCE" || keyword == "END ASSEMBLY") {
    // Solvers do not insist on the ends of steps, which hold no mesh.
    const std::string block = keyword.substr(4);
    if (m_open.empty() || m_open.back() != block) m_lines.Fail("IDS_WB_IMPORT_INP_END", line.text);
    m_open.pop_back();
    if (block == "PART") m_part->textBytes = m_deckText.Size() - m_part->textAt;
    if (block == "PART" || block == "INSTANCE") m_part = &m_parts.front();
  } else if (IsInpGenerator(keyword)) {
    ++m_generators[keyword];
  }
}

/// Nothing, or the keywords by which the deck makes nodes and elements.
std::string Reader::Generators() const {
  std::string all;
  for (const auto& [keyword, count] : m_generators) {
    all += (all.empty() ? "*" : ", *") + keyword + " (" + std::to_string(count) + ")";
  }
  return all;
}

void Reader::BeginElements(const InpLine& line) {
  const std::string type = UpperCase(line.Parameter("TYPE"));
  m_element = FindInpElement(type);
  if (m_element == nullptr) m_lines.Fail("IDS_WB_IMPORT_INP_TYPE", type.empty() ? line.text : type);
  m_isNetwork = type == "D";
  m_elementSet.reset();
  if (line.Has("ELSET")) m_elementSet = m_part->NeedSet(line.Parameter("ELSET"));
  m_data = &Reader::ElementData;
}

void Reader::BeginSet(const InpLine& line) {
  const std::string name = line.Parameter("ELSET");
  if (name.empty()) m_lines.Fail("IDS_WB_IMPORT_INP_SET", line.text);
  m_setPart = m_part;
  m_ofAssembly = false;
  if (line.Has("INSTANCE")) {
    const InpInstance* instance = m_instances.Find(line.Parameter("INSTANCE"));
    if (instance == nullptr) m_lines.Fail("IDS_WB_IMPORT_INP_SET", line.text);
    m_setPart = &m_partOfInstance[instance];
    m_ofAssembly = true;
  }
  m_setName = name;
  m_internal = line.Has("INTERNAL") || IsOwnElementsName(name);
  // What an assembly lists shows only where its instances are told.
  m_set.reset();
  if (m_ofAssembly || m_part != &m_parts.front() || m_instances.All().empty()) m_set = NeedSet(*m_setPart);
  m_generate = line.Has("GENERATE");
  m_data = &Reader::SetData;
}

void Reader::BeginSection(const InpLine& line, tagTProperty::Kind kind) {
  ImportedProperty property;
  property.name = line.Parameter("ELSET");
  property.kind = kind;
  if (line.Has("MATERIAL")) property.material = MaterialOf(line.Parameter("MATERIAL"));
  m_part->sections.push_back(
      {line.Parameter("ELSET"), static_cast<std::int32_t>(m_model.properties.size()), m_lines.Place()});
  m_model.properties.push_back(std::move(property));
  m_beamShape.clear();
  m_composite = line.Has("COMPOSITE");
  m_data = &Reader::SectionData;
}

void Reader::BeginInstance(const InpLine& line) {
  const auto part = m_partOf.find(UpperCase(line.Parameter("PART")));
  if (part == m_partOf.end() || line.Parameter("NAME").empty()) m_lines.Fail("IDS_WB_IMPORT_INP_SET", line.text);
  m_open.emplace_back("INSTANCE");
  AddInstance(*part->second, line.Parameter("NAME"), true);
  m_data = &Reader::InstanceData;
}

/// What stands once in the file stands once more in the model, so a short deck can ask for anything.
void Reader::CountCopied(const Part& part) {
  constexpr std::uint64_t kMost = 100'000'000;
  const InpPart& mesh = part.mesh;
  m_copied += mesh.nodeIds.size() + mesh.elements.size() + mesh.elementNodes.size() + part.sections.size() +
              mesh.sets.size();
  for (const InpSet& set : mesh.sets) m_copied += set.elements.size();
  if (m_copied > kMost) throw ImportError{"IDS_WB_IMPORT_INP_TOO_MUCH", m_lines.Place()};
  m_copiedBytes += part.textBytes;
  CheckDeckLength(m_copiedBytes, m_lines.Place());
}

void Reader::AddInstance(const Part& part, const std::string& name, bool placed) {
  CountCopied(part);
  if (!m_instances.Add({name, part.mesh.name, placed}))
    throw ImportError{"IDS_WB_IMPORT_INP_TWICE", m_lines.Quoted(name)};
  m_instance = &m_instances.All().back();
  m_part = &(m_partOfInstance[m_instance] = part);
}

std::int32_t Reader::MaterialOf(const std::string& name) {
  const auto [at, isNew] =
      m_materialOf.try_emplace(UpperCase(name), static_cast<std::int32_t>(m_model.materials.size()));
  if (isNew) m_model.materials.push_back({name});
  return at->second;
}

// ---- data -----------------------------------------------------------------------------------------------

void Reader::NodeData(std::string_view text) {
  InpLines::Fields(text, m_fields);
  const std::int64_t id = m_lines.Integer(m_fields[0]);
  if (id <= 0) m_lines.Fail("IDS_WB_IMPORT_INP_NUMBER", m_fields[0]);
  m_part->mesh.nodeIds.push_back(static_cast<std::uint64_t>(id));
  m_deckText.Number(static_cast<std::uint64_t>(id), m_lines.TakeText());
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    const bool given = axis < m_fields.size() && !m_fields[axis].empty();
    m_part->mesh.coordinates.push_back(given ? m_lines.Number(m_fields[axis]) : 0);
  }
}

void Reader::ElementData(std::string_view text) {
  InpLines::Fields(text, m_fields);
  const auto wanted = static_cast<std::size_t>(m_element->nodes) + 1;
  const bool begins = m_numbers.empty();
  std::size_t taken = 0;
  while (taken < m_fields.size() && m_numbers.size() < wanted)
    m_numbers.push_back(m_lines.Integer(m_fields[taken++]));
  if (m_numbers.size() < wanted && text.back() == ',') return;  // goes on in the next line
  if (m_numbers.size() != wanted) m_lines.Fail("IDS_WB_IMPORT_INP_COUNT", text);
  if (taken < m_fields.size()) {
    // Solvers pass over what stands behind the last node. Where an element needs one line, more on its second one
    // is the next element, and the first one is short.
    constexpr std::size_t kNumbersPerLine = 16;
    if (!begins && wanted <= kNumbersPerLine) m_lines.Fail("IDS_WB_IMPORT_INP_COUNT", text);
    if (m_surplus++ == 0) m_surplusPlace = m_lines.Place();
  }
  StoreElement();
}

void Reader::StoreElement() {
  InpPart& mesh = m_part->mesh;
  // The ends of networks have no node.
  if (m_isNetwork && std::find(m_numbers.begin(), m_numbers.end(), 0) != m_numbers.end()) {
    m_leftOut.insert("D");
    m_skipped.insert(m_numbers.front());
    m_deckText.Literal(m_lines.TakeText());
    m_numbers.clear();
    return;
  }
  if (std::any_of(m_numbers.begin(), m_numbers.end(), [](std::int64_t number) { return number <= 0; })) {
    m_lines.Fail("IDS_WB_IMPORT_INP_NUMBER", std::to_string(m_numbers.front()));
  }
  const auto id = static_cast<std::uint64_t>(m_numbers[0]);
  const auto place = static_cast<std::uint32_t>(mesh.elements.size());
  if (!m_part->placeOfElement.emplace(id, place).second) {
    m_lines.Fail("IDS_WB_IMPORT_INP_TWICE", std::to_string(id));
  }
  mesh.elements.push_back(
      {id, m_element->elementType, static_cast<std::uint32_t>(m_lines.LineNumber()), mesh.elementNodes.size()});
  for (int node = 0; node < m_element->nodes; ++node) {
    const int from = m_element->order.empty() ? node : m_element->order[static_cast<std::size_t>(node)];
    mesh.elementNodes.push_back(static_cast<std::uint64_t>(m_numbers[static_cast<std::size_t>(from) + 1]));
  }
  if (m_elementSet) mesh.sets[*m_elementSet].elements.push_back(place);
  m_deckText.Number(id, m_lines.TakeText());
  m_numbers.clear();
}

void Reader::EndBlock() {
  if (!m_numbers.empty()) m_lines.Fail("IDS_WB_IMPORT_INP_COUNT", std::to_string(m_numbers.front()));
}

/// The set at hand in a part.
std::size_t Reader::NeedSet(Part& part) {
  if (&part == m_setPart && m_set) return *m_set;
  const std::size_t set = part.NeedSet(m_setName, m_ofAssembly || &part != m_setPart);
  part.mesh.sets[set].internal = m_internal;
  if (&part == m_setPart) m_set = set;
  return set;
}

void Reader::AddToSet(Part& part, std::size_t set, std::int64_t element) {
  const auto found = part.placeOfElement.find(static_cast<std::uint64_t>(element));
  if (found != part.placeOfElement.end()) {
    part.mesh.sets[set].elements.push_back(found->second);
  } else if (!m_skipped.contains(element)) {
    if (!m_generators.empty())
      throw ImportError{"IDS_WB_IMPORT_INP_GENERATED", m_lines.Place() + ": " + Generators()};
    m_lines.Fail("IDS_WB_IMPORT_INP_ELEMENT", std::to_string(element));
  }
}

/// A set lists another one by name. An assembly speaks of what is in an instance, and of its own sets, which stand
/// with the instances whose elements they have.
void Reader::ListName(const std::string& name) {
  const bool inAssembly = !m_ofAssembly && m_part == &m_parts.front();
  if (const auto [instance, rest] = m_instances.Split(name); inAssembly && instance != nullptr) {
    Part& part = m_partOfInstance[instance];
    const std::size_t set = NeedSet(part);
    if (InpNumberOf(rest)) {
      AddToSet(part, set, m_lines.Integer(rest));
    } else {
      part.children[set].emplace_back(rest);
    }
    return;
  }
  bool found = false;
  for (auto& [instance, part] : m_partOfInstance) {
    const std::string key = Part::KeyOf(name, true);
    if (!inAssembly || !part.mesh.setOf.contains(key)) continue;
    part.children[NeedSet(part)].push_back(key);
    found = true;
  }
  if (!found) m_setPart->children[NeedSet(*m_setPart)].push_back(name);
}

void Reader::SetData(std::string_view text) {
  InpLines::Fields(text, m_fields);
  if (m_generate) {
    if (m_fields.size() < 2) m_lines.Fail("IDS_WB_IMPORT_INP_COUNT", text);
    const std::int64_t first = m_lines.Integer(m_fields[0]);
    const std::int64_t last = m_lines.Integer(m_fields[1]);
    const std::int64_t step = m_fields.size() > 2 && !m_fields[2].empty() ? m_lines.Integer(m_fields[2]) : 1;
    if (step <= 0 || first <= 0) m_lines.Fail("IDS_WB_IMPORT_INP_NUMBER", text);
    if (first <= last) Generate(first, last, step);
    return;
  }
  for (const std::string_view field : m_fields) {
    if (field.empty()) continue;
    if (field.front() >= '0' && field.front() <= '9') {
      AddToSet(*m_setPart, NeedSet(*m_setPart), m_lines.Integer(field));
    } else {
      const bool quoted = field.size() >= 2 && field.front() == '"' && field.back() == '"';
      ListName(std::string(quoted ? field.substr(1, field.size() - 2) : field));
    }
  }
}

/// A few bytes of a deck can ask for all elements again and again.
void Reader::CountListed(std::uint64_t elements) {
  constexpr std::uint64_t kMost = 250'000'000;
  m_listed += elements;
  if (m_listed > kMost) throw ImportError{"IDS_WB_IMPORT_INP_TOO_MUCH", m_lines.Place()};
}

/// Adds every `step`th element from the first to the last; what is not there is passed over. The limits may be any
/// numbers, so the shorter way is taken: through the numbers or through the elements.
void Reader::Generate(std::int64_t first, std::int64_t last, std::int64_t step) {
  const auto& places = m_setPart->placeOfElement;
  std::vector<std::uint32_t>& elements = m_setPart->mesh.sets[NeedSet(*m_setPart)].elements;
  const std::uint64_t count = static_cast<std::uint64_t>(last - first) / static_cast<std::uint64_t>(step) + 1;
  CountListed(std::min<std::uint64_t>(count, places.size()));
  if (count <= places.size()) {
    for (std::uint64_t i = 0; i < count; ++i) {
      const auto found = places.find(static_cast<std::uint64_t>(first) + i * static_cast<std::uint64_t>(step));
      if (found != places.end()) elements.push_back(found->second);
    }
    return;
  }
  for (const auto& [id, place] : places) {
    if (id < static_cast<std::uint64_t>(first) || id > static_cast<std::uint64_t>(last)) continue;
    if ((id - static_cast<std::uint64_t>(first)) % static_cast<std::uint64_t>(step) == 0)
      elements.push_back(place);
  }
}

void Reader::SectionData(std::string_view text) {
  InpLines::Fields(text, m_fields);
  ImportedProperty& property = m_model.properties.back();
  if (m_composite) {  // a line for each layer: thickness, points, material
    property.size += m_lines.Number(m_fields[0]);
    if (property.material < 0 && m_fields.size() > 2) property.material = MaterialOf(std::string(m_fields[2]));
    return;
  }
  if (m_dataLine++ > 0) return;
  std::vector<double> numbers;
  for (const std::string_view field : m_fields) {
    if (!field.empty()) numbers.push_back(m_lines.Number(field));
  }
  if (numbers.empty()) return;
  const auto ring = [](double outer, double inner) { return std::numbers::pi * (outer * outer - inner * inner); };
  if (property.kind != tagTProperty::Kind::Beam || m_beamShape.empty()) {
    property.size = numbers[0];  // thickness; the area of trusses
  } else if (m_beamShape == "RECT" && numbers.size() >= 2) {
    property.size = numbers[0] * numbers[1];
  } else if (m_beamShape == "CIRC") {
    property.size = ring(numbers[0], 0);
  } else if (m_beamShape == "PIPE" && numbers.size() >= 2) {
    property.size = ring(numbers[0], numbers[0] - numbers[1]);
  } else if (m_beamShape == "GENERAL") {
    property.size = numbers[0];
  }
}

/// A shift, then perhaps an axis by two points with an angle in degrees about it.
void Reader::InstanceData(std::string_view text) {
  InpLines::Fields(text, m_fields);
  std::array<double, 7> n{};
  for (std::size_t i = 0; i < std::min(n.size(), m_fields.size()); ++i) {
    n[i] = m_fields[i].empty() ? 0 : m_lines.Number(m_fields[i]);
  }
  if (m_dataLine++ == 0) {
    m_instance->placement.shift = {n[0], n[1], n[2]};
  } else if (!m_instance->placement.TurnAbout({n[0], n[1], n[2]}, {n[3], n[4], n[5]}, n[6])) {
    m_lines.Fail("IDS_WB_IMPORT_INP_NUMBER", text);
  }
}

void Reader::ElasticData(std::string_view text) {
  if (m_currentMaterial < 0 || m_dataLine++ > 0) return;  // values for other temperatures follow
  InpLines::Fields(text, m_fields);
  ImportedMaterial& material = m_model.materials[static_cast<std::size_t>(m_currentMaterial)];
  material.youngsModulus = m_lines.Number(m_fields[0]);
  if (m_fields.size() > 1 && !m_fields[1].empty()) material.poissonsRatio = m_lines.Number(m_fields[1]);
}

void Reader::DensityData(std::string_view text) {
  if (m_currentMaterial < 0 || m_dataLine++ > 0) return;
  InpLines::Fields(text, m_fields);
  m_model.materials[static_cast<std::size_t>(m_currentMaterial)].density = m_lines.Number(m_fields[0]);
}

// ---- the end --------------------------------------------------------------------------------------------

/// The elements that a set lists itself or through other sets.
const std::vector<std::uint32_t>& Reader::ElementsOf(Part& part, const std::string& name, int depth) {
  constexpr int kDeepest = 64;
  const auto found = part.mesh.setOf.find(UpperCase(name));
  if (found == part.mesh.setOf.end() || depth > kDeepest)
    throw ImportError{"IDS_WB_IMPORT_INP_SET", m_lines.Quoted(name)};
  const std::size_t place = found->second;
  std::vector<std::uint32_t>& elements = part.mesh.sets[place].elements;
  part.gathered.resize(part.mesh.sets.size(), false);
  if (part.gathered[place]) return elements;
  // Sets that list each other in a circle find here that their lists are taken.
  for (const std::string& child : std::exchange(part.children[place], {})) {
    const std::vector<std::uint32_t>& more = ElementsOf(part, child, depth + 1);
    if (&more == &elements) continue;
    CountListed(more.size());
    part.mesh.sets[place].listed.push_back(static_cast<std::uint32_t>(part.mesh.setOf.at(UpperCase(child))));
    elements.insert(elements.end(), more.begin(), more.end());
  }
  std::sort(elements.begin(), elements.end());
  elements.erase(std::unique(elements.begin(), elements.end()), elements.end());
  part.gathered[place] = true;
  return elements;
}

void Reader::SortNodes(InpPart& mesh) {
  std::vector<std::size_t> order(mesh.nodeIds.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (!std::is_sorted(mesh.nodeIds.begin(), mesh.nodeIds.end())) {
    std::stable_sort(order.begin(), order.end(),
                     [&mesh](std::size_t a, std::size_t b) { return mesh.nodeIds[a] < mesh.nodeIds[b]; });
    std::vector<std::uint64_t> ids;
    std::vector<double> coordinates;
    for (const std::size_t place : order) {
      ids.push_back(mesh.nodeIds[place]);
      const auto at = mesh.coordinates.begin() + static_cast<std::ptrdiff_t>(place) * 3;
      coordinates.insert(coordinates.end(), at, at + 3);
    }
    mesh.nodeIds = std::move(ids);
    mesh.coordinates = std::move(coordinates);
  }
  const auto twice = std::adjacent_find(mesh.nodeIds.begin(), mesh.nodeIds.end());
  if (twice != mesh.nodeIds.end()) throw ImportError{"IDS_WB_IMPORT_INP_TWICE", std::to_string(*twice)};
}

/// Brings a part's nodes into order and finds what its elements, sets and sections refer to.
void Reader::CheckPart(Part& part) {
  SortNodes(part.mesh);
  for (const InpPart::Element& element : part.mesh.elements) {
    const int nodes = FindElementType(element.elementType)->nodes;
    for (int i = 0; i < nodes; ++i) {
      const std::uint64_t node = part.mesh.elementNodes[element.firstNode + static_cast<std::uint64_t>(i)];
      if (!std::binary_search(part.mesh.nodeIds.begin(), part.mesh.nodeIds.end(), node)) {
        if (!m_generators.empty()) {
          throw ImportError{"IDS_WB_IMPORT_INP_GENERATED", std::to_string(element.line) + ": " + Generators()};
        }
        throw ImportError{"IDS_WB_IMPORT_INP_NODE", std::to_string(element.line) + ": " +
                                                        std::to_string(element.id) + " - " + std::to_string(node)};
      }
    }
  }
  for (std::size_t set = 0; set < part.mesh.sets.size(); ++set) {
    ElementsOf(part, Part::KeyOf(part.mesh.sets[set].name, part.mesh.sets[set].ofAssembly), 0);
  }
  GiveProperties(part);
}

/// Of the sections of a set the last one counts, and of all that reach an element.
void Reader::GiveProperties(Part& part) {
  InpPart& mesh = part.mesh;
  if (!part.sections.empty()) mesh.propertyOfElement.assign(mesh.elements.size(), -1);
  std::vector<bool> seen(mesh.sets.size(), false);
  for (auto section = part.sections.rbegin(); section != part.sections.rend(); ++section) {
    const auto found = mesh.setOf.find(UpperCase(section->set));
    if (found == mesh.setOf.end()) {
      throw ImportError{"IDS_WB_IMPORT_INP_SET", section->place + ": " + m_lines.Quoted(section->set)};
    }
    if (seen[found->second]) continue;
    seen[found->second] = true;
    for (const std::uint32_t element : mesh.sets[found->second].elements) {
      if (mesh.propertyOfElement[element] < 0) mesh.propertyOfElement[element] = section->property;
    }
  }
}

/// The sets of the assembly by name in upper case.
Reader::Pieces Reader::PiecesOfSets() const {
  Pieces pieces;
  const auto count = [&](const InpPart& mesh, bool ofAssembly) {
    for (const InpSet& set : mesh.sets) {
      if (set.ofAssembly != ofAssembly) continue;
      Piece& piece = pieces[UpperCase(set.name)];
      piece.name = set.name;
      ++piece.count;
    }
  };
  count(m_parts.front().mesh, false);
  for (const auto& [instance, part] : m_partOfInstance) count(part.mesh, true);
  for (auto& [key, piece] : pieces) {
    piece.inDeck = m_instances.NameOutside(
        piece.name, [&](const std::string& name) { return pieces.contains(UpperCase(name)); },
        [this](const InpInstance& instance, const std::string& name) {
          return m_partOfInstance.at(&instance).mesh.setOf.contains(Part::KeyOf(name, false));
        });
  }
  return pieces;
}

/// What the text calls each set once it is told without instances. A set of the assembly that has elements of
/// several instances is known by the text alone; its pieces are named after the instances.
void Reader::NameSetsInDeck(InpPart& mesh, const std::string& instance, const Pieces& pieces) {
  for (InpSet& set : mesh.sets) {
    const bool ofAssembly = set.ofAssembly || instance.empty();
    const Piece* piece = ofAssembly ? &pieces.at(UpperCase(set.name)) : nullptr;
    const bool isPiece = piece != nullptr && piece->count > 1;
    const std::string dotted = instance.empty() ? set.name : instance + "." + set.name;
    set.inDeck = isPiece ? std::string() : ofAssembly ? piece->inDeck : dotted;
    if (isPiece) set.name = dotted;
  }
}

ImportedModel Reader::Finish() {
  Part& loose = m_parts.front();
  CheckPart(loose);
  m_progress(0.9);
  CheckDeckLength(m_deckText.Size(), m_lines.Place());
  ImportedDeck deck;
  deck.name = m_lines.Name();
  deck.text = m_deckText.Take();
  for (const auto& [name, place] : m_materialOf) {
    deck.materials.push_back({m_model.materials[static_cast<std::size_t>(place)].name, place});
  }
  // A part that is never placed is of no use to a solver, but its mesh is what the user wants to see.
  std::set<std::string> placed;
  for (const InpInstance& instance : m_instances.All()) placed.insert(UpperCase(instance.part));
  for (auto& [name, part] : m_partOf) {
    if (placed.contains(name)) continue;
    CheckPart(*part);
    std::string own = part->mesh.name;
    while (m_instances.Find(own) != nullptr) own += "-1";
    AddInstance(*part, own, false);
  }
  const Pieces pieces = PiecesOfSets();
  for (const auto& [key, piece] : pieces) {
    if (piece.count > 1) deck.sets.push_back({piece.inDeck, -1, true});
  }
  NameSetsInDeck(loose.mesh, {}, pieces);
  InpGroups groups(m_model, deck);
  if (!loose.mesh.nodeIds.empty() || !loose.mesh.elements.empty()) groups.Add(loose.mesh, false);
  // Numbers that are added to those of a part stay far from the end of all.
  constexpr std::uint64_t kGreatest = std::uint64_t{1} << 62U;
  std::uint64_t lastNode = loose.mesh.nodeIds.empty() ? 0 : loose.mesh.nodeIds.back();
  std::uint64_t lastElement = 0;
  for (const InpPart::Element& element : loose.mesh.elements) lastElement = std::max(lastElement, element.id);
  for (InpInstance& instance : m_instances.All()) {
    Part& part = m_partOfInstance[&instance];
    InpPart& mesh = part.mesh;
    // Nodes of its own an instance has where they are.
    const Part& copied = *m_partOf[UpperCase(instance.part)];
    const std::size_t nodes = copied.mesh.coordinates.size();
    for (std::size_t i = 0; i + 2 < nodes && instance.placement.Moves(); i += 3) {
      const InpPlacement::Point at{mesh.coordinates[i], mesh.coordinates[i + 1], mesh.coordinates[i + 2]};
      const InpPlacement::Point moved = instance.placement.Move(at);
      std::copy(moved.begin(), moved.end(), mesh.coordinates.begin() + static_cast<std::ptrdiff_t>(i));
    }
    CheckPart(part);
    NameSetsInDeck(mesh, instance.name, pieces);
    mesh.name = instance.name;
    // Instances of one part have the same numbers.
    instance.nodes = lastNode;
    instance.elements = lastElement;
    if (std::max(lastNode, lastElement) > kGreatest) {
      throw ImportError{"IDS_WB_IMPORT_INP_NUMBER", m_lines.Quoted(instance.name)};
    }
    for (std::uint64_t& node : mesh.nodeIds) node += lastNode;
    for (std::uint64_t& node : mesh.elementNodes) node += lastNode;
    for (InpPart::Element& element : mesh.elements) element.id += lastElement;
    if (!mesh.nodeIds.empty()) lastNode = mesh.nodeIds.back();
    for (const InpPart::Element& element : mesh.elements) lastElement = std::max(lastElement, element.id);
    groups.Add(mesh, true);
  }
  if (groups.Unsearched() > 0) {
    m_model.notes.push_back({"IDS_WB_NOTE_UNSEARCHED_SETS", std::to_string(groups.Unsearched())});
  }
  if (!m_generators.empty()) m_model.notes.push_back({"IDS_WB_NOTE_GENERATED", Generators()});
  if (m_surplus > 0) {
    m_model.notes.push_back({"IDS_WB_NOTE_SURPLUS", std::to_string(m_surplus) + " (" + m_surplusPlace + ")"});
  }
  for (const std::string& kind : m_leftOut) m_model.notes.push_back({"IDS_WB_NOTE_LEFT_OUT", kind});
  if (m_model.meshSets.empty()) throw ImportError{"IDS_WB_IMPORT_NOTHING", ""};
  if (m_instances.All().empty()) {
    for (std::size_t place = 0; place < m_model.properties.size(); ++place) {
      deck.sections.push_back(static_cast<std::int32_t>(place));
    }
  } else {
    std::map<std::string, std::string> names;
    for (const auto& [key, piece] : pieces) names[key] = piece.inDeck;
    InpFlatDeck flat = FlattenInp(deck, m_instances, names);
    deck.text = std::move(flat.text);
    for (const std::size_t section : flat.sections) deck.sections.push_back(static_cast<std::int32_t>(section));
    deck.rest = -1;  // what belongs to no set is the instance's
    for (const std::string& renamed : flat.renamed) m_model.notes.push_back({"IDS_WB_NOTE_DECK_RENAMED", renamed});
    for (const std::string& keyword : flat.left) m_model.notes.push_back({"IDS_WB_NOTE_DECK_PARTS", keyword});
  }
  m_model.decks.push_back(std::move(deck));
  return std::move(m_model);
}

}  // namespace

ImportedModel ReadInpFile(const std::filesystem::path& path, const std::function<void(double)>& progress,
                          const std::vector<std::filesystem::path>& folders) {
  return Reader(InpLines(path, folders), PathText(path.stem()), progress).Read();
}

ImportedModel ReadInpText(std::string text, const std::string& name) {
  return Reader(InpLines(PathOf(name), std::move(text)), name, [](double) {}).Read();
}

}  // namespace qd::workbench
