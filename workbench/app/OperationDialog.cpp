#include "workbench/app/OperationDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>
#include <limits>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/app/Translated.h"

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
    : QDialog(parent),
      m_doc(doc),
      m_runner(runner),
      m_form(form),
      m_parts(doc, WorkOf(form, std::move(parts)), [this] { ShowParts(); }),
      m_named(new QLabel) {
  SetTitle(*this, form.titleKey);
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("operation");
  auto* layout = new QFormLayout(this);
  m_named->setObjectName("parts");
  m_named->setWordWrap(true);
  layout->addRow(m_named);
  if (form.pointKey != nullptr) m_point = AddNumbers(*layout, form.pointKey, {0, 0, 0}, NumberKinds::kPoint);
  if (form.vectorKey != nullptr) m_vector = AddNumbers(*layout, form.vectorKey, form.vector, form.vectorKind);
  if (form.amountKey != nullptr) m_amount = AddNumbers(*layout, form.amountKey, {form.amount}, form.amountKind);
  if (form.target) {
    m_target = new QComboBox;
    m_target->setObjectName("target");
    connect(m_target, &QComboBox::currentIndexChanged, this, &OperationDialog::TakeTarget);
    layout->addRow(NewLabel("IDS_WB_TARGET"), m_target);
  }
  if (form.alignment) {
    m_alignment = new QComboBox;
    m_alignment->setObjectName("alignment");
    for (const char* key : {"IDS_WB_ATTACH_CENTRE", "IDS_WB_ATTACH_ON_TOP", "IDS_WB_ATTACH_MINIMUM"}) {
      AddChoice(*m_alignment, key);
    }
    layout->addRow(NewLabel("IDS_WB_ATTACH_MODE"), m_alignment);
  }
  if (form.kind == ShapeOperationKind::Mesh) {
    m_secondOrder = new QCheckBox;
    SetText(*m_secondOrder, "IDS_HWB_MESH_HIGH_ORDER");
    m_secondOrder->setObjectName("second");
    m_secondOrder->setChecked(form.secondOrder);
    layout->addRow(m_secondOrder);
  }
  auto* buttons = new QDialogButtonBox;
  m_apply = buttons->addButton(QString(), QDialogButtonBox::ApplyRole);
  SetText(*m_apply, "IDS_WB_APPLY");
  m_apply->setObjectName("apply");
  connect(m_apply, &QPushButton::clicked, this, &OperationDialog::Apply);
  QPushButton* close = buttons->addButton(QString(), QDialogButtonBox::RejectRole);
  SetText(*close, "IDS_WB_CLOSE");
  connect(close, &QPushButton::clicked, this, &QDialog::close);
  connect(&runner, &OperationRunner::Started, this, &OperationDialog::ShowParts);
  connect(&runner, &OperationRunner::Ended, this, &OperationDialog::ShowParts);
  layout->addRow(buttons);
  if (m_target != nullptr) {
    m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) {
      if (Concerns(record, kDataGeom)) ListTargets();
    });
  }
  ListTargets();
}

void OperationDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) ShowParts();  // numbers are written otherwise
}

iterator OperationDialog::Target() const {
  return m_target != nullptr ? m_target->currentData().value<iterator>() : 0;
}

/// All parts, since the selection that is to be brought to one of them may be all that there is. At first it is
/// one that is not selected.
void OperationDialog::ListTargets() {
  if (m_target != nullptr) {
    constexpr int kMostListed = 10'000;  // a list longer than that helps nobody
    const QSignalBlocker quiet(m_target);
    const bool first = m_target->count() == 0;
    const iterator chosen = Target();
    const GeomPool& pool = m_doc.GetDatabase().GetGeomPool();
    int wanted = -1;
    m_target->clear();
    for (const iterator part : pool.GetItrList()) {
      if (m_target->count() == kMostListed) break;
      if (first ? wanted < 0 && !m_parts.Contains(part) : part == chosen) wanted = m_target->count();
      m_target->addItem(ToQt(pool.GetAtNU(part)->name), QVariant::fromValue(part));
    }
    // A target that is gone is none; another one was not chosen.
    m_target->setCurrentIndex(wanted < 0 && first && m_target->count() > 0 ? m_target->count() - 1 : wanted);
  }
  TakeTarget();
}

void OperationDialog::TakeTarget() {
  m_parts.LeaveOut(Target());
  ShowParts();
}

void OperationDialog::ShowParts() {
  const char* none = m_form.solidsOnly ? "IDS_WB_NO_SOLIDS" : "IDS_WB_NO_PARTS";
  const char* some = m_parts.IsAll() ? "IDS_WB_ALL_SHOWN" : "IDS_WB_PARTS";
  SetText(*m_named, m_parts.Count() == 0 ? none : some,
          {QLocale().toString(static_cast<qulonglong>(m_parts.Count())), ToQt(m_parts.Names())});
  m_apply->setEnabled(!m_runner.IsRunning() && m_parts.Count() != 0 && (m_target == nullptr || Target() != 0));
}

std::array<double, 3> OperationDialog::AlignmentWay() const {
  enum Alignment { kCentres, kOnTop, kLeastCorners };
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
  if (!m_apply->isEnabled() || !CheckNumbers(*this)) return;
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
  m_runner.Start(std::move(operation), m_parts.Records(), windowTitle());
}

}  // namespace qd::workbench
