// Trees of programs in C without a screen, and a user for them.

#include "platform/headless/HeadlessToolkit.h"
#include "platform/text/Utf8.h"
#include "qd_wrt/c/Tree.h"

namespace qd::c {

namespace {

class HeadlessPane final : public IPane {
 public:
  explicit HeadlessPane(const CRect& area) { m_bar.Create(nullptr, 0, area); }
  CWorksTreeBar* Bar() override { return m_bar.IsCreated() ? &m_bar : nullptr; }
  void SetOnGoing(std::function<void()>) override {}  // only the program takes it down

 private:
  CWorksTreeBar m_bar;
};

/// Null when the program works with another one.
HeadlessToolkit* Toolkit() {
  return IToolkit::Exists() ? dynamic_cast<HeadlessToolkit*>(&IToolkit::Instance()) : nullptr;
}

/// Runs what the user does to a row that is shown. `work` gets the toolkit, the tree's window and the row's line.
template <typename Work>
qd_status AsUser(qd_tree* handle, qd_node number, const Work& work) {
  return WithNode(handle, number, [&](Tree& tree, const HostNode& node) -> qd_status {
    HeadlessToolkit* toolkit = Toolkit();
    if (toolkit == nullptr) return Fail(QD_ERROR_TOOLKIT);
    toolkit->Pump();
    CRect line;
    CQDTreeListCtrl& rows = tree.Rows();
    const HTREEITEM row = node.GetTreeItemHandle();
    if (!rows.GetItemRect(row, line, false)) return Fail(QD_ERROR_STATE, "The row is not shown.");
    rows.EnsureVisible(row);
    rows.GetItemRect(row, line, false);
    const qd_status done = work(*toolkit, rows, node, line);
    toolkit->Pump();
    return done;
  });
}

constexpr int kInside = 4;  // of what is clicked

CPoint TitleOf(const CQDTreeListCtrl& rows, const HostNode& node, const CRect& line) {
  return {rows.GetGeometry().PartsOf(node.GetTreeItemHandle()).text + kInside, line.top + kInside};
}

}  // namespace

}  // namespace qd::c

using namespace qd::c;

qd_status qd_tree_create_headless(const qd_tree_options* options, qd_tree** tree) {
  return Guarded([=] {
    return MakeTree(options, tree, [](const qd::CRect& area, std::unique_ptr<IPane>& pane) {
      if (!qd::IToolkit::Exists()) KeepToolkit(std::make_shared<qd::HeadlessToolkit>());
      if (Toolkit() == nullptr) return Fail(QD_ERROR_TOOLKIT);
      pane = std::make_unique<HeadlessPane>(area);
      return QD_OK;
    });
  });
}

qd_status qd_headless_pump(void) {
  return Guarded([] {
    if (qd::IToolkit::Exists() && !qd::IToolkit::IsOnItsThread()) return Fail(QD_ERROR_THREAD);
    qd::HeadlessToolkit* toolkit = Toolkit();
    if (toolkit == nullptr) return Fail(QD_ERROR_TOOLKIT);
    toolkit->Pump();
    toolkit->FinishSlices();
    return QD_OK;
  });
}

qd_status qd_headless_click(qd_tree* tree, qd_node number, int part) {
  if (part != QD_PART_TITLE && part != QD_PART_BOX && part != QD_PART_BUTTON) {
    return Fail(QD_ERROR_VALUE, "It is the part of a row.");
  }
  return AsUser(
      tree, number,
      [part](qd::HeadlessToolkit& toolkit, qd::CQDTreeListCtrl& rows, const qd::HostNode& node,
             const qd::CRect& line) {
        const qd::RowParts parts = rows.GetGeometry().PartsOf(node.GetTreeItemHandle());
        const bool hasButton = rows.CanOpen(node.GetTreeItemHandle());
        if ((part == QD_PART_BOX && !node.HasCheck()) || (part == QD_PART_BUTTON && !hasButton)) {
          return Fail(QD_ERROR_STATE, "The row has no such part.");
        }
        const int x = part == QD_PART_BOX ? parts.state : part == QD_PART_BUTTON ? parts.button : parts.text;
        toolkit.Click(rows, {x + kInside, line.top + kInside});
        return QD_OK;
      });
}

