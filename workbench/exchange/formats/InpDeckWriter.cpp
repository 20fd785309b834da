// A solver input file whose mesh comes from the document and whose other cards are kept decks.

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "workbench/exchange/formats/InpCards.h"
#include "workbench/exchange/formats/InpElements.h"
#include "workbench/exchange/formats/InpLines.h"
#include "workbench/exchange/formats/InpSets.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/mesh/ElementMark.h"
#include "workbench/text/Ascii.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// Numbers "first,last,step" of a place for nodes or elements.
struct Run {
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  std::uint64_t step = 1;
};

/// Nothing for what is no run.
std::optional<Run> RunOf(std::string_view line) {
  std::vector<std::string_view> fields;
  InpLines::Fields(line, fields);
  Run run;
  std::uint64_t* const to[] = {&run.first, &run.last, &run.step};
  if (fields.empty() || fields.size() > 3) return std::nullopt;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const auto number = InpNumberOf(fields[i]);
    if (!number) return std::nullopt;
    *to[i] = *number;
  }
  if (fields.size() == 1) run.last = run.first;
  const bool sound = run.step > 0 && run.first <= run.last && run.last < (std::uint64_t{1} << 62U);
  return sound ? std::optional(run) : std::nullopt;
}

/// Where an element stands among what is written.
struct Place {
  std::uint64_t id;
  std::uint32_t set;
  std::uint32_t block;
  std::uint64_t index;
};

/// What an element set of a deck lists itself.
struct Listed {
  std::vector<Run> runs;  // numbers as written now
  std::vector<std::string> names;
};

enum class SetState : std::uint8_t { Text, Numbers, Lost };

/// A kept deck on its way into a file.
struct Deck {
  const ExportDeck* kept = nullptr;
  std::vector<InpCard> cards;
  InpFit fit;
  std::vector<SetState> states;                        // beside the deck's sets
  std::unordered_map<std::string, std::size_t> setOf;  // by name in upper case
  std::vector<Listed> listed;                          // beside the deck's sets
  std::vector<std::uint64_t> literals;                 // elements that no mesh set holds, as written now
  std::size_t firstMesh = 0;                           // card
  std::size_t firstStep = 0;                           // card
  std::size_t sections = 0;                            // written so far
  std::map<std::string, bool, std::less<>> lostAbove;  // keyword: whether the last such card was lost
  std::set<std::pair<InpName, std::string>> defined;   // names in upper case
};

/// What a card gives a name to; elements sets and materials, which stand in the tree, are not told here.
std::pair<InpName, std::string> DefinedBy(const InpCard& card) {
  if (card.keyword == "NSET" || card.keyword == "NODE") return {InpName::NodeSet, card.Value("NSET")};
  const InpName kind = InpNameOfParameter(card, "NAME");
  if (kind == InpName::Other || kind == InpName::Material) return {InpName::Other, {}};
  return {kind, card.Value("NAME")};
}

class DeckWriter {
 public:
  DeckWriter(const ExportModel& model, TextFile& file) : m_model(model), m_file(file), m_nodes(NodesOf(model)) {
    for (std::uint32_t set = 0; set < model.sets.size(); ++set) {
      if (model.sets[set].mesh == nullptr) continue;
      const auto& blocks = model.sets[set].mesh->blocks;
      for (std::uint32_t block = 0; block < blocks.size(); ++block) {
        for (std::uint64_t i = 0; i < blocks[block].elementIds.size(); ++i) {
          m_places.push_back({blocks[block].elementIds[i], set, block, i});
        }
      }
    }
    std::sort(m_places.begin(), m_places.end(), [](const Place& a, const Place& b) { return a.id < b.id; });
    m_written.assign(m_places.size(), false);
    m_propertyOf.assign(m_places.size(), -1);
    m_children.resize(model.sets.size());
    m_marks.resize(model.sets.size());
    for (std::size_t set = model.sets.size(); set-- > 0;) {
      if (model.sets[set].mesh != nullptr) m_marks[set] += MarkOf(*model.sets[set].mesh);
      const std::int32_t parent = model.sets[set].parent;
      if (parent < 0) continue;
      m_marks[static_cast<std::size_t>(parent)] += m_marks[set];
      m_children[static_cast<std::size_t>(parent)].push_back(static_cast<std::uint32_t>(set));
    }
  }

  void Write(ExportReport& report) {
    for (const ExportDeck& kept : m_model.decks) Take(kept);
    if (m_decks.empty()) {
      WriteInp(m_model, m_file, report);
      return m_notes.PutInto(report);
    }
    WriteMesh();
    WriteSets();
    for (Deck& deck : m_decks) {
      for (std::size_t i = deck.firstMesh; i < deck.firstStep; ++i) WriteOther(deck, deck.cards[i]);
    }
    WriteOwnSections();
    WriteOwnMaterials();
    WriteSteps();
    report.nodes = m_nodes.size();
    report.elements = m_places.size();
    report.groups = m_groups;
    m_notes.PutInto(report);
  }

