#include "workbench/app/CheckDialog.h"

#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHideEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>
#include <memory>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"
#include "workbench/model/CheckActs.h"
#include "workbench/session/PythonText.h"
#include "workbench/session/ScriptWords.h"

namespace qd::workbench {

namespace {

/// In the order of the checks: what they are called, and how it is said what they have found.
struct CheckTexts {
  const char* name;
  const char* found;
};
constexpr CheckTexts kTexts[] = {{"IDS_WB_CHECK_QUALITY", "IDS_WB_CHECK_FOUND_ELEMENTS"},
                                 {"IDS_WB_CHECK_FREE_EDGES", "IDS_WB_CHECK_FOUND_EDGES"},
                                 {"IDS_WB_CHECK_DUPLICATE_NODES", "IDS_WB_CHECK_FOUND_NODES"},
                                 {"IDS_WB_CHECK_UNCONNECTED", "IDS_WB_CHECK_FOUND_NODES"},
                                 {"IDS_WB_CHECK_TURNED", "IDS_WB_CHECK_FOUND_ELEMENTS"},
                                 {"IDS_WB_CHECK_VOLUMES", "IDS_WB_CHECK_FOUND_ELEMENTS"},
                                 {"IDS_WB_CHECK_DUPLICATES", "IDS_WB_CHECK_FOUND_ELEMENTS"}};

QString Counted(std::uint64_t count) {
  return QLocale().toString(static_cast<qulonglong>(count));
}

QString Measured(const QualityRule& rule, double value) {
  constexpr int kDigits = 4;
  const QString text = std::isfinite(value) ? QLocale().toString(value, 'g', kDigits) : QString(QChar(0x221E));
  return rule.degrees ? text + QChar(0xB0) : text;
}

std::string LineOfCheck(const CheckRequest& request, const std::vector<iterator>& sets) {
  std::string line = std::string("check(\"") + kCheckNames[static_cast<std::size_t>(request.check)] + "\", " +
                     ScriptRecords(sets);
  if (request.check == MeshCheck::Quality) {
    line += std::string(", measure=\"") + kQualityNames[static_cast<std::size_t>(request.measure)] +
            "\", limit=" + PythonNumber(request.limit);
  }
  if (request.check == MeshCheck::DuplicateNodes) line += ", tolerance=" + PythonNumber(request.tolerance);
  return line + ")";
}

}  // namespace

CheckDialog::CheckDialog(WorkDocument& doc, MeshCheck check, QWidget* parent)
    : QDialog(parent),
      m_doc(doc),
      m_worked(doc, {.type = kDataMset, .elseAll = true}, [this] { LookLater(); }),
      m_layout(new QFormLayout(this)) {
  constexpr int kSoon = 150;  // milliseconds
  SetTitle(*this, "IDS_WB_CHECK_TITLE");
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("check");
  m_later.setSingleShot(true);
  m_later.setInterval(kSoon);
  connect(&m_later, &QTimer::timeout, this, &CheckDialog::Look);
  connect(&m_work, &WorkBeside::Progress, this, [this](int thousandths) { m_progress->setValue(thousandths); });
  AddFields(*m_layout, check);
  AddButtons(*m_layout);
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord& record) {
    if (Concerns(record, kDataMset)) LookLater();
  });
  ShowFields();
}

