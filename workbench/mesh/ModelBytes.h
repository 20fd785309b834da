#pragma once

#include "host/Records.h"
#include "workbench/mesh/Bytes.h"
#include "workbench/mesh/DeckRecord.h"

namespace qd::workbench {

/// Whether the parts of a shape fit each other: facets and lines between its points.
bool HangsTogether(const PartShape& shape);
/// Likewise of a mesh: nodes in ascending order, known kinds of elements, their nodes among those of the mesh.
bool HangsTogether(const MeshData& mesh);

// Shapes and meshes as bytes: for the pipe of the exchange program and for documents.

void PutShape(ByteWriter& writer, const PartShape& shape);
/// False for bytes that are cut short or hold a shape whose parts do not fit each other.
bool GetShape(ByteReader& reader, PartShape& shape);
void PutMesh(ByteWriter& writer, const MeshData& mesh);
/// Likewise; elements are of known types, their nodes among those of the mesh.
bool GetMesh(ByteReader& reader, MeshData& mesh);

/// What the names of a deck stand for: all of it but its text and what a row of a table can hold.
void PutDeckNames(ByteWriter& writer, const tagTDeck& deck);
/// False likewise; numbers are of a size that a model has.
bool GetDeckNames(ByteReader& reader, tagTDeck& deck);

}  // namespace qd::workbench
