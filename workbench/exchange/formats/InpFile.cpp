#include "workbench/exchange/formats/InpFile.h"

#include <algorithm>
#include <array>
#include <numbers>
#include <optional>
#include <set>
#include <utility>

#include "workbench/exchange/formats/InpCards.h"
#include "workbench/exchange/formats/InpElements.h"
#include "workbench/exchange/formats/InpFinish.h"
#include "workbench/exchange/formats/InpSets.h"
#include "workbench/text/Ascii.h"
#include "workbench/text/Paths.h"

namespace qd::workbench {

namespace {

class Reader {
 public:
  Reader(InpLines lines, const std::string& name, const std::function<void(double)>& progress)
      : m_read(std::move(lines), name), m_progress(progress) {
    m_part = &m_read.parts.front();
  }

  ImportedModel Read() {
    InpLine line;
    std::size_t count = 0;
    while (m_lines.Next(line)) {
      if (line.isKeyword) {
        EndBlock();
        Keyword(line);
        m_read.text.Keep(m_lines.TakeText());
      } else {
        if (m_data != nullptr) (this->*m_data)(line.text);
        // The mesh is kept in the sets; of a node or an element that was taken nothing is left here.
        const bool isMesh = m_data == &Reader::NodeData || m_data == &Reader::ElementData;
        if (!isMesh) m_read.text.Keep(m_lines.TakeText());
      }
      // Included files may be named many times, so it is asked before all of them have been put together.
      if (m_read.text.IsTooLong()) CheckDeckLength(m_read.text.Size(), m_lines.Place());
      constexpr std::size_t kStep = 1U << 16U;
      if (++count % kStep == 0) m_progress(m_lines.Done() * 0.8);
    }
    EndBlock();
    m_read.text.Keep(m_lines.TakeText());
    if (!m_open.empty()) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
    return FinishInp(m_read, m_progress);
  }

 private:
  using Part = InpReadPart;
  using Data = void (Reader::*)(std::string_view);
  void Keyword(const InpLine& line);
  void NoteSystem(const InpLine& line);
  void BeginElements(const InpLine& line);
  void BeginSet(const InpLine& line);
  void BeginSection(const InpLine& line, tagTProperty::Kind kind);
  void BeginInstance(const InpLine& line);
  void EndBlock();

  void NodeData(std::string_view text);
  void ElementData(std::string_view text);
  void SetData(std::string_view text);
  void SectionData(std::string_view text);
  void InstanceData(std::string_view text);
  void ElasticData(std::string_view text);
  void DensityData(std::string_view text);

  std::size_t NeedSet(Part& part);
  void AddToSet(Part& part, std::size_t set, std::int64_t element);
  void ListName(const std::string& name);
  void Generate(std::int64_t first, std::int64_t last, std::int64_t step);
  void StoreElement();
  std::int32_t MaterialOf(const std::string& name);

  InpRead m_read;
  InpLines& m_lines = m_read.lines;
  const std::function<void(double)> m_progress;
  InpInstance* m_instance = nullptr;  // the last one
  Part* m_part = nullptr;
  std::vector<std::string> m_open;  // blocks that need an end
  Data m_data = nullptr;
  std::vector<std::string_view> m_fields;

