#include "workbench/exchange/formats/UnvFile.h"

#include <algorithm>
#include <sstream>

#include "workbench/exchange/formats/FileScan.h"
#include "workbench/exchange/formats/MeshGather.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/exchange/formats/UnvDataSets.h"
#include "workbench/exchange/formats/UnvElements.h"
#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/NumberHash.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

/// Groups stand behind the elements that they name, so they are read first, in a way of their own.
std::vector<UnvGroup> GroupsOf(const std::filesystem::path& path, const std::function<void(double)>& progress) {
  FileScan in(path, progress);
  std::vector<UnvGroup> groups;
  EachUnvDataSet(in, [&](const std::string& number) { return ReadUnvGroups(in, number, groups); });
  return groups;
}

class Reader {
 public:
  Reader(const std::filesystem::path& path, const std::vector<UnvGroup>& groups,
         const std::function<void(double)>& progress)
      : m_in(path, progress) {
    for (const UnvGroup& given : groups) {
      const MeshGather::Group group{false, 0, static_cast<std::int64_t>(m_names.size())};
      m_names.push_back(given.name);
      m_mesh.Name(group.dimension, group.number, given.name);
      m_mesh.Notes().Add("IDS_WB_NOTE_GROUP_ENTRIES", given.name, given.others);
      m_mesh.Notes().Add("IDS_WB_NOTE_GROUP_SHORT", given.name, given.isShort ? 1 : 0);
      for (const std::uint64_t element : given.elements) {
        const auto [first, isNew] = m_groups.try_emplace(element, GroupOfElement{group.number, false});
        if (!isNew && first->second.group != group.number) m_mesh.Share(group);
      }
    }
  }

  ImportedModel Read() {
    EachUnvDataSet(m_in, [this](const std::string& number) { return ReadDataSet(number); });
    std::vector<std::uint64_t> missing(m_names.size());
    for (const auto& [element, group] : m_groups) {
      if (!group.found) ++missing[static_cast<std::size_t>(group.group)];
    }
    for (std::size_t group = 0; group < missing.size(); ++group) {
      m_mesh.Notes().Add("IDS_WB_NOTE_GROUP_MISSING", m_names[group], missing[group]);
    }
    return m_mesh.Take(false);
  }

 private:
  bool ReadDataSet(const std::string& number) {
    if (number == "15") return Each([this](std::uint64_t node) { Node(node, false); });
    if (number == "781" || number == "2411") return Each([this](std::uint64_t node) { Node(node, true); });
    if (number == "2412") return Each([this](std::uint64_t element) { Element(element, false); });
    if (number == "780") return Each([this](std::uint64_t element) { Element(element, true); });
    std::vector<UnvGroup> known;
    if (ReadUnvGroups(m_in, number, known)) return true;
    if (number != kHeader) m_mesh.Notes().Add("IDS_WB_NOTE_SECTIONS", number);
    return false;
  }

  template <typename Record>
  bool Each(Record record) {
    for (std::int64_t number = m_in.Integer(); number != -1; number = m_in.Integer()) record(Natural(number));
    std::string rest;
    if (m_in.Rest(rest) && !rest.empty()) m_in.Fail("IDS_WB_IMPORT_OUTLINE", rest.substr(0, 20));
    return true;
  }
  std::uint64_t Natural(std::int64_t number) const {
    if (number < 0) m_in.Fail("IDS_WB_IMPORT_INP_NUMBER", std::to_string(number));
    return static_cast<std::uint64_t>(number);
  }

