#pragma once

#include <QDockWidget>
#include <QJsonObject>
#include <memory>

#include "qd_wrt/panel/CWorksTreeBar.h"

namespace qd::workbench {

/// The docking pane of one works tree.
class TreePane final : public QDockWidget {
 public:
  TreePane(const QString& name, QWidget* parent);
  ~TreePane() override;

  /// Makes the tree's window; the items come later.
  void Open(CQDDocBase& doc);
  CWorksTreeBar& Bar() { return m_bar; }
  /// The widths that the user gave to the columns, as numbers; empty when there are none.
  QVariantList ColumnWidths() const;
  void SetColumnWidths(const QVariantList& widths);
  /// What is searched for.
  QJsonObject FindState();
  void RestoreFindState(const QJsonObject& state);
  /// Columns, open branches and the place on the screen, to be found again in another session: branches of records
  /// by record, others by where they stand.
  QJsonObject ViewState();
  void RestoreViewState(const QJsonObject& state);

 protected:
  bool focusNextPrevChild(bool next) override;

 private:
  void OnSeen(bool seen);

  CWorksTreeBar m_bar;
};

}  // namespace qd::workbench
