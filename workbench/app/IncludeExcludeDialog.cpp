#include "workbench/app/IncludeExcludeDialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include "host/CTransaction.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

IncludeExcludeDialog::IncludeExcludeDialog(WorkDocument& doc, iterator gset, QWidget* parent)
    : QDialog(parent),
      m_doc(doc),
      m_gset(gset),
      m_outside(new QListWidget),
      m_inside(new QListWidget),
      m_include(new QPushButton),
      m_exclude(new QPushButton) {
  SetTitle(*this, "IDS_QD_WRT_INCLUDE_EXCLUDE");
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("sets");
  auto* layout = new QGridLayout(this);
  layout->addWidget(NewLabel("IDS_WB_NOT_IN_SET"), 0, 0);
  layout->addWidget(NewLabel("IDS_WB_IN_SET"), 0, 2);
  for (QListWidget* list : {m_outside, m_inside}) list->setSelectionMode(QAbstractItemView::ExtendedSelection);
  layout->addWidget(m_outside, 1, 0, 4, 1);
  layout->addWidget(m_inside, 1, 2, 4, 1);
  auto* close = new QPushButton;
  SetText(*m_include, "IDS_WB_INCLUDE");
  SetText(*m_exclude, "IDS_WB_EXCLUDE");
  SetText(*close, "IDS_WB_CLOSE");
  m_include->setObjectName("include");
  m_exclude->setObjectName("exclude");
  layout->addWidget(m_include, 2, 1);
  layout->addWidget(m_exclude, 3, 1);
  layout->addWidget(close, 5, 2);
  connect(m_include, &QPushButton::clicked, this, [this] { Move(*m_outside, m_gset); });
  connect(m_exclude, &QPushButton::clicked, this, [this] { Move(*m_inside, OtherSet()); });
  connect(close, &QPushButton::clicked, this, &QDialog::close);
  for (const iterator part : doc.GetDatabase().GetGeomPool().GetItrList()) Place(part);
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) { FollowRecords(record); });
  RefreshButtons();
}

/// Brings the entry of a part to the list and the name that it has now; none for a part that is gone.
void IncludeExcludeDialog::Place(iterator part) {
  QListWidgetItem*& item = m_items[part];
  if (m_doc.GetDatabase().GetDataType(part) == 0) {
    delete item;
    m_items.erase(part);
    return;
  }
  const tagTGeom& record = *m_doc.GetDatabase().GetGeomPool().GetAtNU(part);
  QListWidget* list = record.gset == m_gset ? m_inside : m_outside;
  if (item == nullptr || item->listWidget() != list) {
    delete item;
    item = new QListWidgetItem(list);
    item->setData(Qt::UserRole, QVariant::fromValue(part));
  }
  item->setText(ToQt(record.name));
}

void IncludeExcludeDialog::FollowRecords(const CQDUpdateRecord& record) {
  for (const tagTRNotify& change : record.changes) {
    if (change.dataType == kDataGeom) Place(change.itr);
  }
  if (Concerns(record, kDataGset)) RefreshButtons();
}

void IncludeExcludeDialog::RefreshButtons() {
  const bool stands = m_doc.GetDatabase().GetDataType(m_gset) == kDataGset;
  m_include->setEnabled(stands);
  m_exclude->setEnabled(stands && OtherSet() != 0);
}

iterator IncludeExcludeDialog::OtherSet() const {
  const GsetPool& sets = m_doc.GetDatabase().GetGsetPool();
  if (const iterator current = sets.GetCurrentSet(); current != m_gset) return current;
  for (const iterator set : sets.GetItrList()) {
    if (set != m_gset) return set;
  }
  return 0;
}

void IncludeExcludeDialog::Move(const QListWidget& from, iterator to) {
  Database& database = m_doc.GetDatabase();
  std::vector<iterator> parts;
  for (const QListWidgetItem* item : from.selectedItems()) {
    const auto part = item->data(Qt::UserRole).value<iterator>();
    if (database.GetDataType(part) == kDataGeom) parts.push_back(part);
  }
  if (!parts.empty() && database.GetDataType(to) == kDataGset) {
    CTransaction transaction(&database);
    const bool done = transaction.Begin(FromQt(Text("IDS_QD_TRANS_Modify_Geometry"))) != 0 &&
                      database.GetGeomPool().Private_ApplyGset(parts, to) != 0;
    if (done) transaction.Commit(1);
  }
}

}  // namespace qd::workbench
