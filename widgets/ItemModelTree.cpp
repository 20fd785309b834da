#include "widgets/ItemModelTree.h"

#include <QEvent>
#include <QMimeData>

#include <QTimer>
#include <algorithm>
#include <unordered_map>

#include "host/CQDNullDocument.h"
#include "platform/qt/QtConvert.h"
#include "platform/qt/QtToolkit.h"
#include "qd_wrt/core/Factories.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "qd_wrt/treelist/TreeState.h"
#include "widgets/ModelNode.h"

namespace qd {

namespace {
constexpr int kTreeType = 1;
constexpr int kSwatchEnd = TreeColumns::kSwatch + 1;

/// The tree's column for one of the model: the swatch stands between them.
int ColumnOf(int column) {
  return column < TreeColumns::kSwatch ? column : column + 1;
}
}  // namespace

int ItemModelTree::ModelColumnOf(int column) {
  return column < TreeColumns::kSwatch ? column : column - 1;
}

class ItemModelTree::Factory final : public IQDTreeGroupFactory {
 public:
  explicit Factory(ItemModelTree& tree) : m_tree(tree) {}
  ~Factory() override = default;
  CQDNullDocument& Document() { return m_doc; }

  CQDTreeItem* CreateRootItem(int, CQDTreeListCtrl* control) override {
    return m_tree.m_root = new ModelNode(control, nullptr, m_tree, {});  // the control's
  }

 private:
  ItemModelTree& m_tree;
  CQDNullDocument m_doc;
};

ItemModelTree::ItemModelTree(QWidget* parent)
    : WorksTreePanel(parent), m_factory(std::make_unique<Factory>(*this)) {
  Tree().SetOnSelectionChanged([this] { emit selectionChanged(); });
  Tree().SetOnSorted([this](int column, int direction) { OnSorted(column, direction); });
  QtToolkit::WidgetOf(Tree())->installEventFilter(this);
  Rebuild();
}

ItemModelTree::~ItemModelTree() {
  Tree().SetOnSelectionChanged(nullptr);
  Tree().SetOnSorted(nullptr);
  Tree().CreateTreeItems(kTreeType, nullptr, nullptr, 0);  // it forgets the document, too
}

void ItemModelTree::setModel(QAbstractItemModel* model) {
  if (m_model != nullptr) m_model->disconnect(this);
  m_model = model;
  m_rootIndex = QModelIndex();
  if (m_model != nullptr) Follow();
  Rebuild();
}

void ItemModelTree::setRootIndex(const QModelIndex& index) {
  if (index.isValid() && index.model() != m_model) return;
  m_rootIndex = index.siblingAtColumn(0);
  Rebuild();
}

// ---- nodes and indexes ----------------------------------------------------------------------------------

QModelIndex ItemModelTree::IndexOf(const ModelNode& node) const {
  if (m_model == nullptr || node.IsDetached()) return {};
  std::vector<std::size_t> path;
  const ModelNode* at = &node;
  for (; at->Above() != nullptr && !IsNear(*at); at = at->Above()) {
    path.push_back(Tree().GetPlaceOf(at->GetTreeItemHandle()));
  }
  QModelIndex index = at->Above() != nullptr ? m_nearIndex : m_rootIndex;
  for (auto place = path.rbegin(); place != path.rend(); ++place) {
    index = m_model->index(static_cast<int>(*place), 0, index);
  }
  return index;
}

QModelIndex ItemModelTree::IndexBelow(const ModelNode& node, std::size_t place) const {
  if (m_model == nullptr || node.IsDetached()) return {};
  if (!IsNear(node)) {
    m_nearIndex = IndexOf(node);
    m_near = &node;
  }
  return m_model->index(static_cast<int>(place), 0, m_nearIndex);
}

/// Whether the index of a node is at hand.
bool ItemModelTree::IsNear(const ModelNode& node) const {
  return m_near == &node && (m_nearIndex.isValid() || node.Above() == nullptr);
}

/// A node goes.
void ItemModelTree::Forget(const ModelNode& node) {
  if (m_near == &node) m_near = nullptr;
}

/// The rows that lead from what is shown down to an index, the last one first. False for an index elsewhere.
bool ItemModelTree::PathTo(const QModelIndex& index, std::vector<std::size_t>& rows) const {
  QModelIndex at = index;
  for (; at.isValid() && at != m_rootIndex; at = at.parent()) rows.push_back(static_cast<std::size_t>(at.row()));
  return at == m_rootIndex;
}

/// How many rows stand below a node.
std::size_t ItemModelTree::RowsOf(const ModelNode& node) const {
  return static_cast<std::size_t>(Tree().GetChildCount(node.GetTreeItemHandle()));
}

/// The node of a row below another one, null when it was not made.
ModelNode* ItemModelTree::MadeBelow(const ModelNode& node, std::size_t place) const {
  return static_cast<ModelNode*>(Tree().MadeNodeOf(Tree().GetChildAt(node.GetTreeItemHandle(), place)));
}

ModelNode* ItemModelTree::NodeOf(const QModelIndex& index) const {
  std::vector<std::size_t> rows;
  if (!PathTo(index, rows)) return nullptr;
  ModelNode* node = m_root;
  for (auto row = rows.rbegin(); row != rows.rend() && node != nullptr; ++row) node = MadeBelow(*node, *row);
  return node;
}

ModelNode* ItemModelTree::MakeNodeOf(const QModelIndex& index) {
  const CQDTreeListCtrl::Handler handler(Tree());
  std::vector<std::size_t> rows;
  if (!PathTo(index, rows)) return nullptr;
  ModelNode* node = m_root;
  for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
    MakeRows(*node);
    if (node->IsDetached()) return nullptr;
    node = static_cast<ModelNode*>(Tree().NodeOf(Tree().GetChildAt(node->GetTreeItemHandle(), *row)));
    if (node == nullptr || node->IsDetached()) return nullptr;
  }
  return node;
}

