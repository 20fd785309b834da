#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "support/TreeList.h"
#include "workbench/text/Utf8.h"

namespace qd::test {

/// The control, with what it tells its derived classes written down.
class HeardTree final : public CTreeListCtrl {
 public:
  ~HeardTree() override { DestroyWindow(); }
  std::string heard;
  std::function<std::string(HTREEITEM)> name;
  bool routed = false;
  using CTreeListCtrl::InvalidateRow;

 protected:
  void OnEditChange(HTREEITEM row, int, const CString& text, int escape) override {
    heard += "edit(" + name(row) + "," + workbench::ToUtf8(text) + "," + std::to_string(escape) + ") ";
  }
  void OnPosted(unsigned id, std::uint64_t parameter) override {
    if (id == kCheckMessage) heard += "check(" + name({parameter}) + ") ";
    CTreeListCtrl::OnPosted(id, parameter);
  }
  std::intptr_t OnReflectedNotice(Notice& notice) override {
    if (!routed || notice.code != kNoticeItemExpanding) return CTreeListCtrl::OnReflectedNotice(notice);
    const auto& told = static_cast<const TreeNotice&>(notice);
    return OnItemExpanding(told.row, told.action);
  }
};

/// The pane that holds it.
class HearingParent final : public CWnd, public ITreeListPane {
 public:
  explicit HearingParent(HeardTree& tree) : m_tree(tree) {}
  bool vetoes = false;
  CString tip;
  int columnSteps = 0;
  int counted = 0;  // rows as the tree counted them when it last asked for the scroll bar, and those that stood
  std::size_t standing = 0;

  void ResetScrollBar() override {
    counted = m_tree.GetItemCount();
    standing = m_tree.RowCount();
  }
  void DisplayToolTip(CPoint, const CRect&, bool, const CString& text) override { tip = text; }
  void HideToolTip() override { tip.clear(); }
  void ScrollColumns(int steps) override { columnSteps += steps; }

 protected:
  std::intptr_t OnNotify(Notice& notice) override {
    if (notice.code == CHeaderBase::kNoticeItemChanged) m_tree.RecalcColumnsWidth();
    std::string& heard = m_tree.heard;
    if (notice.code == kNoticeClick) heard += "click ";
    if (notice.code == kNoticeRightClick) heard += "rclick ";
    if (notice.code == CTreeListCtrl::kNoticeBeginDrag || notice.code == CTreeListCtrl::kNoticeBeginRightDrag) {
      const auto& drag = static_cast<const CTreeListCtrl::DragNotice&>(notice);
      heard += (notice.code == CTreeListCtrl::kNoticeBeginDrag ? "drag(" : "rdrag(") + m_tree.name(drag.row) +
               "," + std::to_string(drag.data) + "," + std::to_string(drag.point.x) + "," +
               std::to_string(drag.point.y) + ") ";
    }
    const bool before = notice.code == CTreeCtrl::kNoticeItemExpanding;
    if (before || notice.code == CTreeCtrl::kNoticeItemExpanded) {
      const auto& told = static_cast<const CTreeCtrl::TreeNotice&>(notice);
      heard += told.action == ExpandAction::Expand ? "open" : "clos";
      heard += before ? "ing(" : "ed(";
      heard += m_tree.name(told.row) + ") ";
    } else {
      EXPECT_EQ(m_tree.IsEmulatedNotify(), notice.from == &m_tree);
    }
    const std::intptr_t answer = CWnd::OnNotify(notice);
    return before && vetoes ? 1 : answer;
  }
  void OnContextMenu(CPoint) override { m_tree.heard += "menu "; }

 private:
  HeardTree& m_tree;
};

}  // namespace qd::test
