// Languages in the window: every text comes from the tables, and a switch leaves nothing behind and loses nothing,
// whatever is open.

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QFile>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTimer>
#include <QTreeWidget>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>

#include "InWindow.h"
#include "host/CTransaction.h"
#include "host/ProductVariant.h"
#include "platform/qt/QtConvert.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/core/IAppWrt.h"
#include "support/Places.h"
#include "workbench/text/Utf8.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {
namespace {

using namespace workbench;

class Languages : public InWindow {
 protected:
  ~Languages() override { SetProductVariant(ProductVariant::Standard); }

  iterator AddCord(const CString& name) {
    tagTCord record;
    record.SetName(name);
    CTransaction transaction(&Data());
    transaction.Begin(L"add");
    const iterator itr = Data().GetCordPool().Add(record);
    transaction.Commit(1);
    return itr;
  }
  CString CordName(iterator itr) { return Data().GetCordPool().GetAtNU(itr)->GetName(); }
  CQDTreeItem* Branch() { return Tree().GetQDRootItem()->GetChild(0); }
  QLineEdit* Box() { return QtToolkit::WidgetOf(m_window->ModelTreePane().Bar())->findChild<QLineEdit*>(); }
  static void Press(QWidget& widget, int key, const QString& text = {}) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(&widget, &press);
    Wait(50);
  }
  /// Opens the edit box of the last coordinate system.
  QLineEdit* EditLast() {
    Branch()->Expand(1);
    Tree().SelectCTItem(Branch()->GetChild(Branch()->GetChildCount() - 1));
    Tree().OnChangeTitle();
    Wait(50);
    return Box();
  }
  void OpenDialogs() {
    m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), kCommandMeshNode);
    m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), kCommandMeshElement);
    m_window->ModelTreePane().Bar().OnMenuEventMeshRoot(&m_window->Document(), kCommandMeshAuto2D);
    Branch()->OnMenuEvent(kCommandAddCord);
    std::list<iterator> none;
    IAppWrt::Instance()->OpenDialog(0, &m_window->Document(), L"CLbcMaterialMainDlg", &none);
    Wait(100);
  }
};

/// What an object shows to the user that could be in a language.
QStringList TextsOf(const QObject& object) {
  QStringList texts;
  if (const auto* action = qobject_cast<const QAction*>(&object)) texts << action->text();
  if (const auto* button = qobject_cast<const QAbstractButton*>(&object)) texts << button->text();
  if (const auto* label = qobject_cast<const QLabel*>(&object)) texts << label->text();
  if (const auto* edit = qobject_cast<const QLineEdit*>(&object)) texts << edit->placeholderText();
  if (const auto* widget = qobject_cast<const QWidget*>(&object))
    texts << widget->windowTitle() << widget->toolTip();
  if (const auto* box = qobject_cast<const QComboBox*>(&object); box != nullptr && box->objectName() != "type") {
    for (int i = 0; i < box->count(); ++i) texts << box->itemText(i);
  }
  if (const auto* grid = qobject_cast<const QTreeWidget*>(&object)) {
    for (QTreeWidgetItemIterator at(const_cast<QTreeWidget*>(grid)); *at != nullptr; ++at) texts << (*at)->text(0);
  }
  texts.removeAll(QString());
  return texts;
}

TEST_F(Languages, EveryEntryOfAMenuHasAKeyOfItsOwn) {
  const QRegularExpression mark("(?<!&)(?:&&)*&([^&])");
  for (const QString& language : m_messages.Languages()) {
    m_window->SetLanguage(language);
    for (QMenu* menu : m_window->findChildren<QMenu*>()) {
      emit menu->aboutToShow();
      QMap<QString, QString> seen;
      for (const QAction* action : menu->actions()) {
        if (action->isSeparator()) continue;
        const QRegularExpressionMatch found = mark.match(action->text());
        EXPECT_TRUE(found.hasMatch()) << language.toStdString() << ": " << action->text().toStdString();
        QString& other = seen[found.captured(1).toLower()];
        EXPECT_EQ(other, "") << language.toStdString() << ": " << action->text().toStdString();
        other = action->text();
      }
    }
  }
}

