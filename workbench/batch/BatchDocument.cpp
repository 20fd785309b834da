#include "workbench/batch/BatchDocument.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/Act.h"
#include "workbench/display/DisplayBytes.h"
#include "workbench/exchange/store/ApplyResults.h"
#include "workbench/exchange/store/CollectExport.h"
#include "workbench/exchange/store/StoreImport.h"
#include "workbench/exchange/watch/ExportFile.h"
#include "workbench/mesh/ElementSize.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentFile.h"
#include "workbench/store/DocumentMark.h"
#include "workbench/store/KeptViews.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// Hands progress on; nobody is there to wait for a program that is lost.
class Follower final : public ExchangeRun::Listener {
 public:
  explicit Follower(const ProgressCall& progress) : m_progress(progress) {}
  void OnProgress(int thousandths) override { m_done = thousandths / 1000.0; }
  bool OnStalled(const ExchangeRun::Message&) override { return false; }
  void OnResumed() override {}
  bool GoesOn() override { return m_progress(m_done); }

 private:
  const ProgressCall& m_progress;
  double m_done = 0;
};

CString NoteText(const std::string& path, const ImportNote& note) {
  return FromUtf8(path) + L": " + Sentence(note.key, {note.detail});
}

}  // namespace

BatchDocument::BatchDocument(Windowless& surroundings, Shapes shapes)
    : m_surroundings(surroundings),
      m_shapes(shapes),
      m_units(&UnitSystems().front()),
      m_ownDoc(std::make_unique<WorkDocument>()),
      m_doc(*m_ownDoc) {
  m_doc.SetPathName(Sentence("IDS_WB_UNTITLED"));
}

BatchDocument::BatchDocument(Windowless& surroundings, WorkDocument& doc, Session& session)
    : m_surroundings(surroundings),
      m_shapes(Shapes::Drawn),
      m_units(&UnitSystems().front()),
      m_doc(doc),
      m_session(&session) {}

BatchDocument::~BatchDocument() = default;

Session& BatchDocument::GetSession() {
  m_surroundings.Settle();
  if (m_session != nullptr) return *m_session;
  m_model = std::make_unique<CWorksTreeBar>();
  m_sets = std::make_unique<CWorksTreeBar>();
  for (CWorksTreeBar* bar : {m_model.get(), m_sets.get()}) Session::MakeBar(*bar, m_doc);
  m_ownSession = std::make_unique<Session>(m_doc, *m_model, *m_sets, nullptr);
  m_session = m_ownSession.get();
  return *m_session;
}

void BatchDocument::SetName(const std::string& file) {
  m_doc.SetPathName(FromUtf8(file));
}

// ---- files ----------------------------------------------------------------------------------------------

Outcome BatchDocument::Open(const std::string& path, const ProgressCall& progress) {
  Outcome outcome;
  if (CheckLogs(path) == LogKind::Foreign) outcome.notes.push_back(Sentence("IDS_WB_DOC_LOG_LEFT", {path}));
  DocumentError error;
  const auto file = DocumentFile::View(path, Data(), error, progress);
  if (file == nullptr) {
    outcome.fault = FromUtf8(path) + L": " + Sentence(error.key, {error.detail});
    outcome.cancelled = !progress(1);
    return outcome;
  }
  // Mended in memory; the file stays as it is.
  for (const std::string& line : file->Mended()) {
    outcome.notes.push_back(FromUtf8(path) + L": " + FromUtf8(line));
  }
  SetName(path);
  TakeUpDisplay(file->View(kDisplayName), Data(), m_doc.GetDisplay());
  m_units = &FindUnitSystem(FromUtf8(file->View(kUnitsName)));
  return outcome;
}

ExchangeRun::Result BatchDocument::Run(ExchangeRun::Task task, const ProgressCall& progress) const {
  task.isDrawn = m_shapes == Shapes::Drawn;
  ExchangeRun run(std::move(task));
  Follower follower(progress);
  return run.Run(follower);
}

Outcome BatchDocument::Import(const std::string& path, const ProgressCall& progress,
                              const std::function<void()>& beforeStore) {
  Outcome outcome;
  const auto fail = [&](const CString& why) {
    outcome.fault = FromUtf8(path) + L": " + why;
    return outcome;
  };
  const ExchangeRun::Result result =
      Run({m_surroundings.ExchangeProgram(), path, {}, LimitsForFile(path)}, progress);
  if (result.model == nullptr) {
    outcome.cancelled = result.reason.key.empty();
    if (outcome.cancelled) outcome.fault = Sentence("IDS_WB_IMPORT_CANCELLED", {path});
    return outcome.cancelled ? outcome : fail(Sentence(result.reason.key, {result.reason.detail}));
  }
  for (const ImportNote& note : result.model->notes) outcome.notes.push_back(NoteText(path, note));
  if (beforeStore) beforeStore();
  std::vector<ImportNote> notes;
  const bool stored = StoreImport(Data(), std::move(*result.model), FromUtf8(path), &notes) != 0;
  for (const ImportNote& note : notes) outcome.notes.push_back(NoteText(path, note));
  return stored ? outcome : fail(Sentence("IDS_WB_IMPORT_REFUSED"));
}

Outcome BatchDocument::Save(const std::string& path) {
  DocumentError error;
  const auto file = DocumentFile::Create(path, Data(), error);
  if (file == nullptr) return {FromUtf8(path) + L": " + Sentence(error.key, {error.detail})};
  file->PutView(kDisplayName, BytesOfDisplay(m_doc.GetDisplay()));
  file->PutView(kUnitsName, ToUtf8(m_units->length));
  return {};
}

