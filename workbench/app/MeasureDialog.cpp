#include "workbench/app/MeasureDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QHideEvent>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <memory>
#include <utility>
#include <vector>

#include "host/CQDUnitCtrl.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"
#include "workbench/session/MeasureRecords.h"
#include "workbench/session/PickedText.h"
#include "workbench/text/Units.h"

namespace qd::workbench {

struct MeasureDialog::Result {
  Measures measures;
  std::optional<NearPoints> distance;  // of two parts
};

/// The list, as it is filled anew in the units and the language of now.
struct MeasureDialog::Rows {
  explicit Rows(QTreeWidget& to) : list(to) { list.clear(); }
  static QString Number(double value) { return QLocale().toString(value, 'g', 7); }
  static QString Point(const Point3& at) { return Number(at.x) + "; " + Number(at.y) + "; " + Number(at.z); }
  QString Length(double value) const { return Number(value) + " " + length; }
  static QString Angle(double value) { return Number(value) + QChar(0xB0); }

  void Add(const char* key, const QString& value, const QString& unit = {}, const QStringList& arguments = {}) {
    list.addTopLevelItem(new QTreeWidgetItem({Text(key, arguments), unit.isEmpty() ? value : value + " " + unit}));
  }
  void AddPoint(const char* key, const Point3& at) { Add(key, Point(at), length); }
  void AddLength(const char* key, double value) { Add(key, Number(value), length); }
  void AddArea(double value) { Add("IDS_WB_MEASURE_AREA", Number(value), length + QChar(0xB2)); }
  void AddVolume(double value) { Add("IDS_WB_MEASURE_VOLUME", Number(value), length + QChar(0xB3)); }
  void AddDistance(const NearPoints& of) {
    AddLength("IDS_WB_MEASURE_DISTANCE", of.distance);
    AddPoint("IDS_WB_MEASURE_WAY", of.other - of.one);
    AddPoint("IDS_WB_MEASURE_FROM", of.one);
    AddPoint("IDS_WB_MEASURE_TO", of.other);
  }
  void FitColumns() {
    for (int column = 0; column < 2; ++column) list.resizeColumnToContents(column);
  }

  QTreeWidget& list;
  const UnitSystem& units = FindUnitSystem(CQDUnitCtrl::GetUnitSystemLength());
  QString length = QString::fromStdWString(UnitOf(Quantity::Length, units));
};

namespace {

MeasureMark MarkOf(const Point3& from, const Point3& to, const QString& text) {
  return {{from.x, from.y, from.z}, {to.x, to.y, to.z}, FromQt(text)};
}

}  // namespace

MeasureDialog::MeasureDialog(WorkDocument& doc, QWidget* parent)
    : QDialog(parent),
      m_doc(doc),
      m_parts(doc, {.type = kDataGeom, .reach = Reach::All}, [this] { Later(); }),
      m_sets(doc, {.type = kDataMset, .reach = Reach::All}, [this] { Later(); }),
      m_named(new ToldLabel),
      m_list(new QTreeWidget),
      m_note(new ToldLabel) {
  constexpr QSize kSize{420, 420};
  constexpr int kSoon = 100;  // milliseconds
  SetTitle(*this, "IDS_WB_MEASURE");
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("measure");
  m_named->setObjectName("named");
  m_list->setObjectName("values");
  m_list->setRootIsDecorated(false);
  m_list->setHeaderHidden(true);
  m_list->setColumnCount(2);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(m_named);
  layout->addWidget(m_list, 1);
  m_note->setObjectName("note");
  layout->addWidget(m_note);
  auto* row = new QHBoxLayout;
  row->addStretch();
  const auto add = [&](const char* key, const char* name, auto&& call) {
    auto* button = new QPushButton;
    SetText(*button, key);
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, std::forward<decltype(call)>(call));
    row->addWidget(button);
  };
  add("IDS_WB_CONTACTS_COPY", "copy", [this] { Copy(); });
  add("IDS_WB_CLOSE", "close", [this] { close(); });
  layout->addLayout(row);
  m_later.setSingleShot(true);
  m_later.setInterval(kSoon);
  connect(&m_later, &QTimer::timeout, this, &MeasureDialog::Measure);
  m_onRecords = doc.OnRecords([this](const CQDUpdateRecord&) { Later(); });  // materials and properties, too
  m_onPicks = doc.GetPicks().Subscribe([this](const Picks&) { Later(); });
  resize(kSize);
  Later();
}

void MeasureDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) Later();  // numbers and units are written otherwise
}

/// A closed dialog goes a little later, and works no more.
void MeasureDialog::hideEvent(QHideEvent* event) {
  if (event->spontaneous()) return QDialog::hideEvent(event);  // minimised: it goes on
  m_later.stop();
  m_work.Stop();
  m_doc.GetMarks().Set({});
  QDialog::hideEvent(event);
}

void MeasureDialog::Later() {
  m_work.Stop();
  m_later.start();
}

void MeasureDialog::Note(const char* key, const QStringList& arguments) {
  m_note->setVisible(key != nullptr);
  if (key == nullptr) return ClearText(*m_note);
  SetText(*m_note, key, arguments);
}

void MeasureDialog::Measure() {
  if (!m_doc.GetPicks().IsEmpty()) return MeasurePicked();
  MeasuredRecords records = GatherMeasured(m_doc.GetDatabase(), m_parts.Records(), m_sets.Records());
  const QString counted = QLocale().toString(static_cast<qulonglong>(records.parts.size()));
  Note(nullptr);
  if (records.parts.empty() && records.sets.empty()) {
    m_list->clear();
    m_doc.GetMarks().Set({});
    return SetText(*m_named, "IDS_WB_MEASURE_NOTHING");
  }
  SetText(*m_named, "IDS_WB_MEASURE_OF",
          {counted, QLocale().toString(static_cast<qulonglong>(records.sets.size()))});
  m_work.Start([this, records = std::move(records)](const ProgressCall& progress) -> WorkBeside::Finish {
    auto result = std::make_shared<Result>();
    if (!MeasureAll(records, progress, result->measures)) return [] {};
    if (records.parts.size() == 2 && records.sets.empty())
      result->distance = LeastDistance(TrianglesOf(records.parts[0].shape->facets),
                                       TrianglesOf(records.parts[1].shape->facets), progress);
    return [this, result] { Show(*result); };
  });
}

void MeasureDialog::MeasurePicked() {
  MeasuredPicks picks = GatherPicks(m_doc);
  ClearText(*m_named);
  m_named->setText(ToQt(PickedText(m_doc)));
  if (picks.tooMany) {
    m_list->clear();
    m_doc.GetMarks().Set({});
    return Note("IDS_WB_MEASURE_TOO_MANY", {QLocale().toString(static_cast<qulonglong>(MeasuredPicks::kMost))});
  }
  m_work.Start([this, picks = std::move(picks)](const ProgressCall& progress) -> WorkBeside::Finish {
    auto measure = std::make_shared<PicksMeasure>();
    if (!MeasureAll(picks, progress, *measure)) return [] {};
    return [this, measure, count = picks.all.size()] { ShowPicked(*measure, count); };
  });
}

