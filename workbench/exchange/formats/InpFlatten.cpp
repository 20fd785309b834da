#include "workbench/exchange/formats/InpFlatten.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>
#include <utility>

#include "workbench/exchange/formats/InpDeck.h"
#include "workbench/exchange/formats/InpDeckFit.h"
#include "workbench/exchange/formats/InpLines.h"
#include "workbench/exchange/formats/InpText.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

/// Where the data of a keyword hold points or directions, which go along with an instance.
struct Points {
  std::string_view keyword;
  std::size_t firstLine, lines;  // data lines, counted from 0
  std::size_t field, count;      // the first field, and points in a line
};
constexpr std::size_t kAll = SIZE_MAX;
constexpr Points kPoints[] = {{"ORIENTATION", 0, 1, 0, 3},     {"TRANSFORM", 0, 1, 0, 2},
                              {"BEAMSECTION", 1, 1, 0, 1},     {"BEAMGENERALSECTION", 1, 1, 0, 1},
                              {"DISTRIBUTION", 0, kAll, 1, 2}, {"NORMAL", 0, kAll, 2, 1}};

/// Whether the points of a card are places in space, which are shifted; otherwise they tell directions.
bool ArePlaces(const InpCard& card) {
  const std::string system = UpperCase(card.Value(card.keyword == "TRANSFORM" ? "TYPE" : "SYSTEM"));
  const bool isSystem = card.keyword == "ORIENTATION" || card.keyword == "TRANSFORM";
  return isSystem && !system.empty() && system.front() != 'R';
}

/// The line with its points moved; as it is when there are no numbers in their places.
std::string Moved(const std::string& line, const Points& points, const InpPlacement& placement, bool places) {
  std::vector<std::string_view> fields;
  InpLines::Fields(line, fields);
  std::vector<std::string> moved(fields.begin(), fields.end());
  for (std::size_t point = 0; point < points.count; ++point) {
    const std::size_t first = points.field + 3 * point;
    if (first >= fields.size()) break;
    InpPlacement::Point at{};
    for (std::size_t k = 0; k < 3 && first + k < fields.size(); ++k) {
      const std::string_view field = fields[first + k];
      const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), at[k]);
      if (!field.empty() && (error != std::errc() || end != field.data() + field.size())) return line;
    }
    at = places ? placement.Move(at) : placement.Turn(at);
    moved.resize(std::max(moved.size(), first + 3));
    for (std::size_t k = 0; k < 3; ++k) moved[first + k] = InpDigits(at[k]);
  }
  std::string text;
  for (const std::string& field : moved) text += (text.empty() ? "" : ", ") + field;
  return text;
}

class Flattener {
 public:
  Flattener(const ImportedDeck& deck, const InpInstances& instances,
            const std::map<std::string, std::string>& elementSets)
      : m_name(deck.name), m_cards(CardsOf(deck.text)), m_instances(instances), m_elementSets(elementSets) {
    m_assembly.instances = &instances;
    for (const InpInstance& instance : instances.All()) {
      if (!instance.placed) m_unplaced[UpperCase(instance.part)] = &instance;
    }
    bool isInside = false;  // a part or an instance
    for (const InpCard& card : m_cards) {
      if (card.keyword == "PART" || card.keyword == "INSTANCE") isInside = true;
      if (card.keyword == "ENDPART" || card.keyword == "ENDINSTANCE") isInside = false;
      if (const auto [kind, name] = DefinedBy(card); !isInside && !name.empty())
        m_outside.emplace(kind, UpperCase(name));
      if (!isInside) LoseMade(card, m_assembly, {});
      m_sectionOf.push_back(m_sections);
      if (IsInpSection(card.keyword)) ++m_sections;
    }
  }

  InpFlatDeck Work() {
    const InpCard* part = nullptr;          // whose cards are being read
    const InpInstance* instance = nullptr;  // in which we are
    for (std::size_t place = 0; place < m_cards.size(); ++place) {
      const InpCard& card = m_cards[place];
      if (card.keyword == "PART") {
        part = &card;
        m_parts[UpperCase(card.Value("NAME"))].push_back(place);  // for the comments before it
      } else if (card.keyword == "ENDPART") {
        Comments(card);
        // What the deck places nowhere stands in for itself.
        if (part != nullptr) AddUnplaced(UpperCase(part->Value("NAME")));
        part = nullptr;
      } else if (part != nullptr) {
        m_parts[UpperCase(part->Value("NAME"))].push_back(place);
      } else if (card.keyword == "INSTANCE") {
        Comments(card);
        instance = m_instances.Find(card.Value("NAME"));
        if (instance != nullptr) AddPart(*instance, place);
      } else if (card.keyword == "ASSEMBLY" || card.keyword == "ENDASSEMBLY" || card.keyword == "ENDINSTANCE") {
        Comments(card);
        instance = nullptr;
      } else if (instance != nullptr) {
        AddOf(*instance, place);
      } else {
        AddOfAssembly(place);
      }
    }
    return std::move(m_flat);
  }

