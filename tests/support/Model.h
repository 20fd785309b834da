#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/CTransaction.h"
#include "platform/headless/HeadlessToolkit.h"
#include "support/Digest.h"
#include "support/KeptDocument.h"
#include "support/RecordingHost.h"
#include "workbench/session/Session.h"
#include "workbench/text/Utf8.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {

/// Runs what a program does when the current message is handled.
class LaterQueue final : public CWnd {
 public:
  LaterQueue() { Create(nullptr, 0, {0, 0, 1, 1}); }
  void Add(std::function<void()> what);

 private:
  void OnPosted(unsigned, std::uint64_t) override;
  std::vector<std::function<void()>> m_waiting;
};

/// A window of the program on the headless toolkit: a document in its file, both works trees, undo, put together
/// by the code that the programs use. After every act that the fixture runs it is seen to that all of it fits
/// together; at the end everything is undone and done again, and each message box has to have been looked at.
class ModelTest : public ::testing::Test, protected CMainFrame {
 protected:
  ModelTest();
  ~ModelTest() override;
  void TearDown() override;

  /// Makes the rows of both trees anew, as for a document that was opened, and handles what is queued.
  void Open();
  /// What the host has heard from the module since the last time, a line a call.
  std::string Heard() { return m_doc.Log().Take(); }
  /// How often the view was asked for a redraw among it.
  int Redraws();
  /// The warnings among it, divided by "|".
  std::string Warnings();
  /// The tree that the test is about from here on.
  void Show(long type) { m_tree = type; }
  CQDTreeListCtrl& Tree() { return m_session->Trees().Bar(m_tree).GetTreeCtrl(); }
  workbench::Database& Data() { return m_doc.GetDatabase(); }

  /// Runs writes as one act.
  void Act(const std::function<void()>& writes);
  /// Handles what is queued; then everything has to fit together.
  void Settle();
  void Undo();
  void Redo();
  /// Runs what has to be one act, under this title if one is given, takes it back and does it again; the document
  /// opens all the way.
  void ExpectOneAct(const CString& title, const std::function<int()>& act);

  /// Adds a record inside an open transaction.
  iterator AddPart(const CString& name, COLORREF colour = Rgb(1, 2, 3));
  /// Likewise, as acts of their own.
  std::vector<iterator> AddParts(const std::vector<CString>& names);
  iterator AddPartTo(iterator set, const CString& name, TopologyKind kind = TopologyKind::Solid);
  iterator AddSet(const CString& name);
  iterator AddMaterial(const CString& name, double density = 0);
  void ChangePart(iterator itr, const std::function<void(tagTGeom&)>& change);
  const tagTGeom& Part(iterator itr) { return *Data().GetGeomPool().GetAtNU(itr); }

  /// The first row with this title, in order; none when there is none.
  HTREEITEM Row(const CString& title);
  /// The row behind another one, be it open or not; none behind the last.
  HTREEITEM NextRow(HTREEITEM row);
  CQDTreeItem* Node(const CString& title) { return Tree().NodeOf(Row(title)); }
  /// The tree as one line: titles, children in brackets, "-" before unchecked and "*" before selected rows. The
  /// branches of meshes and coordinate systems stand beside it.
  std::string State() { return Describe(Tree().GetRootItem()); }
  std::string Cords() { return Describe(Row(L"IDS_QD_WRT_Coordinate_System")); }
  std::string Meshes() { return Describe(Row(L"IDS_QD_WRT_MESH")); }
  std::string Print() { return workbench::PrintTree(Tree()); }

  /// Selects rows by title, in one tree or the other.
  void Select(const std::vector<CString>& titles);
  /// By titles that are divided by "|".
  void SelectRows(const CString& titles);
  void Command(unsigned command);
  void Drag(const std::vector<CString>& titles, const CString& target);
  /// Likewise with the mouse, as far as the rows let themselves be dragged; they are selected.
  void DragByMouse(const std::vector<CString>& titles, const CString& target);
  /// The context menu of the first selected row, entries divided by "|".
  std::string Menu();

  /// A point on the row's text, or on its check box.
  CPoint PointOf(const CString& title) { return PointAt(title, 4); }
  CPoint CheckOf(const CString& title) { return PointAt(title, -30); }
  void Click(const CString& title, unsigned flags = 0);
  void ClickCheck(const CString& title);
  void Key(int key, unsigned flags = 0);

  CPropertiesWnd* GetPropertiesWnd(CQDDocBase*) override { return &m_properties; }
  IWorksTreeManager* GetWorksTreeManager() override;

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
  workbench::Subscription m_onRecords;
  workbench::Subscription m_onDisplay;
  bool m_checked = true;             // false while a test leaves the trees behind on purpose
  bool m_materialsInTitles = false;  // the host has asked for it

 private:
  enum class Depth { Rows, Whole };

  void CheckAll(Depth depth);
  /// Both trees show what the records and the display say.
  void CheckRows();
  /// Taking everything back and doing it again leads to where we are, by the same places.
  void CheckHistory();
  CPoint PointAt(const CString& title, int right);
  std::string Describe(HTREEITEM row);

  long m_tree = workbench::kModelTree;
  std::map<std::uint64_t, Digest> m_after;  // what undo and redo bring back, behind each act
  bool m_wentBack = false;
};

}  // namespace qd::test
