// A branch that a host adds to a works tree, in this one file and through the public headers only: notes, which it
// keeps itself.

#include "host/Act.h"
#include "host/IPropertySet.h"
#include "qd_wrt/core/RecordBranch.h"
#include "qd_wrt/geometry/CQDTreeItemGeom.h"
#include "support/Model.h"
#include "support/Pages.h"

namespace qd::test {
namespace {

constexpr unsigned short kDataNote = 900;
constexpr unsigned short kDataTypes[] = {kDataNote};
enum NoteCommand : unsigned { kAddNote = 60001, kTearOff };

std::vector<MenuEntry> BoardMenu() {
  return {{.command = kAddNote, .key = "Add", .literal = true}};
}
std::vector<MenuEntry> NoteMenu() {
  return {{.command = kTearOff, .key = "Tear off", .literal = true}};
}

class NotePage final : public IPropertySet {
 public:
  NotePage(CQDDocBase* doc, iterator itr, CString text)
      : IPropertySet(doc, itr, kDataNote), m_text(std::move(text)) {
    ShowApplyBtn(0);
  }
  void ShowProperty() override {
    RemoveAllProperties();
    AddText(AddTitle(nullptr, L"Note"), L"Text", m_text, 0, true);
    AdjustLayout();
  }
  void OnPropertyChanged(CBCGPProp*, std::uint64_t) override {}

 private:
  CString m_text;
};

class NewBranch : public ModelTest, private IQDTreeGroupFactory {
 protected:
  NewBranch() {
    m_checked = false;  // this tree is another than the program's
    m_notes = {{501, L"first"}, {502, L"second"}};
    m_bar.CreateTreeItems(1, this, 1);
    for (CQDTreeItem* branch : Tree().GetQDRootItem()->Children()) branch->Expand(1);
    Settle();
  }
  ~NewBranch() override { m_bar.DestroyTreeItems(); }

  /// What a host does when its records have changed.
  void Write(iterator itr, int kind, const CString& text = {}) {
    kind == kChangeDeleted ? void(m_notes.erase(itr)) : void(m_notes[itr] = text);
    const CQDUpdateRecord record{{{kDataNote, static_cast<std::uint16_t>(kind), itr}}};
    m_bar.UpdateDB(&m_doc, HintOf(record));
  }
  std::string Notes() { return Describe(); }

  std::map<iterator, CString> m_notes;

