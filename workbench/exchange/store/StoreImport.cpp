#include "workbench/exchange/store/StoreImport.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <utility>

#include "host/Act.h"
#include "host/CMSGFunction.h"
#include "platform/text/Characters.h"
#include "workbench/mesh/ElementMark.h"
#include "workbench/model/MeshNumbers.h"
#include "workbench/model/Values.h"
#include "workbench/text/Shown.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

using ImportNotes = std::vector<ImportNote>;

}  // namespace

CString RecordName(CString name) {
  std::replace_if(name.begin(), name.end(), IsControl, L' ');  // code 0 would divide the columns of a row
  if (IsBlank(name)) return CMSGFunction::GetValue("IDS_WB_UNNAMED");
  return CutName(name);
}

CString RecordName(const std::string& bytes) {
  return RecordName(FromBytes(bytes));
}

namespace {

/// Parts outside of assemblies go to the current set; a document without sets gets its first one.
iterator DefaultSet(Database& database) {
  GsetPool& sets = database.GetGsetPool();
  if (const iterator current = sets.GetCurrentSet(); current != 0) return current;
  tagTGset first;
  first.name = sets.GetNewCopyName(CMSGFunction::GetValue("IDS_QD_WRT_GEOMSET"));
  return sets.Add(std::move(first));
}

/// Puts a value right that is no number, and notes it once for each record.
template <typename T>
void NeedNumbers(std::uint16_t type, T& record, ImportNotes& notes) {
  record.id = 1;
  if (FaultOf(type, 1, record) == nullptr) return;
  MakeFit(type, 1, record);
  notes.push_back({"IDS_WB_IMPORT_PUT_RIGHT", ShownText(ToUtf8(record.name))});
}

/// Likewise for what was measured of a part. A part with places that are no numbers comes without facets.
void NeedNumbers(ImportedPart& part, ImportNotes& notes) {
  PartShape& shape = part.shape;
  if (FaultOf(shape) == nullptr) return;
  const auto fit = [](auto& value) {
    if (!std::isfinite(value)) value = 0;
  };
  for (double* measure : {&shape.volume, &shape.area, &shape.length}) fit(*measure);
  for (auto& [key, value] : shape.geometry) fit(value);
  for (float& value : shape.facets.normals) fit(value);
  if (FaultOf(shape) != nullptr) shape.facets = {};
  notes.push_back({"IDS_WB_IMPORT_PUT_RIGHT", ShownText(part.name)});
}

/// A name with all its letters, for where parts come from.
CString WholeName(const std::string& bytes) {
  CString name = FromBytes(Beginning(bytes, kMostName));
  std::erase(name, L'\0');
  return name;
}

/// Null for a part of a file that knows no products.
std::shared_ptr<const PartOrigin> OriginOf(const ImportedPart& part, int firstNumber) {
  if (part.product.empty() && part.instance.empty() && part.assemblies.empty()) return nullptr;
  auto origin = std::make_shared<PartOrigin>();
  origin->product = WholeName(part.product);
  origin->instance = WholeName(part.instance);
  origin->use = part.use;
  origin->import = static_cast<std::uint32_t>(firstNumber);
  for (const ImportedAssembly& assembly : part.assemblies) {
    if (origin->assemblies.size() == kMostAssemblies) break;
    origin->assemblies.push_back({WholeName(assembly.product), WholeName(assembly.instance), assembly.use});
  }
  return origin;
}

bool StoreParts(Database& database, std::vector<ImportedPart>& parts, ImportNotes& notes) {
  std::map<std::string, iterator> setOf;
  iterator defaultSet = 0;
  const int first = database.GetGeomPool().NextNumber();
  for (ImportedPart& part : parts) {
    tagTGeom record;
    if (const std::string path = AssemblyPath(part); !path.empty()) {
      iterator& set = setOf[path];
      if (set == 0) {
        tagTGset group;
        group.name = RecordName(path);
        set = database.GetGsetPool().Add(std::move(group));
        if (set == 0) return false;
      }
      record.gset = set;
    } else {
      if (defaultSet == 0) defaultSet = DefaultSet(database);
      if (defaultSet == 0) return false;
      record.gset = defaultSet;
    }
    record.name = RecordName(part.name);
    record.colour = part.colour & 0xFFFFFFU;
    record.kind = part.kind;
    record.origin = OriginOf(part, first);
    record.cadItem = database.GetGeomPool().NextNumber();
    NeedNumbers(part, notes);
    record.shape = std::make_shared<const PartShape>(std::move(part.shape));
    if (database.GetGeomPool().Add(std::move(record)) == 0) return false;
  }
  return true;
}

/// Names are unique among materials and the like only where the file made them so; equal ones are one.
std::vector<iterator> StoreMaterials(Database& database, const std::vector<ImportedMaterial>& materials,
                                     ImportNotes& notes) {
  std::vector<iterator> itrs;
  for (const ImportedMaterial& material : materials) {
    tagTMaterial record;
    record.name = RecordName(material.name);
    record.youngsModulus = material.youngsModulus;
    record.poissonsRatio = material.poissonsRatio;
    record.density = material.density;
    NeedNumbers(kDataMaterial, record, notes);
    itrs.push_back(database.GetMaterialPool().Add(std::move(record)));
  }
  return itrs;
}

iterator At(const std::vector<iterator>& itrs, std::int32_t place) {
  return place >= 0 && static_cast<std::size_t>(place) < itrs.size() ? itrs[static_cast<std::size_t>(place)] : 0;
}

std::vector<iterator> StoreProperties(Database& database, const std::vector<ImportedProperty>& properties,
                                      const std::vector<iterator>& materials, ImportNotes& notes) {
  std::vector<iterator> itrs;
  for (const ImportedProperty& property : properties) {
    tagTProperty record;
    record.name = RecordName(property.name);
    record.kind = property.kind;
    record.size = property.size;
    NeedNumbers(kDataProperty, record, notes);
    record.material = At(materials, property.material);
    itrs.push_back(database.GetPropertyPool().Add(std::move(record)));
  }
  return itrs;
}

/// The numbers of what comes stay as they are where no number of the document is among them.
Numbering NumberingFor(const MsetPool& pool, const std::vector<ImportedMeshSet>& sets) {
  Numbering numbering = NextNumbers(pool);
  std::uint64_t firstNode = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t firstElement = firstNode;
  for (const ImportedMeshSet& set : sets) {
    if (!set.mesh.nodeIds.empty()) firstNode = std::min(firstNode, set.mesh.nodeIds.front());
    for (const MeshData::Block& block : set.mesh.blocks) {
      for (const std::uint64_t element : block.elementIds) firstElement = std::min(firstElement, element);
    }
  }
  if (firstNode > numbering.nodes) numbering.nodes = 0;
  if (firstElement > numbering.elements) numbering.elements = 0;
  return numbering;
}

std::vector<iterator> StoreMeshSets(Database& database, std::vector<ImportedMeshSet>& sets,
                                    const std::vector<iterator>& properties, const Numbering& numbering,
                                    ImportNotes& notes) {
  MsetPool& pool = database.GetMsetPool();
  std::vector<iterator> itrs;
  for (ImportedMeshSet& set : sets) {
    tagTMset record;
    record.name = RecordName(set.name);
    record.colour = pool.GetNewColor();
    if (const iterator parent = At(itrs, set.parent); parent != 0) record.parent = pool.GetAtNU(parent)->key;
    record.property = At(properties, set.property);
    PutMesh(record, numbering.Apply(std::make_shared<const MeshData>(std::move(set.mesh))));
    itrs.push_back(pool.Add(record));
    if (itrs.back() == 0) {
      const char* fault = FaultOf(*record.mesh);
      if (fault != nullptr)
        notes.push_back(
            {"IDS_WB_IMPORT_NOT_ALLOWED", ShownText(set.name) + ": " + ToUtf8(CMSGFunction::GetValue(fault))});
      break;
    }
  }
  return itrs;
}

bool AreAll(const std::vector<iterator>& itrs) {
  return std::find(itrs.begin(), itrs.end(), iterator{0}) == itrs.end();
}

/// What each set of an import holds, with all below it.
std::vector<ElementMark> MarksOf(const MsetPool& pool, const std::vector<iterator>& msets,
                                 const std::vector<ImportedMeshSet>& sets) {
  std::vector<ElementMark> marks;
  marks.reserve(msets.size());
  for (const iterator mset : msets) marks.push_back(MarkOf(*pool.GetAtNU(mset)->mesh));
  // Every set comes after the one that it lies in.
  for (std::size_t place = sets.size(); place-- > 0;) {
    const std::int32_t parent = sets[place].parent;
    if (parent >= 0 && static_cast<std::size_t>(parent) < place)
      marks[static_cast<std::size_t>(parent)] += marks[place];
  }
  return marks;
}

bool StoreDecks(Database& database, ImportedModel& model, const std::vector<iterator>& msets,
                const std::vector<iterator>& materials, const std::vector<iterator>& properties,
                const Numbering& numbering) {
  const MsetPool& pool = database.GetMsetPool();
  const std::vector<ElementMark> marks = MarksOf(pool, msets, model.meshSets);
  const auto keyAt = [&](std::int32_t place) {
    const iterator mset = At(msets, place);
    return mset != 0 ? pool.GetAtNU(mset)->key & kMsetKeyMask : 0;
  };
  for (ImportedDeck& deck : model.decks) {
    tagTDeck record;
    record.name = RecordName(deck.name);
    record.nodes = numbering.nodes;
    record.elements = numbering.elements;
    record.rest = keyAt(deck.rest);
    for (ImportedDeck::Name& set : deck.sets) {
      const std::uint32_t key = keyAt(set.place);
      const ElementMark mark = key != 0 ? marks[static_cast<std::size_t>(set.place)] : ElementMark{};
      record.sets.push_back({std::move(set.name), key, set.shared, mark.count, mark.sum});
    }
    for (ImportedDeck::Name& material : deck.materials) {
      const iterator itr = At(materials, material.place);
      if (itr == 0) continue;
      const tagTMaterial& is = *database.GetMaterialPool().GetAtNU(itr);
      record.materials.push_back({std::move(material.name), itr, is.youngsModulus, is.poissonsRatio, is.density});
    }
    for (const std::int32_t section : deck.sections) {
      const iterator itr = At(properties, section);
      const tagTProperty* is = database.GetPropertyPool().GetAtNU(itr);
      record.sections.push_back({itr, is != nullptr ? is->material : 0, is != nullptr ? is->size : 0});
    }
    record.text = std::make_shared<const std::string>(std::move(deck.text));
    if (database.GetDeckPool().Add(std::move(record)) == 0) return false;
  }
  return true;
}

/// All of a model, in an open transaction.
bool StoreAll(Database& database, ImportedModel& model, ImportNotes& said) {
  if (!StoreParts(database, model.parts, said)) return false;
  const std::vector<iterator> materials = StoreMaterials(database, model.materials, said);
  const std::vector<iterator> properties = StoreProperties(database, model.properties, materials, said);
  if (!AreAll(materials) || !AreAll(properties)) return false;
  Numbering numbering = NumberingFor(database.GetMsetPool(), model.meshSets);
  std::vector<MeshData*> meshes;
  meshes.reserve(model.meshSets.size());
  for (ImportedMeshSet& set : model.meshSets) meshes.push_back(&set.mesh);
  if (NumberAnew(meshes, numbering)) {
    said.push_back({"IDS_WB_IMPORT_NUMBERED_ANEW", {}});
    numbering = NextNumbers(database.GetMsetPool());
    // Numbers in the text of a deck would stand for something else.
    for (const ImportedDeck& deck : std::exchange(model.decks, {})) {
      said.push_back({"IDS_WB_NOTE_DECK_NUMBERS", deck.name});
    }
  }
  const std::vector<iterator> msets = StoreMeshSets(database, model.meshSets, properties, numbering, said);
  return AreAll(msets) && StoreDecks(database, model, msets, materials, properties, numbering);
}

}  // namespace

int StoreImport(Database& database, ImportedModel model, const CString& title, ImportNotes* notes) {
  ImportNotes unheard;
  ImportNotes& said = notes != nullptr ? *notes : unheard;
  return RunAct(&database, title, [&] { return StoreAll(database, model, said) ? 1 : 0; });
}

}  // namespace qd::workbench
