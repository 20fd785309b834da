#include "workbench/exchange/formats/InpCards.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <span>
#include <utility>

#include "workbench/exchange/formats/InpInstances.h"
#include "workbench/exchange/formats/InpLines.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

std::string_view Unquoted(std::string_view name) {
  const bool quoted = name.size() >= 2 && name.front() == '"' && name.back() == '"';
  return quoted ? name.substr(1, name.size() - 2) : name;
}

/// Takes a field to what fits; what is lost leaves the reason.
class Fitter {
 public:
  Fitter(const InpCard& card, const InpFit& fit) : m_card(card), m_fit(fit) {}

  InpFitted Work() {
    Header();
    const InpRule* rule = FindInpRule(m_card.keyword);
    if (rule == nullptr) {
      Unknown();
      return std::move(m_result);
    }
    const std::string fields = FieldsOf(*rule);
    std::size_t number = 0;
    bool any = false;
    InpLoss first;
    for (const std::string_view line : m_card.lines) {
      m_fit.look();
      if (IsComment(line)) {
        m_result.lines.push_back({std::string(line)});
        continue;
      }
      InpFitted::Line fitted = rule->loss == InpRule::kField ? List(line, fields) : One(line, fields, number);
      ++number;
      if (rule->loss == InpRule::kCard && fitted.loss.IsAny()) Lose(std::exchange(fitted.loss, {}));
      if (fitted.loss.IsAny() && !first.IsAny()) first = fitted.loss;
      any = any || !fitted.loss.IsAny();
      m_result.lines.push_back(std::move(fitted));
    }
    // A keyword all of whose lines go has nothing left to say.
    if (number > 0 && !any) Lose(first);
    return std::move(m_result);
  }

 private:
  void Lose(InpLoss loss) {
    if (!m_result.loss.IsAny()) m_result.loss = std::move(loss);
  }

  void Header() {
    m_result.header = m_card.header;
    for (auto parameter = m_card.parameters.rbegin(); parameter != m_card.parameters.rend(); ++parameter) {
      const char what = InpLetterOfParameter(m_card.keyword, parameter->name);
      if (what == '.' || parameter->length == 0) continue;
      const std::string_view value = std::string_view(m_card.header).substr(parameter->at, parameter->length);
      std::string instead;
      InpLoss loss;
      if (MayName(parameter->name, value, what)) {
        const std::string name(Unquoted(value));
        const std::string written = m_fit.Written(InpNameOfLetter(what), name);
        instead = written == name ? std::string(value) : QuotedInpName(written);
      } else {
        loss = Take(value, what, instead);
      }
      const bool lost = loss.IsAny();
      if (lost) Lose(std::move(loss));
      if (!lost && instead != value) m_result.header.replace(parameter->at, parameter->length, instead);
    }
  }

  bool IsMesh() const {
    return m_card.keyword == "NODE" || m_card.keyword == "ELEMENT" || m_card.keyword == "ELSET";
  }

  /// Whether a name is lost, but not to this card.
  bool MayName(const std::string& parameter, std::string_view value, char what) const {
    const InpName kind = InpNameOfLetter(what);
    const std::string* found = m_fit.Find(kind, Unquoted(value));
    if (found == nullptr || !found->empty()) return false;
    const bool isMaking =
        (IsInpGenerator(m_card.keyword) || IsMesh()) && (parameter == "NSET" || parameter == "ELSET");
    const bool isSection = IsInpSection(m_card.keyword) && parameter == "ELSET";
    if (m_fit.IsPartLost(kind, Unquoted(value))) return isMaking || isSection;
    const bool defines = parameter == "NAME" || (parameter == "NSET" && kind == InpName::NodeSet);
    return isMaking || (defines && DefinedBy(m_card) == std::pair(kind, std::string(Unquoted(value))));
  }

  static InpLoss NotWritten(InpName kind, std::string_view name) {
    return {std::string(InpWordFor(kind)) + " " + std::string(name) + " is not written", std::string(name)};
  }

