#include <algorithm>

#include "workbench/exchange/formats/InpCards.h"
#include "workbench/exchange/formats/InpElements.h"
#include "workbench/exchange/formats/InpSets.h"
#include "workbench/exchange/formats/MeshWriters.h"

namespace qd::workbench {

namespace {

/// Solvers look at this many characters of a number.
constexpr std::size_t kNumberWidth = 20;
constexpr int kNumbersPerLine = 16;

void WriteNumbers(const std::vector<std::uint64_t>& numbers, TextFile& file) {
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const bool lineEnds = (i + 1) % kNumbersPerLine == 0 || i + 1 == numbers.size();
    file << numbers[i] << (lineEnds ? ",\n" : ",");
  }
}

void WriteElements(const ExportSet& set, TextFile& file) {
  for (const MeshData::Block& block : set.mesh->blocks) {
    const std::string_view type = InpNameOf(block.elementType);
    if (type.empty()) throw ImportError{"IDS_WB_EXPORT_ELEMENT_TYPE", std::to_string(block.elementType)};
    // The order tells where in the file a record's node stands; writing needs it the other way round.
    const std::span<const int> order = InpOrderOf(block.elementType);
    const auto width = static_cast<std::size_t>(block.nodesPerElement);
    std::vector<std::size_t> nodeAt(width);
    for (std::size_t i = 0; i < width; ++i) nodeAt[order.empty() ? i : static_cast<std::size_t>(order[i])] = i;
    file << "*ELEMENT, TYPE=" << type << "\n";
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

/// Each set once, after the ones that are nested in it. It lists all its elements by number, since there are
/// readers that pass over names. Solvers count an element twice that is there by number and by name, so names
/// stand only where numbers would not tell how the sets are nested.
void WriteSets(const ExportModel& model, const InpSetTree& tree, TextFile& file) {
  std::vector<std::uint64_t> elements;
  for (const std::int32_t set : tree.ChildrenFirst()) {
    file << "*ELSET, ELSET=" << QuotedInpName(model.sets[static_cast<std::size_t>(set)].name) << "\n";
    tree.ListOf(set, elements);
    WriteNumbers(elements, file);
    for (const std::int32_t child : tree.NamesIn(set)) {
      file << QuotedInpName(model.sets[static_cast<std::size_t>(child)].name) << ",\n";
    }
  }
}

void WriteSection(const ExportModel& model, const ImportedProperty& property, const std::string& set,
                  TextFile& file) {
  constexpr const char* kKeywords[] = {"*SOLID SECTION", "*SHELL SECTION", "*BEAM SECTION, SECTION=RECT"};
  file << kKeywords[static_cast<int>(property.kind)] << ", ELSET=" << set;
  if (property.material >= 0) {
    file << ", MATERIAL=" << QuotedInpName(model.materials[static_cast<std::size_t>(property.material)].name);
  }
  file << "\n";
  if (property.kind == tagTProperty::Kind::Shell) file.Short(property.size, kNumberWidth) << "\n";
  // A rectangle of the same area.
  if (property.kind == tagTProperty::Kind::Beam) file.Short(property.size, kNumberWidth) << ", 1.\n";
}

/// A section reaches all elements of a set with what is nested in it. Where other sections, or none, are wanted
/// for some of them, the set's own elements get a set for the section alone.
void WriteSections(const ExportModel& model, const InpSetTree& tree, TextFile& file) {
  for (const InpSetTree::Section& section : tree.Sections()) {
    const ExportSet& set = model.sets[static_cast<std::size_t>(section.set)];
    std::string name = QuotedInpName(set.name);
    if (section.ownOnly) {
      name = OwnElementsName(section.set + 1);
      file << "*ELSET, ELSET=" << name << "\n";
      std::vector<std::uint64_t> own = tree.OwnElementsOf(section.set);
      WriteNumbers(own, file);
    }
    WriteSection(model, model.properties[static_cast<std::size_t>(set.property)], name, file);
  }
}

void WriteMaterials(const ExportModel& model, TextFile& file) {
  for (const ImportedMaterial& material : model.materials) {
    file << "*MATERIAL, NAME=" << QuotedInpName(material.name) << "\n";
    if (material.youngsModulus > 0) {
      file << "*ELASTIC\n";
      file.Short(material.youngsModulus, kNumberWidth) << ", ";
      file.Short(material.poissonsRatio, kNumberWidth) << "\n";
    }
    if (material.density > 0) {
      file << "*DENSITY\n";
      file.Short(material.density, kNumberWidth) << "\n";
    }
  }
}

}  // namespace

void WriteInp(const ExportModel& model, TextFile& file, ExportReport& report) {
  const auto nodes = NodesOf(model);
  report.nodes = nodes.size();
  report.elements = CountElements(model);
  report.groups = model.sets.size();
  file << "*NODE\n";
  for (const auto& [node, at] : nodes) {
    file << node;
    for (int axis = 0; axis < 3; ++axis) (file << ", ").Short(at[axis], kNumberWidth);
    file << "\n";
    file.Step();
  }
  for (const ExportSet& set : model.sets) {
    if (set.mesh != nullptr) WriteElements(set, file);
  }
  const InpSetTree tree(model);
  WriteSets(model, tree, file);
  WriteSections(model, tree, file);
  WriteMaterials(model, file);
}

}  // namespace qd::workbench
