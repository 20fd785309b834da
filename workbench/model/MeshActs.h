#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "workbench/model/Database.h"

namespace qd::workbench {

/// What came of an act on meshes: the number of what was made or changed, or the message key of why nothing was.
struct ActResult {
  std::uint64_t number = 0;
  const char* errorKey = nullptr;
  std::string detail{};  ///< for the message
  bool IsDone() const { return errorKey == nullptr; }
};

/// Acts on nodes and elements, each one undoable act under a title. A failed act changes nothing.

/// Adds a node to a mesh set, or to the default set for 0. The result is the node's number.
ActResult AddNode(Database& database, iterator mset, const std::array<double, 3>& at, const CString& title);
/// Adds an element between nodes of the document. The result is the element's number.
ActResult AddElement(Database& database, iterator mset, int elementType, const std::vector<std::uint64_t>& nodes,
                     const CString& title);

/// Runs of numbers, first and last of each.
using NumberRuns = std::vector<std::pair<std::uint64_t, std::uint64_t>>;
/// Reads "1-20, 25, 30-40"; false when it is no such text.
bool ParseRuns(const std::string& text, NumberRuns& runs);
/// Moves the elements with these numbers into a set, wherever they are, or, with `from`, out of that one only. The
/// result is how many.
ActResult MoveElements(Database& database, const NumberRuns& elements, iterator target, iterator from,
                       const CString& title);

/// Likewise into a new set with a name and the colour and place of another one.
ActResult MoveElementsToNew(Database& database, const NumberRuns& elements, iterator beside, const CString& name,
                            const CString& title);
/// The runs that numbers make, in any order and some perhaps twice.
NumberRuns RunsOf(std::vector<std::uint64_t> numbers);

/// Rows of a matrix that turns x, y, z, 1 into x, y, z.
using Transform = std::array<std::array<double, 4>, 3>;
/// Moves the nodes of sets. Nodes that other sets share move too, so that what hangs together stays so. A
/// mirroring turns the elements of the sets round. The result is how many nodes.
ActResult TransformMeshes(Database& database, const std::vector<iterator>& msets, const Transform& transform,
                          const CString& title);
/// Makes solids of the surfaces of sets, each in a new set: layers along a way. The result is how many elements.
ActResult SweepMeshes(Database& database, const std::vector<iterator>& msets, const std::array<double, 3>& way,
                      int layers, const CString& title);

}  // namespace qd::workbench
