#include "workbench/app/MeshDialog.h"

#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"
#include "workbench/mesh/ElementTypes.h"

namespace qd::workbench {

MeshDialog::MeshDialog(WorkDocument& doc, const char* titleKey, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_layout(new QFormLayout(this)), m_outcome(new QLabel) {
  SetTitle(*this, titleKey);
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("mesh");
  m_outcome->setObjectName("outcome");
  m_outcome->setWordWrap(true);
  m_doc.SetCurrentDialog(this);
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) {
    if (!Concerns(record, kDataMset)) return;
    ClearText(*m_outcome);  // what came of an act may have been taken back
    Update(0);
  });
}

MeshDialog::~MeshDialog() {
  if (m_doc.GetCurrentDialog() == this) m_doc.SetCurrentDialog(nullptr);
}

void MeshDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) ShowSetsInView();  // numbers are written otherwise
}

/// A closed dialog goes a little later, but nobody works with it any more.
void MeshDialog::hideEvent(QHideEvent* event) {
  if (m_doc.GetCurrentDialog() == this) m_doc.SetCurrentDialog(nullptr);
  QDialog::hideEvent(event);
}

QComboBox* MeshDialog::AddSetField(const char* key, bool withDefault, iterator without) {
  auto* box = new QComboBox;
  box->setObjectName(key);
  m_layout->addRow(NewLabel(key), box);
  m_sets.push_back({box, withDefault, without});
  return box;
}

QComboBox* MeshDialog::AddTypeField() {
  auto* box = new QComboBox;
  box->setObjectName("type");
  for (const ElementType& type : ElementTypes()) {
    box->addItem(QString::fromUtf8(type.name.data(), static_cast<qsizetype>(type.name.size())), type.number);
  }
  box->setCurrentIndex(box->findData(2));
  m_layout->addRow(NewLabel("IDS_WB_MESH_TYPE"), box);
  return box;
}

QLineEdit* MeshDialog::AddTextField(const char* key, const char* hintKey) {
  auto* edit = new QLineEdit;
  edit->setObjectName(key);
  SetHint(*edit, hintKey);
  m_layout->addRow(NewLabel(key), edit);
  return edit;
}

void MeshDialog::AddSetsInView() {
  m_named = new QLabel;
  m_named->setObjectName("sets");
  m_named->setWordWrap(true);
  m_layout->addRow(m_named);
  m_worked = std::make_unique<FollowedWork>(m_doc, FollowedWork::What{.type = kDataMset, .elseAll = true},
                                            [this] { ShowSetsInView(); });
}

void MeshDialog::ShowSetsInView() {
  if (m_worked == nullptr) return;
  const char* some = m_worked->IsAll() ? "IDS_WB_ALL_SHOWN" : "IDS_WB_MESH_SETS";
  SetText(*m_named, HasWork() ? some : "IDS_WB_NO_MESH_SETS",
          {QLocale().toString(static_cast<qulonglong>(m_worked->Count())), ToQt(m_worked->Names())});
  for (QWidget* button : m_buttons) button->setEnabled(HasWork());
}

void MeshDialog::AddInfo(std::function<void(QLabel&)> info) {
  auto* label = new QLabel;
  m_layout->addRow(label);
  m_infos.emplace_back(label, std::move(info));
}

void MeshDialog::AddAct(const char* key, const char* name, const char* doneKey,
                        std::function<ActResult(const CString&)> act) {
  auto* button = new QPushButton;
  SetText(*button, key);
  button->setObjectName(name);
  m_buttons.push_back(button);
  connect(button, &QPushButton::clicked, this, [this, doneKey, act = std::move(act)] {
    ClearText(*m_outcome);
    if (!HasWork() || !CheckNumbers(*this)) return;
    const ActResult result = act(FromQt(windowTitle()));
    if (result.IsDone()) {
      SetText(*m_outcome, doneKey, {QLocale().toString(static_cast<qulonglong>(result.number))});
    } else {
      SetText(*m_outcome, result.errorKey, {QString::fromStdString(result.detail)});
    }
  });
}

void MeshDialog::Finish() {
  m_layout->addRow(m_outcome);
  auto* row = new QHBoxLayout;
  row->addStretch();
  for (QWidget* button : m_buttons) row->addWidget(button);
  auto* close = new QPushButton;
  SetText(*close, "IDS_WB_CLOSE");
  connect(close, &QPushButton::clicked, this, &QDialog::close);
  row->addWidget(close);
  m_layout->addRow(row);
  Update(0);
}

void MeshDialog::Update(int) {
  constexpr int kMostListed = 10'000;  // a list longer than that helps nobody
  const MsetPool& pool = m_doc.GetDatabase().GetMsetPool();
  for (const SetField& field : m_sets) {
    const QVariant chosen = field.box->currentData();
    field.box->clear();
    if (field.withDefault) {
      AddChoice(*field.box, "IDS_WB_DEFAULT_MESH_SET");
      field.box->setItemData(0, QVariant::fromValue(iterator{0}));
    }
    for (const iterator itr : pool.GetItrList()) {
      if (field.box->count() > kMostListed) break;
      if (itr == field.without) continue;
      if (!field.withDefault || itr != pool.GetDefaultMset()) {
        field.box->addItem(ToQt(pool.GetAtNU(itr)->name), QVariant::fromValue(itr));
      }
    }
    if (const int again = field.box->findData(chosen); chosen.isValid() && again >= 0) {
      field.box->setCurrentIndex(again);
    }
  }
  for (const auto& [label, info] : m_infos) info(*label);
  ShowSetsInView();
}

iterator ChosenSet(const QComboBox& field) {
  return field.currentData().value<iterator>();
}

}  // namespace qd::workbench
