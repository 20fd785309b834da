#pragma once

#include <gtest/gtest.h>

#include <QDialog>
#include <memory>

#include "Display.h"
#include "Files.h"
#include "platform/qt/QtToolkit.h"
#include "workbench/app/MainWindow.h"
#include "workbench/app/PropertyPane.h"
#include "workbench/app/TreePane.h"
#include "workbench/view/ModelView.h"

namespace qd::test {

/// The whole window on a display.
class InWindow : public ::testing::Test {
 protected:
  InWindow() : m_window(std::make_unique<workbench::MainWindow>(m_messages)) {
    m_window->show();
    WaitUntil([this] { return m_window->isActiveWindow() || m_window->isVisible(); });
  }
  void Open(const QString& path) {
    m_window->Import({path});
    ASSERT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    Wait(100);
  }
  workbench::Database& Data() { return m_window->Document().GetDatabase(); }
  CQDTreeListCtrl& Tree() { return m_window->ModelTreePane().Bar().GetTreeCtrl(); }
  /// The open dialog of a name; closed ones may not be gone yet.
  QDialog* Dialog(const QString& name) {
    for (auto* dialog : m_window->findChildren<QDialog*>(name)) {
      if (dialog->isVisible()) return dialog;
    }
    return nullptr;
  }
  /// Keeps a picture for whoever wants to look, where QD_PICTURES names a folder: of the window, or of another
  /// one.
  void Keep(const QString& name, QWidget* other = nullptr) {
    const QString folder = qEnvironmentVariable("QD_PICTURES");
    if (!folder.isEmpty()) (other != nullptr ? other : m_window.get())->grab().save(folder + "/" + name + ".png");
  }

  workbench::MessageTables m_messages;
  QtToolkit m_toolkit;
  Files m_files;
  std::unique_ptr<workbench::MainWindow> m_window;
};

}  // namespace qd::test
