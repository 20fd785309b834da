// Searching from a program: filters, marks, and fields of its own.
#include <platform/headless/HeadlessToolkit.h>
#include <qd_wrt/find/IRowFields.h>
#include <qd_wrt/nodes/HostTree.h>
#include <qd_wrt/panel/CWorksTreeBar.h>

namespace {

// What users can ask for beside titles: weight:>2, vendor:smith.
class Fields final : public qd::IRowFields {
 public:
  qd::TArray<Field> GetFields() const override { return {{L"weight", true}, {L"vendor", false}}; }
  int GetNumber(const qd::CQDTreeItem& node, std::size_t, double& value) const override {
    const std::uint64_t key = node.GetIterator();
    if (key == 0) return 0;
    value = static_cast<double>(key) / 10;  // the program looks it up
    return 1;
  }
  int GetTexts(const qd::CQDTreeItem& node, std::size_t, qd::TArray<qd::CString>& texts) const override {
    if (node.GetIterator() == 0) return 0;
    texts.push_back(node.GetIterator() < 20 ? L"Smith" : L"Jones");
    return 1;
  }
};

}  // namespace

int main() {
  qd::HeadlessToolkit toolkit;
  qd::CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 400, 300});
  qd::HostTree tree(bar.GetTreeCtrl());
  qd::HostNode& set = tree.Root().Add({.title = L"Fasteners"});
  set.Add({.title = L"Long screw", .key = 25});
  set.Add({.title = L"Short screw", .key = 15});
  set.Add({.title = L"Washer", .key = 5});

  Fields fields;
  bar.SetRowFields(&fields);  // not owned: it outlives the panel, or null is set first

  bar.SetFilter(L"screw weight:>2");
  toolkit.FinishSlices();  // a search goes on while the program does
  bool right = bar.IsFilterDone() == 1 && bar.GetMatchCount() == 1;

  right = right && bar.SetFind(L"vendor:smith") == 1;
  toolkit.FinishSlices();
  right = right && bar.GetMatchCount() == 2 && bar.FindNext(1) == 1;
  right = right && tree.Selected().size() == 1 && tree.Selected().front()->GetKey() == 15;
  right = right && bar.SelectMatches() == 1 && tree.Selected().size() == 2;

  const int wrong = bar.SetFilter(L"/(/");  // the search that was on goes on
  right = right && wrong == 0 && bar.GetMatchCount() == 2;
  bar.ClearFilter();
  right = right && bar.GetMatchCount() == 0;
  bar.SetRowFields(nullptr);
  return right ? 0 : 1;
}
