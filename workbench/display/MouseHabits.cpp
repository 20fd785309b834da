#include "workbench/display/MouseHabits.h"

#include <algorithm>
#include <iterator>

namespace qd::workbench {

namespace {

struct Habit {
  MouseHabits habits;
  unsigned input;
  MouseAct act;
};

constexpr Habit kTable[] = {
    {MouseHabits::Own, kLeftDown, MouseAct::Turn},
    {MouseHabits::Own, kLeftDown | kShiftHeld, MouseAct::Pan},
    {MouseHabits::Own, kLeftDown | kAltHeld, MouseAct::Roll},
    {MouseHabits::Own, kMiddleDown, MouseAct::Pan},
    {MouseHabits::Own, kMiddleDown | kShiftHeld, MouseAct::Rectangle},
    {MouseHabits::Own, kRightDown, MouseAct::Zoom},

    {MouseHabits::Gmsh, kLeftDown, MouseAct::Turn},
    {MouseHabits::Gmsh, kLeftDown | kShiftHeld, MouseAct::Zoom},
    {MouseHabits::Gmsh, kLeftDown | kControlHeld, MouseAct::Rectangle},
    {MouseHabits::Gmsh, kLeftDown | kAltHeld, MouseAct::Pan},
    {MouseHabits::Gmsh, kMiddleDown, MouseAct::Zoom},
    {MouseHabits::Gmsh, kRightDown, MouseAct::Pan},

    {MouseHabits::ParaView, kLeftDown, MouseAct::Turn},
    {MouseHabits::ParaView, kLeftDown | kShiftHeld, MouseAct::Roll},
    {MouseHabits::ParaView, kLeftDown | kControlHeld, MouseAct::Zoom},
    {MouseHabits::ParaView, kMiddleDown, MouseAct::Pan},
    {MouseHabits::ParaView, kMiddleDown | kShiftHeld, MouseAct::Turn},
    {MouseHabits::ParaView, kMiddleDown | kControlHeld, MouseAct::Turn},
    {MouseHabits::ParaView, kRightDown, MouseAct::Zoom},
    {MouseHabits::ParaView, kRightDown | kShiftHeld, MouseAct::Pan},

    {MouseHabits::FreeCad, kMiddleDown, MouseAct::Pan},
    {MouseHabits::FreeCad, kMiddleDown | kLeftDown, MouseAct::Turn},
    {MouseHabits::FreeCad, kMiddleDown | kRightDown, MouseAct::Turn},
    {MouseHabits::FreeCad, kRightDown | kControlHeld, MouseAct::Pan},
    {MouseHabits::FreeCad, kRightDown | kShiftHeld, MouseAct::Turn},
    {MouseHabits::FreeCad, kRightDown | kControlHeld | kShiftHeld, MouseAct::Zoom},
};

}  // namespace

MouseAct ActOf(MouseHabits habits, unsigned input) {
  constexpr unsigned kButtons = kLeftDown | kMiddleDown | kRightDown;
  for (const unsigned mask : {~0U, kButtons}) {
    const auto* found = std::find_if(std::begin(kTable), std::end(kTable), [&](const Habit& habit) {
      return habit.habits == habits && habit.input == (input & mask);
    });
    if (found != std::end(kTable)) return found->act;
  }
  return MouseAct::None;
}

}  // namespace qd::workbench
