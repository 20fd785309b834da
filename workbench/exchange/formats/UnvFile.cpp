#include "workbench/exchange/formats/UnvFile.h"

#include <algorithm>
#include <set>
#include <sstream>

#include "workbench/exchange/formats/FileScan.h"
#include "workbench/exchange/formats/MeshGather.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/exchange/formats/UnvElements.h"
#include "workbench/exchange/formats/UnvGroups.h"
#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/NumberHash.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

class Reader {
 public:
  Reader(const std::filesystem::path& path, const std::function<void(double)>& progress) : m_in(path, progress) {
    const std::vector<NamedGroup> groups = ReadUnvGroups(path);
    for (std::size_t i = 0; i < groups.size(); ++i) {
      const MeshGather::Group group{false, 0, static_cast<std::int64_t>(i)};
      m_mesh.Name(group.dimension, group.number, groups[i].name);
      for (const std::uint64_t element : groups[i].elements) {
        const auto [first, isNew] = m_groups.try_emplace(element, group.number);
        if (!isNew && first->second != group.number) m_mesh.Share(group);
      }
    }
  }

  ImportedModel Read() {
    for (std::string line; m_in.Rest(line);) {
      if (line.empty()) continue;
      if (line != "-1") m_in.Fail("IDS_WB_IMPORT_OUTLINE", line.substr(0, 20));
      if (!m_in.Rest(line)) break;
      ReadDataSet(line);
    }
    ImportedModel model = m_mesh.Take(false);
    for (const int kind : m_leftOut) model.notes.push_back({"IDS_WB_NOTE_LEFT_OUT", std::to_string(kind)});
    return model;
  }

 private:
  void ReadDataSet(const std::string& number) {
    if (number == "15") return Each([this](std::uint64_t node) { Node(node, false); });
    if (number == "781" || number == "2411") return Each([this](std::uint64_t node) { Node(node, true); });
    if (number == "2412") return Each([this](std::uint64_t element) { Element(element, false); });
    if (number == "780") return Each([this](std::uint64_t element) { Element(element, true); });
    if (number.empty() || number.find_first_not_of("0123456789b ") != std::string::npos) {
      m_in.Fail("IDS_WB_IMPORT_OUTLINE", number.substr(0, 20));
    }
    m_in.SkipPast("-1");
  }

  template <typename Record>
  void Each(Record record) {
    for (std::int64_t number = m_in.Integer(); number != -1; number = m_in.Integer()) record(Natural(number));
    std::string rest;
    if (m_in.Rest(rest) && !rest.empty()) m_in.Fail("IDS_WB_IMPORT_OUTLINE", rest.substr(0, 20));
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
    if (known == nullptr) {
      m_leftOut.insert(static_cast<int>(std::clamp<std::int64_t>(kind, 0, kLastKind)));
      return;
    }
    std::vector<std::size_t>& order = m_orders[known->elementType];
    if (order.empty()) order = OrderFromWords(known->elementType, known->order);
    if (nodes.size() != order.size()) m_in.Fail("IDS_WB_IMPORT_INP_COUNT", std::to_string(number));
    std::vector<std::uint64_t> ordered(nodes.size());
    for (std::size_t i = 0; i < order.size(); ++i) ordered[order[i]] = nodes[i];
    const auto group = m_groups.find(number);
    const int dimension = TopologyOf(FindElementType(known->elementType)->shape).dimension;
    m_mesh.Element(group != m_groups.end() ? MeshGather::Group{false, 0, group->second}
                                           : MeshGather::Group{true, dimension, property},
                   known->elementType, number, ordered);
  }

  static constexpr std::int64_t kLastKind = 9999;
  FileScan m_in;
  MeshGather m_mesh;
  NumberMap<std::int64_t> m_groups;                  // of elements
  std::map<int, std::vector<std::size_t>> m_orders;  // of nodes, by kind of element
  std::set<int> m_leftOut;
};

}  // namespace

ImportedModel ReadUnvFile(const std::filesystem::path& path, const std::function<void(double)>& progress) {
  return Reader(path, progress).Read();
}

}  // namespace qd::workbench
