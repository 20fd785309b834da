#include "workbench/app/NumberField.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QStyle>
#include <algorithm>
#include <utility>

#include "host/CQDUnitCtrl.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

namespace {

/// Of the language on show.
char DecimalSign() {
  return QLocale().decimalPoint() == "," ? ',' : '.';
}

QString Shown(double value) {
  return QString::fromStdString(ShowNumber(value, DecimalSign()));
}

constexpr const char* kAxes[] = {"X", "Y", "Z"};

const UnitSystem& Units() {
  return FindUnitSystem(CQDUnitCtrl::GetUnitSystemLength());
}

}  // namespace

// ---- field ----------------------------------------------------------------------------------------------

NumberField::NumberField(double value, const NumberLimits& limits, Quantity quantity)
    : m_limits(limits), m_quantity(quantity), m_units(&Units()), m_value(value), m_decimalSign(DecimalSign()) {
  setText(Shown(value));
  setAlignment(Qt::AlignRight);
  connect(this, &QLineEdit::textEdited, this, [this] {
    m_decimalSign = DecimalSign();
    m_ofModel = false;
  });
  connect(this, &QLineEdit::editingFinished, this, [this] {
    if (isModified() && Reading().IsGood()) Show(Value());
  });
}

void NumberField::Show(double value) {
  m_value = value;
  // What is selected in a text that stays stays selected.
  if (text() != Shown(value)) setText(Shown(value));
  setModified(false);
}

void NumberField::SetValue(double value) {
  m_ofModel = true;
  Show(value);
}

void NumberField::Propose(double value) {
  m_ofModel = false;
  Show(value);
}

NumberReading NumberField::Reading() const {
  return ReadQuantity(text().trimmed().toStdString(), m_decimalSign, m_quantity, *m_units, m_limits);
}

double NumberField::Value() const {
  const NumberReading reading = Reading();
  return reading.IsGood() ? reading.value : m_value;
}

void NumberField::ShowInLanguage() {
  const NumberReading reading = Reading();
  if (!reading.IsGood()) return;
  m_decimalSign = DecimalSign();
  Show(reading.value);
}

void NumberField::Convert(const UnitSystem& to) {
  const UnitSystem& from = *m_units;
  const bool stays = m_ofModel || &from == &to || !Reading().IsGood();
  if (!stays && (!m_origin || m_origin->shown != text())) m_origin = Origin{Value(), &from, {}};
  m_units = &to;
  if (stays) return;
  Show(Converted(m_origin->value, m_quantity, *m_origin->system, to));
  m_origin->shown = text();
}

void NumberField::Mark(bool faulty) {
  if (faulty == (m_mark != nullptr)) return;
  QPalette colours;
  if (faulty) {
    // A touch of red that leaves the text as easy to read as it was, on a light and on a dark ground.
    constexpr int kRed = 70;
    QColor ground = colours.color(QPalette::Base);
    ground.setRed(std::min(255, ground.red() + kRed));
    ground.setGreen(std::max(0, ground.green() - kRed / 2));
    ground.setBlue(std::max(0, ground.blue() - kRed / 2));
    colours.setColor(QPalette::Base, ground);
    m_mark = addAction(style()->standardIcon(QStyle::SP_MessageBoxWarning), QLineEdit::TrailingPosition);
  } else {
    delete std::exchange(m_mark, nullptr);
  }
  setPalette(colours);
}

void NumberField::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  if (event->reason() == Qt::PopupFocusReason) return;  // back from its own menu
  const bool back = std::exchange(m_visited, true) && event->reason() == Qt::ActiveWindowFocusReason;
  if (back) return;  // from another window, to go on
  selectAll();
  m_selectsAll = event->reason() == Qt::MouseFocusReason;
}

/// The press that brings the focus sets the cursor and takes the selection away again.
void NumberField::mouseReleaseEvent(QMouseEvent* event) {
  QLineEdit::mouseReleaseEvent(event);
  if (std::exchange(m_selectsAll, false) && !hasSelectedText()) selectAll();
}

// ---- row ------------------------------------------------------------------------------------------------

NumberRow::NumberRow(const char* key, const std::vector<double>& values, const NumberKind& kind)
    : m_key(key),
      m_kind(kind),
      m_units(&Units()),
      m_row(new QHBoxLayout),
      m_unit(new QLabel),
      m_fault(new ToldLabel) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  for (const double value : values) {
    auto* field = new NumberField(value, kind.limits, kind.quantity);
    if (values.size() > 1) m_row->addWidget(new QLabel(kAxes[m_fields.size()]));
    m_row->addWidget(field);
    m_fields.push_back(field);
    connect(field, &QLineEdit::textEdited, this, &NumberRow::OnEdited);
    connect(field, &QLineEdit::editingFinished, this, &NumberRow::OnFinished);
  }
  setFocusProxy(m_fields.front());
  m_fault->setObjectName("fault");
  m_fault->hide();
  m_row->addWidget(m_unit);
  layout->addLayout(m_row);
  layout->addWidget(m_fault);
  ShowInLanguage();
}

