#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "workbench/exchange/formats/InpDeckFit.h"
#include "workbench/exchange/formats/TextFile.h"

namespace qd::workbench {

/// Sections and materials of kept decks: they follow what the tree says of its properties and materials, and what
/// the tree cannot say stays as the decks have it.
class InpDeckProperties {
 public:
  InpDeckProperties(const InpDeckMesh& mesh, TextFile& file, ExportNotes& notes)
      : m_mesh(mesh), m_file(file), m_notes(notes), m_propertyOf(mesh.Places().size(), kNone) {}

  /// Takes the sections of a deck one after another; counts them in it.
  void FitSection(InpFittedDeck& deck, const InpCard& card, InpFitted& fitted);
  /// Takes *MATERIAL and the cards of its values.
  void FitValues(const InpFittedDeck& deck, const InpCard& card, InpFitted& fitted);
  /// Elements of a set, by number, whose property is another one than the sections of the decks say.
  std::vector<std::uint64_t> ElementsWithAnother(std::size_t set) const;

 private:
  static constexpr std::int32_t kNone = -1;

  /// Calls the material of a section as it is called now, or says why it cannot.
  void FitMaterial(const InpFittedDeck& deck, const InpCard& card, const ImportedProperty& property,
                   InpFitted& fitted) const;

  const InpDeckMesh& m_mesh;
  TextFile& m_file;
  ExportNotes& m_notes;
  std::vector<std::int32_t> m_propertyOf;  // beside the mesh's places: what the sections say
  std::int32_t m_material = kNone;         // of the deck at hand, whose cards are being written
};

}  // namespace qd::workbench
