// Undo of what is shown and how, beside the records; leaving an isolation.

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "host/CTransaction.h"
#include "support/KeptDocument.h"
#include "workbench/display/Display.h"
#include "workbench/display/WorkDocument.h"

namespace qd::test {
namespace {

using namespace workbench;

class DisplayHistory : public ::testing::Test {
 protected:
  DisplayHistory() {
    m_parts = {AddPart(), AddPart(), AddPart()};
    m_display.Deliver();
    m_following = m_display.Subscribe([this](const DisplayNotice& notice) { Hear(notice); });
  }
  void TearDown() override { m_kept.Check(true); }

  Database& Data() { return m_doc.GetDatabase(); }
  int AddPart() {
    CTransaction transaction(&Data());
    transaction.Begin(L"add");
    tagTGeom part;
    part.cadItem = Data().GetGeomPool().NextNumber();
    Data().GetGeomPool().Add(part);
    transaction.Commit(1);
    return part.cadItem;
  }
  /// What a view shows that looks only at what it is told of.
  struct Follower {
    std::map<int, std::string> parts;
    std::map<iterator, int> sets;
    std::map<std::int32_t, int> labels;
    std::map<RowBox, int> boxes;
    std::string looks;
    std::string colours;
    bool isolated = false;
    bool operator==(const Follower&) const = default;
  };
  static std::string PartText(const PartDisplay::Look& part) {
    return std::to_string(part.shown) + std::to_string(part.mode) + std::to_string(part.opacity);
  }
  std::string Colours() {
    return std::to_string(m_display.Meshes().GetMeshColorMode()) +
           std::to_string(m_display.Parts().GetColorModelType());
  }
  void Hear(const DisplayNotice& notice) {
    for (const int part : notice.parts) m_seen.parts[part] = PartText(m_display.Parts().GetLook(part));
    for (const iterator set : notice.msets) m_seen.sets[set] = m_display.Meshes().IsMsetShown(set);
    for (const auto id : notice.labels) m_seen.labels[id] = m_display.Labels().GetShowHide(kLabelCord, id);
    for (const RowBox& box : notice.boxes) m_seen.boxes[box] = m_display.Boxes().GetBox(box);
    if (notice.looks) m_seen.looks = Looks();
    if (notice.colours) m_seen.colours = Colours();
    if (notice.isolation) m_seen.isolated = m_display.Isolation() != nullptr;
    ++m_notices;
  }
  void Follow(const std::string& before) {
    Follower all = m_seen;
    all.looks = Looks();
    all.colours = Colours();
    all.isolated = m_display.Isolation() != nullptr;
    for (int part = 0; part < 8; ++part) {
      const std::string text = PartText(m_display.Parts().GetLook(part));
      if (all.parts.contains(part) || text != PartText({})) all.parts[part] = text;
    }
    for (iterator set = 1; set < 6; ++set) {
      const int shown = m_display.Meshes().IsMsetShown(set);
      if (all.sets.contains(set) || shown == 0) all.sets[set] = shown;
    }
    for (std::int32_t id = 1; id < 4; ++id) {
      const int shown = m_display.Labels().GetShowHide(kLabelCord, id);
      if (all.labels.contains(id) || shown == 0) all.labels[id] = shown;
    }
    for (const RowBox& box : kBoxes) {
      const int state = m_display.Boxes().GetBox(box);
      if (all.boxes.contains(box) || state != 3) all.boxes[box] = state;
    }
    EXPECT_TRUE(all == m_seen) << "something changed from " << before << " to " << State() << " without a notice";
  }
  std::string Looks() {
    std::string text;
    for (std::uint32_t key = 1; key < 6; ++key) {
      const auto look = m_display.Meshes().GetLook(key);
      text += " " + std::to_string(look.mode) + "/" + std::to_string(look.opacity) + "/" +
              std::to_string(look.addOns) + (look.shrink ? "s" : "");
    }
    return text;
  }
  /// All but what is shown and hidden.
  std::string Others() {
    std::string text = Looks();
    for (int part = 0; part < 8; ++part) {
      const auto& item = m_display.Parts().GetLook(part);
      text += " " + std::to_string(item.mode) + " " + std::to_string(item.opacity);
    }
    return text + std::to_string(m_display.Meshes().GetMeshColorMode()) +
           std::to_string(m_display.Parts().GetColorModelType());
  }
  /// What is hidden, sorted.
  Visibility Hidden() {
    Visibility hidden = m_display.HiddenNow();
    std::sort(hidden.hiddenParts.begin(), hidden.hiddenParts.end());
    std::sort(hidden.hiddenMsets.begin(), hidden.hiddenMsets.end());
    return hidden;
  }
  static std::string Text(const Visibility& hidden) {
    std::string text;
    for (const int part : hidden.hiddenParts) text += std::to_string(part) + " ";
    std::vector<iterator> sets = hidden.hiddenMsets;
    std::sort(sets.begin(), sets.end());
    for (const iterator set : sets) text += "s" + std::to_string(set) + " ";
    return text;
  }
  /// Ends what the user does at one go, as the window does.
  void EndAct() { m_display.Deliver(); }
  void Isolate(int part) {
    m_display.BeginIsolation();
    for (const int other : m_parts) m_display.Parts().SetShowHide(other, 0);
    m_display.Parts().SetShowHide(part, 1);
    EndAct();
  }
  std::string Shown() {
    std::string text;
    for (const int part : m_parts) text += m_display.Parts().GetShowHide(part) != 0 ? "x" : "-";
    return text;
  }
  /// Everything that can be undone of the display, as text.
  std::string State() {
    std::string text;
    for (int item = 0; item < 8; ++item) {
      const auto& part = m_display.Parts().GetLook(item);
      text += std::to_string(part.shown) + std::to_string(part.mode) + std::to_string(part.opacity) + " ";
    }
    for (iterator mset = 1; mset < 6; ++mset) text += std::to_string(m_display.Meshes().IsMsetShown(mset));
    text += Looks();
    for (std::int32_t id = 1; id < 4; ++id) text += std::to_string(m_display.Labels().GetShowHide(kLabelCord, id));
    for (const RowBox& box : kBoxes) text += std::to_string(m_display.Boxes().GetBox(box));
    return text + " " + std::to_string(m_display.Meshes().GetMeshColorMode()) +
           std::to_string(m_display.Parts().GetColorModelType()) +
           (m_display.Isolation() != nullptr ? " isolated" : "");
  }

