// A working day in the window with the display's own mouse and keys: a file comes in, is worked on, saved, closed
// and opened again. What was seen then is seen now.

#include <QApplication>

#include "InWindow.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "support/RecordText.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {
namespace {

using namespace workbench;

class Journey : public InWindow, public ::testing::WithParamInterface<Qt::WindowState> {
 protected:
  std::string Print() { return PrintTree(Tree()).substr(PrintTree(Tree()).find('\n')); }
  QImage Picture() {
    EXPECT_TRUE(WaitUntil([this] { return m_window->IsUpToDate(); }));
    m_window->Document().GetLooking().FitAll();
    Wait(300);
    return m_window->View().grabFramebuffer();
  }
  /// Share of pixels that differ.
  static double Difference(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return 1;
    int different = 0;
    for (int y = 0; y < a.height(); ++y) {
      for (int x = 0; x < a.width(); ++x) different += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
    }
    return different / (static_cast<double>(a.width()) * a.height());
  }
  CQDTreeItem* Part(const CString& title) {
    CQDTreeItem* found = nullptr;
    Tree().GetQDRootItem()->ForEachBelow([&](CQDTreeItem* node) {
      if (found == nullptr && node->IsGeom() && node->GetTitle() == title) found = node;
    });
    return found;
  }
  void Click(CQDTreeItem& node, int right) {
    CRect area;
    Tree().EnsureVisible(node.GetTreeItemHandle());
    ASSERT_TRUE(Tree().GetItemRect(node.GetTreeItemHandle(), area, true));
    const CPoint at = Tree().ClientToScreen({area.left + right, (area.top + area.bottom) / 2});
    Display(QStringList{"mousemove"} << At(at) << QStringList{"click", "1"});
  }
  /// Presses keys that open the file dialog, types a path there and accepts it.
  void InFileDialog(const QString& keys, const QString& path) {
    QTimer::singleShot(1500, m_window.get(), [path] {
      Display({"type", "--delay", "2", path});
      Display({"key", "Return"});
    });
    Display({"key", keys});
    ASSERT_TRUE(WaitUntil([] { return QApplication::activeModalWidget() == nullptr; }, 20));
    Wait(500);
  }
  void Restart(Qt::WindowState state) {
    EXPECT_TRUE(m_window->close());
    m_window.reset();
    m_window = std::make_unique<MainWindow>(m_messages);
    m_window->setWindowState(state);
    m_window->show();
    m_window->activateWindow();
  }
};

TEST_P(Journey, WhatWasSavedIsOpenedAsItWas) {
  m_window->setWindowState(GetParam());
  Wait(300);
  Open(m_files.Make({"pump"}, "pump.step"));
  const QImage first = Picture();

  ASSERT_NE(Part(L"Shaft"), nullptr);
  Click(*Part(L"Shaft"), 10);
  Display({"key", "F2"});
  Display({"type", "--delay", "5", "Axle 7"});
  Display({"key", "Return"});
  ASSERT_NE(Part(L"Axle 7"), nullptr) << Print();
  Tree().OnMenuEvent(kCommandRandomColour);
  const QImage coloured = Picture();
  EXPECT_GT(Difference(first, coloured), 0.001);
  constexpr int kCheckBox = -30;
  Click(*Part(L"Axle 7"), kCheckBox);
  EXPECT_EQ(Part(L"Axle 7")->GetCheckStatus(), kUnchecked);
  const QImage hidden = Picture();
  EXPECT_GT(Difference(coloured, hidden), 0.001);
  Display({"key", "ctrl+z"});
  EXPECT_EQ(Part(L"Axle 7")->GetCheckStatus(), kChecked);
  EXPECT_LT(Difference(coloured, Picture()), 0.001);

  const QString path = m_files.Folder() + "/journey.qdw";
  InFileDialog("ctrl+s", path);
  ASSERT_TRUE(QFile::exists(path));
  // What is done after saving is in the file, too.
  Click(*Part(L"Housing"), 10);
  Display({"key", "Delete"});
  ASSERT_EQ(Part(L"Housing"), nullptr);
  Tree().SelectCTItem(Part(L"Axle 7"));
  const std::string tree = Print();
  const std::string records = Contents(Data());
  const QImage left = Picture();
  const QSize size = m_window->size();
  Keep("journey_left");

  Restart(GetParam());
  EXPECT_TRUE(VerifyDocument(path.toStdString()).empty());
  if (GetParam() == Qt::WindowMaximized) {
    ASSERT_TRUE(
        m_window->OpenDocument(path));  // as a start with the file's name does, before anything is laid out
  } else {
    Wait(500);
    InFileDialog("ctrl+o", path);
  }
  Wait(500);
  ASSERT_NE(Part(L"Axle 7"), nullptr) << Print();
  EXPECT_EQ(Print(), tree);
  EXPECT_EQ(Contents(Data()), records);
  EXPECT_EQ(m_window->size(), size);
  Tree().SelectCTItem(Part(L"Axle 7"));
  EXPECT_LT(Difference(left, Picture()), 0.001);
  Keep("journey_found");
  // And work goes on there.
  Click(*Part(L"Axle 7"), kCheckBox);
  EXPECT_EQ(Part(L"Axle 7")->GetCheckStatus(), kUnchecked);
  EXPECT_GT(Difference(left, Picture()), 0.001);
}

INSTANTIATE_TEST_SUITE_P(Sizes, Journey, ::testing::Values(Qt::WindowNoState, Qt::WindowMaximized),
                         [](const auto& size) {
                           return size.param == Qt::WindowMaximized ? "Maximised" : "AsItComes";
                         });

}  // namespace
}  // namespace qd::test
