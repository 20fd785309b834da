// The menus of the main window.

#include <QActionGroup>
#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QToolButton>
#include <algorithm>

#include "host/CQDUnitCtrl.h"
#include "platform/qt/QtConvert.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/PropertyPane.h"
#include "workbench/app/Translated.h"
#include "workbench/app/TreePane.h"
#include "workbench/session/SelectionPage.h"
#include "workbench/session/VariantNames.h"

namespace qd::workbench {

// ---- menus ----------------------------------------------------------------------------------------------

QAction* MainWindow::Add(QMenu* menu, const char* key, const QKeySequence& shortcut,
                         void (MainWindow::*handler)()) {
  QAction* action = menu->addAction(QString(), this, handler);
  action->setShortcut(shortcut);
  SetText(*action, key);
  return action;
}

void MainWindow::MakeMenus() {
  MakeFileMenu();
  MakeEditMenu();
  MakeViewMenu();
  MakeMeshMenu();
}

QMenu* MainWindow::AddMenu(QMenu* above, const char* key) {
  QMenu* menu = above != nullptr ? above->addMenu(QString()) : menuBar()->addMenu(QString());
  SetText(*menu->menuAction(), key);
  return menu;
}

void MainWindow::MakeFileMenu() {
  QMenu* file = AddMenu(nullptr, "IDS_WB_MENU_FILE");
  Add(file, "IDS_WB_NEW_WINDOW", QKeySequence::New, &MainWindow::OnNewWindow);
  Add(file, "IDS_WB_OPEN", QKeySequence::Open, &MainWindow::OnOpen);
  QMenu* recent = AddMenu(file, "IDS_WB_OPEN_RECENT");
  connect(recent, &QMenu::aboutToShow, this, [this, recent] { ListRecent(*recent); });
  Add(file, "IDS_WB_SAVE", QKeySequence::Save, &MainWindow::OnSave);
  Add(file, "IDS_WB_SAVE_AS", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), &MainWindow::OnSaveAs);
  file->addSeparator();
  Add(file, "IDS_WB_IMPORT", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_I), &MainWindow::OnImport);
  Add(file, "IDS_WB_EXPORT", QKeySequence(Qt::CTRL | Qt::Key_E), &MainWindow::OnExport);
  file->addSeparator();
  SetText(*file->addAction(QString(), QKeySequence::Quit, this, &QMainWindow::close), "IDS_WB_EXIT");
}

void MainWindow::MakeEditMenu() {
  QMenu* edit = AddMenu(nullptr, "IDS_WB_MENU_EDIT");
  m_undo = Add(edit, "IDS_WB_UNDO", QKeySequence::Undo, &MainWindow::OnUndo);
  m_redo = Add(edit, "IDS_WB_REDO", QKeySequence::Redo, &MainWindow::OnRedo);
  edit->addSeparator();
  m_delete = Add(edit, "IDS_WB_DELETE", QKeySequence::Delete, &MainWindow::OnDelete);
  connect(edit, &QMenu::aboutToShow, this, &MainWindow::RefreshActions);
}

namespace {

/// One of a menu's choices, of which one is checked.
QAction* AddOption(QMenu& menu, QActionGroup& group, bool checked, const QString& text = {}) {
  QAction* action = menu.addAction(text);
  action->setCheckable(true);
  action->setChecked(checked);
  group.addAction(action);
  return action;
}

}  // namespace

void MainWindow::MakeViewMenu() {
  QMenu* view = AddMenu(nullptr, "IDS_WB_MENU_VIEW");
  Add(view, "IDS_WB_FIT", QKeySequence(Qt::CTRL | Qt::Key_0), &MainWindow::OnFit);
  Add(view, "IDS_QD_WRT_SHOW_ALL", {}, &MainWindow::OnShowAll);
  Add(view, "IDS_QD_WRT_HIDE_ALL", {}, &MainWindow::OnHideAll);
  m_leave = Add(view, "IDS_WB_LEAVE_ISOLATION", {}, &MainWindow::OnLeaveIsolation);
  connect(view, &QMenu::aboutToShow, this, &MainWindow::RefreshActions);
  view->addSeparator();
  QMenu* language = AddMenu(view, "IDS_WB_MENU_LANGUAGE");
  auto* languages = new QActionGroup(this);
  for (const QString& code : m_messages.Languages()) {
    const QString name = QLocale(code).nativeLanguageName();
    QAction* option =
        AddOption(*language, *languages, code == m_messages.Language(), name.isEmpty() ? code : name);
    connect(option, &QAction::triggered, this, [this, code] { SetLanguage(code); });
  }
  QMenu* units = AddMenu(view, "IDS_WB_MENU_UNITS");
  auto* systems = new QActionGroup(this);
  constexpr const wchar_t* kSystems[][2] = {{L"mm", L"t"}, {L"m", L"kg"}, {L"in", L"lb"}};
  for (const auto& system : kSystems) {
    const CString length = system[0];
    const CString mass = system[1];
    const QString name = QString("%1, %2").arg(ToQt(length), ToQt(mass));
    QAction* option = AddOption(*units, *systems, length == CQDUnitCtrl::GetUnitSystemLength(), name);
    connect(option, &QAction::triggered, this, [this, length, mass] {
      CQDUnitCtrl::SetUnitSystem(length, mass);
      m_properties->Refresh();
      Retranslate(*this);  // units stand behind numbers
    });
  }
  QMenu* variant = AddMenu(view, "IDS_WB_MENU_VARIANT");
  auto* variants = new QActionGroup(this);
  for (const VariantName& known : kVariants) {
    QAction* option = AddOption(*variant, *variants, GetProductVariant() == known.variant);
    SetText(*option, known.key);
    connect(option, &QAction::triggered, this, [this, known] { m_session->ChangeVariant(known.variant); });
  }
}

