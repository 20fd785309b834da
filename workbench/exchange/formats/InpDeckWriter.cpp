// A solver input file whose mesh comes from the document and whose other cards are kept decks.

#include <algorithm>
#include <map>
#include <set>

#include "workbench/exchange/formats/InpDeckFit.h"
#include "workbench/exchange/formats/InpDeckProperties.h"
#include "workbench/exchange/formats/InpElements.h"
#include "workbench/exchange/formats/InpText.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/mesh/NumberHash.h"
#include "workbench/text/Ascii.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

class DeckWriter {
 public:
  DeckWriter(const ExportModel& model, TextFile& file)
      : m_model(model), m_file(file), m_mesh(model, file), m_properties(m_mesh, file, m_notes) {
    m_written.assign(m_mesh.Places().size(), false);
  }

  void Write(ExportReport& report) {
    InpDeckFitter fitter(m_mesh, m_notes);
    for (const ExportDeck& kept : m_model.decks) {
      if (auto deck = fitter.Take(kept)) m_decks.push_back({std::move(*deck)});
    }
    if (m_decks.empty()) {
      WriteInp(m_model, m_file, report);
      return m_notes.PutInto(report);
    }
    WriteMesh();
    WriteSets();
    for (Deck& deck : m_decks) {
      LoseGenerated(deck);
      for (std::size_t i = deck.firstMesh; i < deck.firstStep; ++i) WriteOther(deck, deck.cards[i]);
    }
    WriteOwnSections();
    WriteOwnMaterials();
    WriteSteps();
    report.nodes = m_mesh.Nodes().size();
    report.elements = m_mesh.Places().size();
    report.groups = m_groups;
    m_notes.PutInto(report);
  }

 private:
  /// A deck while it is written.
  struct Deck : InpFittedDeck {
    std::map<std::string, bool, std::less<>> lostAbove = {};  // keyword: whether the last such card was lost
    std::set<std::pair<InpName, std::string>> defined = {};   // names in upper case
  };

  void WriteMesh();
  void WriteNodeCard(Deck& deck, const InpCard& card);
  void WriteElementCard(Deck& deck, const InpCard& card);
  void WriteKeptElement(const Deck& deck, std::string_view literal, const std::string& header, bool& any);
  void WriteNewElements();
  void WriteSets();
  void WriteSetsOf(Deck& deck, std::vector<bool>& own);
  void WriteSet(const std::string& name, const std::vector<std::uint64_t>& numbers,
                const std::vector<std::string>& names = {}) {
    ++m_groups;
    WriteInpSet(name, numbers, names, m_file);
  }
  /// A card that makes nodes or elements, with what is left of it.
  InpFitted FitGenerator(const Deck& deck, const InpCard& card) const;
  void LoseGenerated(Deck& deck) const;
  void WriteOther(Deck& deck, const InpCard& card);
  void WriteFitted(Deck& deck, const InpCard& card, InpFitted fitted);
  void WriteOwnSections();
  void WriteOwnMaterials();
  void WriteSteps();
  void WriteComments(const InpCard& card);
  void Comment(const InpCard& card, const std::string& reason);
  void Note(const char* key, const std::string& detail) { m_notes.Add(key, detail); }
  void Define(Deck& deck, const InpCard& card, bool active);

  const ExportModel& m_model;
  TextFile& m_file;
  InpDeckMesh m_mesh;
  ExportNotes m_notes;
  InpDeckProperties m_properties;
  std::vector<bool> m_written;  // beside the mesh's places
  std::vector<Deck> m_decks;
  NumberSet m_nodesWritten;
  bool m_isMixed = false;      // there is more than one deck has numbered
  std::uint64_t m_groups = 0;  // element sets that were written
};

// ---- nodes and elements ---------------------------------------------------------------------------------

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
  for (const auto& [number, at] : m_mesh.Nodes()) {
    if (m_nodesWritten.contains(number)) continue;
    if (!std::exchange(open, true)) m_file << "*NODE\n";
    m_isMixed = true;
    WriteInpNode(number, at, m_file);
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

void DeckWriter::WriteNodeCard(Deck& deck, const InpCard& card) {
  WriteComments(card);
  bool any = false;
  for (const std::string_view line : card.lines) {
    if (IsComment(line)) {
      m_file << line << "\n";
      continue;
    }
    const InpRun run = *InpRunOf(line);
    for (std::uint64_t number = run.first; number <= run.last; number += run.step) {
      m_file.Look();
      const auto found = m_mesh.Nodes().find(number + deck.fit.nodes);
      if (found == m_mesh.Nodes().end()) continue;
      if (!std::exchange(any, true)) m_file << Fit(card, deck.fit).header << "\n";
      WriteInpNode(found->first, found->second, m_file);
      m_nodesWritten.insert(found->first);
    }
  }
  Define(deck, card, any);
}

/// The card's header; without its set where the set is listed with the others.
std::string ElementHeader(const InpFittedDeck& deck, const InpCard& card) {
  const auto set = deck.setOf.find(UpperCase(card.Value("ELSET")));
  const bool isListed = set != deck.setOf.end() && deck.states[set->second] != InpDeckSet::Text;
  if (isListed) return card.HeaderWith({{"ELSET", {}}});
  InpCard bare = card;
  bare.lines.clear();
  return Fit(bare, deck.fit).header;
}

/// An element that no mesh set holds: it is written as it came, with the numbers of now.
void DeckWriter::WriteKeptElement(const Deck& deck, std::string_view literal, const std::string& header,
                                  bool& any) {
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
    return;
  }
  if (!std::exchange(any, true)) m_file << header << "\n";
  m_file << number.lines.front().text << "," << nodes.lines.front().text << "\n";
}

