#include "workbench/app/OperationDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QSignalBlocker>
#include <algorithm>
#include <limits>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/app/ListedNames.h"
#include "workbench/app/Translated.h"
#include "workbench/mesh/ElementSize.h"

namespace qd::workbench {

namespace {

struct Box {
  std::array<double, 3> least;
  std::array<double, 3> greatest;
};

Box BoxOf(WorkDocument& doc, const std::vector<iterator>& parts) {
  Box box;
  box.least.fill(std::numeric_limits<double>::max());
  box.greatest.fill(std::numeric_limits<double>::lowest());
  for (const iterator part : parts) {
    const tagTGeom* record = doc.GetDatabase().GetGeomPool().GetAtNU(part);
    if (record == nullptr || record->shape == nullptr) continue;
    const std::vector<float>& points = record->shape->facets.points;
    for (std::size_t i = 0; i < points.size(); ++i) {
      box.least[i % 3] = std::min<double>(box.least[i % 3], points[i]);
      box.greatest[i % 3] = std::max<double>(box.greatest[i % 3], points[i]);
    }
  }
  return box;
}

FollowedWork::What WorkOf(const OperationForm& form, OperationParts parts) {
  return {.reach = form.solidsOnly ? Reach::ShownSolids : Reach::Shown,
          .given = std::move(parts.given),
          .follows = parts.follows,
          .elseAll = parts.elseAll};
}

}  // namespace

OperationDialog::OperationDialog(WorkDocument& doc, OperationRunner& runner, const OperationForm& form,
                                 OperationParts parts, QWidget* parent)
    : DialogFrame(form.titleKey, "operation", parent),
      m_doc(doc),
      m_runner(runner),
      m_form(form),
      m_parts(doc, WorkOf(form, std::move(parts)), [this] { ShowParts(); }),
      m_named(AddWorkLine("parts")) {
  if (form.pointKey != nullptr) m_point = AddNumbers(form.pointKey, {0, 0, 0}, NumberKinds::kPoint);
  if (form.vectorKey != nullptr) m_vector = AddNumbers(form.vectorKey, form.vector, form.vectorKind);
  if (form.amountKey != nullptr) m_amount = AddNumbers(form.amountKey, {form.amount}, form.amountKind);
  if (form.amountOfModel) m_amount->SetValue(form.amount);
  if (form.target) {
    m_target = new QComboBox;
    m_target->setObjectName("target");
    connect(m_target, &QComboBox::currentIndexChanged, this, [this] {
      m_chosen = Target();
      TakeTarget();
    });
    AddField("IDS_WB_TARGET", m_target);
  }
  if (form.alignment) {
    m_alignment = new QComboBox;
    m_alignment->setObjectName("alignment");
    for (const char* key :
         {"IDS_WB_ATTACH_CENTRE", "IDS_WB_ATTACH_ON_TOP", "IDS_WB_ATTACH_MINIMUM", "IDS_WB_ATTACH_WAY"}) {
      AddChoice(*m_alignment, key);
    }
    AddField("IDS_WB_ATTACH_MODE", m_alignment);
    m_way = AddNumbers("IDS_WB_VECTOR", {0, 0, 0},
                       {Quantity::Length, NumberKinds::kPlace, false, NumberKind::Picked::Way});
    const auto follow = [this] { ShowField(*m_way, m_alignment->currentIndex() == kByWay); };
    connect(m_alignment, &QComboBox::currentIndexChanged, this, follow);
    follow();
  }
  if (form.kind == ShapeOperationKind::Mesh) {
    m_secondOrder = new QCheckBox;
    SetText(*m_secondOrder, "IDS_HWB_MESH_HIGH_ORDER");
    m_secondOrder->setObjectName("second");
    m_secondOrder->setChecked(form.secondOrder);
    AddWide(m_secondOrder);
  }
  AddAct("IDS_WB_APPLY", "apply", [this] { Apply(); });
  Finish();
  OfferPicks(doc);
  connect(&runner, &OperationRunner::Started, this, &OperationDialog::ShowParts);
  connect(&runner, &OperationRunner::Ended, this, [this] {
    m_mine = false;
    ShowParts();
  });
  connect(&runner, &OperationRunner::Said, this, [this](const Message& message) {
    if (m_mine) TellText(message.text);
  });
  if (m_target != nullptr) {
    m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) {
      if (Concerns(record, kDataGeom)) ListTargets();
    });
  }
  ListTargets();
}

void OperationDialog::changeEvent(QEvent* event) {
  DialogFrame::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) ShowParts();  // numbers are written otherwise
}

iterator OperationDialog::Target() const {
  return m_target != nullptr ? m_target->currentData().value<iterator>() : 0;
}

