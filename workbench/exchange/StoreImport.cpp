#include "workbench/exchange/StoreImport.h"

#include <map>
#include <memory>
#include <utility>

#include "host/CMSGFunction.h"
#include "host/CTransaction.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

CString NameOf(const std::string& utf8) {
  CString name = FromUtf8(utf8);
  // Code 0 divides the columns of a row, so no name holds it.
  std::erase(name, L'\0');
  if (name.size() <= kMaxNameLength) return name;
  name.resize(kMaxNameLength);
  const wchar_t last = name.back();
  if (last >= 0xD800 && last <= 0xDBFF) name.pop_back();  // half a character
  return name;
}

/// Parts outside of assemblies go to the current set; a document without sets gets its first one.
iterator DefaultSet(Database& database) {
  GsetPool& sets = database.GetGsetPool();
  if (const iterator current = sets.GetCurrentSet(); current != 0) return current;
  tagTGset first;
  first.name = sets.GetNewCopyName(CMSGFunction::GetValue("IDS_QD_WRT_GEOMSET"));
  return sets.Add(std::move(first));
}

bool StoreParts(Database& database, std::vector<ImportedPart>& parts) {
  std::map<std::string, iterator> setOf;
  iterator defaultSet = 0;
  for (ImportedPart& part : parts) {
    tagTGeom record;
    if (!part.assembly.empty()) {
      iterator& set = setOf[part.assembly];
      if (set == 0) {
        tagTGset group;
        group.name = NameOf(part.assembly);
        set = database.GetGsetPool().Add(std::move(group));
        if (set == 0) return false;
      }
      record.gset = set;
    } else {
      if (defaultSet == 0) defaultSet = DefaultSet(database);
      if (defaultSet == 0) return false;
      record.gset = defaultSet;
    }
    record.name = NameOf(part.name);
    record.colour = part.colour & 0xFFFFFFU;
    record.kind = part.kind;
    record.cadItem = database.GetGeomPool().NextNumber();
    record.shape = std::make_shared<const PartShape>(std::move(part.shape));
    if (database.GetGeomPool().Add(std::move(record)) == 0) return false;
  }
  return true;
}

bool StoreMeshSets(Database& database, std::vector<ImportedMeshSet>& sets) {
  for (ImportedMeshSet& set : sets) {
    tagTMset record;
    record.name = NameOf(set.name);
    record.key = static_cast<std::uint32_t>(database.GetMsetPool().NextNumber()) & kMsetKeyMask;
    record.nodeCount = set.mesh.nodeIds.size();
    for (const MeshData::Block& block : set.mesh.blocks) record.elementCount += block.elementIds.size();
    record.mesh = std::make_shared<const MeshData>(std::move(set.mesh));
    if (database.GetMsetPool().Add(std::move(record)) == 0) return false;
  }
  return true;
}

}  // namespace

int StoreImport(Database& database, ImportedModel model, const CString& title) {
  CTransaction transaction(&database);
  if (transaction.Begin(title) == 0) return 0;
  if (!StoreParts(database, model.parts) || !StoreMeshSets(database, model.meshSets)) return 0;
  return transaction.Commit(1);
}

}  // namespace qd::workbench