CQDTreeListCtrl& ItemModelTree::Tree() const {
  return Bar().GetTreeCtrl();
}

void ItemModelTree::MakeRows(ModelNode& node) {
  if (m_model == nullptr || node.IsDetached() || node.IsMade()) return;
  const CQDTreeListCtrl::Handler handler(Tree());
  const QPersistentModelIndex index = IndexOf(node);
  // What it fetches it announces, which is nothing to those who have no rows yet.
  if (m_model->canFetchMore(index)) m_model->fetchMore(index);
  if (m_model == nullptr || node.IsDetached() || node.IsMade()) return;
  const int rows = m_model->rowCount(index);
  if (m_model == nullptr || node.IsDetached() || node.IsMade()) return;
  if (rows == 0 && m_model->hasChildren(index)) {
    // It fetches them meanwhile.
    node.SetWanted(true);
    return node.PromiseChildren(1);
  }
  node.SetMade();
  node.PromiseChildren(0);
  node.SupplyRows(0, static_cast<std::size_t>(std::max(rows, 0)));
  FetchSoon();
}

void ItemModelTree::Rebuild() {
  m_from = m_to = nullptr;
  m_near = nullptr;
  m_hasRootIndex = m_rootIndex.isValid();
  CQDTreeListCtrl& tree = Tree();
  const CQDTreeListCtrl::Handler handler(tree);
  tree.CreateTreeItems(kTreeType, &m_factory->Document(), m_factory.get(), 1);
  MakeRows(*m_root);
  OnHeader();
}

// ---- what the model tells -------------------------------------------------------------------------------

