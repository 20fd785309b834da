#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/Types.h"

namespace qd {

/// Base of the plain records. Records are immutable once they are in a pool; a change stores a new record.
struct tagTRecord {
  std::int32_t id = 0;  ///< number shown to the user, 0 none; given by the pool
};

/// Kind of a body's topology, in the order in which the tree lists them.
enum class TopologyKind : std::uint8_t { Point, Curve, Surface, Solid, Compound };

/// Triangles and edges of a part for display; made once from its shape.
struct PartFacets {
  std::vector<float> points;             ///< x, y, z
  std::vector<float> normals;            ///< beside points, or empty
  std::vector<std::uint32_t> triangles;  ///< three point numbers each
  std::vector<std::uint32_t> lineSizes;  ///< points of each edge polyline
  std::vector<std::uint32_t> lines;      ///< point numbers of all polylines, one after another
};

/// The shape of a part.
struct PartShape {
  std::string brep;   ///< in the exchange form of the geometry kernel
  PartFacets facets;  ///< for display
  double volume = 0;  ///< model units; 0 for what has none
  double area = 0;    ///< of all faces
  double length = 0;  ///< of all edges
  /// What a single face or edge is: message key of its kind, 0, then keys and values of its measures.
  std::vector<std::pair<std::string, double>> geometry;
};

/// An assembly of a CAD file that holds a part: a product, and its use in the assembly above.
struct AssemblyUse {
  CString product;        ///< name of the product
  CString instance;       ///< name of the use; empty for the outermost one
  std::uint32_t use = 0;  ///< which use in the assembly above, from 1; 0 for the outermost one
};

/// Where a part stands in the CAD file that it came from. Names are whole, those of parts may be cut.
struct PartOrigin {
  CString product;                      ///< name of the product
  CString instance;                     ///< name of the product's use
  std::uint32_t use = 0;                ///< which use in the innermost assembly, from 1; 0 outside of assemblies
  std::uint32_t import = 0;             ///< number of the first part that came in with it
  std::vector<AssemblyUse> assemblies;  ///< that hold it, the outermost first
};

/// The assemblies that hold a part, names divided by "/": those of the products, or of the uses where they have
/// some. Empty outside of assemblies.
inline CString AssemblyPath(const PartOrigin& origin, bool instances = false) {
  CString path;
  for (const AssemblyUse& assembly : origin.assemblies) {
    if (!path.empty()) path += L'/';
    path += instances && !assembly.instance.empty() ? assembly.instance : assembly.product;
  }
  return path;
}

/// A geometry part.
struct tagTGeom : tagTRecord {
  COLORREF colour = 0;                       ///< as COLORREF
  int cadItem = 0;                           ///< number of the part in the CAD session and the view
  TopologyKind kind = TopologyKind::Solid;   ///< what kind of body it is
  CString name;                              ///< shown in its row
  iterator material = 0;                     ///< 0 for none
  iterator gset = 0;                         ///< geometry set that holds the part
  bool flexible = true;                      ///< body type of a solid: flexible or rigid
  std::shared_ptr<const PartShape> shape;    ///< null for a part without a shape; shared with earlier records
  std::shared_ptr<const PartOrigin> origin;  ///< null for what came from no file with products
};

/// A named group of geometry parts.
struct tagTGset : tagTRecord {
  CString name;  ///< shown in its row
};

/// Nodes and elements of a mesh set. Numbers of nodes and elements are unique in the document; sets that meet
/// hold the nodes between them both.
struct MeshData {
  /// Elements of one type.
  struct Block {
    int elementType =
        0;  ///< type number of the mesh file library: 1 line, 2 triangle, 3 quadrangle, 4 tetrahedron …
    int nodesPerElement = 0;                ///< at least 1
    std::vector<std::uint64_t> elementIds;  ///< the number of each
    std::vector<std::uint64_t> nodeIds;     ///< nodesPerElement for each element
  };
  std::vector<std::uint64_t> nodeIds;  ///< ascending, each once
  std::vector<double> coordinates;     ///< x, y, z beside nodeIds
  std::vector<Block> blocks;           ///< elements by type
};

/// Keys of mesh sets are the low 29 bits of a record's key field, the top three are flags.
inline constexpr std::uint32_t kMsetKeyMask = 0x1FFFFFFF;

/// A mesh set; sets nest by the key of their parent.
struct tagTMset : tagTRecord {
  std::uint32_t key = 0;     ///< with its flags
  CString name;              ///< shown in its row
  COLORREF colour = 0;       ///< as COLORREF
  std::uint32_t parent = 0;  ///< key of the mesh set above, 0 at top level
  iterator geom = 0;         ///< part that the set meshes, 0 none
  iterator property = 0;     ///< of its elements, 0 none
  std::uint32_t mgInfo = 0;  ///< key of how it was generated, 0 none
  /// @{
  /// How many it has, without those of nested sets.
  std::uint64_t nodeCount = 0;
  std::uint64_t elementCount = 0;
  /// @}
  std::shared_ptr<const MeshData> mesh;  ///< null for an empty set; shared with earlier records

  void Init() { *this = {}; }  ///< empties it
};

/// What elements are made of.
struct tagTProperty : tagTRecord {
  /// What the elements are.
  enum class Kind : std::uint8_t { Solid, Shell, Beam };
  CString name;             ///< may be empty
  Kind kind = Kind::Solid;  ///< see Kind
  iterator material = 0;    ///< 0 for none
  double size = 0;          ///< thickness of shells, area of beams; model units
};

/// How a mesh set was generated.
struct tagMGInfo : tagTRecord {
  /// How the generator works.
  enum Method : int { kAutoSolid, kMapSolid, k2D3D, kAutoLayer };
  /// A switch, a choice by its place, or a number in model units.
  using Option = std::variant<bool, int, double>;

  int kind = 0;                           ///< 0 and 2 are generators of solids; of others no parameters are shown
  int method = kAutoSolid;                ///< see Method
  std::vector<iterator> targets;          ///< parts that were meshed
  std::map<std::string, Option> options;  ///< the parameters used, by the message keys of their names
};

/// What the three coordinates of a point are: x, y, z; radius, angle, z; or radius, angle from the third axis,
/// angle about it.
enum class CordKind : std::uint8_t { Rectangular, Cylindrical, Spherical };

/// A coordinate system.
struct tagTCord : tagTRecord {
  wchar_t name[kMaxNameLength + 1] = {};  ///< terminated
  CordKind kind = CordKind::Rectangular;  ///< see CordKind
  iterator parent = 0;  ///< the system in whose straight axes this one is placed; 0 for the global one itself
  std::array<double, 3> origin{};          ///< model units
  std::array<double, 3> xAxis{1, 0, 0};    ///< direction of the first axis, of any length
  std::array<double, 3> xyPlane{0, 1, 0};  ///< a direction on the second axis' side of the plane of the first two

  CString GetName() const { return name; }  ///< as a text
  /// Keeps the text up to its first code 0, as much as a name can hold.
  void SetName(const CString& text) {
    const CString cut = CutName(text.substr(0, text.find(L'\0')));
    *std::copy(cut.begin(), cut.end(), name) = 0;
  }
};

/// An isotropic material. Numbers are in model units.
struct tagTMaterial : tagTRecord {
  CString name;                ///< shown in its row
  double youngsModulus = 0;    ///< pressure
  double poissonsRatio = 0;    ///< without unit, below 0.5
  double density = 0;          ///< mass by volume
  COLORREF colour = 0xC0C0C0;  ///< of parts coloured by material
};

}  // namespace qd