 private:
  // What is kept, and how it fits.
  void Take(const ExportDeck& kept);
  bool ReadNumbers(Deck& deck);
  void TakeNames(Deck& deck);
  void ReadLists(Deck& deck);
  void FitSets(Deck& deck);
  void FitMaterials(Deck& deck);
  std::vector<std::size_t> ElementsOf(const Deck& deck, std::size_t set,
                                      std::vector<std::uint64_t>* literals) const;
  void AddSubtree(std::uint32_t set, std::vector<std::size_t>& elements) const;

  // Writing.
  void WriteMesh();
  void WriteNodeCard(Deck& deck, const InpCard& card);
  void WriteNode(std::uint64_t number, const double* at);
  void WriteElementCard(Deck& deck, const InpCard& card);
  void WriteElement(const Place& place, const std::string& type);
  void WriteNewElements();
  void WriteSets();
  void WriteSet(const std::string& name, const std::vector<std::uint64_t>& numbers,
                const std::vector<std::string>& names);
  void WriteOther(Deck& deck, const InpCard& card);
  void WriteFitted(Deck& deck, const InpCard& card, InpFitted fitted);
  void FitSection(Deck& deck, const InpCard& card, InpFitted& fitted);
  void FitValues(Deck& deck, const InpCard& card, InpFitted& fitted);
  void WriteOwnSections();
  void WriteOwnMaterials();
  void WriteSteps();
  void WriteComments(const InpCard& card);
  void Comment(const InpCard& card, const std::string& reason);
  void Note(const char* key, const std::string& detail) { m_notes.Add(key, detail); }
  void Define(Deck& deck, const InpCard& card, bool active);

  /// Places of elements in a range of numbers.
  std::pair<std::size_t, std::size_t> Range(std::uint64_t first, std::uint64_t last) const {
    const auto from = std::lower_bound(m_places.begin(), m_places.end(), first,
                                       [](const Place& place, std::uint64_t id) { return place.id < id; });
    const auto to = std::upper_bound(from, m_places.end(), last,
                                     [](std::uint64_t id, const Place& place) { return id < place.id; });
    return {static_cast<std::size_t>(from - m_places.begin()), static_cast<std::size_t>(to - m_places.begin())};
  }
  const MeshData::Block& BlockOf(const Place& place) const {
    return m_model.sets[place.set].mesh->blocks[place.block];
  }
  bool IsDefined(std::uint32_t set) const { return m_marks[set].count > 0; }

  const ExportModel& m_model;
  TextFile& m_file;
  std::map<std::uint64_t, const double*> m_nodes;
  std::vector<Place> m_places;             // by number
  std::vector<bool> m_written;             // beside them
  std::vector<std::int32_t> m_propertyOf;  // beside them: by place, as the decks' sections say
  std::vector<std::vector<std::uint32_t>> m_children;
  std::vector<ElementMark> m_marks;  // of each set with all below it
  std::vector<Deck> m_decks;
  std::unordered_set<std::uint64_t> m_nodesWritten;
  std::array<std::set<std::string>, kInpNames> m_taken;  // names in upper case, as they are written
  std::int32_t m_material = -1;                          // of the deck at hand, whose cards are being written
  ExportNotes m_notes;
  std::uint64_t m_groups = 0;  // element sets that were written
};

// ---- what is kept ---------------------------------------------------------------------------------------

void DeckWriter::Take(const ExportDeck& kept) {
  Deck deck;
  deck.kept = &kept;
  if (kept.record.text != nullptr) deck.cards = CardsOf(*kept.record.text);
  deck.fit.nodes = kept.record.nodes;
  deck.fit.elements = kept.record.elements;
  const auto isMesh = [](const InpCard& card) { return card.keyword == "NODE" || card.keyword == "ELEMENT"; };
  const auto isStep = [](const InpCard& card) { return card.keyword == "STEP"; };
  const auto step = std::find_if(deck.cards.begin(), deck.cards.end(), isStep);
  deck.firstStep = static_cast<std::size_t>(step - deck.cards.begin());
  deck.firstMesh = static_cast<std::size_t>(std::find_if(deck.cards.begin(), step, isMesh) - deck.cards.begin());
  for (std::size_t set = 0; set < kept.record.sets.size(); ++set) {
    deck.setOf[UpperCase(kept.record.sets[set].name)] = set;
  }
  if (!ReadNumbers(deck)) {
    // The sets of this deck were deleted or are not among what is written.
    Note("IDS_WB_EXPORT_DECK_WITHOUT_MESH", ToUtf8(kept.record.name));
    return;
  }
  TakeNames(deck);
  ReadLists(deck);
  FitSets(deck);
  FitMaterials(deck);
  m_decks.push_back(std::move(deck));
}