ExportModel BatchDocument::Collect(const std::vector<iterator>* records) const {
  const Database& database = m_doc.GetDatabase();
  const std::vector<iterator> sets =
      records != nullptr ? MeshSetsAmong(database, *records) : database.GetMsetPool().GetItrList();
  ExportModel model = CollectExport(database, sets, records != nullptr);
  const std::vector<iterator> parts =
      records != nullptr ? PartsAmong(database, *records) : database.GetGeomPool().GetItrList();
  CollectParts(database, parts, model);
  return model;
}

std::optional<ImportError> BatchDocument::Export(const std::string& path, const ExportModel& model,
                                                 const ProgressCall& progress, ExportReport& report) const {
  return WriteExport(path, model, m_surroundings.ExchangeProgram(), {progress}, report);
}

void ConvertUnits(ExportModel& model, const UnitSystem& from, const UnitSystem& to) {
  if (&from == &to) return;
  for (ExportSet& set : model.sets) {
    if (set.mesh == nullptr) continue;
    auto mesh = std::make_shared<MeshData>(*set.mesh);
    for (double& value : mesh->coordinates) value = Converted(value, Quantity::Length, from, to);
    set.mesh = std::move(mesh);
  }
  for (ImportedMaterial& material : model.materials) {
    material.youngsModulus = Converted(material.youngsModulus, Quantity::Stress, from, to);
    material.density = Converted(material.density, Quantity::Density, from, to);
  }
  for (ImportedProperty& property : model.properties) {
    const bool isArea = property.kind == tagTProperty::Kind::Beam;
    property.size = Converted(property.size, isArea ? Quantity::Area : Quantity::Length, from, to);
  }
}

// ---- acts -----------------------------------------------------------------------------------------------

Outcome BatchDocument::Find(const CString& query, std::vector<iterator>& records) {
  FoundRecords found = FindRecords(GetSession(), query);
  records = std::move(found.records);
  if (found.fault.key == nullptr) return {};
  return {query + L": " + Sentence(found.fault.key)};
}

namespace {

Outcome NotDone(const CString& title, const ExchangeRun::Result& result) {
  const bool cancelled = result.reason.key.empty();
  return {cancelled ? Sentence("IDS_WB_OPERATION_CANCELLED", {ToUtf8(title)})
                    : title + L": " + Sentence(result.reason.key, {result.reason.detail}),
          {},
          cancelled};
}

}  // namespace

Outcome BatchDocument::Work(const std::vector<iterator>& parts, ShapeOperation operation, const CString& title,
                            const ProgressCall& progress) {
  const std::vector<WorkedPart> worked = AddOperands(Data(), parts, operation);
  if (worked.empty()) return {title + L": " + Sentence("IDS_WB_NO_PARTS")};
  const ExchangeRun::Result result =
      Run({m_surroundings.ExchangeProgram(), {}, Encode(operation), LimitsForWork()}, progress);
  if (result.model == nullptr) return NotDone(title, result);
  if (ApplyOperation(Data(), worked, std::move(*result.model), operation, title) != 0) return {};
  return {title + L": " + Sentence("IDS_WB_OPERATION_GONE")};
}

Outcome BatchDocument::Mesh(const std::vector<iterator>& parts, const MeshWish& wish,
                            const ProgressCall& progress) {
  const CString title = Sentence("IDS_WB_BATCH_MESH");
  const auto failed = [&title](const CString& why) { return Outcome{title + L": " + why}; };
  struct Made {
    ShapeOperation operation;
    std::vector<WorkedPart> parts;
    std::shared_ptr<ImportedModel> results;
  };
  std::vector<Made> all;
  for (const int dimension : {3, 2}) {
    if (wish.dimension != 0 && wish.dimension != dimension) continue;
    const TopologyKind kind = dimension == 3 ? TopologyKind::Solid : TopologyKind::Surface;
    std::vector<iterator> fit = parts;
    std::erase_if(fit, [&](iterator part) {
      const tagTGeom* record = Data().GetGeomPool().GetAtNU(part);
      return record == nullptr || (wish.dimension == 0 && record->kind != kind);
    });
    Made made;
    made.operation.kind = ShapeOperationKind::Mesh;
    made.operation.dimension = dimension;
    made.operation.secondOrder = wish.secondOrder;
    made.operation.mapped = wish.mapped;
    made.parts = AddOperands(Data(), fit, made.operation);
    if (made.parts.empty()) continue;
    std::vector<const PartShape*> shapes;
    for (const WorkedPart& part : made.parts) shapes.push_back(part.shape.get());
    made.operation.amount = wish.size > 0 ? wish.size : OfferedSize(shapes, dimension);
    const double share = static_cast<double>(all.size()) / 2;
    ExchangeRun::Result result =
        Run({m_surroundings.ExchangeProgram(), {}, Encode(made.operation), LimitsForWork()},
            [&](double done) { return progress(share + done / 2); });
    if (result.model == nullptr) return NotDone(title, result);
    made.results = std::move(result.model);
    all.push_back(std::move(made));
  }
  if (all.empty()) return failed(Sentence("IDS_WB_BATCH_NOTHING_TO_MESH"));
  const int done = RunAct(&Data(), title, [&] {
    return std::all_of(all.begin(), all.end(),
                       [&](Made& made) {
                         return ApplyOperation(Data(), made.parts, std::move(*made.results), made.operation,
                                               title) != 0;
                       })
               ? 1
               : 0;
  });
  return done != 0 ? Outcome{} : failed(Sentence("IDS_WB_OPERATION_GONE"));
}

}  // namespace qd::workbench
