#pragma once

#include <QDockWidget>
#include <QJsonObject>
#include <memory>

#include "host/IWorksTree.h"
#include "qd_wrt/panel/CWorksTreeBar.h"

namespace qd::workbench {

/// The docking pane of one tree type. The workbench has one document, so a pane has one tree.
class TreePane final : public QDockWidget, public CSwitchDockablePane {
 public:
  TreePane(const QString& name, QWidget* parent);
  ~TreePane() override;

  /// Makes the tree's window; the items come later.
  void Open(CQDDocBase& doc);
  CWorksTreeBar& Bar() { return m_bar; }
  /// The widths that the user gave to the columns, as numbers; empty when there are none.
  QVariantList ColumnWidths() const;
  void SetColumnWidths(const QVariantList& widths);
  /// Columns, open branches and the place on the screen, to be found again in another session: branches of records
  /// by record, others by where they stand.
  QJsonObject ViewState();
  void RestoreViewState(const QJsonObject& state);

  IWorksTree* GetTree(CDocument* doc) override;
  void GetTrees(std::list<IWorksTree*>& trees) override { trees.push_back(&m_bar); }
  IWorksTree* GetDefaultPane() override { return nullptr; }

 private:
  CWorksTreeBar m_bar;
};

}  // namespace qd::workbench
