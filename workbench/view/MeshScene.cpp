#include "workbench/view/MeshScene.h"

#include <QCoreApplication>
#include <QThreadPool>
#include <algorithm>
#include <utility>

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

MeshScene::MeshScene(WorkDocument& doc, vtkRenderer& renderer, std::function<void()> onBuilt)
    : m_doc(doc), m_renderer(renderer), m_onBuilt(std::move(onBuilt)) {}

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
      m_stale.push_back(change.itr);
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
  if (known->second->batch != nullptr) known->second->batch->Remove(known->second->drawing);
  m_entries.erase(known);
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
    const auto look = m_doc.GetDisplay().Meshes().GetLook(set->key & kMsetKeyMask);
    job->items.push_back({itr, set->mesh, RequestFor(look), nullptr});
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
    m_stale.push_back(item.itr);
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
  return *m_batches.emplace_back(std::make_unique<MeshBatch>(m_renderer));
}

// ---- looks ----------------------------------------------------------------------------------------------

/// Sets that have come to the selection or left it.
void MeshScene::NoteSelection() {
  std::unordered_set<iterator> now;
  for (const iterator itr : m_doc.GetSelectBuffer()) {
    if (m_entries.contains(itr)) now.insert(itr);
  }
  for (const iterator itr : now) {
    if (!m_selected.contains(itr)) m_stale.push_back(itr);
  }
  for (const iterator itr : m_selected) {
    if (!now.contains(itr)) m_stale.push_back(itr);
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
  const SkinRequest request = RequestFor(m_doc.GetDisplay().Meshes().GetLook(set->key & kMsetKeyMask));
  if (drawing.request != request && !look.box && look.shown) Queue(itr);
  if (drawing.look == look) return;
  drawing.look = std::move(look);
  known->second->batch->Touch();
}

void MeshScene::Follow(const DisplayNotice& notice) {
  m_stale.insert(m_stale.end(), notice.msets.begin(), notice.msets.end());
  m_allStale |= notice.looks || notice.colours;
}

void MeshScene::Update() {
  NoteSelection();
  const std::vector<iterator> stale = std::exchange(m_stale, {});
  const bool all = std::exchange(m_allStale, false);
  if (all) {
    for (const auto& [itr, entry] : m_entries) Follow(itr);
  } else {
    for (const iterator itr : stale) Follow(itr);
  }
  for (const auto& batch : m_batches) batch->Refresh();
}

// ---- turning --------------------------------------------------------------------------------------------

void MeshScene::BeginTurning() {
  // What a processor without a graphics card draws in less than a tenth of a second.
  constexpr std::size_t kFaces = 150'000;
  constexpr std::size_t kWires = 100'000;
  std::size_t faces = 0;
  std::size_t wires = 0;
  for (const auto& batch : m_batches) {
    faces += batch->FaceCount();
    wires += batch->WireCount();
  }
  m_turning = true;
  for (const auto& batch : m_batches) batch->ShowCoarse(faces / kFaces + 1, wires / kWires + 1);
}

void MeshScene::EndTurning() {
  if (!std::exchange(m_turning, false)) return;
  for (const auto& batch : m_batches) batch->ShowWhole();
}

// ---- questions ------------------------------------------------------------------------------------------

iterator MeshScene::SetOfCell(const vtkProp* prop, std::int64_t cell) const {
  for (const auto& batch : m_batches) {
    if (const iterator itr = batch->SetOfCell(prop, cell); itr != 0) return itr;
  }
  return 0;
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

std::vector<const MsetDrawing*> MeshScene::ShownWith(std::uint32_t addOns) const {
  std::vector<const MsetDrawing*> shown;
  for (const auto& [itr, entry] : m_entries) {
    const auto& look = entry->drawing.look;
    if (look && look->shown && (look->addOns & addOns) != 0) shown.push_back(&entry->drawing);
  }
  return shown;
}

}  // namespace qd::workbench
