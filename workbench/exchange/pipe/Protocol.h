#pragma once

#include <cstdint>
#include <cstring>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"

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
  Note = 8,
  Beat = 9,  ///< a sign of life: how many bytes were read and written beside the frames
  Deck = 10,
  Bytes = 11,   ///< of the file that is written
  Written = 12  ///< how many parts stand in it
};

/// What can be done with shapes.
enum class ShapeOperationKind : std::uint32_t {
  Translate,
  Rotate,
  Mirror,
  Scale,
  Sweep,
  Simplify,
  Project,
  Mesh,
  TakeOut
};

/// Work on shapes. The answer is one part for each operand, in order, or for a mesh one mesh set, or for what is
/// taken out one part for each of that.
struct ShapeOperation {
  struct Operand {
    std::string name;  ///< for messages, UTF-8
    std::string brep;
    TopologyKind kind = TopologyKind::Solid;
  };
  /// A face, edge or vertex of an operand: the one of its kind that is nearest to a place.
  struct Taken {
    std::uint32_t operand = 0;
    TopologyKind kind = TopologyKind::Surface;
    double at[3] = {0, 0, 0};
    std::string name;  ///< of the part that it becomes, UTF-8
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
  std::vector<Taken> taken;
};

/// Parts that are to be written into a file. The answer is the file's bytes.
struct ShapeExport {
  enum class Kind : std::uint32_t { Step, Brep };
  Kind kind = Kind::Step;
  std::vector<ExportedPart> parts;
};

/// Keys that mean more to the workbench than their text: memory has run out, and a protection that the system does
/// not give.
inline constexpr const char* kMemoryError = "IDS_WB_IMPORT_MEMORY";
inline constexpr const char* kUnprotectedNote = "IDS_WB_NOTE_UNPROTECTED";

std::string EncodeProgress(std::uint32_t thousandths);
std::string EncodeBeat(std::uint64_t bytesMoved);
std::string Encode(const ImportedPart& part);
std::string Encode(const ImportedMeshSet& set);
std::string Encode(const ImportedMaterial& material);
std::string Encode(const ImportedProperty& property);
std::string Encode(const ImportNote& note);
std::string Encode(const ImportedDeck& deck);
std::string Encode(const ImportError& error);
std::string Encode(const ShapeOperation& operation);
std::string Encode(const ShapeExport& wanted);
std::string EncodeWritten(std::uint64_t parts);

/// Each answers nothing for a payload that is cut short, too long or otherwise none. The details of notes and
/// errors come as they may be shown, see ShownText().
std::optional<std::uint32_t> DecodeProgress(std::string_view payload);
std::optional<std::uint64_t> DecodeBeat(std::string_view payload);
std::optional<ImportedPart> DecodePart(std::string_view payload);
std::optional<ImportedMeshSet> DecodeMeshSet(std::string_view payload);
std::optional<ImportedMaterial> DecodeMaterial(std::string_view payload);
std::optional<ImportedProperty> DecodeProperty(std::string_view payload);
std::optional<ImportNote> DecodeNote(std::string_view payload);
std::optional<ImportedDeck> DecodeDeck(std::string_view payload);
std::optional<ImportError> DecodeError(std::string_view payload);
std::optional<ShapeOperation> DecodeOperation(std::string_view payload);
std::optional<ShapeExport> DecodeExport(std::string_view payload);
std::optional<std::uint64_t> DecodeWritten(std::string_view payload);

/// A frame around a payload, ready to be written.
std::string FrameOf(FrameType type, std::string_view payload);

/// How much an exchange program may send.
struct FrameLimits {
  std::uint64_t frame = std::uint64_t{1} << 30;  ///< bytes of one payload
  std::uint64_t total = std::uint64_t{4} << 30;  ///< bytes of all frames, with what keeping each one costs
};

/// Takes bytes in pieces of any size and gives out whole frames. No memory is taken for bytes that are only
/// announced, and none for frames beyond the limits.
class FrameReader {
 public:
  struct Frame {
    FrameType type;
    std::string payload;
  };
  explicit FrameReader(FrameLimits limits = {}) : m_limits(limits) {}
  /// False once a limit was passed; nothing more is taken then.
  bool Feed(std::string_view bytes);
  /// The next whole frame, nothing while it has not arrived.
  std::optional<Frame> Next();
  /// Bytes of a frame that was never finished.
  bool HasRest() const { return !m_head.empty(); }
  /// Bytes of the frame that is arriving.
  std::size_t Arrived() const { return m_payload.size(); }

 private:
  bool BeginFrame();

  FrameLimits m_limits;
  std::uint64_t m_total = 0;
  bool m_broken = false;
  std::string m_head;  // of the frame that is arriving
  FrameType m_type{};
  std::uint64_t m_length = 0;
  std::string m_payload;
  std::deque<Frame> m_ready;
};

}  // namespace qd::workbench
