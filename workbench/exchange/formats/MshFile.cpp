#include "workbench/exchange/formats/MshFile.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <type_traits>

#include "workbench/exchange/formats/FileScan.h"
#include "workbench/exchange/formats/MeshGather.h"
#include "workbench/mesh/ElementTypes.h"

namespace qd::workbench {

namespace {

enum class Version : std::uint8_t { One, Two, Four, FourOne };

class Reader {
 public:
  Reader(const std::filesystem::path& path, const std::function<void(double)>& progress) : m_in(path, progress) {}

  ImportedModel Read() {
    std::string line;
    while (m_in.Rest(line)) {
      if (line.empty()) continue;
      if (!line.starts_with('$')) m_in.Fail("IDS_WB_IMPORT_OUTLINE", line.substr(0, 20));
      m_section = line;
      ReadSection();
    }
    return m_mesh.Take(true);
  }

 private:
  void ReadSection() {
    static constexpr struct {
      std::string_view name;
      std::string_view end;
      void (Reader::*read)();
    } kSections[] = {{"$MeshFormat", "$EndMeshFormat", &Reader::Format},
                     {"$PhysicalNames", "$EndPhysicalNames", &Reader::Names},
                     {"$Entities", "$EndEntities", &Reader::Entities},
                     {"$PartitionedEntities", "$EndPartitionedEntities", &Reader::PartitionedEntities},
                     {"$NOD", "$ENDNOD", &Reader::Nodes},
                     {"$Nodes", "$EndNodes", &Reader::Nodes},
                     {"$ParametricNodes", "$EndParametricNodes", &Reader::ParametricNodes},
                     {"$ELM", "$ENDELM", &Reader::Elements},
                     {"$Elements", "$EndElements", &Reader::Elements}};
    const auto* section = std::find_if(std::begin(kSections), std::end(kSections),
                                       [this](const auto& one) { return one.name == m_section; });
    if (section == std::end(kSections)) {
      if (m_section != "$Comments") m_mesh.Notes().Add("IDS_WB_NOTE_SECTIONS", m_section);
      return m_in.SkipPast("$End" + m_section.substr(1));
    }
    (this->*section->read)();
    if (m_in.Word() != section->end) m_in.Fail("IDS_WB_IMPORT_OUTLINE", section->end);
    std::string rest;
    if (m_in.Rest(rest) && !rest.empty()) m_in.Fail("IDS_WB_IMPORT_OUTLINE", section->end);
  }

  void Format() {
    const std::string number(m_in.Word());
    const std::string kind(m_in.Word());
    const std::string size(m_in.Word());
    static constexpr std::pair<std::string_view, Version> kVersions[] = {
        {"2", Version::Two},  {"2.0", Version::Two},  {"2.1", Version::Two},    {"2.2", Version::Two},
        {"4", Version::Four}, {"4.0", Version::Four}, {"4.1", Version::FourOne}};
    const auto* version = std::find_if(std::begin(kVersions), std::end(kVersions),
                                       [&number](const auto& one) { return one.first == number; });
    if (version == std::end(kVersions) || (kind != "0" && kind != "1") || size != "8") {
      m_in.Fail("IDS_WB_IMPORT_VERSION", number + " " + kind + " " + size);
    }
    m_version = version->second;
    m_namesHaveDimension = number != "2" && number != "2.0";
    std::string rest;
    if (kind == "0") return;
    m_in.Rest(rest);
    std::array<unsigned char, 4> one{};
    m_in.Bytes(one.data(), one.size());
    m_littleEnd = one == std::array<unsigned char, 4>{1, 0, 0, 0};
    if (!m_littleEnd && one != std::array<unsigned char, 4>{0, 0, 0, 1})
      m_in.Fail("IDS_WB_IMPORT_OUTLINE", m_section);
    m_binary = true;
  }

