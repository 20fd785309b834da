#pragma once

#include <vector>

#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// Which records an act takes.
enum class Reach { All, Shown, ShownSolids };

/// Whether an act takes a part or mesh set; it does not when there is none.
bool IsTaken(const WorkDocument& doc, std::uint16_t type, iterator itr, Reach reach);

/// The parts that the selection means: selected ones, those of selected geometry sets, and those below selected
/// rows that stand for no record. Each once.
std::vector<iterator> MeantParts(const WorkDocument& doc);
/// Likewise the mesh sets, and those that were made of parts that are meant.
std::vector<iterator> MeantMeshSets(const WorkDocument& doc);

/// The first names of some records of a pool, cut to fit a line.
template <typename Pool>
CString NamesOf(const Pool& pool, const std::vector<iterator>& records);

/// So many names a line has room for.
inline constexpr std::size_t kMostNames = 3;

extern template CString NamesOf(const GeomPool& pool, const std::vector<iterator>& records);
extern template CString NamesOf(const MsetPool& pool, const std::vector<iterator>& records);

}  // namespace qd::workbench
