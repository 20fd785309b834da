// Undo of what is shown and how, beside the records; leaving an isolation.

#include <gtest/gtest.h>

#include <random>

#include "host/CTransaction.h"
#include "support/CheckedStore.h"
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
  /// Ends what the user does at one go, as the window does.
  void EndAct(bool isolates = false) {
    auto change = Display().TakeChange();
    if (change == nullptr) return;
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
    for (std::uint32_t key = 1; key < 5; ++key) {
      const auto look = Display().GetMeshLook(key);
      text += " " + std::to_string(look.mode) + "/" + std::to_string(look.opacity) + "/" +
              std::to_string(look.addOns) + (look.shrink ? "s" : "");
    }
    for (std::int32_t id = 1; id < 4; ++id) text += std::to_string(Display().GetShowHide(kLabelCord, id));
    return text + " " + std::to_string(Display().GetMeshColorMode()) +
           std::to_string(Display().GetColorModelType()) + (Display().Isolation() != nullptr ? " isolated" : "");
  }

  WorkDocument m_doc;
  CheckedStore m_checked{m_doc.GetDatabase()};
  std::vector<int> m_parts;
  std::uint64_t m_actsBefore = 0;
};

TEST_F(DisplayHistory, AnActOfTheUserIsOneEntry) {
  for (const int part : m_parts) Display().SetShowHide(part, 0);
  Display().SetTransparency(std::vector<int>{m_parts[0]}, 0.5);
  EndAct();
  EXPECT_EQ(Data().UndoTitle(), L"display");
  EXPECT_EQ(Data().Undo(), 1);
  EXPECT_EQ(Shown(), "xxx");
  EXPECT_EQ(Display().GetCadItem(m_parts[0]).opacity, 1);
  EXPECT_EQ(Data().UndoTitle(), L"add");
  EXPECT_EQ(Data().Redo(), 1);
  EXPECT_EQ(Shown(), "---");
  EXPECT_EQ(Display().TakeChange(), nullptr) << "undoing is no act";
}

TEST_F(DisplayHistory, WhatBelongsToACommittedActIsUndoneWithIt) {
  m_parts.push_back(AddPart());
  Display().SetShowHide(m_parts[0], 0);
  EndAct();
  EXPECT_EQ(Data().UndoTitle(), L"display") << "the part came before";
  Data().Undo();
  Display().SetShowHide(m_parts[1], 0);
  m_parts.push_back(AddPart());
  EndAct();
  EXPECT_EQ(Data().UndoTitle(), L"add");
  Data().Undo();
  EXPECT_EQ(Display().GetShowHide(m_parts[1]), 1);
  EXPECT_EQ(Data().GetGeomPool().Count(), 4U);
}

TEST_F(DisplayHistory, AnIsolationIsLeftWithTheFormerVisibility) {
  Display().SetShowHide(m_parts[1], 0);
  EndAct();
  Isolate(m_parts[2]);
  EXPECT_EQ(Shown(), "--x");
  Isolate(m_parts[1]);  // within the isolation: the former visibility stays the first one
  m_parts.push_back(AddPart());
  Display().SetShowHide(m_parts[3], 0);
  EndAct();
  Display().LeaveIsolation();
  EndAct();
  EXPECT_EQ(Shown(), "x-xx") << "what came since is shown";
  EXPECT_EQ(Display().Isolation(), nullptr);
  Data().Undo();
  EXPECT_EQ(Shown(), "-x--");
  ASSERT_NE(Display().Isolation(), nullptr) << "after undo it can be left again";
  Display().LeaveIsolation();
  EndAct();
  EXPECT_EQ(Shown(), "x-xx");
}

TEST_F(DisplayHistory, AnyRunOfChangesGoesBackAndForthExactly) {
  std::mt19937 random(3);
  const std::string first = State();
  std::vector<std::string> states{first};
  for (int act = 0; act < 200; ++act) {
    for (unsigned steps = 1 + random() % 4; steps > 0; --steps) {
      const auto key = 1 + static_cast<std::uint32_t>(random() % 4);
      const int part = 1 + static_cast<int>(random() % 5);
      switch (random() % 14) {
        case 0:
          Display().SetShowHide(part, random() % 2);
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
    EndAct();
    EXPECT_TRUE(State() == states.back() || Data().ActNumber() > acts) << "what changes something can be undone";
    if (Data().ActNumber() > acts) states.push_back(State());
  }
  std::size_t at = states.size() - 1;
  for (; Data().UndoTitle() == L"display"; --at) {
    EXPECT_EQ(State(), states[at]) << "undo " << at;
    Data().Undo();
  }
  EXPECT_EQ(at, 0U);
  EXPECT_EQ(State(), first);
  while (Data().Redo() != 0) EXPECT_EQ(State(), states[++at]) << "redo";
  EXPECT_EQ(at, states.size() - 1);
}

}  // namespace
}  // namespace qd::test
