#pragma once

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QTimer>
#include <list>

#include "InWindow.h"
#include "host/CQDUnitCtrl.h"
#include "host/CTransaction.h"
#include "qd_wrt/core/IAppWrt.h"

namespace qd::test {

/// A window with four blocks.
class Dialogs : public InWindow {
 protected:
  Dialogs() { Open(m_files.Make({"grid", "4"}, "grid.step")); }
  ~Dialogs() override { CQDUnitCtrl::SetUnitSystem(L"mm", L"t"); }

  std::vector<iterator> Parts() { return Data().GetGeomPool().GetItrList(); }
  CQDTreeItem* Branch() { return Tree().GetQDRootItem()->GetChild(0); }
  QDialog* Ask(const QString& name, CQDTreeItem* node, unsigned command) {
    Tree().SelectCTItem(node);
    Tree().OnMenuEvent(command);
    EXPECT_TRUE(WaitUntil([&] { return Dialog(name) != nullptr; }));
    Dialog(name)->activateWindow();
    Wait(100);
    return Dialog(name);
  }
  QDialog* AskPart(const QString& name, std::size_t part, unsigned command) {
    return Ask(name, Tree().FindGeomNode(Parts()[part]), command);
  }
  /// By the keys that it has.
  QAction* Action(const QKeySequence& keys) {
    for (QAction* action : m_window->findChildren<QAction*>()) {
      if (action->shortcuts().contains(keys)) return action;
    }
    return nullptr;
  }
  QAction* ActionOf(const char* key) {
    for (QAction* action : m_window->findChildren<QAction*>()) {
      if (action->text() == workbench::Text(key) || action->text() == key) return action;
    }
    return nullptr;
  }
  static void Press(int key, const QString& text = {}, Qt::KeyboardModifiers held = Qt::NoModifier) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(type, key, held, text);
      QApplication::sendEvent(QApplication::focusWidget(), &event);
    }
  }
  static void Type(const QString& text) {
    for (const QChar letter : text) Press(0, QString(letter));
  }
  static QString TextOf(const QWidget& parent, const QString& name) {
    const auto* label = parent.findChild<QLabel*>(name);
    return label != nullptr && !label->isHidden() ? label->text() : QString();
  }
  /// What is told at any field of a dialog.
  static QString Fault(const QWidget& dialog) {
    for (const QLabel* label : dialog.findChildren<QLabel*>("fault")) {
      if (label->isVisible()) return label->text();
    }
    return {};
  }
  void Rename(iterator part, const CString& name) {
    CTransaction transaction(&Data());
    transaction.Begin(L"rename");
    tagTGeom record = *Data().GetGeomPool().GetAtNU(part);
    record.name = name;
    Data().GetGeomPool().Change(part, record);
    transaction.Commit(1);
    Wait(50);
  }
  /// The title of the next modal window, which is then left.
  QString TitleOfNext(const std::function<void()>& ask) {
    QString title = "none";
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      timer.stop();
      title = dialog->windowTitle();
      dialog->reject();
    });
    timer.start(50);
    ask();
    return title;
  }
};

}  // namespace qd::test
