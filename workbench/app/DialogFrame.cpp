#include "workbench/app/DialogFrame.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "workbench/app/MessageTables.h"
#include "workbench/app/PickedPlaces.h"
#include "workbench/app/Translated.h"

namespace qd::workbench {

// ---- warnings -------------------------------------------------------------------------------------------

namespace {

HeardWarnings* s_listener = nullptr;

}  // namespace

HeardWarnings::HeardWarnings() : m_outer(std::exchange(s_listener, this)) {}

HeardWarnings::~HeardWarnings() {
  s_listener = m_outer;
}

void HeardWarnings::Note(const QString& text) {
  if (s_listener != nullptr) s_listener->m_last = text;
}

// ---- what a dialog is made of ---------------------------------------------------------------------------

DialogFrame::DialogFrame(const char* titleKey, const char* name, QWidget* parent)
    : QDialog(parent),
      m_titleKey(titleKey),
      m_form(new QFormLayout),
      m_outcome(new ToldLabel),
      m_buttons(new QDialogButtonBox) {
  SetTitle(*this, titleKey);
  setAttribute(Qt::WA_DeleteOnClose);
  setObjectName(name);
  setSizeGripEnabled(true);
  auto* layout = new QVBoxLayout(this);
  m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  layout->addLayout(m_form);
  layout->addStretch();  // fields stay as high as they are
  m_outcome->setObjectName("outcome");
  m_outcome->hide();
  layout->addWidget(m_outcome);
  layout->addWidget(m_buttons);
}

ToldLabel* DialogFrame::AddWorkLine(const char* name) {
  auto* line = new ToldLabel;
  line->setObjectName(name);
  m_form->addRow(line);
  return line;
}

void DialogFrame::AddField(const char* key, QWidget* field) {
  auto* place = new QWidget;
  auto* column = new QVBoxLayout(place);
  column->setContentsMargins(0, 0, 0, 0);
  auto* fault = new ToldLabel;
  fault->setObjectName("fault");
  fault->hide();
  column->addWidget(field);
  column->addWidget(fault);
  QLabel* label = NewFieldLabel(key);
  label->setBuddy(field);
  m_form->addRow(label, place);
  m_fields.push_back(field);
  m_faults[field] = fault;
  const auto forget = [this, field] { ForgetFault(field); };
  if (auto* edit = qobject_cast<QLineEdit*>(field)) connect(edit, &QLineEdit::textChanged, this, forget);
  if (auto* box = qobject_cast<QComboBox*>(field)) connect(box, &QComboBox::currentIndexChanged, this, forget);
}

NumberRow* DialogFrame::AddNumbers(const char* key, const std::vector<double>& values, const NumberKind& kind) {
  NumberRow* row = workbench::AddNumbers(*m_form, key, values, kind);
  m_fields.push_back(row);
  return row;
}

void DialogFrame::OfferPicks(WorkDocument& doc, std::function<Placement()> frame) {
  m_places = new PickedPlaces(doc, *this, std::move(frame));
  connect(m_places, &PickedPlaces::Told, this,
          [this](const char* key) { key != nullptr ? Tell(key) : TellNothing(); });
  for (QWidget* field : m_fields) {
    if (auto* row = qobject_cast<NumberRow*>(field)) m_places->Offer(*row);
  }
}

void DialogFrame::ShowField(QWidget& field, bool shown) {
  m_form->setRowVisible(&field, shown);
}

void DialogFrame::AddWide(QWidget* widget) {
  m_form->addRow(widget);
  const bool grows = widget->sizePolicy().verticalPolicy() == QSizePolicy::Expanding;
  if (grows) static_cast<QVBoxLayout*>(layout())->setStretch(0, 1);
  if (widget->focusPolicy() != Qt::NoFocus) m_fields.push_back(widget);
}

QPushButton* DialogFrame::AddAct(const char* key, const char* name, const std::function<void()>& act) {
  QPushButton* button = m_buttons->addButton(QString(), QDialogButtonBox::ApplyRole);
  SetText(*button, key);
  button->setObjectName(name);
  if (m_acts.empty()) button->setDefault(true);
  m_acts.push_back(button);
  connect(button, &QPushButton::clicked, this, [act] { act(); });
  return button;
}

void DialogFrame::SetFirstAct(QPushButton& act) {
  act.setDefault(true);
}

/// A button that closes does so for a press of the space bar or the mouse: whoever goes through the fields with
/// Tab and Enter has not asked for that.
void DialogFrame::Finish(const char* leaveKey) {
  m_leave = m_buttons->addButton(QString(), QDialogButtonBox::RejectRole);
  SetText(*m_leave, leaveKey);
  m_leave->setObjectName("leave");
  m_leave->setAutoDefault(false);
  connect(m_leave, &QPushButton::clicked, this, &QDialog::reject);
  for (std::size_t i = 0; i + 1 < m_acts.size(); ++i) setTabOrder(m_acts[i], m_acts[i + 1]);
  if (!m_acts.empty()) setTabOrder(m_acts.back(), m_leave);
}

// ---- what is told ---------------------------------------------------------------------------------------

void DialogFrame::TellFault(QWidget& field, const char* key, const QStringList& arguments) {
  ToldLabel& line = *m_faults.at(&field);
  SetText(line, key, arguments);
  line.show();
  field.setAccessibleDescription(line.text());
  field.setFocus(Qt::OtherFocusReason);
  if (auto* edit = qobject_cast<QLineEdit*>(&field)) edit->selectAll();
}

void DialogFrame::ForgetFault(QWidget* field) {
  ToldLabel& line = *m_faults.at(field);
  if (line.isHidden()) return;
  ClearText(line);
  line.hide();
  field->setAccessibleDescription({});
}

bool DialogFrame::CheckFields() {
  for (const auto& [field, line] : m_faults) ForgetFault(field);
  TellNothing();
  return CheckNumbers(*this);
}

void DialogFrame::Tell(const char* key, const QStringList& arguments) {
  SetText(*m_outcome, key, arguments);
  m_outcome->show();
  m_reasonShown = false;
}

void DialogFrame::TellText(const QString& text) {
  ClearText(*m_outcome);
  m_outcome->setText(text);
  m_outcome->setVisible(!text.isEmpty());
  m_reasonShown = false;
}

void DialogFrame::TellNothing() {
  TellText({});
}

void DialogFrame::Block(const char* reason, bool told) {
  m_reason = reason;
  if (reason != nullptr && !told) {
    Tell(reason);
    m_reasonShown = true;
  } else if (m_reasonShown) {
    TellNothing();
  }
  for (QPushButton* act : m_acts) {
    act->setEnabled(reason == nullptr);
    act->setToolTip(reason != nullptr ? Text(reason) : QString());
  }
}

// ---- its size and focus ---------------------------------------------------------------------------------

bool DialogFrame::event(QEvent* event) {
  const bool done = QDialog::event(event);
  if (event->type() == QEvent::LayoutRequest && isVisible()) GrowToFit();
  return done;
}

void DialogFrame::GrowToFit() {
  const int needed = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width())
                                                   : layout()->totalMinimumSize().height();
  m_grown = m_grown.expandedTo(minimumSize()).expandedTo({0, needed});
  if (height() < needed) resize(width(), needed);
}

