// The menus of the main window.

#include <QActionGroup>
#include <QApplication>
#include <QDockWidget>
#include <QLocale>
#include <QMenuBar>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <map>
#include <string_view>

#include "host/CQDUnitCtrl.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/AboutBox.h"
#include "workbench/app/CommandIcons.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/ManualWindow.h"
#include "workbench/app/Mnemonics.h"
#include "workbench/app/PropertyPane.h"
#include "workbench/app/QuietTime.h"
#include "workbench/app/StatusLine.h"
#include "workbench/app/TakeOut.h"
#include "workbench/app/Translated.h"
#include "workbench/app/TreePane.h"
#include "workbench/app/WelcomePanel.h"
#include "workbench/app/console/ActScript.h"
#include "workbench/app/console/ConsolePane.h"
#include "workbench/app/console/OwnScripts.h"
#include "workbench/session/PythonText.h"
#include "workbench/session/VariantNames.h"
#include "workbench/session/WindowCommands.h"
#include "workbench/text/Units.h"
#include "workbench/view/ModelView.h"
#include "workbench/view/ViewPicking.h"

namespace qd::workbench {

namespace {

QList<QKeySequence> KeysOf(const WindowCommand& command) {
  QList<QKeySequence> keys;
  for (const CommandKeys& one : command.keys) {
    if (one.letter == 0) continue;
    const Qt::Key key = one.letter == kKeyDelete ? Qt::Key_Delete
                        : one.letter == kKeyF1   ? Qt::Key_F1
                        : one.letter == kKeyF2   ? Qt::Key_F2
                                                 : static_cast<Qt::Key>(one.letter);
    const Qt::KeyboardModifiers control = one.control ? Qt::ControlModifier : Qt::NoModifier;
    const Qt::KeyboardModifiers shift = one.shift ? Qt::ShiftModifier : Qt::NoModifier;
    keys.append(QKeySequence(QKeyCombination(control | shift, key)));
  }
  return keys;
}

/// One of a menu's choices, of which one is checked.
QAction* AddOption(QMenu& menu, QActionGroup& group, bool checked, const QString& text = {}) {
  QAction* action = menu.addAction(text);
  action->setCheckable(true);
  action->setChecked(checked);
  group.addAction(action);
  return action;
}

constexpr std::string_view kScriptsMenu = "IDS_WB_MENU_SCRIPTS";

}  // namespace

void MainWindow::MakeMenus() {
  std::map<std::string_view, QMenu*> menus;
  for (const WindowCommand& command : WindowCommands()) {
    if (command.windows == WindowCommand::Windows::Native) continue;
    QMenu*& menu = menus[command.menu];
    if (menu == nullptr) {
      const bool ofScripts = std::string_view(command.menu) == kScriptsMenu;
      menu = AddMenu(nullptr, command.menu, [this, ofScripts](QMenu& opened) {
        RefreshActions();
        if (ofScripts) m_ownScripts->List(opened);
      });
    }
    if (command.submenu) {
      menus[command.key] = AddMenu(menu, command.key);
    } else {
      AddCommand(*menu, command);
    }
  }
}

void MainWindow::MakeToolbar() {
  const auto make = [this](const char* name, const char* key) {
    QToolBar* bar = addToolBar(QString());
    bar->setObjectName(name);
    SetTitle(*bar, key);
    bar->setIconSize({20, 20});
    return bar;
  };
  QToolBar* picks = make("picks", "IDS_WB_TOOLBAR_PICKS");
  QToolBar* view = make("view", "IDS_WB_TOOLBAR_VIEW");
  for (const WindowCommand& command : WindowCommands()) {
    const auto action = m_actions.find(command.number);
    if (!command.toolbar || action == m_actions.end()) continue;
    QToolBar* bar = std::string_view(command.menu) == "IDS_WB_MENU_PICK" ? picks : view;
    action->second->setIcon(IconOf(command.number));
    action->second->setIconVisibleInMenu(false);
    bar->addAction(action->second);
  }
}

/// `fill` is called when the menu opens.
QMenu* MainWindow::AddMenu(QMenu* above, const char* key, const std::function<void(QMenu&)>& fill) {
  QMenu* menu = above != nullptr ? above->addMenu(QString()) : menuBar()->addMenu(QString());
  SetText(*menu->menuAction(), key);
  connect(menu, &QMenu::aboutToShow, this, [menu, fill] {
    if (fill) fill(*menu);
    GiveMnemonics(*menu);
  });
  return menu;
}

void MainWindow::AddCommand(QMenu& menu, const WindowCommand& command) {
  switch (command.number) {
    case 0:
      menu.addSeparator();
      return;
    case kRecentMenu:
      AddMenu(&menu, command.key, [this](QMenu& recent) { ListRecent(recent); });
      return;
    case kLanguageMenu:
      return ListLanguages(*AddMenu(&menu, command.key));
    case kUnitMenu:
      return ListUnits(*AddMenu(&menu, command.key));
    case kVariantMenu:
      return ListVariants(*AddMenu(&menu, command.key));
    default:
      break;
  }
  const unsigned number = command.number;
  QAction* action = menu.addAction(QString(), this, [this, number] { RunCommand(number); });
  action->setShortcuts(KeysOf(command));
  action->setCheckable(command.checked != nullptr);
  SetText(*action, command.key);
  m_actions[number] = action;
}

void MainWindow::RunCommand(unsigned number) {
  if (QuietTime::IsNow()) return;
  const bool hasDone = number == kUndo ? m_doc->GetDatabase().CanUndo() : m_doc->GetDatabase().CanRedo();
  if (RunWindowCommand(*m_session, number)) {
    if (hasDone && (number == kUndo || number == kRedo))
      m_acts->Say(number == kUndo ? "doc.undo()" : "doc.redo()");
    return RefreshActions();
  }
  switch (number) {
    case kNewWindow:
      return OnNewWindow();
    case kOpen:
      return OnOpen();
    case kSave:
      return OnSave();
    case kSaveAs:
      return OnSaveAs();
    case kImport:
      return OnImport();
    case kOpenExample: {
      const QString example = ExampleFile();
      return example.isEmpty() ? Say({Text("IDS_WB_NO_EXAMPLE"), Severity::Failure}) : Import({example});
    }
    case kExport:
      return OnExport();
    case kZoomRectangle:
      statusBar()->showMessage(Text("IDS_WB_RECTANGLE_PULL"), kWarningTime);
      return m_view->AwaitRectangle();
    case kSectionFace:
      statusBar()->showMessage(Text("IDS_WB_SECTION_PICK"), kWarningTime);
      return m_view->AwaitFace();
    case kCheckQuality:
    case kCheckFreeEdges:
    case kCheckDuplicateNodes:
    case kCheckUnconnected:
    case kCheckTurned:
    case kCheckVolumes:
    case kCheckDuplicates:
      return m_dialogs->OpenCheck(static_cast<MeshCheck>(number - kCheckQuality));
    case kMeasure:
      return m_dialogs->OpenMeasure();
    case kColourRange:
      return m_dialogs->OpenColourRange();
    case kContacts:
      return m_dialogs->OpenContacts();
    case kPickRectangle:
    case kPickLasso:
      statusBar()->showMessage(Text("IDS_WB_PICK_PULL"), kWarningTime);
      return m_view->Picking().AwaitRegion(number == kPickLasso ? RegionMouse::Form::Lasso
                                                                : RegionMouse::Form::Rectangle);
    case kPickTakeOut: {
      std::vector<iterator> parts;
      ShapeOperation operation = TakeOutPicked(*m_doc, parts);
      m_operations->Start(std::move(operation), parts, Text("IDS_WB_PICKED_TAKE_OUT"));
      return;
    }
    case kPicture:
      return OnPicture();
    case kManual:
      return ShowManual("index.md");
    case kKeysPage:
      return ShowManual("keys.md");
    case kConsole:
      return m_console->Toggle();
    case kRunScript:
      return OnRunScript();
    case kRecordActs:
      return OnRecordActs();
    case kAbout:
      return ShowAboutBox(*this);
    case kExit:
      close();
      return;
    default:
      return;
  }
}

/// That of the rows which were picked, or what can be done with what was picked of records.
void MainWindow::ShowPickedMenu(const QPoint& screen) {
  if (TakesRecords(m_doc->GetPicks().Filter())) {
    if (m_doc->GetSelectBuffer().empty()) return;
    return m_session->ModelTree().ShowContextMenu({screen.x(), screen.y()});
  }
  RefreshActions();
  QMenu menu(this);
  for (const unsigned number : {kFitSelection, kPickIntoSet, kPickTakeOut, kPickNone})
    menu.addAction(m_actions.at(number));
  menu.exec(screen);
}

void MainWindow::ShowManual(const QString& page) {
  if (m_manual == nullptr) m_manual = new ManualWindow(this);
  m_manual->ShowPage(page);
}

void MainWindow::ListLanguages(QMenu& menu) {
  auto* languages = new QActionGroup(this);
  for (const QString& code : m_messages.Languages()) {
    const QString name = QLocale(code).nativeLanguageName();
    QAction* option = AddOption(menu, *languages, code == m_messages.Language(), name.isEmpty() ? code : name);
    connect(option, &QAction::triggered, this, [this, code] {
      SetLanguage(code);
      m_acts->Say("qd.set_language(" + PythonText(FromQt(code)) + ")");
    });
  }
}

void MainWindow::ListUnits(QMenu& menu) {
  auto* systems = new QActionGroup(this);
  for (const UnitSystem& system : UnitSystems()) {
    const QString name = QString("%1, %2").arg(ToQt(system.length), ToQt(system.mass));
    QAction* option = AddOption(menu, *systems, system.length == CQDUnitCtrl::GetUnitSystemLength(), name);
    option->setData(ToQt(system.length));
    connect(option, &QAction::triggered, this, [this, &system, name] {
      if (system.length == CQDUnitCtrl::GetUnitSystemLength()) return;
      SetUnits(system);
      m_acts->Say("doc.units = " + PythonText(system.length));
      m_keepDisplay.start();
      Say({Text("IDS_WB_UNITS_CHANGED", {name})});
    });
  }
  m_unitMenu = &menu;
}

void MainWindow::SetUnits(const UnitSystem& units) {
  if (units.length == CQDUnitCtrl::GetUnitSystemLength()) return;
  CQDUnitCtrl::SetUnitSystem(units.length, units.mass);
  // Units stand behind numbers.
  for (QWidget* window : QApplication::topLevelWidgets()) Retranslate(*window);
  m_properties->Refresh();
  RefreshUnits();
}

void MainWindow::RefreshUnits() {
  for (QAction* option : m_unitMenu->actions()) {
    option->setChecked(FromQt(option->data().toString()) == CQDUnitCtrl::GetUnitSystemLength());
  }
  m_status->ShowInLanguage();
}

void MainWindow::ListVariants(QMenu& menu) {
  auto* variants = new QActionGroup(this);
  for (const VariantName& known : kVariants) {
    QAction* option = AddOption(menu, *variants, GetProductVariant() == known.variant);
    SetText(*option, known.key);
    connect(option, &QAction::triggered, this, [this, known] { m_session->ChangeVariant(known.variant); });
  }
}

void MainWindow::SetLanguage(const QString& language) {
  if (m_messages.SetLanguage(language)) {
    for (QWidget* window : QApplication::topLevelWidgets()) Retranslate(*window);
    m_properties->ChangeLanguage();
    m_console->ChangeLanguage();
    RefreshActions();
    RefreshTitle();
    m_session->Manager().OnChangeLanguage();
    m_status->ShowInLanguage();
  }
  SayTableFaults();
}

void MainWindow::SayTableFaults() {
  for (const QString& fault : m_messages.TakeFaults()) Say({fault, Severity::Failure});
}

void MainWindow::RefreshSelection() {
  // Nobody edits what is not selected any more.
  if (m_doc->GetSelection().IsEmpty()) m_properties->SetPropertySet(nullptr);
  m_properties->Refresh();
  RefreshActions();
}

/// A camera that moves changes what is possible at its first step only.
void MainWindow::FollowCamera() {
  const auto differs = [this](unsigned number) {
    const WindowCommand& command = *FindWindowCommand(number);
    const QAction& action = *m_actions.at(number);
    return action.isEnabled() != IsPossible(command, *m_session) ||
           (command.checked != nullptr && action.isChecked() != command.checked(*m_session, number));
  };
  if (differs(kViewBefore) || differs(kViewAfter) || differs(kParallel)) RefreshActions();
}

void MainWindow::RefreshActions() {
  const bool nothing = IsFresh() && m_session->IsEmpty();
  m_welcome->ShowFor(nothing, nothing ? QSettings().value(kRecentKey).toStringList() : QStringList());
  for (const auto& [number, action] : m_actions) {
    const WindowCommand& command = *FindWindowCommand(number);
    const char* hindrance = HindranceOf(command, *m_session);
    action->setEnabled(hindrance == nullptr);
    action->setStatusTip(hindrance != nullptr ? Text(hindrance) : QString());
    if (command.checked != nullptr) action->setChecked(command.checked(*m_session, number));
    const CString detail = command.detail != nullptr ? command.detail(*m_session) : CString();
    const QString text = Text(command.key);
    action->setText(detail.empty() ? text : text + " – " + ToQt(detail).replace('&', "&&"));
  }
}

}  // namespace qd::workbench
