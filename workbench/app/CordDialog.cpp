#include "workbench/app/CordDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <algorithm>

#include "host/CTransaction.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"
#include "workbench/model/Values.h"

namespace qd::workbench {

// Whether the two axes give a system is found out when both are there.
constexpr NumberKind kAxis{Quantity::Plain, NumberKinds::kPlace};

CordDialog::CordDialog(WorkDocument& doc, iterator edited, QWidget* parent)
    : QDialog(parent),
      m_doc(doc),
      m_edited(edited),
      m_name(new QLineEdit),
      m_kind(new QComboBox),
      m_parent(new QComboBox),
      m_outcome(new QLabel),
      m_apply(new QPushButton) {
  SetTitle(*this, edited != 0 ? "IDS_WB_CORD_EDIT" : "IDS_WB_CORD_NEW");
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("cord");
  m_name->setObjectName("name");
  m_kind->setObjectName("kind");
  m_parent->setObjectName("parent");
  m_outcome->setObjectName("outcome");
  m_outcome->setWordWrap(true);
  for (const char* key : {"IDS_WB_CORD_RECTANGULAR", "IDS_WB_CORD_CYLINDRICAL", "IDS_WB_CORD_SPHERICAL"}) {
    AddChoice(*m_kind, key);
  }
  auto* layout = new QFormLayout(this);
  layout->addRow(NewLabel("IDS_QD_WRT_PROP_NAME"), m_name);
  layout->addRow(NewLabel("IDS_WB_CORD_KIND"), m_kind);
  layout->addRow(NewLabel("IDS_WB_CORD_PARENT"), m_parent);
  m_origin = AddNumbers(*layout, "IDS_WB_CORD_ORIGIN", {0, 0, 0}, NumberKinds::kPoint);
  m_xAxis = AddNumbers(*layout, "IDS_WB_CORD_X_AXIS", {0, 0, 0}, kAxis);
  m_xyPlane = AddNumbers(*layout, "IDS_WB_CORD_XY_PLANE", {0, 0, 0}, kAxis);
  layout->addRow(m_outcome);
  auto* buttons = new QDialogButtonBox;
  auto* close = new QPushButton;
  SetText(*m_apply, "IDS_WB_APPLY");
  SetText(*close, "IDS_WB_CLOSE");
  m_apply->setObjectName("apply");
  buttons->addButton(m_apply, QDialogButtonBox::ApplyRole);
  buttons->addButton(close, QDialogButtonBox::RejectRole);
  connect(m_apply, &QPushButton::clicked, this, &CordDialog::Apply);
  connect(close, &QPushButton::clicked, this, &QDialog::close);
  layout->addRow(buttons);
  m_doc.SetCurrentDialog(this);
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) { FollowRecords(record); });
  const tagTCord* known = Pool().GetAtNU(edited);
  ShowRecord(known != nullptr ? *known : tagTCord());
}

CordDialog::~CordDialog() {
  if (m_doc.GetCurrentDialog() == this) m_doc.SetCurrentDialog(nullptr);
}

void CordDialog::hideEvent(QHideEvent* event) {
  if (m_doc.GetCurrentDialog() == this) m_doc.SetCurrentDialog(nullptr);
  QDialog::hideEvent(event);
}

void CordDialog::ShowRecord(const tagTCord& record) {
  if (m_edited != 0) {
    m_name->setText(ToQt(record.GetName()));
  } else {
    ProposeName();
  }
  m_kind->setCurrentIndex(static_cast<int>(record.kind));
  ListParents(record.parent);
  m_origin->SetPoint(record.origin);
  m_xAxis->SetPoint(record.xAxis);
  m_xyPlane->SetPoint(record.xyPlane);
}

void CordDialog::ProposeName() {
  m_proposed = ToQt(Pool().GetNewCopyName(FromQt(Text("IDS_WB_CORD_NAME"))));
  m_name->setText(m_proposed);
}

/// What was said of an act may have been taken back. What somebody has typed stays, unless it was about a record
/// that is another one now.
void CordDialog::FollowRecords(const CQDUpdateRecord& record) {
  if (!Concerns(record, kDataCord)) return;
  ClearText(*m_outcome);
  m_apply->setEnabled(!IsGone());
  if (IsGone()) return SetText(*m_outcome, "IDS_WB_CORD_GONE");
  const bool edited = std::any_of(record.changes.begin(), record.changes.end(),
                                  [this](const tagTRNotify& change) { return change.itr == m_edited; });
  if (edited) return ShowRecord(*Pool().GetAtNU(m_edited));
  ListParents(m_parent->currentData().value<iterator>());
  if (m_edited == 0 && m_name->text() == m_proposed) ProposeName();
}

void CordDialog::ListParents(iterator chosen) {
  m_parent->clear();
  for (const iterator itr : Pool().GetItrList()) {
    if (itr == m_edited) continue;
    m_parent->addItem(ToQt(Pool().GetAtNU(itr)->GetName()), QVariant::fromValue(itr));
    if (itr == chosen) m_parent->setCurrentIndex(m_parent->count() - 1);
  }
}

void CordDialog::Update(int) {
  ListParents(m_parent->currentData().value<iterator>());
}

tagTCord CordDialog::Entered() const {
  tagTCord record;
  record.SetName(FromQt(m_name->text().trimmed()));
  record.kind = static_cast<CordKind>(m_kind->currentIndex());
  record.parent = m_parent->currentData().value<iterator>();
  record.origin = m_origin->Point();
  record.xAxis = m_xAxis->Point();
  record.xyPlane = m_xyPlane->Point();
  return record;
}

const char* CordDialog::FaultOf(const tagTCord& record) const {
  const tagTCord* old = Pool().GetAtNU(m_edited);
  if (IsGone()) return "IDS_WB_CORD_GONE";
  const CString name = record.GetName();
  if (IsBlank(name)) return "IDS_QD_DB_NAME_EMPTY";
  if (Pool().Exist(name) != 0 && (old == nullptr || old->GetName() != name))
    return "IDS_QD_DB_EXIST_NEW_DATA_NAME";
  if (!IsPlaceable(record)) return "IDS_WB_CORD_AXES";
  if (m_doc.GetDatabase().GetDataType(record.parent) == 0) return "IDS_WB_CORD_GONE";
  return m_edited != 0 && Pool().StandsOn(record.parent, m_edited) ? "IDS_WB_CORD_CIRCLE" : nullptr;
}

void CordDialog::Apply() {
  ClearText(*m_outcome);
  if (!CheckNumbers(*this)) return;
  const tagTCord record = Entered();
  if (const char* fault = FaultOf(record)) return SetText(*m_outcome, fault, {ToQt(record.GetName())});
  CTransaction transaction(&m_doc.GetDatabase());
  const char* title = m_edited != 0 ? "IDS_QD_TRANS_Modify_CORD" : "IDS_QD_TRANS_Add_CORD";
  bool done = transaction.Begin(FromQt(Text(title))) != 0;
  if (done) done = m_edited != 0 ? Pool().Modify(m_edited, record) != 0 : Pool().Add(record) != 0;
  if (done) done = transaction.Commit(1) != 0;
  // Why the document does not take it is told by the document.
  SetText(*m_outcome, done ? "IDS_WB_CORD_STORED" : "IDS_WB_NOT_STORED", {ToQt(record.GetName())});
  if (done && m_edited == 0) ShowRecord(record);
}

}  // namespace qd::workbench
