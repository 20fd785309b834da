#include "workbench/app/ContactDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QHideEvent>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <memory>
#include <unordered_set>
#include <utility>

#include "host/CQDUnitCtrl.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"
#include "workbench/session/WorkedOn.h"
#include "workbench/text/Units.h"

namespace qd::workbench {

namespace {

enum Column { kOne, kOneId, kOther, kOtherId, kDistance, kArea, kFacets, kColumns };
constexpr int kPairRole = Qt::UserRole;

/// A row whose numbers stand in the order of numbers.
class Row final : public QTreeWidgetItem {
 public:
  using QTreeWidgetItem::QTreeWidgetItem;
  bool operator<(const QTreeWidgetItem& other) const override {
    const int column = treeWidget()->sortColumn();
    if (column == kOne || column == kOther)
      return QString::localeAwareCompare(text(column), other.text(column)) < 0;
    return data(column, kPairRole).toDouble() < other.data(column, kPairRole).toDouble();
  }
};

QString Number(double value) {
  constexpr int kDigits = 5;
  return QLocale().toString(value, 'g', kDigits);
}

}  // namespace

ContactDialog::ContactDialog(WorkDocument& doc, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_worked(doc, {.type = kDataGeom, .elseAll = true}, [this] { ShowWork(); }) {
  constexpr QSize kSize{680, 420};
  SetTitle(*this, "IDS_WB_CONTACTS");
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("contacts");
  auto* layout = new QVBoxLayout(this);
  auto* form = new QFormLayout;
  m_named = new ToldLabel;
  m_named->setObjectName("parts");
  form->addRow(m_named);
  constexpr double kUsual = 0.01;
  m_tolerance =
      AddNumbers(*form, "IDS_WB_CHECK_TOLERANCE", {kUsual}, {Quantity::Length, NumberLimits::NotNegative()});
  layout->addLayout(form);
  m_list = new QTreeWidget;
  m_list->setObjectName("pairs");
  m_list->setRootIsDecorated(false);
  m_list->setUniformRowHeights(true);
  m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
  m_list->setColumnCount(kColumns);
  m_list->setSortingEnabled(true);
  m_list->sortByColumn(kOne, Qt::AscendingOrder);
  connect(m_list, &QTreeWidget::itemSelectionChanged, this, &ContactDialog::SelectChosen);
  layout->addWidget(m_list, 1);
  m_progress = new QProgressBar;
  m_progress->setRange(0, 1000);
  m_progress->setTextVisible(false);
  layout->addWidget(m_progress);
  m_outcome = new ToldLabel;
  m_outcome->setObjectName("outcome");
  layout->addWidget(m_outcome);
  AddButtons(*layout);
  connect(&m_work, &WorkBeside::Progress, this, [this](int thousandths) { m_progress->setValue(thousandths); });
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) {
    if (m_found.done && Concerns(record, kDataGeom)) List();  // names may be others, parts gone
  });
  resize(kSize);
  List();
  ShowWork();
}

void ContactDialog::AddButtons(QVBoxLayout& layout) {
  auto* row = new QHBoxLayout;
  const auto add = [&](const char* key, const char* name, auto&& call) {
    auto* button = new QPushButton;
    SetText(*button, key);
    button->setObjectName(name);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, std::forward<decltype(call)>(call));
    row->addWidget(button);
    return button;
  };
  m_find = add("IDS_WB_CONTACTS_FIND", "find", [this] { Find(); });
  m_stop = add("IDS_WB_CANCEL", "stop", [this] {
    m_work.Stop();
    ShowWork();
    SetText(*m_outcome, "IDS_WB_CHECK_STOPPED");
  });
  row->addStretch();
  m_onChosen.push_back(add("IDS_WB_CONTACTS_SHOW", "show", [this] { ShowChosen(); }));
  m_onChosen.push_back(add("IDS_WB_CONTACTS_ZOOM", "zoom", [this] { m_doc.GetLooking().FitSelection(); }));
  add("IDS_WB_CONTACTS_COPY", "copy", [this] { Copy(); });
  add("IDS_WB_CLOSE", "close", [this] { close(); });
  layout.addLayout(row);
}

void ContactDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() != QEvent::LanguageChange) return;  // numbers and units are written otherwise
  List();
  ShowWork();
}

/// A closed dialog goes a little later, and looks for nothing any more.
void ContactDialog::hideEvent(QHideEvent* event) {
  if (event->spontaneous()) return QDialog::hideEvent(event);  // minimised: it goes on
  m_work.Stop();
  QDialog::hideEvent(event);
}

void ContactDialog::ShowWork() {
  const bool own = !m_chosen.empty() && m_doc.GetSelection().records == m_chosen;
  if (!own) {
    m_chosen.clear();
    m_wanted = m_worked.Records();
    ShowWanted();
  }
  m_find->setEnabled(!m_wanted.empty() && !m_work.IsRunning());
  m_stop->setEnabled(m_work.IsRunning());
  m_progress->setVisible(m_work.IsRunning());
}

void ContactDialog::ShowWanted() {
  const char* some = m_worked.IsAll() ? "IDS_WB_ALL_SHOWN" : "IDS_WB_PARTS";
  SetText(*m_named, m_worked.Count() == 0 ? "IDS_WB_NO_PARTS" : some,
          {QLocale().toString(static_cast<qulonglong>(m_worked.Count())), ToQt(m_worked.Names())});
}

// ---- finding --------------------------------------------------------------------------------------------

void ContactDialog::Find() {
  if (!m_find->isEnabled() || !CheckNumbers(*this)) return;
  const GeomPool& pool = m_doc.GetDatabase().GetGeomPool();
  m_parts.clear();
  m_shapes.clear();
  m_found = {};
  std::vector<ShapePtr> shapes;
  std::vector<bool> wanted;
  const std::unordered_set<iterator> chosen(m_wanted.begin(), m_wanted.end());
  for (const iterator part : pool.GetItrList()) {
    if (!IsTaken(m_doc, kDataGeom, part, Reach::Shown)) continue;
    m_parts.push_back(part);
    m_shapes.push_back(pool.GetAtNU(part)->shape);
    shapes.push_back(pool.GetAtNU(part)->shape);
    wanted.push_back(chosen.contains(part));
  }
  m_progress->setValue(0);
  m_work.Start([this, shapes = std::move(shapes), wanted = std::move(wanted),
                tolerance = m_tolerance->Value()](const ProgressCall& progress) -> WorkBeside::Finish {
    const auto found = std::make_shared<const PartContacts>(FindContacts(shapes, wanted, tolerance, progress));
    return [this, found] { Take(*found); };
  });
  List();
  SetText(*m_outcome, "IDS_WB_CHECK_RUNNING");
  ShowWork();
}

void ContactDialog::Take(const PartContacts& found) {
  m_found = found;
  List();
  ShowWork();
}