qd_status qd_headless_menu(qd_tree* tree, qd_node number, uint32_t command) {
  return AsUser(tree, number,
                [command](qd::HeadlessToolkit& toolkit, qd::CQDTreeListCtrl& rows, const qd::HostNode& node,
                          const qd::CRect& line) {
                  toolkit.AnswerMenu(command);
                  toolkit.RightClick(rows, TitleOf(rows, node, line));
                  toolkit.Pump();
                  if (!toolkit.HasAnswersLeft()) return QD_OK;
                  toolkit.ForgetAnswers();
                  return Fail(QD_ERROR_STATE, "The row has no menu.");
                });
}

qd_status qd_headless_caption(qd_tree* handle, int32_t column) {
  return WithTree(handle, [=](Tree& tree) {
    qd::HeadlessToolkit* toolkit = Toolkit();
    if (toolkit == nullptr) return Fail(QD_ERROR_TOOLKIT);
    qd::CQDTreeListCtrl& rows = tree.Rows();
    const qd::CHeaderBase::Item* caption = rows.GetHeader().GetItem(column);
    if (caption == nullptr) return Fail(QD_ERROR_VALUE, "It is the number of a column.");
    if (caption->hidden) return Fail(QD_ERROR_STATE, "The column is not shown.");
    const int middle = rows.GetColumns().LeftOf(column) + rows.GetColumnWidth(column) / 2;
    toolkit->Click(rows.GetHeader(), {middle + rows.GetHorizontalOffset(), kInside});
    toolkit->Pump();
    return QD_OK;
  });
}

qd_status qd_headless_drag(qd_tree* tree, qd_node number, qd_node target) {
  return WithNode(tree, target, [=](Tree& own, const qd::HostNode& onto) {
    own.Rows().EnsureVisible(onto.GetTreeItemHandle());
    return AsUser(tree, number,
                  [&onto](qd::HeadlessToolkit& toolkit, qd::CQDTreeListCtrl& rows, const qd::HostNode& node,
                          const qd::CRect& line) {
                    qd::CRect place;
                    if (!rows.GetItemRect(onto.GetTreeItemHandle(), place, false)) {
                      return Fail(QD_ERROR_STATE, "The row is not shown.");
                    }
                    const qd::CPoint from = TitleOf(rows, node, line);
                    const qd::CPoint to = TitleOf(rows, onto, place);
                    constexpr int kFar = 20;
                    using enum qd::MessageKind;
                    toolkit.Enqueue({.kind = LeftDown, .target = &rows, .point = from});
                    toolkit.Enqueue({.kind = MouseMove, .target = &rows, .point = {from.x + kFar, from.y}});
                    toolkit.Enqueue({.kind = MouseMove, .target = &rows, .point = to});
                    toolkit.Enqueue({.kind = LeftUp, .target = &rows, .point = to});
                    return QD_OK;
                  });
  });
}

qd_status qd_headless_rename(qd_tree* handle, const char* title) {
  return WithTree(handle, [=](Tree& tree) {
    qd::HeadlessToolkit* toolkit = Toolkit();
    if (toolkit == nullptr) return Fail(QD_ERROR_TOOLKIT);
    if (title == nullptr) return Fail(QD_ERROR_NULL, "No title is given.");
    const std::optional<qd::CString> text = qd::DecodeUtf8(title);
    if (!text) return Fail(QD_ERROR_TEXT);
    toolkit->Key(tree.Rows(), qd::kKeyF2);
    toolkit->Pump();
    if (!tree.Stands() || tree.Rows().IsEditing() == 0) return Fail(QD_ERROR_STATE, "No title can be edited.");
    toolkit->Type(*toolkit->FocusWindow(), *text);
    toolkit->Key(*toolkit->FocusWindow(), qd::kKeyEnter);
    toolkit->Pump();
    return QD_OK;
  });
}
