// Random users of both trees: menus, keys, boxes, drops, property pages, the window's own commands, picks, undo
// and redo. The fixture looks at everything after every act.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <sstream>

#include "platform/CEdit.h"
#include "support/Digest.h"
#include "support/EnglishTexts.h"
#include "support/Mesh.h"
#include "support/Rows.h"
#include "workbench/exchange/formats/InpFile.h"
#include "workbench/exchange/store/StoreImport.h"
#include "workbench/session/VariantNames.h"

namespace qd::test {
namespace {

using namespace workbench;

constexpr int kSteps = 100;

/// 100 users, or so many that they take as many steps together as are asked for.
int SequenceCount() {
  const char* wanted = std::getenv("QD_PROPERTY_SEQUENCES");
  return wanted != nullptr ? std::atoi(wanted) / kSteps + 1 : 100;
}

/// A deck as it comes from a file.
ImportedModel Bracket() {
  static const ImportedModel model =
      ReadInpFile(std::filesystem::path(SourceFolder()) / "examples" / "bracket.inp", [](double) {});
  return model;
}

class RandomActs : public MeshTest, public ::testing::WithParamInterface<int> {
 protected:
  RandomActs() : m_random(static_cast<unsigned>(GetParam())) {
    Act([this] {
      std::vector<iterator> sets;
      for (const wchar_t* name : {L"first", L"second", L"third"}) {
        tagTGset set;
        set.name = name;
        sets.push_back(Data().GetGsetPool().Add(set));
      }
      tagTMaterial material;
      for (const wchar_t* name : {L"Steel", L"Brass"}) {
        material.name = name;
        Data().GetMaterialPool().Add(material);
      }
      for (int i = 0; i < 6; ++i) {
        tagTGeom part;
        part.name = L"part " + std::to_wstring(i);
        part.kind = static_cast<TopologyKind>(i % 5);
        part.gset = sets[static_cast<std::size_t>(i) % sets.size()];
        const iterator itr = Data().GetGeomPool().Add(part);
        PutMset(L"mesh " + std::to_wstring(i), i % 3 == 2 ? Pool().GetItrList().front() : 0, 1 + i,
                i < 3 ? itr : 0);
      }
      tagTCord system;
      system.parent = Data().GetCordPool().GetItrList().front();
      for (const wchar_t* name : {L"u", L"v"}) {
        system.SetName(name);
        system.parent = Data().GetCordPool().Add(system);
      }
    });
    Open();
  }

  std::size_t Roll(std::size_t sides) { return sides != 0 ? m_random() % sides : 0; }
  template <typename List>
  auto OneOf(const List& list) {
    return *(list.begin() + static_cast<std::ptrdiff_t>(Roll(list.size())));
  }
  void Say(const std::string& what) { m_said << what << "\n"; }

