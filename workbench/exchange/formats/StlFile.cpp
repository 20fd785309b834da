#include "workbench/exchange/formats/StlFile.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numeric>

#include "workbench/exchange/formats/FileScan.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

constexpr std::size_t kHead = 80;
constexpr std::size_t kCounted = kHead + 4;
constexpr std::size_t kFacet = 50;

std::uint32_t WordAt(const char* bytes) {
  std::uint32_t word = 0;
  for (std::size_t i = 4; i-- > 0;) word = word << 8U | static_cast<unsigned char>(bytes[i]);
  return word;
}

using Point = std::array<double, 3>;

class Reader {
 public:
  Reader(const std::filesystem::path& path, const std::function<void(double)>& progress) : m_in(path, progress) {}

  ImportedModel ReadBytes() {
    std::array<char, kCounted> head{};
    m_in.Bytes(head.data(), head.size());
    const std::uint32_t count = WordAt(head.data() + kHead);
    Begin("");
    std::array<char, kFacet> facet{};
    for (std::uint32_t i = 0; i < count; ++i) {
      m_in.Bytes(facet.data(), facet.size());
      for (std::size_t corner = 0; corner < 3; ++corner) {
        Point point{};
        for (std::size_t k = 0; k < 3; ++k) {
          constexpr std::size_t kNormal = 12;
          const float value = std::bit_cast<float>(WordAt(&facet[kNormal + corner * 12 + k * 4]));
          if (!std::isfinite(value)) throw ImportError{"IDS_WB_IMPORT_INP_NUMBER", std::to_string(i + 1)};
          point[k] = static_cast<double>(value);
        }
        Corner(point);
      }
      EndFacet();
    }
    End();
    return std::move(m_model);
  }

  ImportedModel ReadText() {
    bool open = false;
    for (std::string word = Next(); !word.empty(); word = Next()) {
      std::string rest;
      if (word == "solid" && !open) {
        m_in.Rest(rest);
        Begin(rest);
        open = true;
      } else if (word == "endsolid" && open) {
        m_in.Rest(rest);
        End();
        open = false;
      } else if (word == "facet" && open) {
        Facet();
      } else {
        m_in.Fail("IDS_WB_IMPORT_OUTLINE", word);
      }
    }
    if (open) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
    return std::move(m_model);
  }

 private:
  std::string Next() { return LowerCase(m_in.Word()); }
  void Expect(std::string_view word) {
    const std::string found = Next();
    if (found.empty()) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
    if (found != word) m_in.Fail("IDS_WB_IMPORT_OUTLINE", found);
  }
  void Facet() {
    Expect("normal");
    for (int i = 0; i < 3; ++i) m_in.Word();  // which follows from the corners, and is no number where it does not
    Expect("outer");
    Expect("loop");
    for (int corner = 0; corner < 3; ++corner) {
      Expect("vertex");
      Point point{};
      for (double& coordinate : point) {
        coordinate = m_in.Number();
        if (!std::isfinite(coordinate)) m_in.Fail("IDS_WB_IMPORT_INP_NUMBER", std::to_string(coordinate));
      }
      Corner(point);
    }
    Expect("endloop");
    Expect("endfacet");
    EndFacet();
  }

  void Begin(const std::string& name) {
    ++m_solids;
    ImportedMeshSet& set = m_model.meshSets.emplace_back();
    set.name = name.empty() ? "Mesh " + std::to_string(m_solids) : name;
    set.mesh.blocks.push_back({2, 3, {}, {}});
  }
  void Corner(Point point) {
    for (double& coordinate : point) coordinate += 0.0;  // there is a zero with a sign
    m_corners.push_back(point);
  }
  void EndFacet() { m_model.meshSets.back().mesh.blocks[0].elementIds.push_back(++m_lastElement); }
  void End() {
    MeshData& mesh = m_model.meshSets.back().mesh;
    if (m_corners.empty()) {
      m_model.meshSets.pop_back();
    } else {
      JoinCorners(mesh);
    }
    m_corners.clear();
  }
  /// Equal corners, found by sorting: whoever chose them cannot make that slow.
  void JoinCorners(MeshData& mesh) {
    std::vector<std::size_t> order(m_corners.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
      return m_corners[a] != m_corners[b] ? m_corners[a] < m_corners[b] : a < b;
    });
    std::vector<std::size_t> first(order.size());  // of the corners that are equal
    for (std::size_t i = 0; i < order.size(); ++i) {
      const bool same = i > 0 && m_corners[order[i]] == m_corners[order[i - 1]];
      first[order[i]] = same ? first[order[i - 1]] : order[i];
    }
    std::vector<std::uint64_t>& nodes = mesh.blocks[0].nodeIds;
    nodes.resize(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
      if (first[i] == i) {
        mesh.nodeIds.push_back(++m_lastNode);
        mesh.coordinates.insert(mesh.coordinates.end(), m_corners[i].begin(), m_corners[i].end());
        nodes[i] = m_lastNode;
      } else {
        nodes[i] = nodes[first[i]];
      }
    }
  }

  FileScan m_in;
  ImportedModel m_model;
  std::vector<Point> m_corners;  // of the solid
  std::uint64_t m_solids = 0;
  std::uint64_t m_lastNode = 0;
  std::uint64_t m_lastElement = 0;
};

}  // namespace

bool IsBinaryStl(std::string_view head, std::uintmax_t size) {
  return head.size() >= kCounted && size == kCounted + std::uintmax_t{WordAt(head.data() + kHead)} * kFacet;
}

ImportedModel ReadStlFile(const std::filesystem::path& path, const std::function<void(double)>& progress) {
  FileScan in(path);
  std::string head(static_cast<std::size_t>(std::min<std::uint64_t>(in.Size(), kCounted)), '\0');
  in.Bytes(head.data(), head.size());
  Reader reader(path, progress);
  return IsBinaryStl(head, in.Size()) ? reader.ReadBytes() : reader.ReadText();
}

}  // namespace qd::workbench