void ItemModelTree::Follow() {
  using Model = QAbstractItemModel;
  const Model* model = m_model;
  connect(model, &Model::rowsInserted, this, &ItemModelTree::OnInserted);
  connect(model, &Model::rowsRemoved, this, &ItemModelTree::OnRemoved);
  // Afterwards the parents may stand at other places themselves.
  connect(model, &Model::rowsAboutToBeMoved, this,
          [this](const QModelIndex& from, int, int, const QModelIndex& to) {
            m_from = NodeOf(from);
            m_to = NodeOf(to);
          });
  connect(model, &Model::rowsMoved, this,
          [this](const QModelIndex& from, int first, int last, const QModelIndex& to, int before) {
            if (from.column() <= 0 && to.column() <= 0) OnMoved(first, last, before);
          });
  connect(model, &Model::dataChanged, this, &ItemModelTree::OnChanged);
  connect(model, &Model::layoutAboutToBeChanged, this, [this] { m_before = WhatIsShown(); });
  connect(model, &Model::layoutChanged, this, [this] {
    Rebuild();
    ShowAgain(std::exchange(m_before, {}));
  });
  connect(model, &Model::headerDataChanged, this, &ItemModelTree::OnHeader);
  connect(model, &Model::columnsInserted, this, &ItemModelTree::OnColumns);
  connect(model, &Model::columnsRemoved, this, &ItemModelTree::OnColumns);
  connect(model, &Model::columnsMoved, this, &ItemModelTree::OnColumns);
  connect(model, &Model::modelReset, this, &ItemModelTree::Rebuild);
  connect(model, &QObject::destroyed, this, &ItemModelTree::Rebuild);
}

// Rows stand below the first column. What cannot be is not believed, and the model is read anew.

void ItemModelTree::OnInserted(const QModelIndex& parent, int first, int last) {
  if (parent.column() > 0) return;
  const CQDTreeListCtrl::Handler handler(Tree());
  ModelNode* node = NodeOf(parent);
  if (node == nullptr) return;
  if (!node->IsMade()) {
    node->PromiseChildren(1);
    if (!node->IsWanted()) return;
    node->SetWanted(false);
    return node == m_root ? MakeRows(*node) : node->Expand(1);
  }
  if (first < 0 || last < first || static_cast<std::size_t>(first) > RowsOf(*node)) return Rebuild();
  node->SupplyRows(static_cast<std::size_t>(first), static_cast<std::size_t>(last - first) + 1);
  FetchSoon();
}

void ItemModelTree::OnRemoved(const QModelIndex& parent, int first, int last) {
  if (parent.column() > 0) return;
  const CQDTreeListCtrl::Handler handler(Tree());
  if (std::exchange(m_hasRootIndex, m_rootIndex.isValid()) != m_rootIndex.isValid()) return Rebuild();
  ModelNode* node = NodeOf(parent);
  if (node == nullptr) return;
  if (!node->IsMade()) return node->PromiseChildren(m_model->hasChildren(parent) ? 1 : 0);
  if (first < 0 || last < first || static_cast<std::size_t>(last) >= RowsOf(*node)) return Rebuild();
  node->TakeSupplied(static_cast<std::size_t>(first), static_cast<std::size_t>(last - first) + 1);
}

void ItemModelTree::OnMoved(int first, int last, int before) {
  ModelNode* from = std::exchange(m_from, nullptr);
  ModelNode* to = std::exchange(m_to, nullptr);
  const CQDTreeListCtrl::Handler handler(Tree());
  if (first < 0 || last < first || before < 0) return Rebuild();
  const auto at = static_cast<std::size_t>(first);
  const auto count = static_cast<std::size_t>(last - first) + 1;
  const auto place = static_cast<std::size_t>(before);
  const bool leaves = from != nullptr && from->IsMade();
  const bool comes = to != nullptr && to->IsMade();
  if (leaves && at + count > RowsOf(*from)) return Rebuild();
  if (comes && place > RowsOf(*to)) return Rebuild();
  if (leaves && comes) {
    if (from->MoveSupplied(at, count, *to, place) == 0) return Rebuild();
  } else if (leaves) {
    from->TakeSupplied(at, count);
  } else if (comes) {
    to->SupplyRows(place, count);
  }
  if (to != nullptr && !comes) to->PromiseChildren(1);
  if (from != nullptr && !leaves) from->PromiseChildren(m_model->hasChildren(IndexOf(*from)) ? 1 : 0);
}