void CheckDialog::AddFields(QFormLayout& layout, MeshCheck check) {
  m_named = new ToldLabel;
  m_named->setObjectName("sets");
  layout.addRow(m_named);
  m_check = new QComboBox;
  m_check->setObjectName("what");
  for (const CheckTexts& texts : kTexts) AddChoice(*m_check, texts.name);
  m_check->setCurrentIndex(static_cast<int>(check));
  layout.addRow(NewLabel("IDS_WB_CHECK_WHAT"), m_check);
  m_measure = new QComboBox;
  m_measure->setObjectName("measure");
  for (const QualityRule& rule : QualityRules()) AddChoice(*m_measure, rule.key);
  layout.addRow(NewLabel("IDS_WB_CHECK_MEASURE"), m_measure);
  m_limit = AddNumbers(layout, "IDS_WB_CHECK_LIMIT", {QualityRules()[0].limit}, {});
  m_limit->setObjectName("limit");
  m_angle = AddNumbers(layout, "IDS_WB_CHECK_LIMIT", {0}, {Quantity::Angle, {}});
  m_angle->setObjectName("angle");
  constexpr double kUsualTolerance = 1e-3;
  m_tolerance = AddNumbers(layout, "IDS_WB_CHECK_TOLERANCE", {kUsualTolerance},
                           {Quantity::Length, NumberLimits::NotNegative()});
  m_tolerance->setObjectName("tolerance");
  connect(m_check, &QComboBox::currentIndexChanged, this, &CheckDialog::ShowFields);
  connect(m_measure, &QComboBox::currentIndexChanged, this, [this] {
    (Rule().degrees ? m_angle : m_limit)->Propose(Rule().limit);
    ShowFields();
  });
  for (NumberRow* row : {m_limit, m_angle, m_tolerance}) {
    for (QLineEdit* field : row->findChildren<QLineEdit*>()) {
      connect(field, &QLineEdit::textChanged, this, &CheckDialog::LookLater);
    }
  }
  m_progress = new QProgressBar;
  m_progress->setRange(0, 1000);
  m_progress->setTextVisible(false);
  layout.addRow(m_progress);
  m_outcome = new ToldLabel;
  m_outcome->setObjectName("outcome");
  layout.addRow(m_outcome);
  m_range = new ToldLabel;
  m_range->setObjectName("range");
  layout.addRow(m_range);
}

void CheckDialog::AddButtons(QFormLayout& layout) {
  auto* row = new QHBoxLayout;
  row->addStretch();
  const auto add = [row](const char* key, const char* name) {
    auto* button = new QPushButton;
    SetText(*button, key);
    button->setObjectName(name);
    button->setAutoDefault(false);
    row->addWidget(button);
    return button;
  };
  m_stop = add("IDS_WB_CANCEL", "stop");
  connect(m_stop, &QPushButton::clicked, this, [this] {
    m_later.stop();
    m_work.Stop();
    ShowFound();
  });
  m_apply = add("IDS_WB_CHECK_MAKE", "apply");
  connect(m_apply, &QPushButton::clicked, this, &CheckDialog::Apply);
  connect(add("IDS_WB_CLOSE", "close"), &QPushButton::clicked, this, &QDialog::close);
  layout.addRow(row);
}

void CheckDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() != QEvent::LanguageChange) return;  // numbers are written otherwise
  ShowWork();
  ShowFound();
}

/// A closed dialog goes a little later, and looks for nothing any more.
void CheckDialog::hideEvent(QHideEvent* event) {
  if (event->spontaneous()) return QDialog::hideEvent(event);  // minimised: it goes on
  m_later.stop();
  m_work.Stop();
  QDialog::hideEvent(event);
}

MeshCheck CheckDialog::Chosen() const {
  return static_cast<MeshCheck>(std::max(m_check->currentIndex(), 0));
}

const QualityRule& CheckDialog::Rule() const {
  return QualityRules()[static_cast<std::size_t>(std::max(m_measure->currentIndex(), 0))];
}

void CheckDialog::ShowFields() {
  const bool quality = Chosen() == MeshCheck::Quality;
  const auto show = [this](QWidget* field, bool shown) {
    field->setVisible(shown);
    m_layout->labelForField(field)->setVisible(shown);
  };
  show(m_measure, quality);
  show(m_limit, quality && !Rule().degrees);
  show(m_angle, quality && Rule().degrees);
  show(m_tolerance, Chosen() == MeshCheck::DuplicateNodes);
  adjustSize();
  LookLater();
}

// ---- looking --------------------------------------------------------------------------------------------