void DialogFrame::FocusFirst() {
  if (QWidget* chosen = focusWidget()) return chosen->setFocus(Qt::TabFocusReason);
  for (QWidget* field : m_fields) {
    if (!field->isEnabled() || field->isHidden() || qobject_cast<QComboBox*>(field) != nullptr) continue;
    return field->setFocus(Qt::TabFocusReason);
  }
  if (!m_fields.empty()) m_fields.front()->setFocus(Qt::TabFocusReason);
}

QString DialogFrame::SizeKey() const {
  return QString("dialogs/") + m_titleKey;
}

void DialogFrame::showEvent(QShowEvent* event) {
  if (!std::exchange(m_shown, true)) {
    // Anything may stand in settings, and the screen may be another one.
    const QSize kept = QSettings().value(SizeKey()).toSize();
    m_ownSize =
        kept.isValid() ? kept.expandedTo(minimumSizeHint()).boundedTo(screen()->availableSize()) : sizeHint();
    resize(m_ownSize);
    FocusFirst();
  }
  QDialog::showEvent(event);
  GrowToFit();
}

void DialogFrame::hideEvent(QHideEvent* event) {
  if (m_places != nullptr) m_places->End();
  const bool chosen = size() != m_ownSize && size() != m_ownSize.expandedTo(m_grown);
  if (chosen) QSettings().setValue(SizeKey(), size());
  QDialog::hideEvent(event);
}

}  // namespace qd::workbench