/// Finds which nodes and elements of a deck are not among what is written. False when all of them are missing.
bool DeckWriter::ReadNumbers(Deck& deck) {
  // More than any model has; a text that was meddled with ends here.
  constexpr std::uint64_t kMost = std::uint64_t{1} << 28U;
  std::uint64_t all = 0;
  bool any = false;
  for (const InpCard& card : deck.cards) {
    const bool isNode = card.keyword == "NODE";
    if (!isNode && card.keyword != "ELEMENT") continue;
    const std::uint64_t behind = isNode ? deck.fit.nodes : deck.fit.elements;
    auto& lost = isNode ? deck.fit.lostNodes : deck.fit.lostElements;
    for (const std::string_view line : card.lines) {
      if (IsComment(line)) continue;
      if (line.front() == '=') {
        const auto number = InpNumberOf(Trimmed(line.substr(1, std::min(line.find(','), line.size()) - 1)));
        if (number) deck.literals.push_back(*number + behind);
        continue;
      }
      const auto run = RunOf(line);
      if (!run || (all += (run->last - run->first) / run->step) > kMost) {
        throw ImportError{"IDS_WB_EXPORT_DECK_DAMAGED", std::string(card.header.substr(0, 60))};
      }
      for (std::uint64_t number = run->first + behind; number <= run->last + behind; number += run->step) {
        const bool there =
            isNode ? m_nodes.contains(number) : Range(number, number).first != Range(number, number).second;
        if (!there) lost.push_back(number);
        any = any || there;
      }
    }
  }
  std::sort(deck.fit.lostNodes.begin(), deck.fit.lostNodes.end());
  std::sort(deck.fit.lostElements.begin(), deck.fit.lostElements.end());
  std::sort(deck.literals.begin(), deck.literals.end());
  return any;
}

/// What two decks call by one name are two things: those of the later one get names of their own.
void DeckWriter::TakeNames(Deck& deck) {
  std::array<std::set<std::string>, kInpNames> own;
  for (const InpCard& card : deck.cards) {
    const auto [kind, name] = DefinedBy(card);
    if (!name.empty()) own[static_cast<std::size_t>(kind)].insert(UpperCase(name));
  }
  for (std::size_t kind = 0; kind < kInpNames; ++kind) {
    for (const std::string& name : own[kind]) {
      std::string unique = name;
      for (int number = 2; m_taken[kind].contains(unique) || (unique != name && own[kind].contains(unique));
           ++number) {
        unique = name + "-" + std::to_string(number);
      }
      if (unique != name) deck.fit.Rename(static_cast<InpName>(kind), name, unique);
      m_taken[kind].insert(unique);
    }
  }
}

/// Reads what the text lists in each element set.
void DeckWriter::ReadLists(Deck& deck) {
  deck.listed.resize(deck.kept->record.sets.size());
  const std::uint64_t behind = deck.fit.elements;
  std::vector<std::string_view> fields;
  for (const InpCard& card : deck.cards) {
    const bool isElement = card.keyword == "ELEMENT";
    if (!isElement && card.keyword != "ELSET") continue;
    const auto found = deck.setOf.find(UpperCase(card.Value("ELSET")));
    if (found == deck.setOf.end()) continue;
    Listed& listed = deck.listed[found->second];
    for (const std::string_view line : card.lines) {
      if (IsComment(line)) continue;
      const bool isRange = isElement ? line.front() != '=' : card.Has("GENERATE");
      if (isRange) {
        if (const auto run = RunOf(line))
          listed.runs.push_back({run->first + behind, run->last + behind, run->step});
        continue;
      }
      InpLines::Fields(isElement ? line.substr(1) : line, fields);
      if (isElement && fields.size() > 1) fields.resize(1);
      for (const std::string_view field : fields) {
        if (const auto number = InpNumberOf(field)) {
          listed.runs.push_back({*number + behind, *number + behind, 1});
        } else if (!field.empty()) {
          const bool quoted = field.size() >= 2 && field.front() == '"' && field.back() == '"';
          listed.names.emplace_back(quoted ? field.substr(1, field.size() - 2) : field);
        }
      }
    }
  }
}

void DeckWriter::AddSubtree(std::uint32_t set, std::vector<std::size_t>& elements) const {
  std::vector<std::uint32_t> open{set};
  while (!open.empty()) {
    const std::uint32_t at = open.back();
    open.pop_back();
    open.insert(open.end(), m_children[at].begin(), m_children[at].end());
    if (m_model.sets[at].mesh == nullptr) continue;
    for (const MeshData::Block& block : m_model.sets[at].mesh->blocks) {
      for (const std::uint64_t id : block.elementIds) elements.push_back(Range(id, id).first);
    }
  }
}

