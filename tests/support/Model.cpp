#include "support/Model.h"

#include <sstream>
#include <utility>

#include "support/Rows.h"

namespace qd::test {

namespace {

/// Beyond this a test is about size, and looking at everything would be what takes its time.
constexpr std::size_t kManyRecords = 400;
constexpr std::size_t kManyActs = 64;

}  // namespace

void LaterQueue::Add(std::function<void()> what) {
  m_waiting.push_back(std::move(what));
  if (m_waiting.size() == 1) Post(0, 0);
}

void LaterQueue::OnPosted(unsigned, std::uint64_t) {
  for (const auto& what : std::exchange(m_waiting, {})) what();
}

ModelTest::ModelTest() {
  m_doc.SetPathName(L"model.step");
  for (CWorksTreeBar* bar : {&m_bar, &m_setBar}) workbench::Session::MakeBar(*bar, m_doc);
  m_session = std::make_unique<workbench::Session>(
      m_doc, m_bar, m_setBar, [this](std::function<void()> what) { m_later.Add(std::move(what)); });
  m_onRecords = m_doc.OnRecords([this](const CQDUpdateRecord& record) { m_notices.push_back(record); });
  m_onDisplay = m_doc.GetDisplay().Subscribe([this](const workbench::DisplayNotice& notice) {
    if (notice.acted) ++m_displayActs;
  });
}

ModelTest::~ModelTest() {
  EXPECT_FALSE(m_toolkit.IsWaitCursor());
  m_session.reset();
}

void ModelTest::TearDown() {
  m_toolkit.Pump();
  EXPECT_EQ(m_toolkit.TakeMessages(), std::vector<CString>()) << "boxes that nobody looked at";
  EXPECT_FALSE(m_toolkit.HasAnswersLeft()) << "something was answered that nobody asked";
  CheckAll(Depth::Whole);
  if (m_checked && !HasFailure() && Data().AllRecords().size() <= kManyRecords) CheckHistory();
}

void ModelTest::Open() {
  m_session->TakeUp(m_doc.GetPathName());
  Settle();
  if (!m_checked || Data().AllRecords().size() > kManyRecords) return;
  const CQDTreeListCtrl& tree = m_bar.GetTreeCtrl();
  const SeenRow rows = ExpectedRows(m_doc, m_materialsInTitles).Tree(workbench::kModelTree);
  EXPECT_EQ(Lines(RowsOf(tree, tree.GetRootItem()), false), Lines(rows, false)) << "built anew, rows are in order";
}

int ModelTest::Redraws() {
  const std::string heard = Heard();
  int count = 0;
  for (std::size_t at = heard.find("view.Redraw(0)"); at != std::string::npos; ++count) {
    at = heard.find("view.Redraw(0)", at + 1);
  }
  return count;
}

std::string ModelTest::Warnings() {
  std::string warnings;
  std::istringstream heard(Heard());
  for (std::string line; std::getline(heard, line);) {
    const std::string call = "warning(";
    if (!line.starts_with(call)) continue;
    warnings += (warnings.empty() ? "" : "|") + line.substr(call.size(), line.size() - call.size() - 1);
  }
  return warnings;
}

void ModelTest::Act(const std::function<void()>& writes) {
  CTransaction transaction(&Data());
  ASSERT_EQ(transaction.Begin(L"act"), 1);
  writes();
  ASSERT_EQ(transaction.Commit(1), 1);
  Settle();
}

void ModelTest::Settle() {
  m_toolkit.Pump();
  CheckAll(Depth::Rows);
  m_wentBack |= Data().CanRedo();
  if (m_checked && !m_wentBack && Data().AllRecords().size() <= kManyRecords)
    m_after.insert_or_assign(Data().ActNumber(), DigestOf(m_doc));
}

void ModelTest::Undo() {
  EXPECT_EQ(Data().Undo(), 1);
  Settle();
}

void ModelTest::Redo() {
  EXPECT_EQ(Data().Redo(), 1);
  Settle();
}

void ModelTest::ExpectOneAct(const CString& title, const std::function<int()>& act) {
  const auto before = Data().Snapshot();
  const std::uint64_t acts = Data().ActNumber();
  ASSERT_EQ(act(), 1);
  Settle();
  EXPECT_EQ(Data().ActNumber(), acts + 1);
  EXPECT_TRUE(title.empty() || Data().UndoTitle() == title);
  const auto after = Data().Snapshot();
  m_kept.Check(true);
  Undo();
  EXPECT_EQ(Data().Snapshot(), before);
  m_kept.Check(true);
  Redo();
  EXPECT_EQ(Data().Snapshot(), after);
  m_kept.Check(true);
}

iterator ModelTest::AddPart(const CString& name, COLORREF colour) {
  tagTGeom record;
  record.name = name;
  record.colour = colour;
  record.cadItem = Data().GetGeomPool().NextNumber();
  return Data().GetGeomPool().Add(record);
}

std::vector<iterator> ModelTest::AddParts(const std::vector<CString>& names) {
  std::vector<iterator> parts;
  Act([&] {
    for (const CString& name : names) parts.push_back(AddPart(name));
  });
  return parts;
}

iterator ModelTest::AddPartTo(iterator set, const CString& name, TopologyKind kind) {
  iterator part = 0;
  Act([&] {
    tagTGeom record;
    record.name = name;
    record.kind = kind;
    record.gset = set;
    record.cadItem = Data().GetGeomPool().NextNumber();
    part = Data().GetGeomPool().Add(record);
  });
  return part;
}

iterator ModelTest::AddSet(const CString& name) {
  iterator set = 0;
  Act([&] {
    tagTGset record;
    record.name = name;
    set = Data().GetGsetPool().Add(record);
  });
  return set;
}

iterator ModelTest::AddMaterial(const CString& name, double density) {
  iterator material = 0;
  Act([&] {
    tagTMaterial record;
    record.name = name;
    record.density = density;
    material = Data().GetMaterialPool().Add(record);
  });
  return material;
}

void ModelTest::ChangePart(iterator itr, const std::function<void(tagTGeom&)>& change) {
  Act([&] {
    tagTGeom record = *Data().GetGeomPool().GetAtNU(itr);
    change(record);
    ASSERT_EQ(Data().GetGeomPool().Private_Modify(itr, record, 0, 1), 1);
  });
}

HTREEITEM ModelTest::Row(const CString& title) {
  for (HTREEITEM row = Tree().GetRootItem(); row; row = NextRow(row)) {
    if (Tree().GetItemText(row, 0) == title) return row;
  }
  return {};
}

HTREEITEM ModelTest::NextRow(HTREEITEM row) {
  HTREEITEM next = Tree().GetChildItem(row);
  for (; !next && row; row = Tree().GetParentItem(row)) next = Tree().GetNextSiblingItem(row);
  return next;
}

void ModelTest::Select(const std::vector<CString>& titles) {
  Tree().ResetSelection(1);
  for (const CString& title : titles) {
    Tree().EnsureVisible(Row(title));
    Tree().SetItemState(Row(title), kRowSelected, kRowSelected);
  }
}

void ModelTest::SelectRows(const CString& titles) {
  std::vector<CString> rows;
  std::wistringstream list(titles);
  for (CString title; std::getline(list, title, L'|');) rows.push_back(title);
  Select(rows);
}

void ModelTest::Command(unsigned command) {
  Tree().OnMenuEvent(command);
  Settle();
}

void ModelTest::Drag(const std::vector<CString>& titles, const CString& target) {
  std::vector<CQDTreeItem*> nodes;
  for (const CString& title : titles) nodes.push_back(Node(title));
  Node(target)->OnDrop(nodes);
  Settle();
}

void ModelTest::DragByMouse(const std::vector<CString>& titles, const CString& target) {
  Select(titles);
  Tree().EnsureVisible(Row(target));
  const CPoint from = PointOf(titles.front());
  const CPoint to = PointOf(target);
  const auto queue = [this](MessageKind kind, CPoint point) {
    m_toolkit.Enqueue({.kind = kind, .target = &Tree(), .point = point});
  };
  queue(MessageKind::LeftDown, from);
  queue(MessageKind::MouseMove, {from.x + 20, from.y});
  queue(MessageKind::MouseMove, to);
  queue(MessageKind::LeftUp, to);
  Settle();
}

std::string ModelTest::Menu() {
  Tree().ShowContextMenu({10, 10});
  return m_toolkit.ShownMenus().empty() ? "" : m_toolkit.ShownMenus().back();
}

void ModelTest::Click(const CString& title, unsigned flags) {
  m_toolkit.Click(Tree(), PointOf(title), flags);
  Settle();
}

void ModelTest::ClickCheck(const CString& title) {
  m_toolkit.Click(Tree(), CheckOf(title));
  Settle();
}

void ModelTest::Key(int key, unsigned flags) {
  m_toolkit.Key(Tree(), key, flags);
  Settle();
}

IWorksTreeManager* ModelTest::GetWorksTreeManager() {
  return m_session != nullptr ? &m_session->Manager() : nullptr;
}

void ModelTest::CheckAll(Depth depth) {
  if (!m_checked || HasFatalFailure() || Data().IsInTransaction()) return;
  if (Data().AllRecords().size() > kManyRecords) return;
  CheckRows();
  for (const iterator itr : m_doc.GetSelectBuffer())
    EXPECT_NE(Data().GetDataType(itr), 0) << "a record that is gone";
  m_kept.Check(depth == Depth::Whole);
  if (depth == Depth::Whole) {
    EXPECT_EQ(DisplayTextOfOpened(m_doc), DisplayText(m_doc));
  }
}

void ModelTest::CheckRows() {
  ExpectedRows expected(m_doc, m_materialsInTitles);
  for (CWorksTreeBar* bar : {&m_bar, &m_setBar}) {
    const CQDTreeListCtrl& tree = bar->GetTreeCtrl();
    const bool model = bar == &m_bar;
    const SeenRow rows = expected.Tree(model ? workbench::kModelTree : workbench::kGeometrySetTree);
    const SeenRow seen = RowsOf(tree, tree.GetRootItem());
    EXPECT_EQ(Lines(seen, true), Lines(rows, true)) << (model ? "model" : "sets");
    // Records come in any order, branches do not.
    const bool inOrder =
        std::equal(seen.children.begin(), seen.children.end(), rows.children.begin(), rows.children.end(),
                   [](const SeenRow& a, const SeenRow& b) { return a.title == b.title; });
    EXPECT_TRUE(inOrder) << Lines(seen, false);
  }
}

void ModelTest::CheckHistory() {
  std::vector<Digest> former{DigestOf(m_doc)};
  while (former.size() <= kManyActs && Data().Undo() != 0) {
    m_toolkit.Pump();
    former.push_back(DigestOf(m_doc));
    CheckAll(Depth::Rows);
  }
  // Where no act was ever taken back, the acts are those that were seen when they were done.
  const bool isAllSeen = !m_wentBack && former.size() - 1 == Data().ActNumber();
  for (std::size_t back = 1; isAllSeen && back < former.size(); ++back) {
    const auto seen = m_after.find(Data().ActNumber() - back);
    if (seen == m_after.end()) continue;
    EXPECT_EQ(former[back].display, seen->second.display) << back << " acts back";
    EXPECT_TRUE(former[back].records == seen->second.records) << back << " acts back";
  }
  for (std::size_t back = former.size() - 1; back-- > 0;) {
    EXPECT_EQ(Data().Redo(), 1) << back << " acts were still to be done again";
    m_toolkit.Pump();
    const Digest again = DigestOf(m_doc);
    EXPECT_EQ(again.display, former[back].display) << "act " << former.size() - 1 - back;
    EXPECT_TRUE(again.records == former[back].records) << "act " << former.size() - 1 - back;
  }
  CheckAll(Depth::Whole);
}

CPoint ModelTest::PointAt(const CString& title, int right) {
  CRect area;
  EXPECT_TRUE(Tree().GetItemRect(Row(title), area, true)) << "row is hidden";
  return {area.left + right, area.top + 5};
}

std::string ModelTest::Describe(HTREEITEM row) {
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

}  // namespace qd::test
