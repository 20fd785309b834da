#include "workbench/exchange/formats/FitModel.h"

#include <algorithm>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/text/Shown.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// One bit for each number up to the greatest that is in. Numbers are to be checked before.
class NumberBits {
 public:
  void Insert(const std::vector<std::uint64_t>& numbers) {
    for (const std::uint64_t number : numbers) {
      if (number >= m_in.size()) m_in.resize(std::max(m_in.size() * 2, static_cast<std::size_t>(number) + 1));
      m_in[number] = true;
    }
  }
  bool Contains(std::uint64_t number) const { return number < m_in.size() && m_in[number]; }

 private:
  std::vector<bool> m_in;
};

std::string NameOf(int elementType) {
  const ElementType* type = FindElementType(elementType);
  return type != nullptr ? std::string(type->name) : std::to_string(elementType);
}

class Fitter {
 public:
  Fitter(const ExportModel& model, const Format& format)
      : m_model(model), m_format(format), m_greatest(format.Carry().greatestNumber) {}

  ExportModel Fit(ExportReport& report) {
    ExportModel fitted = m_model;
    for (const std::string& name : m_model.renamed) m_notes.Add("IDS_WB_EXPORT_RENAMED", name);
    for (ExportSet& set : fitted.sets) {
      if (set.mesh != nullptr) TakeElements(set);
    }
    for (ExportSet& set : fitted.sets) {
      if (set.mesh != nullptr) TakeNodes(set);
    }
    for (std::size_t set = 0; set < fitted.sets.size(); ++set) NoteSet(m_model.sets[set], fitted.sets[set]);
    if (!m_format.Carry().materials) NoteMaterials();
    if (!m_format.Carry().shapes) {
      for (const ExportedPart& part : m_model.parts) m_notes.Add("IDS_WB_EXPORT_LEFT_PARTS", ShownText(part.name));
    }
    if (m_elements == 0 && !m_refused.empty()) throw ImportError{"IDS_WB_EXPORT_ELEMENT_TYPE", m_refused};
    if (m_elements + m_nodes == 0) throw ImportError{"IDS_WB_EXPORT_NOTHING", ""};
    m_notes.PutInto(report);
    return fitted;
  }

 private:
  void CheckNumbers(const std::vector<std::uint64_t>& numbers) const {
    for (const std::uint64_t number : numbers) {
      if (number > m_greatest) throw ImportError{"IDS_WB_EXPORT_NUMBER", std::to_string(number)};
    }
  }

  /// Leaves out the elements that the format has no kind for.
  void TakeElements(ExportSet& set) {
    const bool all = std::all_of(set.mesh->blocks.begin(), set.mesh->blocks.end(),
                                 [this](const auto& block) { return m_format.Holds(block.elementType); });
    auto mesh = all ? nullptr : std::make_shared<MeshData>(*set.mesh);
    if (mesh != nullptr)
      std::erase_if(mesh->blocks, [this](const auto& block) { return !m_format.Holds(block.elementType); });
    for (const MeshData::Block& block : set.mesh->blocks) {
      const bool held = m_format.Holds(block.elementType);
      CheckNumbers(block.nodeIds);
      CheckNumbers(block.elementIds);
      (held ? m_used : m_usedOnce).Insert(block.nodeIds);
      if (held) {
        m_elements += block.elementIds.size();
        continue;
      }
      m_refused = NameOf(block.elementType);
      m_notes.Add("IDS_WB_EXPORT_LEFT_ELEMENTS",
                  set.name + ": " + m_refused + " (" + std::to_string(block.elementIds.size()) + ")");
    }
    if (mesh != nullptr) set.mesh = std::move(mesh);
  }

