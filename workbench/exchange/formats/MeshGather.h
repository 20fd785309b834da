#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"
#include "workbench/exchange/pipe/NoteCounts.h"

namespace qd::workbench {

/// Gathers nodes and elements as they stand in a file, and makes mesh sets of them. Memory follows from their
/// number, not from how they are numbered.
class MeshGather {
 public:
  /// A group of elements: those of named ones come before those of bare entities, lower dimensions first.
  struct Group {
    bool bare = false;  ///< no group of the file's own
    int dimension = 0;
    std::int64_t number = 0;
    bool operator<(const Group& other) const {
      return std::tie(bare, dimension, number) < std::tie(other.bare, other.dimension, other.number);
    }
  };

  void Node(std::uint64_t number, const double (&at)[3]);
  void Element(const Group& group, int elementType, std::uint64_t number, std::span<const std::uint64_t> nodes);
  /// A group that has elements which came to another one.
  void Share(const Group& group) { m_shared.insert(group); }
  void Name(int dimension, std::int64_t number, const std::string& name) { m_names[{dimension, number}] = name; }

  /// What is to be said of the file; Take adds what it leaves out.
  NoteCounts& Notes() { return m_notes; }

  /// The sets with their nodes. Where bare entities may be the sides of others, those that have no nodes of their
  /// own are no part of the model. Throws an ImportError for a node that is missing or a number that is given
  /// twice.
  ImportedModel Take(bool hasSides);

 private:
  std::string NameOf(const Group& group) const;
  void SortNodes();
  /// Takes out elements that stand in the file once for each of their groups.
  void DropRepeated();
  /// Where a node stands among all, their number for none.
  std::size_t PlaceOf(std::uint64_t node) const;
  /// Whether all nodes of a bare entity are those of sets that were taken; so it is for points alone.
  bool IsSide(const Group& group, const MeshData& mesh) const;
  ImportedMeshSet SetOf(const Group& group, MeshData mesh);
  void NoteLooseNodes();
  void NoteEmptyGroups(const std::map<Group, ImportedMeshSet>& sets);

  std::vector<std::uint64_t> m_nodes;
  std::vector<double> m_coordinates;
  bool m_nodesAscend = true;
  bool m_elementsAscend = true;
  std::uint64_t m_lastElement = 0;
  int m_dimension = 0;
  std::map<Group, MeshData> m_groups;
  std::set<Group> m_shared;
  std::map<std::pair<int, std::int64_t>, std::string> m_names;
  std::vector<bool> m_nodeTaken;
  NoteCounts m_notes;
};

}  // namespace qd::workbench
