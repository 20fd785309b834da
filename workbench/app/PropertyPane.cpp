#include "workbench/app/PropertyPane.h"

#include <QColorDialog>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <map>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

namespace {

/// The whole button, without the shine of its style.
void ShowColour(QPushButton& button, const QColor& colour) {
  button.setStyleSheet(QString("background-color: %1; border: 1px solid palette(mid)").arg(colour.name()));
}

}  // namespace

PropertyPane::PropertyPane(QWidget* parent)
    : QDockWidget(parent),
      m_stack(new QStackedWidget(this)),
      m_empty(new QLabel),
      m_grid(new QTreeWidget),
      m_apply(new QPushButton) {
  setObjectName("properties");
  setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
  m_empty->setAlignment(Qt::AlignCenter);
  m_empty->setEnabled(false);
  m_grid->setColumnCount(2);
  m_grid->setHeaderHidden(true);
  m_grid->setRootIsDecorated(true);
  m_grid->setSelectionMode(QAbstractItemView::NoSelection);
  m_grid->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  m_stack->addWidget(m_empty);
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_grid);
  layout->addWidget(m_apply, 0, Qt::AlignRight);
  m_apply->setObjectName("applyProperties");
  SetText(*m_apply, "IDS_WB_APPLY");
  SetText(*m_empty, "IDS_WB_NO_PROPERTIES");
  connect(m_apply, &QPushButton::clicked, this, [this] {
    if (Page() != nullptr) Page()->ApplyProperty();
    Schedule();
  });
  connect(m_grid, &QTreeWidget::itemClicked, this, &PropertyPane::Calculate);
  connect(m_grid, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* item) {
    if (const auto row = m_rowOf.find(item); row != m_rowOf.end()) row->second->collapsed = false;
    m_folds[PathOf(item)] = false;
  });
  connect(m_grid, &QTreeWidget::itemCollapsed, this,
          [this](QTreeWidgetItem* item) { m_folds[PathOf(item)] = true; });
  m_stack->addWidget(page);
  setWidget(m_stack);
  Refresh();
}

PropertyPane::~PropertyPane() = default;

void PropertyPane::SetPropertySet(std::unique_ptr<IPropertySet> page) {
  // The old page may be in the middle of a change that it makes itself.
  m_retired.push_back(std::exchange(m_page, std::move(page)));
  m_entries.clear();
  if (m_page != nullptr) Watch(*m_page);
  Schedule();
}

void PropertyPane::Refresh() {
  Schedule();
}

/// The rows are the same in every language, in one order.
void PropertyPane::KeepEntries() {
  m_entries.clear();
  std::map<const CBCGPProp*, QString> typed;
  for (const auto& [item, row] : m_rowOf) {
    if (const auto* edit = qobject_cast<QLineEdit*>(m_grid->itemWidget(item, 1))) typed[row] = edit->text();
  }
  for (const auto& row : Page()->GetRows()) m_entries.push_back({row->value, row->colour, typed[row.get()]});
}

void PropertyPane::RestoreEntries() {
  const auto& rows = Page()->GetRows();
  if (m_entries.size() != rows.size()) m_entries.clear();
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    const bool isText = rows[i]->kind == CBCGPProp::Kind::Text && (!rows[i]->readOnly || rows[i]->calculate);
    if (isText) rows[i]->value = m_entries[i].value;
    if (rows[i]->kind == CBCGPProp::Kind::Colour) rows[i]->colour = m_entries[i].colour;
  }
}

void PropertyPane::ChangeLanguage() {
  if (m_page != nullptr && !m_waiting) KeepEntries();
  Schedule();
}

void PropertyPane::Schedule() {
  if (std::exchange(m_waiting, true)) return;
  QTimer::singleShot(0, this, &PropertyPane::ShowNow);
}

void PropertyPane::ShowNow() {
  if (!std::exchange(m_waiting, false)) return;
  const int scrolled = m_grid->verticalScrollBar()->value();
  // Editors lose the focus while they go, and their rows are about to go too.
  for (QLineEdit* edit : m_grid->findChildren<QLineEdit*>()) edit->blockSignals(true);
  m_grid->clear();
  m_rowOf.clear();
  m_retired.clear();
  m_documentPage = m_page == nullptr && m_makeDocumentPage ? m_makeDocumentPage() : nullptr;
  if (m_documentPage != nullptr) Watch(*m_documentPage);
  m_stack->setCurrentIndex(Page() == nullptr ? 0 : 1);
  if (Page() == nullptr) {
    if (m_emptyKey) SetText(*m_empty, m_emptyKey());
    return;
  }
  Page()->ShowProperty();
  m_grid->verticalScrollBar()->setValue(scrolled);
  m_apply->setVisible(Page()->HasApplyButton());  // said after the rows were laid out
}

