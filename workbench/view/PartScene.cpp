#include "workbench/view/PartScene.h"

#include <vtkRenderer.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace qd::workbench {

namespace {

/// Lines and points of what is drawn without faces.
bool IsLineHit(const PartFacets& facets, const PartLook& look, NearestHit& hit) {
  if (!look.edges || (look.faces && !facets.triangles.empty())) return false;
  const auto point = [&facets](std::size_t number) { return &facets.points[number * 3]; };
  bool taken = false;
  std::size_t at = 0;
  for (const std::uint32_t size : facets.lineSizes) {
    for (std::uint32_t i = 1; i < size; ++i) {
      taken = hit.Line(point(facets.lines[at + i - 1]), point(facets.lines[at + i])) || taken;
    }
    at += size;
  }
  if (!facets.lines.empty() || !facets.triangles.empty()) return taken;
  for (std::size_t i = 0; i < facets.points.size() / 3; ++i) taken = hit.Spot(point(i)) || taken;
  return taken;
}

}  // namespace

PartScene::PartScene(WorkDocument& doc, vtkRenderer& renderer, PickTrees& trees)
    : m_doc(doc), m_renderer(renderer), m_trees(trees), m_coarse(renderer, *m_cuts) {}

PartScene::~PartScene() = default;

// ---- following the model --------------------------------------------------------------------------------

void PartScene::Follow(const DisplayNotice& notice) {
  m_allStale |= notice.colours;
  for (const iterator mset : notice.msets) NoteMesh(mset);
  for (const int item : notice.parts) {
    if (const auto part = m_partOfItem.find(item); part != m_partOfItem.end()) m_stale.insert(part->second);
  }
}

/// A part that has a mesh looks otherwise while that is shown.
void PartScene::NoteMesh(iterator mset) {
  const tagTMset* set = m_doc.GetDatabase().GetMsetPool().GetAtNU(mset);
  if (set != nullptr && set->geom != 0) m_stale.insert(set->geom);
}

void PartScene::Apply(const CQDUpdateRecord& record) {
  for (const tagTRNotify& change : record.changes) {
    if (change.dataType == kDataMset) NoteMesh(change.itr);
    m_allStale |= change.dataType == kDataMaterial && m_doc.GetDisplay().Parts().GetColorModelType() == 1;
    if (change.dataType != kDataGeom) continue;
    if (change.kind == kChangeDeleted) {
      Remove(change.itr);
      continue;
    }
    const auto known = m_parts.find(change.itr);
    const tagTGeom* part = m_doc.GetDatabase().GetGeomPool().GetAtNU(change.itr);
    if (known != m_parts.end() && part != nullptr && known->second->shape == part->shape) {
      NoteItem(*known->second, part->cadItem);
      m_stale.insert(change.itr);
    } else {
      m_queue.push_back(change.itr);
    }
  }
}

void PartScene::Remove(iterator itr) {
  const auto known = m_parts.find(itr);
  if (known == m_parts.end()) return;
  const PartDrawing& part = *known->second;
  m_vanished |= part.look.IsShown();
  m_faceCount -= CoarseParts::CostOf(part.shape->facets, part.look);
  NoteItem(*known->second, 0);
  PartBatch* batch = part.batch;
  batch->Remove(*known->second);
  if (batch->IsEmpty()) std::erase_if(m_batches, [batch](const auto& one) { return one.get() == batch; });
  m_coarse.Forget(itr);
  m_sorted.clear();
  m_stale.erase(itr);
  m_changed.erase(itr);
  m_parts.erase(known);
  NoteChange(itr);
}

/// Lets a part be found by its number in the CAD model, 0 for none.
void PartScene::NoteItem(PartDrawing& part, int item) {
  const auto known = m_partOfItem.find(part.item);
  if (known != m_partOfItem.end() && known->second == part.itr) m_partOfItem.erase(known);
  part.item = item;
  if (item != 0) m_partOfItem[item] = part.itr;
}

void PartScene::NoteChange(iterator itr) const {
  if (m_onChange) m_onChange(itr);
}

