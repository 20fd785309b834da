#include "workbench/exchange/formats/BdfElements.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/mesh/ElementTypes.h"

namespace qd::workbench {

namespace {

/// A line of fields, eight columns each, which goes on after eight of them.
class Card {
 public:
  Card(TextFile& file, std::string_view name) : m_file(file) {
    m_file << name << std::string(kWidth - name.size(), ' ');
  }
  Card& operator<<(std::uint64_t number) {
    constexpr std::uint64_t kGreatest = 99'999'999;
    constexpr int kFields = 8;
    if (number > kGreatest) throw ImportError{"IDS_WB_EXPORT_NUMBER", std::to_string(number)};
    if (m_fields == kFields) {
      m_file << "+\n+       ";
      m_fields = 0;
    }
    m_file.Right(number, kWidth);
    ++m_fields;
    return *this;
  }
  void End() {
    m_file << "\n";
    m_file.Step();
  }

 private:
  static constexpr std::size_t kWidth = 8;
  TextFile& m_file;
  int m_fields = 0;
};

void WriteElements(const MeshData::Block& block, std::size_t property, TextFile& file) {
  const BdfElement* entry = FindBdfElement(block.elementType);
  if (entry == nullptr) throw ImportError{"IDS_WB_EXPORT_ELEMENT_TYPE", std::to_string(block.elementType)};
  const std::vector<std::size_t> order = OrderFromWords(block.elementType, entry->order);
  for (std::size_t element = 0; element < block.elementIds.size(); ++element) {
    Card card(file, entry->name);
    card << block.elementIds[element] << property;
    for (const std::size_t node : order) card << block.nodeIds[element * order.size() + node];
    card.End();
  }
}

/// A card of wide fields, sixteen columns each, four in a line: narrow ones cut real numbers.
class WideCard {
 public:
  WideCard(TextFile& file, std::string_view name) : m_file(file) { Begin(std::string(name) + "*"); }
  WideCard& operator<<(std::uint64_t number) {
    Next();
    m_file.Right(number, kWidth);
    return *this;
  }
  /// Real numbers need a point.
  WideCard& operator<<(double number) {
    Next();
    m_file.Exponent(number, kWidth, 9);
    return *this;
  }
  WideCard& Blank() {
    Next();
    m_file << std::string(kWidth, ' ');
    return *this;
  }
  void End() { m_file << "\n"; }

 private:
  static constexpr std::size_t kWidth = 16;
  void Begin(const std::string& name) { m_file << name << std::string(8 - name.size(), ' '); }
  void Next() {
    if (m_fields == 4) {
      m_file << "*\n";
      Begin("*");
      m_fields = 0;
    }
    ++m_fields;
  }
  TextFile& m_file;
  int m_fields = 0;
};

/// Elements know their set by their property, so every set has one of its own.
void WriteProperty(const ExportModel& model, const ExportSet& set, std::size_t number, TextFile& file) {
  const ImportedProperty* property =
      set.property >= 0 ? &model.properties[static_cast<std::size_t>(set.property)] : nullptr;
  const auto material = static_cast<std::uint64_t>(property != nullptr ? property->material + 1 : 0);
  const int dimension = TopologyOf(FindElementType(set.mesh->blocks.front().elementType)->shape).dimension;
  const double size = property != nullptr ? property->size : 0;
  file << "$ " << set.name << "\n";
  constexpr const char* kNames[] = {"", "PROD", "PSHELL", "PSOLID"};
  WideCard card(file, kNames[dimension]);
  card << number << material;
  if (dimension < 3) card << size;
  card.End();
}

}  // namespace

bool BdfHolds(int elementType) {
  return FindBdfElement(elementType) != nullptr;
}

void WriteBdf(const ExportModel& model, TextFile& file, ExportReport& report) {
  const auto nodes = NodesOf(model);
  report.nodes = nodes.size();
  report.elements = CountElements(model);
  report.groups = CountFilledSets(model);
  ExportNotes notes;
  file << "BEGIN BULK\n";
  for (const auto& [node, at] : nodes) {
    WideCard card(file, "GRID");
    card << node;
    card.Blank() << at[0] << at[1] << at[2];
    card.End();
    file.Step();
  }
  for (std::size_t i = 0; i < model.sets.size(); ++i) {
    const ExportSet& set = model.sets[i];
    if (set.mesh == nullptr || set.mesh->blocks.empty()) continue;
    const bool beams = set.property >= 0 &&
                       model.properties[static_cast<std::size_t>(set.property)].kind == tagTProperty::Kind::Beam;
    if (beams) notes.Add("IDS_WB_EXPORT_BEAMS", set.name);
    WriteProperty(model, set, i + 1, file);
    for (const MeshData::Block& block : set.mesh->blocks) WriteElements(block, i + 1, file);
  }
  for (std::size_t i = 0; i < model.materials.size(); ++i) {
    const ImportedMaterial& material = model.materials[i];
    file << "$ " << material.name << "\n";
    WideCard card(file, "MAT1");
    card << std::uint64_t{i + 1} << material.youngsModulus;
    card.Blank() << material.poissonsRatio << material.density;
    card.End();
  }
  file << "ENDDATA\n";
  notes.PutInto(report);
}

}  // namespace qd::workbench
