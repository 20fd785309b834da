// Rows of a host whose nodes are made when they are looked at: what is done to one may not cost what all do.

#include "benchmarks/scaling/World.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/nodes/HostTree.h"
#include "qd_wrt/panel/CWorksTreeBar.h"

namespace qd::scaling {
namespace {

/// Rows of one branch, of which those on screen were looked at.
class SuppliedRows final : public World {
 public:
  explicit SuppliedRows(int n) : m_count(static_cast<std::size_t>(n)) {
    m_bar.Create(nullptr, 0, {0, 0, 400, 800});
    m_rows = std::make_unique<HostTree>(m_bar.GetTreeCtrl());
    auto kind = std::make_shared<HostNodeKind>();
    kind->rowCount = [this](HostNode&) { return m_count; };
    kind->row = [](const HostNode&, std::size_t place) {
      return HostRow{.title = L"Row " + std::to_wstring(place), .key = place + 1};
    };
    m_rows->Root().ShowRows(kind);
    m_toolkit.Pump();
    // What the order's blocks hold is counted at the first question, as part of what building them costs.
    static_cast<void>(Tree().GetChildAt({}, m_count));
    for (std::size_t i = 0; i < kSome; ++i) m_some.push_back(i * m_count / kSome);
  }
  ~SuppliedRows() override {
    m_rows.reset();
    m_bar.DestroyWindow();
  }

  std::vector<Case> Cases() override {
    std::vector<Case> cases;
    const auto each = [this](const char* name, const auto& act, const auto& isDone, std::uint64_t weight = 1) {
      return Case{name, Growth::Constant,
                  [this, act, isDone](Meter& meter) {
                    meter([&] {
                      for (const std::size_t place : m_some) act(place);
                    });
                    return isDone();
                  },
                  weight * kSome};
    };
    cases.push_back(each(
        "look_at", [this](std::size_t place) { static_cast<void>(Tree().NodeOf(Tree().GetChildAt({}, place))); },
        [this] { return m_rows->Root().GetChildCount() >= static_cast<int>(kSome) - 1; }));
    cases.push_back(each(
        "insert", [this](std::size_t place) { m_rows->Root().InsertRows(place, 1); },
        [this] { return Tree().RowCount() == m_count + kSome; }, kWithBlocks));
    cases.push_back(each(
        "remove", [this](std::size_t place) { m_rows->Root().RemoveRows(place / 2, 1); },
        [this] { return Tree().RowCount() == m_count - kSome; }));
    cases.push_back(each(
        "change", [this](std::size_t place) { m_rows->Root().ChangeRows(place, 1); },
        [this] { return Tree().RowCount() == m_count; }));
    cases.push_back(each(
        "move_to_the_front",
        [this](std::size_t place) { m_rows->Root().MoveSupplied(place, place == 0 ? 0 : 1, m_rows->Root(), 0); },
        [this] { return Tree().RowCount() == m_count; }));
    cases.push_back({"select_all", Growth::Constant, [this](Meter& meter) {
                       meter([&] {
                         Tree().SelectAll(1);
                         Tree().TellSelection();
                       });
                       return Tree().GetSelectedRowCount() == m_count;
                     }});
    cases.push_back({"scroll_and_paint", Growth::Constant,
                     [this](Meter& meter) {
                       meter([&] {
                         Tree().ScrollTo(m_count / 2);
                         m_toolkit.Pump();
                       });
                       return Tree().TopPosition() == m_count / 2;
                     },
                     kSome});
    cases.push_back({"save_and_restore", Growth::NLogN, [this](Meter& meter) {
                       Tree().SetItemState(Tree().GetChildAt({}, m_count / 2), kRowSelected, kRowSelected);
                       ColumnLayout columns;
                       int done = 0;
                       meter([&] { done = m_rows->RestoreState(m_rows->SaveState(), columns); });
                       return done == 1 && Tree().GetSelectedRowCount() == 1;
                     }});
    return cases;
  }

 private:
  CQDTreeListCtrl& Tree() { return m_bar.GetTreeCtrl(); }

  std::size_t m_count;
  HeadlessToolkit m_toolkit;
  CWorksTreeBar m_bar;
  std::unique_ptr<HostTree> m_rows;
  std::vector<std::size_t> m_some;  // places
};

}  // namespace

std::vector<WorldKind> SuppliedWorlds() {
  return {{"supplied", Growth::Linear, [](int n) { return std::make_unique<SuppliedRows>(n); }}};
}

}  // namespace qd::scaling
