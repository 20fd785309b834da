#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/CQDDBSession.h"
#include "workbench/display/Notice.h"
#include "workbench/mesh/ElementPlaces.h"
#include "workbench/mesh/FacetParts.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// What a click in the view takes.
enum class PickFilter : std::uint8_t { Whole, Parts, Faces, Edges, Points, MeshSets, Elements, Nodes };
inline constexpr int kPickFilters = 8;
/// Whether it takes records, which the trees show, and not something of them.
constexpr bool TakesRecords(PickFilter filter) {
  return filter <= PickFilter::Parts || filter == PickFilter::MeshSets;
}

/// What becomes of what was picked before.
enum class PickMode : std::uint8_t { Replace, Add, Toggle };

/// Something of a record that was picked in the view.
struct Picked {
  PickFilter kind = PickFilter::Faces;  ///< a face, edge or point of a part, an element or node of a mesh set
  iterator owner = 0;                   ///< the part or mesh set
  std::uint64_t number = 0;             ///< as FacetParts counts, or the number of the element or node
  auto operator<=>(const Picked&) const = default;
};

/// What clicks take and what of records has been picked, beside what is selected in the trees. What belongs to a
/// record whose shape or mesh has changed is picked no longer.
class Picks final {
 public:
  explicit Picks(const Database& database) : m_database(database) {}

  PickFilter Filter() const { return m_filter; }
  void SetFilter(PickFilter filter);

  /// In the order in which they were picked, each once.
  const std::vector<Picked>& All() const { return m_all; }
  bool IsEmpty() const { return m_all.empty(); }
  bool Contains(const Picked& one) const { return m_known.contains(one); }
  /// Those of one kind.
  std::vector<Picked> OfKind(PickFilter kind) const;
  void Set(std::vector<Picked> all);
  void Add(const std::vector<Picked>& some);
  /// Takes out those that are picked and adds the others.
  void Toggle(const std::vector<Picked>& some);
  void Clear() { Set({}); }
  /// One of these, as the mode says.
  void Take(const std::vector<Picked>& some, PickMode mode);

  /// Follows filter and picks.
  [[nodiscard]] Subscription Subscribe(Notice<Picks>::Call call) { return m_notice.Subscribe(std::move(call)); }
  /// Takes over what has become of records.
  void Follow(const CQDUpdateRecord& record);

  /// The faces, edges and corners of a shape, found out once for as long as it is there.
  std::shared_ptr<const FacetParts> PartsOf(const std::shared_ptr<const PartShape>& shape) const;
  /// Likewise where the elements of a mesh stand.
  std::shared_ptr<const ElementPlaces> PlacesOf(const std::shared_ptr<const MeshData>& mesh) const;

 private:
  struct Hash {
    std::size_t operator()(const Picked& one) const;
  };
  std::shared_ptr<const void> BodyOf(iterator owner) const;
  bool Put(const Picked& one);

  const Database& m_database;
  PickFilter m_filter = PickFilter::Whole;
  std::vector<Picked> m_all;
  std::unordered_set<Picked, Hash> m_known;
  std::unordered_map<iterator, std::shared_ptr<const void>> m_bodies;  // of the owners, when they were picked
  Notice<Picks> m_notice;
  template <typename Of, typename Found>
  struct Kept {
    std::weak_ptr<const Of> of;
    std::shared_ptr<const Found> found;
  };
  template <typename Of, typename Found>
  using KeptBy = std::unordered_map<const Of*, Kept<Of, Found>>;
  mutable KeptBy<PartShape, FacetParts> m_parts;
  mutable KeptBy<MeshData, ElementPlaces> m_places;
};

}  // namespace qd::workbench
