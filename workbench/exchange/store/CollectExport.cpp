#include "workbench/exchange/store/CollectExport.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "workbench/exchange/store/StoreImport.h"
#include "workbench/text/Ascii.h"
#include "workbench/text/Shown.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// The longest name that solvers take is of 80 bytes, with its quotation marks.
constexpr std::size_t kLongestName = 78;

/// A name that files can hold: nothing that ends a line, a field or a quotation.
std::string CleanName(std::string clean) {
  const auto isOdd = [](wchar_t letter) {
    return IsControl(letter) || letter == L'"' || letter == L',' || letter == L'=';
  };
  std::wstring letters = FromUtf8(clean);
  // A deck's name without such letters keeps its bytes, whatever they are.
  if (std::any_of(letters.begin(), letters.end(), isOdd)) {
    std::replace_if(letters.begin(), letters.end(), isOdd, L'_');
    clean = ToUtf8(letters);
  }
  clean = std::string(Trimmed(Beginning(clean, kLongestName)));
  return clean.empty() ? "Set" : clean;
}

/// Whether a record has the name that a deck has for it. Documents of older versions have names in other encodings
/// than UTF-8 with marks in place of letters.
bool IsCalled(const CString& name, const std::string& inDeck) {
  return name == RecordName(inDeck) || name == RecordName(FromUtf8(inDeck));
}

/// Gives out names that no other has; to solvers neither blanks nor the case of letters make a difference.
class Names {
 public:
  std::string Unique(const CString& name) { return Unique(ToUtf8(name)); }
  std::string Unique(const std::string& name) {
    const std::string clean = CleanName(name);
    std::string unique = clean;
    int& number = m_next.try_emplace(KeyOf(clean), 2).first->second;
    while (!m_taken.insert(KeyOf(unique)).second) {
      const std::string tail = "-" + std::to_string(number++);
      unique = Beginning(clean, kLongestName - tail.size()) + tail;
    }
    return unique;
  }

 private:
  static std::string KeyOf(const std::string& name) {
    std::string key = UpperCase(name);
    std::erase(key, ' ');
    return key;
  }

  // Ordered, since whoever chose the names could choose them to meet in a table.
  std::set<std::string> m_taken;
  std::map<std::string, int> m_next;  // by name: the number to try next
};

class Collector {
 public:
  Collector(const Database& database, const std::vector<iterator>& msets, bool withNested)
      : m_database(database), m_chosen(msets.begin(), msets.end()), m_withNested(withNested) {}

  ExportModel Collect() {
    ReserveNames();
    ReserveMaterialNames();
    for (const iterator itr : m_database.GetMsetPool().GetItrList()) {
      if (IsWritten(itr)) Add(itr);
    }
    for (const iterator itr : m_database.GetDeckPool().GetItrList()) {
      AddDeck(*m_database.GetDeckPool().GetAtNU(itr));
    }
    return std::move(m_model);
  }

 private:
  /// Whether a set was chosen, or one above it when that counts.
  bool IsWritten(iterator itr) const {
    if (!m_withNested) return m_chosen.contains(itr);
    while (itr != 0) {
      if (m_chosen.contains(itr)) return true;
      itr = Above(itr);
    }
    return false;
  }

  iterator Above(iterator itr) const {
    const MsetPool& pool = m_database.GetMsetPool();
    return pool.GetItrByKey(pool.GetAtNU(itr)->parent);
  }

  /// Adds a set and the ones above it that are not there yet, from the top.
  void Add(iterator itr) {
    std::vector<iterator> missing;
    for (; itr != 0 && !m_places.contains(itr); itr = Above(itr)) missing.push_back(itr);
    for (auto at = missing.rbegin(); at != missing.rend(); ++at) AddOne(*at);
  }

  void AddOne(iterator itr) {
    const tagTMset& record = *m_database.GetMsetPool().GetAtNU(itr);
    const iterator above = Above(itr);
    ExportSet set;
    set.parent = above != 0 ? m_places.at(above) : -1;
    if (const auto reserved = m_reserved.find(record.key & kMsetKeyMask); reserved != m_reserved.end()) {
      set.name = reserved->second;
    } else {
      set.name = m_setNames.Unique(record.name);
      NoteName(record.name, set.name);
    }
    if (IsWritten(itr)) {
      set.mesh = record.mesh;
      set.property = NeedProperty(record.property);
    }
    m_places[itr] = static_cast<std::int32_t>(m_model.sets.size());
    m_model.sets.push_back(std::move(set));
  }

  /// What decks call their sets comes first: a set that is called as in its deck keeps that name.
  void ReserveNames() {
    const MsetPool& pool = m_database.GetMsetPool();
    for (const iterator itr : m_database.GetDeckPool().GetItrList()) {
      for (const tagTDeck::Set& set : m_database.GetDeckPool().GetAtNU(itr)->sets) {
        const tagTMset* mset = pool.GetAtNU(pool.GetItrByKey(set.mset));
        if (mset == nullptr || !IsCalled(mset->name, set.name) || m_reserved.contains(set.mset)) continue;
        // As with materials, see below.
        const std::string name = m_setNames.Unique(set.name);
        m_reserved[set.mset] = name;
        if (name != set.name) NoteName(mset->name, name);
      }
    }
  }