void ItemModelTree::OnChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight) {
  if (!topLeft.isValid() || !bottomRight.isValid()) return OnColumns();
  const ModelNode* node = topLeft.parent().column() <= 0 ? NodeOf(topLeft.parent()) : nullptr;
  if (node == nullptr) return;
  Refresh(*node, static_cast<std::size_t>(topLeft.row()), static_cast<std::size_t>(bottomRight.row()));
}

/// Rows below a node may look otherwise. Those that nobody has looked at are asked for when somebody does.
void ItemModelTree::Refresh(const ModelNode& node, std::size_t first, std::size_t last) {
  if (RowsOf(node) == 0 || first >= RowsOf(node)) return;
  const CQDTreeListCtrl::Handler handler(Tree());
  const std::weak_ptr<void> life = Tree().Life();
  const auto show = [&](ModelNode* made, std::size_t place) {
    if (const QModelIndex index = IndexBelow(node, place); index.isValid()) made->Refresh(index);
  };
  last = std::min(last, RowsOf(node) - 1);
  Tree().TellLaterChanged(Tree().GetChildAt(node.GetTreeItemHandle(), first), last - first + 1);
  if (last - first < static_cast<std::size_t>(node.GetChildCount())) {
    for (std::size_t place = first; place <= last; ++place) {
      if (ModelNode* made = MadeBelow(node, place)) show(made, place);
      if (life.expired() || node.IsDetached()) return;
    }
    return;
  }
  for (CQDTreeItem* made : node.Children()) {
    if (life.expired() || node.IsDetached()) return;
    if (made->IsDetached() || !made->GetTreeItemHandle()) continue;
    const std::size_t place = Tree().GetPlaceOf(made->GetTreeItemHandle());
    if (place >= first && place <= last) show(static_cast<ModelNode*>(made), place);
  }
}

/// Everything may look otherwise, in the same rows.
void ItemModelTree::OnColumns() {
  const CQDTreeListCtrl::Handler handler(Tree());
  const std::weak_ptr<void> life = Tree().Life();
  std::vector<const ModelNode*> nodes{m_root};
  while (!nodes.empty()) {
    const ModelNode* node = nodes.back();
    nodes.pop_back();
    if (node->IsDetached()) continue;
    Refresh(*node, 0, RowsOf(*node));
    if (life.expired()) return;
    for (const CQDTreeItem* made : node->Children()) nodes.push_back(static_cast<const ModelNode*>(made));
  }
  OnHeader();
}

/// As many columns as the model has; the first two and the swatch are always there.
void ItemModelTree::OnHeader() {
  constexpr int kMost = 1000;
  const int columns = m_model != nullptr ? std::min(m_model->columnCount(m_rootIndex), kMost) : 0;
  CQDTreeListCtrl& tree = Tree();
  while (tree.GetColumnsNum() > std::max(ColumnOf(columns), kSwatchEnd)) Bar().RemoveLastColumn();
  while (tree.GetColumnsNum() < ColumnOf(columns)) Bar().AddColumn({.sortable = m_sorts});
  for (int column = 0; column < std::max(columns, 2); ++column) {
    const bool has = column < columns;
    Bar().SetColumnTitle(ColumnOf(column),
                         has ? FromQt(m_model->headerData(column, Qt::Horizontal).toString()) : CString());
  }
  tree.Invalidate();
}

