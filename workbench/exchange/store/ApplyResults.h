#pragma once

#include <memory>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"
#include "workbench/exchange/pipe/Protocol.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// A part and the shape that it had when work on it began.
struct WorkedPart {
  iterator itr = 0;
  std::shared_ptr<const PartShape> shape;
};

/// Adds those of some parts that have a shape to what an operation works on.
std::vector<WorkedPart> AddOperands(const Database& database, const std::vector<iterator>& parts,
                                    ShapeOperation& operation);

/// Stores what came of an operation, as one of the following do.
int ApplyOperation(Database& database, const std::vector<WorkedPart>& parts, ImportedModel results,
                   const ShapeOperation& operation, const CString& title);

/// Gives parts their new shapes, one result for each in order, as one undoable act. Returns 1; 0 with nothing
/// changed when a part or its shape is not any more what was worked on.
int ReplaceShapes(Database& database, const std::vector<WorkedPart>& parts, ImportedModel results,
                  const CString& title);
/// Adds the results as new parts, named after the ones they were made from, in the current geometry set.
int AddParts(Database& database, const std::vector<WorkedPart>& parts, ImportedModel results,
             const CString& title);
/// Adds what an operation took out of parts as new parts, in the current geometry set.
int AddTaken(Database& database, const std::vector<WorkedPart>& parts, ImportedModel results,
             const ShapeOperation& operation, const CString& title);
/// Gives parts the meshes that an operation made, in place of those that they may have, and notes how they were
/// made.
int AddMeshes(Database& database, const std::vector<WorkedPart>& parts, ImportedModel results,
              const ShapeOperation& operation, const CString& title);

}  // namespace qd::workbench