TEST_F(Languages, EveryTextOfTheWindowComesFromTheTables) {
  Open(QString::fromStdString(SourceFolder()) + "/examples/bracket.inp");
  OpenDialogs();
  TArray<iterator> first{Data().GetMsetPool().GetItrList().front()};
  Tree().SetSelection(2, first);
  m_window->SetLanguage(MessageTables::kPseudo);
  Wait(200);
  // Languages call themselves by their own names, units are letters, records have the names that they were given.
  const QStringList own{
      "English", "American English", "Deutsch", "日本語", "한국어", "简体中文", "mm, t", "m, kg", "X", "Y",
      "Z",       "in, lb",           "Global",  "mm",     "mm²",    "°",        "MPa",   "t/mm³"};
  QStringList names;
  for (const iterator itr : Data().GetMsetPool().GetItrList())
    names << ToQt(Data().GetMsetPool().GetAtNU(itr)->name);
  for (const IAppDB::Material& material : Data().ListMaterials()) names << ToQt(material.label);
  int seen = 0;
  for (QWidget* top : QApplication::topLevelWidgets()) {
    if (!top->isVisible()) continue;
    QList<QObject*> objects = top->findChildren<QObject*>();
    objects.append(top);
    for (const QObject* object : objects) {
      for (QString text : TextsOf(*object)) {
        if (own.contains(text) || names.contains(text)) continue;
        ++seen;
        text.remove("bracket.inp[*] – ");  // which the window is about
        EXPECT_TRUE(text.startsWith('[')) << object->metaObject()->className() << ": " << text.toStdString();
      }
    }
  }
  EXPECT_GT(seen, 100);
  const std::string tree = PrintTree(Tree());
  EXPECT_NE(tree.find("[Méšh~"), std::string::npos);
  Keep("pseudo");
  for (QWidget* top : QApplication::topLevelWidgets()) {
    if (qobject_cast<QDialog*>(top) != nullptr && top->isVisible()) Keep("pseudo-" + top->objectName(), top);
  }
}

class EachLanguage : public Languages, public ::testing::WithParamInterface<const char*> {};

TEST_P(EachLanguage, ASwitchReachesEverythingThatIsOpen) {
  Open(QString::fromStdString(SourceFolder()) + "/examples/bracket.inp");
  OpenDialogs();
  Dialog("cord")->findChild<QLineEdit*>("name")->setText("typed");
  const QString english = Dialog("cord")->windowTitle();
  m_window->SetLanguage(GetParam());
  Wait(100);
  EXPECT_NE(Dialog("cord")->windowTitle(), english);
  EXPECT_EQ(Dialog("cord")->windowTitle(), Text("IDS_WB_CORD_NEW"));
  EXPECT_EQ(Dialog("cord")->findChild<QLineEdit*>("name")->text(), "typed");
  EXPECT_EQ(Dialog("cord")->findChild<QComboBox*>("kind")->itemText(1), Text("IDS_WB_CORD_CYLINDRICAL"));
  EXPECT_EQ(Branch()->GetTitle(), CMSGFunction::GetValue("IDS_QD_WRT_Coordinate_System"));
  EXPECT_EQ(Tree().GetHeader().GetItem(2)->text, CMSGFunction::GetValue("IDS_QD_WRT_Color"));
  EXPECT_EQ(m_window->ModelTreePane().windowTitle(), Text("IDS_WB_PANE_MODEL"));
  Keep(QString("language-") + GetParam());
  for (const char* name : {"cord", "mesh", "operation", "materials"}) {
    if (Dialog(name) != nullptr) Keep(QString("language-%1-%2").arg(GetParam(), name), Dialog(name));
  }
}
INSTANTIATE_TEST_SUITE_P(All, EachLanguage, ::testing::Values("de", "ja", "ko", "zh"),
                         [](const auto& code) { return std::string(code.param); });

TEST_F(Languages, AnOpenEditBoxKeepsWhatIsTyped) {
  const iterator itr = AddCord(L"old");
  QLineEdit* edit = EditLast();
  ASSERT_NE(edit, nullptr);
  EXPECT_EQ(edit->text(), "old");
  edit->setText("half typ");
  m_window->SetLanguage("ja");
  Wait(100);
  ASSERT_EQ(Box(), edit);
  EXPECT_EQ(edit->text(), "half typ");
  Press(*edit, Qt::Key_E, "e");
  Press(*edit, Qt::Key_D, "d");
  Press(*edit, Qt::Key_Return);
  EXPECT_EQ(CordName(itr), L"half typed");
}

TEST_F(Languages, AnOpenMenuStillDoesWhatItSaid) {
  AddCord(L"first");
  AddCord(L"second");
  Branch()->Expand(1);
  Tree().SelectCTItem(Branch()->GetChild(1));
  QString shown;
  QTimer::singleShot(300, [&] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    m_window->SetLanguage("zh");
    shown = menu->actions().at(1)->text();
    menu->setActiveAction(menu->actions().at(1));
    QTimer::singleShot(0, menu, [menu] { Press(*menu, Qt::Key_Return); });
  });
  Tree().ShowContextMenu({200, 200});
  Wait(100);
  EXPECT_EQ(shown, "Delete");
  EXPECT_EQ(Branch()->GetChildCount(), 2);
  EXPECT_EQ(ToQt(Data().UndoTitle()), "删除坐标系");
}