unsigned ItemModelTree::IconOf(const QVariant& decoration) {
  qint64 key = 0;
  QIcon icon;
  QImage image;
  if (decoration.userType() == QMetaType::QIcon) {
    icon = decoration.value<QIcon>();
    key = icon.cacheKey();
  } else if (decoration.userType() == QMetaType::QPixmap) {
    icon = QIcon(decoration.value<QPixmap>());
    key = decoration.value<QPixmap>().cacheKey();
  } else if (decoration.userType() == QMetaType::QImage) {
    image = decoration.value<QImage>();
    key = image.cacheKey();
  } else {
    return 0;
  }
  constexpr std::size_t kMany = 4096;
  if (m_icons.size() >= kMany) m_icons.clear();  // a model that makes them anew each time
  const auto [known, isNew] =
      m_icons.try_emplace({decoration.userType(), key});  // each kind counts its keys by itself
  if (isNew) known->second = image.isNull() ? IconNumber(icon) : IconNumber(image);
  return known->second;
}

// ---- sorting --------------------------------------------------------------------------------------------

void ItemModelTree::setSortingEnabled(bool enabled) {
  m_sorts = enabled;
  for (int column = 0; column < Tree().GetColumnsNum(); ++column) {
    Bar().SetColumnSortable(column, enabled && column != TreeColumns::kSwatch);
  }
}

void ItemModelTree::sortByColumn(int column, Qt::SortOrder order) {
  if (column >= 0) Tree().SortByColumn(ColumnOf(column), order == Qt::AscendingOrder ? 1 : -1);
}

/// Rows are supplied, so that the tree has left them as they stand. Models know no way back to no order.
void ItemModelTree::OnSorted(int column, int direction) {
  if (m_model == nullptr) return;
  if (direction == 0) return Tree().SortByColumn(column, 1);
  m_model->sort(ModelColumnOf(column), direction < 0 ? Qt::DescendingOrder : Qt::AscendingOrder);
}

// ---- what is shown of it --------------------------------------------------------------------------------

ItemModelTree::Shown ItemModelTree::WhatIsShown() const {
  Shown shown;
  const CQDTreeListCtrl& tree = Tree();
  shown.allSelected = tree.GetSelectedRowCount() == tree.RowCount() && tree.RowCount() != 0;
  if (!shown.allSelected) {
    for (const QModelIndex& index : selectedIndexes()) shown.selected.append(index);
  }
  if (const CQDTreeItem* node = tree.NodeOf(tree.GetFocusedItem())) {
    shown.focused = IndexOf(static_cast<const ModelNode&>(*node));
  }
  shown.top = tree.TopPosition();
  m_root->ForEachBelow([&](const CQDTreeItem* node) {
    if (tree.IsExpanded(node->GetTreeItemHandle())) {
      shown.open.append(IndexBelow(*static_cast<const ModelNode*>(node->GetParent()),
                                   tree.GetPlaceOf(node->GetTreeItemHandle())));
    }
  });
  return shown;
}

/// Those above others come first, so each finds its row.
void ItemModelTree::ShowAgain(const Shown& shown) {
  for (const QPersistentModelIndex& index : shown.open) setExpanded(index, true);
  if (shown.allSelected) Tree().SelectAll(1);
  for (const QPersistentModelIndex& index : shown.selected) {
    if (const ModelNode* above = NodeOf(index.parent()); above != nullptr && index.isValid()) {
      const auto place = static_cast<std::size_t>(index.row());
      Tree().SetItemState(Tree().GetChildAt(above->GetTreeItemHandle(), place), kRowSelected, kRowSelected);
    }
  }
  ModelNode* focused = shown.focused.isValid() ? MakeNodeOf(shown.focused) : nullptr;
  if (focused != nullptr) Tree().SetItemState(focused->GetTreeItemHandle(), kRowFocused, kRowFocused);
  Tree().ScrollTo(shown.top);
}

void ItemModelTree::setExpanded(const QModelIndex& index, bool expanded) {
  if (!index.isValid() || index.model() != m_model) return;
  const CQDTreeListCtrl::Handler handler(Tree());
  const QModelIndex first = index.siblingAtColumn(0);
  ModelNode* node = expanded ? MakeNodeOf(first) : NodeOf(first);
  if (node != nullptr) node->Expand(expanded ? 1 : 0);
}

