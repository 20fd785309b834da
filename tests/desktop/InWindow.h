#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <memory>

#include "Display.h"
#include "Files.h"
#include "platform/qt/QtToolkit.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/PropertyPane.h"
#include "workbench/app/TreePane.h"
#include "workbench/view/ModelView.h"

namespace qd::test {

/// The whole window on a display, as at the first start of the program: no test hears of what others have opened.
class InWindow : public ::testing::Test {
 protected:
  InWindow() {
    QSettings().clear();
    m_window = std::make_unique<workbench::MainWindow>(m_messages);
    m_window->show();
    WaitUntil([this] { return m_window->isActiveWindow() || m_window->isVisible(); });
  }
  void Open(const QString& path) {
    m_window->Import({path});
    ASSERT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    Wait(100);
  }
  /// A window as after a start of the program; the old one is gone as if it had been closed.
  void Restart() {
    m_window.reset();
    m_window = std::make_unique<workbench::MainWindow>(m_messages);
    m_window->show();
    Wait(100);
  }
  QString Path(const QString& name) { return m_files.Folder() + "/" + name; }
  workbench::Database& Data() { return m_window->Document().GetDatabase(); }
  CQDTreeListCtrl& Tree() { return m_window->ModelTreePane().Bar().GetTreeCtrl(); }
  /// The open dialog of a name; closed ones may not be gone yet.
  QDialog* Dialog(const QString& name) {
    for (auto* dialog : m_window->findChildren<QDialog*>(name)) {
      if (dialog->isVisible()) return dialog;
    }
    return nullptr;
  }
  /// Answers the next dialog that asks for the name of a file.
  void AnswerFileName(const QString& path) {
    auto* timer = new QTimer(m_window.get());  // owned by the window
    QObject::connect(timer, &QTimer::timeout, m_window.get(), [timer, path] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      timer->deleteLater();
      dialog->findChild<QLineEdit*>("fileNameEdit")->setText(path);
      static_cast<QDialog*>(dialog)->accept();
    });
    timer->start(50);
  }
  /// Answers the next question of a name as soon as it is asked; what it said, and what the keys would have
  /// chosen, is kept.
  void Answer(const QString& name, QMessageBox::ButtonRole role) {
    m_asked.clear();
    auto* timer = new QTimer(m_window.get());  // owned by the window
    QObject::connect(timer, &QTimer::timeout, m_window.get(), [this, timer, name, role] {
      for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* box = qobject_cast<QMessageBox*>(widget);
        if (box == nullptr || box->objectName() != name || !box->isVisible()) continue;
        timer->deleteLater();
        m_asked = box->text();
        m_details = box->detailedText();
        const QPushButton* usual = box->defaultButton();
        m_usual = usual != nullptr ? box->buttonRole(box->defaultButton()) : QMessageBox::InvalidRole;
        Keep("question-" + name, box);
        for (QAbstractButton* button : box->buttons()) {
          if (box->buttonRole(button) == role) return button->click();
        }
      }
    });
    timer->start(50);
  }
  QString Messages() { return m_window->findChild<QPlainTextEdit*>("messageText")->toPlainText(); }
  /// Keeps a picture for whoever wants to look, where QD_PICTURES names a folder: of the window, or of another
  /// one.
  void Keep(const QString& name, QWidget* other = nullptr) {
    const QString folder = qEnvironmentVariable("QD_PICTURES");
    if (!folder.isEmpty()) (other != nullptr ? other : m_window.get())->grab().save(folder + "/" + name + ".png");
  }

  QString m_asked;
  QString m_details;
  QMessageBox::ButtonRole m_usual = QMessageBox::InvalidRole;
  workbench::MessageTables m_messages;
  QtToolkit m_toolkit;
  Files m_files;
  std::unique_ptr<workbench::MainWindow> m_window;
};

}  // namespace qd::test
