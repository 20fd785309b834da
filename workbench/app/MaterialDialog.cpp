#include "workbench/app/MaterialDialog.h"

#include <QComboBox>
#include <QEvent>
#include <QFile>
#include <QLineEdit>
#include <QLocale>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

#include "host/Act.h"
#include "host/CQDColorGenerator.h"
#include "host/CQDUnitCtrl.h"
#include "platform/qt/QtConvert.h"
#include "platform/text/Characters.h"
#include "workbench/app/ListedNames.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

namespace {

// Steel in the usual units: millimetres, tonnes and seconds.
constexpr double kYoung = 210000;
constexpr double kPoisson = 0.3;
constexpr double kDensity = 7.85e-9;

}  // namespace

MaterialDialog::MaterialDialog(WorkDocument& doc, iterator material, std::vector<iterator> parts, QWidget* parent)
    : DialogFrame("IDS_WB_MATERIALS", "materials", parent),
      m_doc(doc),
      m_chosen(material),
      m_parts(doc, {.reach = Reach::All, .given = std::move(parts)}, [this] { ShowParts(); }),
      m_named(AddWorkLine("parts")),
      m_list(new QComboBox),
      m_library(new QComboBox),
      m_name(new QLineEdit) {
  m_name->setObjectName("name");
  m_library->setObjectName("library");
  QFile library(":/materials/materials.txt");
  std::vector<std::string> faults;  // none: a test reads the file
  if (library.open(QIODevice::ReadOnly)) {
    m_common = ReadMaterials(library.readAll().toStdString(), UnitSystems().front(), faults);
  }
  AddChoice(*m_library, "IDS_WB_LIBRARY_CHOOSE");
  for (const CommonMaterial& common : m_common) AddChoice(*m_library, common.nameKey);
  connect(m_library, &QComboBox::activated, this, &MaterialDialog::FillIn);
  AddField("IDS_WB_MATERIAL", m_list);
  AddField("IDS_WB_FROM_LIBRARY", m_library);
  AddField("IDS_QD_WRT_PROP_NAME", m_name);
  m_young = AddNumbers("IDS_WB_MATERIAL_YOUNG", {kYoung}, {Quantity::Stress, NumberLimits::Positive()});
  m_poisson = AddNumbers("IDS_WB_MATERIAL_POISSON", {kPoisson},
                         {Quantity::Plain, {.least = -1, .greatest = 0.5, .aboveLeast = true}});
  m_density = AddNumbers("IDS_WB_MATERIAL_DENSITY", {kDensity}, {Quantity::Density, NumberLimits::NotNegative()});
  AddAct("IDS_WB_APPLY", "apply", [this] { Apply(); });
  Finish();
  connect(m_list, &QComboBox::currentIndexChanged, this, [this] {
    m_chosen = m_list->currentData().value<iterator>();
    ShowChosen();
  });
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) { FollowRecords(record); });
  ListMaterials();
  ShowChosen();
  ShowParts();
}

void MaterialDialog::changeEvent(QEvent* event) {
  DialogFrame::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) ShowParts();  // numbers are written otherwise
}

/// Parts that are hidden have materials, too.
void MaterialDialog::ShowParts() {
  SetText(*m_named, m_parts.Count() == 0 ? "IDS_WB_MATERIAL_ALONE" : "IDS_WB_PARTS",
          {QLocale().toString(static_cast<qulonglong>(m_parts.Count())), ToQt(m_parts.Names())});
}

/// What was entered stays, unless it was about a material that is another one now.
void MaterialDialog::FollowRecords(const CQDUpdateRecord& record) {
  if (!Concerns(record, kDataMaterial)) return;
  ListMaterials();
  const bool other = std::any_of(record.changes.begin(), record.changes.end(),
                                 [this](const tagTRNotify& change) { return change.itr == m_chosen; });
  if (IsGone()) return Block("IDS_WB_MATERIAL_GONE");
  if (other) ShowChosen();
}

bool MaterialDialog::IsGone() const {
  return m_chosen != 0 && m_doc.GetDatabase().GetDataType(m_chosen) == 0;
}

