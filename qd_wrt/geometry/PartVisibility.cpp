#include "qd_wrt/geometry/PartVisibility.h"

#include <algorithm>
#include <optional>

#include "host/CGeomPrevShowHideStarter.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/core/ViewUpdate.h"
#include "qd_wrt/geometry/CQDTreeGeomRoot.h"
#include "qd_wrt/geometry/CQDTreeItemGset.h"
#include "qd_wrt/geometry/TopologyCommands.h"

namespace qd {

namespace {

struct Given {
  unsigned command;
  CQDTreeItem& row;
  CQDTreeGeomRoot* root;
  const std::vector<CQDTreeItem*>& acting;

  CQDTreeGeomRoot::PartSet Records() const {
    const std::vector<iterator> itrs = IteratorsOf(acting);
    return {itrs.begin(), itrs.end()};
  }
};

template <void (CQDTreeGeomRoot::*switchAll)()>
void All(const Given& given) {
  (given.root->*switchAll)();
}

template <void (CQDTreeGeomRoot::*switchSome)(const CQDTreeGeomRoot::PartSet&)>
void Some(const Given& given) {
  (given.root->*switchSome)(given.Records());
}

void Invert(const Given& given) {
  const CGeomPrevShowHideStarter change(given.row.GetDocument()->GetCADSession());
  InvertParts(SelectedParts(*given.row.GetControl()));
  given.row.RedrawView();
}

/// Sets, groups and parts alike, as they are selected. "Only" has what is above the sets switch all of them first.
void SwitchRows(const Given& given) {
  CQDTreeItem& row = given.row;
  const bool only = given.command == kCommandShowOnly || given.command == kCommandHideOnly;
  const bool show = given.command == kCommandShow || given.command == kCommandShowOnly;
  const CQDTreeItemGset* set = SetOf(row);
  CQDTreeItem* above = set != nullptr ? set->GetParent() : nullptr;
  // What the rows change together counts as one change, so that "previous" means before all of it.
  const CGeomPrevShowHideStarter change(row.GetDocument()->GetCADSession());
  // The selection goes while everything is switched.
  std::vector<CQDTreeItem*> chosen;
  row.GetControl()->GetSelectedTreeItems(chosen, 0);
  std::erase_if(chosen, [above](const CQDTreeItem* item) { return item == above || !item->HasCheck(); });
  {
    std::optional<QuietNode> quiet;
    if (above != nullptr) quiet.emplace(*above);
    if (given.command == kCommandShowOnly) row.GetDocument()->OnShowOnly();
    if (only && above != nullptr) above->OnMenuEvent(show ? kCommandHideAll : kCommandShowAll);
    for (CQDTreeItem* item : chosen) {
      if (!item->IsDetached()) item->OnClickCheck(show ? kUnchecked : kChecked);  // hosts may have deleted some
    }
    if (only) row.ResetSelection(1);
  }
  if (only) {
    row.RedrawView();
  } else if (CQDViewBase* view = row.GetDocument()->GetActiveView()) {
    view->Redraw(0);  // whatever the row's own flag says
  }
}

struct Entry {
  unsigned command;
  unsigned rows;
  void (*run)(const Given&);
};

constexpr unsigned Of(std::initializer_list<VisibilityRow> rows) {
  unsigned bits = 0;
  for (const VisibilityRow row : rows) bits |= static_cast<unsigned>(row);
  return bits;
}
constexpr unsigned kRoots = Of({VisibilityRow::GeometryRoot, VisibilityRow::SetRoot});
constexpr unsigned kOfParts = Of({VisibilityRow::SetRoot, VisibilityRow::Part});
constexpr unsigned kOfSets = Of({VisibilityRow::RowOfSets});

constexpr Entry kTable[] = {{kCommandShowAll, kRoots, All<&CQDTreeGeomRoot::ShowPartAll>},
                            {kCommandHideAll, kRoots, All<&CQDTreeGeomRoot::HidePartAll>},
                            {kCommandReverseAll, kRoots, All<&CQDTreeGeomRoot::ReverseAll>},
                            {kCommandPrevious, kRoots, Some<&CQDTreeGeomRoot::PrevShowHide>},
                            {kCommandShow, kOfParts, Some<&CQDTreeGeomRoot::ShowPart>},
                            {kCommandHide, kOfParts, Some<&CQDTreeGeomRoot::HidePart>},
                            {kCommandShowOnly, kOfParts, Some<&CQDTreeGeomRoot::ShowPartOnly>},
                            {kCommandHideOnly, kOfParts, Some<&CQDTreeGeomRoot::HidePartOnly>},
                            {kCommandReverse, Of({VisibilityRow::Part, VisibilityRow::RowOfSets}), Invert},
                            {kCommandShow, kOfSets, SwitchRows},
                            {kCommandHide, kOfSets, SwitchRows},
                            {kCommandShowOnly, kOfSets, SwitchRows},
                            {kCommandHideOnly, kOfSets, SwitchRows}};

}  // namespace

bool RunVisibility(unsigned command, VisibilityRow kind, CQDTreeItem& row, CQDTreeGeomRoot* root,
                   const std::vector<CQDTreeItem*>& acting) {
  const auto* entry = std::find_if(std::begin(kTable), std::end(kTable), [&](const Entry& candidate) {
    return candidate.command == command && (candidate.rows & static_cast<unsigned>(kind)) != 0;
  });
  if (entry == std::end(kTable)) return false;
  entry->run({command, row, root, acting});
  return true;
}

}  // namespace qd
