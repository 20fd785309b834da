#include "workbench/view/MeshScene.h"

#include <QCoreApplication>
#include <QThreadPool>
#include <algorithm>
#include <tuple>
#include <utility>

#include "workbench/mesh/BoxTree.h"

namespace qd::workbench {

/// A run of sets whose drawings are worked out together.
struct MeshScene::Job {
  struct Item {
    iterator itr;
    std::shared_ptr<const MeshData> mesh;
    SkinRequest request;
    std::shared_ptr<const MeshSkin> skin;
  };
  std::vector<Item> items;
};

MeshScene::MeshScene(WorkDocument& doc, vtkRenderer& renderer, vtkPlaneCollection& cuts, PickTrees& trees,
                     std::function<void()> onBuilt)
    : m_doc(doc), m_renderer(renderer), m_cuts(cuts), m_trees(trees), m_onBuilt(std::move(onBuilt)) {}

MeshScene::~MeshScene() {
  *m_stop = true;
}

// ---- following the model --------------------------------------------------------------------------------

void MeshScene::Apply(const CQDUpdateRecord& record) {
  for (const tagTRNotify& change : record.changes) {
    // Properties and materials may colour any mesh.
    if (change.dataType == kDataProperty || change.dataType == kDataMaterial) m_allStale = true;
    if (change.dataType != kDataMset) continue;
    if (change.kind == kChangeDeleted) {
      Remove(change.itr);
      continue;
    }
    const tagTMset* set = m_doc.GetDatabase().GetMsetPool().GetAtNU(change.itr);
    const auto known = m_entries.find(change.itr);
    const bool same = known != m_entries.end() && set != nullptr && known->second->drawing.mesh == set->mesh;
    if (same) {
      m_stale.insert(change.itr);
    } else {
      Queue(change.itr);
    }
    // What is nested in a set may have its colour.
    if (m_doc.GetDisplay().Meshes().GetMeshColorMode() != 0) m_allStale = true;
  }
}

void MeshScene::Remove(iterator itr) {
  const auto known = m_entries.find(itr);
  if (known == m_entries.end()) return;
  MeshBatch* batch = known->second->batch;
  if (batch != nullptr) batch->Remove(known->second->drawing);
  if (batch != nullptr && batch->IsEmpty()) {
    std::erase_if(m_batches, [batch](const auto& one) { return one.get() == batch; });
  }
  m_stale.erase(itr);
  m_entries.erase(known);
  if (m_onChange) m_onChange(itr);
}

void MeshScene::Queue(iterator itr) {
  if (m_queued.insert(itr).second) m_queue.push_back(itr);
  if (!m_working) StartJob();
}

// ---- drawings are made on another thread ----------------------------------------------------------------

void MeshScene::StartJob() {
  constexpr std::uint64_t kMostElements = 50'000;
  auto job = std::make_shared<Job>();
  std::uint64_t elements = 0;
  while (!m_queue.empty() && elements < kMostElements) {
    const iterator itr = m_queue.front();
    m_queue.pop_front();
    m_queued.erase(itr);
    const tagTMset* set = m_doc.GetDatabase().GetMsetPool().GetAtNU(itr);
    if (set == nullptr) continue;
    if (set->mesh == nullptr) {
      Remove(itr);
      continue;
    }
    job->items.push_back({itr, set->mesh, RequestOf(*set), nullptr});
    elements += set->elementCount + 1;
  }
  if (job->items.empty()) return;
  m_working = true;
  QThreadPool::globalInstance()->start([this, job, stop = m_stop] {
    for (Job::Item& item : job->items) {
      if (*stop) return;
      item.skin = std::make_shared<const MeshSkin>(MakeSkin(*item.mesh, item.request, *stop));
    }
    // The scene lives on the other thread, and only there it may be looked at.
    QMetaObject::invokeMethod(qApp, [this, job, stop] {
      if (!*stop) TakeJob(job);
    });
  });
}

void MeshScene::TakeJob(const std::shared_ptr<Job>& job) {
  m_working = false;
  for (Job::Item& item : job->items) {
    const tagTMset* set = m_doc.GetDatabase().GetMsetPool().GetAtNU(item.itr);
    if (set == nullptr || set->mesh != item.mesh) continue;  // changed meanwhile, and queued again
    std::unique_ptr<Entry>& entry = m_entries[item.itr];
    if (entry == nullptr) entry = std::make_unique<Entry>();
    if (entry->batch != nullptr) entry->batch->Remove(entry->drawing);
    entry->drawing.itr = item.itr;
    entry->drawing.mesh = std::move(item.mesh);
    entry->drawing.request = item.request;
    Put(*entry, std::move(item.skin));
    m_stale.insert(item.itr);
  }
  if (!m_queue.empty()) StartJob();
  m_onBuilt();
}

void MeshScene::Put(Entry& entry, std::shared_ptr<const MeshSkin> skin) {
  entry.drawing.skin = std::move(skin);
  entry.drawing.look.reset();
  MeshBatch& batch = BatchWithRoom(MeshBatch::SizeOf(entry.drawing));
  batch.Add(entry.drawing);
  entry.batch = &batch;
}

MeshBatch& MeshScene::BatchWithRoom(std::size_t size) {
  constexpr std::size_t kLookBack = 8;
  std::erase_if(m_batches, [](const auto& batch) { return batch->IsEmpty(); });
  for (std::size_t i = 0; i < std::min(kLookBack, m_batches.size()); ++i) {
    MeshBatch& batch = *m_batches[m_batches.size() - 1 - i];
    if (batch.HasRoomFor(size)) return batch;
  }
  return *m_batches.emplace_back(std::make_unique<MeshBatch>(m_renderer, m_cuts));
}

// ---- looks ----------------------------------------------------------------------------------------------

/// Sets that have come to the selection or left it.
void MeshScene::NoteSelection() {
  std::unordered_set<iterator> now;
  for (const iterator itr : m_doc.GetSelectBuffer()) {
    if (m_entries.contains(itr)) now.insert(itr);
  }
  for (const iterator itr : now) {
    if (!m_selected.contains(itr)) m_stale.insert(itr);
  }
  for (const iterator itr : m_selected) {
    if (!now.contains(itr)) m_stale.insert(itr);
  }
  m_selected = std::move(now);
}

void MeshScene::Follow(iterator itr) {
  const auto known = m_entries.find(itr);
  const tagTMset* set = m_doc.GetDatabase().GetMsetPool().GetAtNU(itr);
  if (known == m_entries.end() || set == nullptr || known->second->drawing.skin == nullptr) return;
  MsetDrawing& drawing = known->second->drawing;
  MsetLook look =
      LookOf(m_doc.GetDatabase(), m_doc.GetDisplay(), *set, itr, *drawing.skin, m_selected.contains(itr));
  look.quality = m_colours;
  const SkinRequest request = RequestOf(*set);
  if (drawing.request != request && !look.box && look.shown) Queue(itr);
  if (drawing.look == look) return;
  drawing.look = std::move(look);
  known->second->batch->Touch();
  if (m_onChange) m_onChange(itr);
}

/// What has to be prepared of a set as it is shown and coloured now.
SkinRequest MeshScene::RequestOf(const tagTMset& set) const {
  const MeshDisplay& meshes = m_doc.GetDisplay().Meshes();
  SkinRequest request = RequestFor(meshes.GetLook(set.key & kMsetKeyMask));
  if (const MeshDisplay::Quality* quality = meshes.ColouringQuality()) request.quality = quality->measure;
  return request;
}

std::optional<QualityColours> MeshScene::ColoursOfNow() const {
  const MeshDisplay& meshes = m_doc.GetDisplay().Meshes();
  const MeshDisplay::Quality* quality = meshes.ColouringQuality();
  if (quality == nullptr) return std::nullopt;
  if (quality->isTyped) return QualityColours{quality->measure, quality->least, quality->greatest};
  QualityColours colours{quality->measure, Box3::kFar, -Box3::kFar};
  for (const auto& [itr, entry] : m_entries) {
    const MsetDrawing& set = entry->drawing;
    if (set.skin == nullptr || set.request.quality != quality->measure || meshes.IsMsetShown(itr) == 0) continue;
    colours.least = std::min<double>(colours.least, set.skin->leastQuality);
    colours.greatest = std::max<double>(colours.greatest, set.skin->greatestQuality);
  }
  // While nothing is known yet, the range in which elements are good.
  if (!(colours.least <= colours.greatest)) {
    const QualityRule& rule = RuleOf(quality->measure);
    std::tie(colours.least, colours.greatest) = std::minmax(rule.best, rule.limit);
  }
  return colours;
}

void MeshScene::Follow(const DisplayNotice& notice) {
  m_stale.insert(notice.msets.begin(), notice.msets.end());
  m_allStale |= notice.looks || notice.colours;
}

bool MeshScene::Update() {
  NoteSelection();
  std::optional<QualityColours> colours = ColoursOfNow();
  if (colours != m_colours) m_allStale = true;
  m_colours = colours;
  const std::unordered_set<iterator> stale = std::exchange(m_stale, {});
  const bool all = std::exchange(m_allStale, false);
  if (all) {
    for (const auto& [itr, entry] : m_entries) Follow(itr);
  } else {
    for (const iterator itr : stale) Follow(itr);
  }
  bool changed = false;
  for (const auto& batch : m_batches) changed = batch->Refresh() || changed;
  return changed;
}

// ---- quick frames ---------------------------------------------------------------------------------------

std::size_t MeshScene::CellCount() const {
  std::size_t count = 0;
  for (const auto& batch : m_batches) count += batch->CellCount();
  return count;
}

void MeshScene::BeginQuick(std::size_t cells) {
  m_quick = true;
  const std::size_t every = cells != 0 ? CellCount() / cells + 1 : 0;
  for (const auto& batch : m_batches) batch->ShowCoarse(every);
}

void MeshScene::EndQuick() {
  if (!std::exchange(m_quick, false)) return;
  for (const auto& batch : m_batches) batch->ShowWhole();
}

// ---- questions ------------------------------------------------------------------------------------------

namespace {

Bounds BoxOf(const MsetDrawing& set) {
  Bounds box{};
  std::copy_n(set.skin->bounds, box.size(), box.begin());
  return box;
}

bool IsDrawn(const MsetDrawing& set) {
  return set.skin != nullptr && !set.skin->pieces.empty() && set.look && set.look->shown;
}

}  // namespace

std::uint64_t MeshScene::Hit::Element() const {
  const bool own =
      what == What::Triangle || what == What::Spot || (what == What::Line && piece->triangles.empty());
  return own && number < piece->elements.size() ? piece->elements[number] : 0;
}

void MeshScene::Meet(const MsetDrawing& set, bool faces, bool lines, NearestHit& hit, Hit& nearest) const {
  constexpr int kPointElement = 15;
  const auto index = m_trees.Of(set.skin);
  for (std::size_t number = 0; number < set.skin->pieces.size(); ++number) {
    const MeshSkin::Piece& piece = set.skin->pieces[number];
    const PickIndex::Piece* trees = index != nullptr ? &index->pieces[number] : nullptr;
    const auto point = [&piece](std::size_t one) { return &piece.points[one * 3]; };
    if (faces) {
      const auto first =
          hit.Triangles(piece.points.data(), piece.triangles, trees != nullptr ? &trees->triangles : nullptr);
      if (first) nearest = {&set, &piece, Hit::What::Triangle, *first / 3};
    }
    if (!lines) continue;
    // On faces only what is an element of its own counts.
    const std::size_t least = faces && !piece.triangles.empty() ? piece.elementLines : 0;
    const auto look = [&](std::size_t line) {
      if (line * 2 < least || !hit.Line(point(piece.lines[line * 2]), point(piece.lines[line * 2 + 1]))) return;
      nearest = {&set, &piece, Hit::What::Line, line};
    };
    if (trees != nullptr) {
      trees->lines.Along(
          hit.Ray(), [&hit] { return hit.Distance(); }, look);
    } else {
      for (std::size_t line = 0; line < piece.lines.size() / 2; ++line) look(line);
    }
    for (std::size_t i = 0; piece.elementType == kPointElement && i < piece.nodes.size(); ++i) {
      if (hit.Spot(point(i))) nearest = {&set, &piece, Hit::What::Spot, i};
    }
  }
}

MeshScene::Hit MeshScene::At(NearestHit& hit, Faces faces) const {
  Hit nearest;
  for (const auto& [itr, entry] : m_entries) {
    const MsetDrawing& set = entry->drawing;
    if (!IsDrawn(set)) continue;
    const auto distance = DistanceTo(hit.Ray(), BoxOf(set));
    if (!distance || *distance > hit.Distance()) continue;
    if (set.look->box) {
      if (hit.Outline(BoxOf(set))) nearest = {&set, nullptr, Hit::What::Box, 0};
      continue;
    }
    const bool withFaces = set.look->opacity != 0 && (set.request.faces || faces == Faces::Always);
    Meet(set, withFaces, true, hit, nearest);
  }
  return nearest;
}

MeshScene::Hit MeshScene::FaceAt(NearestHit& hit, iterator exceptOf) const {
  Hit nearest;
  for (const MsetDrawing* set : Along(hit.Ray())) {
    if (set->look->opacity == 0 || !set->request.faces) continue;
    const tagTMset* record = exceptOf != 0 ? m_doc.GetDatabase().GetMsetPool().GetAtNU(set->itr) : nullptr;
    if (record == nullptr || record->geom != exceptOf) Meet(*set, true, false, hit, nearest);
  }
  return nearest;
}

std::vector<const MsetDrawing*> MeshScene::Along(const PickRay& ray) const {
  std::vector<const MsetDrawing*> sets;
  for (const auto& [itr, entry] : m_entries) {
    const MsetDrawing& set = entry->drawing;
    if (IsDrawn(set) && !set.look->box && DistanceTo(ray, BoxOf(set))) sets.push_back(&set);
  }
  return sets;
}

bool MeshScene::AddShownBounds(double bounds[6], bool any) const {
  for (const auto& [itr, entry] : m_entries) {
    const MeshSkin* skin = entry->drawing.skin.get();
    if (skin == nullptr || skin->pieces.empty() || m_doc.GetDisplay().Meshes().IsMsetShown(itr) == 0) continue;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      double& least = bounds[2 * axis];
      double& greatest = bounds[2 * axis + 1];
      least = any ? std::min<double>(least, skin->bounds[2 * axis]) : skin->bounds[2 * axis];
      greatest = any ? std::max<double>(greatest, skin->bounds[2 * axis + 1]) : skin->bounds[2 * axis + 1];
    }
    any = true;
  }
  return any;
}

const MsetDrawing* MeshScene::Find(iterator itr) const {
  const auto entry = m_entries.find(itr);
  return entry != m_entries.end() ? &entry->second->drawing : nullptr;
}

std::vector<const MsetDrawing*> MeshScene::Shown() const {
  std::vector<const MsetDrawing*> shown;
  for (const auto& [itr, entry] : m_entries) {
    const auto& look = entry->drawing.look;
    if (look && look->shown) shown.push_back(&entry->drawing);
  }
  return shown;
}

std::vector<const MsetDrawing*> MeshScene::ShownWith(std::uint32_t addOns) const {
  std::vector<const MsetDrawing*> shown = Shown();
  std::erase_if(shown, [addOns](const MsetDrawing* set) { return (set->look->addOns & addOns) == 0; });
  return shown;
}

}  // namespace qd::workbench