  /// What a field becomes; the reason when it is lost.
  InpLoss Take(std::string_view field, char what, std::string& instead) const {
    instead = field;
    const bool mayBeNumber = what == 'n' || what == 'e';
    if (const auto number = InpNumberOf(field); number && mayBeNumber) {
      if (*number == 0) return {};
      const bool isNode = what == 'n';
      const std::uint64_t written = *number + (isNode ? m_fit.nodes : m_fit.elements);
      const auto& lost = isNode ? m_fit.lostNodes : m_fit.lostElements;
      if (std::binary_search(lost.begin(), lost.end(), written)) {
        const std::string digits = std::to_string(written);
        return {std::string(isNode ? "node " : "element ") + digits + " is not written", digits};
      }
      instead = std::to_string(written);
      return {};
    }
    if (const auto number = NumberInInstance(field, what); number && mayBeNumber) {
      instead = std::to_string(*number);
      return {};
    }
    const InpName kind = InpNameOfLetter(what);
    if (m_fit.instances != nullptr && field.find('"') != std::string_view::npos) {
      const auto [instance, rest] = m_fit.instances->Split(field);
      const std::string dotted = instance != nullptr ? instance->name + "." + rest : std::string();
      if (instance != nullptr) instead = QuotedInpName(dotted);
      if (instance != nullptr && (IsMesh() || !m_fit.IsPartLost(kind, dotted))) return {};
      if (instance != nullptr) return NotWritten(kind, dotted);
    }
    const std::string_view name = Unquoted(field);
    if (IsMesh() && m_fit.IsPartLost(kind, name)) {
      const std::string written = m_fit.Written(kind, name);
      if (written != name) instead = QuotedInpName(written);
      return {};
    }
    const std::string* found = m_fit.Find(kind, name);
    if (found == nullptr) return {};
    if (found->empty()) return NotWritten(kind, name);
    instead = QuotedInpName(*found);
    return {};
  }

  std::optional<std::uint64_t> NumberInInstance(std::string_view field, char what) const {
    if (m_fit.instances == nullptr) return std::nullopt;
    const auto [instance, rest] = m_fit.instances->Split(field);
    if (instance == nullptr) return std::nullopt;
    const auto number = InpNumberOf(rest);
    if (number) return *number + (what == 'n' ? instance->nodes : instance->elements);
    return std::nullopt;
  }

  std::string FieldsOf(const InpRule& rule) const {
    const std::string type = CompactInpWord(m_card.Value("TYPE"));
    if (rule.keyword == "SURFACE" && type == "NODE") return "n";
    if (rule.keyword == "MODELCHANGE" && type == "CONTACTPAIR") return "ss";
    if (rule.keyword == "SUBMODEL" && type == "SURFACE") return "(s)";
    if (rule.keyword == "EQUATION" && m_card.Has("REMOVE")) return "n";
    if (rule.keyword == "INITIALCONDITIONS") {
      return type == "STRESS" || type == "PLASTICSTRAIN" || type == "SOLUTION" ? "e" : "n";
    }
    if (rule.keyword == "SHELLSECTION" && m_card.Has("COMPOSITE")) return "..mo";
    return std::string(rule.fields);
  }

  /// The letter of a field of a line.
  char WhatOf(const std::string& fields, std::size_t place, std::string_view line) const {
    const std::string& keyword = m_card.keyword;
    if (place == 2 && (keyword == "FILM" || keyword == "RADIATE" || keyword == "DLOAD")) {
      // The temperature of the surroundings, or a pressure, may be that of a node.
      std::vector<std::string_view> all;
      InpLines::Fields(line, all);
      const std::string label = all.size() > 1 ? UpperCase(all[1]) : std::string();
      const bool isNode = keyword == "FILM"      ? label.find("FC") != std::string::npos
                          : keyword == "RADIATE" ? m_card.Has("ENVNODE")
                                                 : label.ends_with("NP");
      return isNode ? 'n' : '.';
    }
    const std::size_t open = fields.find('(');
    if (open == std::string::npos) return place < fields.size() ? fields[place] : '.';
    if (place < open) return fields[place];
    const std::size_t loop = fields.size() - open - 2;
    return fields[open + 1 + (place - open) % loop];
  }

