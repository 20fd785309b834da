#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/Records.h"

namespace qd::workbench {

// What records may hold: one set of rules for acts, imports, documents, their check and their repair. What an act
// may write can be read again.

/// Records of a pool are numbered up to this.
inline constexpr iterator kMostRecords = 50'000'000;
/// Nodes and elements are numbered from 0 up to this; doubles hold all of them, and sums of a few do not overflow.
inline constexpr std::uint64_t kMostNumber = 1'000'000'000'000'000;
/// Numbers of a file up to this are kept as they are, so that there is room behind them.
inline constexpr std::uint64_t kMostKeptNumber = kMostNumber / 1000;
/// Elements of a name or text.
inline constexpr std::size_t kMostName = 1'000'000;
/// Assemblies that a part lies in.
inline constexpr std::size_t kMostAssemblies = 1000;
/// Bytes of a shape or of a mesh in a document.
inline constexpr std::size_t kMostPartBytes = 900'000'000;
/// Places of a choice among the parameters of a generation.
inline constexpr int kMostChoice = 1'000'000;
/// Targets and parameters of a generation, measures of a shape.
inline constexpr std::size_t kMostTargets = 10'000'000;
inline constexpr std::size_t kMostParameters = 10'000;
/// Bytes of the key of such a parameter or measure.
inline constexpr std::size_t kMostKey = 1000;

/// What is wrong with the values of a record of a type, as the key of a message without places; null for nothing.
/// `id` is the number that it must have. Meshes and shapes are looked at only as far as their sizes.
const char* FaultOf(std::uint16_t type, std::int32_t id, const tagTRecord& record);

/// Whether an act gives a record a name of which nothing can be seen, and which it did not have; `before` is null
/// for a new record, which may have none. Files may hold such names; nobody gives them.
bool IsNamedByBlanks(std::uint16_t type, const tagTRecord* before, const tagTRecord& after);

/// Makes values allowed as far as that can be done: what is no number becomes 0, names are cut, counts are those
/// of the mesh.
void MakeFit(std::uint16_t type, std::int32_t id, tagTRecord& record);

/// Likewise, what is wrong with the values of a mesh or shape: places that are no numbers, numbers beyond bounds.
/// That its parts fit each other is asked first, by HangsTogether of ModelBytes.h.
const char* FaultOf(const MeshData& mesh);
const char* FaultOf(const PartShape& shape);
const char* FaultOf(const PartOrigin& origin);
/// And with the text of a deck.
const char* FaultOf(const std::string& text);
/// About how many bytes they take in a document.
std::size_t BytesOf(const MeshData& mesh);
std::size_t BytesOf(const PartShape& shape);
std::size_t BytesOf(const PartOrigin& origin);

}  // namespace qd::workbench
