#include "workbench/app/OperationDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>
#include <limits>
#include <set>
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

}  // namespace

OperationDialog::OperationDialog(WorkDocument& doc, OperationRunner& runner, const OperationForm& form,
                                 OperationParts parts, QWidget* parent)
    : QDialog(parent),
      m_doc(doc),
      m_runner(runner),
      m_form(form),
      m_source(std::move(parts)),
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
    connect(m_target, &QComboBox::currentIndexChanged, this, &OperationDialog::ShowParts);
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
  m_onSelection = doc.OnSelection([this](const Selection&) {
    if (m_source.follows) m_source.given.clear();
    ShowParts();
  });
  m_onDisplay = doc.GetDisplay().Subscribe([this](const DisplayNotice&) { ShowParts(); });
  ListTargets();
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
    const std::vector<iterator> worked =
        m_source.given.empty() ? SelectedParts(m_doc, Reach::Shown).records : m_source.given;
    const std::set<iterator> selected(worked.begin(), worked.end());
    const GeomPool& pool = m_doc.GetDatabase().GetGeomPool();
    int wanted = -1;
    m_target->clear();
    for (const iterator part : pool.GetItrList()) {
      if (m_target->count() == kMostListed) break;
      if (first ? wanted < 0 && !selected.contains(part) : part == chosen) wanted = m_target->count();
      m_target->addItem(ToQt(pool.GetAtNU(part)->name), QVariant::fromValue(part));
    }
    // A target that is gone is none; another one was not chosen.
    m_target->setCurrentIndex(wanted < 0 && first && m_target->count() > 0 ? m_target->count() - 1 : wanted);
  }
  ShowParts();
}

void OperationDialog::ShowParts() {
  const Reach reach = m_form.solidsOnly ? Reach::ShownSolids : Reach::Shown;
  const bool given = !m_source.given.empty() || !m_source.follows;
  m_parts = given ? WorkedOn{PartsToWorkOn(m_doc, m_source.given, reach)}
                  : SelectedParts(m_doc, reach, m_source.elseAll);
  std::erase(m_parts.records, Target());
  const char* none = m_form.solidsOnly ? "IDS_WB_NO_SOLIDS" : "IDS_WB_NO_PARTS";
  const char* some = m_parts.all ? "IDS_WB_ALL_SHOWN" : "IDS_WB_PARTS";
  SetText(*m_named, m_parts.records.empty() ? none : some,
          {QLocale().toString(static_cast<qulonglong>(m_parts.records.size())),
           ToQt(NamesOf(m_doc.GetDatabase().GetGeomPool(), m_parts.records))});
  m_apply->setEnabled(!m_runner.IsRunning() && !m_parts.records.empty() && (m_target == nullptr || Target() != 0));
}

std::array<double, 3> OperationDialog::AlignmentWay() const {
  enum Alignment { kCentres, kOnTop, kLeastCorners };
  const Box moved = BoxOf(m_doc, m_parts.records);
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
  ListTargets();  // records may have changed meanwhile
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
  m_runner.Start(std::move(operation), m_parts.records, windowTitle());
}

}  // namespace qd::workbench
