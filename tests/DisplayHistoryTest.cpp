// Undo of what is shown and how, beside the records; leaving an isolation.

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "host/CTransaction.h"
#include "support/KeptDocument.h"
#include "workbench/display/DisplayChange.h"
#include "workbench/display/WorkDocument.h"

namespace qd::test {
namespace {

using namespace workbench;

class DisplayHistory : public ::testing::Test {
 protected:
  DisplayHistory() {
    Display().SetOnRecord([this] { m_actsBefore = Data().ActNumber(); });
    m_parts = {AddPart(), AddPart(), AddPart()};
  }
  void TearDown() override { m_kept.Check(true); }
  ~DisplayHistory() override { Display().SetOnRecord(nullptr); }

  Database& Data() { return m_doc.GetDatabase(); }
  DisplayState& Display() { return m_doc.GetDisplay(); }
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
    std::map<iterator, int> rows;
    std::map<std::int32_t, int> labels;
    std::uint64_t looks = 0;
    bool operator==(const Follower&) const = default;
  };
  static std::string PartText(const DisplayState::CadItem& part) {
    return std::to_string(part.shown) + std::to_string(part.mode);
  }
  void Follow(const std::string& before) {
    EXPECT_EQ(Display().TakeDirty(), std::exchange(m_called, false))
        << "told once, and only when there is something";
    for (const int part : Display().TakeChangedItems()) m_seen.parts[part] = PartText(Display().GetCadItem(part));
    for (const iterator set : Display().TakeChangedMsets()) m_seen.sets[set] = Display().IsMsetShown(set);
    for (const iterator set : Display().TakeChangedMsetRows()) m_seen.rows[set] = Display().IsMsetShown(set);
    for (const auto id : Display().TakeChangedLabels()) m_seen.labels[id] = Display().GetShowHide(kLabelCord, id);
    EXPECT_TRUE(m_seen.looks != Display().MeshLookRevision() || Looks() == m_looks) << "looks without a notice";
    m_seen.looks = Display().MeshLookRevision();
    m_looks = Looks();
    Follower all = m_seen;
    for (auto& [part, text] : all.parts) text = PartText(Display().GetCadItem(part));
    for (int part = 0; part < 8; ++part) {
      if (PartText(Display().GetCadItem(part)) != PartText({}))
        all.parts[part] = PartText(Display().GetCadItem(part));
    }
    for (iterator set = 1; set < 6; ++set) {
      if (Display().IsMsetShown(set) == 0 || all.sets.contains(set))
        all.sets[set] = all.rows[set] = Display().IsMsetShown(set);
    }
    for (std::int32_t id = 1; id < 4; ++id) {
      const int shown = Display().GetShowHide(kLabelCord, id);
      if (shown == 0 || all.labels.contains(id)) all.labels[id] = shown;
    }
    EXPECT_TRUE(all == m_seen) << "something changed from " << before << " to " << State() << " without a notice";
  }
  std::string Looks() {
    std::string text;
    for (std::uint32_t key = 1; key < 6; ++key) {
      const auto look = Display().GetMeshLook(key);
      text += " " + std::to_string(look.mode) + "/" + std::to_string(look.opacity) + "/" +
              std::to_string(look.addOns) + (look.shrink ? "s" : "");
    }
    return text;
  }
  /// All but what is shown and hidden.
  std::string Others() {
    std::string text = Looks();
    for (int part = 0; part < 8; ++part) {
      const auto& item = Display().GetCadItem(part);
      text += " " + std::to_string(item.mode) + " " + std::to_string(item.opacity);
    }
    return text + std::to_string(Display().GetMeshColorMode()) + std::to_string(Display().GetColorModelType());
  }
  /// What is hidden, sorted.
  Visibility Hidden() {
    Visibility hidden = Display().HiddenNow();
    std::sort(hidden.hiddenParts.begin(), hidden.hiddenParts.end());
    std::sort(hidden.hiddenMsets.begin(), hidden.hiddenMsets.end());
    return hidden;
  }
  static std::string Text(const Visibility& hidden) {
    std::string text;
    for (const int part : hidden.hiddenParts) text += std::to_string(part) + " ";
    for (const iterator set : hidden.hiddenMsets) text += "s" + std::to_string(set) + " ";
    return text;
  }
  /// Ends what the user does at one go, as the window does.
  void EndAct(bool isolates = false) {
    auto change = Display().TakeChange();
    if (change == nullptr) return;
    m_wasOfVisibility = change->IsOfVisibility();
    m_hiddenBefore = Text(change->HiddenBefore());
    if (isolates && Display().Isolation() == nullptr) {
      Display().SetIsolation(std::make_shared<const Visibility>(change->HiddenBefore()));
      change->isolationAfter = Display().Isolation();
    }
    Data().AddChange(L"display", std::move(change), m_actsBefore);
  }
  void Isolate(int part) {
    for (const int other : m_parts) Display().SetShowHide(other, 0);
    Display().SetShowHide(part, 1);
    EndAct(true);
  }
  std::string Shown() {
    std::string text;
    for (const int part : m_parts) text += Display().GetShowHide(part) != 0 ? "x" : "-";
    return text;
  }
  /// Everything that can be undone of the display, as text.
  std::string State() {
    std::string text;
    for (int item = 0; item < 8; ++item) {
      const auto& part = Display().GetCadItem(item);
      text += std::to_string(part.shown) + std::to_string(part.mode) + std::to_string(part.opacity) + " ";
    }
    for (iterator mset = 1; mset < 6; ++mset) text += std::to_string(Display().IsMsetShown(mset));
    text += Looks();
    for (std::int32_t id = 1; id < 4; ++id) text += std::to_string(Display().GetShowHide(kLabelCord, id));
    return text + " " + std::to_string(Display().GetMeshColorMode()) +
           std::to_string(Display().GetColorModelType()) + (Display().Isolation() != nullptr ? " isolated" : "");
  }