void CheckDialog::LookLater() {
  m_work.Stop();
  m_found = {};
  m_later.start();
  ShowWork();
  ShowFound();
}

void CheckDialog::Look() {
  const MsetPool& pool = m_doc.GetDatabase().GetMsetPool();
  const NumberRow* limit = Rule().degrees ? m_angle : m_limit;
  m_request = {Chosen(), Rule().measure, limit->Value(), m_tolerance->Value()};
  m_sets = m_worked.Records();
  m_meshes.clear();
  for (const iterator set : m_sets) m_meshes.push_back(pool.GetAtNU(set)->mesh);
  std::vector<MeshPtr> others;
  for (const iterator set : pool.GetItrList()) {
    if (m_request.check == MeshCheck::UnconnectedNodes && !m_worked.Contains(set)) {
      others.push_back(pool.GetAtNU(set)->mesh);
    }
  }
  m_progress->setValue(0);
  m_work.Start([this, meshes = m_meshes, others = std::move(others),
                request = m_request](const ProgressCall& progress) -> WorkBeside::Finish {
    auto found = std::make_shared<CheckResult>(CheckMeshes(meshes, others, request, progress));
    return [this, found] { Take(std::move(*found)); };
  });
  ShowFound();
}

void CheckDialog::Take(CheckResult found) {
  m_found = std::move(found);
  ShowFound();
}

void CheckDialog::ShowWork() {
  const char* some = m_worked.IsAll() ? "IDS_WB_ALL_SHOWN" : "IDS_WB_MESH_SETS";
  SetText(*m_named, m_worked.Count() != 0 ? some : "IDS_WB_NO_MESH_SETS",
          {Counted(m_worked.Count()), ToQt(m_worked.Names())});
}

void CheckDialog::ShowFound() {
  const bool running = m_later.isActive() || m_work.IsRunning();
  m_progress->setVisible(running);
  m_stop->setEnabled(running);
  m_apply->setEnabled(m_found.done && m_found.found != 0);
  const bool measured = m_found.done && m_request.check == MeshCheck::Quality && m_found.looked != 0;
  m_range->setVisible(measured);
  if (m_worked.Count() == 0) return ClearText(*m_outcome);
  if (!m_found.done) return SetText(*m_outcome, running ? "IDS_WB_CHECK_RUNNING" : "IDS_WB_CHECK_STOPPED");
  SetText(*m_outcome, kTexts[static_cast<std::size_t>(m_request.check)].found,
          {Counted(m_found.found), Counted(m_found.looked)});
  const QualityRule& rule = RuleOf(m_request.measure);
  if (measured) {
    SetText(*m_range, "IDS_WB_CHECK_RANGE", {Measured(rule, m_found.worst), Measured(rule, m_found.mean)});
  }
}

// ---- what was found -------------------------------------------------------------------------------------

QString CheckDialog::Name() const {
  if (m_request.check != MeshCheck::Quality) return Text(kTexts[static_cast<std::size_t>(m_request.check)].name);
  const QualityRule& rule = RuleOf(m_request.measure);
  return Text(rule.key) + (rule.lowIsBad ? " < " : " > ") + Measured(rule, m_request.limit);
}

void CheckDialog::Apply() {
  if (!m_apply->isEnabled() || !CheckNumbers(*this)) return;
  const QString name = Name();
  std::vector<iterator> made;
  const CheckResult found = m_found;  // the act changes the sets that are followed
  const MeantLine line(m_doc,
                       "doc." + LineOfCheck(m_request, m_sets) + ".make_sets(" + PythonText(FromQt(name)) + ")");
  const ActResult result = PutFound(m_doc.GetDatabase(), m_sets, m_meshes, found, FromQt(name),
                                    FromQt(windowTitle() + ": " + name), made);
  if (!result.IsDone()) return emit Said({Text(result.errorKey), Severity::Failure});
  emit Said({Text("IDS_WB_CHECK_MADE", {name, Counted(result.number)}), Severity::Note, {}, made});
}

}  // namespace qd::workbench
