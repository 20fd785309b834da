#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// What an act has changed of how things are shown, as lines of Python: it remembers how they were shown before.
class ShownLines final {
 public:
  explicit ShownLines(WorkDocument& doc);

  /// Takes up what a notice tells. False in `all` when there is something that no line does.
  std::vector<std::string> Take(const DisplayNotice& notice, bool& all);

 private:
  using Lines = std::vector<std::string>;

  void TakeVisibility(const DisplayNotice& notice, Lines& lines);
  void TakeLooks(const DisplayNotice& notice, Lines& lines);
  void TakeColours(Lines& lines, bool& all);
  void TakeBoxes(const DisplayNotice& notice, Lines& lines, bool& all);
  std::vector<iterator> Shown() const;

  WorkDocument& m_doc;
  std::unordered_map<int, PartDisplay::Look> m_parts;
  std::set<std::int32_t> m_hiddenLabels;
  MeshDisplay::LookTable m_meshes;
  MeshDisplay::Colouring m_colouring;
  int m_partColours;
  std::map<RowBox, int> m_boxes;
  bool m_isIsolated;
};

}  // namespace qd::workbench
