#pragma once

#include "workbench/display/WorkDocument.h"
#include "workbench/mesh/EntityMeasure.h"

namespace qd::workbench {

/// Something that was picked, as it is measured; without pieces where there is none.
MeasuredEntity EntityOf(const WorkDocument& doc, const Picked& one);

/// What something that was picked says of where and which way: a point its place; an edge that is straight its
/// beginning and the way to its end, an arc its centre and axis; a flat face its middle and normal, one of a
/// cylinder a point of the axis and that. Ways that have no length of their own are of length 1.
struct PlaceOfPick {
  std::optional<Vector3> place;
  std::optional<Vector3> way;
};
PlaceOfPick PlaceAndWayOf(const WorkDocument& doc, const Picked& one);

/// What of picks is measured: a copy that another thread may look at. More than can be copied in a moment are not.
struct MeasuredPicks {
  static constexpr std::size_t kMost = 10'000;
  std::vector<MeasuredEntity> all;
  bool tooMany = false;
};
MeasuredPicks GatherPicks(const WorkDocument& doc);

/// What picks measure.
struct PicksMeasure {
  std::vector<EntityMeasure> each;     ///< of one or two
  std::optional<Point3> place;         ///< of a single point
  std::optional<NearPoints> distance;  ///< of two
  std::optional<double> centres;       ///< the distance of the centres of two round ones, likewise
  std::optional<double> angle;         ///< of two edges or faces, or at the second of three points
  std::vector<Point3> corners;         ///< of that angle: those points
  EntityMeasure sum;                   ///< lengths, areas and volumes of all
  bool noAngle = false;                ///< of two edges or faces, since one is curved
};
/// False when `progress` stopped it.
bool MeasureAll(const MeasuredPicks& picks, const ProgressCall& progress, PicksMeasure& measure);

}  // namespace qd::workbench
