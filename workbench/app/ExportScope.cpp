#include "workbench/app/ExportScope.h"

#include <QLocale>
#include <algorithm>
#include <unordered_set>

#include "workbench/app/MessageTables.h"
#include "workbench/exchange/store/CollectExport.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// The mesh sets that a scope names; those that are nested in selected ones are meant too.
std::vector<iterator> SetsOf(WorkDocument& doc, ExportScope scope) {
  const Database& database = doc.GetDatabase();
  std::vector<iterator> sets;
  if (scope == ExportScope::Selected) {
    sets = doc.GetSelectBuffer();
    std::erase_if(sets, [&database](iterator itr) { return database.GetDataType(itr) != kDataMset; });
    return sets;
  }
  sets = database.GetMsetPool().GetItrList();
  if (scope == ExportScope::Shown) {
    std::erase_if(sets, [&doc](iterator itr) { return doc.GetDisplay().Meshes().IsMsetShown(itr) == 0; });
  }
  return sets;
}

/// The parts, in the order of the document.
std::vector<iterator> PartsOf(WorkDocument& doc, ExportScope scope) {
  const GeomPool& pool = doc.GetDatabase().GetGeomPool();
  std::vector<iterator> parts = pool.GetItrList();
  if (scope == ExportScope::Shown) {
    std::erase_if(parts, [&](iterator part) {
      return doc.GetDisplay().Parts().GetShowHide(pool.GetAtNU(part)->cadItem) == 0;
    });
  } else if (scope == ExportScope::Selected) {
    const std::vector<iterator>& buffer = doc.GetSelectBuffer();
    const std::unordered_set<iterator> selected(buffer.begin(), buffer.end());
    std::erase_if(parts, [&selected](iterator part) { return !selected.contains(part); });
  }
  return parts;
}

}  // namespace

ExportModel CollectScope(WorkDocument& doc, ExportScope scope) {
  Database& database = doc.GetDatabase();
  ExportModel model = CollectExport(database, SetsOf(doc, scope), scope == ExportScope::Selected);
  CollectParts(database, PartsOf(doc, scope), model);
  return model;
}

ExportCounts CountScope(WorkDocument& doc, ExportScope scope) {
  const ExportModel model = CollectScope(doc, scope);
  ExportCounts counts;
  counts.parts = model.parts.size();
  for (const ExportSet& set : model.sets) {
    if (set.mesh == nullptr) continue;
    ++counts.sets;
    for (const MeshData::Block& block : set.mesh->blocks) counts.elements += block.elementIds.size();
  }
  return counts;
}

QStringList TextOf(const QString& path, const ExportReport& report) {
  const auto number = [](std::uint64_t count) { return QLocale().toString(static_cast<qulonglong>(count)); };
  QStringList lines{report.parts > 0 ? Text("IDS_WB_EXPORTED_PARTS", {path, number(report.parts)})
                                     : Text("IDS_WB_EXPORTED", {path, number(report.nodes),
                                                                number(report.elements), number(report.groups)})};
  for (const ImportNote& note : report.notes) {
    lines << path + ": " + Text(note.key.c_str(), {QString::fromStdString(note.detail)});
  }
  return lines;
}

QString TextOf(const QString& path, const ImportError& error) {
  if (error.key.empty()) return Text("IDS_WB_EXPORT_CANCELLED", {path});
  return Text("IDS_WB_EXPORT_FAILED", {path, Text(error.key.c_str(), {QString::fromStdString(error.detail)})});
}

}  // namespace qd::workbench
