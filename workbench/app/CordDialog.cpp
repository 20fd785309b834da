#include "workbench/app/CordDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "host/CTransaction.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

CordDialog::CordDialog(WorkDocument& doc, iterator edited, QWidget* parent)
    : QDialog(parent),
      m_doc(doc),
      m_edited(edited),
      m_name(new QLineEdit),
      m_kind(new QComboBox),
      m_parent(new QComboBox),
      m_outcome(new QLabel) {
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
  m_origin = AddTriple(*layout, "IDS_WB_CORD_ORIGIN", {});
  m_xAxis = AddTriple(*layout, "IDS_WB_CORD_X_AXIS", {});
  m_xyPlane = AddTriple(*layout, "IDS_WB_CORD_XY_PLANE", {});
  layout->addRow(m_outcome);
  auto* buttons = new QDialogButtonBox;
  auto* apply = new QPushButton;
  auto* close = new QPushButton;
  SetText(*apply, "IDS_WB_APPLY");
  SetText(*close, "IDS_WB_CLOSE");
  apply->setObjectName("apply");
  buttons->addButton(apply, QDialogButtonBox::ApplyRole);
  buttons->addButton(close, QDialogButtonBox::RejectRole);
  connect(apply, &QPushButton::clicked, this, &CordDialog::Apply);
  connect(close, &QPushButton::clicked, this, &QDialog::close);
  layout->addRow(buttons);
  m_doc.SetCurrentDialog(this);
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
  m_name->setText(m_edited != 0 ? ToQt(record.GetName())
                                : ToQt(Pool().GetNewCopyName(FromQt(Text("IDS_WB_CORD_NAME")))));
  m_kind->setCurrentIndex(static_cast<int>(record.kind));
  ListParents(record.parent);
  for (std::size_t i = 0; i < 3; ++i) {
    m_origin[i]->setValue(record.origin[i]);
    m_xAxis[i]->setValue(record.xAxis[i]);
    m_xyPlane[i]->setValue(record.xyPlane[i]);
  }
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
  record.origin = ValuesOf(m_origin);
  record.xAxis = ValuesOf(m_xAxis);
  record.xyPlane = ValuesOf(m_xyPlane);
  return record;
}

const char* CordDialog::FaultOf(const tagTCord& record) const {
  const tagTCord* old = Pool().GetAtNU(m_edited);
  if (m_edited != 0 && (old == nullptr || m_doc.GetDatabase().GetDataType(m_edited) == 0)) {
    return "IDS_WB_CORD_GONE";
  }
  const CString name = record.GetName();
  if (name.empty()) return "IDS_QD_DB_NAME_EMPTY";
  if (Pool().Exist(name) != 0 && (old == nullptr || old->GetName() != name))
    return "IDS_QD_DB_EXIST_NEW_DATA_NAME";
  if (!IsPlaceable(record)) return "IDS_WB_CORD_AXES";
  if (m_doc.GetDatabase().GetDataType(record.parent) == 0) return "IDS_WB_CORD_GONE";
  return m_edited != 0 && Pool().StandsOn(record.parent, m_edited) ? "IDS_WB_CORD_CIRCLE" : nullptr;
}

void CordDialog::Apply() {
  const tagTCord record = Entered();
  if (const char* fault = FaultOf(record)) return SetText(*m_outcome, fault, {ToQt(record.GetName())});
  CTransaction transaction(&m_doc.GetDatabase());
  const char* title = m_edited != 0 ? "IDS_QD_TRANS_Modify_CORD" : "IDS_QD_TRANS_Add_CORD";
  bool done = transaction.Begin(FromQt(Text(title))) != 0;
  if (done) done = m_edited != 0 ? Pool().Modify(m_edited, record) != 0 : Pool().Add(record) != 0;
  if (done) done = transaction.Commit(1) != 0;
  // Why the document does not take it is told by the document.
  SetText(*m_outcome, done ? "IDS_WB_CORD_STORED" : "IDS_WB_NOT_STORED", {ToQt(record.GetName())});
  if (done) ShowRecord(record);
}

}  // namespace qd::workbench
