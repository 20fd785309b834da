#include "workbench/app/IncludeExcludeDialog.h"

#include <QGridLayout>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>

#include "host/Act.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

IncludeExcludeDialog::IncludeExcludeDialog(WorkDocument& doc, iterator gset, QWidget* parent)
    : DialogFrame("IDS_QD_WRT_INCLUDE_EXCLUDE", "sets", parent),
      m_doc(doc),
      m_gset(gset),
      m_outside(new QListWidget),
      m_inside(new QListWidget),
      m_work(AddWorkLine("set")) {
  auto* lists = new QWidget;
  auto* layout = new QGridLayout(lists);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(NewFieldLabel("IDS_WB_NOT_IN_SET"), 0, 0);
  layout->addWidget(NewFieldLabel("IDS_WB_IN_SET"), 0, 1);
  layout->addWidget(m_outside, 1, 0);
  layout->addWidget(m_inside, 1, 1);
  lists->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  AddWide(lists);
  m_include = AddAct("IDS_WB_INCLUDE", "include", [this] { Move(*m_outside, m_gset); });
  m_exclude = AddAct("IDS_WB_EXCLUDE", "exclude", [this] { Move(*m_inside, OtherSet()); });
  Finish();
  // What is selected in one list says which way it goes, for the button and for Enter.
  for (QListWidget* list : {m_outside, m_inside}) {
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(list, &QListWidget::itemSelectionChanged, this, [this, list] {
      if (list->selectedItems().isEmpty()) return RefreshButtons();
      (list == m_inside ? m_outside : m_inside)->clearSelection();
      SetFirstAct(list == m_inside ? *m_exclude : *m_include);
      RefreshButtons();
    });
  }
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
  {
    // Each selected entry that goes would be told, and each time all of them be looked at.
    const QSignalBlocker quietOutside(m_outside);
    const QSignalBlocker quietInside(m_inside);
    for (const tagTRNotify& change : record.changes) {
      if (change.dataType == kDataGeom) Place(change.itr);
    }
  }
  RefreshButtons();
}

void IncludeExcludeDialog::RefreshButtons() {
  const bool stands = m_doc.GetDatabase().GetDataType(m_gset) == kDataGset;
  const bool out = !m_outside->selectedItems().isEmpty();
  const bool in = !m_inside->selectedItems().isEmpty();
  const char* noOther = in && OtherSet() == 0 ? "IDS_WB_LAST_SET" : nullptr;
  Block(!stands              ? "IDS_WB_GSET_GONE"
        : noOther != nullptr ? noOther
        : !out && !in        ? "IDS_WB_CHOOSE_PARTS"
                             : nullptr);
  if (stands) {
    const CString& name = m_doc.GetDatabase().GetGsetPool().GetAtNU(m_gset)->name;
    SetText(*m_work, "IDS_WB_SET_OF", {ToQt(name), QLocale().toString(m_inside->count())});
  }
  m_include->setEnabled(stands && out);
  m_exclude->setEnabled(stands && in && noOther == nullptr);
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
  if (parts.empty() || database.GetDataType(to) != kDataGset) return;
  const HeardWarnings heard;
  const bool done = RunAct(&database, "IDS_QD_TRANS_Modify_Geometry",
                           [&] { return database.GetGeomPool().Private_ApplyGset(parts, to); }) != 0;
  if (!done && !heard.Last().isEmpty()) TellText(heard.Last());
}

}  // namespace qd::workbench
