#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

#include "support/JudgedRun.h"
#include "workbench/view/ModelView.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  qd::workbench::ModelView::SetDefaultFormat();
  // What was left by somebody's own work is not asked about here, in no window that a test starts.
  const QTemporaryDir state;
  qputenv("XDG_STATE_HOME", state.path().toUtf8());
  qputenv("XDG_CONFIG_HOME", state.path().toUtf8());  // recent files and sizes, which others write meanwhile
  const QApplication app(argc, argv);
  return qd::test::RunJudged("desktop_tests");
}
