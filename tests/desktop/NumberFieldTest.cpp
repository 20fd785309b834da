// Numbers in the dialogs: typed with the keys, stored as typed or told at the field.

#include <QKeyEvent>
#include <QLabel>

#include "InWindow.h"
#include "qd_wrt/core/CommandNumbers.h"

namespace qd::test {
namespace {

using namespace workbench;

/// A window with one block, 10 by 10 by 10, and the dialog that moves it.
class NumberFields : public InWindow {
 protected:
  NumberFields() { Open(m_files.Make({"grid", "1"}, "grid.step")); }
  iterator Part() { return Data().GetGeomPool().GetItrList().front(); }
  double LeastX() { return Data().GetGeomPool().GetAtNU(Part())->shape->facets.points[0]; }
  QDialog* Ask(unsigned command) {
    CQDTreeListCtrl& tree = m_window->SetTreePane().Bar().GetTreeCtrl();
    m_window->Document().Select({{Part()}});
    tree.SetSelection(1, {Part()});
    tree.OnMenuEvent(command);
    EXPECT_TRUE(WaitUntil([this] { return Dialog("operation") != nullptr; }));
    Dialog("operation")->activateWindow();
    Wait(100);
    return Dialog("operation");
  }
  /// Types where the focus is.
  static void Type(const QString& text) {
    for (const QChar letter : text) {
      for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, 0, Qt::NoModifier, QString(letter));
        QApplication::sendEvent(QApplication::focusWidget(), &event);
      }
    }
  }
  void Apply() {
    Dialog("operation")->findChild<QPushButton*>("apply")->click();
    ASSERT_TRUE(WaitUntil([this] { return !m_window->IsWorking() && m_window->IsUpToDate(); }));
  }
  /// What is told at the fields of the open dialog.
  std::string Said() {
    for (const QLabel* label : Dialog("operation")->findChildren<QLabel*>("fault")) {
      if (label->isVisible()) return label->text().toStdString();
    }
    return {};
  }
};

struct TypedCase {
  const char* name;
  QString language;
  QString typed;
  double moved;  ///< 0 when it is refused
  std::string said{};
};
class TypedNumbers : public NumberFields, public ::testing::WithParamInterface<TypedCase> {};
TEST_P(TypedNumbers, AreStoredAsTypedOrToldAtTheField) {
  const TypedCase& given = GetParam();
  m_window->SetLanguage(given.language);
  const double before = LeastX();
  const CString lastAct = Data().UndoTitle();
  Ask(kCommandTranslate);
  Type(given.typed);  // the first field has the focus, and what stands in it is overwritten
  Apply();
  EXPECT_NEAR(LeastX() - before, given.moved, 1e-4);
  EXPECT_EQ(Data().UndoTitle() != lastAct, given.moved != 0);
  EXPECT_EQ(Said(), given.said);
  Keep(QString("number-") + given.name, Dialog("operation"));
}
INSTANTIATE_TEST_SUITE_P(
    All, TypedNumbers,
    ::testing::Values(
        TypedCase{"digit", "en", "5", 5}, TypedCase{"exponent", "en", "2e-1", 0.2},
        TypedCase{"expression", "en", "(1+2)*-4", -12}, TypedCase{"german_comma", "de", "1,5", 1.5},
        TypedCase{"german_point", "de", "1.5", 1.5},
        TypedCase{"overflow", "en", "1e400", 0, "No number can be as large as this, or as near to zero."},
        TypedCase{"letters", "en", "1x", 0,
                  "“1x” is no number, or has a unit that does not fit; write it like 1.5, 2e-3, (3+1)/2 or 2 mm."},
        TypedCase{"thousands", "de", "1.234,5", 0,
                  "Bei „1.234,5“ kann ein Zeichen Tausender trennen: bitte ohne solche schreiben, mit „,“ vor den "
                  "Nachkommastellen."}),
    [](const auto& typed) { return std::string(typed.param.name); });

TEST_F(NumberFields, ASizeThatIsNotPositiveIsToldAndNothingIsMeshed) {
  m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), kCommandMeshAuto2D);
  Wait(100);
  Dialog("operation")->activateWindow();
  Wait(100);
  Type("-5");
  Apply();
  EXPECT_EQ(Said(), "It must be greater than 0.");
  EXPECT_EQ(Data().GetMsetPool().Count(), 0U);
  // The field is where to go on, and what is told goes once it is right.
  Type("5");
  EXPECT_EQ(Said(), "");
  Apply();
  EXPECT_EQ(Data().GetMsetPool().Count(), 1U);
  // Another language shows the same number in its own format.
  Type(".5");
  m_window->SetLanguage("de");
  EXPECT_EQ(Dialog("operation")->findChild<QLineEdit*>()->text(), "5,5");
}

}  // namespace
}  // namespace qd::test