 private:
  std::string Describe() {
    const std::string all = State();
    return all.substr(all.find("Notes"));
  }
  std::shared_ptr<const RecordBranchKind> Kind() {
    return std::make_shared<const RecordBranchKind>(
        RecordBranchKind{.root = {.titleKey = "Notes", .icon = 3, .dataTypes = kDataTypes, .menu = BoardMenu},
                         .list =
                             [this](const CQDTreeItem&) {
                               std::vector<iterator> itrs;
                               for (const auto& [itr, text] : m_notes) itrs.push_back(itr);
                               return itrs;
                             },
                         .read = [this](const CQDTreeItem&, iterator itr) -> std::optional<RecordRow> {
                           const auto note = m_notes.find(itr);
                           if (note == m_notes.end()) return std::nullopt;
                           return RecordRow{note->second, static_cast<std::int32_t>(itr - 500), Rgb(200, 200, 0)};
                         },
                         .icon = 4,
                         .dropsOn = kDataGeom,
                         .menu = NoteMenu,
                         .run =
                             [this](CQDTreeItem& node, unsigned command) {
                               if (command == kAddNote) Write(m_notes.rbegin()->first + 1, kChangeAdded, L"new");
                               if (command == kTearOff) Write(node.GetIterator(), kChangeDeleted);
                             },
                         .rename =
                             [this](CQDTreeItem& row, const CString& wanted) {
                               const auto isTaken = [this](const CString& name) {
                                 return std::any_of(m_notes.begin(), m_notes.end(),
                                                    [&name](const auto& note) { return note.second == name; });
                               };
                               const auto name = NewName(m_notes.at(row.GetIterator()), wanted, isTaken);
                               if (name) Write(row.GetIterator(), kChangeModified, *name);
                             },
                         .page =
                             [this](const CQDTreeItem& row) {
                               return std::make_unique<NotePage>(row.GetDocument(), row.GetIterator(),
                                                                 m_notes.at(row.GetIterator()));
                             }});
  }
  CQDTreeItem* CreateRootItem(int, CQDTreeListCtrl* control) override {
    class Top final : public CQDTreeItem {
     public:
      Top(CQDTreeListCtrl* tree, std::shared_ptr<const RecordBranchKind> kind)
          : CQDTreeItem(tree, nullptr, L"top", 0, 0), m_kind(std::move(kind)) {}
      int MakeChildItems() override {
        (new CQDTreeItemGeom(GetControl(), this))->MakeItem(kInsertLast);
        (new CQDTreeRecordBranch(GetControl(), this, m_kind))->MakeItem(kInsertLast);
        return 1;
      }

     private:
      std::shared_ptr<const RecordBranchKind> m_kind;
    };
    return new Top(control, Kind());  // owned by the control
  }
};

TEST_F(NewBranch, IsSaidInOnePlaceAndLivesInTheTree) {
  EXPECT_EQ(Notes(), "Notes [first second]]");
  EXPECT_EQ(workbench::ToUtf8(Tree().GetItemText(Row(L"first"), 1)), "1  ");
  EXPECT_EQ(Node(L"Notes")->GetIconIndex(), 3U);
  EXPECT_EQ(Node(L"first")->GetIconIndex(), 4U);
  EXPECT_EQ(Node(L"first")->GetColor(), Rgb(200, 200, 0));
  EXPECT_EQ(Node(L"first")->IsEnableDragType(kDataGeom), 1);
  // Its menus and commands.
  Click(L"Notes");
  m_toolkit.AnswerMenu(kAddNote);
  EXPECT_EQ(Menu(), "Add");
  EXPECT_EQ(Notes(), "Notes [first second new]]");
  Click(L"second");
  m_toolkit.AnswerMenu(kTearOff);
  EXPECT_EQ(Menu(), "Tear off");
  EXPECT_EQ(Notes(), "Notes [first new]]");
  // Its page, which follows the record.
  Click(L"first");
  ASSERT_NE(m_properties.GetPropertySet(), nullptr);
  EXPECT_EQ(PageText(*m_properties.GetPropertySet()), "Note\n  Text: first (fixed)\n");
  Write(501, kChangeModified, L"changed");
  EXPECT_EQ(Notes(), "Notes [*changed new]]");
  EXPECT_EQ(PageText(*m_properties.GetPropertySet()), "Note\n  Text: changed (fixed)\n");
}

TEST_F(NewBranch, TakesANameThatIsTypedOrSaysWhyNot) {
  const auto rename = [this](const CString& title, const CString& name) {
    Click(title);
    Key(kKeyF2);
    CWnd* box = m_toolkit.FindChild(Tree(), 1);
    ASSERT_NE(box, nullptr);
    m_toolkit.Type(*box, name);
    m_toolkit.Key(*box, kKeyEnter);
    Settle();
  };
  rename(L"first", L"other");
  EXPECT_EQ(Notes(), "Notes [*other second]]");
  EXPECT_EQ(m_notes.at(501), L"other");
  Heard();
  rename(L"other", L"second");
  EXPECT_EQ(Warnings(), "IDS_QD_DB_EXIST_NEW_DATA_NAME");
  EXPECT_EQ(Notes(), "Notes [*other second]]");
  Write(777, kChangeModified, L"from elsewhere");  // a record that it had not heard of
  Write(502, kChangeDeleted);
  EXPECT_EQ(Notes(), "Notes [*other from elsewhere]]");
}

}  // namespace
}  // namespace qd::test