  InpFitted::Line One(std::string_view line, const std::string& fields, std::size_t number) {
    std::vector<std::string_view> all;
    InpLines::Fields(line, all);
    // Groups of terms begin with how many there are; the name of a constraint comes first.
    const std::string& keyword = m_card.keyword;
    const bool isCount = (keyword == "EQUATION" || keyword == "EQUATIONF" || keyword == "NETWORKMPC") &&
                         fields.size() > 1 &&
                         std::count_if(all.begin(), all.end(), [](auto f) { return !f.empty(); }) == 1;
    if (isCount) return {std::string(line)};
    std::vector<std::pair<std::string_view, std::string>> changes;
    for (std::size_t place = 0; place < all.size(); ++place) {
      if (keyword == "MPC" && number == 0 && place == 0) continue;
      const char what = WhatOf(fields, place, line);
      if (what == '.' || all[place].empty()) continue;
      std::string instead;
      if (InpLoss loss = Take(all[place], what, instead); loss.IsAny()) return {std::string(line), loss};
      if (instead != all[place]) changes.emplace_back(all[place], std::move(instead));
    }
    std::string text(line);
    for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
      const auto at = static_cast<std::size_t>(change->first.data() - line.data());
      text.replace(at, change->first.size(), change->second);
    }
    return {std::move(text)};
  }

  /// A line of a list: what is lost goes out of it.
  InpFitted::Line List(std::string_view line, const std::string& fields) {
    std::vector<std::string_view> all;
    InpLines::Fields(line, all);
    const char what = fields.size() > 1 ? fields[1] : fields[0];
    if (m_card.Has("GENERATE")) return Range(line, all, what);
    std::vector<std::string> stay;
    InpLoss loss;
    bool changed = false;
    for (const std::string_view field : all) {
      std::string instead;
      InpLoss lost = field.empty() ? InpLoss() : Take(field, what, instead);
      if (lost.IsAny()) {
        m_result.left.push_back(lost);
        loss = std::move(lost);
      } else {
        stay.push_back(instead);
      }
      changed = changed || instead != field;
    }
    if (!loss.IsAny() && !changed) return {std::string(line)};
    if (stay.empty()) return {std::string(line), loss};
    std::string text;
    for (const std::string& field : stay) text += (text.empty() ? "" : ", ") + field;
    // A single field would be taken for the only one of its card otherwise; a comma at the end does no harm.
    return {line.ends_with(',') ? text + "," : text};
  }

  InpFitted::Line Range(std::string_view line, const std::vector<std::string_view>& all, char what) {
    const auto first = all.empty() ? std::nullopt : InpNumberOf(all[0]);
    const auto last = all.size() > 1 && !all[1].empty() ? InpNumberOf(all[1]) : first;
    const auto step = all.size() > 2 && !all[2].empty() ? InpNumberOf(all[2]) : std::optional<std::uint64_t>(1);
    if (!first || !last || !step || *step == 0) return {std::string(line)};
    const std::uint64_t behind = what == 'n' ? m_fit.nodes : m_fit.elements;
    const auto& lost = what == 'n' ? m_fit.lostNodes : m_fit.lostElements;
    const auto isIn = [&](std::uint64_t number) {
      return number >= *first + behind && number <= *last + behind && (number - *first - behind) % *step == 0;
    };
    // The range is cut where numbers of it are lost.
    std::string text;
    std::uint64_t from = *first + behind;
    std::size_t gone = 0;
    const auto add = [&](std::uint64_t to) {
      if (to < from) return;
      text += (text.empty() ? "" : "\n") + std::to_string(from) + ", " + std::to_string(to) + ", " +
              std::to_string(*step);
    };
    for (auto at = std::lower_bound(lost.begin(), lost.end(), from); at != lost.end() && *at <= *last + behind;
         ++at) {
      m_fit.look();
      if (!isIn(*at)) continue;
      ++gone;
      if (*at > from) add(*at - *step);
      from = *at + *step;
    }
    if (gone == 0 && behind == 0) return {std::string(line)};
    if (gone > 0) {
      const std::string range = std::string(all[0]) + "-" + std::string(all.size() > 1 ? all[1] : all[0]);
      m_result.left.push_back(
          {std::to_string(gone) + (what == 'n' ? " nodes" : " elements") + " of " + range + " are not written",
           range});
    }
    if (from <= *last + behind) add(*last + behind);
    if (text.empty()) return {std::string(line), {"none of these numbers is written", std::string(all[0])}};
    return {std::move(text)};
  }

  /// Of a keyword that is not known the data can be kept only while all numbers and names are what they were.
  void Unknown() {
    for (const std::string_view line : m_card.lines) m_result.lines.push_back({std::string(line)});
    const bool numbers =
        m_fit.nodes != 0 || m_fit.elements != 0 || !m_fit.lostNodes.empty() || !m_fit.lostElements.empty();
    std::vector<std::string_view> all;
    for (const std::string_view line : m_card.lines) {
      m_fit.look();
      if (IsComment(line)) continue;
      InpLines::Fields(line, all);
      for (const std::string_view field : all) {
        if ((numbers && InpNumberOf(field)) || NumberInInstance(field, '.')) {
          Lose({"what numbers of this keyword stand for is not known, and numbers have changed",
                std::string(field)});
        }
        for (std::size_t kind = 0; kind < kInpNames; ++kind) {
          if (m_fit.Find(static_cast<InpName>(kind), Unquoted(field)) == nullptr) continue;
          Lose({"whether " + std::string(field) + " is a name that has changed is not known", std::string(field)});
        }
      }
    }
  }

  const InpCard& m_card;
  const InpFit& m_fit;
  InpFitted m_result;
};

}  // namespace

