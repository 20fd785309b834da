// A tree that follows the records of a program: notes that come, change and go.
#include <host/CQDNullDocument.h>
#include <platform/headless/HeadlessToolkit.h>
#include <qd_wrt/core/RecordBranch.h>
#include <qd_wrt/panel/CWorksTreeBar.h>
#include <map>

namespace {

constexpr unsigned short kDataNote = 900;  // the program's own number for this kind of record
constexpr unsigned short kNoteTypes[] = {kDataNote};

// The program's records. Whoever changes them tells all trees once, when the act is done.
class Notes {
 public:
  using Told = std::function<void(const qd::CQDUpdateRecord& record)>;
  explicit Notes(Told told) : m_told(std::move(told)) {}

  const std::map<qd::iterator, qd::CString>& All() const { return m_notes; }
  void Put(qd::iterator itr, const qd::CString& text) {
    const bool isNew = m_notes.insert_or_assign(itr, text).second;
    m_changes.changes.push_back({kDataNote, isNew ? qd::kChangeAdded : qd::kChangeModified, itr});
  }
  void Delete(qd::iterator itr) {
    if (m_notes.erase(itr) != 0) m_changes.changes.push_back({kDataNote, qd::kChangeDeleted, itr});
  }
  void Commit() {
    if (!m_changes.changes.empty()) m_told(std::exchange(m_changes, {}));
  }

 private:
  Told m_told;
  std::map<qd::iterator, qd::CString> m_notes;
  qd::CQDUpdateRecord m_changes;
};

// All that the tree has to know of notes.
std::shared_ptr<const qd::RecordBranchKind> NoteBranch(Notes& notes) {
  qd::RecordBranchKind kind;
  kind.root = {.titleKey = "Notes", .icon = 3, .dataTypes = kNoteTypes};
  kind.list = [&notes](const qd::CQDTreeItem&) {
    std::vector<qd::iterator> itrs;
    for (const auto& [itr, text] : notes.All()) itrs.push_back(itr);
    return itrs;
  };
  kind.read = [&notes](const qd::CQDTreeItem&, qd::iterator itr) -> std::optional<qd::RecordRow> {
    const auto note = notes.All().find(itr);
    if (note == notes.All().end()) return std::nullopt;
    return qd::RecordRow{note->second, static_cast<std::int32_t>(itr)};
  };
  kind.rename = [&notes](qd::CQDTreeItem& row, const qd::CString& name) {
    notes.Put(row.GetIterator(), name);
    notes.Commit();
  };
  return std::make_shared<const qd::RecordBranchKind>(std::move(kind));
}

// The row above the branch, and who makes it.
class Top final : public qd::CQDTreeItem {
 public:
  Top(qd::CQDTreeListCtrl* control, std::shared_ptr<const qd::RecordBranchKind> kind)
      : CQDTreeItem(control, nullptr, L"Project", 0, 0), m_kind(std::move(kind)) {}
  int MakeChildItems() override {
    (new qd::CQDTreeRecordBranch(GetControl(), this, m_kind))->MakeItem(qd::kInsertLast);  // owned by this
    return 1;
  }

 private:
  std::shared_ptr<const qd::RecordBranchKind> m_kind;
};

class Factory final : public qd::IQDTreeGroupFactory {
 public:
  explicit Factory(Notes& notes) : m_kind(NoteBranch(notes)) {}
  qd::CQDTreeItem* CreateRootItem(int, qd::CQDTreeListCtrl* control) override { return new Top(control, m_kind); }

 private:
  std::shared_ptr<const qd::RecordBranchKind> m_kind;
};

}  // namespace

int main() {
  qd::HeadlessToolkit toolkit;
  qd::CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 400, 300});
  qd::CQDNullDocument document(L"project");
  Notes notes([&](const qd::CQDUpdateRecord& record) { bar.UpdateDB(&document, qd::HintOf(record)); });
  Factory factory(notes);
  bar.SetDocument(&document);
  bar.CreateTreeItems(1, &factory, 1);

  // One act, one notice, however many records it touches.
  notes.Put(1, L"first");
  notes.Put(2, L"second");
  notes.Put(3, L"third");
  notes.Commit();
  notes.Put(2, L"changed");
  notes.Delete(3);
  notes.Commit();

  qd::CQDTreeListCtrl& tree = bar.GetTreeCtrl();
  const qd::CQDTreeItem* changed = tree.FindNode(2);
  const bool follows = tree.FindNode(1) != nullptr && changed != nullptr && changed->GetTitle() == L"changed" &&
                       tree.FindNode(3) == nullptr;
  tree.FindNode(1)->OnEditChange(L"typed");
  const bool writes = notes.All().at(1) == L"typed" && tree.FindNode(1)->GetTitle() == L"typed";
  bar.DestroyTreeItems();  // before the document goes
  return follows && writes ? 0 : 1;
}
