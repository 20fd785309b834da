// Any model of Qt as a tree of ours: whatever the model does, the tree shows it, and what users do reaches the
// model.

#include "widgets/ItemModelTree.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QColor>
#include <QMimeData>
#include <QStandardItemModel>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <random>

#include "Display.h"
#include "platform/qt/QtConvert.h"
#include "platform/qt/QtToolkit.h"
#include "qd_wrt/core/CQDTreeIcon.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/panel/CWorksTreeBar.h"

namespace qd::test {
namespace {

struct Item {
  Item* parent = nullptr;
  QString name;
  bool on = false;
  std::vector<std::unique_ptr<Item>> below;
  std::size_t known = 0;  // of these, to a model that fetches; all others are known to it
};

/// A tree that can do all that models can do: rows come, go, move, are fetched late, and change their layout.
class Model final : public QAbstractItemModel {
 public:
  explicit Model(bool fetches) : m_fetches(fetches) {}

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override {
    if (!hasIndex(row, column, parent)) return {};
    return createIndex(row, column, Of(parent).below[static_cast<std::size_t>(row)].get());
  }
  QModelIndex parent(const QModelIndex& index) const override {
    return index.isValid() ? IndexOf(*Of(index).parent) : QModelIndex();
  }
  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.column() > 0 ? 0 : static_cast<int>(Known(Of(parent)));
  }
  int columnCount(const QModelIndex& = {}) const override { return 2; }
  bool hasChildren(const QModelIndex& parent = {}) const override {
    return parent.column() <= 0 && !Of(parent).below.empty();
  }
  bool canFetchMore(const QModelIndex& parent) const override {
    return Known(Of(parent)) < Of(parent).below.size();
  }
  void fetchMore(const QModelIndex& parent) override {
    if (!canFetchMore(parent)) return;
    constexpr std::size_t kAtOnce = 3;
    Item& item = Of(parent);
    const std::size_t known = std::min(item.known + kAtOnce, item.below.size());
    beginInsertRows(parent, static_cast<int>(item.known), static_cast<int>(known) - 1);
    item.known = known;
    endInsertRows();
  }
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override {
    if (!index.isValid()) return {};
    const Item& item = Of(index);
    if (index.column() == 1) return role == Qt::DisplayRole ? QVariant(item.name.size()) : QVariant();
    if (role == Qt::DisplayRole || role == Qt::EditRole) return item.name;
    if (role == Qt::CheckStateRole) return item.on ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::DecorationRole) return item.on ? QColor(Qt::red) : QColor(Qt::blue);
    return {};
  }
  bool setData(const QModelIndex& index, const QVariant& value, int role) override {
    if (role == Qt::EditRole && value.toString() == "refused") return false;
    if (role == Qt::EditRole) Of(index).name = value.toString();
    if (role == Qt::CheckStateRole) Of(index).on = value.toInt() == Qt::Checked;
    emit dataChanged(index, index.siblingAtColumn(1));
    return true;
  }
  Qt::ItemFlags flags(const QModelIndex& index) const override {
    if (!index.isValid()) return {};
    return QAbstractItemModel::flags(index) | Qt::ItemIsEditable | Qt::ItemIsUserCheckable;
  }

