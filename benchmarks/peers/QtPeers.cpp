// Our panel in Qt's windows, with rows of its own and over a model of Qt, and what Qt offers itself: its tree view
// over the same model, its sorting and filtering proxy model between them, and its tree widget.

#include <QApplication>
#include <QHeaderView>
#include <QScreen>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QTreeWidget>
#include <algorithm>
#include <cstring>
#include <memory>

#include "benchmarks/peers/PanelPeer.h"
#include "benchmarks/peers/SampleModel.h"
#include "widgets/ItemModelTree.h"
#include "widgets/WorksTreePanel.h"

namespace qd::bench {
namespace {

constexpr QSize kSize(400, 800);

/// Counts the windows' paintings.
class Paintings final : public QObject {
 public:
  Paintings() { qApp->installEventFilter(this); }
  /// Handles events until nothing is drawn any more; returns whether anything was.
  bool Settle(const std::function<bool()>& isBusy = nullptr) {
    const int before = m_count;
    int quiet = 0;
    while (quiet < 2 || (isBusy && isBusy())) {
      const int count = m_count;
      QApplication::sendPostedEvents();
      QApplication::processEvents();
      quiet = m_count == count ? quiet + 1 : 0;
    }
    return m_count != before;
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++m_count;
    return false;
  }

 private:
  int m_count = 0;
};

void Show(QWidget& widget) {
  widget.resize(kSize);
  widget.show();
}

/// What is done to the model, whoever shows it.
class ModelPeer : public Peer {
 public:
  bool Insert() override {
    m_model->Insert();
    return true;
  }
  bool Change(const std::string& title) override {
    return m_model->setData(m_model->Leaf(0), QString::fromStdString(title), Qt::EditRole);
  }
  bool ChangeMany(std::size_t count, unsigned colour) override {
    m_model->ChangeColours(count, colour);
    return true;
  }
  bool CheckAll(bool checked) override {
    m_model->CheckAll(checked);
    return true;
  }
  unsigned FirstColour() override {
    return m_model->Leaf(0, 2).data(Qt::DecorationRole).value<QColor>().rgb() & 0xFFFFFFU;
  }
  std::size_t Checked() override { return m_model->Checked(); }

 protected:
  std::unique_ptr<SampleModel> m_model;
};

/// Qt's tree view over a model, which may be a proxy.
class ViewPeer final : public ModelPeer {
 public:
  explicit ViewPeer(bool hasProxy) : m_hasProxy(hasProxy) {}

