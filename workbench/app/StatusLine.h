#pragma once

#include <QObject>

#include "workbench/session/ModelCounts.h"

class QLabel;
class QMenu;
class QStatusBar;
class QToolButton;

namespace qd::workbench {

/// What stands in the status bar for good: what keys and the mouse do now, how much there is and is shown, what is
/// selected, and the units, which are switched there.
class StatusLine final : public QObject {
  Q_OBJECT

 public:
  /// Where the focus is, as far as keys do something else there.
  enum class Place { Elsewhere, View, Tree, Editor, FindField };

  /// `units` is what the button of the units opens. Document and bar outlive this.
  StatusLine(QStatusBar& bar, WorkDocument& doc, ModelCounts::Later later, QMenu& units);

  void ShowPlace(Place place);
  /// After the document was filled behind its notices.
  void CountAnew() { m_counts.CountAnew(); }
  const ModelCounts& Counts() const { return m_counts; }
  /// Says all of it in the language and units of now.
  void ShowInLanguage();

 private:
  void ShowCounts();
  void ShowSelection();
  void ShowHint();

  WorkDocument& m_doc;
  QLabel* m_countsText = nullptr;  // this and those below are owned by the bar
  ModelCounts m_counts;
  Place m_place = Place::Elsewhere;
  QLabel* m_hint;
  QLabel* m_selectionText;
  QToolButton* m_units;
  Subscription m_onSelection;
  Subscription m_onPicks;
  Subscription m_onSettings;
};

}  // namespace qd::workbench
