#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qd::workbench {

/// Throws an ImportError that names the place for a text of more bytes than a document keeps of a deck.
void CheckDeckLength(std::size_t bytes, std::string_view place);

/// Puts together the text of a deck as it is kept: see ImportedDeck::text.
class InpDeckText {
 public:
  /// Lines as they stand in the file, each with its end.
  void Keep(std::string_view lines) {
    EndRun();
    m_text += lines;
  }
  /// The lines of a node or an element that the mesh holds: its number is kept, and comments before it.
  void Number(std::uint64_t number, std::string_view lines);
  /// The lines of an element that no mesh set holds.
  void Literal(std::string_view lines);
  std::size_t Size() const { return m_text.size(); }
  /// CheckDeckLength would throw.
  bool IsTooLong() const;
  std::string Take() {
    EndRun();
    return std::move(m_text);
  }

 private:
  void Comments(std::string_view& lines);
  void EndRun();

  std::string m_text;
  std::uint64_t m_first = 0;
  std::uint64_t m_last = 0;
  std::uint64_t m_step = 0;  // 0 while a run has one number
  bool m_open = false;
};

}  // namespace qd::workbench