  WorkDocument m_doc;
  KeptDocument m_kept{m_doc.GetDatabase()};
  std::vector<int> m_parts;
  std::uint64_t m_actsBefore = 0;
  Follower m_seen;
  std::string m_looks = Looks();
  bool m_called = false;  // that something is to be drawn anew
  bool m_wasOfVisibility = false;
  std::string m_hiddenBefore;
};

TEST_F(DisplayHistory, MarksAreOnWhenAllOfThemAreOnForAll) {
  Display().SetAddOnInfo({1}, 1);
  EXPECT_EQ(Display().HasAddOnInfo({1}, 1), 1);
  EXPECT_EQ(Display().HasAddOnInfo({1}, 3), 0);
  Display().SetAddOnInfo({1}, 2);
  EXPECT_EQ(Display().HasAddOnInfo({1}, 3), 1);
  EXPECT_EQ(Display().HasAddOnInfo({1, 2}, 3), 0);
  EXPECT_EQ(Display().HasAddOnInfo({}, 1), 0);
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
      Display().ChangePrevShowHide();
    } else {
      const bool batch = random() % 3 != 0;
      if (batch) Display().BeginShowHide();
      for (unsigned steps = batch ? random() % 5 : 1; steps > 0; --steps) {
        const int part = 1 + static_cast<int>(random() % kParts);
        shown[part] = random() % 2 != 0;  // there and back in one command, too, or nothing at all
        Display().SetShowHide(part, shown[part] ? 1 : 0);
      }
      if (batch) Display().EndShowHide();
    }
    if (shown != before) previous.clear();
    for (const auto& [part, is] : shown) {
      if (before.at(part) != is) previous[part] = before.at(part);
      ASSERT_EQ(Display().GetShowHide(part) != 0, is) << "part " << part << ", command " << command;
    }
  }
}

