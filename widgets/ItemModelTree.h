#pragma once

#include <QAbstractItemModel>
#include <QPointer>
#include <functional>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>

#include "platform/Export.h"
#include "platform/RowHandle.h"
#include "widgets/WorksTreePanel.h"

namespace qd {

class CQDTreeItem;
class CQDTreeListCtrl;
class ModelNode;

/// A works tree that shows any model of Qt, in place of a QTreeView: setModel, and the model goes on as it is.
///
/// Column 0 of the model is the title, with its check box (Qt::CheckStateRole), and its colour is that of the
/// swatch (Qt::DecorationRole, where that is a colour; an icon, a pixmap or an image there is the row's icon);
/// column 1 is the second column, and all others stand behind the swatch, with the model's colours of text and
/// background; the user shows, hides and moves them by the menu of the captions. Rows come when their parent is
/// opened, 64 bytes each; the model is asked for what a row shows when that is looked at. What a model fetches
/// later is fetched when a parent is opened and when the last row fetched comes into sight: what looks at all rows
/// (searching, selecting all) knows of what has come. Rows stand in the model's order. Titles are edited, boxes
/// switched and rows dragged as the model's flags allow.
///
/// The model is not owned and may be destroyed first; a model that breaks its promises (rows that it removes and
/// never had) is read anew.
class QD_QT_EXPORT ItemModelTree : public WorksTreePanel {
  Q_OBJECT
 public:
  explicit ItemModelTree(QWidget* parent = nullptr);  ///< shows nothing yet
  ~ItemModelTree() override;

  /// Null shows nothing.
  void setModel(QAbstractItemModel* model);
  QAbstractItemModel* model() const { return m_model; }  ///< null for none, and once it is destroyed
  /// Shows what is below an index of the model, in place of all of it. When its row goes, all is shown again.
  void setRootIndex(const QModelIndex& index);
  QModelIndex rootIndex() const { return m_rootIndex; }  ///< invalid when all of the model is shown

  /// The selected rows, top to bottom, by their first column.
  QModelIndexList selectedIndexes() const;
  /// Opens or closes a row; opening makes the rows above it, too.
  void setExpanded(const QModelIndex& index, bool expanded);
  bool isExpanded(const QModelIndex& index) const;  ///< false for a row that was not made, or has none below it
  /// Selects a row alone and brings it into sight.
  void setCurrentIndex(const QModelIndex& index);
  void expandAll();  ///< opens every row, and so makes all that stands below them

  /// Whether a click on a caption has the model sort by that column (QAbstractItemModel::sort); at first it has
  /// not.
  void setSortingEnabled(bool enabled);
  bool isSortingEnabled() const { return m_sorts; }  ///< see setSortingEnabled
  /// Has the model sort by one of its columns, and marks the caption.
  void sortByColumn(int column, Qt::SortOrder order);

  /// By what rows are known again in saved states, each once below one parent; without it by the text of column 0.
  void setKeyOf(std::function<QString(const QModelIndex& index)> call) { m_keyOf = std::move(call); }
  /// What is open, selected, focused and on screen, and the widths of columns, to be given back in another run of
  /// the program too.
  QByteArray saveState() const;
  /// Gives that back, as far as such rows are there. What was not written so is refused, with nothing changed.
  bool restoreState(const QByteArray& state);

 signals:
  /// The selection was changed by the user or by setCurrentIndex.
  void selectionChanged();

 protected:
  /// Has the model fetch more soon after a paint, when the last row that it gave has come into sight.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  friend class ModelNode;
  class Factory;
  class Keys;

  /// What is shown of the model's tree, while its rows go to other places.
  struct Shown {
    QList<QPersistentModelIndex> open;
    QList<QPersistentModelIndex> selected;
    bool allSelected = false;
    QPersistentModelIndex focused;
    std::size_t top = 0;  // position of the first row on screen
  };

  void Follow();
  void Rebuild();
  void MakeRows(ModelNode& node);
  Shown WhatIsShown() const;
  void ShowAgain(const Shown& shown);
  void FetchSoon();
  void FetchInSight();
  void Drop(const QModelIndex& target, const std::vector<CQDTreeItem*>& dragged);
  QModelIndex IndexOf(const ModelNode& node) const;
  /// The index of a row below a node.
  QModelIndex IndexBelow(const ModelNode& node, std::size_t place) const;
  QModelIndexList IndexesOf(const std::vector<HTREEITEM>& rows) const;
  /// The node of an index, null when it was not made.
  ModelNode* NodeOf(const QModelIndex& index) const;
  /// Likewise, and makes it.
  ModelNode* MakeNodeOf(const QModelIndex& index);
  bool PathTo(const QModelIndex& index, std::vector<std::size_t>& rows) const;
  std::size_t RowsOf(const ModelNode& node) const;
  ModelNode* MadeBelow(const ModelNode& node, std::size_t place) const;
  void Refresh(const ModelNode& node, std::size_t first, std::size_t last);
  bool IsNear(const ModelNode& node) const;
  void Forget(const ModelNode& node);
  CQDTreeListCtrl& Tree() const;

  void OnInserted(const QModelIndex& parent, int first, int last);
  void OnRemoved(const QModelIndex& parent, int first, int last);
  void OnMoved(int first, int last, int before);
  void OnChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight);
  void OnColumns();
  void OnHeader();
  /// The model's column for one of the tree that is not the swatch.
  static int ModelColumnOf(int column);
  /// The number of the icon that a model gives a row, 0 for none.
  unsigned IconOf(const QVariant& decoration);
  void OnSorted(int column, int direction);

  QPointer<QAbstractItemModel> m_model;
  std::function<QString(const QModelIndex&)> m_keyOf;
  std::unique_ptr<Factory> m_factory;
  QPersistentModelIndex m_rootIndex;
  ModelNode* m_root = nullptr;  // the control's
  Shown m_before;               // while the model changes its layout
  ModelNode* m_from = nullptr;  // while rows move from one to the other
  ModelNode* m_to = nullptr;
  // The node whose index was asked for last, which those of its neighbours follow from.
  mutable const ModelNode* m_near = nullptr;
  mutable QPersistentModelIndex m_nearIndex;
  std::map<std::pair<int, qint64>, unsigned> m_icons;  // by kind and by what the window system calls them
  bool m_hasRootIndex = false;
  bool m_sorts = false;
  bool m_fetchPending = false;
};

}  // namespace qd
