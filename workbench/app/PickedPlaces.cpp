#include "workbench/app/PickedPlaces.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QToolButton>
#include <utility>

#include "workbench/app/CommandIcons.h"
#include "workbench/app/NumberField.h"
#include "workbench/app/Translated.h"
#include "workbench/session/MeasurePicks.h"
#include "workbench/session/WindowCommands.h"

namespace qd::workbench {

using Kind = NumberKind::Picked;

PickedPlaces::PickedPlaces(WorkDocument& doc, QDialog& dialog, std::function<Placement()> frame)
    : QObject(&dialog), m_doc(doc), m_dialog(dialog), m_frame(std::move(frame)) {}

PickedPlaces::~PickedPlaces() {
  End();
}

void PickedPlaces::Offer(NumberRow& row) {
  if (row.PickedKind() == Kind::Nothing) return;
  auto* button = new QToolButton;
  button->setObjectName("pick");
  button->setCheckable(true);
  button->setAutoRaise(true);
  button->setIcon(IconOf(kPickPoints));
  SetText(*button, row.PickedKind() == Kind::Place ? "IDS_WB_PLACE_PICK" : "IDS_WB_WAY_PICK");
  row.AddButton(button);
  if (row.PickedKind() == Kind::Direction && !m_rows.empty()) m_rows.back().direction = &row;
  m_rows.push_back({&row, button});
  connect(button, &QToolButton::toggled, this, [this, place = m_rows.size() - 1](bool down) {
    if (down) return Begin(m_rows[place]);
    if (m_awaiting == place) End();
  });
}

/// What is picked already may be the answer, where it is no more than one wants.
void PickedPlaces::Begin(Row& row) {
  End();
  m_awaiting = static_cast<std::size_t>(&row - m_rows.data());
  Picks& picks = m_doc.GetPicks();
  constexpr std::size_t kMost = 2;  // that give a way
  if (picks.All().size() <= kMost) {
    for (const Picked& one : std::vector<Picked>(picks.All())) {
      if (Take(one)) return;
    }
  }
  m_first.reset();
  if (TakesRecords(picks.Filter())) {
    m_oldFilter = picks.Filter();
    m_ownFilter = m_doc.GetDatabase().GetGeomPool().Count() != 0 ? PickFilter::Points : PickFilter::Nodes;
    picks.SetFilter(m_ownFilter);
  }
  m_onPicks = picks.Subscribe([this](const Picks&) { Follow(); });
  qApp->installEventFilter(this);
  Ask();
}

void PickedPlaces::End() {
  if (m_awaiting == kNone) return;
  QToolButton* button = m_rows[std::exchange(m_awaiting, kNone)].button;
  m_onPicks = {};
  m_first.reset();
  qApp->removeEventFilter(this);
  button->setChecked(false);
  Picks& picks = m_doc.GetPicks();
  if (m_oldFilter && picks.Filter() == m_ownFilter) picks.SetFilter(*m_oldFilter);
  m_oldFilter.reset();
  emit Told(nullptr);
}

bool PickedPlaces::eventFilter(QObject* watched, QEvent* event) {
  const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (!key || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape) return QObject::eventFilter(watched, event);
  if (event->type() == QEvent::ShortcutOverride) {
    event->accept();  // it comes as a press then
    return true;
  }
  End();
  return true;
}

void PickedPlaces::Ask() {
  const bool place = m_rows[m_awaiting].numbers->PickedKind() == Kind::Place;
  emit Told(place ? "IDS_WB_PLACE_ASK" : m_first ? "IDS_WB_WAY_ASK_SECOND" : "IDS_WB_WAY_ASK");
}

void PickedPlaces::Follow() {
  if (m_awaiting == kNone || m_doc.GetPicks().IsEmpty()) return;
  if (Take(m_doc.GetPicks().All().back())) m_dialog.activateWindow();
}

bool PickedPlaces::Take(const Picked& one) {
  const Row row = m_rows[m_awaiting];
  const PlaceOfPick found = PlaceAndWayOf(m_doc, one);
  if (row.numbers->PickedKind() == Kind::Place) {
    if (!found.place) {
      emit Told("IDS_WB_PLACE_NONE");
      return false;
    }
    Fill(*row.numbers, *found.place, true);
    if (found.way && row.direction != nullptr) Fill(*row.direction, *found.way, false);
  } else if (found.way) {
    Fill(*row.numbers, *found.way, false);
  } else if (found.place && m_first && *m_first != *found.place) {
    Fill(*row.numbers, *found.place - *m_first, false);
  } else {
    if (!found.place) {
      emit Told("IDS_WB_PLACE_NONE");
      return false;
    }
    m_first = found.place;
    Ask();
    return false;
  }
  End();
  m_doc.GetPicks().Clear();  // they have served
  return true;
}

void PickedPlaces::Fill(NumberRow& numbers, Vector3 value, bool isPlace) const {
  if (m_frame) {
    const Placement frame = m_frame();
    const Vector3 from = isPlace ? value - frame.origin : value;
    for (std::size_t axis = 0; axis < 3; ++axis) value[axis] = Dot(from, frame.axes[axis]);
  }
  if (numbers.PickedKind() == Kind::Direction) {
    const double length = Length(value);
    for (double& part : value) part = length > 0 ? part / length : part;
  }
  numbers.SetPoint(value);
}

}  // namespace qd::workbench
