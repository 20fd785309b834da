#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/CTransaction.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/core/CWorksTreeManager.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "support/CheckedStore.h"
#include "support/RecordingHost.h"
#include "workbench/text/Utf8.h"
#include "workbench/tree/DocumentNode.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {

/// The host's frame around one document and one works tree on the headless toolkit, over the real model library.
class ModelTest : public ::testing::Test,
                  protected CMainFrame,
                  protected CSwitchDockablePane,
                  private workbench::IDatabaseListener {
 protected:
  ModelTest() : m_manager({{workbench::kModelTree, this}}, &m_factory) {
    m_doc.SetPathName(L"model.step");
    m_doc.GetDatabase().SetListener(this);
    m_bar.SetDocument(&m_doc);
    m_bar.Create(nullptr, 0, {0, 0, 400, 300});
  }
  ~ModelTest() override { m_doc.GetDatabase().SetListener(nullptr); }

  /// Builds the tree over what the database holds and handles what is queued.
  void Open() {
    m_manager.CreateTreeItems(&m_doc, workbench::kModelTree);
    if (HTREEITEM branch = Row(L"Geometry")) Tree().Expand(branch, ExpandAction::Expand);
    m_toolkit.Pump();
  }
  /// What the host has heard from the module since the last time, a line a call.
  std::string Heard() { return m_doc.Log().Take(); }
  /// How often the view was asked for a redraw among it.
  int Redraws() {
    const std::string heard = Heard();
    int count = 0;
    for (std::size_t at = heard.find("view.Redraw(0)"); at != std::string::npos; ++count) {
      at = heard.find("view.Redraw(0)", at + 1);
    }
    return count;
  }
  CQDTreeListCtrl& Tree() { return m_bar.GetTreeCtrl(); }
  workbench::Database& Data() { return m_doc.GetDatabase(); }

  /// Runs writes as one act.
  template <typename Writes>
  void Act(const Writes& writes) {
    CTransaction transaction(&Data());
    ASSERT_EQ(transaction.Begin(L"act"), 1);
    writes();
    ASSERT_EQ(transaction.Commit(1), 1);
  }
  iterator AddPart(const CString& name, COLORREF colour = Rgb(1, 2, 3)) {
    tagTGeom record;
    record.name = name;
    record.colour = colour;
    record.cadItem = Data().GetGeomPool().NextNumber();
    return Data().GetGeomPool().Add(record);
  }
  std::vector<iterator> AddParts(const std::vector<CString>& names) {
    std::vector<iterator> parts;
    Act([&] {
      for (const CString& name : names) parts.push_back(AddPart(name));
    });
    return parts;
  }
  void ChangePart(iterator itr, const std::function<void(tagTGeom&)>& change) {
    Act([&] {
      tagTGeom record = *Data().GetGeomPool().GetAtNU(itr);
      change(record);
      ASSERT_EQ(Data().GetGeomPool().Private_Modify(itr, record, 0, 1), 1);
    });
  }

  /// The first row with this title, in order; none when there is none.
  HTREEITEM Row(const CString& title) {
    for (HTREEITEM row = Tree().GetRootItem(); row;) {
      if (Tree().GetItemText(row, 0) == title) return row;
      HTREEITEM next = Tree().GetChildItem(row);
      for (; !next && row; row = Tree().GetParentItem(row)) next = Tree().GetNextSiblingItem(row);
      row = next;
    }
    return {};
  }
  CQDTreeItem* Node(const CString& title) { return Tree().NodeOf(Row(title)); }
  /// The tree as one line: titles, children in brackets, "-" before unchecked and "*" before selected rows. The
  /// branches of meshes and coordinate systems stand beside it.
  std::string State() { return Describe(Tree().GetRootItem()); }
  std::string Cords() { return Describe(Row(L"IDS_QD_WRT_Coordinate_System")); }
  std::string Meshes() { return Describe(Row(L"IDS_QD_WRT_MESH")); }
  std::string Print() { return workbench::PrintTree(Tree()); }

  /// Selects rows by title, in one tree or the other.
  void Select(const std::vector<CString>& titles) {
    Tree().ResetSelection(1);
    for (const CString& title : titles) {
      Tree().EnsureVisible(Row(title));
      Tree().SetItemState(Row(title), kRowSelected, kRowSelected);
    }
  }
  void Command(unsigned command) {
    Tree().OnMenuEvent(command);
    m_toolkit.Pump();
  }
  void Drag(const std::vector<CString>& titles, const CString& target) {
    std::vector<CQDTreeItem*> nodes;
    for (const CString& title : titles) nodes.push_back(Node(title));
    Node(target)->OnDrop(nodes);
    m_toolkit.Pump();
  }
  /// The context menu of the first selected row, entries divided by "|".
  std::string Menu() {
    Tree().ShowContextMenu({10, 10});
    return m_toolkit.ShownMenus().empty() ? "" : m_toolkit.ShownMenus().back();
  }

  /// A point on the row's text, or on its check box.
  CPoint PointOf(const CString& title) { return PointAt(title, 4); }
  CPoint CheckOf(const CString& title) { return PointAt(title, -30); }
  void Click(const CString& title, unsigned flags = 0) {
    m_toolkit.Click(Tree(), PointOf(title), flags);
    m_toolkit.Pump();
  }
  void ClickCheck(const CString& title) {
    m_toolkit.Click(Tree(), CheckOf(title));
    m_toolkit.Pump();
  }
  void Key(int key, unsigned flags = 0) {
    m_toolkit.Key(Tree(), key, flags);
    m_toolkit.Pump();
  }

  CPropertiesWnd* GetPropertiesWnd(CQDDocBase*) override { return &m_properties; }
  IWorksTreeManager* GetWorksTreeManager() override { return &m_manager; }
  IWorksTree* GetTree(CDocument*) override { return &m_bar; }
  void GetTrees(std::list<IWorksTree*>& trees) override { trees.push_back(&m_bar); }
  IWorksTree* GetDefaultPane() override { return nullptr; }

  HeadlessToolkit m_toolkit;
  RecordingDocument m_doc;
  RecordingApp m_host{m_doc.Log()};
  RecordingProperties m_properties{m_doc.Log()};
  CheckedStore m_checked{m_doc.GetDatabase()};
  workbench::TreeFactory m_factory;
  CWorksTreeBar m_bar;
  CWorksTreeManager m_manager;
  std::vector<CQDUpdateRecord> m_notices;

 private:
  void OnDatabaseChanged(const CQDUpdateRecord& record) override {
    m_notices.push_back(record);
    m_manager.UpdateDB(&m_doc, HintOf(record));
  }
  CPoint PointAt(const CString& title, int right) {
    CRect area;
    EXPECT_TRUE(Tree().GetItemRect(Row(title), area, true)) << "row is hidden";
    return {area.left + right, area.top + 5};
  }
  std::string Describe(HTREEITEM row) {
    std::string text;
    if (!row) return text;
    if (Tree().IsSelected(row)) text += "*";
    if (Tree().WhichCheck(row) == kUnchecked) text += "-";
    text += workbench::ToUtf8(Tree().GetItemText(row, 0));
    if (!Tree().GetChildItem(row)) return text;
    text += " [";
    for (HTREEITEM child = Tree().GetChildItem(row); child; child = Tree().GetNextSiblingItem(child)) {
      const CString title = Tree().GetItemText(child, 0);
      if (title == L"IDS_QD_WRT_MESH" || title == L"IDS_QD_WRT_Coordinate_System") continue;
      if (text.back() != '[') text += " ";
      text += Describe(child);
    }
    return text + "]";
  }
};

}  // namespace qd::test
