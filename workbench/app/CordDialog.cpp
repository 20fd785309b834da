#include "workbench/app/CordDialog.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <algorithm>

#include "host/Act.h"
#include "platform/qt/QtConvert.h"
#include "platform/text/Characters.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

// Whether the two axes give a system is found out when both are there.
constexpr NumberKind kAxis{Quantity::Plain, NumberKinds::kPlace, false, NumberKind::Picked::Direction};

CordDialog::CordDialog(WorkDocument& doc, iterator edited, QWidget* parent)
    : DialogFrame(edited != 0 ? "IDS_WB_CORD_EDIT" : "IDS_WB_CORD_NEW", "cord", parent),
      m_doc(doc),
      m_edited(edited),
      m_name(new QLineEdit),
      m_kind(new QComboBox),
      m_parent(new QComboBox),
      m_work(AddWorkLine("system")) {
  m_name->setObjectName("name");
  m_kind->setObjectName("kind");
  m_parent->setObjectName("parent");
  for (const char* key : {"IDS_WB_CORD_RECTANGULAR", "IDS_WB_CORD_CYLINDRICAL", "IDS_WB_CORD_SPHERICAL"}) {
    AddChoice(*m_kind, key);
  }
  AddField("IDS_QD_WRT_PROP_NAME", m_name);
  AddField("IDS_WB_CORD_KIND", m_kind);
  AddField("IDS_WB_CORD_PARENT", m_parent);
  m_origin = AddNumbers("IDS_WB_CORD_ORIGIN", {0, 0, 0}, NumberKinds::kPoint);
  m_xAxis = AddNumbers("IDS_WB_CORD_X_AXIS", {0, 0, 0}, kAxis);
  m_xyPlane = AddNumbers("IDS_WB_CORD_XY_PLANE", {0, 0, 0}, kAxis);
  AddAct("IDS_WB_APPLY", "apply", [this] { Apply(); });
  Finish();
  OfferPicks(doc, [this] { return Pool().GlobalPlacement(m_base); });
  connect(m_parent, &QComboBox::currentIndexChanged, this, [this] {
    m_base = m_parent->currentData().value<iterator>();
    TellNothing();
    ShowGone();
  });
  m_doc.SetCurrentDialog(this);
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) { FollowRecords(record); });
  const tagTCord* known = Pool().GetAtNU(edited);
  ShowRecord(known != nullptr ? *known : tagTCord());
  ShowGone();
}

CordDialog::~CordDialog() {
  if (m_doc.GetCurrentDialog() == this) m_doc.SetCurrentDialog(nullptr);
}

void CordDialog::hideEvent(QHideEvent* event) {
  if (m_doc.GetCurrentDialog() == this) m_doc.SetCurrentDialog(nullptr);
  DialogFrame::hideEvent(event);
}

void CordDialog::ShowRecord(const tagTCord& record) {
  if (m_edited != 0) {
    m_name->setText(ToQt(record.GetName()));
  } else {
    ProposeName();
  }
  m_kind->setCurrentIndex(static_cast<int>(record.kind));
  m_base = record.parent != 0 ? record.parent : Pool().GetDefaultCord();
  ListParents();
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
  TellNothing();
  const bool edited = std::any_of(record.changes.begin(), record.changes.end(),
                                  [this](const tagTRNotify& change) { return change.itr == m_edited; });
  const tagTCord* now = Pool().GetAtNU(m_edited);
  const iterator base = m_base;
  if (edited && m_doc.GetDatabase().GetDataType(m_edited) != 0) {
    ShowRecord(*now);
  } else {
    ListParents();
    if (m_edited == 0 && m_name->text() == m_proposed) ProposeName();
  }
  if (m_base != base) Tell("IDS_WB_CORD_BASE_OTHER", {m_parent->currentText()});
  ShowGone();
}

const char* CordDialog::Gone() const {
  const Database& database = m_doc.GetDatabase();
  if (m_edited != 0 && database.GetDataType(m_edited) == 0) return "IDS_WB_CORD_GONE";
  return database.GetDataType(m_base) == 0 ? "IDS_WB_CORD_BASE_GONE" : nullptr;
}

void CordDialog::ShowGone() {
  Block(Gone());
  const tagTCord* edited = Pool().GetAtNU(m_edited);
  if (edited != nullptr && m_doc.GetDatabase().GetDataType(m_edited) != 0) {
    SetText(*m_work, "IDS_WB_CORD_OF", {ToQt(edited->GetName())});
  } else if (m_edited == 0) {
    SetText(*m_work, "IDS_WB_CORD_OF_NEW");
  }
}

/// A base that is gone is none; another one was not chosen.
void CordDialog::ListParents() {
  const QSignalBlocker quiet(m_parent);
  m_parent->clear();
  for (const iterator itr : Pool().GetItrList()) {
    if (itr != m_edited) m_parent->addItem(ToQt(Pool().GetAtNU(itr)->GetName()), QVariant::fromValue(itr));
  }
  m_parent->setCurrentIndex(m_parent->findData(QVariant::fromValue(m_base)));
}

void CordDialog::Update(int) {
  ListParents();
}

tagTCord CordDialog::Entered() const {
  tagTCord record;
  record.SetName(FromQt(m_name->text().trimmed()));
  record.kind = static_cast<CordKind>(m_kind->currentIndex());
  record.parent = m_base;
  record.origin = m_origin->Point();
  record.xAxis = m_xAxis->Point();
  record.xyPlane = m_xyPlane->Point();
  return record;
}

bool CordDialog::TellFaultOf(const tagTCord& record) {
  const tagTCord* old = Pool().GetAtNU(m_edited);
  const CString name = record.GetName();
  if (IsBlank(name)) {
    TellFault(*m_name, "IDS_QD_DB_NAME_EMPTY");
  } else if (Pool().Exist(name) != 0 && (old == nullptr || old->GetName() != name)) {
    TellFault(*m_name, "IDS_QD_DB_EXIST_NEW_DATA_NAME", {ToQt(name)});
  } else if (!IsPlaceable(record)) {
    m_xAxis->TellFault("IDS_WB_CORD_AXES");
  } else if (m_edited != 0 && Pool().StandsOn(record.parent, m_edited)) {
    TellFault(*m_parent, "IDS_WB_CORD_CIRCLE");
  } else {
    return false;
  }
  return true;
}

void CordDialog::Apply() {
  if (!CheckFields()) return;
  const tagTCord record = Entered();
  if (Gone() != nullptr || TellFaultOf(record)) return ShowGone();
  const HeardWarnings heard;
  const bool done = m_edited != 0 ? RunAct(&m_doc.GetDatabase(), "IDS_QD_TRANS_Modify_CORD",
                                           [&] { return Pool().Modify(m_edited, record); })
                                  : RunAct(&m_doc.GetDatabase(), "IDS_QD_TRANS_Add_CORD",
                                           [&] { return Pool().Add(record) != 0 ? 1 : 0; });
  if (!done && !heard.Last().isEmpty()) return TellText(heard.Last());
  Tell(done ? "IDS_WB_CORD_STORED" : "IDS_WB_NOT_STORED", {ToQt(record.GetName())});
  if (done && m_edited == 0) ShowRecord(record);
}

}  // namespace qd::workbench
