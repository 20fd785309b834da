#include "workbench/exchange/store/CollectExport.h"

#include <unordered_map>
#include <unordered_set>

#include "workbench/text/Ascii.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// A name that files can hold: nothing that ends a line, a field or a quotation.
std::string CleanName(const CString& name) {
  std::string clean = ToUtf8(name);
  for (char& letter : clean) {
    const bool odd = static_cast<unsigned char>(letter) < ' ' || letter == '"' || letter == ',' || letter == '=';
    if (odd) letter = '_';
  }
  clean = std::string(Trimmed(clean));
  return clean.empty() ? "Set" : clean;
}

class Collector {
 public:
  Collector(const Database& database, const std::vector<iterator>& msets)
      : m_database(database), m_chosen(msets.begin(), msets.end()) {}

  ExportModel Collect() {
    for (const iterator itr : m_database.GetMsetPool().GetItrList()) {
      if (IsWritten(itr)) Add(itr);
    }
    return std::move(m_model);
  }

 private:
  /// Whether a set or one above it was chosen.
  bool IsWritten(iterator itr) const {
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
    set.name = UniqueName(record.name);
    if (IsWritten(itr)) {
      set.mesh = record.mesh;
      set.property = NeedProperty(record.property);
    }
    m_places[itr] = static_cast<std::int32_t>(m_model.sets.size());
    m_model.sets.push_back(std::move(set));
  }

  std::string UniqueName(const CString& name) {
    const std::string clean = CleanName(name);
    std::string unique = clean;
    for (int number = 2; !m_names.insert(UpperCase(unique)).second; ++number) {
      unique = clean + "-" + std::to_string(number);
    }
    return unique;
  }

  std::int32_t NeedProperty(iterator itr) {
    const tagTProperty* record = m_database.GetPropertyPool().GetAtNU(itr);
    if (record == nullptr) return -1;
    if (const auto known = m_properties.find(itr); known != m_properties.end()) return known->second;
    const auto place = static_cast<std::int32_t>(m_model.properties.size());
    m_model.properties.push_back(
        {CleanName(record->name), record->kind, record->size, NeedMaterial(record->material)});
    return m_properties[itr] = place;
  }

  std::int32_t NeedMaterial(iterator itr) {
    const tagTMaterial* record = m_database.GetMaterialPool().GetAtNU(itr);
    if (record == nullptr) return -1;
    if (const auto known = m_materials.find(itr); known != m_materials.end()) return known->second;
    const auto place = static_cast<std::int32_t>(m_model.materials.size());
    m_model.materials.push_back(
        {CleanName(record->name), record->youngsModulus, record->poissonsRatio, record->density});
    return m_materials[itr] = place;
  }

  const Database& m_database;
  std::unordered_set<iterator> m_chosen;
  ExportModel m_model;
  std::unordered_map<iterator, std::int32_t> m_places;
  std::unordered_map<iterator, std::int32_t> m_properties;
  std::unordered_map<iterator, std::int32_t> m_materials;
  std::unordered_set<std::string> m_names;
};

}  // namespace

ExportModel CollectExport(const Database& database, const std::vector<iterator>& msets) {
  return Collector(database, msets).Collect();
}

}  // namespace qd::workbench