/// The elements that a deck's set has now: those of its mesh set, and, where only the text knows them, those of
/// the text that are still there.
std::vector<std::size_t> DeckWriter::ElementsOf(const Deck& deck, std::size_t set,
                                                std::vector<std::uint64_t>* literals) const {
  std::vector<std::size_t> elements;
  const std::int32_t mset = deck.kept->msets[set];
  const bool whole = mset >= 0 && !deck.kept->record.sets[set].shared;
  if (mset >= 0) AddSubtree(static_cast<std::uint32_t>(mset), elements);
  std::vector<std::size_t> open{set};
  std::set<std::size_t> seen{set};
  while (!open.empty() && !(whole && literals == nullptr)) {
    const Listed& listed = deck.listed[open.back()];
    open.pop_back();
    for (const Run& run : listed.runs) {
      const auto [from, to] = Range(run.first, run.last);
      for (std::size_t at = from; at < to && !whole; ++at) {
        if ((m_places[at].id - run.first) % run.step == 0) elements.push_back(at);
      }
      if (literals == nullptr) continue;
      const auto first = std::lower_bound(deck.literals.begin(), deck.literals.end(), run.first);
      for (auto at = first; at != deck.literals.end() && *at <= run.last; ++at) {
        if ((*at - run.first) % run.step == 0) literals->push_back(*at);
      }
    }
    for (const std::string& name : listed.names) {
      const auto found = deck.setOf.find(UpperCase(name));
      if (found != deck.setOf.end() && seen.insert(found->second).second) open.push_back(found->second);
    }
  }
  std::sort(elements.begin(), elements.end());
  elements.erase(std::unique(elements.begin(), elements.end()), elements.end());
  return elements;
}

void DeckWriter::FitSets(Deck& deck) {
  const auto& sets = deck.kept->record.sets;
  deck.states.assign(sets.size(), SetState::Text);
  for (std::size_t set = 0; set < sets.size(); ++set) {
    const std::int32_t mset = deck.kept->msets[set];
    bool same = deck.fit.lostElements.empty();
    if (mset >= 0) {
      const bool holdsTheSame =
          m_marks[static_cast<std::size_t>(mset)] == ElementMark{sets[set].count, sets[set].mark};
      same = holdsTheSame && (same || !sets[set].shared);
    }
    if (!same) deck.states[set] = SetState::Numbers;
  }
  // A set that lists one that cannot stay as it stands there cannot either.
  for (bool changed = true; changed;) {
    changed = false;
    for (std::size_t set = 0; set < sets.size(); ++set) {
      if (deck.states[set] != SetState::Text) continue;
      const auto& names = deck.listed[set].names;
      const bool stays = std::all_of(names.begin(), names.end(), [&](const std::string& name) {
        const auto found = deck.setOf.find(UpperCase(name));
        return found == deck.setOf.end() || deck.states[found->second] == SetState::Text;
      });
      if (stays) continue;
      deck.states[set] = SetState::Numbers;
      changed = true;
    }
  }
  for (std::size_t set = 0; set < sets.size(); ++set) {
    const std::string& name = sets[set].name;
    const std::string& now = deck.kept->setNames[set];
    if (now != name) deck.fit.Rename(InpName::ElementSet, name, now);
    if (deck.states[set] == SetState::Text) continue;
    std::vector<std::uint64_t> literals;
    if (!ElementsOf(deck, set, &literals).empty() || !literals.empty()) continue;
    deck.states[set] = SetState::Lost;
    deck.fit.Lose(InpName::ElementSet, name);
    Note("IDS_WB_EXPORT_DECK_SET", name);
  }
}

void DeckWriter::FitMaterials(Deck& deck) {
  const auto& materials = deck.kept->record.materials;
  for (std::size_t i = 0; i < materials.size(); ++i) {
    const std::int32_t place = deck.kept->materials[i];
    if (place < 0) {
      deck.fit.Lose(InpName::Material, materials[i].name);
    } else if (const std::string& now = m_model.materials[static_cast<std::size_t>(place)].name;
               now != materials[i].name) {
      deck.fit.Rename(InpName::Material, materials[i].name, now);
    }
  }
}

// ---- nodes and elements ---------------------------------------------------------------------------------

/// Solvers look at this many characters of a number.
constexpr std::size_t kNumberWidth = 20;

void DeckWriter::WriteMesh() {
  for (Deck& deck : m_decks) {
    for (std::size_t i = 0; i < deck.firstMesh; ++i) WriteOther(deck, deck.cards[i]);
  }
  for (Deck& deck : m_decks) {
    for (const InpCard& card : deck.cards) {
      if (card.keyword == "NODE") WriteNodeCard(deck, card);
    }
  }
  bool open = false;
  for (const auto& [number, at] : m_nodes) {
    if (m_nodesWritten.contains(number)) continue;
    if (!std::exchange(open, true)) m_file << "*NODE\n";
    WriteNode(number, at);
  }
  for (Deck& deck : m_decks) {
    for (std::size_t i = deck.firstMesh; i < deck.cards.size(); ++i) {
      const InpCard& card = deck.cards[i];
      if (card.keyword == "ELEMENT") WriteElementCard(deck, card);
      if (card.keyword == "USERELEMENT") WriteFitted(deck, card, Fit(card, deck.fit));
    }
  }
  WriteNewElements();
}