 private:
  void Comments(const InpCard& card) {
    for (const std::string_view line : card.comments) Line(line);
  }
  void Line(std::string_view line) {
    CheckDeckLength(m_flat.text.size() + line.size(), m_name);
    m_flat.text += line;
    m_flat.text += '\n';
  }

  /// What is made of other nodes and elements is not kept, and neither are the cards that name the sets it is in.
  static void LoseMade(const InpCard& card, InpFit& fit, const std::string& before) {
    for (const auto& [kind, name] : MadeBy(card)) fit.LosePart(kind, before + name);
    if (card.keyword != "ELSET" || card.Has("GENERATE") || !fit.HasLostParts()) return;
    std::vector<std::string_view> fields;
    for (const std::string_view line : card.lines) {
      InpLines::Fields(line, fields);
      for (std::string_view field : fields) {
        if (field.size() > 1 && field.front() == '"' && field.back() == '"')
          field = field.substr(1, field.size() - 2);
        if (!fit.IsPartLost(InpName::ElementSet, before + std::string(field))) continue;
        fit.LosePart(InpName::ElementSet, before + card.Value("ELSET"));
      }
    }
  }

  /// What an instance makes of numbers and names: those that its part gives, and those of its own cards.
  void FitTo(const InpInstance& instance, std::size_t own) {
    m_fit = {};
    m_fit.nodes = instance.nodes;
    m_fit.elements = instance.elements;
    const auto rename = [&](const InpCard& card) {
      const auto [kind, name] = DefinedBy(card);
      if (!name.empty()) m_fit.Rename(kind, name, instance.name + "." + name);
      const std::string set = card.Value("ELSET");
      const bool isSet = card.keyword == "ELSET" || card.keyword == "ELEMENT";
      if (isSet && !set.empty()) m_fit.Rename(InpName::ElementSet, set, instance.name + "." + set);
    };
    const auto each = [&](const auto& work) {
      for (const std::size_t place : m_parts[UpperCase(instance.part)]) work(m_cards[place]);
      for (std::size_t at = own; at < m_cards.size() && m_cards[at].keyword != "ENDINSTANCE"; ++at)
        work(m_cards[at]);
    };
    const auto lose = [&](const InpCard& card) {
      LoseMade(card, m_fit, {});
      LoseMade(card, m_assembly, instance.name + ".");
    };
    each(rename);
    each(lose);
    if (m_fit.HasLostParts()) each(lose);  // sets that list them may stand before
  }

  /// For the cards of the assembly, of which many speak of the same instances.
  const InpFit& FitOf(const InpInstance& instance) {
    constexpr std::size_t kMost = 4'000'000;
    if (const auto known = m_fits.find(&instance); known != m_fits.end()) return known->second;
    m_fitted += m_parts[UpperCase(instance.part)].size();
    if (m_fitted > kMost) {
      m_fits.clear();
      m_fitted = 0;
    }
    FitTo(instance, kAll);
    return m_fits[&instance] = m_fit;
  }

  /// The cards of a part for an instance, which goes on behind the card `own`.
  void AddPart(const InpInstance& instance, std::size_t own = kAll) {
    FitTo(instance, own == kAll ? own : own + 1);
    for (const std::size_t place : m_parts[UpperCase(instance.part)]) {
      if (m_cards[place].keyword == "PART") {
        Comments(m_cards[place]);
      } else {
        AddOf(instance, place);
      }
    }
  }

  void AddUnplaced(const std::string& part) {
    const auto found = m_unplaced.find(part);
    if (found != m_unplaced.end()) AddPart(*found->second);
  }

  void AddOf(const InpInstance& instance, std::size_t place) {
    const InpCard& card = m_cards[place];
    InpFitted fitted = Fitted(card, m_fit);
    if (instance.placement.Moves()) Move(card, instance.placement, fitted);
    Add(place, fitted);
  }

  void AddOfAssembly(std::size_t place) {
    const InpCard& card = m_cards[place];
    const InpInstance* instance = card.Has("INSTANCE") ? m_instances.Find(card.Value("INSTANCE")) : nullptr;
    const bool isElements = card.keyword == "ELSET" || card.keyword == "ELEMENT";
    const std::string named = isElements ? card.Value("ELSET") : DefinedBy(card).second;
    const std::string other = isElements ? ElementSetOutside(named) : NameOutside(DefinedBy(card).first, named);
    LoseMade(card, m_assembly, {});
    // What it defines is the assembly's; what it lists is the instance's.
    InpFitted fitted = Fitted(card, instance != nullptr ? FitOf(*instance) : m_assembly);
    if (instance == nullptr && other == named) return Add(place, fitted);
    if (other != named && m_said.insert(named + "\n" + other).second)
      m_flat.renamed.push_back(named + " → " + other);
    std::map<std::string, std::string> values{{"INSTANCE", {}}};
    for (const char* parameter : {"NAME", "NSET", "ELSET"}) {
      if (other != named) values[parameter] = QuotedInpName(other);
    }
    fitted.header = card.HeaderWith(values);
    Add(place, fitted);
  }

