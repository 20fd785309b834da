#include <set>

#include "workbench/exchange/formats/InpElements.h"
#include "workbench/exchange/formats/MeshWriters.h"

namespace qd::workbench {

namespace {

/// Names with blanks are put into quotation marks.
std::string Quoted(const std::string& name) {
  return name.find(' ') != std::string::npos ? '"' + name + '"' : name;
}

void WriteElements(const ExportSet& set, TextFile& file) {
  constexpr int kNumbersPerLine = 16;
  for (const MeshData::Block& block : set.mesh->blocks) {
    const std::string_view type = InpNameOf(block.elementType);
    if (type.empty()) throw ImportError{"IDS_WB_EXPORT_ELEMENT_TYPE", std::to_string(block.elementType)};
    // The order tells where in the file a record's node stands; writing needs it the other way round.
    const std::span<const int> order = InpOrderOf(block.elementType);
    const auto width = static_cast<std::size_t>(block.nodesPerElement);
    std::vector<std::size_t> nodeAt(width);
    for (std::size_t i = 0; i < width; ++i) nodeAt[order.empty() ? i : static_cast<std::size_t>(order[i])] = i;
    file << "*ELEMENT, TYPE=" << type << ", ELSET=" << Quoted(set.name) << "\n";
    for (std::size_t element = 0; element < block.elementIds.size(); ++element) {
      file << block.elementIds[element];
      int onLine = 1;
      for (const std::size_t node : nodeAt) {
        file << (onLine == kNumbersPerLine ? ",\n" : ", ");
        onLine = onLine == kNumbersPerLine ? 1 : onLine + 1;
        file << block.nodeIds[element * width + node];
      }
      file << "\n";
      file.Step();
    }
  }
}

/// Own elements of a set with others nested in it: a section must not reach those.
void WriteInternalSet(const ExportSet& set, const std::string& name, TextFile& file) {
  file << "*ELSET, ELSET=" << name << ", INTERNAL\n";
  for (const MeshData::Block& block : set.mesh->blocks) {
    for (const std::uint64_t element : block.elementIds) file << element << ",\n";
  }
}

void WriteSection(const ExportModel& model, const ImportedProperty& property, const std::string& set,
                  TextFile& file) {
  constexpr const char* kKeywords[] = {"*SOLID SECTION", "*SHELL SECTION", "*BEAM SECTION, SECTION=RECT"};
  file << kKeywords[static_cast<int>(property.kind)] << ", ELSET=" << set;
  if (property.material >= 0) {
    file << ", MATERIAL=" << Quoted(model.materials[static_cast<std::size_t>(property.material)].name);
  }
  file << "\n";
  if (property.kind == tagTProperty::Kind::Shell) file << property.size << "\n";
  // A rectangle of the same area.
  if (property.kind == tagTProperty::Kind::Beam) file << property.size << ", 1.\n";
}

}  // namespace

void WriteInp(const ExportModel& model, TextFile& file) {
  file << "*NODE\n";
  for (const auto& [node, at] : NodesOf(model)) {
    file << node << ", " << at[0] << ", " << at[1] << ", " << at[2] << "\n";
    file.Step();
  }
  for (const ExportSet& set : model.sets) {
    if (set.mesh != nullptr) WriteElements(set, file);
  }
  std::set<std::int32_t> parents;
  for (const ExportSet& set : model.sets) {
    if (set.parent < 0) continue;
    parents.insert(set.parent);
    file << "*ELSET, ELSET=" << Quoted(model.sets[static_cast<std::size_t>(set.parent)].name) << "\n"
         << Quoted(set.name) << ",\n";
  }
  for (const ExportSet& set : model.sets) {
    // Sets that hold nothing are named all the same.
    if (set.mesh == nullptr || set.mesh->blocks.empty()) file << "*ELSET, ELSET=" << Quoted(set.name) << "\n";
  }
  for (std::size_t i = 0; i < model.sets.size(); ++i) {
    const ExportSet& set = model.sets[i];
    if (set.property < 0 || set.mesh == nullptr || set.mesh->blocks.empty()) continue;
    std::string name = Quoted(set.name);
    if (parents.contains(static_cast<std::int32_t>(i))) {
      name = "_OWN" + std::to_string(i + 1);
      WriteInternalSet(set, name, file);
    }
    WriteSection(model, model.properties[static_cast<std::size_t>(set.property)], name, file);
  }
  for (const ImportedMaterial& material : model.materials) {
    file << "*MATERIAL, NAME=" << Quoted(material.name) << "\n";
    if (material.youngsModulus > 0) {
      file << "*ELASTIC\n" << material.youngsModulus << ", " << material.poissonsRatio << "\n";
    }
    if (material.density > 0) file << "*DENSITY\n" << material.density << "\n";
  }
}

}  // namespace qd::workbench