void DeckWriter::WriteNode(std::uint64_t number, const double* at) {
  m_file << number;
  for (int axis = 0; axis < 3; ++axis) {
    (m_file << ", ").Short(at[axis], kNumberWidth);
  }
  m_file << "\n";
  m_file.Step();
}

void DeckWriter::WriteNodeCard(Deck& deck, const InpCard& card) {
  WriteComments(card);
  bool any = false;
  for (const std::string_view line : card.lines) {
    if (IsComment(line)) {
      m_file << line << "\n";
      continue;
    }
    const Run run = *RunOf(line);
    for (std::uint64_t number = run.first; number <= run.last; number += run.step) {
      const auto found = m_nodes.find(number + deck.fit.nodes);
      if (found == m_nodes.end()) continue;
      if (!std::exchange(any, true)) m_file << Fit(card, deck.fit).header << "\n";
      WriteNode(found->first, found->second);
      m_nodesWritten.insert(found->first);
    }
  }
  Define(deck, card, any);
}

void DeckWriter::WriteElement(const Place& place, const std::string& type) {
  constexpr int kNumbersPerLine = 16;
  const MeshData::Block& block = BlockOf(place);
  const InpElement* kind = FindInpElement(type);
  const auto width = static_cast<std::size_t>(block.nodesPerElement);
  std::vector<std::size_t> nodeAt(width);
  for (std::size_t i = 0; i < width; ++i) {
    nodeAt[kind == nullptr || kind->order.empty() ? i : static_cast<std::size_t>(kind->order[i])] = i;
  }
  m_file << place.id;
  int onLine = 1;
  for (const std::size_t node : nodeAt) {
    m_file << (onLine == kNumbersPerLine ? ",\n" : ", ");
    onLine = onLine == kNumbersPerLine ? 1 : onLine + 1;
    m_file << block.nodeIds[place.index * width + node];
  }
  m_file << "\n";
  m_file.Step();
}

void DeckWriter::WriteElementCard(Deck& deck, const InpCard& card) {
  WriteComments(card);
  const std::string type = UpperCase(card.Value("TYPE"));
  const InpElement* kind = FindInpElement(type);
  InpCard named = card;
  const auto set = deck.setOf.find(UpperCase(card.Value("ELSET")));
  if (set != deck.setOf.end() && deck.states[set->second] != SetState::Text) {
    // Its elements are listed where the sets are.
    named.header = "*ELEMENT";
    named.parameters.clear();
    for (const InpCard::Parameter& parameter : card.parameters) {
      if (parameter.name == "ELSET") continue;
      named.header += ", " + parameter.name;
      if (parameter.length > 0) named.header += "=" + card.header.substr(parameter.at, parameter.length);
    }
  }
  bool any = false;
  const auto begin = [&] {
    if (!std::exchange(any, true)) m_file << Fit(named, deck.fit).header << "\n";
  };
  for (const std::string_view line : card.lines) {
    if (IsComment(line)) {
      m_file << line << "\n";
      continue;
    }
    if (line.front() == '=') {
      // No mesh set holds it: it is written as it came, with the numbers of now.
      const std::string_view literal = line.substr(1);
      InpCard one;
      one.keyword = "NSET";  // nodes
      one.lines = {literal.substr(std::min(literal.find(',') + 1, literal.size()))};
      InpCard numbered;
      numbered.keyword = "NORMAL";  // an element comes first
      numbered.lines = {literal.substr(0, std::min(literal.find(','), literal.size()))};
      const InpFitted nodes = Fit(one, deck.fit);
      const InpFitted number = Fit(numbered, deck.fit);
      if (nodes.loss.IsAny() || !nodes.left.empty()) {
        m_file << "** QD: not written: a node of this element is not written\n** " << literal << "\n";
        Note("IDS_WB_EXPORT_DECK_CARD", "*ELEMENT: " + std::string(numbered.lines.front()));
        continue;
      }
      begin();
      m_file << number.lines.front().text << "," << nodes.lines.front().text << "\n";
      continue;
    }
    const Run run = *RunOf(line);
    auto [at, end] = Range(run.first + deck.fit.elements, run.last + deck.fit.elements);
    for (; at < end; ++at) {
      const Place& place = m_places[at];
      if ((place.id - deck.fit.elements - run.first) % run.step != 0 || m_written[at]) continue;
      if (kind == nullptr || BlockOf(place).elementType != kind->elementType) continue;
      begin();
      WriteElement(place, type);
      m_written[at] = true;
    }
  }
}

