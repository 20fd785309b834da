// The menus of the main window.

#include <QActionGroup>
#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QToolButton>
#include <map>
#include <string_view>

#include "host/CQDUnitCtrl.h"
#include "platform/qt/QtConvert.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/PropertyPane.h"
#include "workbench/app/Translated.h"
#include "workbench/app/TreePane.h"
#include "workbench/session/SelectionPage.h"
#include "workbench/session/VariantNames.h"
#include "workbench/session/WindowCommands.h"
#include "workbench/view/ModelView.h"

namespace qd::workbench {

namespace {

QList<QKeySequence> KeysOf(const WindowCommand& command) {
  QList<QKeySequence> keys;
  for (const CommandKeys& one : command.keys) {
    if (one.letter == 0) continue;
    const Qt::Key key = one.letter == kKeyDelete ? Qt::Key_Delete : static_cast<Qt::Key>(one.letter);
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

}  // namespace

void MainWindow::MakeMenus() {
  std::map<std::string_view, QMenu*> menus;
  for (const WindowCommand& command : WindowCommands()) {
    if (command.windows == WindowCommand::Windows::Native) continue;
    QMenu*& menu = menus[command.menu];
    if (menu == nullptr) {
      menu = AddMenu(nullptr, command.menu);
      connect(menu, &QMenu::aboutToShow, this, &MainWindow::RefreshActions);
    }
    AddCommand(*menu, command);
  }
}

QMenu* MainWindow::AddMenu(QMenu* above, const char* key) {
  QMenu* menu = above != nullptr ? above->addMenu(QString()) : menuBar()->addMenu(QString());
  SetText(*menu->menuAction(), key);
  return menu;
}

void MainWindow::AddCommand(QMenu& menu, const WindowCommand& command) {
  switch (command.number) {
    case 0:
      menu.addSeparator();
      return;
    case kRecentMenu: {
      QMenu* recent = AddMenu(&menu, command.key);
      connect(recent, &QMenu::aboutToShow, this, [this, recent] { ListRecent(*recent); });
      return;
    }
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
  if (RunWindowCommand(*m_session, number)) return RefreshActions();
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
    case kExport:
      return OnExport();
    case kFit:
      return m_view->FitAll();
    case kExit:
      close();
      return;
    default:
      return;
  }
}

void MainWindow::ListLanguages(QMenu& menu) {
  auto* languages = new QActionGroup(this);
  for (const QString& code : m_messages.Languages()) {
    const QString name = QLocale(code).nativeLanguageName();
    QAction* option = AddOption(menu, *languages, code == m_messages.Language(), name.isEmpty() ? code : name);
    connect(option, &QAction::triggered, this, [this, code] { SetLanguage(code); });
  }
}

void MainWindow::ListUnits(QMenu& menu) {
  auto* systems = new QActionGroup(this);
  constexpr const wchar_t* kSystems[][2] = {{L"mm", L"t"}, {L"m", L"kg"}, {L"in", L"lb"}};
  for (const auto& system : kSystems) {
    const CString length = system[0];
    const CString mass = system[1];
    const QString name = QString("%1, %2").arg(ToQt(length), ToQt(mass));
    QAction* option = AddOption(menu, *systems, length == CQDUnitCtrl::GetUnitSystemLength(), name);
    connect(option, &QAction::triggered, this, [this, length, mass] {
      CQDUnitCtrl::SetUnitSystem(length, mass);
      // Units stand behind numbers, and all windows have the same.
      for (QWidget* window : QApplication::topLevelWidgets()) Retranslate(*window);
      m_properties->Refresh();
    });
  }
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