  /// The next thing that the user does.
  void Step() {
    Show(Roll(3) == 0 ? kGeometrySetTree : kModelTree);
    using Me = RandomActs;
    const std::vector<void (Me::*)()> acts{&Me::UseMenu,  &Me::UseMenu,  &Me::UseMenu, &Me::UseKey,
                                           &Me::ClickBox, &Me::DragRows, &Me::UsePage, &Me::UseWindow,
                                           &Me::Rename,   &Me::GoBack,   &Me::Make,    &Me::ChangeProgram};
    const Digest before = DigestOf(m_doc);
    const std::uint64_t done = Data().ActNumber();
    m_gestures = 1;
    (this->*OneOf(acts))();
    Settle();
    m_toolkit.ForgetAnswers();
    m_toolkit.TakeMessages();
    m_toolkit.TakeDialogs();
    ASSERT_FALSE(Data().IsInTransaction());
    ExpectOneSelection();
    // One act, one entry; what was undone and done again leaves the number of acts alone.
    const std::uint64_t entries = Data().ActNumber() - done;
    if (entries == 0) return;
    EXPECT_LE(entries, m_gestures);
    const Digest after = DigestOf(m_doc);
    for (std::uint64_t entry = 0; entry < entries; ++entry) Undo();
    ExpectIs(before, "undone");
    for (std::uint64_t entry = 0; entry < entries; ++entry) Redo();
    ExpectIs(after, "done again");
  }
  /// The tree that was touched last has what is selected, the other one all of it or nothing.
  void ExpectOneSelection() {
    const Selection& selection = m_doc.GetSelection();
    const std::multiset<iterator> wanted(selection.records.begin(), selection.records.end());
    for (const long type : {kModelTree, kGeometrySetTree}) {
      std::multiset<iterator> records;
      int others = 0;
      const CQDTreeListCtrl& tree = m_session->Trees().Bar(type).GetTreeCtrl();
      std::vector<CQDTreeItem*> nodes;  // in closed branches, too
      tree.GetSelectedTreeItems(tree.GetRootItem(), nodes);
      if (tree.IsSelected(tree.GetRootItem())) nodes.push_back(tree.GetQDRootItem());
      for (const CQDTreeItem* node : nodes) {
        if (node->GetRecord() != 0) records.insert(node->GetRecord());
        if (node->GetRecord() == 0) ++others;
      }
      if (type != selection.tree && nodes.empty()) continue;
      EXPECT_EQ(records, wanted) << "tree " << type << ", touched last " << selection.tree;
      EXPECT_EQ(others, selection.others) << "tree " << type << ", touched last " << selection.tree;
    }
  }
  /// The boxes of rows that stand for nothing that could be shown itself.
  static std::map<CString, int> BoxesOf(const CQDTreeListCtrl& tree) {
    std::map<CString, int> boxes;
    tree.GetQDRootItem()->ForEachBelow([&](const CQDTreeItem* node) {
      const std::optional<RowBox> box = node->GetRowBox();
      if (!box) return;
      boxes[std::to_wstring(box->branch) + L"/" + std::to_wstring(box->itr) + L"/" + std::to_wstring(box->kind)] =
          node->GetCheckStatus();
    });
    return boxes;
  }
  /// Trees that are built anew stand in the order of the records, and mesh sets in that of their keys.
  void ExpectFreshTrees() {
    ExpectedRows expected(m_doc);
    TreeFactory factory;
    for (const long type : {kModelTree, kGeometrySetTree}) {
      CWorksTreeBar bar;
      Session::MakeBar(bar, m_doc);
      bar.CreateTreeItems(static_cast<int>(type), &factory, 0);
      const CQDTreeListCtrl& tree = bar.GetTreeCtrl();
      EXPECT_EQ(Lines(RowsOf(tree, tree.GetRootItem()), false), Lines(expected.Tree(type), false));
      EXPECT_EQ(BoxesOf(tree), BoxesOf(m_session->Trees().Bar(type).GetTreeCtrl()));
      bar.DestroyTreeItems();
    }
  }
  void ExpectIs(const Digest& wanted, const char* when) {
    const Digest now = DigestOf(m_doc);
    EXPECT_EQ(now.display, wanted.display) << when;
    EXPECT_TRUE(now.records == wanted.records) << when;
  }
  std::string Said() const { return m_said.str(); }

  // ---- what a user does