bool PartScene::Build(int milliseconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  constexpr int kRun = 100;  // between looks at the clock
  while (!m_queue.empty() && std::chrono::steady_clock::now() < end) {
    for (int made = 0; made < kRun && !m_queue.empty(); ++made) {
      const iterator itr = m_queue.front();
      m_queue.pop_front();
      Make(itr);
    }
  }
  return !m_queue.empty();
}

void PartScene::Make(iterator itr) {
  Remove(itr);
  const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(itr);
  if (record == nullptr || record->shape == nullptr) return;  // deleted again meanwhile
  PartDrawing& part = *m_parts.emplace(itr, std::make_unique<PartDrawing>(itr, record->shape)).first->second;
  BatchWithRoom(*record->shape).Add(part);
  m_sorted.clear();
  NoteItem(part, record->cadItem);
  Follow(part);
}

PartBatch& PartScene::BatchWithRoom(const PartShape& shape) {
  if (!m_batches.empty() && m_batches.back()->HasRoomFor(shape)) return *m_batches.back();
  // What is full is made ready here, between the events, and not in one frame with all others.
  if (!m_batches.empty()) m_batches.back()->Refresh();
  std::erase_if(m_batches, [](const auto& batch) { return batch->IsEmpty(); });
  constexpr std::size_t kLookBack = 8;
  for (std::size_t i = 0; i < std::min(kLookBack, m_batches.size()); ++i) {
    PartBatch& batch = *m_batches[m_batches.size() - 1 - i];
    if (batch.HasRoomFor(shape)) return batch;
  }
  return *m_batches.emplace_back(std::make_unique<PartBatch>(m_renderer, *m_cuts));
}

// ---- looks ----------------------------------------------------------------------------------------------

/// Parts that have come to the selection or left it, themselves or with their set.
void PartScene::NoteSelection() {
  if (m_doc.GetSelectBuffer() == m_selectBuffer) return;
  m_selectBuffer = m_doc.GetSelectBuffer();
  std::vector<iterator> now = m_selectBuffer;
  std::sort(now.begin(), now.end());
  std::vector<iterator> changed;
  std::set_symmetric_difference(now.begin(), now.end(), m_selected.begin(), m_selected.end(),
                                std::back_inserter(changed));
  m_selected = std::move(now);
  for (const iterator itr : changed) {
    m_stale.insert(itr);
    if (TypeOf(itr) != kDataGset) continue;
    const std::vector<iterator> parts = m_doc.GetDatabase().GetGeomPool().PartsOf(itr);
    m_stale.insert(parts.begin(), parts.end());
  }
}

void PartScene::Follow(PartDrawing& part) {
  const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(part.itr);
  if (record == nullptr) return;
  const auto selected = [this](iterator itr) {
    return std::binary_search(m_selected.begin(), m_selected.end(), itr);
  };
  const PartLook look = LookOf(m_doc, *record, selected(part.itr) || selected(record->gset));
  if (look == part.look) return;
  const PartLook& was = part.look;
  m_vanished |= (was.faces && !look.faces) || (was.edges && !look.edges) || (was.box && !look.box) ||
                (was.IsShown() && was.opacity != look.opacity);
  if (look.IsShown()) m_changed.insert(part.itr);
  const PartFacets& facets = part.shape->facets;
  m_faceCount += CoarseParts::CostOf(facets, look) - CoarseParts::CostOf(facets, was);
  part.batch->SetLook(part, look);
  NoteChange(part.itr);
}

void PartScene::Update() {
  NoteSelection();
  const std::unordered_set<iterator> stale = std::exchange(m_stale, {});
  if (std::exchange(m_allStale, false)) {
    for (const auto& [itr, part] : m_parts) Follow(*part);
  } else {
    for (const iterator itr : stale) {
      if (const auto part = m_parts.find(itr); part != m_parts.end()) Follow(*part->second);
    }
  }
  for (const auto& batch : m_batches) batch->Refresh();
}

// ---- quick frames ---------------------------------------------------------------------------------------

std::size_t PartScene::BeginQuick(std::size_t faces, bool onlyChanged,
                                  const std::function<bool(const Bounds&)>& comesFirst) {
  std::vector<const PartDrawing*> parts;
  if (onlyChanged) {
    for (const iterator itr : m_changed) {
      if (const auto part = m_parts.find(itr); part != m_parts.end()) parts.push_back(part->second.get());
    }
    CoarseParts::Sort(parts);
  } else if (m_sorted.empty()) {
    for (const auto& [itr, part] : m_parts) m_sorted.push_back(part.get());
    CoarseParts::Sort(m_sorted);
  }
  m_quick = true;
  for (const auto& batch : m_batches) batch->SetAside(true);
  return m_coarse.Show(onlyChanged ? std::move(parts) : m_sorted, faces, comesFirst);
}

