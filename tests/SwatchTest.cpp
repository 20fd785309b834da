// The colour that a row shows is changed by a click on it, through the host.

#include <gtest/gtest.h>

#include <cstdio>
#include <map>

#include "support/Mesh.h"
#include "support/Model.h"
#include "workbench/session/RecordColour.h"

namespace qd::test {
namespace {

class Swatch : public ModelTest {
 protected:
  CPoint SwatchOf(const CString& title) {
    Tree().EnsureVisible(Row(title));
    m_toolkit.Pump();
    const int left = Tree().GetColumnWidth(0) + Tree().GetColumnWidth(1);
    return {left + Tree().GetColumnWidth(2) / 2, PointOf(title).y};
  }
  std::string AfterClick(const CString& title, unsigned flags = 0) {
    Heard();
    m_toolkit.Click(Tree(), SwatchOf(title), flags);
    Settle();
    return Heard();
  }
};

TEST_F(Swatch, APlainClickAsksTheHostForAnotherColour) {
  AddParts({L"bolt"});
  const std::string asked = "CQDCmdColorDlg";
  EXPECT_NE(AfterClick(L"bolt").find(asked), std::string::npos);
  EXPECT_TRUE(Tree().IsSelected(Row(L"bolt")));
  EXPECT_EQ(AfterClick(L"bolt", kMouseControl).find(asked), std::string::npos);
  EXPECT_EQ(AfterClick(L"IDS_DB_DATA_NAME_GEOM").find(asked), std::string::npos);  // has no swatch
  Click(L"bolt");
  EXPECT_EQ(Heard().find(asked), std::string::npos);
}

TEST_F(Swatch, StaysWholeBesideThePlacesOfMatches) {
  Act([&] {
    for (int i = 0; i < 60; ++i) {
      tagTMset record;
      record.name = L"bolt" + std::to_wstring(i);
      Data().GetMsetPool().AddMset(record);
    }
  });
  SwatchOf(L"bolt59");  // comes into sight
  // The last column ends where the window does.
  const int edge = Tree().GetClientRect().right;
  Tree().GetHeader().SetItemWidth(2, edge - Tree().GetColumnWidth(0) - Tree().GetColumnWidth(1));
  m_toolkit.Pump();
  const auto swatches = [&] {
    std::map<int, int> count;  // by their right edges
    for (const std::string& call : m_toolkit.Paint(Tree())) {
      CRect at;
      unsigned colour = 1;
      const int read =
          std::sscanf(call.c_str(), "frame %d,%d,%d,%d #%x", &at.left, &at.top, &at.right, &at.bottom, &colour);
      if (read == 5 && at.Width() > 12) ++count[at.right];
    }
    return count;
  };
  ASSERT_EQ(swatches().size(), 1U) << edge;
  EXPECT_EQ(swatches().begin()->first, edge - 3);
  m_bar.SetFind(L"bolt");
  m_toolkit.FinishSlices();
  m_toolkit.Pump();
  ASSERT_EQ(swatches().size(), 1U);
  EXPECT_EQ(swatches().begin()->first, edge - 5) << "four points at the edge show where matches are";
}

TEST_F(Swatch, TheColourOfARecordIsOneAct) {
  const iterator part = AddParts({L"bolt"}).front();
  const iterator material = AddMaterial(L"steel");
  iterator set = 0;
  Act([&] {
    tagTMset record;
    record.name = L"mesh";
    set = Data().GetMsetPool().AddMset(record);
  });
  const COLORREF red = Rgb(250, 1, 2);
  for (const iterator record : {part, material, set}) {
    ExpectOneAct({}, [&] { return workbench::Recolour(Data(), record, red); });
    EXPECT_EQ(workbench::ColourOf(Data(), record), red);
    EXPECT_EQ(workbench::Recolour(Data(), record, red), 0);
  }
  EXPECT_EQ(workbench::ColourOf(Data(), 12'345'678), std::nullopt);
}

}  // namespace
}  // namespace qd::test
