// Each kind of act that the window has is recorded as lines that do it again.

#include <QComboBox>
#include <QLineEdit>

#include "Recorded.h"
#include "support/Places.h"
#include "workbench/session/WindowCommands.h"

namespace qd::test {
namespace {

using namespace workbench;

class RecordedActs : public Recorded {
 protected:
  std::vector<iterator> Parts() { return Data().GetGeomPool().GetItrList(); }
  iterator PartOf(TopologyKind kind) {
    for (const iterator part : Parts()) {
      if (Data().GetGeomPool().GetAtNU(part)->kind == kind) return part;
    }
    return 0;
  }
  iterator Named(const CString& name) { return Data().GetMsetPool().GetItr(name); }
  CQDTreeListCtrl& Sets() { return m_window->SetTreePane().Bar().GetTreeCtrl(); }
  void Command(CQDTreeListCtrl& tree, int data, const std::vector<iterator>& records, unsigned command) {
    const TArray<iterator> itrs(records.begin(), records.end());
    m_window->Document().Select({itrs});
    tree.SetSelection(data, itrs);
    tree.OnMenuEvent(command);
    Settle();
  }
  void OnParts(const std::vector<iterator>& parts, unsigned command) { Command(Sets(), 1, parts, command); }
  void OnSets(const std::vector<CString>& names, unsigned command) {
    std::vector<iterator> sets;
    for (const CString& name : names) sets.push_back(Named(name));
    Command(Tree(), 2, sets, command);
  }
  void ToMeshes(unsigned command) {
    m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), command);
    Settle();
  }
  void Settle() { Wait(80); }
  static void Enter(QDialog& dialog, const std::vector<double>& numbers) {
    auto fields = dialog.findChildren<NumberField*>();
    fields.removeIf([&dialog](const NumberField* field) { return !field->isVisibleTo(&dialog); });
    ASSERT_EQ(static_cast<std::size_t>(fields.size()), numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) fields[static_cast<int>(i)]->SetValue(numbers[i]);
  }
  /// Enters numbers into the open dialog of a name, presses a button and closes it.
  void Apply(const char* name, const std::vector<double>& numbers, const char* button = "apply",
             const QString& text = {}) {
    ASSERT_TRUE(WaitUntil([&] { return Dialog(name) != nullptr; })) << name;
    QDialog* dialog = Dialog(name);
    Enter(*dialog, numbers);
    if (!text.isEmpty()) dialog->findChild<QLineEdit*>()->setText(text);
    const std::uint64_t acts = Data().ActNumber();
    dialog->findChild<QPushButton*>(button)->click();
    EXPECT_TRUE(WaitUntil([this] { return !m_window->IsWorking() && m_window->IsUpToDate(); }));
    EXPECT_NE(Data().ActNumber(), acts) << name << " " << button << Messages().toStdString();
    dialog->close();
    Settle();
  }
  static QString Example(const char* name) { return QString::fromStdString(SourceFolder()) + "/examples/" + name; }
};

TEST_F(RecordedActs, WorkOnShapes) {
  Trigger("IDS_WB_RECORD_ACTS");
  Open(m_files.Make({"mixed"}, "mixed.brep"));
  const iterator block = PartOf(TopologyKind::Solid);
  const iterator face = PartOf(TopologyKind::Surface);
  const iterator line = PartOf(TopologyKind::Curve);
  OnParts({line}, kCommandProject);
  auto* target = Dialog("operation")->findChild<QComboBox*>("target");
  target->setCurrentIndex(target->findData(QVariant::fromValue(block)));
  Apply("operation", {0, 0, -1});
  m_window->Document().GetPicks().Add({{PickFilter::Faces, block, 1}, {PickFilter::Edges, block, 2}});
  m_window->Document().GetPicks().Add({{PickFilter::Points, block, 3}});
  Trigger("IDS_WB_PICKED_TAKE_OUT_MENU");
  ASSERT_TRUE(WaitUntil([this] { return Parts().size() == 7 && !m_window->IsWorking(); }));
  OnParts({block, face}, kCommandTranslate);
  Apply("operation", {0.1, 0, -5});
  OnParts({face, block}, kCommandRotate);
  Apply("operation", {1, 0, 0, 0, 1, 1, 33.3});
  OnParts({block}, kCommandMirror);
  Apply("operation", {0, 0, 2, 0.3, 0, 1});
  OnParts({block}, kCommandScale);
  Apply("operation", {0, 1, 0, 1.7});
  OnParts({block}, kCommandSimplify);
  Apply("operation", {100});
  ToMeshes(kCommandMeshAuto2D);
  Apply("operation", {8});
  OnParts({face}, kCommandSweep);
  Apply("operation", {0.5, 0, 5});
  OnParts({face, block}, kCommandRigid);
  OnParts({face}, kCommandFlexible);
  Replay("shapes");
}