  /// Leaves out the nodes that only left out elements have, and free ones where the format has none.
  void TakeNodes(ExportSet& set) {
    CheckNumbers(set.mesh->nodeIds);
    const bool keepsLoose = m_format.Carry().looseNodes;
    std::size_t loose = 0;
    std::vector<bool> keep(set.mesh->nodeIds.size(), true);
    for (std::size_t place = 0; place < keep.size(); ++place) {
      const std::uint64_t node = set.mesh->nodeIds[place];
      if (m_used.Contains(node)) continue;
      const bool free = !m_usedOnce.Contains(node);
      if (free) ++loose;
      keep[place] = free && keepsLoose;
    }
    if (loose > 0) {
      m_notes.Add(keepsLoose ? "IDS_WB_EXPORT_NODES_ALONE" : "IDS_WB_EXPORT_LEFT_NODES",
                  set.name + " (" + std::to_string(loose) + ")");
    }
    m_nodes += static_cast<std::uint64_t>(std::count(keep.begin(), keep.end(), true));
    if (std::find(keep.begin(), keep.end(), false) == keep.end()) return;
    auto mesh = std::make_shared<MeshData>();
    mesh->blocks = set.mesh->blocks;
    for (std::size_t place = 0; place < keep.size(); ++place) {
      if (!keep[place]) continue;
      mesh->nodeIds.push_back(set.mesh->nodeIds[place]);
      const auto at = set.mesh->coordinates.begin() + static_cast<std::ptrdiff_t>(place) * 3;
      mesh->coordinates.insert(mesh->coordinates.end(), at, at + 3);
    }
    set.mesh = std::move(mesh);
  }

  void NoteSet(const ExportSet& given, const ExportSet& set) {
    const Carries carries = m_format.Carry();
    if (!carries.emptySets) {
      const auto isEmpty = [](const ExportSet& one) {
        return one.mesh == nullptr || ElementCountOf(*one.mesh) == 0;
      };
      if (isEmpty(given)) m_notes.Add("IDS_WB_EXPORT_LEFT_EMPTY", set.name);
      if (isEmpty(set)) return;
    }
    if (set.parent >= 0 && !carries.nestedSets) {
      const std::string& above = m_model.sets[static_cast<std::size_t>(set.parent)].name;
      m_notes.Add("IDS_WB_EXPORT_LEFT_NESTING", above + "/" + set.name);
    }
    if (!carries.names) m_notes.Add("IDS_WB_EXPORT_LEFT_NAMES", set.name);
  }

  void NoteMaterials() {
    for (const ImportedProperty& property : m_model.properties) {
      m_notes.Add("IDS_WB_EXPORT_LEFT_PROPERTIES", property.name);
    }
    for (const ImportedMaterial& material : m_model.materials) {
      m_notes.Add("IDS_WB_EXPORT_LEFT_MATERIALS", material.name);
    }
  }

  const ExportModel& m_model;
  const Format& m_format;
  std::uint64_t m_greatest;  // number of a node or an element
  ExportNotes m_notes;
  NumberBits m_used;      // nodes of elements that are written
  NumberBits m_usedOnce;  // nodes of elements that are left out
  std::string m_refused;  // a kind of element that the format does not have
  std::uint64_t m_elements = 0;
  std::uint64_t m_nodes = 0;
};

}  // namespace

ExportModel FitModel(const ExportModel& model, const Format& format, ExportReport& report) {
  return Fitter(model, format).Fit(report);
}

std::vector<ExportedPart> FitShapes(const ExportModel& model, const Format& format, ExportReport& report) {
  const Carries carries = format.Carry();
  ExportNotes notes;
  std::vector<ExportedPart> parts;
  for (const ExportedPart& part : model.parts) {
    if (part.shape == nullptr || part.shape->brep.empty()) {
      notes.Add("IDS_WB_EXPORT_LEFT_SHAPE", ShownText(part.name));
      continue;
    }
    if (!carries.names) notes.Add("IDS_WB_EXPORT_SHAPES_ALONE", ShownText(part.name));
    parts.push_back(part);
  }
  for (const ExportSet& set : model.sets) {
    const std::uint64_t elements = set.mesh != nullptr ? ElementCountOf(*set.mesh) : 0;
    notes.Add("IDS_WB_EXPORT_LEFT_MESHES", set.name + " (" + std::to_string(elements) + ")");
  }
  for (const ExportDeck& deck : model.decks)
    notes.Add("IDS_WB_EXPORT_LEFT_DECKS", ShownText(ToUtf8(deck.record.name)));
  for (const std::string& material : model.partMaterials) notes.Add("IDS_WB_EXPORT_LEFT_MATERIALS", material);
  for (const std::string& set : model.partSets) notes.Add("IDS_WB_EXPORT_LEFT_GSETS", set);
  if (parts.empty()) throw ImportError{"IDS_WB_EXPORT_NOTHING", ""};
  notes.PutInto(report);
  return parts;
}

}  // namespace qd::workbench
