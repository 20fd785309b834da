#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/exchange/formats/ExportReport.h"
#include "workbench/exchange/formats/InpCards.h"
#include "workbench/exchange/formats/InpDeckMesh.h"

namespace qd::workbench {

/// Numbers "first,last,step" of a place for nodes or elements.
struct InpRun {
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  std::uint64_t step = 1;
};

/// Nothing for what is no run.
std::optional<InpRun> InpRunOf(std::string_view line);

/// What an element set of a deck lists itself.
struct InpListed {
  std::vector<InpRun> runs;  ///< numbers as written now
  std::vector<std::string> names;
  std::size_t cards = 0;      ///< *ELSET that tell of it
  std::size_t firstCard = 0;  ///< the first of them
  std::size_t lastCard = 0;   ///< the last that tells of it
  bool withElements = false;  ///< *ELEMENT name it too
};

/// How an element set of a deck is written.
enum class InpDeckSet : std::uint8_t {
  Text,     ///< as the deck has it
  Numbers,  ///< by the numbers of its elements
  Lost      ///< not at all: nothing of it is left
};

/// A kept deck with what of it fits the model as it is now.
struct InpFittedDeck {
  const ExportDeck* kept = nullptr;
  std::vector<InpCard> cards;
  InpFit fit;
  std::vector<InpDeckSet> states;            ///< beside the deck's sets
  std::map<std::string, std::size_t> setOf;  ///< by name in upper case
  std::vector<InpListed> listed;             ///< beside the deck's sets
  std::vector<std::uint64_t> literals;       ///< elements that no mesh set holds, as written now
  std::size_t firstMesh = 0;                 ///< card
  std::size_t firstStep = 0;                 ///< card
  std::size_t sections = 0;                  ///< that were written
};

/// The elements that a deck's set has now, by their places in the mesh: those of its mesh set, and, where only the
/// text knows them, those of the text that are still there. Numbers of those that no mesh set holds go to
/// literals, if it is given.
std::vector<std::size_t> ElementsOf(const InpDeckMesh& mesh, const InpFittedDeck& deck, std::size_t set,
                                    std::vector<std::uint64_t>* literals = nullptr);

/// Finds out how kept decks fit a mesh, one after another.
class InpDeckFitter {
 public:
  InpDeckFitter(const InpDeckMesh& mesh, ExportNotes& notes) : m_mesh(mesh), m_notes(notes) {}

  /// Nothing for a deck of whose mesh nothing is left, which is noted. Throws an ImportError for a text that was
  /// meddled with.
  std::optional<InpFittedDeck> Take(const ExportDeck& kept);

 private:
  bool ReadNumbers(InpFittedDeck& deck);
  void TakeNames(InpFittedDeck& deck);
  void FitSets(InpFittedDeck& deck);
  void FitMaterials(InpFittedDeck& deck) const;

  const InpDeckMesh& m_mesh;
  ExportNotes& m_notes;
  std::uint64_t m_numbers = 0;                           // of nodes and elements in all texts
  std::array<std::set<std::string>, kInpNames> m_taken;  // names in upper case, as they are written
};

}  // namespace qd::workbench
