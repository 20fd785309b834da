#include "workbench/app/MaterialDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <algorithm>
#include <utility>

#include "host/CQDColorGenerator.h"
#include "host/CTransaction.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"
#include "workbench/model/Values.h"

namespace qd::workbench {

namespace {

// Steel in millimetres, tonnes and seconds.
constexpr double kYoung = 210000;
constexpr double kPoisson = 0.3;
constexpr double kDensity = 7.85e-9;

}  // namespace

MaterialDialog::MaterialDialog(WorkDocument& doc, std::vector<iterator> parts, QWidget* parent)
    : QDialog(parent),
      m_doc(doc),
      m_parts(doc, {.reach = Reach::All, .given = std::move(parts)}, [this] { ShowParts(); }),
      m_named(new QLabel),
      m_list(new QComboBox),
      m_name(new QLineEdit),
      m_fault(new QLabel) {
  SetTitle(*this, "IDS_WB_MATERIALS");
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("materials");
  m_name->setObjectName("name");
  m_fault->setObjectName("fault");
  m_fault->setWordWrap(true);
  auto* layout = new QFormLayout(this);
  m_named->setObjectName("parts");
  m_named->setWordWrap(true);
  layout->addRow(m_named);
  layout->addRow(NewLabel("IDS_WB_MATERIAL"), m_list);
  layout->addRow(NewLabel("IDS_QD_WRT_PROP_NAME"), m_name);
  m_young = AddNumbers(*layout, "IDS_WB_MATERIAL_YOUNG", {kYoung}, {Quantity::Stress, NumberLimits::Positive()});
  m_poisson = AddNumbers(*layout, "IDS_WB_MATERIAL_POISSON", {kPoisson},
                         {Quantity::Plain, {.least = -1, .greatest = 0.5, .aboveLeast = true}});
  m_density =
      AddNumbers(*layout, "IDS_WB_MATERIAL_DENSITY", {kDensity}, {Quantity::Density, NumberLimits::NotNegative()});
  layout->addRow(m_fault);
  auto* buttons = new QDialogButtonBox;
  QPushButton* apply = buttons->addButton(QString(), QDialogButtonBox::ApplyRole);
  QPushButton* close = buttons->addButton(QString(), QDialogButtonBox::RejectRole);
  SetText(*apply, "IDS_WB_APPLY");
  SetText(*close, "IDS_WB_CLOSE");
  apply->setObjectName("apply");
  connect(apply, &QPushButton::clicked, this, &MaterialDialog::Apply);
  connect(close, &QPushButton::clicked, this, &QDialog::close);
  layout->addRow(buttons);
  connect(m_list, &QComboBox::activated, this, &MaterialDialog::ShowChosen);
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) { FollowRecords(record); });
  ListMaterials(0);
  ShowChosen();
  ShowParts();
}

void MaterialDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) ShowParts();  // numbers are written otherwise
}

/// Parts that are hidden have materials, too.
void MaterialDialog::ShowParts() {
  SetText(*m_named, m_parts.Count() == 0 ? "IDS_WB_MATERIAL_ALONE" : "IDS_WB_PARTS",
          {QLocale().toString(static_cast<qulonglong>(m_parts.Count())), ToQt(m_parts.Names())});
}

/// What was entered for a material that is still as it was stays.
void MaterialDialog::FollowRecords(const CQDUpdateRecord& record) {
  if (!Concerns(record, kDataMaterial)) return;
  const iterator chosen = Chosen();
  ListMaterials(chosen);
  const bool other = std::any_of(record.changes.begin(), record.changes.end(),
                                 [chosen](const tagTRNotify& change) { return change.itr == chosen; });
  if (other) ShowChosen();
}

iterator MaterialDialog::Chosen() const {
  return m_list->currentData().value<iterator>();
}

void MaterialDialog::ListMaterials(iterator chosen) {
  m_list->clear();
  AddChoice(*m_list, "IDS_WB_MATERIAL_NEW");
  m_list->setItemData(0, QVariant::fromValue(iterator{0}));
  for (const IAppDB::Material& material : m_doc.GetDatabase().ListMaterials()) {
    m_list->addItem(ToQt(material.label), QVariant::fromValue(material.itr));
    if (material.itr == chosen) m_list->setCurrentIndex(m_list->count() - 1);
  }
}

void MaterialDialog::ShowChosen() {
  tagTMaterial record;
  record.youngsModulus = kYoung;
  record.poissonsRatio = kPoisson;
  record.density = kDensity;
  if (const tagTMaterial* known = m_doc.GetDatabase().GetMaterialPool().GetAtNU(Chosen())) record = *known;
  m_name->setText(ToQt(record.name));
  m_young->SetValue(record.youngsModulus);
  m_poisson->SetValue(record.poissonsRatio);
  m_density->SetValue(record.density);
  ClearText(*m_fault);
}

void MaterialDialog::Apply() {
  Database& database = m_doc.GetDatabase();
  iterator material = Chosen();
  tagTMaterial record;
  if (const tagTMaterial* known = database.GetMaterialPool().GetAtNU(material)) {
    record = *known;
  } else {
    material = 0;
    CQDColorGenerator colours;
    for (std::size_t i = 0; i <= database.GetMaterialPool().Count(); ++i) record.colour = colours.GetNextColor();
  }
  ClearText(*m_fault);
  if (!CheckNumbers(*this)) return;
  record.name = CutName(FromQt(m_name->text().trimmed()));
  if (IsBlank(record.name)) return SetText(*m_fault, "IDS_QD_DB_NAME_EMPTY");
  record.youngsModulus = m_young->Value();
  record.poissonsRatio = m_poisson->Value();
  record.density = m_density->Value();
  if (Store(material, record)) {
    ListMaterials(material);
    return ShowChosen();
  }
  // Why the document does not take it is told by the document.
  SetText(*m_fault, "IDS_WB_NOT_STORED", {ToQt(record.name)});
}

bool MaterialDialog::Store(iterator& material, const tagTMaterial& record) {
  Database& database = m_doc.GetDatabase();
  CTransaction transaction(&database);
  if (transaction.Begin(FromQt(Text("IDS_WB_TRANS_MATERIAL"))) == 0) return false;
  if (material == 0) {
    material = database.GetMaterialPool().Add(record);
    if (material == 0) return false;
  } else if (database.GetMaterialPool().Change(material, record) == 0) {
    return false;
  }
  for (const iterator part : m_parts.Records()) {
    tagTGeom changed = *database.GetGeomPool().GetAtNU(part);
    changed.material = material;
    if (database.GetGeomPool().Change(part, std::move(changed)) == 0) return false;
  }
  return transaction.Commit(1) != 0;
}

}  // namespace qd::workbench