  /// Rows in closed branches are opened to before they are clicked.
  std::vector<HTREEITEM> Rows() {
    std::vector<HTREEITEM> rows;
    for (HTREEITEM row = Tree().GetRootItem(); row; row = NextRow(row)) rows.push_back(row);
    return rows;
  }
  CPoint PlaceOf(HTREEITEM row, int right) {
    Tree().EnsureVisible(row);
    CRect area;
    Tree().GetItemRect(row, area, true);
    return {area.left + right, area.top + 5};
  }
  void SelectSome() {
    HTREEITEM row = OneOf(Rows());
    m_toolkit.Click(Tree(), PlaceOf(row, 4));
    m_toolkit.Pump();
    std::string what = "select " + ToUtf8(Tree().GetItemText(row, 0));
    for (std::size_t more = Roll(3); more > 0; --more) {
      row = OneOf(Rows());
      m_toolkit.Click(Tree(), PlaceOf(row, 4), Roll(4) == 0 ? kMouseShift : kMouseControl);
      what += ", " + ToUtf8(Tree().GetItemText(row, 0));
      m_toolkit.Pump();
    }
    m_toolkit.Pump();
    Say(what);
  }
  void Answer() {
    for (int box = 0; box < 2; ++box) {
      m_toolkit.AnswerMessage(
          OneOf(std::vector{MessageAnswer::Yes, MessageAnswer::Yes, MessageAnswer::No, MessageAnswer::Cancel}));
    }
    m_toolkit.AnswerDialog(OneOf(std::vector<std::vector<int>>{{1}, {10414, 1}, {10414, 1}, {2}}));
  }
  void UseMenu() {
    SelectSome();
    const std::size_t shown = m_toolkit.ShownMenus().size();
    Tree().ShowContextMenu({10, 10});
    m_toolkit.Pump();
    if (m_toolkit.ShownMenus().size() == shown) return;
    std::vector<unsigned> commands;
    const std::string menu = m_toolkit.LastMenuWithCommands();
    for (std::size_t at = 0; at < menu.size(); ++at) {
      const bool starts = at == 0 || std::isdigit(menu[at - 1]) == 0;
      if (!starts || std::isdigit(menu[at]) == 0) continue;
      const unsigned long number = std::strtoul(menu.c_str() + at, nullptr, 10);
      if (number >= 1000) commands.push_back(static_cast<unsigned>(number));
    }
    if (commands.empty()) return;
    const unsigned command = OneOf(commands);
    Say("command " + std::to_string(command));
    Answer();
    m_toolkit.AnswerMenu(command);
    Tree().ShowContextMenu({10, 10});
  }
  void UseKey() {
    SelectSome();
    const int key = OneOf(std::vector{kKeySpace, kKeySpace, kKeyDown, kKeyUp, kKeyEnd, kKeyLeft, kKeyRight});
    Say("key " + std::to_string(key));
    m_toolkit.Key(Tree(), key, Roll(3) == 0 ? kMouseShift : 0U);
  }
  void ClickBox() {
    const HTREEITEM row = OneOf(Rows());
    Say("box of " + ToUtf8(Tree().GetItemText(row, 0)));
    m_toolkit.Click(Tree(), PlaceOf(row, -30));
  }
  void DragRows() {
    SelectSome();
    const HTREEITEM from = Tree().GetFirstSelectedItem();
    if (!from) return;
    const HTREEITEM to = OneOf(Rows());
    Say("drag to " + ToUtf8(Tree().GetItemText(to, 0)));
    Answer();
    const CPoint begin = PlaceOf(from, 4);
    CRect area;
    Tree().GetItemRect(to, area, true);
    const CPoint end{area.left + 4, area.top + 5};
    const auto queue = [this](MessageKind kind, CPoint point) {
      m_toolkit.Enqueue({.kind = kind, .target = &Tree(), .point = point});
    };
    queue(MessageKind::LeftDown, begin);
    queue(MessageKind::MouseMove, {begin.x + 20, begin.y});
    queue(MessageKind::MouseMove, end);
    queue(MessageKind::LeftUp, end);
  }
  void UsePage() {
    SelectSome();
    IPropertySet* page = m_properties.GetPropertySet();
    if (page == nullptr) return;
    page->ShowProperty();
    std::vector<CBCGPProp*> rows;
    for (const auto& row : page->GetRows()) {
      // Titles with materials are the host's wish, and no state of the document.
      if (row->name == CMSGFunction::GetValue("IDS_QD_WRT_GEOM_GEOM_TITLE")) continue;
      if (!row->readOnly && row->kind != CBCGPProp::Kind::Title) rows.push_back(row.get());
    }
    if (rows.empty()) return;
    CBCGPProp* row = OneOf(rows);
    if (row->kind == CBCGPProp::Kind::Options && !row->options.empty()) row->value = OneOf(row->options);
    if (row->kind == CBCGPProp::Kind::Text) row->value = AnyName();
    if (row->kind == CBCGPProp::Kind::Colour) row->colour = static_cast<COLORREF>(m_random() & 0xFFFFFFU);
    Say("property " + ToUtf8(row->name) + " = " + ToUtf8(row->value));
    m_gestures = 2;  // the row, and the button
    page->OnPropertyChanged(row, row->data);
    if (m_properties.GetPropertySet() == page && page->HasApplyButton()) page->ApplyProperty();
  }
  void UseWindow() {
    Answer();
    const std::size_t what = Roll(8);
    Say("window " + std::to_string(what));
    std::vector<iterator> sets;
    std::vector<iterator> all;
    for (const JournalEntry& entry : Data().AllRecords()) all.push_back(entry.itr);
    switch (what) {
      case 0:
        SelectSome();
        return m_session->Delete();
      case 1:
        return m_session->ShowAll();
      case 2:
        return m_session->HideAll();
      case 3:
        return m_session->LeaveIsolation();
      case 4:
        return m_session->SendToMeshes(kCommandMeshColourMode + static_cast<unsigned>(Roll(6)));
      case 5:
        return m_session->MeshAgain();
      case 6:
        sets = Data().GetGsetPool().GetItrList();
        return sets.empty() ? void() : Data().GetGsetPool().PutCurrentSet(OneOf(sets));
      default:
        return m_session->Trees().Pick({OneOf(all)},
                                       Roll(2) == 0 ? workbench::PickMode::Toggle : workbench::PickMode::Replace);
    }
  }
  CString AnyName() {
    return OneOf(std::vector<CString>{L"new", L"part 1", L"mesh 2", L"second", L"", L"7", L"0.5"});
  }
  void Rename() {
    SelectSome();
    m_toolkit.Key(Tree(), kKeyF2);
    m_toolkit.Pump();
    if (Tree().GetEditBox() == nullptr) return;
    const CString name = AnyName();
    Say("rename to " + ToUtf8(name));
    auto& box = static_cast<CEdit&>(*m_toolkit.FocusWindow());
    box.SetText(name);
    m_toolkit.Key(box, Roll(4) == 0 ? kKeyEscape : kKeyEnter);
  }
  void GoBack() {
    const std::size_t steps = 1 + Roll(4);
    Say("back " + std::to_string(steps));
    for (std::size_t step = 0; step < steps; ++step) m_session->Undo();
    for (std::size_t step = Roll(steps + 1); step > 0; --step) m_session->Redo();
  }
  /// Records of any kinds go in one act, in any order; what may not go stays with all of it.
  void DeleteMixed() {
    std::vector<iterator> all;
    for (const JournalEntry& entry : Data().AllRecords()) {
      if (TypeOf(entry.itr) != kDataSettings) all.push_back(entry.itr);
    }
    std::shuffle(all.begin(), all.end(), m_random);
    all.resize(std::min(all.size(), 1 + Roll(4)));
    std::string what = "delete";
    for (const iterator itr : all) what += " " + std::to_string(TypeOf(itr)) + "/" + std::to_string(NumberOf(itr));
    Say(what);
    const Digest before = DigestOf(m_doc);
    if (Data().Delete(all) == 0) ExpectIs(before, "refused");
    const bool gone = !(DigestOf(m_doc) == before);
    for (const iterator itr : all) EXPECT_TRUE(!gone || Data().GetDataType(itr) == 0);
  }
  /// Something comes in from outside.
  void Make() {
    const std::size_t what = Roll(5);
    if (what == 3) return DeleteMixed();
    Say("make " + std::to_string(what));
    // Few, for each makes everything larger.
    if (what == 4) {
      const int stored = Pool().Count() < 20 ? StoreImport(Data(), Bracket(), L"import") : 1;
      EXPECT_EQ(stored, 1);
      return;
    }
    Act([&] {
      const std::vector<iterator> msets = Pool().GetItrList();
      const std::vector<iterator> parts = Data().GetGeomPool().GetItrList();
      const CString name = L"made " + std::to_wstring(Data().ActNumber());
      if (what == 0) AddPart(name);
      if (what == 1) PutMset(name, msets.empty() ? 0 : OneOf(msets), 2, parts.empty() ? 0 : OneOf(parts));
      if (what == 2 && !parts.empty()) {
        tagTGeom part = *Data().GetGeomPool().GetAtNU(OneOf(parts));
        part.kind = static_cast<TopologyKind>(Roll(5));
        const std::vector<iterator> materials = Data().GetMaterialPool().GetItrList();
        part.material = materials.empty() ? 0 : OneOf(materials);
        ASSERT_EQ(Data().GetGeomPool().Change(Data().GetGeomPool().ItrOfNumber(part.id), part), 1);
      }
    });
  }

  /// Nothing of the document changes, and all of it still fits together.
  void ChangeProgram() {
    const std::size_t what = Roll(4);
    Say("program " + std::to_string(what));
    if (what == 0) {
      m_english ? m_english.reset() : static_cast<void>(m_english.emplace());
      m_session->Manager().OnChangeLanguage();
    }
    if (what == 1) m_session->ChangeVariant(OneOf(kVariants).variant);
    if (what == 2) m_kept.Check(true);
    if (what == 3) ExpectFreshTrees();
  }

  std::optional<EnglishTexts> m_english;
  std::mt19937 m_random;
  std::uint64_t m_gestures = 1;
  std::ostringstream m_said;
};

TEST_P(RandomActs, LeaveEverythingInStep) {
  for (int step = 0; step < kSteps && !HasFailure(); ++step) Step();
  ExpectFreshTrees();
  if (HasFailure()) ADD_FAILURE() << "sequence " << GetParam() << ":\n" << Said();
}
INSTANTIATE_TEST_SUITE_P(Seeds, RandomActs, ::testing::Range(1, 1 + SequenceCount()));

}  // namespace
}  // namespace qd::test