void MainWindow::MakeMeshMenu() {
  struct Entry {
    const char* key;
    unsigned command;
    bool toSet = false;  // the commands of sets that their menus do not list
  };
  constexpr Entry kEntries[] = {{"IDS_MENU_WRT_MESH_ADD_NODE", kCommandMeshNode},
                                {"IDS_MENU_WRT_MESH_ADD_ELEM", kCommandMeshElement},
                                {"IDS_MENU_WRT_MESH_ADD_2D_AUTO", kCommandMeshAuto2D},
                                {"IDS_MENU_WRT_MESH_ADD_2D_MAP", kCommandMeshMap2D},
                                {"IDS_MENU_WRT_MESH_ADD_3D_AUTO", kCommandMeshAuto3D},
                                {"IDS_MENU_WRT_MESH_ADD_3D_MAP", kCommandMeshMap3D},
                                {"IDS_WB_MESH_AGAIN", kCommandRemesh, true},
                                {nullptr, 0},
                                {"IDS_QD_WRT_TRANSFORM_TRANSLATE", kCommandMeshTranslate, true},
                                {"IDS_QD_WRT_TRANSFORM_ROTATE", kCommandMeshRotate, true},
                                {"IDS_QD_WRT_TRANSFORM_MIRROR", kCommandMeshMirror, true},
                                {"IDS_QD_WRT_TRANSFORM_SCALE", kCommandMeshScale, true},
                                {"IDS_QDMESH_TAB_GENERATE_2D_TO_3D", kCommandMeshSweep, true},
                                {nullptr, 0},
                                {"IDS_WB_COLOUR_BY_SET", kCommandMeshColourMode},
                                {"IDS_WB_COLOUR_BY_PROPERTY", kCommandMeshColourMode + 1},
                                {"IDS_WB_COLOUR_BY_MATERIAL", kCommandMeshColourMode + 2},
                                {"IDS_WB_COLOUR_BY_TYPE", kCommandMeshColourMode + 3},
                                {"IDS_WB_COLOUR_BY_TOP_SET", kCommandLastMeshColourMode},
                                {"IDS_QD_WRT_RANDOM_COLOR", kCommandMeshRandomColour}};
  QMenu* mesh = AddMenu(nullptr, "IDS_WB_MENU_MESH");
  for (const Entry& entry : kEntries) {
    if (entry.key == nullptr) {
      mesh->addSeparator();
      continue;
    }
    SetText(*mesh->addAction(QString(), this,
                             [this, entry] {
                               entry.toSet ? m_session->SendToMeshSet(entry.command)
                                           : m_session->SendToMeshes(entry.command);
                             }),
            entry.key);
  }
}

void MainWindow::SetLanguage(const QString& language) {
  if (m_messages.SetLanguage(language)) {
    for (QWidget* window : QApplication::topLevelWidgets()) Retranslate(*window);
    m_properties->ChangeLanguage();
    RefreshActions();
    RefreshTitle();
    m_session->Manager().OnChangeLanguage();
    m_selectionText->setText(ToQt(SelectionText(*m_doc)));
  }
  SayTableFaults();
}

void MainWindow::SayTableFaults() {
  for (const QString& fault : m_messages.TakeFaults()) Say(fault, true);
}

void MainWindow::RefreshSelection() {
  m_selectionText->setText(ToQt(SelectionText(*m_doc)));
  // Nobody edits what is not selected any more.
  if (m_doc->GetSelection().IsEmpty()) m_properties->SetPropertySet(nullptr);
  m_properties->Refresh();
  RefreshActions();
}

void MainWindow::RefreshActions() {
  const Database& database = m_doc->GetDatabase();
  const auto label = [](const char* key, const CString& title) {
    return title.empty() ? Text(key) : Text(key) + " – " + ToQt(title).replace('&', "&&");
  };
  m_undo->setText(label("IDS_WB_UNDO", database.UndoTitle()));
  m_redo->setText(label("IDS_WB_REDO", database.RedoTitle()));
  m_undo->setEnabled(database.CanUndo());
  m_redo->setEnabled(database.CanRedo());
  m_leave->setEnabled(m_doc->GetDisplay().Isolation() != nullptr);
  m_delete->setEnabled(m_session->CanDelete());
}

}  // namespace qd::workbench
