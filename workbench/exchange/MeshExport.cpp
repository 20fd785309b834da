#include "workbench/exchange/MeshExport.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <sstream>
#include <system_error>
#include <unordered_map>
#include <unordered_set>

#include "workbench/exchange/InpLines.h"
#include "workbench/exchange/MeshWriters.h"
#include "workbench/model/ElementTypes.h"
#include "workbench/model/MeshEdit.h"
#include "workbench/text/Paths.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

// ---- what is written ------------------------------------------------------------------------------------

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

// ---- files ----------------------------------------------------------------------------------------------

TextFile::TextFile(const std::filesystem::path& path, std::uint64_t total, const ProgressCall& progress)
    : m_out(path), m_total(total), m_progress(progress) {
  if (!m_out.IsOpen()) Fail();
}

void TextFile::Fail() const {
  throw ImportError{"IDS_WB_EXPORT_UNWRITABLE", m_out.Fault()};
}

TextFile& TextFile::operator<<(std::uint64_t number) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
  m_buffer.append(digits, end);
  return *this;
}

TextFile& TextFile::operator<<(double number) {
  char digits[40];
  const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
  m_buffer.append(digits, end);
  return *this;
}

TextFile& TextFile::Right(std::uint64_t number, std::size_t width) {
  const std::string digits = std::to_string(number);
  m_buffer.append(width > digits.size() ? width - digits.size() : 0, ' ');
  m_buffer += digits;
  return *this;
}

TextFile& TextFile::Exponent(double number, std::size_t width) {
  char digits[40];
  const int length = std::snprintf(digits, sizeof(digits), "%.16E", number);
  m_buffer.append(width > static_cast<std::size_t>(length) ? width - static_cast<std::size_t>(length) : 0, ' ');
  m_buffer += digits;
  return *this;
}

void TextFile::Step() {
  constexpr std::uint64_t kStep = 1U << 14U;
  if (++m_done % kStep != 0) return;
  Flush();
  const double share = m_total != 0 ? static_cast<double>(m_done) / static_cast<double>(m_total) : 0;
  if (!m_progress(std::min(share, 1.0))) throw ImportError{};
}

void TextFile::Flush() {
  if (!m_out.Write(m_buffer)) Fail();
  m_buffer.clear();
}

void TextFile::Close() {
  Flush();
  if (!m_out.Finish()) Fail();
}

std::map<std::uint64_t, const double*> NodesOf(const ExportModel& model) {
  std::map<std::uint64_t, const double*> nodes;
  for (const ExportSet& set : model.sets) {
    if (set.mesh == nullptr) continue;
    auto hint = nodes.begin();
    for (std::size_t place = 0; place < set.mesh->nodeIds.size(); ++place) {
      hint = nodes.emplace_hint(hint, set.mesh->nodeIds[place], &set.mesh->coordinates[place * 3]);
    }
  }
  return nodes;
}

std::vector<std::size_t> OrderFromWords(int elementType, std::string_view words) {
  const ElementType& type = *FindElementType(elementType);
  const auto corners = static_cast<std::size_t>(TopologyOf(type.shape).corners);
  const auto middles = MiddleNodes(elementType);
  std::vector<std::size_t> order;
  std::istringstream in{std::string(words)};
  for (std::string word; in >> word;) {
    const int a = word[0] - '0';
    if (word.size() == 1) {
      order.push_back(static_cast<std::size_t>(a));
      continue;
    }
    const int b = word[1] - '0';
    const auto at = std::find_if(middles.begin(), middles.end(), [a, b](const std::array<int, 2>& edge) {
      return (edge[0] == a && edge[1] == b) || (edge[0] == b && edge[1] == a);
    });
    order.push_back(corners + static_cast<std::size_t>(at - middles.begin()));
  }
  return order;
}

std::optional<ImportError> WriteMeshFile(const std::filesystem::path& path, const ExportModel& model,
                                         const ProgressCall& progress) {
  static const std::map<std::string, void (*)(const ExportModel&, TextFile&)> kWriters{
      {".INP", WriteInp}, {".MSH", WriteMsh}, {".UNV", WriteUnv},
      {".BDF", WriteBdf}, {".NAS", WriteBdf}, {".STL", WriteStl}};
  const auto writer = kWriters.find(UpperCase(PathText(path.extension())));
  if (writer == kWriters.end()) return ImportError{"IDS_WB_EXPORT_FORMAT", PathText(path.extension())};
  std::uint64_t total = 0;
  for (const ExportSet& set : model.sets) {
    if (set.mesh != nullptr) total += set.mesh->nodeIds.size() + ElementCountOf(*set.mesh);
  }
  if (total == 0) return ImportError{"IDS_WB_EXPORT_NOTHING", ""};
  try {
    TextFile file(path, total, progress);
    writer->second(model, file);
    file.Close();
    return std::nullopt;
  } catch (const ImportError& error) {
    return error;
  }
}

}  // namespace qd::workbench
