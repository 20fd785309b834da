// A million rows that a program has: as a model of Qt in our tree and in a QTreeView, and as rows of callbacks.
// Each act is timed until it is painted. QT_QPA_PLATFORM=offscreen runs it without a display.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <QApplication>
#include <QScrollBar>
#include <QTreeView>
#include <memory>

#include "benchmarks/Proof.h"
#include "platform/qt/QtToolkit.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "widgets/ItemModelTree.h"
#include "widgets/WorksTreeWidget.h"

namespace qd {
namespace {

/// Rows, each with as many below it; all of it is computed.
class Rows final : public QAbstractItemModel {
 public:
  Rows(int top, int below) : m_top(top), m_below(below) {}
  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override {
    if (!hasIndex(row, column, parent)) return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : 0);
  }
  QModelIndex parent(const QModelIndex& index) const override {
    return index.internalId() == 0 ? QModelIndex() : createIndex(static_cast<int>(index.internalId()) - 1, 0);
  }
  int rowCount(const QModelIndex& parent = {}) const override {
    if (!parent.isValid()) return m_top;
    return parent.internalId() == 0 && parent.column() == 0 ? m_below : 0;
  }
  int columnCount(const QModelIndex& = {}) const override { return 2; }
  bool hasChildren(const QModelIndex& parent = {}) const override { return rowCount(parent) != 0; }
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override {
    if (role != Qt::DisplayRole) return {};
    if (index.column() == 1) return index.row();
    return index.row() == m_changed ? QString("Changed %1").arg(m_changes) : QString("Row %1").arg(index.row());
  }
  int Changes() const { return m_changes; }
  void InsertInFront() {
    beginInsertRows({}, 0, 0);
    ++m_top;
    endInsertRows();
  }
  void Change(int row) {
    m_changed = row;
    ++m_changes;
    emit dataChanged(index(row, 0), index(row, 1));
  }

 private:
  int m_top;
  int m_below;
  int m_changed = -1;
  int m_changes = 0;
};

/// What is measured: a view on rows, all on screen.
class View {
 public:
  View() = default;
  virtual ~View() = default;
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  virtual void ExpandAll() = 0;
  virtual void SelectAll() = 0;
  virtual void SelectNothing() = 0;
  virtual void ScrollTo(int row) = 0;
  virtual void InsertInFront() = 0;
  virtual void Change(int row) = 0;
  virtual void Paint() = 0;
  /// For proofs: rows that can be scrolled to, selected ones, and the text of the first row on screen.
  virtual std::size_t VisibleRows() = 0;
  virtual std::size_t SelectedRows() = 0;
  virtual QString TopText() = 0;
};

/// Counts what is painted, so that an act is over when its paint has been.
class Painted final : public QObject {
 public:
  explicit Painted(QWidget& surface) { surface.installEventFilter(this); }
  /// Lets the program run until it has painted what is due.
  void Wait() {
    constexpr int kMostRounds = 100'000;
    for (int round = 0; m_count == 0 && round < kMostRounds; ++round) QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    if (m_count == 0) bench::AnyFailed() = true;
    m_count = 0;
  }

 private:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++m_count;
    return QObject::eventFilter(watched, event);
  }
  int m_count = 0;
};

class OurView : public View {
 public:
  void SelectAll() override {
    Tree().SelectAll(1);
    Tree().TellSelection();
  }
  void SelectNothing() override { Tree().ClearAllSelected(); }
  void ScrollTo(int row) override { Tree().ScrollTo(static_cast<std::size_t>(row)); }
  void Paint() override { m_painted->Wait(); }
  std::size_t VisibleRows() override { return Tree().VisibleRowCount(); }
  std::size_t SelectedRows() override { return Tree().GetSelectedRowCount(); }
  QString TopText() override {
    return QString::fromStdWString(Tree().GetItemText(Tree().GetRowAt(Tree().TopPosition()), 0));
  }

 protected:
  virtual WorksTreePanel& Panel() = 0;
  CQDTreeListCtrl& Tree() { return Panel().Bar().GetTreeCtrl(); }
  void Open() {
    m_painted = std::make_unique<Painted>(*QtToolkit::WidgetOf(Tree()));
    Panel().resize(400, 600);
    Panel().show();
    Paint();
  }