// ---- cards ----------------------------------------------------------------------------------------------

std::optional<std::uint64_t> InpNumberOf(std::string_view field) {
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
  const bool whole = error == std::errc() && end == field.data() + field.size();
  return whole ? std::optional(number) : std::nullopt;
}

bool IsComment(std::string_view line) {
  return line.empty() || line.starts_with("**");
}

bool InpCard::Has(std::string_view parameter) const {
  return std::any_of(parameters.begin(), parameters.end(),
                     [&](const Parameter& known) { return known.name == parameter; });
}

std::string InpCard::Value(std::string_view parameter) const {
  const auto found = std::find_if(parameters.begin(), parameters.end(),
                                  [&](const Parameter& known) { return known.name == parameter; });
  if (found == parameters.end()) return {};
  return std::string(Unquoted(std::string_view(header).substr(found->at, found->length)));
}

std::string InpCard::HeaderWith(const std::map<std::string, std::string>& others) const {
  std::string text = "*" + keyword;
  for (const Parameter& parameter : parameters) {
    const auto other = others.find(parameter.name);
    if (other != others.end() && other->second.empty()) continue;
    text += ", " + parameter.name;
    if (parameter.length == 0) continue;
    text += "=" + (other != others.end() ? other->second : header.substr(parameter.at, parameter.length));
  }
  return text;
}

namespace {

void ParseHeader(InpCard& card) {
  const std::string_view header = card.header;
  std::size_t at = 0;
  while (at <= header.size()) {
    const std::size_t end = std::min(header.find(',', at), header.size());
    const std::string_view field = header.substr(at, end - at);
    if (at == 0) {
      card.keyword = CompactInpWord(field.substr(1));
    } else if (const std::string_view trimmed = Trimmed(field); !trimmed.empty()) {
      const std::size_t equals = trimmed.find('=');
      InpCard::Parameter parameter;
      parameter.name = CompactInpWord(trimmed.substr(0, equals));
      if (equals != std::string_view::npos) {
        const std::string_view value = Trimmed(trimmed.substr(equals + 1));
        parameter.at = value.empty() ? 0 : static_cast<std::size_t>(value.data() - header.data());
        parameter.length = value.size();
      }
      card.parameters.push_back(std::move(parameter));
    }
    at = end + 1;
  }
}

}  // namespace

std::vector<InpCard> CardsOf(std::string_view text, const std::function<void()>& look) {
  std::vector<InpCard> cards;
  InpCard card;
  bool open = false;  // a header goes on in the next line
  const auto finish = [&] {
    std::vector<std::string_view> behind;
    if (!card.keyword.empty()) {
      while (!card.lines.empty() && IsComment(card.lines.back())) {
        behind.push_back(card.lines.back());
        card.lines.pop_back();
      }
      std::reverse(behind.begin(), behind.end());
      cards.push_back(std::move(card));
    } else {
      // Before the first keyword a line of data belongs to nothing.
      std::copy_if(card.lines.begin(), card.lines.end(), std::back_inserter(behind), IsComment);
    }
    card = {};
    card.comments = std::move(behind);
  };
  while (!text.empty()) {
    look();
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = Trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (open) {
      card.header += line;
    } else if (line.starts_with('*') && !line.starts_with("**")) {
      finish();
      card.header = line;
      card.keyword = "*";
    } else {
      card.lines.push_back(line);
      continue;
    }
    open = card.header.back() == ',' && !text.empty();
    if (!open) ParseHeader(card);
  }
  finish();
  if (!card.comments.empty()) cards.push_back(std::move(card));
  return cards;
}