void MeasureDialog::ShowPicked(const PicksMeasure& measure, std::size_t count) {
  Rows rows(*m_list);
  std::vector<MeasureMark> marks;
  if (measure.distance) {
    rows.AddDistance(*measure.distance);
    marks.push_back(
        MarkOf(measure.distance->one, measure.distance->other, rows.Length(measure.distance->distance)));
  }
  if (measure.centres) rows.AddLength("IDS_WB_MEASURE_CENTRES", *measure.centres);
  if (measure.angle) {
    // Lines and planes have two angles where they cross.
    const bool both = measure.corners.empty() && *measure.angle > 0 && *measure.angle < 90;
    const QString angle = Rows::Angle(*measure.angle);
    rows.Add("IDS_WB_ANGLE", both ? angle + " / " + Rows::Angle(180 - *measure.angle) : angle);
    if (!measure.corners.empty()) {
      marks.push_back(MarkOf(measure.corners[1], measure.corners[0], {}));
      marks.push_back(MarkOf(measure.corners[1], measure.corners[2], {}));
      marks.push_back(MarkOf(measure.corners[1], measure.corners[1], angle));
    }
  }
  if (measure.place) rows.AddPoint("IDS_WB_MEASURE_PLACE", *measure.place);
  if (measure.sum.length > 0) rows.AddLength("IDS_WB_MEASURE_LENGTH", measure.sum.length);
  if (measure.sum.area > 0) rows.AddArea(measure.sum.area);
  if (measure.sum.volume > 0) rows.AddVolume(measure.sum.volume);
  for (const EntityMeasure& one : measure.each) {
    if (one.direction) rows.Add("IDS_WB_DIRECTION", Rows::Point(*one.direction));
    if (one.normal) rows.Add("IDS_WB_NORMAL", Rows::Point(*one.normal));
    if (!one.round) continue;
    constexpr double kRound = 1e-4;  // of the radius: what is nearer is round but for rounding
    rows.AddLength("IDS_WB_MEASURE_RADIUS", one.round->radius);
    if (one.round->deviation > kRound * one.round->radius)
      rows.AddLength("IDS_WB_MEASURE_DEVIATION", one.round->deviation);
    rows.AddPoint("IDS_WB_MEASURE_ROUND_CENTRE", one.round->centre);
    rows.Add("IDS_WB_MEASURE_AXIS", Rows::Point(one.round->axis));
    if (count == 1) marks.push_back(MarkOf(one.round->Foot(), one.round->rim, rows.Length(one.round->radius)));
  }
  rows.FitColumns();
  const bool single = count == 1 && (measure.sum.length > 0 || measure.sum.area > 0) && measure.sum.volume <= 0;
  if (single && measure.each[0].IsCurved()) {
    Note("IDS_WB_MEASURE_NOT_ROUND");
  } else if (measure.noAngle) {
    Note("IDS_WB_MEASURE_NO_ANGLE");
  } else if (count > 2 && !measure.angle) {
    Note("IDS_WB_MEASURE_MANY");
  } else {
    Note(nullptr);
  }
  m_doc.GetMarks().Set(std::move(marks));
}

void MeasureDialog::Show(const Result& result) {
  const Measures& all = result.measures;
  Rows rows(*m_list);
  std::vector<MeasureMark> marks;
  const QString mass = QString::fromWCharArray(rows.units.mass);
  if (result.distance) {
    rows.AddDistance(*result.distance);
    marks.push_back(MarkOf(result.distance->one, result.distance->other, rows.Length(result.distance->distance)));
  }
  if (!all.Box().IsEmpty()) {
    rows.AddPoint("IDS_WB_MEASURE_LEAST", all.Box().least);
    rows.AddPoint("IDS_WB_MEASURE_GREATEST", all.Box().greatest);
    rows.AddPoint("IDS_WB_MEASURE_SIZE", all.Box().greatest - all.Box().least);
  }
  if (all.Length() > 0) rows.AddLength("IDS_WB_MEASURE_LENGTH", all.Length());
  if (all.Area() > 0) rows.AddArea(all.Area());
  if (all.Volume() > 0) rows.AddVolume(all.Volume());
  if (all.Volume() > 0 || all.Mass() > 0) rows.AddPoint("IDS_WB_MEASURE_CENTRE", all.Centre());
  if (all.Mass() > 0) {
    rows.Add("IDS_WB_MEASURE_MASS", Rows::Number(all.Mass()), mass);
    const std::array<double, 6> inertia = all.Inertia();
    constexpr const char* kAxes[] = {"xx", "yy", "zz", "xy", "yz", "zx"};
    for (std::size_t i = 0; i < inertia.size(); ++i) {
      rows.Add("IDS_WB_MEASURE_INERTIA", Rows::Number(inertia[i]), mass + QChar(0xB7) + rows.length + QChar(0xB2),
               {kAxes[i]});
    }
  }
  rows.FitColumns();
  m_doc.GetMarks().Set(std::move(marks));
}

void MeasureDialog::Copy() const {
  QString text = m_named->text() + "\n";
  for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
    const QTreeWidgetItem& row = *m_list->topLevelItem(i);
    text += row.text(0) + "\t" + row.text(1) + "\n";
  }
  if (!m_note->isHidden()) text += m_note->text() + "\n";
  QApplication::clipboard()->setText(text);
}

}  // namespace qd::workbench