  // Numbers as text or as bytes.
  template <typename Number>
  Number Raw() {
    std::array<unsigned char, sizeof(Number)> bytes{};
    m_in.Bytes(bytes.data(), bytes.size());
    std::uint64_t all = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      all = all << 8U | bytes[m_littleEnd ? bytes.size() - 1 - i : i];
    }
    if constexpr (std::is_same_v<Number, double>) return std::bit_cast<double>(all);
    return static_cast<Number>(all);
  }
  std::int64_t Int() {
    if (m_binary) return Raw<std::int32_t>();
    const std::int64_t number = m_in.Integer();
    if (std::abs(number / 2) > INT32_MAX / 2)
      m_in.Fail("IDS_WB_IMPORT_INP_NUMBER", m_section + " " + std::to_string(number));
    return number;
  }
  double Real() { return m_binary ? Raw<double>() : m_in.Number(); }
  /// No number of a thing, and no count, is negative.
  std::uint64_t Natural(std::int64_t number) const {
    if (number < 0) m_in.Fail("IDS_WB_IMPORT_INP_NUMBER", m_section + " " + std::to_string(number));
    return static_cast<std::uint64_t>(number);
  }
  std::uint64_t Size() { return Natural(m_binary ? Raw<std::int64_t>() : m_in.Integer()); }
  /// Numbers of nodes and elements are longer in the last version.
  std::uint64_t Id() { return m_version == Version::FourOne ? Size() : Natural(Int()); }
  /// Refuses more of something than there can be, given what one of them holds.
  std::uint64_t Fit(std::uint64_t count, std::uint64_t ints, std::uint64_t longs) const {
    const std::uint64_t bytes = m_binary ? 4 * ints + 8 * longs : 2 * (ints + longs);
    m_in.CheckCount(count, bytes, m_section);
    return count;
  }
  std::uint64_t IdBytes() const { return m_version == Version::FourOne ? 1 : 0; }

  void Names() {
    const std::uint64_t count = Natural(m_in.Integer());
    m_in.CheckCount(count, 4, m_section);
    std::string line;
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::int64_t dimension = m_namesHaveDimension ? m_in.Integer() : -1;
      const std::int64_t number = m_in.Integer();
      m_in.Rest(line);
      const std::size_t first = line.find('"');
      const std::size_t last = line.rfind('"');
      if (first == last || dimension < -1 || dimension > 3) m_in.Fail("IDS_WB_IMPORT_OUTLINE", m_section);
      m_mesh.Name(static_cast<int>(dimension), number, line.substr(first + 1, last - first - 1));
    }
  }

  void Entities() { EntitiesOf(false); }
  void PartitionedEntities() {
    const bool longs = m_version == Version::FourOne;
    longs ? Size() : Natural(Int());  // partitions
    const std::uint64_t ghosts = Fit(longs ? Size() : Natural(Int()), 2, 0);
    for (std::uint64_t i = 0; i < 2 * ghosts; ++i) Int();
    EntitiesOf(true);
  }
  void EntitiesOf(bool partitioned) {
    std::uint64_t counts[4];
    for (std::uint64_t& count : counts) count = Size();
    for (int dimension = 0; dimension < 4; ++dimension) {
      Fit(counts[dimension], 1, 4);
      for (std::uint64_t i = 0; i < counts[dimension]; ++i) Entity(dimension, partitioned);
    }
  }
  void Entity(int dimension, bool partitioned) {
    const std::int64_t number = Int();
    if (partitioned) {
      Int();
      Int();
      const std::uint64_t partitions = Fit(m_version == Version::FourOne ? Size() : Natural(Int()), 1, 0);
      for (std::uint64_t i = 0; i < partitions; ++i) Int();
    }
    const int box = dimension == 0 && m_version == Version::FourOne ? 3 : 6;
    for (int i = 0; i < box; ++i) Real();
    std::vector<std::int64_t>& groups = m_groups[{dimension, number}];
    const std::uint64_t count = Fit(Size(), 1, 0);
    // A group of the other direction has the same elements.
    for (std::uint64_t i = 0; i < count; ++i) groups.push_back(std::abs(Int()));
    std::sort(groups.begin(), groups.end());
    groups.erase(std::unique(groups.begin(), groups.end()), groups.end());
    if (dimension == 0) return;
    const std::uint64_t sides = Fit(Size(), 1, 0);
    for (std::uint64_t i = 0; i < sides; ++i) Int();
  }

