#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/exchange/ImportedModel.h"

namespace qd::workbench {

/// What the exchange program sends over its pipe: frames of a type, a length and a payload, in the byte order of
/// the machine that both ends run on.
enum class FrameType : std::uint32_t {
  Progress = 1,  ///< thousandths done
  Part = 2,
  MeshSet = 3,
  Done = 4,
  Error = 5,  ///< a message key and a detail for it
  Material = 6,
  Property = 7,
  Note = 8
};

/// What can be done with shapes.
enum class ShapeOperationKind : std::uint32_t { Translate, Rotate, Mirror, Scale, Sweep, Simplify, Project, Mesh };

/// Work on shapes. The answer is one part for each operand, in order, or for a mesh one mesh set.
struct ShapeOperation {
  struct Operand {
    std::string name;  ///< for messages, UTF-8
    std::string brep;
    TopologyKind kind = TopologyKind::Solid;
  };
  ShapeOperationKind kind = ShapeOperationKind::Translate;
  double point[3] = {0, 0, 0};   ///< on the axis or plane, or the centre
  double vector[3] = {0, 0, 1};  ///< way, axis, normal or direction
  double amount = 0;             ///< angle in degrees, factor, least area or element size
  std::int32_t dimension = 3;    ///< of a mesh: 2 for surfaces, 3 for solids
  bool mapped = false;           ///< mesh of quadrangles or hexahedra in rows, where the shape allows it
  bool secondOrder = false;      ///< mesh with nodes in the middle of edges
  std::string target;            ///< shape to project onto
  std::vector<Operand> operands;
};

struct ImportError {
  std::string key;     ///< message key of the reason
  std::string detail;  ///< for the text's "%s", may be empty
};

std::string EncodeProgress(std::uint32_t thousandths);
std::string Encode(const ImportedPart& part);
std::string Encode(const ImportedMeshSet& set);
std::string Encode(const ImportedMaterial& material);
std::string Encode(const ImportedProperty& property);
std::string Encode(const ImportNote& note);
std::string Encode(const ImportError& error);
std::string Encode(const ShapeOperation& operation);

/// Each answers nothing for a payload that is cut short, too long or otherwise none.
std::optional<std::uint32_t> DecodeProgress(std::string_view payload);
std::optional<ImportedPart> DecodePart(std::string_view payload);
std::optional<ImportedMeshSet> DecodeMeshSet(std::string_view payload);
std::optional<ImportedMaterial> DecodeMaterial(std::string_view payload);
std::optional<ImportedProperty> DecodeProperty(std::string_view payload);
std::optional<ImportNote> DecodeNote(std::string_view payload);
std::optional<ImportError> DecodeError(std::string_view payload);
std::optional<ShapeOperation> DecodeOperation(std::string_view payload);

/// A frame around a payload, ready to be written.
std::string FrameOf(FrameType type, std::string_view payload);

/// Takes bytes in pieces of any size and gives out whole frames.
class FrameReader {
 public:
  struct Frame {
    FrameType type;
    std::string payload;
  };
  void Feed(std::string_view bytes) { m_buffer.append(bytes); }
  /// The next whole frame, nothing while it has not arrived.
  std::optional<Frame> Next();
  /// Bytes of a frame that was never finished.
  bool HasRest() const { return m_buffer.size() > m_read; }

 private:
  std::string m_buffer;
  std::size_t m_read = 0;
};

}  // namespace qd::workbench