bool ItemModelTree::isExpanded(const QModelIndex& index) const {
  const ModelNode* node = index.isValid() && index.model() == m_model ? NodeOf(index.siblingAtColumn(0)) : nullptr;
  return node != nullptr && Tree().IsExpanded(node->GetTreeItemHandle());
}

void ItemModelTree::expandAll() {
  const CQDTreeListCtrl::Handler handler(Tree());  // nodes that go meanwhile stay readable
  std::vector<ModelNode*> nodes{m_root};
  while (!nodes.empty()) {
    ModelNode* node = nodes.back();
    nodes.pop_back();
    if (m_model == nullptr || node->IsDetached()) continue;
    MakeRows(*node);
    if (!node->IsDetached()) node->Expand(1);
    if (node->IsDetached()) continue;
    std::vector<ModelNode*> below;
    std::size_t place = 0;
    for (HTREEITEM row = Tree().GetChildItem(node->GetTreeItemHandle()); row; ++place) {
      const QModelIndex index = IndexBelow(*node, place);
      const bool opens = index.isValid() && m_model->hasChildren(index);
      ModelNode* made = opens ? static_cast<ModelNode*>(Tree().NodeOf(row)) : nullptr;
      if (made != nullptr) below.push_back(made);
      row = Tree().GetNextSiblingItem(row);
    }
    nodes.insert(nodes.end(), below.rbegin(), below.rend());
  }
}

void ItemModelTree::setCurrentIndex(const QModelIndex& index) {
  if (!index.isValid() || index.model() != m_model) return;
  ModelNode* node = MakeNodeOf(index.siblingAtColumn(0));
  if (node != nullptr) Tree().SelectCTItem(node);
}

QModelIndexList ItemModelTree::selectedIndexes() const {
  return IndexesOf(Tree().GetSelectedItems());
}

QModelIndexList ItemModelTree::IndexesOf(const std::vector<HTREEITEM>& rows) const {
  QModelIndexList indexes;
  indexes.reserve(static_cast<qsizetype>(rows.size()));
  const CQDTreeListCtrl& tree = Tree();
  HTREEITEM former;
  std::size_t place = 0;
  for (const HTREEITEM row : rows) {
    const HTREEITEM above = tree.GetParentItem(row);
    place = former && tree.GetNextSiblingItem(former) == row ? place + 1 : tree.GetPlaceOf(row);
    former = row;
    const auto* node = above ? static_cast<const ModelNode*>(tree.MadeNodeOf(above)) : m_root;
    indexes.append(node != nullptr ? IndexBelow(*node, place) : QModelIndex());
  }
  return indexes;
}

/// The names of rows in a saved state, as bytes.
class ItemModelTree::Keys final : public ITreeKeys {
 public:
  explicit Keys(const ItemModelTree& tree) : m_tree(tree) {}

  std::string KeyOf(HTREEITEM row) override {
    const ModelNode* above = NodeOf(m_tree.Tree().GetParentItem(row));
    return above != nullptr ? KeyAt(*above, m_tree.Tree().GetPlaceOf(row)) : std::string();
  }
  HTREEITEM FindBelow(HTREEITEM parent, const std::string& key) override {
    const ModelNode* above = NodeOf(parent);
    if (above == nullptr) return {};
    const auto [places, isNew] = m_places.try_emplace(parent.value);
    for (std::size_t place = 0; isNew && place < m_tree.RowsOf(*above); ++place) {
      places->second.try_emplace(KeyAt(*above, place), place);
    }
    const auto found = places->second.find(key);
    return found != places->second.end() ? m_tree.Tree().GetChildAt(parent, found->second) : HTREEITEM{};
  }

 private:
  const ModelNode* NodeOf(HTREEITEM row) const {
    return row ? static_cast<const ModelNode*>(m_tree.Tree().NodeOf(row)) : m_tree.m_root;
  }
  std::string KeyAt(const ModelNode& above, std::size_t place) const {
    const QModelIndex index = m_tree.IndexBelow(above, place);
    if (!index.isValid()) return {};
    return (m_tree.m_keyOf ? m_tree.m_keyOf(index) : index.data().toString()).toStdString();
  }