void DeckWriter::WriteElementCard(Deck& deck, const InpCard& card) {
  WriteComments(card);
  const InpElement* kind = FindInpElement(UpperCase(card.Value("TYPE")));
  const std::string header = ElementHeader(deck, card);
  bool any = false;
  for (const std::string_view line : card.lines) {
    if (IsComment(line)) {
      m_file << line << "\n";
      continue;
    }
    if (line.front() == '=') {
      WriteKeptElement(deck, line.substr(1), header, any);
      continue;
    }
    const InpRun run = *InpRunOf(line);
    auto [at, end] = m_mesh.Range(run.first + deck.fit.elements, run.last + deck.fit.elements);
    for (; at < end; ++at) {
      const InpDeckMesh::Place& place = m_mesh.Places()[at];
      if ((place.id - deck.fit.elements - run.first) % run.step != 0 || m_written[at]) continue;
      const MeshData::Block& block = m_mesh.BlockOf(place);
      if (kind == nullptr || block.elementType != kind->elementType) continue;
      if (!std::exchange(any, true)) m_file << header << "\n";
      WriteInpElement(block, place.index, kind->order, m_file);
      m_written[at] = true;
    }
  }
}

/// What no deck knows is written as elements of any model are.
void DeckWriter::WriteNewElements() {
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<std::uint64_t>> missing;
  for (std::size_t at = 0; at < m_written.size(); ++at) {
    const InpDeckMesh::Place& place = m_mesh.Places()[at];
    if (!m_written[at]) missing[{place.set, place.block}].push_back(place.index);
  }
  for (const auto& [place, elements] : missing) {
    const MeshData::Block& block = m_model.sets[place.first].mesh->blocks[place.second];
    const std::string type(InpNameOf(block.elementType));
    if (type.empty()) throw ImportError{"IDS_WB_EXPORT_ELEMENT_TYPE", std::to_string(block.elementType)};
    m_file << "*ELEMENT, TYPE=" << type << "\n";
    m_isMixed = true;
    for (const std::uint64_t element : elements) {
      WriteInpElement(block, element, InpOrderOf(block.elementType), m_file);
    }
  }
}

// ---- element sets ---------------------------------------------------------------------------------------

/// The element sets of a deck. Sets of the tree that are written with that are taken off the ones that want
/// writing.
void DeckWriter::WriteSetsOf(Deck& deck, std::vector<bool>& own) {
  for (const InpCard& card : deck.cards) {
    if (card.keyword != "ELSET") continue;
    const auto set = deck.setOf.find(UpperCase(card.Value("ELSET")));
    if (set != deck.setOf.end() && deck.states[set->second] != InpDeckSet::Text) {
      WriteComments(card);
      continue;
    }
    WriteFitted(deck, card, Fit(card, deck.fit));
  }
  m_groups += static_cast<std::uint64_t>(std::count(deck.states.begin(), deck.states.end(), InpDeckSet::Text));
  for (std::size_t set = 0; set < deck.states.size(); ++set) {
    const std::int32_t mset = deck.kept->msets[set];
    if (deck.states[set] == InpDeckSet::Lost) continue;
    if (deck.states[set] == InpDeckSet::Text && mset >= 0) own[static_cast<std::size_t>(mset)] = false;
    if (deck.states[set] != InpDeckSet::Numbers) continue;
    const bool whole = mset >= 0 && !deck.kept->record.sets[set].shared;
    const bool isItself = whole && m_model.sets[static_cast<std::size_t>(mset)].name == deck.kept->setNames[set];
    std::vector<std::uint64_t> numbers;
    const std::vector<std::size_t> elements = ElementsOf(m_mesh, deck, set, &numbers);
    if (isItself && numbers.empty()) continue;  // written with the sets of the tree
    for (const std::size_t at : elements) numbers.push_back(m_mesh.Places()[at].id);
    WriteSet(deck.kept->setNames[set], numbers);
    if (mset >= 0 && m_model.sets[static_cast<std::size_t>(mset)].name == deck.kept->setNames[set]) {
      own[static_cast<std::size_t>(mset)] = false;
    }
  }
  // What the file had in no set got one from us, which the file does not need.
  const std::int32_t rest = deck.kept->rest;
  const auto isInRest = [rest](const ExportSet& set) { return set.parent == rest; };
  if (rest >= 0 && std::none_of(m_model.sets.begin(), m_model.sets.end(), isInRest)) {
    own[static_cast<std::size_t>(rest)] = false;
  }
}