void ContactDialog::List() {
  constexpr std::size_t kMostListed = 10'000;  // a list longer than that helps nobody
  const UnitSystem& units = FindUnitSystem(CQDUnitCtrl::GetUnitSystemLength());
  const auto with = [&units](const char* key, Quantity quantity) {
    return Text(key) + " [" + QString::fromStdWString(UnitOf(quantity, units)) + "]";
  };
  m_list->setHeaderLabels({Text("IDS_WB_CONTACTS_PART"), Text("IDS_QD_WRT_ID"), Text("IDS_WB_CONTACTS_PART"),
                           Text("IDS_QD_WRT_ID"), with("IDS_WB_CONTACTS_DISTANCE", Quantity::Length),
                           with("IDS_WB_CONTACTS_AREA", Quantity::Area), Text("IDS_WB_CONTACTS_FACETS")});
  const GeomPool& pool = m_doc.GetDatabase().GetGeomPool();
  const QSignalBlocker quiet(m_list);
  m_list->clear();
  std::size_t count = 0;
  QList<QTreeWidgetItem*> rows;
  for (std::uint32_t i = 0; i < m_found.pairs.size(); ++i) {
    const PartContact& contact = m_found.pairs[i];
    const tagTGeom* one = pool.GetAtNU(m_parts[contact.one]);
    const tagTGeom* other = pool.GetAtNU(m_parts[contact.other]);
    const bool stands = one != nullptr && other != nullptr && one->shape == m_shapes[contact.one] &&
                        other->shape == m_shapes[contact.other];
    if (!stands || count++ >= kMostListed) continue;
    auto* row = new Row;
    const auto number = [row](Column column, double value) {
      row->setText(column, Number(value));
      row->setData(column, kPairRole, value);
      row->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    };
    row->setText(kOne, ToQt(one->name));
    row->setText(kOther, ToQt(other->name));
    row->setData(kOne, kPairRole, i);
    number(kOneId, one->id);
    number(kOtherId, other->id);
    number(kDistance, contact.distance);
    number(kArea, contact.area);
    number(kFacets, static_cast<double>(contact.facets));
    rows.push_back(row);
  }
  m_list->addTopLevelItems(rows);
  for (int column = 0; column < kColumns; ++column) m_list->resizeColumnToContents(column);
  for (QPushButton* button : m_onChosen) button->setEnabled(false);
  if (!m_found.done) return ClearText(*m_outcome);
  const QString counted = QLocale().toString(static_cast<qulonglong>(count));
  SetText(*m_outcome, m_found.complete ? "IDS_WB_CONTACTS_FOUND" : "IDS_WB_CONTACTS_SOME", {counted});
}

// ---- pairs ----------------------------------------------------------------------------------------------

std::vector<iterator> ContactDialog::Chosen() const {
  std::vector<iterator> parts;
  for (const QTreeWidgetItem* row : m_list->selectedItems()) {
    const PartContact& contact = m_found.pairs[row->data(kOne, kPairRole).toUInt()];
    for (const iterator part : {m_parts[contact.one], m_parts[contact.other]}) {
      if (m_doc.GetDatabase().GetDataType(part) == kDataGeom) parts.push_back(part);
    }
  }
  std::sort(parts.begin(), parts.end());
  parts.erase(std::unique(parts.begin(), parts.end()), parts.end());
  return parts;
}

void ContactDialog::SelectChosen() {
  const std::vector<iterator> parts = Chosen();
  for (QPushButton* button : m_onChosen) button->setEnabled(!parts.empty());
  if (parts.empty()) return;
  m_chosen = parts;
  m_doc.Select({parts});
}

/// Nothing else is shown then; leaving the isolation brings everything back.
void ContactDialog::ShowChosen() {
  const std::vector<iterator> chosen = Chosen();
  const Database& database = m_doc.GetDatabase();
  Display& display = m_doc.GetDisplay();
  m_doc.OnShowOnly();
  display.Parts().BeginShowHide();
  for (const iterator part : database.GetGeomPool().GetItrList()) {
    const bool shown = std::binary_search(chosen.begin(), chosen.end(), part);
    display.Parts().SetShowHide(database.GetGeomPool().GetAtNU(part)->cadItem, shown ? 1 : 0);
  }
  display.Parts().EndShowHide();
  display.Meshes().ShowHideMset(database.GetMsetPool().GetItrList(), 0);
}

void ContactDialog::Copy() const {
  QString text;
  const auto add = [&text](const QTreeWidgetItem& row) {
    for (int column = 0; column < kColumns; ++column)
      text += row.text(column) + (column + 1 < kColumns ? "\t" : "\n");
  };
  add(*m_list->headerItem());
  for (int i = 0; i < m_list->topLevelItemCount(); ++i) add(*m_list->topLevelItem(i));
  QApplication::clipboard()->setText(text);
}

}  // namespace qd::workbench