  void Build(const Sample& sample) override {
    m_model = std::make_unique<SampleModel>(sample);
    if (m_hasProxy) {
      m_proxy = std::make_unique<QSortFilterProxyModel>();
      m_proxy->setRecursiveFilteringEnabled(true);
      m_proxy->setFilterCaseSensitivity(Qt::CaseInsensitive);
      m_proxy->setSourceModel(m_model.get());
    }
    m_view.setUniformRowHeights(true);
    m_view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view.setModel(&Model());
    m_view.expand(Of(m_model->Top()));
    Show(m_view);
  }
  bool Settle() override { return m_paintings.Settle(); }
  bool ExpandAll(bool open) override {
    if (open) {
      m_view.expandAll();
    } else {
      m_view.collapseAll();
      m_view.expand(Of(m_model->Top()));
    }
    return true;
  }
  bool ExpandFirst(bool open) override {
    m_view.setExpanded(Of(m_model->Branch(0)), open);
    return true;
  }
  bool ScrollTo(std::size_t position) override {
    m_view.setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    m_view.verticalScrollBar()->setValue(static_cast<int>(position));
    return true;
  }
  bool SelectAll(bool select) override {
    select ? m_view.selectAll() : m_view.clearSelection();
    return true;
  }
  bool Invert() override {
    // One range for each parent: there is no function for it.
    QItemSelection all(Of(m_model->Top()), Of(m_model->Top()));
    const auto add = [&](const QModelIndex& parent) {
      const int rows = Model().rowCount(parent);
      if (rows > 0) all.select(Model().index(0, 0, parent), Model().index(rows - 1, 0, parent));
    };
    add(Of(m_model->Top()));
    for (std::size_t i = 0; i < m_model->Of().Branches(); ++i) add(Of(m_model->Branch(i)));
    m_view.selectionModel()->select(all, QItemSelectionModel::Toggle | QItemSelectionModel::Rows);
    return true;
  }
  bool SelectRange() override {
    const QModelIndex parent = Of(m_model->FirstParent());
    const QItemSelection range(Model().index(0, 0, parent),
                               Model().index(Model().rowCount(parent) - 1, 0, parent));
    m_view.selectionModel()->select(range, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    return true;
  }
  bool Sort(bool byName) override {
    Model().sort(byName ? 0 : 1, Qt::AscendingOrder);
    return true;
  }
  bool Filter(const char* text) override {
    if (!m_hasProxy) return false;
    m_proxy->setFilterFixedString(text);
    if (*text == 0) m_view.expandAll();  // what comes back is closed
    return true;
  }
  std::size_t Visible() override { return VisibleBelow({}); }
  std::size_t Selected() override {
    std::size_t rows = 0;
    for (const QItemSelectionRange& range : m_view.selectionModel()->selection()) {
      rows += static_cast<std::size_t>(range.height());
    }
    return rows;
  }
  std::size_t Top() override { return static_cast<std::size_t>(m_view.verticalScrollBar()->value()); }
  std::string FirstTitle() override {
    return Model().index(0, 0, Of(m_model->FirstParent())).data().toString().toStdString();
  }

 private:
  QAbstractItemModel& Model() {
    return m_hasProxy ? static_cast<QAbstractItemModel&>(*m_proxy) : static_cast<QAbstractItemModel&>(*m_model);
  }
  QModelIndex Of(const QModelIndex& index) { return m_hasProxy ? m_proxy->mapFromSource(index) : index; }
  std::size_t VisibleBelow(QModelIndex parent) {
    std::size_t rows = 0;
    std::vector<QModelIndex> open{parent};
    while (!open.empty()) {
      parent = open.back();
      open.pop_back();
      const int count = Model().rowCount(parent);
      rows += static_cast<std::size_t>(count);
      for (int i = 0; i < count; ++i) {
        const QModelIndex index = Model().index(i, 0, parent);
        if (Model().hasChildren(index) && m_view.isExpanded(index)) open.push_back(index);
      }
    }
    return rows;
  }

  Paintings m_paintings;
  std::unique_ptr<QSortFilterProxyModel> m_proxy;
  bool m_hasProxy;
  QTreeView m_view;
};

/// Our panel over the same model, in the tree view's place.
class ModelTreePeer final : public ModelPeer {
 public:
  void Build(const Sample& sample) override {
    m_model = std::make_unique<SampleModel>(sample);
    m_tree.setModel(m_model.get());
    m_tree.setExpanded(m_model->Top(), true);
    Show(m_tree);
  }
  bool Settle() override {
    return m_paintings.Settle([this] { return m_tree.Bar().IsFilterDone() == 0; });
  }
  bool ExpandAll(bool open) override {
    if (open) {
      m_tree.expandAll();
    } else {
      Tree().ExpandBelow(Tree().GetRowAt(0), ExpandAction::Collapse);
    }
    return true;
  }
  bool ExpandFirst(bool open) override {
    m_tree.setExpanded(m_model->Branch(0), open);
    return true;
  }
  bool ScrollTo(std::size_t position) override {
    Tree().ScrollTo(position);
    return true;
  }
  bool SelectAll(bool select) override {
    select ? Tree().SelectAll(1) : Tree().ResetSelection(1);
    return true;
  }
  bool Invert() override {
    Tree().InvertSelection();
    return true;
  }
  bool SelectRange() override {
    const std::size_t first = m_model->Of().Branches() > 0 ? 2 : 1;
    const std::size_t rows = m_model->Of().Branches() > 0 ? m_model->Of().RowsOf(0) : m_model->Of().leaves;
    Tree().SelectRange(Tree().GetRowAt(first), Tree().GetRowAt(first + rows - 1), 1);
    return true;
  }
  bool Sort(bool byName) override {
    m_model->sort(byName ? 0 : 1, Qt::AscendingOrder);
    return true;
  }
  bool Filter(const char* text) override {
    if (*text == 0) {
      m_tree.Bar().ClearFilter();
      return true;
    }
    return m_tree.Bar().SetFilter(QString(text).toStdWString()) != 0;
  }
  std::size_t Visible() override { return Tree().VisibleRowCount(); }
  std::size_t Selected() override { return static_cast<std::size_t>(Tree().GetSelectedCount()); }
  std::size_t Top() override { return Tree().TopPosition(); }
  std::string FirstTitle() override {
    const CString title = Tree().GetItemText(Tree().GetRowAt(m_model->Of().Branches() > 0 ? 2 : 1), 0);
    return {title.begin(), title.end()};
  }

