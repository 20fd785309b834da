#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/exchange/formats/InpRules.h"

namespace qd::workbench {

class InpInstances;

/// One keyword of a solver input file with its data lines, as they stand in a text.
struct InpCard {
  struct Parameter {
    std::string name;  ///< upper case, without blanks
    std::size_t at = 0;
    std::size_t length = 0;  ///< of the value in the header, quotation marks included; 0 for none
  };
  std::string keyword;                     ///< upper case, without blanks
  std::string header;                      ///< in one line
  std::vector<Parameter> parameters;       ///< in their order
  std::vector<std::string_view> comments;  ///< lines before it
  std::vector<std::string_view> lines;     ///< data, with the comments between them

  /// The value of a parameter without quotation marks, empty when it is missing.
  std::string Value(std::string_view parameter) const;
  bool Has(std::string_view parameter) const;
  /// The header with other values for some parameters, as they are to be written; an empty one leaves its
  /// parameter out.
  std::string HeaderWith(const std::map<std::string, std::string>& others) const;
};

/// Divides a text into its cards; they stay good as long as it. What stands before the first keyword and behind
/// the last one comes as comments of a card without keyword. `look` is called at each line and may throw.
std::vector<InpCard> CardsOf(
    std::string_view text, const std::function<void()>& look = [] {});

bool IsComment(std::string_view line);

/// How names and numbers of a deck are to be written.
class InpFit {
 public:
  std::uint64_t nodes = 0;                  ///< added to numbers of nodes
  std::uint64_t elements = 0;               ///< likewise
  std::vector<std::uint64_t> lostNodes;     ///< as written; in ascending order
  std::vector<std::uint64_t> lostElements;  ///< likewise
  const InpInstances* instances = nullptr;  ///< whose numbers may be told as INSTANCE.NUMBER; null for none
  std::function<void()> look = [] {};       ///< called at each bit of work; may throw

  /// A name that is written otherwise; what is not told stays as it is.
  void Rename(InpName kind, const std::string& from, const std::string& to);
  /// A name that nothing written defines so far: only cards that define it may name it.
  void Lose(InpName kind, const std::string& name);
  /// Takes back that a name is lost.
  void Keep(InpName kind, const std::string& name);
  /// A set of which something is not made for good: no card may name it but those that tell of the mesh, and
  /// sections, which tell what the rest is made of.
  void LosePart(InpName kind, const std::string& name);
  bool IsPartLost(InpName kind, std::string_view name) const;
  bool HasLostParts() const;
  /// Null for what stays as it is, empty for what is lost.
  const std::string* Find(InpName kind, std::string_view name) const;
  /// How a name is written, lost or not.
  std::string Written(InpName kind, std::string_view name) const;

 private:
  using Names = std::set<std::string, std::less<>>;  // in upper case
  std::array<std::map<std::string, std::string, std::less<>>, kInpNames> m_renamed;
  std::array<Names, kInpNames> m_lost;
  std::array<Names, kInpNames> m_partLost;
};

/// Why something cannot be written.
struct InpLoss {
  std::string reason;  ///< for who reads the file; empty when nothing is lost
  std::string what;    ///< the name or number that is missing
  bool IsAny() const { return !reason.empty(); }
};

/// A card with its names and numbers as they fit.
struct InpFitted {
  struct Line {
    std::string text;
    InpLoss loss{};
  };
  std::string header;
  InpLoss loss;  ///< why none of it can be written
  std::vector<Line> lines;
  std::vector<InpLoss> left;  ///< what went from lists
};
/// What NAME= of a keyword names, or another parameter; Other for neither.
InpName InpNameOfParameter(const InpCard& card, const std::string& parameter);
InpFitted Fit(const InpCard& card, const InpFit& fit);
/// The sets that a card which makes nodes or elements puts them into.
std::vector<std::pair<InpName, std::string>> MadeBy(const InpCard& card);
/// What a card gives a name to; element sets and materials, which stand in the tree, are not told here.
std::pair<InpName, std::string> DefinedBy(const InpCard& card);

/// A number that stands alone in a field.
std::optional<std::uint64_t> InpNumberOf(std::string_view field);
/// A name as it stands in a deck: in quotation marks unless it is a plain word, since one that begins with a digit
/// is taken for a number in lists.
std::string QuotedInpName(const std::string& name);

}  // namespace qd::workbench