/// All parts, since the selection that is to be brought to one of them may be all that there is. At first it is
/// one that is not selected.
void OperationDialog::ListTargets() {
  if (m_target != nullptr) {
    constexpr std::size_t kMostListed = 10'000;  // a list longer than that helps nobody
    const QSignalBlocker quiet(m_target);
    const bool first = !m_hasChosen;
    const GeomPool& pool = m_doc.GetDatabase().GetGeomPool();
    int wanted = -1;
    m_target->clear();
    std::vector<ListedName> names;
    std::vector<iterator> parts;
    for (const iterator part : pool.GetItrList()) {
      if (names.size() == kMostListed) break;
      names.push_back({ToQt(pool.GetAtNU(part)->name), static_cast<std::uint64_t>(pool.GetAtNU(part)->id)});
      parts.push_back(part);
    }
    TellApart(names);
    for (std::size_t i = 0; i < parts.size(); ++i) {
      if (first ? wanted < 0 && !m_parts.Contains(parts[i]) : parts[i] == m_chosen) wanted = m_target->count();
      m_target->addItem(names[i].name, QVariant::fromValue(parts[i]));
    }
    if (wanted < 0 && first) wanted = m_target->count() - 1;
    if (wanted < 0 && m_doc.GetDatabase().GetDataType(m_chosen) == kDataGeom) {  // behind those that are listed
      wanted = m_target->count();
      m_target->addItem(ToQt(pool.GetAtNU(m_chosen)->name), QVariant::fromValue(m_chosen));
    }
    // A target that is gone is none; another one was not chosen, not even when all were gone for a while.
    m_target->setCurrentIndex(wanted);
    if (first) m_chosen = Target();
    m_hasChosen = m_hasChosen || m_target->count() != 0;
  }
  TakeTarget();
}

void OperationDialog::TakeTarget() {
  m_parts.LeaveOut(Target());
  ShowParts();
}

void OperationDialog::OfferSize() {
  constexpr std::size_t kMostParts = 1000;  // that are looked at
  if (m_form.kind != ShapeOperationKind::Mesh || m_form.amountOfModel) return;
  if (m_offered != 0 && (m_amount->IsTyped() || m_amount->Value() != m_offered)) return;
  std::vector<const PartShape*> shapes;
  for (const iterator part : m_parts.First(kMostParts)) {
    const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(part);
    if (record != nullptr && record->shape != nullptr) shapes.push_back(record->shape.get());
  }
  const double size = OfferedSize(shapes, m_form.dimension);
  if (size <= 0) return;
  m_amount->SetValue(size);
  m_offered = m_amount->Value();
}

void OperationDialog::ShowParts() {
  OfferSize();
  const bool noTarget = m_target != nullptr && m_target->count() != 0 && Target() == 0;
  const char* none = noTarget ? "IDS_WB_TARGET_GONE" : m_form.solidsOnly ? "IDS_WB_NO_SOLIDS" : "IDS_WB_NO_PARTS";
  const char* some = m_parts.IsAll() ? "IDS_WB_ALL_SHOWN" : "IDS_WB_PARTS";
  SetText(*m_named, noTarget || m_parts.Count() == 0 ? none : some,
          {QLocale().toString(static_cast<qulonglong>(m_parts.Count())), ToQt(m_parts.Names())});
  if (noTarget || m_parts.Count() == 0) return Block(none, true);
  if (m_runner.IsRunning()) return Block("IDS_WB_BUSY", m_mine);
  Block(m_target != nullptr && Target() == 0 ? "IDS_WB_NO_TARGET" : nullptr);
}

std::array<double, 3> OperationDialog::AlignmentWay() const {
  if (m_alignment->currentIndex() == kByWay) return m_way->Point();
  const Box moved = BoxOf(m_doc, m_parts.Records());
  const Box target = BoxOf(m_doc, {Target()});
  std::array<double, 3> way{};
  for (std::size_t axis = 0; axis < way.size(); ++axis) {
    way[axis] = m_alignment->currentIndex() == kLeastCorners
                    ? target.least[axis] - moved.least[axis]
                    : (target.least[axis] + target.greatest[axis] - moved.least[axis] - moved.greatest[axis]) / 2;
  }
  if (m_alignment->currentIndex() == kOnTop) way[2] = target.greatest[2] - moved.least[2];
  return way;
}

void OperationDialog::Apply() {
  if (IsBlocked() || !CheckFields()) return;
  ShapeOperation operation;
  operation.kind = m_form.kind;
  operation.dimension = m_form.dimension;
  operation.mapped = m_form.mapped;
  operation.secondOrder = m_secondOrder != nullptr && m_secondOrder->isChecked();
  const auto store = [](const std::array<double, 3>& from, double(&to)[3]) {
    std::copy(from.begin(), from.end(), to);
  };
  if (m_point != nullptr) store(m_point->Point(), operation.point);
  if (m_vector != nullptr) store(m_vector->Point(), operation.vector);
  if (m_amount != nullptr) operation.amount = m_amount->Value();
  if (m_alignment != nullptr) {
    store(AlignmentWay(), operation.vector);
  } else if (m_target != nullptr) {
    const tagTGeom* target = m_doc.GetDatabase().GetGeomPool().GetAtNU(Target());
    if (target != nullptr && target->shape != nullptr) operation.target = target->shape->brep;
  }
  m_mine = true;
  if (!m_runner.Start(std::move(operation), m_parts.Records(), windowTitle())) m_mine = false;
  ShowParts();
}

}  // namespace qd::workbench