/// What no deck knows is written as elements of any model are.
void DeckWriter::WriteNewElements() {
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<std::size_t>> missing;
  for (std::size_t at = 0; at < m_places.size(); ++at) {
    if (!m_written[at]) missing[{m_places[at].set, m_places[at].block}].push_back(at);
  }
  for (const auto& [block, elements] : missing) {
    const std::string type(InpNameOf(BlockOf(m_places[elements.front()]).elementType));
    if (type.empty()) {
      throw ImportError{"IDS_WB_EXPORT_ELEMENT_TYPE",
                        std::to_string(BlockOf(m_places[elements.front()]).elementType)};
    }
    m_file << "*ELEMENT, TYPE=" << type << "\n";
    for (const std::size_t at : elements) WriteElement(m_places[at], type);
  }
}

// ---- element sets ---------------------------------------------------------------------------------------

void DeckWriter::WriteSet(const std::string& name, const std::vector<std::uint64_t>& numbers,
                          const std::vector<std::string>& names) {
  constexpr int kNumbersPerLine = 16;
  ++m_groups;
  m_file << "*ELSET, ELSET=" << QuotedInpName(name) << "\n";
  int onLine = 0;
  for (const std::uint64_t number : numbers) {
    m_file << number << ",";
    if (++onLine % kNumbersPerLine == 0) m_file << "\n";
  }
  if (onLine % kNumbersPerLine != 0) m_file << "\n";
  for (const std::string& other : names) m_file << QuotedInpName(other) << ",\n";
}

void DeckWriter::WriteSets() {
  std::vector<bool> own(m_model.sets.size(), true);  // the set is written as one of the tree
  for (Deck& deck : m_decks) {
    for (const InpCard& card : deck.cards) {
      if (card.keyword != "ELSET") continue;
      const auto set = deck.setOf.find(UpperCase(card.Value("ELSET")));
      if (set != deck.setOf.end() && deck.states[set->second] != SetState::Text) {
        WriteComments(card);
        continue;
      }
      WriteFitted(deck, card, Fit(card, deck.fit));
    }
    m_groups += static_cast<std::uint64_t>(std::count(deck.states.begin(), deck.states.end(), SetState::Text));
    for (std::size_t set = 0; set < deck.states.size(); ++set) {
      const std::int32_t mset = deck.kept->msets[set];
      if (deck.states[set] == SetState::Lost) continue;
      if (deck.states[set] == SetState::Text && mset >= 0) own[static_cast<std::size_t>(mset)] = false;
      if (deck.states[set] != SetState::Numbers) continue;
      const bool whole = mset >= 0 && !deck.kept->record.sets[set].shared;
      const bool isItself = whole && m_model.sets[static_cast<std::size_t>(mset)].name == deck.kept->setNames[set];
      std::vector<std::uint64_t> numbers;
      const std::vector<std::size_t> elements = ElementsOf(deck, set, &numbers);
      if (isItself && numbers.empty()) continue;  // written with the sets of the tree
      for (const std::size_t at : elements) numbers.push_back(m_places[at].id);
      WriteSet(deck.kept->setNames[set], numbers, {});
      if (mset >= 0 && m_model.sets[static_cast<std::size_t>(mset)].name == deck.kept->setNames[set]) {
        own[static_cast<std::size_t>(mset)] = false;
      }
    }
    // What the file had in no set got one from us, which the file does not need.
    const std::int32_t rest = deck.kept->rest;
    if (rest >= 0 && m_children[static_cast<std::size_t>(rest)].empty())
      own[static_cast<std::size_t>(rest)] = false;
  }
  // Sets come before the ones that list them.
  for (std::size_t set = m_model.sets.size(); set-- > 0;) {
    if (!own[set] || !IsDefined(static_cast<std::uint32_t>(set))) continue;
    std::vector<std::uint64_t> numbers;
    if (m_model.sets[set].mesh != nullptr) {
      for (const MeshData::Block& block : m_model.sets[set].mesh->blocks) {
        numbers.insert(numbers.end(), block.elementIds.begin(), block.elementIds.end());
      }
    }
    std::vector<std::string> names;
    for (const std::uint32_t child : m_children[set]) {
      if (IsDefined(child)) names.push_back(m_model.sets[child].name);
    }
    WriteSet(m_model.sets[set].name, numbers, names);
  }
}

// ---- all other cards ------------------------------------------------------------------------------------

void DeckWriter::WriteComments(const InpCard& card) {
  for (const std::string_view line : card.comments) m_file << line << "\n";
}

void DeckWriter::Comment(const InpCard& card, const std::string& reason) {
  m_file << "** QD: not written: " << reason << "\n** " << card.header << "\n";
  for (const std::string_view line : card.lines) m_file << "** " << line << "\n";
}