 private:
  std::unique_ptr<Painted> m_painted;
};

class ModelView final : public OurView {
 public:
  explicit ModelView(Rows& model) : m_model(model) {
    m_tree.setModel(&model);
    Open();
  }
  void ExpandAll() override { m_tree.expandAll(); }
  void InsertInFront() override { m_model.InsertInFront(); }
  void Change(int row) override { m_model.Change(row); }

 private:
  WorksTreePanel& Panel() override { return m_tree; }
  Rows& m_model;
  ItemModelTree m_tree;
};

class CallbackView final : public OurView {
 public:
  explicit CallbackView(Rows& model) : m_model(model) {
    auto below = std::make_shared<HostNodeKind>();
    const auto count = [this](HostNode& node) {
      const QModelIndex parent =
          node.Above() != nullptr ? m_model.index(static_cast<int>(node.GetID()) - 1, 0) : QModelIndex();
      return static_cast<std::size_t>(m_model.rowCount(parent));
    };
    const auto row = [this](const HostNode&, std::size_t place) {
      return HostRow{.title = m_model.index(static_cast<int>(place), 0).data().toString().toStdWString(),
                     .id = static_cast<std::int32_t>(place) + 1};
    };
    auto kind = std::make_shared<HostNodeKind>();
    kind->rowCount = count;
    kind->row = row;
    if (m_model.hasChildren(m_model.index(0, 0))) {
      below->rowCount = count;
      below->row = [](const HostNode&, std::size_t place) { return HostRow{.title = std::to_wstring(place)}; };
    }
    kind->rowKind = below;
    m_tree.Root().ShowRows(kind);
    Open();
  }
  void ExpandAll() override {
    for (std::size_t place = 0; place < static_cast<std::size_t>(m_model.rowCount()); ++place) {
      Tree().NodeOf(Tree().GetChildAt({}, place))->Expand(1);
    }
  }
  void InsertInFront() override {
    m_model.InsertInFront();
    m_tree.Root().InsertRows(0, 1);
  }
  void Change(int row) override {
    m_model.Change(row);
    m_tree.Root().ChangeRows(static_cast<std::size_t>(row), 1);
  }

 private:
  WorksTreePanel& Panel() override { return m_tree; }
  Rows& m_model;
  WorksTreeWidget m_tree;
};

class QtView final : public View {
 public:
  explicit QtView(Rows& model) : m_model(model) {
    m_tree.setUniformRowHeights(true);
    m_tree.setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree.setModel(&model);
    m_tree.resize(400, 600);
    m_tree.show();
    Paint();
  }
  void ExpandAll() override { m_tree.expandAll(); }
  void SelectAll() override { m_tree.selectAll(); }
  void SelectNothing() override { m_tree.clearSelection(); }
  void ScrollTo(int row) override { m_tree.verticalScrollBar()->setValue(row); }
  void InsertInFront() override { m_model.InsertInFront(); }
  void Change(int row) override { m_model.Change(row); }
  void Paint() override { m_painted.Wait(); }
  std::size_t VisibleRows() override {
    return static_cast<std::size_t>(m_tree.verticalScrollBar()->maximum() +
                                    m_tree.verticalScrollBar()->pageStep());
  }
  std::size_t SelectedRows() override {
    std::size_t rows = 0;
    for (const QItemSelectionRange& range : m_tree.selectionModel()->selection()) {
      rows += static_cast<std::size_t>(range.height());
    }
    return rows;
  }
  QString TopText() override { return m_tree.indexAt({1, 1}).siblingAtColumn(0).data().toString(); }

 private:
  Rows& m_model;
  QTreeView m_tree;
  Painted m_painted{*m_tree.viewport()};
};

enum Kind : int { kItemModelTree, kCallbacks, kQTreeView };

std::unique_ptr<View> MakeView(int kind, Rows& model) {
  if (kind == kItemModelTree) return std::make_unique<ModelView>(model);
  if (kind == kCallbacks) return std::make_unique<CallbackView>(model);
  return std::make_unique<QtView>(model);
}

int Count() {
  return bench::RowsOf(1'000'000);
}

