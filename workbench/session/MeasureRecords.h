#pragma once

#include <memory>
#include <vector>

#include "workbench/mesh/Measures.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// What of parts and mesh sets is measured: a copy that another thread may look at.
struct MeasuredRecords {
  struct Part {
    std::shared_ptr<const PartShape> shape;
    double density = 0;
  };
  struct Set {
    std::shared_ptr<const MeshData> mesh;
    double size = 0;  ///< thickness of shells, area of beams
    double density = 0;
  };
  std::vector<Part> parts;
  std::vector<Set> sets;
};

/// Parts count themselves; mesh sets count where their part does not.
MeasuredRecords GatherMeasured(Database& database, const std::vector<iterator>& parts,
                               const std::vector<iterator>& sets);
/// Adds all of them. False when `progress` stopped it.
bool MeasureAll(const MeasuredRecords& records, const ProgressCall& progress, Measures& measures);

}  // namespace qd::workbench