std::array<double, 3> NumberRow::Point() const {
  return {m_fields[0]->Value(), m_fields[1]->Value(), m_fields[2]->Value()};
}

void NumberRow::SetPoint(const std::array<double, 3>& point) {
  for (std::size_t axis = 0; axis < point.size(); ++axis) m_fields[axis]->SetValue(point[axis]);
  OnEdited();
}

void NumberRow::SetValue(double value) {
  m_fields.front()->SetValue(value);
  OnEdited();
}

void NumberRow::Propose(double value) {
  m_fields.front()->Propose(value);
  OnEdited();
}

NumberField* NumberRow::Check() {
  NumberField* bad = nullptr;
  for (NumberField* field : m_fields) {
    const bool good = field->Reading().IsGood();
    field->Mark(!good);
    if (!good && bad == nullptr) bad = field;
  }
  if (bad != nullptr) {
    const NumberFault fault = bad->Reading().fault;
    QStringList arguments{bad->text(), QString(DecimalSign())};
    if (fault == NumberFault::AboveGreatest) arguments = {Shown(bad->Limits().greatest)};
    if (fault == NumberFault::NotAboveLeast || fault == NumberFault::BelowLeast) {
      arguments = {Shown(bad->Limits().least)};
    }
    const QString unit = ToQt(UnitOf(m_kind.quantity, *m_units));
    const bool mayHaveUnit = fault == NumberFault::NotANumber && !unit.isEmpty();
    SetText(*m_fault, mayHaveUnit ? "IDS_WB_NUMBER_UNIT" : KeyOf(fault),
            mayHaveUnit ? QStringList{bad->text(), unit} : arguments);
  } else if (m_kind.notNull && std::all_of(m_fields.begin(), m_fields.end(),
                                           [](const NumberField* field) { return field->Value() == 0; })) {
    SetText(*m_fault, "IDS_WB_NUMBER_NULL");
    bad = m_fields.front();
  }
  m_fault->setVisible(bad != nullptr);
  // Who does not see the line below the field hears of it.
  for (NumberField* field : m_fields)
    field->setAccessibleDescription(bad != nullptr ? m_fault->text() : QString());
  return bad;
}

void NumberRow::TellFault(const char* key) {
  SetText(*m_fault, key);
  m_fault->show();
  for (NumberField* field : m_fields) field->setAccessibleDescription(m_fault->text());
  m_fields.front()->setFocus(Qt::OtherFocusReason);
  m_fields.front()->selectAll();
}

/// Whoever goes on to another number of the line has not said yet what it is to be; so has who looks at another
/// window.
void NumberRow::OnFinished() {
  QWidget* now = QApplication::focusWidget();
  const bool here = std::find(m_fields.begin(), m_fields.end(), now) != m_fields.end();
  if (now != nullptr && now->window() == window() && !here) Check();
}

/// What is not finished yet is told only to who was told already.
void NumberRow::OnEdited() {
  if (!m_fault->isHidden()) Check();
}

void NumberRow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) ShowInLanguage();
}

void NumberRow::ShowInLanguage() {
  m_units = &Units();
  for (std::size_t i = 0; i < m_fields.size(); ++i) {
    m_fields[i]->ShowInLanguage();
    m_fields[i]->Convert(*m_units);
    m_fields[i]->setAccessibleName(Text(m_key) + (m_fields.size() > 1 ? QString(" ") + kAxes[i] : QString()));
  }
  m_unit->setText(QString::fromStdWString(UnitOf(m_kind.quantity, *m_units)));
  m_unit->setVisible(!m_unit->text().isEmpty());
  OnEdited();
}

// ---- dialogs --------------------------------------------------------------------------------------------

NumberRow* AddNumbers(QFormLayout& layout, const char* key, const std::vector<double>& values,
                      const NumberKind& kind) {
  auto* row = new NumberRow(key, values, kind);
  QLabel* label = NewFieldLabel(key);
  label->setBuddy(row);
  layout.addRow(label, row);
  return row;
}

bool CheckNumbers(QWidget& dialog) {
  NumberField* first = nullptr;
  for (NumberRow* row : dialog.findChildren<NumberRow*>()) {
    NumberField* bad = row->Check();
    if (first == nullptr) first = bad;
  }
  if (first == nullptr) return true;
  first->setFocus();
  first->selectAll();
  return false;
}

}  // namespace qd::workbench
