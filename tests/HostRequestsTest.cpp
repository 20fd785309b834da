// What the host asks of a pane reaches the nodes that it is meant for, in order, and what these tell the host.

#include "support/Heard.h"
#include "support/Probes.h"

namespace qd::test {
namespace {

/// A node that stands for a record.
class RecordNode final : public ProbeNode {
 public:
  enum Kind { kPlain, kGeom, kMesh, kDatum, kSection };
  struct Traits {
    iterator itr = 0;
    Kind kind = kPlain;
    int itemType = -1;
    std::uint16_t treeType = 0;
  };
  RecordNode(CQDTreeListCtrl* control, CQDTreeItem* parent, const CString& title, const Traits& traits)
      : ProbeNode(control, parent, title), m_traits(traits) {
    m_isGeom = traits.kind == kGeom;
    m_isMesh = traits.kind == kMesh;
    m_isDatum = traits.kind == kDatum;
    m_isSection = traits.kind == kSection;
    SetTreeItemType(traits.treeType);
  }
  iterator GetIterator() const override { return m_traits.itr; }
  int GetItemType() const override { return m_traits.itemType; }
  void SetShowHideItem(int kind, TArray<iterator>& itrs, int show, unsigned flags) override {
    Say("show" + std::to_string(kind),
        {static_cast<std::int64_t>(itrs.size()), show, static_cast<std::int64_t>(flags)});
  }
  void OnMenuEventMeshRoot(unsigned command) override { Say("mesh", {command}); }
  void OnMenuEventSLoadRoot(unsigned command) override { Say("load", {command}); }
  void OnMenuEventBCRoot(unsigned command) override { Say("boundary", {command}); }
  void OnMenuEventDLoadRoot(unsigned command) override { Say("moving", {command}); }
  void ChangeGeomTitle(CQDDocBase* doc, int mode) override { Say("titles", {doc == GetDocument(), mode}); }
  void ChangeGeomColor(int mode) override { Say("colours", {mode}); }
  void GetGeomTitleAndColor(int& title, int& colour) override { title = colour = 4; }
  void RefreshImage() override { Say("image", {}); }
  void OnShowItem(int show, int, int) override { Say("on", {show}); }
  void OnInitialize() override {
    if (initializes) Say("init", {});
    ProbeNode::OnInitialize();
  }
  static inline bool initializes = false;

 private:
  void Say(const std::string& what, const std::vector<std::int64_t>& numbers) {
    log += what + " " + workbench::ToUtf8(GetTitle());
    for (const std::int64_t number : numbers) log += " " + std::to_string(number);
    log += " ";
  }
  Traits m_traits;
};

class Requests : public WorksTree {
 public:
  using ModelTest::Data;
  using ModelTest::m_bar;
  using ModelTest::m_doc;
  using ModelTest::m_toolkit;
  using ModelTest::Node;
  using ModelTest::Row;
  using ModelTest::Tree;