void DeckWriter::WriteSets() {
  std::vector<bool> own(m_model.sets.size(), true);
  for (Deck& deck : m_decks) WriteSetsOf(deck, own);
  std::vector<std::uint64_t> numbers;
  for (const std::int32_t set : m_mesh.Tree().ChildrenFirst()) {
    const auto place = static_cast<std::size_t>(set);
    if (!own[place] || m_mesh.IsEmpty(place)) continue;
    m_mesh.Tree().ListOf(set, numbers);
    std::vector<std::string> names;
    for (const std::int32_t child : m_mesh.Tree().NamesIn(set)) {
      if (!m_mesh.IsEmpty(static_cast<std::size_t>(child))) {
        names.push_back(m_model.sets[static_cast<std::size_t>(child)].name);
      }
    }
    WriteSet(m_model.sets[place].name, numbers, names);
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
    m_file.Look();
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

InpFitted DeckWriter::FitGenerator(const Deck& deck, const InpCard& card) const {
  InpFitted fitted = Fit(card, deck.fit);
  if ((m_isMixed || m_decks.size() > 1) && !fitted.loss.IsAny()) {
    fitted.loss = {"what it makes may have the numbers of other nodes or elements", "*" + card.keyword};
  }
  return fitted;
}

/// Sets lack what is not made for them, wherever else they are told of: what names them would mean something else.
void DeckWriter::LoseGenerated(Deck& deck) const {
  for (const InpCard& card : deck.cards) {
    if (!IsInpGenerator(card.keyword) || !FitGenerator(deck, card).loss.IsAny()) continue;
    for (const auto& [kind, name] : MadeBy(card)) deck.fit.LosePart(kind, name);
  }
  // Sets are told of before others list them.
  for (std::size_t set = 0; set < deck.listed.size(); ++set) {
    const auto isLost = [&deck](const std::string& name) {
      return deck.fit.IsPartLost(InpName::ElementSet, name);
    };
    const std::vector<std::string>& names = deck.listed[set].names;
    if (std::any_of(names.begin(), names.end(), isLost)) {
      deck.fit.LosePart(InpName::ElementSet, deck.kept->record.sets[set].name);
    }
  }
}

void DeckWriter::WriteOther(Deck& deck, const InpCard& card) {
  constexpr std::string_view kMesh[] = {"NODE", "ELEMENT", "USERELEMENT", "ELSET"};
  if (std::find(std::begin(kMesh), std::end(kMesh), card.keyword) != std::end(kMesh)) return;
  InpFitted fitted = IsInpGenerator(card.keyword) ? FitGenerator(deck, card) : Fit(card, deck.fit);
  if (IsInpSection(card.keyword)) m_properties.FitSection(deck, card, fitted);
  if (card.keyword == "MATERIAL" || card.keyword == "ELASTIC" || card.keyword == "DENSITY") {
    m_properties.FitValues(deck, card, fitted);
  }
  WriteFitted(deck, card, std::move(fitted));
}

/// Sections for elements whose property is another one than the decks say.
void DeckWriter::WriteOwnSections() {
  std::int32_t number = 0;
  for (std::size_t set = 0; set < m_model.sets.size(); ++set) {
    const std::vector<std::uint64_t> elements = m_properties.ElementsWithAnother(set);
    if (elements.empty()) continue;
    std::string name = OwnElementsName(++number);
    const auto isTaken = [&name](const Deck& deck) { return deck.setOf.contains(UpperCase(name)); };
    while (std::any_of(m_decks.begin(), m_decks.end(), isTaken)) name = OwnElementsName(++number);
    WriteSet(name, elements);
    const auto property = static_cast<std::size_t>(m_model.sets[set].property);
    WriteInpSection(m_model, m_model.properties[property], name, m_file);
  }
}

void DeckWriter::WriteOwnMaterials() {
  std::set<std::int32_t> kept;
  for (const Deck& deck : m_decks) kept.insert(deck.kept->materials.begin(), deck.kept->materials.end());
  for (std::size_t i = 0; i < m_model.materials.size(); ++i) {
    if (!kept.contains(static_cast<std::int32_t>(i))) WriteInpMaterial(m_model.materials[i], m_file);
  }
}

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