/// What cards further down may name is known from here on, or lost.
void DeckWriter::Define(Deck& deck, const InpCard& card, bool active) {
  const auto [kind, name] = DefinedBy(card);
  if (name.empty()) return;
  if (active) {
    deck.fit.Keep(kind, name);
    deck.defined.emplace(kind, UpperCase(name));
  } else if (!deck.defined.contains({kind, UpperCase(name)})) {
    deck.fit.Lose(kind, name);
  }
}

void DeckWriter::WriteFitted(Deck& deck, const InpCard& card, InpFitted fitted) {
  const InpRule* rule = FindInpRule(card.keyword);
  if (rule != nullptr && !rule->under.empty() && deck.lostAbove[std::string(rule->under)] &&
      !fitted.loss.IsAny()) {
    fitted.loss = {"it belongs to *" + std::string(rule->under) + ", which is not written",
                   std::string(rule->under)};
  }
  deck.lostAbove[card.keyword] = fitted.loss.IsAny();
  WriteComments(card);
  Define(deck, card, !fitted.loss.IsAny());
  const std::string what = card.header.substr(0, std::min(card.header.find(','), card.header.size()));
  if (fitted.loss.IsAny()) {
    Comment(card, fitted.loss.reason);
    Note("IDS_WB_EXPORT_DECK_CARD", what + ": " + fitted.loss.what);
    return;
  }
  if (!card.keyword.empty()) m_file << fitted.header << "\n";
  for (const InpFitted::Line& line : fitted.lines) {
    if (line.loss.IsAny()) {
      m_file << "** QD: not written: " << line.loss.reason << "\n** " << line.text << "\n";
      Note("IDS_WB_EXPORT_DECK_CARD", what + ": " + line.loss.what);
    } else {
      m_file << line.text << "\n";
    }
  }
  for (const InpLoss& left : fitted.left) {
    m_file << "** QD: left out of the list: " << left.reason << "\n";
    Note("IDS_WB_EXPORT_DECK_CARD", what + ": " + left.what);
  }
}

void DeckWriter::WriteOther(Deck& deck, const InpCard& card) {
  constexpr std::string_view kMesh[] = {"NODE", "ELEMENT", "USERELEMENT", "ELSET"};
  if (std::find(std::begin(kMesh), std::end(kMesh), card.keyword) != std::end(kMesh)) return;
  InpFitted fitted = Fit(card, deck.fit);
  if (IsInpSection(card.keyword)) FitSection(deck, card, fitted);
  if (card.keyword == "MATERIAL" || card.keyword == "ELASTIC" || card.keyword == "DENSITY") {
    FitValues(deck, card, fitted);
  }
  WriteFitted(deck, card, std::move(fitted));
}

// ---- sections and materials -----------------------------------------------------------------------------

