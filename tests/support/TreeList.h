#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/treelist/CTreeListCtrl.h"
#include "workbench/text/Utf8.h"

namespace qd::test {

/// A control in a parent that writes down its notices.
class Parent final : public CWnd {
 public:
  std::string log;
  std::function<void(Notice&)> onNotice;
  std::function<void()> onPosted;
  std::vector<CPoint> menus;  // where they were asked for, on the screen

 protected:
  void OnContextMenu(CPoint screen) override { menus.push_back(screen); }
  std::intptr_t OnNotify(Notice& notice) override {
    if (notice.code == CTreeListCtrl::kNoticeBeginDrag) log += "drag ";
    if (notice.code == CTreeListCtrl::kNoticeBeginRightDrag) log += "rdrag ";
    if (notice.code == kNoticeClick) log += "click ";
    if (notice.code == kNoticeRightClick) log += "rclick ";
    if (notice.code == kNoticeClick) {
      EXPECT_TRUE(static_cast<CTreeListCtrl*>(notice.from)->IsEmulatedNotify());
    }
    const std::weak_ptr<void> sender = notice.from->Life();
    if (onNotice) onNotice(notice);
    return sender.expired() ? 0 : CWnd::OnNotify(notice);
  }
  void OnPosted(unsigned, std::uint64_t) override {
    if (onPosted) onPosted();
  }
};

class TreeList : public ::testing::Test {
 protected:
  TreeList() {
    m_parent.Create(nullptr, 0, {0, 0, 400, 400});
    m_tree.GetHeader().Create(&m_parent, 1, {0, 0, 300, 20});
    m_tree.Create(&m_parent, 2, {0, 20, 300, 220});
    m_tree.InsertColumn(0, L"Name", 0, 180, 0);
    m_tree.InsertColumn(1, L"Key", 1, 60, 0);
    m_tree.InsertColumn(2, L"Colour", 2, -1, 0);
    m_tree.SetImageList(&m_images, &m_images);
    m_toolkit.Pump();
  }
  HTREEITEM Add(const CString& text, HTREEITEM parent = {}) {
    const HTREEITEM row = m_tree.InsertItem(text, 0, 0, parent, kInsertLast);
    m_rows[text] = row;
    return row;
  }
  /// a [a1 a2 a3], b [b1 b2], c; a and b open.
  void AddFamilies() {
    for (const wchar_t* child : {L"a1", L"a2", L"a3"})
      Add(child, m_rows.contains(L"a") ? m_rows[L"a"] : Add(L"a"));
    for (const wchar_t* child : {L"b1", L"b2"}) Add(child, m_rows.contains(L"b") ? m_rows[L"b"] : Add(L"b"));
    Add(L"c");
    for (const wchar_t* branch : {L"a", L"b"}) m_tree.Expand(m_rows[branch], ExpandAction::Expand);
    m_toolkit.Pump();
  }
  std::string Titles(const std::vector<HTREEITEM>& rows) {
    std::string titles;
    for (const HTREEITEM row : rows)
      titles += (titles.empty() ? "" : " ") + workbench::ToUtf8(m_tree.GetItemText(row, 0));
    return titles;
  }
  std::string Selected() { return Titles(m_tree.GetSelectedItems()); }
  std::string Caret() {
    return m_tree.GetFocusedItem() ? workbench::ToUtf8(m_tree.GetItemText(m_tree.GetFocusedItem(), 0)) : "none";
  }
  std::string Children(HTREEITEM parent) {
    std::vector<HTREEITEM> rows;
    for (HTREEITEM row = m_tree.GetChildItem(parent); row; row = m_tree.GetNextSiblingItem(row))
      rows.push_back(row);
    return Titles(rows);
  }
  CPoint At(const CString& text) {
    CRect area;
    EXPECT_TRUE(m_tree.GetItemRect(m_rows[text], area, true));
    return {area.left + 3, area.top + 3};
  }
  void Click(const CString& text, unsigned flags = 0) {
    m_toolkit.Click(m_tree, At(text), flags);
    m_toolkit.Pump();
  }
  void Key(int key, unsigned flags = 0) {
    m_toolkit.Key(m_tree, key, flags);
    m_toolkit.Pump();
  }
  std::string TakeLog() { return std::exchange(m_parent.log, {}); }

  HeadlessToolkit m_toolkit;
  Parent m_parent;
  CImageList m_images;
  CTreeListCtrl m_tree;
  std::map<CString, HTREEITEM> m_rows;
};

}  // namespace qd::test
