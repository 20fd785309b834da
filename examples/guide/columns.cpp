// Columns of a program: what stands in their cells, rows in their order, and what the user makes of them.
#include <platform/CDC.h>
#include <platform/headless/HeadlessToolkit.h>
#include <qd_wrt/nodes/HostTree.h>
#include <qd_wrt/panel/CWorksTreeBar.h>
#include <map>

namespace {

// What the program knows; the tree keeps nothing of it.
struct Part {
  qd::CString name;
  double mass = 0;
  int done = 0;  // in hundredths
};
std::map<std::uint64_t, Part> parts{
    {1, {L"Housing", 12.5, 80}}, {2, {L"Screw", 0.02, 100}}, {3, {L"Shaft", 3.1, 30}}};

int massColumn = 0;
int doneColumn = 0;

qd::TreeCell CellOf(const qd::HostNode& node, int column) {
  const Part& part = parts.at(node.GetKey());
  if (column == massColumn) {
    return {.text = std::to_wstring(part.mass) + L" kg", .number = part.mass};
  }
  return {.text = std::to_wstring(part.done) + L" %", .number = part.done, .painted = true};
}

// A bar, as long as the work that is done.
void PaintDone(const qd::HostNode& node, int, qd::CDC& dc, const qd::CRect& area) {
  qd::CRect bar = area.Deflated(3, 3);
  bar.right = bar.left + bar.Width() * parts.at(node.GetKey()).done / 100;
  dc.FillSolidRect(bar, 0x40A040);
}

}  // namespace

int main() {
  qd::HeadlessToolkit toolkit;
  qd::CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 600, 300});
  qd::HostTree tree(bar.GetTreeCtrl());
  massColumn = bar.AddColumn({.title = L"Mass", .width = 90, .align = 1});
  doneColumn = bar.AddColumn({.title = L"Done"});
  bar.ShowColumns({0, doneColumn, massColumn});
  auto kind = std::make_shared<qd::HostNodeKind>();
  kind->cell = CellOf;
  kind->paint = PaintDone;
  for (const auto& [key, part] : parts) tree.Root().Add({.title = part.name, .key = key}, kind);
  toolkit.Pump();

  const std::string state = tree.SaveState(bar.GetColumnLayout());
  bar.GetTreeCtrl().SortByColumn(massColumn, -1);
  const bool heaviestFirst = bar.GetTreeCtrl().GetItemText(bar.GetTreeCtrl().GetRootItem(), 0) == L"Housing";

  parts.at(2).mass = 20;
  tree.Find(2)->RefreshCells();
  bar.GetTreeCtrl().SortByColumn(massColumn, -1);
  const bool follows = bar.GetTreeCtrl().GetItemText(bar.GetTreeCtrl().GetRootItem(), 0) == L"Screw";

  qd::ColumnLayout columns;
  if (tree.RestoreState(state, columns) != 0) bar.SetColumnLayout(columns);
  const bool asBefore = bar.GetTreeCtrl().GetSortedColumn() == -1;
  const qd::CString name = bar.GetTreeCtrl().GetAccessibleRows()->Name(tree.Find(3)->GetTreeItemHandle());
  return heaviestFirst && follows && asBefore && name.starts_with(L"Shaft, Done 30 %") ? 0 : 1;
}