namespace {

std::string Digits(double number) {
  constexpr int kDigits = 15;  // fit into what solvers look at
  char digits[40];
  const auto end = std::to_chars(digits, digits + sizeof(digits), number, std::chars_format::general, kDigits).ptr;
  return {digits, end};
}

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

/// A section follows what the tree says of its property; what the property cannot say stays as the deck has it.
void DeckWriter::FitSection(Deck& deck, const InpCard& card, InpFitted& fitted) {
  const std::size_t section = deck.sections++;
  if (section >= deck.kept->properties.size()) return;
  const std::int32_t place = deck.kept->properties[section];
  const auto set = deck.setOf.find(UpperCase(card.Value("ELSET")));
  if (place >= 0 && set != deck.setOf.end()) {
    for (const std::size_t element : ElementsOf(deck, set->second, nullptr)) m_propertyOf[element] = place;
  }
  if (fitted.loss.IsAny()) return;
  if (place < 0) {
    fitted.loss = {"the property of this section was deleted", card.Value("ELSET")};
    return;
  }
  const ImportedProperty& property = m_model.properties[static_cast<std::size_t>(place)];
  const tagTDeck::Section& came = deck.kept->record.sections[section];
  if (property.material != deck.kept->sectionMaterials[section]) {
    const auto parameter = std::find_if(card.parameters.begin(), card.parameters.end(),
                                        [](const auto& known) { return known.name == "MATERIAL"; });
    const std::string name = property.material >= 0
                                 ? m_model.materials[static_cast<std::size_t>(property.material)].name
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
  if (property.size == came.size) return;
  const bool isThickness = card.keyword == "SHELLSECTION" || card.keyword == "MEMBRANESECTION" ||
                           card.keyword == "SHELLGENERALSECTION" || card.keyword == "SOLIDSECTION";
  const auto line = std::find_if(fitted.lines.begin(), fitted.lines.end(),
                                 [](const InpFitted::Line& known) { return !IsComment(known.text); });
  if (!isThickness || card.Has("COMPOSITE") || line == fitted.lines.end()) {
    Note("IDS_WB_EXPORT_DECK_VALUE", card.Value("ELSET"));
    m_file << "** QD: the size that was entered in the property of " << card.Value("ELSET")
           << " does not fit this section, which is as it came\n";
    return;
  }
  line->text = WithField(line->text, 0, Digits(property.size));
}

/// Values that were changed in the tree take the place of those in the text where these are single ones.
void DeckWriter::FitValues(Deck& deck, const InpCard& card, InpFitted& fitted) {
  if (card.keyword == "MATERIAL") {
    m_material = -1;
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
  const ImportedMaterial& is = m_model.materials[static_cast<std::size_t>(place)];
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
    Note("IDS_WB_EXPORT_DECK_VALUE", is.name);
    return;
  }
  data.front()->text = WithField(data.front()->text, 0, Digits(isElastic ? is.youngsModulus : is.density));
  if (isElastic) data.front()->text = WithField(data.front()->text, 1, Digits(is.poissonsRatio));
}

/// Sections for elements whose property is another one than the decks say.
void DeckWriter::WriteOwnSections() {
  constexpr const char* kKeywords[] = {"*SOLID SECTION", "*SHELL SECTION", "*BEAM SECTION, SECTION=RECT"};
  std::int32_t own = 0;
  for (std::size_t set = 0; set < m_model.sets.size(); ++set) {
    if (m_model.sets[set].mesh == nullptr) continue;
    const std::int32_t property = m_model.sets[set].property;
    std::vector<std::uint64_t> other;
    for (const MeshData::Block& block : m_model.sets[set].mesh->blocks) {
      for (const std::uint64_t id : block.elementIds) {
        const std::int32_t said = m_propertyOf[Range(id, id).first];
        if (property >= 0 && said != property) other.push_back(id);
      }
    }
    if (other.empty()) continue;
    const ImportedProperty& is = m_model.properties[static_cast<std::size_t>(property)];
    std::string name = OwnElementsName(++own);
    const auto isTaken = [&name](const Deck& deck) { return deck.setOf.contains(UpperCase(name)); };
    while (std::any_of(m_decks.begin(), m_decks.end(), isTaken)) name = OwnElementsName(++own);
    WriteSet(name, other, {});
    m_file << kKeywords[static_cast<int>(is.kind)] << ", ELSET=" << QuotedInpName(name);
    if (is.material >= 0) {
      m_file << ", MATERIAL=" << QuotedInpName(m_model.materials[static_cast<std::size_t>(is.material)].name);
    }
    m_file << "\n";
    if (is.kind == tagTProperty::Kind::Shell) m_file.Short(is.size, kNumberWidth) << "\n";
    if (is.kind == tagTProperty::Kind::Beam) m_file.Short(is.size, kNumberWidth) << ", 1.\n";
  }
}

void DeckWriter::WriteOwnMaterials() {
  std::set<std::int32_t> kept;
  for (const Deck& deck : m_decks) kept.insert(deck.kept->materials.begin(), deck.kept->materials.end());
  for (std::size_t i = 0; i < m_model.materials.size(); ++i) {
    if (kept.contains(static_cast<std::int32_t>(i))) continue;
    const ImportedMaterial& material = m_model.materials[i];
    m_file << "*MATERIAL, NAME=" << QuotedInpName(material.name) << "\n";
    if (material.youngsModulus > 0) {
      (m_file << "*ELASTIC\n").Short(material.youngsModulus, kNumberWidth) << ", ";
      m_file.Short(material.poissonsRatio, kNumberWidth) << "\n";
    }
    if (material.density > 0) (m_file << "*DENSITY\n").Short(material.density, kNumberWidth) << "\n";
  }
}

// ---- steps ----------------------------------------------------------------------------------------------

/// One file is one run of a solver: it takes the steps of the first deck that has any.
void DeckWriter::WriteSteps() {
  const Deck* first = nullptr;
  for (Deck& deck : m_decks) {
    if (deck.firstStep == deck.cards.size()) continue;
    const bool isFirst = first == nullptr;
    if (isFirst) first = &deck;
    if (!isFirst) Note("IDS_WB_EXPORT_DECK_STEPS", ToUtf8(deck.kept->record.name));
    for (std::size_t i = deck.firstStep; i < deck.cards.size(); ++i) {
      if (isFirst) {
        WriteOther(deck, deck.cards[i]);
        continue;
      }
      WriteComments(deck.cards[i]);
      Comment(deck.cards[i], "the file has steps of another deck already");
    }
  }
}

}  // namespace

void WriteInpDecks(const ExportModel& model, TextFile& file, ExportReport& report) {
  DeckWriter(model, file).Write(report);
}

}  // namespace qd::workbench