  void AddDeck(const tagTDeck& record) {
    ExportDeck deck{record, {}, {}, {}, {}, {}, -1};
    const auto placeOf = [&](std::uint32_t key) {
      const auto found = m_places.find(m_database.GetMsetPool().GetItrByKey(key));
      return found != m_places.end() ? found->second : -1;
    };
    std::unordered_set<std::uint32_t> named;  // another set of the same elements has a name of its own
    for (const tagTDeck::Set& set : record.sets) {
      const std::int32_t place = placeOf(set.mset);
      const bool isNamed = place >= 0 && named.insert(set.mset).second;
      deck.msets.push_back(place);
      deck.setNames.push_back(isNamed ? m_model.sets[static_cast<std::size_t>(place)].name
                                      : m_setNames.Unique(set.name));
    }
    for (const tagTDeck::Material& material : record.materials) {
      deck.materials.push_back(NeedMaterial(material.material, &material.name));
    }
    for (const tagTDeck::Section& section : record.sections) {
      deck.properties.push_back(NeedProperty(section.property));
      deck.sectionMaterials.push_back(NeedMaterial(section.material));
    }
    deck.rest = placeOf(record.rest);
    m_model.decks.push_back(std::move(deck));
  }

  void NoteName(const CString& given, const std::string& written) {
    const std::string before = ToUtf8(given);
    if (before != written) m_model.renamed.push_back(ShownText(before) + " → " + written);
  }

  std::int32_t NeedProperty(iterator itr) {
    const tagTProperty* record = m_database.GetPropertyPool().GetAtNU(itr);
    if (record == nullptr) return -1;
    if (const auto known = m_properties.find(itr); known != m_properties.end()) return known->second;
    const auto place = static_cast<std::int32_t>(m_model.properties.size());
    m_model.properties.push_back(
        {CleanName(ToUtf8(record->name)), record->kind, record->size, NeedMaterial(record->material)});
    return m_properties[itr] = place;
  }

  /// The name of a deck's material is taken as it stands there while the record is called so too.
  void ReserveMaterialNames() {
    for (const iterator itr : m_database.GetDeckPool().GetItrList()) {
      for (const tagTDeck::Material& material : m_database.GetDeckPool().GetAtNU(itr)->materials) {
        NeedMaterial(material.material, &material.name);
      }
    }
  }

  std::int32_t NeedMaterial(iterator itr, const std::string* deckName = nullptr) {
    const tagTMaterial* record = m_database.GetMaterialPool().GetAtNU(itr);
    if (record == nullptr) return -1;
    if (const auto known = m_materials.find(itr); known != m_materials.end()) return known->second;
    const auto place = static_cast<std::int32_t>(m_model.materials.size());
    const bool isAsInDeck = deckName != nullptr && IsCalled(record->name, *deckName);
    const std::string name = isAsInDeck ? m_materialNames.Unique(*deckName) : m_materialNames.Unique(record->name);
    // The record's name may be cut, and the deck's in an encoding of its own.
    if (!isAsInDeck || name != *deckName) NoteName(record->name, name);
    m_model.materials.push_back({name, record->youngsModulus, record->poissonsRatio, record->density});
    return m_materials[itr] = place;
  }

  const Database& m_database;
  std::unordered_set<iterator> m_chosen;
  bool m_withNested;
  ExportModel m_model;
  std::unordered_map<iterator, std::int32_t> m_places;
  std::unordered_map<iterator, std::int32_t> m_properties;
  std::unordered_map<iterator, std::int32_t> m_materials;
  Names m_setNames;
  Names m_materialNames;
  std::unordered_map<std::uint32_t, std::string> m_reserved;  // names of sets by key
};

}  // namespace

namespace {

/// How a part is called in files: records may hold the beginning of the name that it came with.
std::string NameInFiles(const tagTGeom& part) {
  if (part.origin != nullptr) {
    for (const CString* whole : {&part.origin->product, &part.origin->instance}) {
      if (!whole->empty() && RecordName(*whole) == part.name) return ToUtf8(*whole);
    }
  }
  return ToUtf8(part.name);
}

ExportedPart PartFor(const tagTGeom& record) {
  ExportedPart part;
  part.name = NameInFiles(record);
  part.colour = record.colour;
  part.kind = record.kind;
  part.shape = record.shape;
  if (record.origin == nullptr) return part;
  part.product = ToUtf8(record.origin->product);
  part.instance = ToUtf8(record.origin->instance);
  part.use = record.origin->use;
  part.import = record.origin->import;
  for (const AssemblyUse& assembly : record.origin->assemblies) {
    part.assemblies.push_back({ToUtf8(assembly.product), ToUtf8(assembly.instance), assembly.use});
  }
  return part;
}

}  // namespace

void CollectParts(const Database& database, const std::vector<iterator>& parts, ExportModel& model) {
  std::set<iterator> materials;
  std::set<iterator> sets;
  for (const iterator itr : parts) {
    const tagTGeom& record = *database.GetGeomPool().GetAtNU(itr);
    model.parts.push_back(PartFor(record));
    if (const tagTMaterial* material = database.GetMaterialPool().GetAtNU(record.material);
        material != nullptr && materials.insert(record.material).second) {
      model.partMaterials.push_back(ShownText(ToUtf8(material->name)));
    }
    const tagTGset* set = database.GetGsetPool().GetAtNU(record.gset);
    const CString assembly = record.origin != nullptr ? RecordName(AssemblyPath(*record.origin)) : CString();
    if (set != nullptr && set->name != assembly && sets.insert(record.gset).second) {
      model.partSets.push_back(ShownText(ToUtf8(set->name)));
    }
  }
}

ExportModel CollectExport(const Database& database, const std::vector<iterator>& msets, bool withNested) {
  return Collector(database, msets, withNested).Collect();
}

}  // namespace qd::workbench
