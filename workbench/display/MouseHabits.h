#pragma once

#include <cstdint>

namespace qd::workbench {

/// What dragging the mouse over the view does.
enum class MouseAct { None, Turn, Pan, Zoom, Roll, Rectangle };

/// Whose customs the mouse follows.
enum class MouseHabits { Own, Gmsh, ParaView, FreeCad };

/// Buttons that are down and keys that are held with them; bits.
enum MouseInput : std::uint8_t {
  kLeftDown = 1,
  kMiddleDown = 2,
  kRightDown = 4,
  kShiftHeld = 8,
  kControlHeld = 16,
  kAltHeld = 32
};

/// What a drag with buttons and keys does. A button without keys that say otherwise does what it does alone.
MouseAct ActOf(MouseHabits habits, unsigned input);

}  // namespace qd::workbench