  const ItemModelTree& m_tree;
  std::unordered_map<std::uint64_t, std::unordered_map<std::string, std::size_t>> m_places;  // by parent and key
};

QByteArray ItemModelTree::saveState() const {
  Keys keys(*this);
  return QByteArray::fromStdString(SaveTreeState(Tree(), keys, Bar().GetColumnLayout()));
}

bool ItemModelTree::restoreState(const QByteArray& state) {
  const CQDTreeListCtrl::Handler handler(Tree());
  Keys keys(*this);
  ColumnLayout columns;
  const std::string_view text(state.constData(), static_cast<std::size_t>(state.size()));
  if (RestoreTreeState(Tree(), keys, text, columns) == 0) return false;
  Bar().SetColumnLayout(columns);
  return true;
}

// ---- what the user does ---------------------------------------------------------------------------------

/// As views of Qt do: the model takes a copy, and gives the original up when it was to be moved.
void ItemModelTree::Drop(const QModelIndex& target, const std::vector<CQDTreeItem*>& dragged) {
  if (m_model == nullptr || !target.flags().testFlag(Qt::ItemIsDropEnabled)) return;
  QModelIndexList indexes;
  QList<QPersistentModelIndex> originals;
  for (const CQDTreeItem* node : dragged) {
    indexes.append(IndexOf(static_cast<const ModelNode&>(*node)));
    originals.append(indexes.back());
  }
  // A row below itself would go with the original.
  for (QModelIndex above = target; above.isValid(); above = above.parent()) {
    if (indexes.contains(above)) return;
  }
  const std::unique_ptr<QMimeData> carried(m_model->mimeData(indexes));
  const bool moves = m_model->supportedDropActions().testFlag(Qt::MoveAction);
  const Qt::DropAction action = moves ? Qt::MoveAction : Qt::CopyAction;
  if (carried == nullptr || !m_model->canDropMimeData(carried.get(), action, -1, -1, target)) return;
  if (!m_model->dropMimeData(carried.get(), action, -1, -1, target) || !moves) return;
  for (const QPersistentModelIndex& original : originals) {
    if (original.isValid()) m_model->removeRow(original.row(), original.parent());
  }
}

/// Whatever brings other rows into sight, they are painted then.
bool ItemModelTree::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Paint) FetchSoon();
  return WorksTreePanel::eventFilter(watched, event);
}

void ItemModelTree::FetchSoon() {
  if (std::exchange(m_fetchPending, true)) return;
  QTimer::singleShot(0, this, &ItemModelTree::FetchInSight);
}

/// A model that has more fetches it when the last row of a branch comes into sight.
void ItemModelTree::FetchInSight() {
  m_fetchPending = false;
  if (m_model == nullptr) return;
  const CQDTreeListCtrl& tree = Tree();
  std::vector<QPersistentModelIndex> wanting;
  std::size_t position = tree.TopPosition();
  for (int line = 0; line < tree.GetVisibleCount(); ++line, ++position) {
    HTREEITEM row = tree.GetRowAt(position);
    // The last row of all below it ends the branches above it, too.
    for (; row && !tree.GetNextSiblingItem(row); row = tree.GetParentItem(row)) {
      const HTREEITEM above = tree.GetParentItem(row);
      const auto* node = above ? static_cast<const ModelNode*>(tree.MadeNodeOf(above)) : m_root;
      if (node == nullptr) break;
      const QModelIndex index = IndexOf(*node);
      const bool known = std::find(wanting.begin(), wanting.end(), index) != wanting.end();
      if (!known && m_model->canFetchMore(index)) wanting.emplace_back(index);
    }
  }
  for (const QPersistentModelIndex& index : wanting) {
    if (m_model != nullptr && m_model->canFetchMore(index)) m_model->fetchMore(index);
  }
}

}  // namespace qd