/// There is one application, and it ends with the program.
void NeedApplication() {
  static int argc = 1;
  static char name[] = "qd_widget_bench";
  static char* argv[] = {name, nullptr};
  if (QApplication::instance() == nullptr) static_cast<void>(new QApplication(argc, argv));  // the program's
}

std::size_t BytesUsed() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

void BM_Open(benchmark::State& state) {
  NeedApplication();
  Rows model(Count(), 0);
  std::size_t bytes = 0;
  std::size_t rows = 0;
  { const auto warm = MakeView(static_cast<int>(state.range(0)), model); }
  for (auto _ : state) {
    const std::size_t before = BytesUsed();
    auto view = MakeView(static_cast<int>(state.range(0)), model);
    state.PauseTiming();
    bytes = BytesUsed() - before;
    rows = view->VisibleRows();
    const bool right = view->TopText() == "Row 0";
    view.reset();
    bench::Prove(state, right, "nothing on screen");
    state.ResumeTiming();
  }
  state.counters["bytes_a_row"] = static_cast<double>(bytes) / Count();
  bench::Prove(state, rows + 1 >= static_cast<std::size_t>(Count()), "rows are missing");
}

/// One act, timed until it is painted, as often as is wanted.
template <typename Act, typename IsDone>
void Time(benchmark::State& state, Rows& model, const Act& act, const IsDone& isDone, bool selects = false) {
  const auto view = MakeView(static_cast<int>(state.range(0)), model);
  bool done = true;
  for (auto _ : state) {
    act(*view);
    view->Paint();
    state.PauseTiming();
    done = done && isDone(*view);
    if (selects) view->SelectNothing();
    if (selects) view->Paint();
    state.ResumeTiming();
  }
  bench::Prove(state, done, "the act was not done");
}

void BM_ExpandAll(benchmark::State& state) {
  NeedApplication();
  const int side = bench::RowsOf(100'000) / 100;
  Rows model(side, side);
  for (auto _ : state) {
    state.PauseTiming();
    auto view = MakeView(static_cast<int>(state.range(0)), model);
    state.ResumeTiming();
    view->ExpandAll();
    view->Paint();
    state.PauseTiming();
    const auto all = static_cast<std::size_t>(side) * static_cast<std::size_t>(side + 1);
    bench::Prove(state, view->VisibleRows() + 1 >= all, "not all is open");
    view.reset();
    state.ResumeTiming();
  }
}

void BM_SelectAll(benchmark::State& state) {
  NeedApplication();
  Rows model(Count(), 0);
  Time(
      state, model, [](View& view) { view.SelectAll(); },
      [&](View& view) { return view.SelectedRows() == static_cast<std::size_t>(Count()); }, true);
}

void BM_Scroll(benchmark::State& state) {
  NeedApplication();
  Rows model(Count(), 0);
  int row = 0;
  Time(
      state, model, [&row](View& view) { view.ScrollTo(row = (row + 7919 * 61) % (Count() - 100)); },
      [&row](View& view) { return view.TopText() == QString("Row %1").arg(row); });
}

void BM_InsertInFront(benchmark::State& state) {
  NeedApplication();
  Rows model(Count(), 0);
  Time(
      state, model, [](View& view) { view.InsertInFront(); },
      [&model](View& view) { return view.VisibleRows() + 1 >= static_cast<std::size_t>(model.rowCount()); });
}

void BM_ChangeOne(benchmark::State& state) {
  NeedApplication();
  Rows model(Count(), 0);
  Time(
      state, model, [](View& view) { view.Change(0); },
      [&model](View& view) { return view.TopText() == QString("Changed %1").arg(model.Changes()); });
}

#define QD_FOR_EACH(name)                                  \
  BENCHMARK(name)                                          \
      ->ArgName("0=ItemModelTree,1=callbacks,2=QTreeView") \
      ->Arg(0)                                             \
      ->Arg(1)                                             \
      ->Arg(2)                                             \
      ->Unit(benchmark::kMicrosecond)
QD_FOR_EACH(BM_Open);
QD_FOR_EACH(BM_ExpandAll);
QD_FOR_EACH(BM_SelectAll);
QD_FOR_EACH(BM_Scroll);
QD_FOR_EACH(BM_InsertInFront);
QD_FOR_EACH(BM_ChangeOne);

}  // namespace
}  // namespace qd