TEST_F(DisplayHistory, AnyRunOfChangesGoesBackAndForthExactly) {
  Display().SetOnDirty([this] { m_called = true; });
  Display().TakeDirty();
  std::mt19937 random(3);
  const std::string first = State();
  std::vector<std::string> states{first};
  std::shared_ptr<const Visibility> isolated;
  for (int act = 0; act < 300; ++act) {
    const std::string before = State();
    const std::string hidden = Text(Hidden());
    const std::string others = Others();
    bool onlyVisibility = true;
    for (unsigned steps = 1 + random() % 4; steps > 0; --steps) {
      const auto key = 1 + static_cast<std::uint32_t>(random() % 4);
      const int part = 1 + static_cast<int>(random() % 5);
      const auto what = random() % 15;
      onlyVisibility = onlyVisibility && (what == 0 || what == 3 || what >= 13);
      switch (what) {
        case 0:
          Display().SetShowHide(part, random() % 2);
          break;
        case 14:
          if (Display().Isolation() == nullptr || Text(Hidden()) == Text(*isolated)) break;
          Display().LeaveIsolation();
          EXPECT_EQ(Text(Hidden()), Text(*isolated));
          EXPECT_EQ(Display().Isolation(), nullptr);
          break;
        case 1:
          Display().SetRenderMode(std::vector<int>{part}, random() % 4);
          break;
        case 2:
          Display().SetTransparency(std::vector<int>{part}, random() % 11 / 10.0);
          break;
        case 3:
          Display().ShowHideMset(iterator{key}, random() % 2);
          break;
        case 4:
          Display().SetAddOnInfo({key}, 1U << random() % 6);
          break;
        case 5:
          Display().DelAddOnInfo({key}, 1U << random() % 6);
          break;
        case 6:
          Display().SetAddOnInfoAll(1U << random() % 6);
          break;
        case 7:
          Display().SetTransparency(std::vector<std::uint32_t>{key}, static_cast<unsigned char>(random()));
          break;
        case 8:
          Display().SetMeshColorMode(random() % 5);
          break;
        case 9:
          Display().DelAddOnInfoAll(1U << random() % 6);
          break;
        case 10:
          Display().ToggleShrink({key, 1 + key % 4});
          break;
        case 11:
          Display().SetRenderMode(std::vector<std::uint32_t>{key}, random() % 7);
          break;
        case 12:
          Display().SetAllColorModelType(random() % 2);
          break;
        default:
          Display().SetShowHide(random() % 2, kLabelCord, static_cast<std::int32_t>(1 + random() % 3));
          break;
      }
    }
    const std::uint64_t acts = Data().ActNumber();
    const bool isolates = random() % 8 == 0 && Display().Isolation() == nullptr;
    m_hiddenBefore = hidden;
    m_wasOfVisibility = onlyVisibility;
    EndAct(isolates);
    EXPECT_EQ(m_hiddenBefore, hidden);
    EXPECT_TRUE(m_wasOfVisibility || !onlyVisibility) << act;
    EXPECT_TRUE(!m_wasOfVisibility || Others() == others) << act;
    if (Display().Isolation() != nullptr && isolated != Display().Isolation()) {
      isolated = Display().Isolation();
      EXPECT_EQ(Text(*isolated), hidden);
    }
    Follow(before);
    EXPECT_TRUE(State() == states.back() || Data().ActNumber() > acts) << "what changes something can be undone";
    if (Data().ActNumber() > acts) states.push_back(State());
  }
  std::size_t at = states.size() - 1;
  for (; Data().UndoTitle() == L"display"; --at) {
    EXPECT_EQ(State(), states[at]) << "undo " << at;
    Data().Undo();
    Follow(states[at]);
  }
  EXPECT_EQ(at, 0U);
  EXPECT_EQ(State(), first);
  while (Data().Redo() != 0) {
    EXPECT_EQ(State(), states[++at]) << "redo";
    Follow(states[at - 1]);
  }
  EXPECT_EQ(at, states.size() - 1);
}

}  // namespace
}  // namespace qd::test
