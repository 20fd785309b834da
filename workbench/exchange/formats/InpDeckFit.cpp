#include "workbench/exchange/formats/InpDeckFit.h"

#include <algorithm>
#include <utility>

#include "workbench/exchange/formats/InpLines.h"
#include "workbench/text/Ascii.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

std::optional<InpRun> InpRunOf(std::string_view line) {
  std::vector<std::string_view> fields;
  InpLines::Fields(line, fields);
  InpRun run;
  std::uint64_t* const to[] = {&run.first, &run.last, &run.step};
  if (fields.empty() || fields.size() > 3) return std::nullopt;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const auto number = InpNumberOf(fields[i]);
    if (!number) return std::nullopt;
    *to[i] = *number;
  }
  if (fields.size() == 1) run.last = run.first;
  const bool sound = run.step > 0 && run.first <= run.last && run.last < (std::uint64_t{1} << 62U);
  // A step beyond the end would lead back to small numbers.
  if (sound && run.step > run.last - run.first) run = {run.first, run.first, 1};
  return sound ? std::optional(run) : std::nullopt;
}

namespace {

/// Reads what the text lists in each element set.
void ReadLists(InpFittedDeck& deck) {
  deck.listed.resize(deck.kept->record.sets.size());
  const std::uint64_t behind = deck.fit.elements;
  std::vector<std::string_view> fields;
  for (std::size_t place = 0; place < deck.cards.size(); ++place) {
    const InpCard& card = deck.cards[place];
    const bool isElement = card.keyword == "ELEMENT";
    if (!isElement && card.keyword != "ELSET") continue;
    const auto found = deck.setOf.find(UpperCase(card.Value("ELSET")));
    if (found == deck.setOf.end()) continue;
    InpListed& listed = deck.listed[found->second];
    listed.withElements = listed.withElements || isElement;
    if (!isElement && listed.cards++ == 0) listed.firstCard = place;
    listed.lastCard = place;
    for (const std::string_view line : card.lines) {
      if (IsComment(line)) continue;
      const bool isRange = isElement ? line.front() != '=' : card.Has("GENERATE");
      if (isRange) {
        if (const auto run = InpRunOf(line))
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

/// Whether a set is told in pieces, some of which other readers would pass over, although a plain list of numbers
/// says the same. It does not where an element is listed twice: solvers print such a one twice.
bool IsBetterListed(const InpDeckMesh& mesh, const InpFittedDeck& deck, std::size_t set, std::size_t& steps) {
  const InpListed& listed = deck.listed[set];
  if (listed.names.empty() && listed.cards + (listed.withElements ? 1 : 0) < 2) return false;
  std::uint64_t times = 0;
  std::vector<std::size_t> open{set};
  while (!open.empty()) {
    const InpListed& at = deck.listed[open.back()];
    open.pop_back();
    // Sets that name each other in a circle, or grow with each level.
    if (steps == 0) return false;
    --steps;
    for (const InpRun& run : at.runs) times += (run.last - run.first) / run.step + 1;
    for (const std::string& name : at.names) {
      const auto found = deck.setOf.find(UpperCase(name));
      // Of a set that comes later a solver knows nothing yet.
      if (found == deck.setOf.end() || deck.listed[found->second].lastCard > at.firstCard) return false;
      open.push_back(found->second);
    }
  }
  std::vector<std::uint64_t> literals;
  return ElementsOf(mesh, deck, set, &literals).size() + literals.size() == times;
}

}  // namespace

std::vector<std::size_t> ElementsOf(const InpDeckMesh& mesh, const InpFittedDeck& deck, std::size_t set,
                                    std::vector<std::uint64_t>* literals) {
  std::vector<std::size_t> elements;
  const std::int32_t mset = deck.kept->msets[set];
  const bool whole = mset >= 0 && !deck.kept->record.sets[set].shared;
  if (mset >= 0) {
    for (const std::uint64_t id : mesh.Tree().ElementsIn(mset)) elements.push_back(mesh.Range(id, id).first);
  }
  std::vector<std::size_t> open{set};
  std::set<std::size_t> seen{set};
  while (!open.empty() && !(whole && literals == nullptr)) {
    const InpListed& listed = deck.listed[open.back()];
    open.pop_back();
    for (const InpRun& run : listed.runs) {
      const auto [from, to] = mesh.Range(run.first, run.last);
      for (std::size_t at = from; at < to && !whole; ++at) {
        mesh.Look();
        if ((mesh.Places()[at].id - run.first) % run.step == 0) elements.push_back(at);
      }
      if (literals == nullptr) continue;
      const auto first = std::lower_bound(deck.literals.begin(), deck.literals.end(), run.first);
      for (auto at = first; at != deck.literals.end() && *at <= run.last; ++at) {
        mesh.Look();
        if ((*at - run.first) % run.step == 0) literals->push_back(*at);
      }
    }
    for (const std::string& name : listed.names) {
      mesh.Look();
      const auto found = deck.setOf.find(UpperCase(name));
      if (found != deck.setOf.end() && seen.insert(found->second).second) open.push_back(found->second);
    }
  }
  std::sort(elements.begin(), elements.end());
  elements.erase(std::unique(elements.begin(), elements.end()), elements.end());
  return elements;
}

std::optional<InpFittedDeck> InpDeckFitter::Take(const ExportDeck& kept) {
  InpFittedDeck deck;
  deck.kept = &kept;
  const auto look = [&mesh = m_mesh] { mesh.Look(); };
  deck.fit.look = look;
  if (kept.record.text != nullptr) deck.cards = CardsOf(*kept.record.text, look);
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
    m_notes.Add("IDS_WB_EXPORT_DECK_WITHOUT_MESH", ToUtf8(kept.record.name));
    return std::nullopt;
  }
  TakeNames(deck);
  ReadLists(deck);
  FitSets(deck);
  FitMaterials(deck);
  return deck;
}

/// Finds which nodes and elements of a deck are not among what is written. False when all of them are missing.
bool InpDeckFitter::ReadNumbers(InpFittedDeck& deck) {
  // More than any model has, for all decks together; a text that was meddled with ends here.
  constexpr std::uint64_t kMost = std::uint64_t{1} << 26U;
  bool any = false;
  for (const InpCard& card : deck.cards) {
    const bool isNode = card.keyword == "NODE";
    if (!isNode && card.keyword != "ELEMENT") continue;
    const std::uint64_t behind = isNode ? deck.fit.nodes : deck.fit.elements;
    auto& lost = isNode ? deck.fit.lostNodes : deck.fit.lostElements;
    for (const std::string_view line : card.lines) {
      if (IsComment(line)) continue;
      if (!isNode && line.front() == '=') {
        const auto number = InpNumberOf(Trimmed(line.substr(1, std::min(line.find(','), line.size()) - 1)));
        if (number) deck.literals.push_back(*number + behind);
        continue;
      }
      const auto run = InpRunOf(line);
      if (!run || (m_numbers += (run->last - run->first) / run->step + 1) > kMost) {
        throw ImportError{"IDS_WB_EXPORT_DECK_DAMAGED", std::string(card.header.substr(0, 60))};
      }
      for (std::uint64_t number = run->first + behind; number <= run->last + behind; number += run->step) {
        const bool there = isNode ? m_mesh.HasNode(number)
                                  : m_mesh.Range(number, number).first != m_mesh.Range(number, number).second;
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
void InpDeckFitter::TakeNames(InpFittedDeck& deck) {
  std::array<std::map<std::string, std::string>, kInpNames> own;  // by name in upper case
  for (const InpCard& card : deck.cards) {
    const auto [kind, name] = DefinedBy(card);
    if (!name.empty()) own[static_cast<std::size_t>(kind)].emplace(UpperCase(name), name);
  }
  for (std::size_t kind = 0; kind < kInpNames; ++kind) {
    for (const auto& [key, name] : own[kind]) {
      std::string suffix;
      for (int number = 2;
           m_taken[kind].contains(key + suffix) || (!suffix.empty() && own[kind].contains(key + suffix));
           ++number) {
        suffix = "-" + std::to_string(number);
      }
      if (!suffix.empty()) {
        const std::string other = name + suffix;
        deck.fit.Rename(static_cast<InpName>(kind), name, other);
        m_notes.Add("IDS_WB_EXPORT_DECK_RENAMED", std::string(name).append(" → ").append(other));
      }
      m_taken[kind].insert(key + suffix);
    }
  }
}

void InpDeckFitter::FitSets(InpFittedDeck& deck) {
  const auto& sets = deck.kept->record.sets;
  deck.states.assign(sets.size(), InpDeckSet::Text);
  std::size_t steps = 1'000'000;  // to be taken through sets in sets
  for (std::size_t set = 0; set < sets.size(); ++set) {
    const std::int32_t mset = deck.kept->msets[set];
    bool same = deck.fit.lostElements.empty();
    if (mset >= 0) {
      const bool holdsTheSame =
          m_mesh.Mark(static_cast<std::size_t>(mset)) == ElementMark{sets[set].count, sets[set].mark};
      same = holdsTheSame && (same || !sets[set].shared);
    }
    if (!same || IsBetterListed(m_mesh, deck, set, steps)) deck.states[set] = InpDeckSet::Numbers;
  }
  // A set that lists one that cannot stay as it stands there cannot either.
  std::vector<std::vector<std::size_t>> listing(sets.size());
  std::vector<std::size_t> open;
  for (std::size_t set = 0; set < sets.size(); ++set) {
    for (const std::string& name : deck.listed[set].names) {
      const auto found = deck.setOf.find(UpperCase(name));
      if (found != deck.setOf.end()) listing[found->second].push_back(set);
    }
    if (deck.states[set] != InpDeckSet::Text) open.push_back(set);
  }
  while (!open.empty()) {
    const std::size_t lost = open.back();
    open.pop_back();
    for (const std::size_t set : listing[lost]) {
      if (std::exchange(deck.states[set], InpDeckSet::Numbers) == InpDeckSet::Text) open.push_back(set);
    }
  }
  for (std::size_t set = 0; set < sets.size(); ++set) {
    const std::string& name = sets[set].name;
    const std::string& now = deck.kept->setNames[set];
    if (now != name) deck.fit.Rename(InpName::ElementSet, name, now);
    if (deck.states[set] == InpDeckSet::Text) continue;
    std::vector<std::uint64_t> literals;
    if (!ElementsOf(m_mesh, deck, set, &literals).empty() || !literals.empty()) continue;
    deck.states[set] = InpDeckSet::Lost;
    deck.fit.Lose(InpName::ElementSet, name);
    m_notes.Add("IDS_WB_EXPORT_DECK_SET", name);
  }
}

void InpDeckFitter::FitMaterials(InpFittedDeck& deck) const {
  const auto& materials = deck.kept->record.materials;
  for (std::size_t i = 0; i < materials.size(); ++i) {
    const std::int32_t place = deck.kept->materials[i];
    if (place < 0) {
      deck.fit.Lose(InpName::Material, materials[i].name);
    } else if (const std::string& now = m_mesh.Model().materials[static_cast<std::size_t>(place)].name;
               now != materials[i].name) {
      deck.fit.Rename(InpName::Material, materials[i].name, now);
    }
  }
}

}  // namespace qd::workbench