 private:
  CQDTreeListCtrl& Tree() const { return m_tree.Bar().GetTreeCtrl(); }

  Paintings m_paintings;
  ItemModelTree m_tree;
};

/// Qt's tree widget, which keeps an object for each row, as our panel's own rows do.
class WidgetPeer final : public Peer {
 public:
  void Build(const Sample& sample) override {
    m_tree.setColumnCount(3);
    m_tree.setHeaderLabels({"Item", "ID", "Color"});
    m_tree.setUniformRowHeights(true);
    m_tree.setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_top = new QTreeWidgetItem({QStringLiteral("Model")});
    const auto leaf = [&](QTreeWidgetItem* above) {
      const std::size_t number = m_leaves.size();
      auto* made = new QTreeWidgetItem(above);  // owned by the one above
      made->setText(0, QString::fromStdString(sample.Title(number)));
      made->setData(1, Qt::DisplayRole, static_cast<int>(number + 1));
      made->setData(2, Qt::DecorationRole, QColor::fromRgb(sample.Colour(number)));
      made->setCheckState(0, Qt::Checked);
      m_leaves.push_back(made);
      return made;
    };
    QTreeWidgetItem* above = m_top;
    if (sample.shape != Shape::Branches) {
      for (std::size_t i = 0; i < sample.leaves; ++i) {
        QTreeWidgetItem* made = leaf(above);
        if (sample.shape == Shape::Chain) above = made;
      }
    }
    for (std::size_t branch = 0; branch < sample.Branches(); ++branch) {
      m_branches.push_back(new QTreeWidgetItem(m_top, {"Branch " + QString::number(branch)}));
      for (std::size_t i = 0; i < sample.RowsOf(branch); ++i) leaf(m_branches.back());
    }
    m_tree.addTopLevelItem(m_top);
    m_tree.expandItem(m_top);
    Show(m_tree);
  }
  bool Settle() override { return m_paintings.Settle(); }
  bool ExpandAll(bool open) override {
    if (open) {
      m_tree.expandAll();
    } else {
      m_tree.collapseAll();
      m_tree.expandItem(m_top);
    }
    return true;
  }
  bool ExpandFirst(bool open) override {
    m_branches[0]->setExpanded(open);
    return true;
  }
  bool ScrollTo(std::size_t position) override {
    m_tree.setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    m_tree.verticalScrollBar()->setValue(static_cast<int>(position));
    return true;
  }
  bool SelectAll(bool select) override {
    select ? m_tree.selectAll() : m_tree.clearSelection();
    return true;
  }
  bool Sort(bool byName) override {
    m_tree.sortItems(byName ? 0 : 1, Qt::AscendingOrder);
    return true;
  }
  bool Filter(const char* text) override {
    for (QTreeWidgetItem* leaf : m_leaves) leaf->setHidden(!leaf->text(0).contains(text, Qt::CaseInsensitive));
    m_hidden = *text != 0;
    return true;
  }
  bool Insert() override {
    QTreeWidgetItem* above = m_branches.empty() ? m_top : m_branches[0];
    auto* made = new QTreeWidgetItem({"Screw", "7"});  // owned by the one above
    above->addChild(made);
    ++m_inserted;
    return true;
  }
  bool Change(const std::string& title) override {
    m_leaves[0]->setText(0, QString::fromStdString(title));
    return true;
  }
  bool ChangeMany(std::size_t count, unsigned colour) override {
    const QVariant value = QColor::fromRgb(colour);
    for (std::size_t i = 0; i < count; ++i)
      m_leaves[i * (m_leaves.size() / count)]->setData(2, Qt::DecorationRole, value);
    return true;
  }
  bool CheckAll(bool checked) override {
    for (QTreeWidgetItem* leaf : m_leaves) leaf->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
    return true;
  }
  std::size_t Visible() override {
    std::size_t rows = 1 + m_branches.size();
    const auto shown = [](const QTreeWidgetItem* leaf) {
      return !leaf->isHidden() && leaf->parent()->isExpanded();
    };
    rows += static_cast<std::size_t>(std::count_if(m_leaves.begin(), m_leaves.end(), shown));
    return rows + (m_hidden ? 0 : m_inserted);
  }
  std::size_t Selected() override {
    std::size_t rows = 0;
    for (const QItemSelectionRange& range : m_tree.selectionModel()->selection()) {
      rows += static_cast<std::size_t>(range.height());
    }
    return rows;
  }
  std::size_t Top() override { return static_cast<std::size_t>(m_tree.verticalScrollBar()->value()); }
  std::string FirstTitle() override {
    return (m_branches.empty() ? m_top : m_top->child(0))->child(0)->text(0).toStdString();
  }
  unsigned FirstColour() override {
    return m_leaves[0]->data(2, Qt::DecorationRole).value<QColor>().rgb() & 0xFFFFFFU;
  }
  std::size_t Checked() override {
    return static_cast<std::size_t>(
        std::count_if(m_leaves.begin(), m_leaves.end(),
                      [](const QTreeWidgetItem* leaf) { return leaf->checkState(0) == Qt::Checked; }));
  }