  /// Three numbers follow, in the line or in one of their own.
  void Node(std::uint64_t number, bool ownLine) {
    for (int i = 0; i < 3; ++i) m_in.Integer();
    std::string line;
    if (ownLine) m_in.Rest(line);
    if (!m_in.Rest(line)) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
    double at[3];
    std::vector<std::string> fields;
    std::istringstream words(line);
    for (std::string word; words >> word;) fields.push_back(word);
    if (fields.size() != 3) fields = Columns(line, ownLine ? 25 : 13);
    for (std::size_t i = 0; i < 3; ++i) at[i] = Coordinate(fields[i]);
    m_mesh.Node(number, at);
  }
  /// Numbers may fill their columns, with nothing between them; the last one ends with the line.
  static std::vector<std::string> Columns(const std::string& line, std::size_t width) {
    std::vector<std::string> fields(3);
    std::size_t end = line.size();
    for (std::size_t i = fields.size(); i-- > 0;) {
      const std::size_t begin = end > width ? end - width : 0;
      fields[i] = line.substr(begin, end - begin);
      end = begin;
    }
    return fields;
  }
  double Coordinate(std::string field) const {
    for (char& letter : field) {
      if (letter == 'D' || letter == 'd') letter = 'E';
    }
    const std::optional<double> number = FileScan::NumberOf(Trimmed(field));
    if (!number) m_in.Fail("IDS_WB_IMPORT_INP_NUMBER", field);
    return *number;
  }

  void Element(std::uint64_t number, bool older) {
    const std::int64_t kind = m_in.Integer();
    if (older) m_in.Integer();  // table of the physical property
    const std::int64_t property = m_in.Integer();
    if (older) m_in.Integer();  // table of the material
    m_in.Integer();             // material
    m_in.Integer();             // colour
    const std::uint64_t count = Natural(m_in.Integer());
    m_in.CheckCount(count, 2, "nodes");
    const UnvElement* known = kind >= 0 && kind < kLastKind ? FindUnvNumber(static_cast<int>(kind)) : nullptr;
    if (known != nullptr ? known->beam : kind >= 11 && kind <= 32) {
      for (int i = 0; i < 3; ++i) m_in.Integer();
    }
    std::vector<std::uint64_t> nodes;
    for (std::uint64_t i = 0; i < count; ++i) nodes.push_back(Natural(m_in.Integer()));
    const auto group = m_groups.find(number);
    if (group != m_groups.end()) group->second.found = true;
    if (known == nullptr) return m_mesh.Notes().Add("IDS_WB_NOTE_LEFT_OUT", std::to_string(kind));
    std::vector<std::size_t>& order = m_orders[known->elementType];
    if (order.empty()) order = OrderFromWords(known->elementType, known->order);
    if (nodes.size() != order.size()) m_in.Fail("IDS_WB_IMPORT_INP_COUNT", std::to_string(number));
    std::vector<std::uint64_t> ordered(nodes.size());
    for (std::size_t i = 0; i < order.size(); ++i) ordered[order[i]] = nodes[i];
    const int dimension = TopologyOf(FindElementType(known->elementType)->shape).dimension;
    m_mesh.Element(group != m_groups.end() ? MeshGather::Group{false, 0, group->second.group}
                                           : MeshGather::Group{true, dimension, property},
                   known->elementType, number, ordered);
  }

  struct GroupOfElement {
    std::int64_t group;
    bool found;  // the element stands in the file
  };
  static constexpr std::int64_t kLastKind = 9999;
  static constexpr std::string_view kHeader = "151";  // who wrote the file, and when
  FileScan m_in;
  MeshGather m_mesh;
  std::vector<std::string> m_names;                  // of groups
  NumberMap<GroupOfElement> m_groups;                // of elements
  std::map<int, std::vector<std::size_t>> m_orders;  // of nodes, by kind of element
};

}  // namespace

ImportedModel ReadUnvFile(const std::filesystem::path& path, const std::function<void(double)>& progress) {
  const auto share = [&progress](double from, double to) -> std::function<void(double)> {
    if (!progress) return {};
    return [&progress, from, to](double done) { progress(from + done * (to - from)); };
  };
  constexpr double kForGroups = 0.2;
  const std::vector<UnvGroup> groups = GroupsOf(path, share(0, kForGroups));
  return Reader(path, groups, share(kForGroups, 1)).Read();
}

}  // namespace qd::workbench
