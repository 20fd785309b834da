#include <algorithm>

#include "workbench/exchange/formats/InpElements.h"
#include "workbench/exchange/formats/InpSets.h"
#include "workbench/exchange/formats/InpText.h"
#include "workbench/exchange/formats/MeshWriters.h"

namespace qd::workbench {

namespace {

void WriteElements(const ExportSet& set, TextFile& file) {
  for (const MeshData::Block& block : set.mesh->blocks) {
    const std::string_view type = InpNameOf(block.elementType);
    if (type.empty()) throw ImportError{"IDS_WB_EXPORT_ELEMENT_TYPE", std::to_string(block.elementType)};
    file << "*ELEMENT, TYPE=" << type << "\n";
    for (std::size_t element = 0; element < block.elementIds.size(); ++element) {
      WriteInpElement(block, element, InpOrderOf(block.elementType), file);
    }
  }
}

/// Each set once, after the ones that are nested in it. It lists all its elements by number, since there are
/// readers that pass over names. Solvers count an element twice that is there by number and by name, so names
/// stand only where numbers would not tell how the sets are nested.
void WriteSets(const ExportModel& model, const InpSetTree& tree, TextFile& file) {
  std::vector<std::uint64_t> elements;
  for (const std::int32_t set : tree.ChildrenFirst()) {
    tree.ListOf(set, elements);
    std::vector<std::string> names;
    for (const std::int32_t child : tree.NamesIn(set)) {
      names.push_back(model.sets[static_cast<std::size_t>(child)].name);
    }
    WriteInpSet(model.sets[static_cast<std::size_t>(set)].name, elements, names, file);
  }
}

/// A section reaches all elements of a set with what is nested in it. Where other sections, or none, are wanted
/// for some of them, the set's own elements get a set for the section alone.
void WriteSections(const ExportModel& model, const InpSetTree& tree, TextFile& file) {
  for (const InpSetTree::Section& section : tree.Sections()) {
    const ExportSet& set = model.sets[static_cast<std::size_t>(section.set)];
    std::string name = set.name;
    if (section.ownOnly) {
      name = OwnElementsName(section.set + 1);
      WriteInpSet(name, tree.OwnElementsOf(section.set), {}, file);
    }
    WriteInpSection(model, model.properties[static_cast<std::size_t>(set.property)], name, file);
  }
}

}  // namespace

void WriteInp(const ExportModel& model, TextFile& file, ExportReport& report) {
  const auto nodes = NodesOf(model);
  report.nodes = nodes.size();
  report.elements = CountElements(model);
  report.groups = model.sets.size();
  file << "*NODE\n";
  for (const auto& [node, at] : nodes) WriteInpNode(node, at, file);
  for (const ExportSet& set : model.sets) {
    if (set.mesh != nullptr) WriteElements(set, file);
  }
  const InpSetTree tree(model);
  WriteSets(model, tree, file);
  WriteSections(model, tree, file);
  for (const ImportedMaterial& material : model.materials) WriteInpMaterial(material, file);
}

}  // namespace qd::workbench