  std::string ElementSetOutside(const std::string& name) const {
    const auto found = m_elementSets.find(UpperCase(name));
    return found != m_elementSets.end() ? found->second : name;
  }
  std::string NameOutside(InpName kind, const std::string& name) {
    if (name.empty()) return name;
    // Many cards may speak of one name, of which many others may be taken.
    const auto known = m_called.find({kind, name});
    if (known != m_called.end()) return known->second;
    return m_called[{kind, name}] = m_instances.NameOutside(
               name,
               [&](const std::string& other) {
                 return m_outside.contains({kind, UpperCase(other)});
               },
               [&](const InpInstance& instance, const std::string& rest) {
                 return FitOf(instance).Find(kind, rest) != nullptr;
               });
  }

  /// As Fit, and the numbers of the mesh, which the text holds in runs.
  static InpFitted Fitted(const InpCard& card, const InpFit& fit) {
    const bool isNode = card.keyword == "NODE";
    if (IsInpGenerator(card.keyword)) {
      InpFitted lost = Fit(card, {});
      lost.loss = {"what it makes may have the numbers of another instance", {}};
      return lost;
    }
    if (!isNode && card.keyword != "ELEMENT") return Fit(card, fit);
    InpCard bare = card;
    bare.lines.clear();
    InpFitted fitted = Fit(bare, fit);
    const std::uint64_t behind = isNode ? fit.nodes : fit.elements;
    for (const std::string_view line : card.lines) {
      const auto run = IsComment(line) ? std::nullopt : InpRunOf(line);
      if (!run) {
        fitted.lines.push_back({std::string(line)});
        continue;
      }
      std::string text = std::to_string(run->first + behind);
      if (run->last > run->first) text += "," + std::to_string(run->last + behind);
      if (run->step > 1) text += "," + std::to_string(run->step);
      fitted.lines.push_back({std::move(text)});
    }
    return fitted;
  }

  static void Move(const InpCard& card, const InpPlacement& placement, InpFitted& fitted) {
    const auto points = std::find_if(std::begin(kPoints), std::end(kPoints),
                                     [&](const Points& known) { return known.keyword == card.keyword; });
    if (points == std::end(kPoints)) return;
    std::size_t data = 0;
    for (InpFitted::Line& line : fitted.lines) {
      if (IsComment(line.text)) continue;
      const std::size_t at = data++;
      if (at < points->firstLine || at - points->firstLine >= points->lines) continue;
      line.text = Moved(line.text, *points, placement, ArePlaces(card));
    }
  }

  void Leave(const InpCard& card, const std::string& reason) {
    const std::string keyword = card.header.substr(0, card.header.find(','));
    if (m_left.insert(keyword).second) m_flat.left.push_back(keyword);
    Line("** QD: not kept: " + reason);
  }

  void Add(std::size_t place, const InpFitted& fitted) {
    const InpCard& card = m_cards[place];
    Comments(card);
    if (card.keyword.empty()) return;
    const bool lost = fitted.loss.IsAny();
    if (lost) {
      Leave(card, fitted.loss.reason);
    } else if (IsInpSection(card.keyword)) {
      m_flat.sections.push_back(m_sectionOf[place]);
    }
    Line(lost ? "** " + card.header : fitted.header);
    for (const InpFitted::Line& line : fitted.lines) {
      if (!lost && line.loss.IsAny()) Leave(card, line.loss.reason);
      Line(lost || line.loss.IsAny() ? "** " + line.text : line.text);
    }
    for (const InpLoss& left : fitted.left) Leave(card, left.reason);
  }

  const std::string& m_name;
  std::vector<InpCard> m_cards;
  std::vector<std::size_t> m_sectionOf;  // beside them: sections before it
  std::size_t m_sections = 0;
  const InpInstances& m_instances;
  InpFit m_assembly;
  InpFit m_fit;                                                     // of the instance at hand
  std::map<std::string, std::vector<std::size_t>> m_parts;          // cards by the part's name in upper case
  std::map<std::string, const InpInstance*> m_unplaced;             // by their part in upper case
  std::size_t m_fitted = 0;                                         // cards of parts that stand behind these
  std::map<const InpInstance*, InpFit> m_fits;                      // see FitOf
  const std::map<std::string, std::string>& m_elementSets;          // of the assembly: how they are called
  std::set<std::pair<InpName, std::string>> m_outside;              // names in upper case that are no part's
  std::map<std::pair<InpName, std::string>, std::string> m_called;  // see NameOutside
  std::set<std::string> m_said;                                     // renamings
  std::set<std::string> m_left;
  InpFlatDeck m_flat;
};

}  // namespace

InpFlatDeck FlattenInp(const ImportedDeck& deck, const InpInstances& instances,
                       const std::map<std::string, std::string>& elementSets) {
  return Flattener(deck, instances, elementSets).Work();
}

}  // namespace qd::workbench