  void Point(double (&at)[3]) {
    for (double& coordinate : at) coordinate = Real();
  }
  void Nodes() {
    if (m_version == Version::Four || m_version == Version::FourOne) return NodeBlocks();
    const std::uint64_t count = Natural(m_in.Integer());
    StartBytes();
    Fit(count, 1, 3);
    double at[3];
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::uint64_t number = Id();
      Point(at);
      m_mesh.Node(number, at);
    }
  }
  void ParametricNodes() {
    const std::uint64_t count = Natural(m_in.Integer());
    StartBytes();
    Fit(count, 3, 3);
    double at[3];
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::uint64_t number = Id();
      Point(at);
      m_mesh.Node(number, at);
      const std::int64_t dimension = Int();
      Int();
      for (std::int64_t k = 0; k < dimension && dimension < 3; ++k) Real();
    }
  }
  void NodeBlocks() {
    const std::uint64_t blocks = Fit(Size(), 3, 1);
    const std::uint64_t all = Fit(Size(), 1 - IdBytes(), 3 + IdBytes());
    if (m_version == Version::FourOne) {  // the smallest number and the largest
      Size();
      Size();
    }
    std::uint64_t read = 0;
    for (std::uint64_t i = 0; i < blocks; ++i) read += NodeBlock();
    if (read != all) m_in.Fail("IDS_WB_IMPORT_INP_COUNT", m_section);
  }
  std::uint64_t NodeBlock() {
    const std::int64_t first = Int();
    const std::int64_t second = Int();
    const std::int64_t dimension = m_version == Version::FourOne ? first : second;
    const bool parametric = Int() != 0;
    const std::uint64_t count = Fit(Size(), 1 - IdBytes(), 3 + IdBytes());
    if (dimension < 0 || dimension > 3) m_in.Fail("IDS_WB_IMPORT_OUTLINE", m_section);
    double at[3];
    const auto one = [&](std::uint64_t number) {
      Point(at);
      for (std::int64_t k = 0; k < dimension && parametric; ++k) Real();
      m_mesh.Node(number, at);
    };
    if (m_version == Version::Four) {
      for (std::uint64_t i = 0; i < count; ++i) one(Id());
      return count;
    }
    std::vector<std::uint64_t> numbers(static_cast<std::size_t>(count));
    for (std::uint64_t& number : numbers) number = Id();
    for (const std::uint64_t number : numbers) one(number);
    return count;
  }

  /// The count before bytes is text, in a line of its own.
  void StartBytes() {
    std::string rest;
    if (m_binary && (!m_in.Rest(rest) || !rest.empty())) m_in.Fail("IDS_WB_IMPORT_OUTLINE", m_section);
  }
  const ElementType& Type(std::int64_t number) const {
    const ElementType* type = number >= 0 && number < 1000 ? FindElementType(static_cast<int>(number)) : nullptr;
    if (type == nullptr) throw ImportError{"IDS_WB_IMPORT_ELEMENT_TYPE", std::to_string(number)};
    return *type;
  }
  void Element(const MeshGather::Group& group, const ElementType& type, std::uint64_t number) {
    m_nodes.resize(static_cast<std::size_t>(type.nodes));
    for (std::uint64_t& node : m_nodes) node = Id();
    m_mesh.Element(group, type.number, number, m_nodes);
  }
  /// By the number of its group, or of its entity when it is in none.
  static MeshGather::Group GroupOf(const ElementType& type, std::int64_t group, std::int64_t entity) {
    return {group == 0, TopologyOf(type.shape).dimension, group != 0 ? std::abs(group) : entity};
  }

  void Elements() {
    if (m_version == Version::Four || m_version == Version::FourOne) return ElementBlocks();
    const std::uint64_t count = Natural(m_in.Integer());
    StartBytes();
    if (m_binary) return ElementRuns(count);
    Fit(count, 4, 0);
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::uint64_t number = Id();
      const ElementType& type = Type(Int());
      if (m_version == Version::One) {
        const std::int64_t group = Int();
        const std::int64_t entity = Int();
        if (Int() != type.nodes) m_in.Fail("IDS_WB_IMPORT_INP_COUNT", m_section);
        Element(GroupOf(type, group, entity), type, number);
      } else {
        Tagged(type, number, Fit(Natural(Int()), 1, 0));
      }
    }
  }
  /// The first tags say where the element belongs; others are about parts for computers.
  void Tagged(const ElementType& type, std::uint64_t number, std::uint64_t tags) {
    std::int64_t first[2] = {0, 0};
    for (std::uint64_t i = 0; i < tags; ++i) {
      const std::int64_t tag = Int();
      if (i < 2) first[i] = tag;
    }
    Element(GroupOf(type, first[0], first[1]), type, number);
  }
  void ElementRuns(std::uint64_t count) {
    Fit(count, 2, 0);
    for (std::uint64_t read = 0; read < count;) {
      const ElementType& type = Type(Int());
      const std::uint64_t run = Natural(Int());
      const std::uint64_t tags = Fit(Natural(Int()), 1, 0);
      Fit(run, 1 + tags + static_cast<std::uint64_t>(type.nodes), 0);
      if (run == 0 || run > count - read) m_in.Fail("IDS_WB_IMPORT_INP_COUNT", m_section);
      for (std::uint64_t i = 0; i < run; ++i) {
        const std::uint64_t number = Id();
        Tagged(type, number, tags);
      }
      read += run;
    }
  }
  void ElementBlocks() {
    const std::uint64_t blocks = Fit(Size(), 3, 1);
    const std::uint64_t all = Fit(Size(), 2 * (1 - IdBytes()), 2 * IdBytes());
    if (m_version == Version::FourOne) {
      Size();
      Size();
    }
    std::uint64_t read = 0;
    for (std::uint64_t i = 0; i < blocks; ++i) read += ElementBlock();
    if (read != all) m_in.Fail("IDS_WB_IMPORT_INP_COUNT", m_section);
  }
  std::uint64_t ElementBlock() {
    const std::int64_t first = Int();
    const std::int64_t second = Int();
    const bool newer = m_version == Version::FourOne;
    const std::int64_t dimension = newer ? first : second;
    const std::int64_t entity = newer ? second : first;
    const ElementType& type = Type(Int());
    const auto width = 1 + static_cast<std::uint64_t>(type.nodes);
    const std::uint64_t count = Fit(Size(), newer ? 0 : width, newer ? width : 0);
    const auto groups = m_groups.find({static_cast<int>(dimension), entity});
    const bool bare = groups == m_groups.end() || groups->second.empty();
    const MeshGather::Group group = GroupOf(type, bare ? 0 : groups->second.front(), entity);
    for (std::size_t i = 1; !bare && i < groups->second.size(); ++i) {
      m_mesh.Share({false, group.dimension, groups->second[i]});
    }
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::uint64_t number = Id();
      Element(group, type, number);
    }
    return count;
  }

  FileScan m_in;
  MeshGather m_mesh;
  std::string m_section;
  Version m_version = Version::One;
  bool m_namesHaveDimension = true;
  bool m_binary = false;
  bool m_littleEnd = true;
  std::vector<std::uint64_t> m_nodes;
  std::map<std::pair<int, std::int64_t>, std::vector<std::int64_t>> m_groups;  // of entities
};

}  // namespace

ImportedModel ReadMshFile(const std::filesystem::path& path, const std::function<void(double)>& progress) {
  return Reader(path, progress).Read();
}

}  // namespace qd::workbench
