#include "workbench/app/OperationDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
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

}  // namespace

OperationDialog::OperationDialog(WorkDocument& doc, OperationRunner& runner, const OperationForm& form,
                                 std::vector<iterator> parts, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_runner(runner), m_form(form), m_parts(std::move(parts)) {
  SetTitle(*this, form.titleKey);
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("operation");
  auto* layout = new QFormLayout(this);
  layout->addRow(NewLabel(m_parts.empty() ? "IDS_WB_NO_PARTS" : "IDS_WB_PARTS",
                          {QLocale().toString(static_cast<qulonglong>(m_parts.size()))}));
  if (form.pointKey != nullptr) m_point = AddNumbers(*layout, form.pointKey, {0, 0, 0}, NumberKinds::kPoint);
  if (form.vectorKey != nullptr) m_vector = AddNumbers(*layout, form.vectorKey, form.vector, form.vectorKind);
  if (form.amountKey != nullptr) m_amount = AddNumbers(*layout, form.amountKey, {form.amount}, form.amountKind);
  if (form.target) {
    m_target = new QComboBox;
    m_target->setObjectName("target");
    for (const iterator part : m_doc.GetDatabase().GetGeomPool().GetItrList()) {
      if (std::find(m_parts.begin(), m_parts.end(), part) != m_parts.end()) continue;
      m_target->addItem(ToQt(m_doc.GetDatabase().GetGeomPool().GetAtNU(part)->name), QVariant::fromValue(part));
    }
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
    layout->addRow(m_secondOrder);
  }
  auto* buttons = new QDialogButtonBox;
  m_apply = buttons->addButton(QString(), QDialogButtonBox::ApplyRole);
  SetText(*m_apply, "IDS_WB_APPLY");
  m_apply->setObjectName("apply");
  m_apply->setEnabled(!m_parts.empty() && (m_target == nullptr || m_target->count() > 0));
  connect(m_apply, &QPushButton::clicked, this, &OperationDialog::Apply);
  QPushButton* close = buttons->addButton(QString(), QDialogButtonBox::RejectRole);
  SetText(*close, "IDS_WB_CLOSE");
  connect(close, &QPushButton::clicked, this, &QDialog::close);
  connect(&runner, &OperationRunner::Started, this, [this] { m_apply->setEnabled(false); });
  connect(&runner, &OperationRunner::Ended, this, [this] { m_apply->setEnabled(true); });
  layout->addRow(buttons);
}

std::array<double, 3> OperationDialog::AlignmentWay() const {
  enum Alignment { kCentres, kOnTop, kLeastCorners };
  const Box moved = BoxOf(m_doc, m_parts);
  const Box target = BoxOf(m_doc, {m_target->currentData().value<iterator>()});
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
  if (!CheckNumbers(*this)) return;
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
    const tagTGeom* target = m_doc.GetDatabase().GetGeomPool().GetAtNU(m_target->currentData().value<iterator>());
    if (target != nullptr && target->shape != nullptr) operation.target = target->shape->brep;
  }
  std::vector<iterator> parts = m_parts;
  if (m_form.solidsOnly) {
    std::erase_if(parts, [this](iterator part) { return m_doc.GetDatabase().GetGeomPool().IsSolid(part) == 0; });
  }
  m_runner.Start(std::move(operation), parts, windowTitle());
}

}  // namespace qd::workbench