  static constexpr RowBox kBoxes[] = {{5}, {21}, {21, 7}, {21, 7, 3}};

  WorkDocument m_doc;
  Display& m_display = m_doc.GetDisplay();
  KeptDocument m_kept{m_doc.GetDatabase()};
  std::vector<int> m_parts;
  Subscription m_following;
  Follower m_seen{{}, {}, {}, {}, Looks(), "00", false};
  int m_notices = 0;
};

TEST_F(DisplayHistory, MarksAreOnWhenAllOfThemAreOnForAll) {
  m_display.Meshes().SetAddOnInfo({1}, 1);
  EXPECT_EQ(m_display.Meshes().HasAddOnInfo({1}, 1), 1);
  EXPECT_EQ(m_display.Meshes().HasAddOnInfo({1}, 3), 0);
  m_display.Meshes().SetAddOnInfo({1}, 2);
  EXPECT_EQ(m_display.Meshes().HasAddOnInfo({1}, 3), 1);
  EXPECT_EQ(m_display.Meshes().HasAddOnInfo({1, 2}, 3), 0);
  EXPECT_EQ(m_display.Meshes().HasAddOnInfo({}, 1), 0);
}

/// "Previous" takes back what the last command has shown and hidden, and then does it again.
TEST_F(DisplayHistory, PreviousIsWhatTheLastCommandHasChanged) {
  std::mt19937 random(5);
  constexpr int kParts = 6;
  std::map<int, bool> shown;
  std::map<int, bool> previous;
  for (int part = 1; part <= kParts; ++part) shown[part] = true;
  for (int command = 0; command < 300; ++command) {
    const std::map<int, bool> before = shown;
    if (random() % 4 == 0) {
      for (const auto& [part, was] : previous) shown[part] = was;
      m_display.Parts().ChangePrevShowHide();
    } else {
      const bool batch = random() % 3 != 0;
      if (batch) m_display.Parts().BeginShowHide();
      for (unsigned steps = batch ? random() % 5 : 1; steps > 0; --steps) {
        const int part = 1 + static_cast<int>(random() % kParts);
        shown[part] = random() % 2 != 0;  // there and back in one command, too, or nothing at all
        m_display.Parts().SetShowHide(part, shown[part] ? 1 : 0);
      }
      if (batch) m_display.Parts().EndShowHide();
    }
    if (shown != before) previous.clear();
    for (const auto& [part, is] : shown) {
      if (before.at(part) != is) previous[part] = before.at(part);
      ASSERT_EQ(m_display.Parts().GetShowHide(part) != 0, is) << "part " << part << ", command " << command;
    }
  }
}

TEST_F(DisplayHistory, AnyRunOfChangesGoesBackAndForthExactly) {
  std::mt19937 random(3);
  const std::string first = State();
  std::vector<std::string> states{first};
  std::shared_ptr<const Visibility> isolated;
  for (int act = 0; act < 300; ++act) {
    const std::string before = State();
    const std::string hidden = Text(Hidden());
    const std::string others = Others();
    bool onlyVisibility = true;
    if (random() % 8 == 0) m_display.BeginIsolation();
    for (unsigned steps = 1 + random() % 4; steps > 0; --steps) {
      const auto key = 1 + static_cast<std::uint32_t>(random() % 4);
      const int part = 1 + static_cast<int>(random() % 5);
      const auto what = random() % 16;
      onlyVisibility = onlyVisibility && (what == 0 || what == 3 || what >= 13);
      switch (what) {
        case 0:
          m_display.Parts().SetShowHide(part, random() % 2);
          break;
        case 15:
          m_display.Boxes().SetBox(kBoxes[random() % 4], random() % 2 != 0 ? 3 : 1);
          break;
        case 14:
          if (m_display.Isolation() == nullptr) break;
          isolated = m_display.Isolation();
          m_display.LeaveIsolation();
          EXPECT_EQ(Text(Hidden()), Text(*isolated));
          EXPECT_EQ(m_display.Isolation(), nullptr);
          break;
        case 1:
          m_display.Parts().SetRenderMode(std::vector<int>{part}, random() % 4);
          break;
        case 2:
          m_display.Parts().SetTransparency(std::vector<int>{part}, random() % 11 / 10.0);
          break;
        case 3:
          m_display.Meshes().ShowHideMset(iterator{key}, random() % 2);
          break;
        case 4:
          m_display.Meshes().SetAddOnInfo({key}, 1U << random() % 6);
          break;
        case 5:
          m_display.Meshes().DelAddOnInfo({key}, 1U << random() % 6);
          break;
        case 6:
          m_display.Meshes().SetAddOnInfoAll(1U << random() % 6);
          break;
        case 7:
          m_display.Meshes().SetTransparency(std::vector<std::uint32_t>{key},
                                             static_cast<unsigned char>(random()));
          break;
        case 8:
          m_display.Meshes().SetMeshColorMode(random() % 5);
          break;
        case 9:
          m_display.Meshes().DelAddOnInfoAll(1U << random() % 6);
          break;
        case 10:
          m_display.Meshes().ToggleShrink({key, 1 + key % 4});
          break;
        case 11:
          m_display.Meshes().SetRenderMode(std::vector<std::uint32_t>{key}, random() % 7);
          break;
        case 12:
          m_display.Parts().SetAllColorModelType(random() % 2);
          break;
        default:
          m_display.Labels().SetShowHide(random() % 2, kLabelCord, static_cast<std::int32_t>(1 + random() % 3));
          break;
      }
    }
    const std::uint64_t acts = Data().ActNumber();
    EndAct();
    const bool acted = Data().ActNumber() > acts;
    const bool saidVisibility = Data().UndoTitle() == L"IDS_WB_ACT_VISIBILITY";
    EXPECT_TRUE(!acted || saidVisibility || !onlyVisibility) << act;
    EXPECT_TRUE(!acted || !saidVisibility || Others() == others) << act;
    if (m_display.Isolation() != nullptr && isolated != m_display.Isolation()) {
      isolated = m_display.Isolation();
      EXPECT_EQ(Text(*isolated), hidden);
    }
    Follow(before);
    EXPECT_TRUE(State() == states.back() || Data().ActNumber() > acts) << "what changes something can be undone";
    if (acted) states.push_back(State());
  }
  std::size_t at = states.size() - 1;
  for (; at > 0; --at) {
    EXPECT_EQ(State(), states[at]) << "undo " << at;
    Data().Undo();
    m_display.Deliver();
    Follow(states[at]);
  }
  EXPECT_EQ(State(), first);
  EXPECT_EQ(Data().UndoTitle(), L"add");
  while (Data().Redo() != 0) {
    m_display.Deliver();
    EXPECT_EQ(State(), states[++at]) << "redo";
    Follow(states[at - 1]);
  }
  EXPECT_EQ(at, states.size() - 1);
}

}  // namespace
}  // namespace qd::test
