#pragma once

#include <vector>

#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// What an act of a dialog is done to.
struct WorkedOn {
  std::vector<iterator> records;
  bool all = false;  ///< nothing is selected, so it is all that can be taken
};

/// Which parts an act takes.
enum class Reach { All, Shown, ShownSolids };

/// Those of some parts that there are and that an act takes.
std::vector<iterator> PartsToWorkOn(WorkDocument& doc, const std::vector<iterator>& parts, Reach reach);

/// The selected parts and those of selected geometry sets. Where no record is selected and `elseAll` is set, all
/// parts; with records of other kinds selected there is nothing to work on.
WorkedOn SelectedParts(WorkDocument& doc, Reach reach, bool elseAll = false);

/// Likewise the selected mesh sets that are shown, or all that are.
WorkedOn SelectedMeshSets(WorkDocument& doc);

/// The first names of some records of a pool, cut to fit a line.
template <typename Pool>
CString NamesOf(const Pool& pool, const std::vector<iterator>& records);

extern template CString NamesOf(const GeomPool& pool, const std::vector<iterator>& records);
extern template CString NamesOf(const MsetPool& pool, const std::vector<iterator>& records);

}  // namespace qd::workbench