TEST_F(Languages, APageKeepsWhatIsNotStoredYet) {
  Open(QString::fromStdString(SourceFolder()) + "/examples/bracket.inp");
  const iterator set = Data().GetMsetPool().GetItrList().front();
  TArray<iterator> sets{set};
  Tree().SetSelection(2, sets);
  Wait(100);
  const auto editors = m_window->Properties().findChildren<QLineEdit*>();
  ASSERT_FALSE(editors.isEmpty());
  editors.front()->setText("typed only");
  m_window->SetLanguage("ko");
  Wait(100);
  EXPECT_TRUE(m_window->Properties().Lines().join(' ').contains("이름"));
  ASSERT_FALSE(m_window->Properties().findChildren<QLineEdit*>().isEmpty());
  EXPECT_EQ(m_window->Properties().findChildren<QLineEdit*>().front()->text(), "typed only");
  // Another selection takes it away.
  TArray<iterator> other{Data().GetMsetPool().GetItrList().back()};
  Tree().SetSelection(2, other);
  Wait(100);
  EXPECT_NE(m_window->Properties().findChildren<QLineEdit*>().front()->text(), "typed only");
}

// ---- tables that are not as they should be -----------------------------------------------------------------

TEST(Tables, WhatIsMissingOrDoesNotFitIsShownUntranslatedWithOneWarning) {
  QTemporaryDir folder;
  const auto write = [&folder](const char* name, const QByteArray& bytes) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  };
  write("en.txt", "A=one\nB=%s is %s\nC=three\n");
  write("xx.txt", "A=eins\nB=%ld %n %s\nnonsense\n");
  write("yy.txt", "A=\xFC\n");
  MessageTables tables(folder.path());
  EXPECT_TRUE(tables.TakeFaults().isEmpty());
  EXPECT_TRUE(tables.SetLanguage("xx"));
  EXPECT_EQ(Text("A"), "eins");
  EXPECT_EQ(Text("B", {"x", "y"}), "x is y");
  EXPECT_EQ(Text("C"), "three");
  EXPECT_EQ(Text("NONE"), "NONE");
  EXPECT_EQ(tables.TakeFaults().size(), 1);
  EXPECT_FALSE(tables.SetLanguage("yy"));
  EXPECT_FALSE(tables.SetLanguage("zz"));
  EXPECT_EQ(tables.Language(), "xx");
  EXPECT_EQ(Text("A"), "eins");
  EXPECT_EQ(tables.TakeFaults().size(), 2);
  EXPECT_FALSE(tables.SetLanguage("zz"));
  EXPECT_TRUE(tables.SetLanguage("en"));
  EXPECT_TRUE(tables.SetLanguage("xx"));
  EXPECT_TRUE(tables.TakeFaults().isEmpty()) << "each fault is said once";
  const MessageTables none(folder.path() + "/none");
  EXPECT_EQ(Text("A"), "A");
}

TEST(Tables, APipeAFolderOrAHugeFileIsNoTable) {
  const QTemporaryDir folder;
  const auto path = [&folder](const char* name) { return folder.filePath(name).toStdString(); };
  ASSERT_EQ(mkfifo(path("pp.txt").c_str(), 0600), 0);
  ASSERT_EQ(mkdir(path("ff.txt").c_str(), 0700), 0);
  std::ofstream(path("hh.txt")) << "A=eins\n";
  std::filesystem::resize_file(path("hh.txt"), std::uintmax_t{1} << 32U);  // takes no room on the disk
  MessageTables tables(folder.path());
  for (const char* language : {"pp", "ff", "hh"}) {
    EXPECT_FALSE(tables.SetLanguage(language)) << language;
    const QStringList faults = tables.TakeFaults();
    ASSERT_EQ(faults.size(), 1) << language;
    EXPECT_TRUE(faults.first().contains(language)) << faults.first().toStdString();
  }
}

TEST(Tables, ArgumentsArePutInAsTheyAre) {
  const MessageTables tables;
  EXPECT_EQ(Text("IDS_WB_IMPORT_FAILED", {"%s", "why"}), "%s: why");
  EXPECT_EQ(Text("IDS_WB_IMPORT_FAILED", {"only one"}), "only one: %s") << "whoever wrote it sees what is missing";
}

// ---- variants -----------------------------------------------------------------------------------------------

