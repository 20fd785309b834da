#pragma once

#include <vector>

#include "workbench/batch/Windowless.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

// Acts on records that a window does through its trees. Each is one undoable act, or a part of the one that is
// open. Results are 1, or 0 with nothing changed; why is warned of.

/// The name of a record of any pool that has names; empty for others.
CString NameOfRecord(Database& data, iterator itr);
/// Gives a record another name. 1 also for the name that it has. A longer one than names can be is cut.
int RenameRecord(Database& data, iterator itr, const CString& wanted);
/// Puts parts into a new geometry set, which `made` becomes.
int GroupParts(Database& data, const std::vector<iterator>& parts, const CString& name, iterator& made);
int MoveParts(Database& data, const std::vector<iterator>& parts, iterator gset);
/// What parts are made of; 0 for nothing.
int SetMaterial(Database& data, const std::vector<iterator>& parts, iterator material);
/// Stores a material, or a new one for 0, which `itr` becomes.
int StoreMaterial(Database& data, iterator& itr, const tagTMaterial& record);
/// Puts a set of meshes below another one, or at the top for 0.
int NestMeshSet(Database& data, iterator set, iterator parent);

/// Makes solids flexible or rigid bodies.
int SetFlexible(Database& data, const std::vector<iterator>& parts, bool flexible);
/// Makes a mesh set with nothing in it, which `made` becomes.
int NewMeshSet(Database& data, const CString& name, iterator& made);
/// Stores a coordinate system, or a new one for 0, which `itr` becomes.
int StoreCord(Database& data, iterator& itr, const tagTCord& record);

/// Takes sets of meshes into another one, which has all their nodes and elements then.
int MergeMeshSets(Database& data, iterator into, const std::vector<iterator>& sets);

}  // namespace qd::workbench