void PropertyPane::ShowRows() {
  m_grid->clear();
  m_rowOf.clear();
  RestoreEntries();
  std::map<const CBCGPProp*, QTreeWidgetItem*> items;
  for (const auto& row : Page()->GetRows()) {
    QTreeWidgetItem* above = row->parent != nullptr ? items[row->parent] : m_grid->invisibleRootItem();
    auto* item = new QTreeWidgetItem(above, {ToQt(row->name)});  // owned by the grid
    items[row.get()] = item;
    m_rowOf[item] = row.get();
    item->setToolTip(0, ToQt(row->description));
    if (row->kind == CBCGPProp::Kind::Title) {
      QFont bold = m_grid->font();
      bold.setBold(true);
      item->setFont(0, bold);
      item->setFirstColumnSpanned(true);
    } else if (row->readOnly) {
      item->setText(1, ToQt(row->value));
    } else {
      m_grid->setItemWidget(item, 1, EditorFor(*row));
    }
  }
  const std::map<QString, bool> folds = m_folds;  // what is set here was chosen by nobody
  for (const auto& [row, item] : items) {
    const auto fold = folds.find(PathOf(item));
    item->setExpanded(fold != folds.end() ? !fold->second : !row->collapsed);
  }
  m_folds = folds;
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    auto* edit = qobject_cast<QLineEdit*>(m_grid->itemWidget(items[Page()->GetRows()[i].get()], 1));
    if (edit != nullptr) edit->setText(m_entries[i].typed);
  }
  m_entries.clear();
}

/// The titles down to a row, by which it is found again on another page of the kind.
QString PropertyPane::PathOf(const QTreeWidgetItem* item) {
  QString path;
  for (; item != nullptr; item = item->parent()) path = item->text(0) + '\n' + path;
  return path;
}

void PropertyPane::Calculate(QTreeWidgetItem* item) {
  const auto row = m_rowOf.find(item);
  if (row == m_rowOf.end() || !row->second->calculate) return;
  Page()->CalProp(row->second);
  for (const auto& [shown, source] : m_rowOf) {
    if (source->calculate) shown->setText(1, ToQt(source->value));
  }
}

/// Rows die with the page, editors with the grid, and both go together; a change is told after the editor is done.
QWidget* PropertyPane::EditorFor(CBCGPProp& row) {
  const IPropertySet* page = Page();
  switch (row.kind) {
    case CBCGPProp::Kind::Options: {
      auto* box = new QComboBox;
      for (const CString& option : row.options) box->addItem(ToQt(option));
      box->setCurrentText(ToQt(row.value));
      connect(box, &QComboBox::activated, this, [this, page, &row, box] {
        if (page != Page()) return;
        row.value = FromQt(box->currentText());
        Page()->OnSelChangeComboBox(&row);
        if (page == Page()) Tell(row);
      });
      return box;
    }
    case CBCGPProp::Kind::Colour: {
      auto* button = new QPushButton;
      ShowColour(*button, ToQt(row.colour));
      button->setAccessibleName(ToQt(row.name));
      connect(button, &QPushButton::clicked, this, [this, page, &row, button] {
        const QColor chosen = QColorDialog::getColor(ToQt(row.colour), this, Text("IDS_WB_PICK_COLOUR"));
        if (!chosen.isValid() || page != Page()) return;  // the page has changed meanwhile
        row.colour = FromQt(chosen);
        ShowColour(*button, chosen);
        Tell(row);
      });
      return button;
    }
    default: {
      auto* edit = new QLineEdit(ToQt(row.value));
      edit->setFrame(false);
      connect(edit, &QLineEdit::editingFinished, this, [this, page, &row, edit] {
        // An editor of a page that is not shown any more goes with what was typed into it.
        if (page != Page() || FromQt(edit->text()) == row.value) return;
        row.value = FromQt(edit->text());
        Tell(row);
      });
      return edit;
    }
  }
}

void PropertyPane::Tell(CBCGPProp& row) {
  IPropertySet* page = Page();
  page->OnPropertyChanged(&row, row.data);
  if (page != Page()) return;  // what it wrote has brought another page
  // What is written at once is shown anew, for the page may have refused it; with an apply button it waits.
  if (!page->HasApplyButton()) Schedule();
}

QStringList PropertyPane::Lines() const {
  QStringList lines;
  if (Page() == nullptr) return lines;
  for (const auto& row : Page()->GetRows()) lines << ToQt(row->name) + ": " + ToQt(row->value);
  return lines;
}

}  // namespace qd::workbench