 private:
  Paintings m_paintings;
  QTreeWidget m_tree;
  QTreeWidgetItem* m_top = nullptr;          // the tree's
  std::vector<QTreeWidgetItem*> m_branches;  // likewise
  std::vector<QTreeWidgetItem*> m_leaves;    // likewise
  std::size_t m_inserted = 0;
  bool m_hidden = false;
};

bool Run(const Sample& sample, const char* which) {
  if (std::strcmp(which, "panel") == 0) {
    Paintings paintings;
    WorksTreePanel widget;
    PanelPeer peer(widget.Bar(), [&](const std::function<bool()>& isBusy) { return paintings.Settle(isBusy); });
    Show(widget);
    return DoWorks(peer, sample, which);
  }
  std::unique_ptr<Peer> peer;
  if (std::strcmp(which, "ItemModelTree") == 0) peer = std::make_unique<ModelTreePeer>();
  if (std::strcmp(which, "QTreeView") == 0) peer = std::make_unique<ViewPeer>(false);
  if (std::strcmp(which, "QSortFilterProxyModel") == 0) peer = std::make_unique<ViewPeer>(true);
  if (std::strcmp(which, "QTreeWidget") == 0) peer = std::make_unique<WidgetPeer>();
  return peer != nullptr && DoWorks(*peer, sample, which);
}

}  // namespace
}  // namespace qd::bench

int main(int count, char** arguments) {
  const QApplication application(count, arguments);
  using namespace qd::bench;
  return Run(SampleOf(count, arguments), count > 3 ? arguments[3] : "panel") ? 0 : 1;
}
