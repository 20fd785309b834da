// How a document is shown, kept beside its records and taken up again.

#include <gtest/gtest.h>

#include "support/Digest.h"
#include "support/SessionModel.h"

namespace qd::test {
namespace {

using namespace workbench;

class DisplayBytes : public SessionTest {
 protected:
  /// Changes everything of the display that there is to change.
  void ChangeAll() {
    Display& display = m_doc.GetDisplay();
    const int part = Data().GetGeomPool().GetAtNU(m_a)->cadItem;
    const std::uint32_t key = Data().GetMsetPool().GetAtNU(m_inner)->key & kMsetKeyMask;
    display.Parts().SetRenderMode({part}, 2);
    display.Parts().SetTransparency({part}, 0.25);
    display.Parts().SetAllColorModelType(1);
    display.Meshes().PutColouring(
        {MeshDisplay::Colouring::kByQuality, {QualityMeasure::Skewness, true, 0.25, 0.5}});
    display.Meshes().SetAddOnInfoAll(kAddOnNodes);
    display.Meshes().SetTransparency({key}, 100);
    display.Meshes().ToggleShrink({key});
    display.Meshes().ShowHideMset(m_inner, 0);
    display.Labels().SetShowHide(0, kLabelCord, 1);
    display.Boxes().SetBox({kDataGset, m_first, -1}, 1);
    display.BeginIsolation();
    display.Parts().SetShowHide(part, 0);
    display.Boxes().SetBox({kDataGset, m_first, -1}, 3);
    Settle();
  }
};

TEST_F(DisplayBytes, BringBackAllOfTheDisplayAndAreNoAct) {
  ChangeAll();
  const std::string changed = DisplayText(m_doc);
  EXPECT_EQ(DisplayTextOfOpened(m_doc), changed);
  const std::string bytes = BytesOfDisplay(m_doc.GetDisplay());
  EXPECT_EQ(Data().Undo(), 1);  // the whole act
  Settle();
  const CString title = Data().UndoTitle();
  m_session->TakeUp(L"model.qdw", bytes);
  Settle();
  EXPECT_EQ(DisplayText(m_doc), changed);
  EXPECT_EQ(Data().UndoTitle(), title);
}

/// Of records that are not there, and with values that nothing has.
TEST_F(DisplayBytes, ThatDoNotFitArePassedOver) {
  ChangeAll();
  const std::string bytes = BytesOfDisplay(m_doc.GetDisplay());
  WorkDocument other;
  const std::string asMade = BytesOfDisplay(other.GetDisplay());
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(TakeUpDisplay(bytes.substr(0, size), Data(), other.GetDisplay())) << size;
  }
  EXPECT_FALSE(TakeUpDisplay(bytes + "x", Data(), other.GetDisplay()));
  EXPECT_EQ(BytesOfDisplay(other.GetDisplay()), asMade);
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    for (const unsigned char value : {0x00, 0x7F, 0xFF}) {
      std::string damaged = bytes;
      damaged[at] = static_cast<char>(value);
      WorkDocument shown;
      if (!TakeUpDisplay(damaged, Data(), shown.GetDisplay())) continue;
      for (const auto& [cadItem, look] : shown.GetDisplay().Parts().Looks()) {
        EXPECT_EQ(cadItem, Data().GetGeomPool().GetAtNU(m_a)->cadItem);
        EXPECT_TRUE(look.mode < 4 && look.opacity >= 0 && look.opacity <= 1) << at;
      }
      for (const iterator mset : shown.GetDisplay().Meshes().Hidden())
        EXPECT_EQ(Data().GetDataType(mset), kDataMset);
      const MeshDisplay::Colouring& colouring = shown.GetDisplay().Meshes().GetColouring();
      EXPECT_LE(colouring.mode, MeshDisplay::Colouring::kByQuality);
      EXPECT_LT(colouring.quality.least, colouring.quality.greatest) << at;
      EXPECT_LT(static_cast<int>(colouring.quality.measure), kQualityMeasures) << at;
      for (const auto& [box, state] : shown.GetDisplay().Boxes().States()) EXPECT_TRUE(state >= 0 && state < 4);
    }
  }
}

}  // namespace
}  // namespace qd::test