TEST_F(Languages, TheVariantIsSwitchedInTheWindow) {
  const auto option = [this](const char* key) -> QAction* {
    for (QAction* action : m_window->findChildren<QAction*>()) {
      if (action->text() == Text(key)) return action;
    }
    return nullptr;
  };
  ASSERT_NE(option("IDS_WB_VARIANT_KSL"), nullptr);
  EXPECT_TRUE(option("IDS_WB_VARIANT_STANDARD")->isChecked());
  option("IDS_WB_VARIANT_KSL")->trigger();
  EXPECT_EQ(IsKSL(), 1);
  EXPECT_FALSE(option("IDS_WB_VARIANT_STANDARD")->isChecked());
  option("IDS_WB_VARIANT_STANDARD")->trigger();
  EXPECT_EQ(IsKSL(), 0);
}

// ---- names in any script ------------------------------------------------------------------------------------

TEST_F(Languages, AnInputMethodComposesInTheEditBox) {
  const iterator itr = AddCord(L"old");
  QLineEdit* edit = EditLast();
  ASSERT_NE(edit, nullptr);
  QInputMethodEvent composing("ざひょう", {{QInputMethodEvent::Cursor, 4, 1, {}}});
  QApplication::sendEvent(edit, &composing);
  Wait(50);
  ASSERT_EQ(Box(), edit) << "composing does not end the edit";
  EXPECT_EQ(CordName(itr), L"old");
  QInputMethodEvent commit("", {});
  commit.setCommitString("座標");
  QApplication::sendEvent(edit, &commit);
  EXPECT_EQ(edit->text(), "座標");
  Keep("input-method");
  Press(*edit, Qt::Key_Return);
  EXPECT_EQ(ToUtf8(CordName(itr)), "座標");
  EXPECT_EQ(ToUtf8(Branch()->GetChild(1)->GetTitle()), "座標");
}

TEST_F(Languages, TextsAreMeasuredTheWayTheyRun) {
  const Font font;
  const int em = m_toolkit.FontHeight(font);
  const auto width = [&](const CString& text) {
    std::vector<int> widths;
    m_toolkit.PrefixWidths(font, text, widths);
    EXPECT_TRUE(std::is_sorted(widths.begin(), widths.end()));
    return widths;
  };
  for (const QString text :
       {"plain and long", "مجموعة الشبكة الكبيرة", "Set רשת גדולה and more", "格子 한국어 mixed",
        "e\u0301e\u0301e\u0301", "👩‍🔧👍🏽👩‍🔧 three"}) {
    const CString whole = FromQt(text);
    const std::vector<int> widths = width(whole);
    for (std::size_t length = 1; length < whole.size(); ++length) {
      if (CutLength(whole, length) != length) continue;
      // Letters may join otherwise at an end, but not by more than one of them.
      EXPECT_NEAR(widths[length], width(whole.substr(0, length)).back(), em) << text.toStdString() << length;
    }
  }
  // A name that turns round in the middle is cut in its second half, not before it.
  const CString name = FromQt("Set " + QString("ש").repeated(60));
  EXPECT_GT(FitText(font, name, width(name).back() / 2).size(), 25U);
}

TEST_F(Languages, NamesInAnyScriptAreDrawnEditedAndSorted) {
  const QStringList names{
      "مجموعة الشبكة 12", "רשת (א)",    "Ängström e\u0301e\u0301", "👩‍🔧👍🏽 bracket", "格子 12",
      "한국어 좌표계",    "हिन्दी क्षेत्र", "a\u202Egnp.exe"};
  for (const QString& name : names) AddCord(FromQt(name));
  AddCord(FromQt(QString("👩‍🔧").repeated(20)));  // wider than the column, and cut between two
  Branch()->Expand(1);
  Tree().SortItem(Branch()->GetTreeItemHandle(), 0, 1);
  Wait(100);
  Keep("scripts");
  for (const QString& name : names) {
    HTREEITEM row = Tree().GetChildItem(Branch()->GetTreeItemHandle());
    while (row && ToQt(Tree().GetItemText(row, 0)) != name) row = Tree().GetNextSiblingItem(row);
    EXPECT_TRUE(row) << name.toStdString();
  }
  const iterator last = AddCord(L"x");
  QLineEdit* edit = EditLast();
  ASSERT_NE(edit, nullptr);
  edit->setText(QString("👍🏽").repeated(40));
  Press(*edit, Qt::Key_Return);
  EXPECT_EQ(ToQt(CordName(last)), QString("👍🏽").repeated(31)) << "63 elements hold 31 of two";
}

}  // namespace
}  // namespace qd::test