 protected:
  Requests() {
    Act([this] {
      for (const wchar_t* name : {L"A", L"B", L"C", L"D", L"E", L"F"}) {
        tagTCord record;
        record.SetName(name);
        m_records.push_back(Data().GetCordPool().Add(record));
      }
    });
  }
  ~Requests() override { RecordNode::initializes = false; }
  iterator Of(const CString& title) { return m_records.at(static_cast<std::size_t>(title.front() - L'A')); }
  /// A node for a record; of none when the title is a small letter.
  RecordNode* Put(CQDTreeItem* parent, const CString& title, RecordNode::Traits traits = {}) {
    if (title.front() < L'a') traits.itr = Of(title);
    auto* node = new RecordNode(&Tree(), parent, title, traits);
    node->MakeItem(kInsertLast);
    return node;
  }
  void OpenRecords(const std::function<void(CQDTreeItem& root)>& children, RecordNode::Traits root = {}) {
    m_probes.make = [=](CQDTreeListCtrl* control) {
      auto* node = new RecordNode(control, nullptr, L"root", root);
      node->makeChildren = [children](ProbeNode& self) { children(self); };
      return node;
    };
    m_bar.CreateTreeItems(1, &m_probes, 1);
    m_toolkit.Pump();
    ProbeNode::TakeLog();
    Heard();
  }
  std::vector<iterator> m_records;
};

// ---- requests that go to nodes ---------------------------------------------------------------------------

struct Request {
  const char* name;
  std::function<void(Requests&, IWorksTree&, CQDDocBase*, TArray<iterator>&)> ask;
  std::string told;
  std::string state;  ///< empty when nothing is to change
};
class EachRequest : public Requests, public ::testing::WithParamInterface<Request> {};
TEST_P(EachRequest, ReachesTheNodesThatItIsMeantFor) {
  OpenRecords([this](CQDTreeItem& root) {
    Put(&root, L"A", {.kind = RecordNode::kGeom});
    Put(&root, L"B", {.kind = RecordNode::kMesh});
    Put(&root, L"C", {.kind = RecordNode::kDatum});
    CQDTreeItem* section = Put(&root, L"D", {.kind = RecordNode::kSection});
    Put(section, L"a", {.kind = RecordNode::kSection});
    Put(section, L"E", {.kind = RecordNode::kSection});
    Put(&root, L"F");
  });
  TArray<iterator> list{Of(L"C"), Of(L"A"), 4711, Of(L"F"), Of(L"B")};
  RecordNode::initializes = true;
  GetParam().ask(*this, m_bar, &m_doc, list);
  EXPECT_EQ(ProbeNode::TakeLog(), GetParam().told);
  const std::string state = GetParam().state;
  EXPECT_EQ(State(), state.empty() ? "root [A B C D [a E] F]" : state);
}
#define ASK(...)                                                                  \
  [](Requests& test, IWorksTree& tree, CQDDocBase* doc, TArray<iterator>& list) { \
    (void)test, (void)doc, (void)list;                                            \
    __VA_ARGS__;                                                                  \
  }
INSTANTIATE_TEST_SUITE_P(
    Host, EachRequest,
    ::testing::Values(
        Request{"any_rows", ASK(tree.SetSelection(doc, 0, list)), "pages A ", "root [*A *B *C D [a E] *F]"},
        Request{"parts", ASK(tree.SetSelection(doc, 1, list)), "page A ", "root [*A B C D [a E] F]"},
        Request{"meshes", ASK(tree.SetSelection(doc, 2, list)), "page B ", "root [A *B C D [a E] F]"},
        Request{"datums", ASK(tree.SetSelection(doc, 3, list)), "page C ", "root [A B *C D [a E] F]"},
        Request{"picked_parts", ASK(test.m_doc.Select({list}), tree.OnSelectGeom(doc)), "page A ",
                "root [*A B C D [a E] F]"},
        Request{"picked_meshes", ASK(test.m_doc.Select({list}), tree.OnSelectMesh(doc)), "page B ",
                "root [A *B C D [a E] F]"},
        Request{"picked_datums", ASK(test.m_doc.Select({list}), tree.OnSelectDatum(doc)), "page C ",
                "root [A B *C D [a E] F]"},
        Request{"nothing_selected", ASK(tree.SetSelection(doc, 0, list), tree.ResetSelection(doc, 1)), "pages A ",
                ""},
        Request{"hide_parts", ASK(tree.ShowHideGeom(doc, list, 0)), "check A! ", "root [-A B C D [a E] F]"},
        Request{"show_parts", ASK(tree.ShowHideGeom(doc, list, 0), tree.ShowHideGeom(doc, list, 1)),
                "check A! check A! ", ""},
        Request{"node_symbols", ASK(tree.ShowHideNode(doc, list, 0), tree.ShowHideNode(doc, list, 1)),
                "symbols C 0 symbols A 0 symbols F 0 symbols B 0 symbols C 1 symbols A 1 symbols F 1 symbols B 1 ",
                ""},
        Request{"hide_sections", ASK(tree.ShowHideAllSection(doc, 0)), "check D! check E! ",
                "root [A B C -D [a -E] F]"},
        Request{"show_sections", ASK(tree.ShowHideAllSection(doc, 0), tree.ShowHideAllSection(doc, 1)),
                "check D! check E! check D! check E! ", ""},
        Request{"systems", ASK(tree.ShowHideCordLabel(doc, list, 1)), "show1 root 5 1 0 ", ""},
        Request{"loads", ASK(tree.ShowHideManfLabel(doc, list, 0)), "show2 root 5 0 0 ", ""},
        Request{"all_datums", ASK(tree.ShowHideDatum(doc, list, 1)), "show3 root 5 1 0 ", ""},
        Request{"of_a_kind", ASK(tree.SetShowHideItem(doc, 7, list, 1, 3)), "show7 root 5 1 3 ", ""},
        Request{"geometry_menu", ASK(tree.OnMenuEventGeomRoot(doc, 41)), "geom41 ", ""},
        Request{"mesh_menu", ASK(tree.OnMenuEventMeshRoot(doc, 42)), "mesh root 42 ", ""},
        Request{"load_menu", ASK(tree.OnMenuEventSLoadRoot(doc, 43)), "load root 43 ", ""},
        Request{"boundary_menu", ASK(tree.OnMenuEventBCRoot(doc, 44)), "boundary root 44 ", ""},
        Request{"moving_load_menu", ASK(tree.OnMenuEventDLoadRoot(doc, 45)), "moving root 45 ", ""},
        Request{"titles", ASK(tree.ChangeGeomTitle(doc, 1)), "titles root 1 1 ", ""},
        Request{"colours", ASK(tree.ChangeGeomColor(doc, 1)), "colours root 1 ", ""},
        Request{"modes", ASK(tree.SetGeomRenderMode(doc, list)), "image A ", ""},
        Request{"rows", ASK((void)tree, test.Tree().RefreshRows(list)),
                "init C image C init A image A init F image F init B image B ", ""},
        Request{"language", ASK(tree.OnChangeLanguage()),
                "retitle root retitle A retitle B retitle C retitle D retitle a retitle E retitle F ", ""}),
    [](const auto& param) { return std::string(param.param.name); });
#undef ASK

TEST_F(Requests, AnswersAndRepaintingFollow) {
  m_bar.DestroyTreeItems();
  int title = 1;
  int colour = 1;
  m_bar.GetGeomTitleAndColor(&m_doc, title, colour);
  EXPECT_EQ(title * 10 + colour, 11);
  OpenRecords([this](CQDTreeItem& root) { Put(&root, L"A"); });
  m_bar.GetGeomTitleAndColor(&m_doc, title, colour);
  EXPECT_EQ(title * 10 + colour, 44);
  EXPECT_EQ(m_bar.IsSelectedItemExist(&m_doc), 0);
  Select({L"A"});
  EXPECT_EQ(m_bar.IsSelectedItemExist(&m_doc), 1);
  TArray<iterator> none;
  const std::function<void()> repaints[] = {
      [&] { m_bar.OnChangeProgram(); }, [&] { m_bar.OnPrePostMode(&m_doc, 1); }, [&] { m_bar.OnChangeLanguage(); },
      [&] { m_bar.SetGeomRenderMode(&m_doc, none); }, [&] { Node(L"A")->Update(); }};
  for (const auto& repaint : repaints) {
    m_toolkit.Pump();
    int paints = 0;
    m_toolkit.SetScreen([&](CWnd& window, const CRect& area) {
      if (&window == &Tree() && area.Height() == Tree().GetClientRect().Height()) ++paints;
    });
    repaint();
    m_toolkit.Pump();
    EXPECT_EQ(paints, 1);
    m_toolkit.SetScreen(nullptr);
  }
  m_bar.SetBkColor(Rgb(1, 2, 3));
  const auto painted = m_toolkit.Paint(Tree());
  EXPECT_NE(std::find_if(painted.begin(), painted.end(),
                         [](const std::string& call) { return call.find("#010203") != std::string::npos; }),
            painted.end());
}

// ---- boxes and selection of nodes ------------------------------------------------------------------------

TEST_F(Requests, NodesSelectShowAndCheckThemselvesAloneOrWithAllBelow) {
  OpenRecords([this](CQDTreeItem& root) {
    CQDTreeItem* a = Put(&root, L"a");
    Put(Put(a, L"b"), L"c");
    Put(&root, L"d");
  });
  Tree().EnsureVisible(Row(L"c"));
  CQDTreeItem* a = Node(L"a");
  const auto after = [this](const std::function<void()>& act) {
    act();
    return ProbeNode::TakeLog() + State();
  };
  EXPECT_EQ(after([&] { a->Select(0); }), "root [*a [b [c]] d]");
  EXPECT_EQ(after([&] { a->Select(1); }), "root [*a [*b [*c]] d]");
  EXPECT_EQ(after([&] { a->UnSelect(0); }), "root [a [*b [*c]] d]");
  EXPECT_EQ(after([&] { a->UnSelect(1); }), "root [a [b [c]] d]");
  Node(L"b")->Select(1);
  EXPECT_EQ(after([&] { a->CQDTreeItem::Select(Row(L"d")); }), "root [a [b [c]] *d]");
  EXPECT_EQ(Tree().GetFocusedItem(), Row(L"d"));
  a->ResetSelection(0);
  EXPECT_EQ(after([&] { a->SetCheck(kUnchecked, 0); }), "root [-a [b [c]] d]");
  EXPECT_EQ(after([&] { a->SetCheck(kUnchecked, 1); }), "root [-a [-b [-c]] d]");
  EXPECT_EQ(after([&] { a->SetCheck(kChecked, 1); }), "root [a [b [c]] d]");
  EXPECT_EQ(after([&] { a->Show(0, 0); }), "on a 0 root [-a [b [c]] d]");
  EXPECT_EQ(after([&] { a->Show(0, 1); }), "on a 0 on b 0 on c 0 root [-a [-b [-c]] d]");
  EXPECT_EQ(after([&] { a->Show(1, 1); }), "on a 1 on b 1 on c 1 root [a [b [c]] d]");
  EXPECT_EQ(Heard(), "");
}

TEST_F(Requests, InvertingABranchChecksWhatHoldsAnythingShown) {
  OpenRecords([this](CQDTreeItem& root) {
    CQDTreeItem* outer = Put(&root, L"a");
    CQDTreeItem* inner = Put(outer, L"b");
    for (const wchar_t* title : {L"A", L"B", L"C"}) Put(inner, title);
    Put(outer, L"D");
    Put(&root, L"c");
  });
  Node(L"B")->SetCheck(kUnchecked, 0);
  for (const char* state : {"root [a [b [-A B -C] -D] c]", "root [a [b [A -B C] D] c]"}) {
    Node(L"a")->ChangeGeomShowHide();
    EXPECT_EQ(State(), state);
  }
  for (const wchar_t* title : {L"A", L"B", L"C"}) Node(title)->SetCheck(kChecked, 0);
  Node(L"a")->ChangeGeomShowHide();
  EXPECT_EQ(State(), "root [-a [-b [-A -B -C] -D] c]");
  Node(L"C")->SetCheck(kChecked, 0);
  Node(L"D")->SetCheck(kChecked, 0);
  Node(L"a")->ChangeGeomShowHide();
  EXPECT_EQ(State(), "root [a [b [A B -C] -D] c]");
}

// ---- what is checked -------------------------------------------------------------------------------------

TEST_F(Requests, CheckedRecordsGoToTheHostByKindThoseBelowFirst) {
  // Types are inherited: what stands below a set of loads is one, too.
  OpenRecords(
      [this](CQDTreeItem& root) {
        CQDTreeItem* meshes = Put(&root, L"a", {.treeType = 10});
        CQDTreeItem* outer = Put(meshes, L"A");
        Put(outer, L"B");
        Put(meshes, L"C");
        Put(&root, L"D", {.treeType = 13});
        Put(&root, L"E", {.treeType = 14});
        Put(&root, L"F", {.treeType = 15});
        Put(&root, L"A", {.treeType = 9});
      },
      {.itr = m_records.front(), .treeType = 10});
  CQDTreeItem* root = Tree().GetQDRootItem();
  const std::string rest = "doc.AddCheckedPair(D)\ndoc.AddCheckedLoad(E)\ndoc.AddCheckedBoundary(F)\n";
  root->GetChecked();
  EXPECT_EQ(Heard(), "doc.AddCheckedMset(B)\ndoc.AddCheckedMset(A)\ndoc.AddCheckedMset(C)\n" + rest);
  Node(L"A")->SetCheck(kUnchecked, 0);
  root->GetChecked();
  EXPECT_EQ(Heard(), "doc.AddCheckedMset(B)\ndoc.AddCheckedMset(C)\n" + rest);
  Node(L"a")->GetChecked();  // one branch of it
  EXPECT_EQ(Heard(), "doc.AddCheckedMset(B)\ndoc.AddCheckedMset(C)\n");
}

// ---- labels ----------------------------------------------------------------------------------------------

class Labels : public Requests {
 protected:
  /// Labels stand beside records below a branch of their item type: A, with B below it, C without a tick, D; not
  /// beside E, whose branch has none.
  Labels() {
    OpenRecords([this](CQDTreeItem& root) {
      CQDTreeItem* systems = Put(&root, L"systems", {.itemType = kLabelCord});
      Put(Put(systems, L"A", {.kind = RecordNode::kDatum, .itemType = kLabelCord}), L"B",
          {.kind = RecordNode::kDatum});
      Put(systems, L"C", {.kind = RecordNode::kDatum});
      Put(systems, L"D", {.kind = RecordNode::kDatum});
      Put(systems, L"none", {.kind = RecordNode::kDatum});
      Put(Put(&root, L"others"), L"E", {.kind = RecordNode::kDatum});
    });
    Node(L"C")->SetCheck(kUnchecked, 0);
    ProbeNode::TakeLog();
  }
  /// Which labels are to be seen before.
  void Shown(const CString& titles) {
    for (const wchar_t title : CString(L"ABCDE")) {
      const int show = titles.find(title) != CString::npos ? 1 : 0;
      m_doc.GetDisplay().Labels().SetShowHide(show, kLabelCord, Data().GetRecordID(Of(CString(1, title))));
    }
    Heard();
  }
};

TEST_F(Labels, OfSomeAreShownWithThoseBelowThemAndOthersStayAsTheyAre) {
  Shown(L"D");
  m_bar.ShowHideLabel(&m_doc, {Of(L"A"), Of(L"C"), Of(L"E"), 0}, 1);
  EXPECT_EQ(Heard(), "label.Show(B)\nlabel.Show(A)\n");  // a row without a tick shows none
  m_bar.ShowHideLabel(&m_doc, {Of(L"A"), Of(L"B"), Of(L"D")}, 1);
  EXPECT_EQ(Heard(), "");  // they are
  m_bar.ShowHideLabel(&m_doc, {Of(L"D"), Of(L"E"), 4711, Of(L"C")}, 0);
  EXPECT_EQ(Heard(), "label.Hide(D)\nlabel.Hide(C)\n");
}

TEST_F(Labels, OfAllAreShownAndHidden) {
  Shown(L"AC");
  m_bar.ShowHideAllLabel(&m_doc, 1);
  EXPECT_EQ(Heard(), "label.Show(B)\nlabel.Show(D)\n");
  m_bar.ShowHideAllLabel(&m_doc, 0);
  EXPECT_EQ(Heard(), "label.Hide(B)\nlabel.Hide(A)\nlabel.Hide(D)\n");
  std::vector<iterator> some{Of(L"D"), Of(L"B")};  // only these
  Shown(L"AB");
  Tree().GetQDRootItem()->CQDTreeItem::SetShowHide(some, 1, 0);
  EXPECT_EQ(Heard(), "label.Hide(A)\nlabel.Show(D)\n");
}

TEST_F(Labels, AreRestoredFromTheBoxes) {
  Shown(L"AC");
  m_bar.RestoreLabel(&m_doc);
  EXPECT_EQ(Heard(), "label.Show(A)\nlabel.Show(B)\nlabel.Hide(C)\nlabel.Show(D)\n");
  m_bar.ShowHideLabel(&m_doc, kLabelCord, Of(L"B"), 0);
  m_bar.ShowHideLabel(&m_doc, kLabelCord, Of(L"C"), 1);
  m_bar.ShowHideLabel(&m_doc, kLabelCord + 1, Of(L"C"), 1);  // there are no such labels
  EXPECT_EQ(Heard(), "label.Hide(B)\nlabel.Show(C)\n");
}

}  // namespace
}  // namespace qd::test