  const InpElement* m_element = nullptr;
  std::optional<std::size_t> m_elementSet;
  bool m_isNetwork = false;
  std::set<std::int64_t> m_skipped;     // numbers of elements that are left out
  std::vector<std::int64_t> m_numbers;  // of an element that goes on over several lines
  std::string m_setName;
  std::optional<std::size_t> m_set;  // its place in m_setPart, once it is there
  bool m_internal = false;
  bool m_ofAssembly = false;                                 // the set is
  Part* m_setPart = nullptr;                                 // whose elements it lists by number
  std::map<std::string, std::vector<Part*>> m_ofAssemblyIn;  // sets of the assembly, by name in upper case
  bool m_generate = false;
  int m_dataLine = 0;
  std::string m_beamShape;
  bool m_composite = false;
  std::int32_t m_currentMaterial = -1;
};

// ---- keywords -------------------------------------------------------------------------------------------

void Reader::Keyword(const InpLine& line) {
  m_data = nullptr;
  m_dataLine = 0;
  const std::string& keyword = line.keyword;
  if (keyword == "PART" || keyword == "INSTANCE" || keyword == "ASSEMBLY") {
    // Their cards are told apart by the ends of these blocks.
    const bool isInside = !m_open.empty() && m_open.back() != "ASSEMBLY";
    if (isInside) m_lines.Fail("IDS_WB_IMPORT_INP_END", line.text);
  }
  const bool isMesh = keyword == "NODE" || keyword == "ELEMENT" || keyword == "ELSET";
  if (isMesh && line.Has("INPUT")) m_lines.Fail("IDS_WB_IMPORT_INP_INPUT", line.text);
  if (keyword == "NODE") {
    m_data = &Reader::NodeData;
    NoteSystem(line);
  } else if (keyword == "SYSTEM") {
    ++m_read.systems["*SYSTEM"];
  } else if (keyword == "ELEMENT") {
    BeginElements(line);
  } else if (keyword == "ELSET") {
    BeginSet(line);
  } else if (keyword == "SOLIDSECTION" || keyword == "MEMBRANESECTION") {
    BeginSection(line, keyword == "SOLIDSECTION" ? tagTProperty::Kind::Solid : tagTProperty::Kind::Shell);
  } else if (keyword == "SHELLSECTION" || keyword == "SHELLGENERALSECTION") {
    BeginSection(line, tagTProperty::Kind::Shell);
  } else if (keyword == "BEAMSECTION" || keyword == "BEAMGENERALSECTION") {
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
    m_read.parts.emplace_back();
    m_part = &m_read.parts.back();
    m_part->mesh.name = line.Parameter("NAME");
    m_part->textAt = m_read.text.Size();
    if (m_part->mesh.name.empty()) m_lines.Fail("IDS_WB_IMPORT_INP_SET", line.text);
    if (!m_read.partOf.emplace(UpperCase(m_part->mesh.name), m_part).second) {
      m_lines.Fail("IDS_WB_IMPORT_INP_TWICE", m_part->mesh.name);
    }
  } else if (keyword == "INSTANCE") {
    BeginInstance(line);
  } else if (keyword == "ASSEMBLY") {
    m_open.push_back(keyword);
  } else if (keyword == "ENDPART" || keyword == "ENDINSTANCE" || keyword == "ENDASSEMBLY") {
    // Solvers do not insist on the ends of steps, which hold no mesh.
    const std::string block = keyword.substr(std::string_view("END").size());
    if (m_open.empty() || m_open.back() != block) m_lines.Fail("IDS_WB_IMPORT_INP_END", line.text);
    m_open.pop_back();
    if (block == "PART") m_part->textBytes = m_read.text.Size() - m_part->textAt;
    if (block == "PART" || block == "INSTANCE") m_part = &m_read.parts.front();
  } else if (IsInpGenerator(keyword)) {
    ++m_read.generators["*" + keyword];
  }
}

/// Solvers turn what stands in polar coordinates; here it is shown as it stands.
void Reader::NoteSystem(const InpLine& line) {
  if (!line.Has("SYSTEM")) return;
  const std::string system = UpperCase(line.Parameter("SYSTEM"));
  if (system == "R") return;
  const bool isKnown = system == "C" || system == "S";
  ++m_read.systems["*NODE, SYSTEM" + (isKnown ? "=" + system : std::string())];
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
    const InpInstance* instance = m_read.instances.Find(line.Parameter("INSTANCE"));
    if (instance == nullptr) m_lines.Fail("IDS_WB_IMPORT_INP_SET", line.text);
    m_setPart = &m_read.partOfInstance[instance];
    m_ofAssembly = true;
  }
  m_setName = name;
  m_internal = line.Has("INTERNAL") || IsOwnElementsName(name);
  // What an assembly lists shows only where its instances are told.
  m_set.reset();
  if (m_ofAssembly || m_part != &m_read.parts.front() || m_read.instances.All().empty())
    m_set = NeedSet(*m_setPart);
  m_generate = line.Has("GENERATE");
  m_data = &Reader::SetData;
}

void Reader::BeginSection(const InpLine& line, tagTProperty::Kind kind) {
  ImportedProperty property;
  property.name = line.Parameter("ELSET");
  property.kind = kind;
  if (line.Has("MATERIAL")) property.material = MaterialOf(line.Parameter("MATERIAL"));
  m_part->sections.push_back(
      {line.Parameter("ELSET"), static_cast<std::int32_t>(m_read.model.properties.size()), m_lines.Place()});
  m_read.model.properties.push_back(std::move(property));
  m_beamShape.clear();
  m_composite = line.Has("COMPOSITE");
  m_data = &Reader::SectionData;
}

void Reader::BeginInstance(const InpLine& line) {
  const auto part = m_read.partOf.find(UpperCase(line.Parameter("PART")));
  if (part == m_read.partOf.end() || line.Parameter("NAME").empty())
    m_lines.Fail("IDS_WB_IMPORT_INP_SET", line.text);
  m_open.emplace_back("INSTANCE");
  m_part = &m_read.AddInstance(*part->second, line.Parameter("NAME"), true);
  m_instance = &m_read.instances.All().back();
  m_data = &Reader::InstanceData;
}

std::int32_t Reader::MaterialOf(const std::string& name) {
  const auto [at, isNew] =
      m_read.materialOf.try_emplace(UpperCase(name), static_cast<std::int32_t>(m_read.model.materials.size()));
  if (isNew) m_read.model.materials.push_back({name});
  return at->second;
}

// ---- data -----------------------------------------------------------------------------------------------

void Reader::NodeData(std::string_view text) {
  InpLines::Fields(text, m_fields);
  const std::int64_t id = m_lines.Integer(m_fields[0]);
  if (id <= 0) m_lines.Fail("IDS_WB_IMPORT_INP_NUMBER", m_fields[0]);
  m_part->mesh.nodeIds.push_back(static_cast<std::uint64_t>(id));
  m_read.text.Number(static_cast<std::uint64_t>(id), m_lines.TakeText());
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
    if (m_read.surplus++ == 0) m_read.surplusPlace = m_lines.Place();
  }
  StoreElement();
}

