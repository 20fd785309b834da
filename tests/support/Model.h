#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "host/CTransaction.h"
#include "platform/headless/HeadlessToolkit.h"
#include "support/Digest.h"
#include "support/KeptDocument.h"
#include "support/RecordingHost.h"
#include "support/Rows.h"
#include "workbench/session/Session.h"
#include "workbench/text/Utf8.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {

/// Runs what a program does when the current message is handled.
class LaterQueue final : public CWnd {
 public:
  LaterQueue() { Create(nullptr, 0, {0, 0, 1, 1}); }
  void Add(std::function<void()> what) {
    m_waiting.push_back(std::move(what));
    if (m_waiting.size() == 1) Post(0, 0);
  }

 private:
  void OnPosted(unsigned, std::uint64_t) override {
    for (const auto& what : std::exchange(m_waiting, {})) what();
  }
  std::vector<std::function<void()>> m_waiting;
};

/// A window of the program on the headless toolkit: a document in its file, both works trees, undo, put together
/// by the code that the programs use. After every act that the fixture runs it is seen to that all of it fits
/// together; at the end everything is undone and done again, and each message box has to have been looked at.
class ModelTest : public ::testing::Test, protected CMainFrame {
 protected:
  ModelTest() {
    m_doc.SetPathName(L"model.step");
    for (CWorksTreeBar* bar : {&m_bar, &m_setBar}) workbench::Session::MakeBar(*bar, m_doc);
    m_session = std::make_unique<workbench::Session>(
        m_doc, m_bar, m_setBar,
        workbench::WorksTrees::Window{
            .later = [this](std::function<void()> what) { m_later.Add(std::move(what)); },
            .changed = [this](const CQDUpdateRecord& record) { m_notices.push_back(record); },
            .acted = [this] { ++m_displayActs; }});
  }
  ~ModelTest() override { m_session.reset(); }
  void TearDown() override {
    m_toolkit.Pump();
    EXPECT_EQ(m_toolkit.TakeMessages(), std::vector<CString>()) << "boxes that nobody looked at";
    EXPECT_FALSE(m_toolkit.HasAnswersLeft()) << "something was answered that nobody asked";
    CheckAll(Depth::Whole);
    if (m_checked && !HasFailure() && Data().AllRecords().size() <= kManyRecords) CheckHistory();
  }

  /// Makes the rows of both trees anew, as for a document that was opened, and handles what is queued.
  void Open() {
    m_session->TakeUp(m_doc.GetPathName());
    Settle();
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
  /// The warnings among it, divided by "|".
  std::string Warnings() {
    std::string warnings;
    std::istringstream heard(Heard());
    for (std::string line; std::getline(heard, line);) {
      const std::string call = "warning(";
      if (!line.starts_with(call)) continue;
      warnings += (warnings.empty() ? "" : "|") + line.substr(call.size(), line.size() - call.size() - 1);
    }
    return warnings;
  }
  /// The tree that the test is about from here on.
  void Show(long type) { m_tree = type; }
  CQDTreeListCtrl& Tree() { return m_session->Trees().Bar(m_tree).GetTreeCtrl(); }
  workbench::Database& Data() { return m_doc.GetDatabase(); }

  /// Runs writes as one act.
  template <typename Writes>
  void Act(const Writes& writes) {
    CTransaction transaction(&Data());
    ASSERT_EQ(transaction.Begin(L"act"), 1);
    writes();
    ASSERT_EQ(transaction.Commit(1), 1);
    Settle();
  }
  /// Handles what is queued; then everything has to fit together.
  void Settle() {
    m_toolkit.Pump();
    CheckAll(Depth::Rows);
  }
  void Undo() {
    EXPECT_EQ(Data().Undo(), 1);
    Settle();
  }
  void Redo() {
    EXPECT_EQ(Data().Redo(), 1);
    Settle();
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
    Settle();
  }
  void Drag(const std::vector<CString>& titles, const CString& target) {
    std::vector<CQDTreeItem*> nodes;
    for (const CString& title : titles) nodes.push_back(Node(title));
    Node(target)->OnDrop(nodes);
    Settle();
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
    Settle();
  }
  void ClickCheck(const CString& title) {
    m_toolkit.Click(Tree(), CheckOf(title));
    Settle();
  }
  void Key(int key, unsigned flags = 0) {
    m_toolkit.Key(Tree(), key, flags);
    Settle();
  }

  CPropertiesWnd* GetPropertiesWnd(CQDDocBase*) override { return &m_properties; }
  IWorksTreeManager* GetWorksTreeManager() override {
    return m_session != nullptr ? &m_session->Manager() : nullptr;
  }

  HeadlessToolkit m_toolkit;
  RecordingDocument m_doc;
  RecordingApp m_host{m_doc.Log()};
  RecordingProperties m_properties{m_doc.Log()};
  KeptDocument m_kept{m_doc.GetDatabase()};
  CWorksTreeBar m_bar;
  CWorksTreeBar m_setBar;
  LaterQueue m_later;
  std::unique_ptr<workbench::Session> m_session;
  std::vector<CQDUpdateRecord> m_notices;
  int m_displayActs = 0;
  bool m_checked = true;             // false while a test leaves the trees behind on purpose
  bool m_materialsInTitles = false;  // the host has asked for it

 private:
  enum class Depth { Rows, Whole };
  /// Beyond this a test is about size, and looking at everything would be what takes its time.
  static constexpr std::size_t kManyRecords = 400;
  static constexpr std::size_t kManyActs = 64;

  void CheckAll(Depth depth) {
    if (!m_checked || HasFatalFailure() || Data().IsInTransaction()) return;
    if (Data().AllRecords().size() > kManyRecords) return;
    CheckRows();
    m_kept.Check(depth == Depth::Whole);
  }
  /// Both trees show what the records and the display say.
  void CheckRows() {
    ExpectedRows expected(m_doc, m_materialsInTitles);
    for (CWorksTreeBar* bar : {&m_bar, &m_setBar}) {
      const CQDTreeListCtrl& tree = bar->GetTreeCtrl();
      const bool model = bar == &m_bar;
      const SeenRow rows = expected.Tree(model ? workbench::kModelTree : workbench::kGeometrySetTree);
      EXPECT_EQ(Lines(RowsOf(tree, tree.GetRootItem()), true), Lines(rows, true)) << (model ? "model" : "sets");
    }
  }
  /// Taking everything back and doing it again leads to where we are, by the same places.
  void CheckHistory() {
    std::vector<Digest> former{DigestOf(m_doc)};
    while (former.size() <= kManyActs && Data().Undo() != 0) {
      m_toolkit.Pump();
      former.push_back(DigestOf(m_doc));
      CheckAll(Depth::Rows);
    }
    for (std::size_t act = former.size() - 1; act-- > 0;) {
      EXPECT_EQ(Data().Redo(), 1) << act << " acts were still to be done again";
      m_toolkit.Pump();
      const Digest again = DigestOf(m_doc);
      EXPECT_EQ(again.display, former[act].display) << "act " << former.size() - 1 - act;
      EXPECT_TRUE(again.records == former[act].records) << "act " << former.size() - 1 - act;
    }
    CheckAll(Depth::Whole);
  }
  long m_tree = workbench::kModelTree;

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
