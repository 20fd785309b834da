#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "workbench/batch/BatchDocument.h"
#include "workbench/mesh/Measures.h"
#include "workbench/mesh/MeshQuality.h"
#include "workbench/session/ScriptWords.h"

namespace qd::workbench {

/// What there is to know of a model at a glance, in numbers of a system of units.
struct ModelInfo {
  struct Quality {
    QualityMeasure measure{};
    std::uint64_t looked = 0;  ///< elements that have the measure
    std::uint64_t bad = 0;     ///< worse than what is usually called so
    double worst = 0;
    double mean = 0;
  };
  const UnitSystem* units = nullptr;
  std::array<std::size_t, 5> parts{};  ///< by TopologyKind
  std::size_t materials = 0;
  std::size_t sets = 0;     ///< mesh sets that hold nodes or elements
  std::uint64_t nodes = 0;  ///< each once, in however many sets
  std::uint64_t elements = 0;
  std::map<std::string, std::uint64_t> types;  ///< elements by their kind
  Box3 box;
  double length = 0;
  double area = 0;
  double volume = 0;
  double mass = 0;
  Point3 centre;
  std::array<double, 6> inertia{};
  std::vector<Quality> quality;  ///< none without elements

  std::size_t Parts() const;
};

/// Looks at some records, or at all for null. False when `progress` stopped it.
bool LookAt(BatchDocument& doc, const std::vector<iterator>* records, const UnitSystem& units,
            const ProgressCall& progress, ModelInfo& info);

/// One number of an information, as JSON and scripts call it.
struct InfoNumber {
  const char* name;
  double value;
};
/// Length, area, volume and mass.
std::vector<InfoNumber> NumbersOf(const ModelInfo& info);

}  // namespace qd::workbench