  void Insert(const QModelIndex& parent, int row, int count) {
    beginInsertRows(parent, row, row + count - 1);
    Put(Of(parent), row, count);
    Of(parent).known += static_cast<std::size_t>(count);
    endInsertRows();
  }
  /// Behind all others, to be fetched.
  void InsertLate(const QModelIndex& parent, int count) {
    Put(Of(parent), static_cast<int>(Of(parent).below.size()), count);
  }
  void Remove(const QModelIndex& parent, int first, int last) {
    Item& item = Of(parent);
    beginRemoveRows(parent, first, last);
    item.below.erase(item.below.begin() + first, item.below.begin() + last + 1);
    item.known -= static_cast<std::size_t>(last - first + 1);
    endRemoveRows();
  }
  void Move(const QModelIndex& from, int first, int last, const QModelIndex& to, int before) {
    Item& source = Of(from);
    Item& target = Of(to);
    if (!beginMoveRows(from, first, last, to, before)) return;
    std::vector<std::unique_ptr<Item>> moved;
    for (int row = first; row <= last; ++row)
      moved.push_back(std::move(source.below[static_cast<std::size_t>(row)]));
    source.below.erase(source.below.begin() + first, source.below.begin() + last + 1);
    source.known -= moved.size();
    const auto at = &source == &target && before > last ? before - static_cast<int>(moved.size()) : before;
    target.known += moved.size();
    for (std::size_t i = 0; i < moved.size(); ++i) {
      moved[i]->parent = &target;
      target.below.insert(target.below.begin() + at + static_cast<int>(i), std::move(moved[i]));
    }
    endMoveRows();
  }
  void Reverse(const QModelIndex& parent) {
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<Item*> items;
    for (const QModelIndex& index : before) items.push_back(&Of(index));
    Item& item = Of(parent);
    std::reverse(item.below.begin(), item.below.begin() + static_cast<std::ptrdiff_t>(Known(item)));
    QModelIndexList after;
    for (std::size_t i = 0; i < items.size(); ++i) {
      after.append(IndexOf(*items[i]).siblingAtColumn(before[static_cast<qsizetype>(i)].column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
  }
  void Reset() {
    beginResetModel();
    endResetModel();
  }

 private:
  void Put(Item& item, int row, int count) {
    for (int i = 0; i < count; ++i) {
      auto fresh = std::make_unique<Item>();
      fresh->parent = &item;
      fresh->name = QString::number(++m_last);
      if (m_fetches && count < 4 && m_last % 3 == 0) Put(*fresh, 0, 7);  // to be fetched
      item.below.insert(item.below.begin() + row, std::move(fresh));
    }
  }
  Item& Of(const QModelIndex& index) const {
    return index.isValid() ? *static_cast<Item*>(index.internalPointer()) : const_cast<Item&>(m_top);
  }
  std::size_t Known(const Item& item) const { return m_fetches ? item.known : item.below.size(); }
  QModelIndex IndexOf(const Item& item) const {
    if (item.parent == nullptr) return {};
    const auto& siblings = item.parent->below;
    const auto at =
        std::find_if(siblings.begin(), siblings.end(), [&](const auto& one) { return one.get() == &item; });
    return createIndex(static_cast<int>(at - siblings.begin()), 0, const_cast<Item*>(&item));
  }

  bool m_fetches;
  Item m_top;
  int m_last = 0;
};

/// What the model has, below rows that are open in the tree.
QString Wanted(const ItemModelTree& tree, const QAbstractItemModel& model, const QModelIndex& parent = {}) {
  QString text;
  for (int row = 0; row < model.rowCount(parent); ++row) {
    const QModelIndex index = model.index(row, 0, parent);
    text += index.data().toString() + (index.data(Qt::CheckStateRole).toInt() != Qt::Unchecked ? "x" : "");
    text += ":" + index.siblingAtColumn(1).data().toString();
    if (tree.isExpanded(index) && model.rowCount(index) != 0) {
      text += "[" + Wanted(tree, model, index) + "]";
    } else if (model.hasChildren(index)) {
      text += "+";
    }
    text += " ";
  }
  return text;
}

/// What the tree shows.
QString Seen(CQDTreeListCtrl& tree, HTREEITEM parent = {}) {
  QString text;
  for (HTREEITEM row = tree.GetChildItem(parent); row; row = tree.GetNextSiblingItem(row)) {
    text += ToQt(tree.GetItemText(row, 0)) + (tree.WhichCheck(row) == kChecked ? "x" : "");
    text += ":" + ToQt(tree.GetItemText(row, 1));
    if (tree.IsExpanded(row) && tree.ItemHasChildren(row)) {
      text += "[" + Seen(tree, row) + "]";
    } else if (tree.CanOpen(row)) {
      text += "+";
    }
    text += " ";
  }
  return text;
}

/// With a toolkit of its own: the one that a widget makes would stay, and other tests make theirs.
class ItemModelTrees : public ::testing::Test {
 private:
  QtToolkit m_toolkit;
};

class ItemModel : public ItemModelTrees, public ::testing::WithParamInterface<bool> {};

TEST_P(ItemModel, IsShownAsItIsWhateverItDoes) {
  Model model(GetParam());
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  tester.setUseFetchMore(false);  // it would fetch while it hears of rows
  ItemModelTree tree;
  tree.resize(300, 200);
  tree.show();
  tree.setModel(&model);
  CQDTreeListCtrl& control = tree.Bar().GetTreeCtrl();
  std::mt19937 random(7);
  const auto roll = [&random](int below) {
    return below <= 0 ? 0 : static_cast<int>(random() % static_cast<unsigned>(below));
  };
  const auto anywhere = [&] {
    QModelIndex index;
    while (model.rowCount(index) != 0 && roll(3) != 0) index = model.index(roll(model.rowCount(index)), 0, index);
    return index;
  };
  for (int step = 0; step < 3000; ++step) {
    const QModelIndex at = anywhere();
    const int rows = model.rowCount(at);
    const int first = roll(rows);
    const int last = first + roll(std::min(rows - first, 3));
    QString what;
    switch (roll(9)) {
      case 0:
      case 1:
        what = "insert";
        model.Insert(at, roll(rows + 1), 1 + roll(3));
        break;
      case 2:
        what = "remove";
        if (rows > 0) model.Remove(at, first, last);
        break;
      case 3:
      case 4: {
        what = "move";
        const QModelIndex to = anywhere();
        if (rows > 0) model.Move(at, first, last, to, roll(model.rowCount(to) + 1));
        break;
      }
      case 5:
        what = "change";
        if (at.isValid()) model.setData(at, QString::number(step), Qt::EditRole);
        if (at.isValid()) model.setData(at, roll(2) != 0 ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
        break;
      case 6:
        what = "layout";
        if (roll(4) == 0) model.Reverse(at);
        break;
      case 7:
        what = "reset";
        if (roll(20) == 0) model.Reset();
        break;
      default:
        what = "open";
        if (at.isValid()) tree.setExpanded(at, roll(3) != 0);
        break;
    }
    if (roll(50) == 0) QApplication::processEvents();
    ASSERT_EQ(Seen(control).toStdString(), Wanted(tree, model).toStdString()) << step << " " << what.toStdString();
  }
  EXPECT_GT(control.RowCount(), 20U);
}
INSTANTIATE_TEST_SUITE_P(AtOnceAndLate, ItemModel, ::testing::Bool());

TEST_F(ItemModelTrees, HandOnWhatTheUserDoes) {
  QStandardItemModel model;
  for (const char* name : {"a", "b"}) {
    auto* item = new QStandardItem(name);  // the model's
    item->setCheckable(true);
    item->appendRow(new QStandardItem("below"));
    model.appendRow(item);
  }
  model.setHorizontalHeaderLabels({"Name", "Number"});
  ItemModelTree tree;
  tree.setModel(&model);
  CQDTreeListCtrl& control = tree.Bar().GetTreeCtrl();
  EXPECT_EQ(control.GetHeader().GetItem(0)->text, L"Name");
  int heard = 0;
  QObject::connect(&tree, &ItemModelTree::selectionChanged, [&heard] { ++heard; });
  tree.setCurrentIndex(model.index(0, 0, model.index(1, 0)));
  EXPECT_EQ(heard, 1);
  ASSERT_EQ(tree.selectedIndexes().size(), 1);
  EXPECT_EQ(tree.selectedIndexes()[0].parent(), model.index(1, 0));
  EXPECT_TRUE(tree.isExpanded(model.index(1, 0)));

  CQDTreeItem* first = control.NodeOf(control.GetRootItem());
  first->OnClickCheck(first->GetCheckStatus());
  EXPECT_EQ(model.item(0)->checkState(), Qt::Checked);
  first->OnEditChange(L"typed");
  EXPECT_EQ(model.item(0)->text(), "typed");
  EXPECT_EQ(first->GetTitle(), L"typed");
  // A row dropped onto what stands below it, or onto one that takes nothing, stays where it is.
  CQDTreeItem* second = control.NodeOf(control.GetNextSiblingItem(control.GetRootItem()));
  std::vector<CQDTreeItem*> above{second};
  control.NodeOf(control.GetChildItem(second->GetTreeItemHandle()))->OnDrop(above);
  model.item(1)->setDropEnabled(false);
  std::vector<CQDTreeItem*> refused{first};
  second->OnDrop(refused);
  model.item(1)->setDropEnabled(true);
  model.item(0)->setEnabled(false);
  first->OnClickCheck(kChecked);
  first->OnEditChange(L"refused");
  model.item(0)->setEnabled(true);
  EXPECT_EQ(Seen(control).toStdString(), "typedx:+ b:[below: ] ");
  EXPECT_EQ(Seen(control).toStdString(), Wanted(tree, model).toStdString());
  // Dropped onto another row, the model makes a copy there and gives the original up.
  std::vector<CQDTreeItem*> dragged{first};
  second->OnDrop(dragged);
  EXPECT_EQ(model.rowCount(), 1);
  EXPECT_EQ(model.item(0)->rowCount(), 2);
  EXPECT_EQ(Seen(control).toStdString(), Wanted(tree, model).toStdString());
}

TEST_F(ItemModelTrees, ShowAPartOfTheModel) {
  Model model(false);
  model.Insert({}, 0, 2);
  const QPersistentModelIndex part = model.index(1, 0);
  model.Insert(part, 0, 2);
  ItemModelTree tree;
  tree.setModel(&model);
  tree.setRootIndex(part);
  CQDTreeListCtrl& control = tree.Bar().GetTreeCtrl();
  EXPECT_EQ(Seen(control).toStdString(), Wanted(tree, model, part).toStdString());
  model.Insert(part, 1, 1);
  model.Insert({}, 0, 1);
  model.setData(model.index(2, 0, part), "changed", Qt::EditRole);
  model.setData(model.index(0, 0), "not seen", Qt::EditRole);
  EXPECT_EQ(Seen(control).toStdString(), Wanted(tree, model, part).toStdString());
  model.Remove({}, part.row(), part.row());
  EXPECT_EQ(Seen(control).toStdString(), Wanted(tree, model).toStdString());
}

TEST_F(ItemModelTrees, FollowWhatComesLaterAndWhatIsWrong) {
  QStandardItemModel model;
  auto* item = new QStandardItem("a");  // the model's
  model.appendRow(item);
  model.appendRow(new QStandardItem("b"));
  ItemModelTree tree;
  tree.setModel(&model);
  CQDTreeListCtrl& control = tree.Bar().GetTreeCtrl();
  CQDTreeItem& row = *control.NodeOf(control.GetRootItem());
  item->setCheckable(true);
  item->setCheckState(Qt::Checked);
  item->setData(QColor(Qt::red), Qt::DecorationRole);
  EXPECT_EQ(row.GetCheckStatus(), kChecked);
  EXPECT_EQ(control.GetRecord(control.GetRootItem())->GetColor(), 0xFFU);
  item->setData({}, Qt::CheckStateRole);
  item->setCheckable(false);
  EXPECT_EQ(row.GetCheckStatus(), 0);
  // Rows below other columns are none of the tree's.
  model.setColumnCount(2);
  auto* aside = new QStandardItem("aside");
  model.setItem(0, 1, aside);
  aside->appendRow(new QStandardItem("below"));
  EXPECT_EQ(Seen(control).toStdString(), "a:aside b: ");
  emit model.dataChanged(QModelIndex(), QModelIndex());
  // The place on the screen and the focus stay when rows are sorted.
  for (int i = 0; i < 300; ++i) model.appendRow(new QStandardItem(QString::number(i)));
  tree.resize(300, 200);
  tree.show();
  tree.setCurrentIndex(model.index(200, 0));
  control.ScrollTo(190);
  emit model.layoutAboutToBeChanged();
  emit model.layoutChanged();
  EXPECT_EQ(control.TopPosition(), 190U);
  EXPECT_EQ(tree.selectedIndexes(), QModelIndexList{model.index(200, 0)});
}

/// Rows come some time after they were asked for.
class SlowModel final : public QStandardItemModel {
 public:
  bool canFetchMore(const QModelIndex& parent) const override {
    return hasChildren(parent) && rowCount(parent) == 0;
  }
  bool hasChildren(const QModelIndex& parent) const override {
    return !parent.isValid() || !parent.parent().isValid();
  }
  void fetchMore(const QModelIndex& parent) override {
    ++asked;
    QTimer::singleShot(1, this, [this, at = QPersistentModelIndex(parent)] {
      QStandardItem* item = at.isValid() ? itemFromIndex(at) : invisibleRootItem();
      if (item->rowCount() == 0) item->appendRow(new QStandardItem("late"));
    });
  }
  int asked = 0;
};

TEST_F(ItemModelTrees, HaveAllColumnsOfTheModel) {
  QStandardItemModel model(0, 4);
  model.setHorizontalHeaderLabels({"Name", "No.", "Material", "Mass"});
  for (const auto& [name, mass] : {std::pair("a", 30), {"b", 4}, {"c", 200}}) {
    auto* number = new QStandardItem;
    number->setData(mass, Qt::DisplayRole);
    model.appendRow({new QStandardItem(name), new QStandardItem("1"), new QStandardItem("steel"), number});
  }
  ItemModelTree tree;
  tree.setModel(&model);
  CQDTreeListCtrl& control = tree.Bar().GetTreeCtrl();
  const auto cell = [&](int row, int column) {
    return ToQt(control.GetCell(control.GetChildAt({}, static_cast<std::size_t>(row)), column).text);
  };
  constexpr int kMaterial = 3;
  constexpr int kMass = 4;
  ASSERT_EQ(control.GetColumnsNum(), 5);
  EXPECT_EQ(ToQt(control.GetHeader().GetItem(kMass)->text), "Mass");
  EXPECT_EQ(cell(2, kMaterial) + cell(2, kMass), "steel200");
  EXPECT_EQ(cell(2, 1), "1");
  model.item(0, 2)->setForeground(Qt::red);
  EXPECT_EQ(control.GetCell(control.GetRootItem(), kMaterial).colour, 0xFFU);

  // Icons of whatever kind, once for each picture.
  QImage red(40, 20, QImage::Format_ARGB32);
  red.fill(Qt::red);
  const HTREEITEM first = control.GetRootItem();
  for (const QVariant& decoration : {QVariant(red), QVariant(QIcon(QPixmap::fromImage(red)))}) {
    model.item(0)->setData(decoration, Qt::DecorationRole);
    static_cast<void>(control.NodeOf(first));
    const int icon = control.GetItemImage(first);
    ASSERT_NE(icon, 0);
    EXPECT_EQ(CQDTreeIcon::Instance().GetRowImageList().GetPicture(icon)->pixels[8 * 16 + 8], 0xFFFF0000U);
  }
  model.item(0)->setData(QVariant(), Qt::DecorationRole);
  EXPECT_EQ(control.GetItemImage(first), 0);

  control.SortByColumn(kMass, 0);  // no click sorts yet
  EXPECT_FALSE(tree.Bar().GetTreeCtrl().GetColumns().IsSortable(kMass));
  tree.setSortingEnabled(true);
  EXPECT_TRUE(tree.Bar().GetTreeCtrl().GetColumns().IsSortable(kMass));
  tree.sortByColumn(3, Qt::DescendingOrder);
  EXPECT_EQ(cell(0, kMass) + cell(1, kMass) + cell(2, kMass), "200304");
  const QByteArray state = tree.saveState();
  tree.sortByColumn(0, Qt::AscendingOrder);
  ASSERT_TRUE(tree.restoreState(state));
  EXPECT_EQ(cell(0, kMass), "200");
  model.setColumnCount(3);
  EXPECT_EQ(control.GetColumnsNum(), 4);
  tree.setModel(nullptr);
  EXPECT_EQ(control.GetColumnsNum(), 3);
}

TEST_F(ItemModelTrees, OpenARowWhenWhatIsBelowItHasCome) {
  SlowModel model;
  ItemModelTree tree;
  tree.setModel(&model);
  CQDTreeListCtrl& control = tree.Bar().GetTreeCtrl();
  const auto wait = [] {
    for (int i = 0; i < 20; ++i) {
      QThread::msleep(1);
      QApplication::processEvents();
    }
  };
  wait();
  EXPECT_EQ(Seen(control).toStdString(), "late:+ ");
  control.NodeOf(control.GetRootItem())->Expand(1);
  EXPECT_EQ(Seen(control).toStdString(), "late:+ ") << "and its button stays";
  wait();
  EXPECT_EQ(Seen(control).toStdString(), "late:[late: ] ");
}

TEST_F(ItemModelTrees, OutliveTheirModelAndAreOutlivedByIt) {
  auto model = std::make_unique<Model>(false);
  model->Insert({}, 0, 3);
  {
    ItemModelTree short_lived;
    short_lived.setModel(model.get());
  }
  model->Insert({}, 0, 1);
  ItemModelTree tree;
  tree.setModel(model.get());
  EXPECT_EQ(tree.Bar().GetTreeCtrl().RowCount(), 4U);
  model.reset();
  EXPECT_EQ(tree.Bar().GetTreeCtrl().RowCount(), 0U);
  EXPECT_EQ(tree.model(), nullptr);
  tree.expandAll();
  EXPECT_TRUE(tree.selectedIndexes().isEmpty());
}

TEST_F(ItemModelTrees, FetchWhenTheLastRowComesIntoSight) {
  constexpr int kRows = 400;
  Model model(true);
  model.InsertLate({}, kRows);
  ItemModelTree tree;
  tree.resize(300, 200);
  tree.show();
  tree.setModel(&model);
  CQDTreeListCtrl& control = tree.Bar().GetTreeCtrl();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&tree));
  const auto isMore = [&control](std::size_t rows) {
    return WaitUntil([&control, rows] { return control.RowCount() > rows; });
  };
  EXPECT_TRUE(isMore(static_cast<std::size_t>(control.GetPageSize()))) << "as many as are seen, and more";
  WaitForEvents();
  const std::size_t first = control.RowCount();
  EXPECT_LT(first, 50U) << "but not all";
  control.ScrollTo(first);
  EXPECT_TRUE(isMore(first));
  WaitForEvents();
  EXPECT_LT(control.RowCount(), 100U);
}

/// Rows that are computed, and how often one was asked for.
class ManyRows final : public QAbstractListModel {
 public:
  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 100000; }
  QVariant data(const QModelIndex& index, int role) const override {
    ++asked;
    return role == Qt::DisplayRole ? QVariant(QString("row %1").arg(index.row())) : QVariant();
  }
  mutable int asked = 0;
};

TEST_F(ItemModelTrees, AskForWhatIsSeenOnly) {
  ManyRows model;
  ItemModelTree tree;
  tree.resize(300, 200);
  tree.show();
  tree.setModel(&model);
  CQDTreeListCtrl& control = tree.Bar().GetTreeCtrl();
  ASSERT_TRUE(QTest::qWaitFor([&] { return model.asked > 0; }));
  control.ScrollTo(50000);
  control.SelectAll(1);
  control.TellSelection();
  QApplication::processEvents();
  EXPECT_LT(model.asked, 2000);
  EXPECT_EQ(tree.selectedIndexes().size(), 100000);
  EXPECT_EQ(tree.selectedIndexes()[77777].row(), 77777);
  emit model.layoutAboutToBeChanged();
  emit model.layoutChanged();
  EXPECT_EQ(tree.selectedIndexes().size(), 100000) << "and all stay selected when they are sorted";
  EXPECT_EQ(control.TopPosition(), 50000U);
  tree.setCurrentIndex(model.index(60000));
  const QByteArray state = tree.saveState();
  tree.setModel(nullptr);
  tree.setModel(&model);
  EXPECT_TRUE(tree.restoreState(state));
  EXPECT_EQ(tree.selectedIndexes(), QModelIndexList{model.index(60000)});
  EXPECT_FALSE(tree.restoreState("anything"));
  EXPECT_EQ(tree.selectedIndexes(), QModelIndexList{model.index(60000)});
}

/// With the display's own mouse: a button opens, a title is selected, a box is switched, a row is dragged.
TEST_F(ItemModelTrees, FollowTheMouseInAWindow) {
  QStandardItemModel model;
  for (const char* name : {"first", "second", "third"}) {
    auto* item = new QStandardItem(name);  // the model's
    item->setCheckable(true);
    item->appendRow(new QStandardItem("below"));
    model.appendRow(item);
  }
  ItemModelTree tree;
  tree.setGeometry(100, 100, 400, 300);
  tree.show();
  tree.setModel(&model);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&tree));
  CQDTreeListCtrl& control = tree.Bar().GetTreeCtrl();
  const auto at = [&](int line, int x) {
    return control.ClientToScreen({x, line * control.GetItemHeight() + control.GetItemHeight() / 2});
  };
  const auto partsOf = [&](int line) {
    return control.GetGeometry().PartsOf(control.GetRowAt(static_cast<std::size_t>(line)));
  };
  const auto click = [&](int line, int x) {
    Display(QStringList{"mousemove"} << At(at(line, x)) << "click"
                                     << "1");
  };
  ASSERT_TRUE(WaitUntil([&] { return control.VisibleRowCount() == 3 && !control.IsLater(control.GetRowAt(2)); }));
  click(1, RowGeometry::ButtonsOf(0) + 4);
  ASSERT_TRUE(WaitUntil([&] { return tree.isExpanded(model.index(1, 0)); }));
  click(2, partsOf(2).text + 4);
  ASSERT_TRUE(
      WaitUntil([&] { return tree.selectedIndexes() == QModelIndexList{model.index(0, 0, model.index(1, 0))}; }));
  click(0, partsOf(0).state + 4);
  ASSERT_TRUE(WaitUntil([&] { return model.item(0)->checkState() == Qt::Checked; }));
  const CPoint from = at(0, partsOf(0).text + 6);
  const CPoint to = at(3, partsOf(3).text + 6);
  QStringList script = QStringList{"mousemove"} << At(from) << "mousedown"
                                                << "1";
  for (const CPoint& point : {CPoint{from.x + 8, from.y + 8}, to, CPoint{to.x + 1, to.y}}) {
    script << "sleep"
           << "0.1"
           << "mousemove" << At(point);
  }
  Display(script << "sleep"
                 << "0.2"
                 << "mouseup"
                 << "1");
  EXPECT_TRUE(WaitUntil([&] { return model.rowCount() == 2; }));
  EXPECT_EQ(model.item(1)->rowCount(), 2) << "the model has moved it below the third";
}

}  // namespace
}  // namespace qd::test
