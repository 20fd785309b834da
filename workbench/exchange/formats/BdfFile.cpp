#include "workbench/exchange/formats/BdfFile.h"

#include <charconv>
#include <cmath>
#include <map>
#include <optional>

#include "workbench/exchange/formats/BdfElements.h"
#include "workbench/exchange/formats/BdfLines.h"
#include "workbench/exchange/formats/MeshGather.h"
#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/mesh/ElementTypes.h"

namespace qd::workbench {

namespace {

constexpr std::size_t kBeforeNodes = 2;  // fields of an element: its number and its property
constexpr const char* kLocal = "IDS_WB_IMPORT_BDF_SYSTEM";

class Reader {
 public:
  Reader(const std::filesystem::path& path, const std::function<void(double)>& progress) : m_in(path, progress) {}

  ImportedModel Read() {
    for (BdfCard card; m_in.Next(card);) Card(card);
    if (m_usesDefault && m_default) m_default->Fail(kLocal, m_default->name);
    return m_mesh.Take(false);
  }

 private:
  void Card(const BdfCard& card) {
    if (card.name == "GRID") return Node(card);
    if (const BdfEntry* entry = FindBdfEntry(card.name)) return Element(card, *entry);
    if (card.name == "GRDSET" && IsLocal(card)) m_default = card;
    const bool isElement = IsBdfElementLeftOut(card.name);
    if (card.name.starts_with('C') && !isElement && !IsNoBdfElement(card.name)) {
      card.Fail("IDS_WB_IMPORT_INP_TYPE", card.name);
    }
    m_mesh.Notes().Add(isElement ? "IDS_WB_NOTE_LEFT_OUT" : "IDS_WB_NOTE_SECTIONS", card.name);
  }

  /// The system that a node's place is given in; GRDSET has its default in the same field.
  static std::string_view SystemOf(const BdfCard& card) { return card.Field(1); }
  static bool IsLocal(const BdfCard& card) {
    return SystemOf(card).find_first_not_of('0') != std::string_view::npos;
  }

  static std::uint64_t Natural(const BdfCard& card, std::size_t place) {
    std::string_view field = card.Field(place);
    if (field.starts_with('+')) field.remove_prefix(1);
    std::int64_t number = 0;
    const auto [end, fault] = std::from_chars(field.data(), field.data() + field.size(), number);
    if (fault != std::errc() || end != field.data() + field.size() || number < 0) {
      card.Fail("IDS_WB_IMPORT_INP_NUMBER", card.name + " " + std::string(card.Field(place)));
    }
    return static_cast<std::uint64_t>(number);
  }
  /// The letter before the exponent may be D, or missing; a blank field is zero.
  static double Real(const BdfCard& card, std::size_t place) {
    const std::string_view field = card.Field(place);
    if (field.empty()) return 0;
    std::string text(field);
    const std::size_t letter = text.find_first_of("DE");
    const std::size_t sign = text.find_first_of("+-", 1);
    if (letter != std::string::npos) {
      text[letter] = 'E';
    } else if (sign != std::string::npos) {
      text.insert(sign, 1, 'E');
    }
    const std::optional<double> number = FileScan::NumberOf(text);
    if (!number || !std::isfinite(*number)) {
      card.Fail("IDS_WB_IMPORT_INP_NUMBER", card.name + " " + std::string(field));
    }
    return *number;
  }

  void Node(const BdfCard& card) {
    if (IsLocal(card)) card.Fail(kLocal, card.name);
    m_usesDefault = m_usesDefault || SystemOf(card).empty();
    constexpr std::size_t kPlace = 2;
    const double at[3] = {Real(card, kPlace), Real(card, kPlace + 1), Real(card, kPlace + 2)};
    m_mesh.Node(Natural(card, 0), at);
  }

  /// Solvers take zero for a blank.
  static bool IsGiven(const BdfCard& card, std::size_t place) {
    return card.Field(place).find_first_not_of('0') != std::string_view::npos;
  }
  void Element(const BdfCard& card, const BdfEntry& entry) {
    const ElementShape shape = FindElementType(entry.first)->shape;
    const auto corners = static_cast<std::size_t>(TopologyOf(shape).corners);
    std::size_t all = entry.second != 0 ? static_cast<std::size_t>(FindElementType(entry.second)->nodes) : corners;
    std::size_t given = 0;
    for (std::size_t i = 0; i < all; ++i) {
      const bool is = IsGiven(card, kBeforeNodes + i);
      if (!is && i < corners) card.Fail("IDS_WB_IMPORT_INP_COUNT", card.name);
      if (is) ++given;
    }
    if (given != all) {
      // What lies between some corners alone has no kind of its own.
      if (given != corners) m_mesh.Notes().Add("IDS_WB_NOTE_BDF_MIDDLES", card.name);
      all = corners;
    }
    // One that has a node in its middle, too, and is read without it.
    if (card.name == "CQUAD" && IsGiven(card, kBeforeNodes + 8)) {
      m_mesh.Notes().Add("IDS_WB_NOTE_BDF_MIDDLES", card.name);
    }
    const int elementType = all > corners ? entry.second : entry.first;
    std::vector<std::size_t>& order = m_orders[elementType];
    if (order.empty()) order = OrderFromWords(elementType, FindBdfElement(elementType)->order);
    m_nodes.resize(all);
    for (std::size_t i = 0; i < all; ++i) m_nodes[order[i]] = Natural(card, kBeforeNodes + i);
    const std::uint64_t property = entry.hasProperty && !card.Field(1).empty() ? Natural(card, 1) : 0;
    m_mesh.Element({true, TopologyOf(shape).dimension, static_cast<std::int64_t>(property)}, elementType,
                   Natural(card, 0), m_nodes);
  }

  BdfLines m_in;
  MeshGather m_mesh;
  bool m_usesDefault = false;        // some node names no system
  std::optional<BdfCard> m_default;  // where a local one is made the default
  std::vector<std::uint64_t> m_nodes;
  std::map<int, std::vector<std::size_t>> m_orders;  // of nodes, by kind of element
};

}  // namespace

ImportedModel ReadBdfFile(const std::filesystem::path& path, const std::function<void(double)>& progress) {
  return Reader(path, progress).Read();
}

}  // namespace qd::workbench
