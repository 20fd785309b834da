#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/Records.h"

namespace qd::workbench {

/// An assembly that holds a part: a product and its use in the assembly above. Texts are UTF-8.
struct ImportedAssembly {
  std::string product;
  std::string instance;   ///< name of the use; empty for the outermost one
  std::uint32_t use = 0;  ///< which use in the assembly above, from 1; 0 for the outermost one
};

/// One body of a CAD file. Texts are UTF-8.
struct ImportedPart {
  std::string name;
  std::string product;    ///< empty where the file knows no products
  std::string instance;   ///< name of the product's use
  std::uint32_t use = 0;  ///< which use in the innermost assembly, from 1; 0 outside of assemblies
  std::vector<ImportedAssembly> assemblies;  ///< that hold it, the outermost first
  COLORREF colour = Rgb(0xB0, 0xB8, 0xC4);
  TopologyKind kind = TopologyKind::Solid;
  PartShape shape;
};

/// Path of the assembly that holds a part: names of products divided by "/"; empty outside of assemblies.
inline std::string AssemblyPath(const ImportedPart& part) {
  std::string path;
  for (const ImportedAssembly& assembly : part.assemblies) {
    if (!path.empty()) path += "/";
    path += assembly.product;
  }
  return path;
}

/// A part on its way into a file of shapes. Texts are UTF-8.
struct ExportedPart {
  std::string name;
  std::string product;  ///< as it came, with the next four; empty where there was none
  std::string instance;
  std::uint32_t use = 0;
  std::uint32_t import = 0;  ///< parts with the same number came in together
  std::vector<ImportedAssembly> assemblies;
  COLORREF colour = 0;
  TopologyKind kind = TopologyKind::Solid;
  std::shared_ptr<const PartShape> shape;  ///< only its exchange form goes through the pipe
};

struct ImportedMaterial {
  std::string name;
  double youngsModulus = 0;
  double poissonsRatio = 0;
  double density = 0;
};

struct ImportedProperty {
  std::string name;
  tagTProperty::Kind kind = tagTProperty::Kind::Solid;
  double size = 0;
  std::int32_t material = -1;  ///< by place, -1 for none
};

/// One group of elements of a mesh file.
struct ImportedMeshSet {
  std::string name;
  std::int32_t parent = -1;    ///< an earlier set, by place; -1 at top level
  std::int32_t property = -1;  ///< by place, -1 for none
  MeshData mesh;
};

/// Something that the user should know of a file that was read nevertheless: a message key and a detail for it.
struct ImportNote {
  std::string key;
  std::string detail;
};

/// Why a file cannot be read or written.
struct ImportError {
  std::string key;       ///< message key of the reason
  std::string detail;    ///< for the text's "%s", may be empty
  std::string wanted{};  ///< a file that may not be read unless the user agrees, any bytes; empty for none
};

/// What a solver input file holds beside its mesh. Texts are UTF-8 or whatever the file was written in.
struct ImportedDeck {
  struct Name {
    std::string name;
    std::int32_t place = -1;  ///< among the mesh sets or materials, -1 for none of them
    bool shared = false;      ///< a set with elements of other mesh sets too
  };
  std::string name;  ///< of the file
  /// The file's own text with all that it includes; of nodes and elements only the numbers, as "first,last,step",
  /// or, behind "=", what no mesh set holds.
  std::string text;
  std::vector<Name> sets;
  std::vector<Name> materials;
  std::vector<std::int32_t> sections;  ///< properties by place, one for each section in the text
  std::int32_t rest = -1;              ///< the mesh set for what stands in no element set
};

struct ImportedModel {
  std::vector<ImportedPart> parts;
  std::vector<ImportedMaterial> materials;
  std::vector<ImportedProperty> properties;
  std::vector<ImportedMeshSet> meshSets;
  std::vector<ImportNote> notes;
  std::vector<ImportedDeck> decks;
  std::uint64_t written = 0;  ///< parts that stand in the file that was written
};

}  // namespace qd::workbench