TEST_F(RecordedActs, WorkOnMeshes) {
  Trigger("IDS_WB_RECORD_ACTS");
  Open(Example("bracket.inp"));
  ToMeshes(kCommandMeshNode);
  Apply("mesh", {0.1, 2, 3});
  ToMeshes(kCommandMeshElement);
  Apply("mesh", {}, "apply", "1, 2, 17");
  OnSets({L"PLATE"}, kCommandMeshIncludeExclude);
  Apply("mesh", {}, "include", "1-3");
  OnSets({L"PLATE"}, kCommandMeshIncludeExclude);
  Apply("mesh", {}, "exclude", "2");
  m_window->Document().GetPicks().Add({{PickFilter::Elements, Named(L"PLATE"), 1}});
  Trigger("IDS_WB_PICKED_INTO_SET_MENU");
  Apply("mesh", {}, "intoNew", "Nur \"eins\"");
  for (const auto& [command, numbers] :
       std::vector<std::pair<unsigned, std::vector<double>>>{{kCommandMeshTranslate, {1, 0.1, 0}},
                                                             {kCommandMeshRotate, {1, 0, 0, 0, 1, 1, 33.3}},
                                                             {kCommandMeshMirror, {0, 0, 2, 0.3, 0, 1}},
                                                             {kCommandMeshScale, {0, 1, 0, 1.7}},
                                                             {kCommandMeshSweep, {0, 0, 0.7, 3}}}) {
    OnSets({L"PLATE"}, command);
    Apply("mesh", numbers);
  }
  Data().GetMsetPool().GetNewColor();  // as something before the recording has taken some
  Trigger("IDS_WB_CHECK_FREE_EDGES");
  ASSERT_TRUE(WaitUntil([this] {
    return Dialog("check") != nullptr && Dialog("check")->findChild<QPushButton*>("apply")->isEnabled();
  }));
  Dialog("check")->findChild<QPushButton*>("apply")->click();
  Dialog("check")->close();
  Settle();
  ToMeshes(kCommandNewSet);
  Replay("meshes");
}

TEST_F(RecordedActs, SystemsAndGroups) {
  Trigger("IDS_WB_RECORD_ACTS");
  Open(m_files.Make({"grid", "4"}, "grid.step"));
  CordPool& pool = Data().GetCordPool();
  CQDTreeItem* systems = Tree().GetQDRootItem()->GetChild(0);
  Tree().SelectCTItem(systems);
  Tree().OnMenuEvent(kCommandAddCord);
  ASSERT_TRUE(WaitUntil([this] { return Dialog("cord") != nullptr; }));
  Dialog("cord")->findChild<QComboBox*>("kind")->setCurrentIndex(1);
  Apply("cord", {10, 20, 30, 0, 2, 0, -1, 5, 0}, "apply", "A \\ 1");
  Tree().SelectCTItem(systems);
  Tree().OnMenuEvent(kCommandAddCord);
  Apply("cord", {1, 0, 0, 1, 0, 0, 0, 1, 0}, "apply", "B");
  const iterator first = pool.GetItrList()[1];
  ASSERT_NE(Row(L"B"), nullptr) << PrintTree(Tree());
  Tree().SelectCTItem(Row(L"B"));
  Tree().OnMenuEvent(kCommandEditCord);
  auto* parent = Dialog("cord")->findChild<QComboBox*>("parent");
  parent->setCurrentIndex(parent->findData(QVariant::fromValue(first)));
  Apply("cord", {1, 0, 0, 0, 0, 2, 0, 3, 0}, "apply", "C");
  m_window->Document().GetDisplay().Labels().SetShowHide(0, kLabelCord, 3);
  Settle();
  CQDTreeItem* sets = Sets().GetQDRootItem();
  Sets().SelectCTItem(sets->GetChild(0));
  const std::size_t before = Data().GetGsetPool().Count();
  for (CQDTreeItem* node = sets; node != nullptr && Data().GetGsetPool().Count() == before;
       node = node->GetChild(0)) {
    Sets().SelectCTItem(node);
    Sets().OnMenuEvent(kCommandNewSet);
    Settle();
  }
  ASSERT_EQ(Data().GetGsetPool().Count(), before + 1);
  Data().GetGsetPool().PutCurrentSet(Data().GetGsetPool().GetItrList().back());
  Settle();
  OnParts({Parts()[1]}, kCommandTranslate);
  Apply("operation", {1, 0, 0});
  Replay("systems");
}

TEST_F(RecordedActs, WhatIsShownAndHow) {
  Trigger("IDS_WB_RECORD_ACTS");
  Open(m_files.Make({"grid", "4"}, "grid.step"));
  Open(Example("bracket.inp"));
  const std::vector<iterator> parts = Parts();
  OnParts({parts[0], parts[2]}, kCommandWireframe);
  OnParts({parts[1]}, kCommandTransparent + 3);
  OnSets({L"PLATE"}, kCommandMeshFreeFaces);
  OnSets({L"PLATE", L"WEDGES"}, kCommandMeshTransparent + 4);
  OnSets({L"WEDGES"}, kCommandShrink);
  OnSets({L"PLATE"}, kCommandNodeIds);
  ToMeshes(kCommandAllNodes);
  OnSets({L"WEDGES"}, kCommandNodes);
  ToMeshes(kCommandAllElementIds);
  ToMeshes(kCommandMeshColourMode + 3);
  ToMeshes(kCommandMeshRandomColour);
  Trigger("IDS_WB_QUALITY_SKEWNESS");
  m_window->Document().GetDisplay().Meshes().PutColouring(
      {MeshDisplay::Colouring::kByQuality, {QualityMeasure::Warpage, true, 0.25, 7}});
  Settle();
  Trigger("IDS_WB_FADE_MESHED");
  m_window->Document().GetDisplay().Parts().SetAllColorModelType(1);
  Settle();
  Trigger("IDS_QD_WRT_HIDE_ALL");
  Settle();
  Trigger("IDS_QD_WRT_SHOW_ALL");
  Settle();
  OnParts({parts[3]}, kCommandHide);
  OnParts({parts[0], parts[1]}, kCommandShowOnly);
  EXPECT_NE(m_window->Document().GetDisplay().Isolation(), nullptr);
  Trigger("IDS_WB_LEAVE_ISOLATION");
  Settle();
  OnParts({parts[2]}, kCommandShowOnly);
  m_window->Export(Path("all.msh"));
  ASSERT_TRUE(WaitUntil([this] { return !m_window->IsWorking(); }));
  Replay("shown");
  EXPECT_NE(m_script.find("doc.export(\"" + Path("all.msh").toStdString()), std::string::npos);
}

}  // namespace
}  // namespace qd::test
