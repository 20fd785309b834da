#include "workbench/app/MeshDialog.h"

#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QSignalBlocker>

#include "platform/qt/QtConvert.h"
#include "workbench/app/ListedNames.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"
#include "workbench/mesh/ElementTypes.h"

namespace qd::workbench {

MeshDialog::MeshDialog(WorkDocument& doc, const char* titleKey, QWidget* parent)
    : DialogFrame(titleKey, "mesh", parent), m_doc(doc) {
  m_doc.SetCurrentDialog(this);
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) {
    if (!Concerns(record, kDataMset)) return;
    TellNothing();  // what came of an act may have been taken back
    Update(0);
  });
}

MeshDialog::~MeshDialog() {
  if (m_doc.GetCurrentDialog() == this) m_doc.SetCurrentDialog(nullptr);
}

void MeshDialog::changeEvent(QEvent* event) {
  DialogFrame::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) ShowSetsInView();  // numbers are written otherwise
}

/// A closed dialog goes a little later, but nobody works with it any more.
void MeshDialog::hideEvent(QHideEvent* event) {
  if (m_doc.GetCurrentDialog() == this) m_doc.SetCurrentDialog(nullptr);
  DialogFrame::hideEvent(event);
}

QComboBox* MeshDialog::AddSetField(const char* key, bool withDefault, iterator without) {
  auto* box = new QComboBox;
  box->setObjectName(key);
  AddField(key, box);
  m_sets.push_back({box, withDefault, without});
  connect(box, &QComboBox::currentIndexChanged, this, [this, place = m_sets.size() - 1] {
    m_sets[place].chosen = ChosenSet(*m_sets[place].box);
    TellNothing();
    ShowWork();
  });
  return box;
}

QComboBox* MeshDialog::AddTypeField() {
  auto* box = new QComboBox;
  box->setObjectName("type");
  for (const ElementType& type : ElementTypes()) {
    box->addItem(QString::fromUtf8(type.name.data(), static_cast<qsizetype>(type.name.size())), type.number);
  }
  box->setCurrentIndex(box->findData(2));
  AddField("IDS_WB_MESH_TYPE", box);
  return box;
}

QLineEdit* MeshDialog::AddTextField(const char* key, const char* hintKey) {
  auto* edit = new QLineEdit;
  edit->setObjectName(key);
  SetHint(*edit, hintKey);
  AddField(key, edit);
  return edit;
}

void MeshDialog::AddSetsInView() {
  m_named = AddWorkLine("sets");
  m_worked = std::make_unique<FollowedWork>(m_doc, FollowedWork::What{.type = kDataMset, .elseAll = true},
                                            [this] { ShowWork(); });
}

void MeshDialog::ShowSetsInView() {
  if (m_worked == nullptr) return;
  const char* some = m_worked->IsAll() ? "IDS_WB_ALL_SHOWN" : "IDS_WB_MESH_SETS";
  SetText(*m_named, m_worked->Count() != 0 ? some : "IDS_WB_NO_MESH_SETS",
          {QLocale().toString(static_cast<qulonglong>(m_worked->Count())), ToQt(m_worked->Names())});
}

const char* MeshDialog::Hindrance() const {
  if (m_own != 0 && m_doc.GetDatabase().GetDataType(m_own) != kDataMset) return "IDS_WB_MESH_SET_GONE";
  for (const SetField& field : m_sets) {
    if (field.hasChosen && field.box->currentIndex() < 0) return "IDS_WB_MESH_CHOICE_GONE";
  }
  return m_worked != nullptr && m_worked->Count() == 0 ? "IDS_WB_NO_MESH_SETS" : nullptr;
}

void MeshDialog::ShowWork() {
  ShowSetsInView();
  const char* hindrance = Hindrance();
  Block(hindrance, m_worked != nullptr && m_worked->Count() == 0);
}

void MeshDialog::AddInfo(std::function<void(QLabel&)> info) {
  m_infos.emplace_back(AddWorkLine("info"), std::move(info));
}

void MeshDialog::AddMeshAct(const char* key, const char* name, const char* doneKey,
                            std::function<ActResult(const CString&)> act, QLineEdit* text) {
  AddAct(key, name, [this, doneKey, act = std::move(act), text] {
    if (!CheckFields() || Hindrance() != nullptr) return ShowWork();
    const HeardWarnings heard;
    const ActResult result = act(FromQt(windowTitle()));
    const QStringList detail{QString::fromStdString(result.detail)};
    if (result.IsDone()) {
      Tell(doneKey, {QLocale().toString(static_cast<qulonglong>(result.number))});
    } else if (!heard.Last().isEmpty()) {
      TellText(heard.Last());
    } else if (text != nullptr) {
      TellFault(*text, result.errorKey, detail);
    } else {
      Tell(result.errorKey, detail);
    }
  });
}

void MeshDialog::FinishFields() {
  Finish();
  OfferPicks(m_doc);
  Update(0);
}

/// A chosen set that is gone is none; another one was not chosen, not even when all were gone for a while.
void MeshDialog::ListSets(SetField& field) {
  constexpr std::size_t kMostListed = 10'000;  // a list longer than that helps nobody
  const MsetPool& pool = m_doc.GetDatabase().GetMsetPool();
  const QSignalBlocker quiet(field.box);
  field.box->clear();
  if (field.withDefault) {
    AddChoice(*field.box, "IDS_WB_DEFAULT_MESH_SET");
    field.box->setItemData(0, QVariant::fromValue(iterator{0}));
  }
  std::vector<ListedName> names;
  std::vector<iterator> sets;
  for (const iterator itr : pool.GetItrList()) {
    if (names.size() > kMostListed) break;
    if (itr == field.without || (field.withDefault && itr == pool.GetDefaultMset())) continue;
    names.push_back({ToQt(pool.GetAtNU(itr)->name), NumberOf(itr)});
    sets.push_back(itr);
  }
  TellApart(names);
  for (std::size_t i = 0; i < sets.size(); ++i) field.box->addItem(names[i].name, QVariant::fromValue(sets[i]));
  if (!field.hasChosen && field.box->count() != 0) {
    field.chosen = ChosenSet(*field.box);
    field.hasChosen = true;
  }
  int place = field.box->findData(QVariant::fromValue(field.chosen));
  if (place < 0 && m_doc.GetDatabase().GetDataType(field.chosen) == kDataMset) {  // behind those that are listed
    place = field.box->count();
    field.box->addItem(ToQt(pool.GetAtNU(field.chosen)->name), QVariant::fromValue(field.chosen));
  }
  field.box->setCurrentIndex(place);
}

void MeshDialog::Update(int) {
  for (SetField& field : m_sets) ListSets(field);
  for (const auto& [label, info] : m_infos) info(*label);
  ShowWork();
}

iterator ChosenSet(const QComboBox& field) {
  return field.currentData().value<iterator>();
}

}  // namespace qd::workbench
