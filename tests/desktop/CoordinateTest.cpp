// Coordinate systems in the window: the dialog and the symbols in the view.

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "InWindow.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/app/NumberField.h"
#include "workbench/view/CordSymbols.h"

namespace qd::test {
namespace {

using namespace workbench;

class Coordinates : public InWindow {
 protected:
  CordPool& Pool() { return Data().GetCordPool(); }
  CQDTreeItem* Branch() { return Tree().GetQDRootItem()->GetChild(0); }
  void Command(CQDTreeItem* node, unsigned command) {
    Tree().SelectCTItem(node);
    Tree().OnMenuEvent(command);
    Wait(50);
  }
  /// Fills the open dialog: nine numbers, origin, first axis, direction in the plane.
  void Enter(const QString& name, const std::vector<double>& numbers, int kind = 0) {
    QDialog* dialog = Dialog("cord");
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QLineEdit*>("name")->setText(name);
    dialog->findChild<QComboBox*>("kind")->setCurrentIndex(kind);
    const auto fields = dialog->findChildren<NumberField*>();
    ASSERT_EQ(fields.size(), 9);
    for (std::size_t i = 0; i < numbers.size(); ++i) fields[static_cast<int>(i)]->SetValue(numbers[i]);
  }
  QString Apply() {
    Dialog("cord")->findChild<QPushButton*>("apply")->click();
    for (const QLabel* fault : Dialog("cord")->findChildren<QLabel*>("fault")) {
      if (fault->isVisible()) return fault->text();
    }
    return Dialog("cord")->findChild<QLabel*>("outcome")->text();
  }
  const CordSymbols::Symbol* Symbol(iterator itr) {
    Wait(150);
    for (const CordSymbols::Symbol& symbol : m_window->View().Cords().Symbols()) {
      if (symbol.itr == itr) return &symbol;
    }
    return nullptr;
  }
};

TEST_F(Coordinates, TheDialogMakesAndEditsSystems) {
  Command(Branch(), kCommandAddCord);
  ASSERT_NE(Dialog("cord"), nullptr);
  EXPECT_EQ(Dialog("cord")->findChild<QLineEdit*>("name")->text(), "System 1");
  Enter("A", {10, 20, 30, 0, 2, 0, -1, 5, 0}, 1);
  EXPECT_EQ(Apply(), "A: stored");
  const std::vector<iterator> all = Pool().GetItrList();
  ASSERT_EQ(all.size(), 2U);
  const tagTCord* record = Pool().GetAtNU(all[1]);
  EXPECT_EQ(record->kind, CordKind::Cylindrical);
  EXPECT_EQ(record->origin, (Vector3{10, 20, 30}));
  EXPECT_NEAR(Pool().GlobalPlacement(all[1]).axes[2][2], 1, 1e-12);
  EXPECT_EQ(Dialog("cord")->findChild<QLineEdit*>("name")->text(), "System 2") << "ready for the next one";
  Keep("cord-dialog", Dialog("cord"));
  // The second stands on the first.
  auto* parents = Dialog("cord")->findChild<QComboBox*>("parent");
  parents->setCurrentIndex(parents->findText("A"));
  Enter("B", {1, 0, 0, 1, 0, 0, 0, 1, 0});
  EXPECT_EQ(Apply(), "B: stored");
  const iterator b = Pool().GetItrList()[2];
  EXPECT_NEAR(Pool().GlobalPlacement(b).origin[1], 21, 1e-12);
  Dialog("cord")->close();
  // Editing A: B may not carry it.
  Command(Branch()->GetChild(1), kCommandEditCord);
  EXPECT_EQ(Dialog("cord")->findChild<QLineEdit*>("name")->text(), "A");
  parents = Dialog("cord")->findChild<QComboBox*>("parent");
  EXPECT_EQ(parents->findText("A"), -1);
  parents->setCurrentIndex(parents->findText("B"));
  EXPECT_TRUE(Apply().contains("relative to it")) << Apply().toStdString();
  parents->setCurrentIndex(0);
  Enter("A2", {0, 0, 0});
  EXPECT_EQ(Apply(), "A2: stored");
  EXPECT_EQ(Branch()->GetChild(1)->GetTitle(), L"A2");
  Data().Undo();
  EXPECT_EQ(Branch()->GetChild(1)->GetTitle(), L"A");
}

struct FaultCase {
  const char* name;
  QString entered;
  std::vector<double> numbers;
  QString said;
};
class CoordinateFaults : public Coordinates, public ::testing::WithParamInterface<FaultCase> {};
TEST_P(CoordinateFaults, AreToldAndNothingIsStored) {
  Command(Branch(), kCommandAddCord);
  Enter(GetParam().entered, GetParam().numbers);
  const auto before = Data().Snapshot();
  EXPECT_TRUE(Apply().contains(GetParam().said)) << Apply().toStdString();
  EXPECT_EQ(Data().Snapshot(), before);
  EXPECT_FALSE(Data().CanUndo());
}
INSTANTIATE_TEST_SUITE_P(
    Kinds, CoordinateFaults,
    ::testing::Values(FaultCase{"no_name", "  ", {}, "must not be empty"},
                      FaultCase{"known_name", "Global", {}, "in use already"},
                      FaultCase{"zero_axis", "A", {0, 0, 0, 0, 0, 0, 1, 0, 0}, "along one line"},
                      FaultCase{"along_one_line", "A", {0, 0, 0, 1, 1, 0, -3, -3, 0}, "along one line"}),
    [](const auto& fault) { return std::string(fault.param.name); });

/// What is said is the reason: a document that takes nothing is no circle of systems.
TEST_F(Coordinates, ADocumentThatTakesNothingIsNoFaultOfTheSystem) {
  struct Full final : IRecordStore {
    bool Write(const std::vector<JournalEntry>&, bool) override { return false; }
  } full;
  Command(Branch(), kCommandAddCord);
  Enter("A", {});
  ASSERT_EQ(Apply(), "A: stored");
  Dialog("cord")->close();
  for (const unsigned command : {kCommandAddCord, kCommandEditCord}) {
    Command(command == kCommandAddCord ? Branch() : Branch()->GetChild(1), command);
    Enter("B", {});
    Data().SetStore(&full);
    EXPECT_EQ(Apply(), "B: not stored");
    Data().SetStore(&m_window->Keeper());
    EXPECT_EQ(Apply(), "B: stored");
    Dialog("cord")->close();
    Data().Undo();
  }
}

TEST_F(Coordinates, ASystemThatIsDeletedUnderItsDialogIsSaid) {
  Command(Branch(), kCommandAddCord);
  Enter("A", {});
  Apply();
  Dialog("cord")->close();
  Command(Branch()->GetChild(1), kCommandEditCord);
  Data().Undo();
  EXPECT_EQ(Apply(), "The coordinate system was deleted meanwhile.");
  EXPECT_EQ(Pool().GetItrList().size(), 1U);
}

TEST_F(Coordinates, SymbolsFollowBoxesCameraAndParents) {
  Open(m_files.Make({"pump"}, "pump.step"));
  const iterator global = Pool().GetDefaultCord();
  ASSERT_NE(Symbol(global), nullptr);
  const auto length = [](const QPointF& a, const QPointF& b) { return std::hypot(a.x() - b.x(), a.y() - b.y()); };
  const QPointF before = Symbol(global)->origin;
  EXPECT_GT(length(Symbol(global)->tips[2], before), 10);
  EXPECT_LT(Symbol(global)->tips[2].y(), before.y()) << "z is up";
  Command(Branch(), kCommandAddCord);
  Enter("Cylinder", {0, 0, 60, 0, 1, 0, -1, 0, 0}, 1);
  Apply();
  Dialog("cord")->close();
  const iterator cylinder = Pool().GetItrList()[1];
  ASSERT_NE(Symbol(cylinder), nullptr);
  EXPECT_LT(Symbol(cylinder)->origin.y(), before.y());
  Keep("cord-symbols");
  Branch()->GetChild(1)->OnClickCheck(kChecked);
  EXPECT_EQ(Symbol(cylinder), nullptr);
  EXPECT_NE(Symbol(global), nullptr);
  Branch()->GetChild(1)->OnClickCheck(kUnchecked);
  EXPECT_NE(Symbol(cylinder), nullptr);
  Data().Undo();
  EXPECT_EQ(Symbol(cylinder), nullptr);
}

}  // namespace
}  // namespace qd::test
