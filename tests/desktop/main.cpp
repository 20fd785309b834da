#include <gtest/gtest.h>

#include <QApplication>

#include "workbench/view/ModelView.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  qd::workbench::ModelView::SetDefaultFormat();
  const QApplication app(argc, argv);
  return RUN_ALL_TESTS();
}
