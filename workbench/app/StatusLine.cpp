#include "workbench/app/StatusLine.h"

#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QStatusBar>
#include <QToolButton>
#include <utility>

#include "host/CQDUnitCtrl.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/display/ViewSettings.h"
#include "workbench/session/SelectionPage.h"
#include "workbench/text/Units.h"

namespace qd::workbench {

StatusLine::StatusLine(QStatusBar& bar, WorkDocument& doc, ModelCounts::Later later, QMenu& units)
    : QObject(&bar),
      m_doc(doc),
      m_counts(doc, std::move(later), [this] { ShowCounts(); }),
      m_hint(new QLabel),
      m_selectionText(new QLabel),
      m_units(new QToolButton) {
  m_countsText = new QLabel;
  m_hint->setObjectName("hint");
  m_countsText->setObjectName("counts");
  m_selectionText->setObjectName("selection");
  m_units->setObjectName("units");
  m_units->setAutoRaise(true);
  m_units->setPopupMode(QToolButton::InstantPopup);
  m_units->setMenu(&units);
  // A narrow window stays narrow: what has no room is cut, and told by its tip.
  for (QLabel* label : {m_hint, m_countsText}) label->setMinimumWidth(1);
  bar.addWidget(m_hint, 1);  // messages take its place
  for (QWidget* widget : std::initializer_list<QWidget*>{m_countsText, m_selectionText, m_units}) {
    bar.addPermanentWidget(widget);
  }
  m_onSelection = doc.OnSelection([this](const Selection&) { ShowSelection(); });
  m_onPicks = doc.GetPicks().Subscribe([this](const Picks&) { ShowSelection(); });
  m_onSettings = ViewSettings::Ours().Subscribe([this](const ViewSettings&) { ShowHint(); });
  ShowInLanguage();
}

void StatusLine::ShowPlace(Place place) {
  if (std::exchange(m_place, place) != place) ShowHint();
}

void StatusLine::ShowInLanguage() {
  ShowCounts();
  ShowSelection();
  ShowHint();
  const UnitSystem& units = FindUnitSystem(CQDUnitCtrl::GetUnitSystemLength());
  m_units->setText(QString("%1, %2").arg(ToQt(units.length), ToQt(units.mass)));
  m_units->setToolTip(Text("IDS_WB_UNITS_TIP"));
}

void StatusLine::ShowCounts() {
  if (m_countsText == nullptr) return;  // counted before there is a place for it
  const auto number = [](std::uint64_t count) { return QLocale().toString(static_cast<qulonglong>(count)); };
  const ModelCounts::Counts& counts = m_counts.Now();
  QStringList texts;
  const auto add = [&](const char* all, const char* some, std::uint64_t count, std::uint64_t shown) {
    if (count == 0) return;
    texts << (shown == count ? Text(all, {number(count)}) : Text(some, {number(count), number(shown)}));
  };
  add("IDS_WB_COUNT_PARTS", "IDS_WB_COUNT_PARTS_SHOWN", counts.parts, counts.partsShown);
  add("IDS_WB_COUNT_ELEMENTS", "IDS_WB_COUNT_ELEMENTS_SHOWN", counts.elements, counts.elementsShown);
  add("IDS_WB_COUNT_NODES", "IDS_WB_COUNT_NODES", counts.nodes, counts.nodes);
  m_countsText->setText(texts.join("  "));
  m_countsText->setToolTip(m_countsText->text());
}

void StatusLine::ShowSelection() {
  const QString selected = ToQt(SelectionText(m_doc));
  m_selectionText->setText(selected.isEmpty() ? QString() : Text("IDS_WB_COUNT_SELECTED", {selected}));
}

void StatusLine::ShowHint() {
  const char* key = nullptr;
  switch (m_place) {
    case Place::View:
      switch (ViewSettings::Ours().Habits()) {
        case MouseHabits::Own:
          key = "IDS_WB_HINT_VIEW";
          break;
        case MouseHabits::Gmsh:
          key = "IDS_WB_HINT_VIEW_GMSH";
          break;
        case MouseHabits::ParaView:
          key = "IDS_WB_HINT_VIEW_PARAVIEW";
          break;
        case MouseHabits::FreeCad:
          key = "IDS_WB_HINT_VIEW_FREECAD";
          break;
      }
      break;
    case Place::Tree:
      key = "IDS_WB_HINT_TREE";
      break;
    case Place::Editor:
      key = "IDS_WB_HINT_EDITOR";
      break;
    case Place::FindField:
      key = "IDS_WB_HINT_FIND";
      break;
    case Place::Elsewhere:
      break;
  }
  m_hint->setText(key != nullptr ? Text(key) : QString());
  m_hint->setToolTip(m_hint->text());
}

}  // namespace qd::workbench