void Reader::StoreElement() {
  InpPart& mesh = m_part->mesh;
  // The ends of networks have no node.
  if (m_isNetwork && std::find(m_numbers.begin(), m_numbers.end(), 0) != m_numbers.end()) {
    m_read.leftOut.insert("D");
    m_skipped.insert(m_numbers.front());
    m_read.text.Literal(m_lines.TakeText());
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
  m_read.text.Number(id, m_lines.TakeText());
  m_numbers.clear();
}

void Reader::EndBlock() {
  if (!m_numbers.empty()) m_lines.Fail("IDS_WB_IMPORT_INP_COUNT", std::to_string(m_numbers.front()));
}

/// The set at hand in a part.
std::size_t Reader::NeedSet(Part& part) {
  if (&part == m_setPart && m_set) return *m_set;
  const bool ofAssembly = m_ofAssembly || &part != m_setPart;
  const std::size_t before = part.mesh.sets.size();
  const std::size_t set = part.NeedSet(m_setName, ofAssembly);
  if (ofAssembly && part.mesh.sets.size() > before) m_ofAssemblyIn[UpperCase(m_setName)].push_back(&part);
  part.mesh.sets[set].internal = m_internal;
  if (&part == m_setPart) m_set = set;
  return set;
}

void Reader::AddToSet(Part& part, std::size_t set, std::int64_t element) {
  const auto found = part.placeOfElement.find(static_cast<std::uint64_t>(element));
  if (found != part.placeOfElement.end()) {
    part.mesh.sets[set].elements.push_back(found->second);
  } else if (!m_skipped.contains(element)) {
    if (!m_read.generators.empty())
      throw ImportError{"IDS_WB_IMPORT_INP_GENERATED", m_lines.Place() + ": " + m_read.Generators()};
    m_lines.Fail("IDS_WB_IMPORT_INP_ELEMENT", std::to_string(element));
  }
}

/// A set lists another one by name. An assembly speaks of what is in an instance, and of its own sets, which stand
/// with the instances whose elements they have.
void Reader::ListName(const std::string& name) {
  const bool inAssembly = !m_ofAssembly && m_part == &m_read.parts.front();
  if (const auto [instance, rest] = m_read.instances.Split(name); inAssembly && instance != nullptr) {
    Part& part = m_read.partOfInstance[instance];
    const std::size_t set = NeedSet(part);
    if (InpNumberOf(rest)) {
      AddToSet(part, set, m_lines.Integer(rest));
    } else {
      part.children[set].emplace_back(rest);
    }
    return;
  }
  const auto known = inAssembly ? m_ofAssemblyIn.find(UpperCase(name)) : m_ofAssemblyIn.end();
  if (known == m_ofAssemblyIn.end()) {
    m_setPart->children[NeedSet(*m_setPart)].push_back(name);
    return;
  }
  // A copy, since a set may list itself and be new in one of them.
  const std::vector<Part*> all = known->second;
  const std::string key = Part::KeyOf(name, true);
  m_read.CountNames(all.size(), key.size());
  for (Part* part : all) part->children[NeedSet(*part)].push_back(key);
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

/// Adds every `step`th element from the first to the last; what is not there is passed over. The limits may be any
/// numbers, so the shorter way is taken: through the numbers or through the elements.
void Reader::Generate(std::int64_t first, std::int64_t last, std::int64_t step) {
  const auto& places = m_setPart->placeOfElement;
  std::vector<std::uint32_t>& elements = m_setPart->mesh.sets[NeedSet(*m_setPart)].elements;
  const std::uint64_t count = static_cast<std::uint64_t>(last - first) / static_cast<std::uint64_t>(step) + 1;
  m_read.CountListed(std::min<std::uint64_t>(count, places.size()));
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
  ImportedProperty& property = m_read.model.properties.back();
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
  ImportedMaterial& material = m_read.model.materials[static_cast<std::size_t>(m_currentMaterial)];
  material.youngsModulus = m_lines.Number(m_fields[0]);
  if (m_fields.size() > 1 && !m_fields[1].empty()) material.poissonsRatio = m_lines.Number(m_fields[1]);
}

void Reader::DensityData(std::string_view text) {
  if (m_currentMaterial < 0 || m_dataLine++ > 0) return;
  InpLines::Fields(text, m_fields);
  m_read.model.materials[static_cast<std::size_t>(m_currentMaterial)].density = m_lines.Number(m_fields[0]);
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
