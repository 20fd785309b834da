#include "workbench/exchange/formats/InpFinish.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "workbench/exchange/formats/InpFlatten.h"
#include "workbench/mesh/ElementTypes.h"

namespace qd::workbench {

namespace {

class Finisher {
 public:
  Finisher(InpRead& read, const std::function<void(double)>& progress) : m_read(read), m_progress(progress) {}

  ImportedModel Work();

 private:
  using Part = InpReadPart;
  struct Piece {
    std::string name;
    std::size_t count = 0;    // parts and instances in which the set has elements
    std::string inDeck = {};  // what it is called without instances
  };
  using Pieces = std::map<std::string, Piece>;

  std::size_t PlaceOf(const Part& part, const std::string& key) const;
  void Gather(Part& part, std::size_t set);
  void CheckPart(Part& part);
  void GiveProperties(Part& part);
  static void SortNodes(InpPart& mesh);
  Pieces PiecesOfSets() const;
  static void NameSetsInDeck(InpPart& mesh, const std::string& instance, const Pieces& pieces);

  InpRead& m_read;
  const std::function<void(double)>& m_progress;
};

std::size_t Finisher::PlaceOf(const Part& part, const std::string& key) const {
  const auto found = part.mesh.setOf.find(UpperCase(key));
  if (found == part.mesh.setOf.end()) throw ImportError{"IDS_WB_IMPORT_INP_SET", m_read.lines.Quoted(key)};
  return found->second;
}

/// Gives a set what it lists through other sets, however long the way is. Those get the same first; in a circle
/// each has what it got before it was met again.
void Finisher::Gather(Part& part, std::size_t set) {
  struct Step {
    std::size_t set;
    std::vector<std::size_t> listed;
    std::size_t next = 0;
  };
  part.gathered.resize(part.mesh.sets.size(), false);
  std::vector<Step> way;
  const auto enter = [&](std::size_t place) {
    if (part.gathered[place]) return false;
    part.gathered[place] = true;
    way.push_back({place, {}});
    for (const std::string& key : std::exchange(part.children[place], {}))
      way.back().listed.push_back(PlaceOf(part, key));
    return true;
  };
  enter(set);
  while (!way.empty()) {
    Step& step = way.back();
    InpSet& to = part.mesh.sets[step.set];
    if (step.next == step.listed.size()) {
      std::sort(to.elements.begin(), to.elements.end());
      to.elements.erase(std::unique(to.elements.begin(), to.elements.end()), to.elements.end());
      way.pop_back();
      continue;
    }
    const std::size_t child = step.listed[step.next];
    if (enter(child)) continue;  // and come back to it
    ++step.next;
    if (child == step.set) continue;
    const std::vector<std::uint32_t>& more = part.mesh.sets[child].elements;
    m_read.CountListed(more.size());
    to.listed.push_back(static_cast<std::uint32_t>(child));
    to.elements.insert(to.elements.end(), more.begin(), more.end());
  }
}

void Finisher::SortNodes(InpPart& mesh) {
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
void Finisher::CheckPart(Part& part) {
  SortNodes(part.mesh);
  for (const InpPart::Element& element : part.mesh.elements) {
    const int nodes = FindElementType(element.elementType)->nodes;
    for (int i = 0; i < nodes; ++i) {
      const std::uint64_t node = part.mesh.elementNodes[element.firstNode + static_cast<std::uint64_t>(i)];
      if (!std::binary_search(part.mesh.nodeIds.begin(), part.mesh.nodeIds.end(), node)) {
        if (!m_read.generators.empty()) {
          throw ImportError{"IDS_WB_IMPORT_INP_GENERATED",
                            std::to_string(element.line) + ": " + m_read.Generators()};
        }
        throw ImportError{"IDS_WB_IMPORT_INP_NODE", std::to_string(element.line) + ": " +
                                                        std::to_string(element.id) + " - " + std::to_string(node)};
      }
    }
  }
  for (std::size_t set = 0; set < part.mesh.sets.size(); ++set) Gather(part, set);
  GiveProperties(part);
}

/// Of the sections of a set the last one counts, and of all that reach an element.
void Finisher::GiveProperties(Part& part) {
  InpPart& mesh = part.mesh;
  if (!part.sections.empty()) mesh.propertyOfElement.assign(mesh.elements.size(), -1);
  std::vector<bool> seen(mesh.sets.size(), false);
  for (auto section = part.sections.rbegin(); section != part.sections.rend(); ++section) {
    const auto found = mesh.setOf.find(UpperCase(section->set));
    if (found == mesh.setOf.end()) {
      throw ImportError{"IDS_WB_IMPORT_INP_SET", section->place + ": " + m_read.lines.Quoted(section->set)};
    }
    if (seen[found->second]) continue;
    seen[found->second] = true;
    for (const std::uint32_t element : mesh.sets[found->second].elements) {
      if (mesh.propertyOfElement[element] < 0) mesh.propertyOfElement[element] = section->property;
    }
  }
}

/// The sets of the assembly by name in upper case.
Finisher::Pieces Finisher::PiecesOfSets() const {
  Pieces pieces;
  const auto count = [&](const InpPart& mesh, bool ofAssembly) {
    for (const InpSet& set : mesh.sets) {
      if (set.ofAssembly != ofAssembly) continue;
      Piece& piece = pieces[UpperCase(set.name)];
      piece.name = set.name;
      ++piece.count;
    }
  };
  count(m_read.parts.front().mesh, false);
  for (const auto& [instance, part] : m_read.partOfInstance) count(part.mesh, true);
  for (auto& [key, piece] : pieces) {
    piece.inDeck = m_read.instances.NameOutside(
        piece.name, [&](const std::string& name) { return pieces.contains(UpperCase(name)); },
        [this](const InpInstance& instance, const std::string& name) {
          return m_read.partOfInstance.at(&instance).mesh.setOf.contains(Part::KeyOf(name, false));
        });
  }
  return pieces;
}

/// What the text calls each set once it is told without instances. A set of the assembly that has elements of
/// several instances is known by the text alone; its pieces are named after the instances.
void Finisher::NameSetsInDeck(InpPart& mesh, const std::string& instance, const Pieces& pieces) {
  for (InpSet& set : mesh.sets) {
    const bool ofAssembly = set.ofAssembly || instance.empty();
    const Piece* piece = ofAssembly ? &pieces.at(UpperCase(set.name)) : nullptr;
    const bool isPiece = piece != nullptr && piece->count > 1;
    const std::string dotted = instance.empty() ? set.name : instance + "." + set.name;
    set.inDeck = isPiece ? std::string() : ofAssembly ? piece->inDeck : dotted;
    if (isPiece) set.name = dotted;
  }
}

ImportedModel Finisher::Work() {
  Part& loose = m_read.parts.front();
  CheckPart(loose);
  m_progress(0.9);
  CheckDeckLength(m_read.text.Size(), m_read.lines.Place());
  ImportedDeck deck;
  deck.name = m_read.lines.Name();
  deck.text = m_read.text.Take();
  for (const auto& [name, place] : m_read.materialOf) {
    deck.materials.push_back({m_read.model.materials[static_cast<std::size_t>(place)].name, place});
  }
  // A part that is never placed is of no use to a solver, but its mesh is what the user wants to see.
  std::set<std::string> placed;
  for (const InpInstance& instance : m_read.instances.All()) placed.insert(UpperCase(instance.part));
  for (auto& [name, part] : m_read.partOf) {
    if (placed.contains(name)) continue;
    CheckPart(*part);
    std::string own = part->mesh.name;
    while (m_read.instances.Find(own) != nullptr) own += "-1";
    m_read.AddInstance(*part, own, false);
  }
  const Pieces pieces = PiecesOfSets();
  for (const auto& [key, piece] : pieces) {
    if (piece.count > 1) deck.sets.push_back({piece.inDeck, -1, true});
  }
  NameSetsInDeck(loose.mesh, {}, pieces);
  InpGroups groups(m_read.model, deck);
  if (!loose.mesh.nodeIds.empty() || !loose.mesh.elements.empty()) groups.Add(loose.mesh, false);
  // Numbers that are added to those of a part stay far from the end of all.
  constexpr std::uint64_t kGreatest = std::uint64_t{1} << 62U;
  std::uint64_t lastNode = loose.mesh.nodeIds.empty() ? 0 : loose.mesh.nodeIds.back();
  std::uint64_t lastElement = 0;
  for (const InpPart::Element& element : loose.mesh.elements) lastElement = std::max(lastElement, element.id);
  for (InpInstance& instance : m_read.instances.All()) {
    Part& part = m_read.partOfInstance[&instance];
    InpPart& mesh = part.mesh;
    // Nodes of its own an instance has where they are.
    const Part& copied = *m_read.partOf[UpperCase(instance.part)];
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
      throw ImportError{"IDS_WB_IMPORT_INP_NUMBER", m_read.lines.Quoted(instance.name)};
    }
    for (std::uint64_t& node : mesh.nodeIds) node += lastNode;
    for (std::uint64_t& node : mesh.elementNodes) node += lastNode;
    for (InpPart::Element& element : mesh.elements) element.id += lastElement;
    if (!mesh.nodeIds.empty()) lastNode = mesh.nodeIds.back();
    for (const InpPart::Element& element : mesh.elements) lastElement = std::max(lastElement, element.id);
    groups.Add(mesh, true);
    part = {};  // the mesh sets have all of it now
  }
  if (groups.Unsearched() > 0) {
    m_read.model.notes.push_back({"IDS_WB_NOTE_UNSEARCHED_SETS", std::to_string(groups.Unsearched())});
  }
  if (!m_read.generators.empty()) m_read.model.notes.push_back({"IDS_WB_NOTE_GENERATED", m_read.Generators()});
  if (m_read.surplus > 0) {
    m_read.model.notes.push_back(
        {"IDS_WB_NOTE_SURPLUS", std::to_string(m_read.surplus) + " (" + m_read.surplusPlace + ")"});
  }
  if (!m_read.systems.empty()) m_read.model.notes.push_back({"IDS_WB_NOTE_SYSTEM", m_read.Systems()});
  for (const std::string& kind : m_read.leftOut) m_read.model.notes.push_back({"IDS_WB_NOTE_LEFT_OUT", kind});
  if (m_read.model.meshSets.empty()) throw ImportError{"IDS_WB_IMPORT_NOTHING", ""};
  if (m_read.instances.All().empty()) {
    for (std::size_t place = 0; place < m_read.model.properties.size(); ++place) {
      deck.sections.push_back(static_cast<std::int32_t>(place));
    }
  } else {
    std::map<std::string, std::string> names;
    for (const auto& [key, piece] : pieces) names[key] = piece.inDeck;
    InpFlatDeck flat = FlattenInp(deck, m_read.instances, names);
    deck.text = std::move(flat.text);
    for (const std::size_t section : flat.sections) deck.sections.push_back(static_cast<std::int32_t>(section));
    deck.rest = -1;  // what belongs to no set is the instance's
    for (const std::string& renamed : flat.renamed)
      m_read.model.notes.push_back({"IDS_WB_NOTE_DECK_RENAMED", renamed});
    for (const std::string& keyword : flat.left) m_read.model.notes.push_back({"IDS_WB_NOTE_DECK_PARTS", keyword});
  }
  m_read.model.decks.push_back(std::move(deck));
  return std::move(m_read.model);
}

}  // namespace

ImportedModel FinishInp(InpRead& read, const std::function<void(double)>& progress) {
  return Finisher(read, progress).Work();
}

}  // namespace qd::workbench