/// A chosen one that is gone is none; another one was not chosen.
void MaterialDialog::ListMaterials() {
  const QSignalBlocker quiet(m_list);
  m_list->clear();
  AddChoice(*m_list, "IDS_WB_MATERIAL_NEW");
  m_list->setItemData(0, QVariant::fromValue(iterator{0}));
  const std::vector<IAppDB::Material> materials = m_doc.GetDatabase().ListMaterials();
  std::vector<ListedName> names;
  names.reserve(materials.size());
  for (const IAppDB::Material& material : materials)
    names.push_back({ToQt(material.label), NumberOf(material.itr)});
  TellApart(names);
  for (std::size_t i = 0; i < names.size(); ++i)
    m_list->addItem(names[i].name, QVariant::fromValue(materials[i].itr));
  m_list->setCurrentIndex(m_list->findData(QVariant::fromValue(m_chosen)));
}

void MaterialDialog::ShowChosen() {
  TellNothing();
  Block(nullptr);
  if (const tagTMaterial* known = m_doc.GetDatabase().GetMaterialPool().GetAtNU(m_chosen)) {
    m_name->setText(ToQt(known->name));
    m_young->SetValue(known->youngsModulus);
    m_poisson->SetValue(known->poissonsRatio);
    m_density->SetValue(known->density);
    return;
  }
  const UnitSystem& units = FindUnitSystem(CQDUnitCtrl::GetUnitSystemLength());
  m_name->clear();
  m_young->Propose(Converted(kYoung, Quantity::Stress, UnitSystems().front(), units));
  m_poisson->Propose(kPoisson);
  m_density->Propose(Converted(kDensity, Quantity::Density, UnitSystems().front(), units));
}

void MaterialDialog::FillIn(int place) {
  if (place <= 0) return;
  const CommonMaterial& common = m_common[static_cast<std::size_t>(place - 1)];
  const UnitSystem& units = FindUnitSystem(CQDUnitCtrl::GetUnitSystemLength());
  m_young->Propose(Converted(common.youngsModulus, Quantity::Stress, UnitSystems().front(), units));
  m_poisson->Propose(common.poissonsRatio);
  m_density->Propose(Converted(common.density, Quantity::Density, UnitSystems().front(), units));
  if (m_name->text().trimmed().isEmpty()) m_name->setText(Text(common.nameKey));
  m_library->setCurrentIndex(0);  // the values are the material's own from now on
}

void MaterialDialog::Apply() {
  Database& database = m_doc.GetDatabase();
  if (IsGone()) return Block("IDS_WB_MATERIAL_GONE");
  iterator material = m_chosen;
  tagTMaterial record;
  if (const tagTMaterial* known = database.GetMaterialPool().GetAtNU(material)) {
    record = *known;
  } else {
    material = 0;
    CQDColorGenerator colours;
    for (std::size_t i = 0; i <= database.GetMaterialPool().Count(); ++i) record.colour = colours.GetNextColor();
  }
  if (!CheckFields()) return;
  record.name = CutName(FromQt(m_name->text().trimmed()));
  if (IsBlank(record.name)) return TellFault(*m_name, "IDS_QD_DB_NAME_EMPTY");
  record.youngsModulus = m_young->Value();
  record.poissonsRatio = m_poisson->Value();
  record.density = m_density->Value();
  const HeardWarnings heard;
  if (Store(material, record)) {
    m_chosen = material;
    ListMaterials();
    ShowChosen();
    return Tell("IDS_WB_CORD_STORED", {ToQt(record.name)});
  }
  if (!heard.Last().isEmpty()) return TellText(heard.Last());
  Tell("IDS_WB_NOT_STORED", {ToQt(record.name)});
}

bool MaterialDialog::Store(iterator& material, const tagTMaterial& record) {
  Database& database = m_doc.GetDatabase();
  return RunAct(&database, "IDS_WB_TRANS_MATERIAL", [&] {
           if (material != 0) {
             if (database.GetMaterialPool().Change(material, record) == 0) return 0;
           } else if ((material = database.GetMaterialPool().Add(record)) == 0) {
             return 0;
           }
           for (const iterator part : m_parts.Records()) {
             tagTGeom changed = *database.GetGeomPool().GetAtNU(part);
             changed.material = material;
             if (database.GetGeomPool().Change(part, std::move(changed)) == 0) return 0;
           }
           return 1;
         }) != 0;
}

}  // namespace qd::workbench