// ---- fitting --------------------------------------------------------------------------------------------

void InpFit::Rename(InpName kind, const std::string& from, const std::string& to) {
  m_renamed[static_cast<std::size_t>(kind)][UpperCase(from)] = to;
}

void InpFit::Lose(InpName kind, const std::string& name) {
  m_lost[static_cast<std::size_t>(kind)].insert(UpperCase(name));
}

void InpFit::Keep(InpName kind, const std::string& name) {
  m_lost[static_cast<std::size_t>(kind)].erase(UpperCase(name));
}

void InpFit::LosePart(InpName kind, const std::string& name) {
  m_partLost[static_cast<std::size_t>(kind)].insert(UpperCase(name));
}

bool InpFit::IsPartLost(InpName kind, std::string_view name) const {
  const Names& lost = m_partLost[static_cast<std::size_t>(kind)];
  return !lost.empty() && lost.contains(UpperCase(name));
}

bool InpFit::HasLostParts() const {
  return std::any_of(m_partLost.begin(), m_partLost.end(), [](const Names& names) { return !names.empty(); });
}

const std::string* InpFit::Find(InpName kind, std::string_view name) const {
  static const std::string kLost;
  const auto place = static_cast<std::size_t>(kind);
  if (m_renamed[place].empty() && m_lost[place].empty() && m_partLost[place].empty()) return nullptr;
  const std::string key = UpperCase(name);
  if (m_lost[place].contains(key) || m_partLost[place].contains(key)) return &kLost;
  const auto found = m_renamed[place].find(key);
  return found != m_renamed[place].end() ? &found->second : nullptr;
}

std::string InpFit::Written(InpName kind, std::string_view name) const {
  const auto& renamed = m_renamed[static_cast<std::size_t>(kind)];
  const auto found = renamed.find(UpperCase(name));
  return found != renamed.end() ? found->second : std::string(name);
}

InpName InpNameOfParameter(const InpCard& card, const std::string& parameter) {
  return InpNameOfLetter(InpLetterOfParameter(card.keyword, parameter));
}

std::pair<InpName, std::string> DefinedBy(const InpCard& card) {
  if (card.keyword == "NSET" || card.keyword == "NODE") return {InpName::NodeSet, card.Value("NSET")};
  const InpName kind = InpNameOfParameter(card, "NAME");
  if (kind == InpName::Other || kind == InpName::Material) return {InpName::Other, {}};
  return {kind, card.Value("NAME")};
}

std::vector<std::pair<InpName, std::string>> MadeBy(const InpCard& card) {
  std::vector<std::pair<InpName, std::string>> made;
  if (!IsInpGenerator(card.keyword)) return made;
  for (const auto& [parameter, kind] : {std::pair("NSET", InpName::NodeSet), {"ELSET", InpName::ElementSet}}) {
    if (std::string name = card.Value(parameter); !name.empty()) made.emplace_back(kind, std::move(name));
  }
  return made;
}

InpFitted Fit(const InpCard& card, const InpFit& fit) {
  return Fitter(card, fit).Work();
}

std::string QuotedInpName(const std::string& name) {
  if (name.empty()) return "\"\"";
  const auto isLetter = [](unsigned char letter) {
    return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z') || letter == '_' || letter >= 0x80;
  };
  const bool plain =
      isLetter(static_cast<unsigned char>(name.front())) &&
      std::all_of(name.begin(), name.end(), [&isLetter](unsigned char letter) {
        return isLetter(letter) || (letter >= '0' && letter <= '9') || letter == '-' || letter == '.';
      });
  return plain ? name : '"' + name + '"';
}

}  // namespace qd::workbench