void PartScene::EndQuick() {
  if (!std::exchange(m_quick, false)) return;
  m_coarse.Hide();
  for (const auto& batch : m_batches) batch->SetAside(false);
}

void PartScene::NoteDrawn() {
  m_changed.clear();
  m_vanished = false;
}

// ---- questions ------------------------------------------------------------------------------------------

const PartDrawing* PartScene::Find(iterator itr) const {
  const auto part = m_parts.find(itr);
  return part != m_parts.end() ? part->second.get() : nullptr;
}

std::vector<iterator> PartScene::All() const {
  std::vector<iterator> all;
  all.reserve(m_parts.size());
  for (const auto& [itr, part] : m_parts) all.push_back(itr);
  return all;
}

std::vector<const PartDrawing*> PartScene::Shown() const {
  std::vector<const PartDrawing*> shown;
  for (const auto& batch : m_batches) {
    std::copy_if(batch->Parts().begin(), batch->Parts().end(), std::back_inserter(shown),
                 [](const PartDrawing* part) { return part->look.IsShown(); });
  }
  return shown;
}

std::vector<PartScene::Candidate> PartScene::CandidatesOf(const PickRay& ray) const {
  std::vector<Candidate> candidates;
  for (const auto& batch : m_batches) {
    if (!DistanceTo(ray, batch->Extent())) continue;
    for (const PartDrawing* part : batch->Parts()) {
      if (!part->look.IsShown()) continue;
      if (const auto distance = DistanceTo(ray, part->bounds)) candidates.push_back({*distance, part});
    }
  }
  std::sort(candidates.begin(), candidates.end(),
            [](const Candidate& a, const Candidate& b) { return a.distance < b.distance; });
  return candidates;
}

std::vector<const PartDrawing*> PartScene::Along(const PickRay& ray) const {
  std::vector<const PartDrawing*> parts;
  for (const Candidate& candidate : CandidatesOf(ray)) parts.push_back(candidate.part);
  return parts;
}

PartScene::Hit PartScene::FaceAt(NearestHit& hit, iterator except) const {
  return FaceOf(CandidatesOf(hit.Ray()), hit, except);
}

PartScene::Hit PartScene::FaceOf(const std::vector<Candidate>& candidates, NearestHit& hit,
                                 iterator except) const {
  Hit nearest;
  for (const Candidate& candidate : candidates) {
    if (candidate.distance > hit.Distance()) break;
    const PartDrawing& part = *candidate.part;
    if (!part.look.faces || part.itr == except) continue;
    const auto index = m_trees.Of(part.shape);
    const PartFacets& facets = part.shape->facets;
    const auto first = hit.Triangles(facets.points.data(), facets.triangles,
                                     index != nullptr ? &index->pieces[0].triangles : nullptr);
    if (first) nearest = {&part, *first / 3};
  }
  return nearest;
}

PartScene::Hit PartScene::At(NearestHit& hit) const {
  const std::vector<Candidate> candidates = CandidatesOf(hit.Ray());
  Hit nearest = FaceOf(candidates, hit, 0);
  for (const Candidate& candidate : candidates) {
    if (candidate.distance > hit.Distance()) break;
    const PartDrawing& part = *candidate.part;
    const bool taken = part.look.box ? hit.Outline(part.bounds) : IsLineHit(part.shape->facets, part.look, hit);
    if (taken) nearest = {&part, std::nullopt};
  }
  return nearest;
}

bool PartScene::ShownBounds(double bounds[6]) const {
  Bounds all = NoBounds();
  for (const auto& [itr, part] : m_parts) {
    const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(itr);
    if (record != nullptr && m_doc.GetDisplay().Parts().GetLook(record->cadItem).shown) Widen(all, part->bounds);
  }
  std::copy(all.begin(), all.end(), bounds);
  return !IsNowhere(all);
}

}  // namespace qd::workbench
