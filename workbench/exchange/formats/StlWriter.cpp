#include <algorithm>
#include <cmath>

#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshSkin.h"

namespace qd::workbench {

namespace {

void NoteShape(const ExportSet& set, ExportNotes& notes) {
  const auto any = [&set](bool (*is)(const ElementType&)) {
    return std::any_of(set.mesh->blocks.begin(), set.mesh->blocks.end(),
                       [is](const MeshData::Block& block) { return is(*FindElementType(block.elementType)); });
  };
  if (any([](const ElementType& type) { return TopologyOf(type.shape).dimension == 3; })) {
    notes.Add("IDS_WB_EXPORT_SKIN", set.name);
  }
  if (any([](const ElementType& type) { return type.nodes > TopologyOf(type.shape).corners; })) {
    notes.Add("IDS_WB_EXPORT_STRAIGHT", set.name);
  }
}

}  // namespace

/// The free faces of solids, and surfaces, as triangles; one solid of the file for each set.
void WriteStl(const ExportModel& model, TextFile& file, ExportReport& report) {
  const std::atomic<bool> stop = false;
  ExportNotes notes;
  for (const ExportSet& set : model.sets) {
    if (set.mesh == nullptr) continue;
    const MeshSkin skin = MakeSkin(*set.mesh, {true, MeshLines::None, false}, stop);
    if (skin.TriangleCount() == 0) continue;
    ++report.groups;
    report.elements += skin.TriangleCount();
    NoteShape(set, notes);
    file << "solid " << set.name << "\n";
    for (const MeshSkin::Piece& piece : skin.pieces) {
      for (std::size_t i = 0; i + 2 < piece.triangles.size(); i += 3) {
        const float* a = &piece.points[std::size_t{piece.triangles[i]} * 3];
        const float* b = &piece.points[std::size_t{piece.triangles[i + 1]} * 3];
        const float* c = &piece.points[std::size_t{piece.triangles[i + 2]} * 3];
        double n[3];
        for (int k = 0; k < 3; ++k) {
          const int l = (k + 1) % 3;
          const int m = (k + 2) % 3;
          n[k] =
              static_cast<double>(b[l] - a[l]) * (c[m] - a[m]) - static_cast<double>(b[m] - a[m]) * (c[l] - a[l]);
        }
        const double length = std::hypot(n[0], n[1], n[2]);
        file << "facet normal";
        for (const double part : n) file << " " << (length > 0 ? part / length : 0);
        file << "\nouter loop\n";
        for (const float* at : {a, b, c}) {
          file << "vertex";
          for (int k = 0; k < 3; ++k) file << " " << static_cast<double>(at[k]);
          file << "\n";
        }
        file << "endloop\nendfacet\n";
        file.Step();
      }
    }
    file << "endsolid " << set.name << "\n";
  }
  notes.PutInto(report);
  if (report.groups == 0) throw ImportError{"IDS_WB_EXPORT_NOTHING", ""};
}

}  // namespace qd::workbench
