#include "platform/qt/QtKeys.h"

#include <QKeyEvent>
#include <algorithm>
#include <array>
#include <utility>

#include "platform/Message.h"

namespace qd {

namespace {

constexpr std::array<std::pair<int, int>, 18> kKeys{{{Qt::Key_Up, kKeyUp},
                                                     {Qt::Key_Down, kKeyDown},
                                                     {Qt::Key_Left, kKeyLeft},
                                                     {Qt::Key_Right, kKeyRight},
                                                     {Qt::Key_Home, kKeyHome},
                                                     {Qt::Key_End, kKeyEnd},
                                                     {Qt::Key_PageUp, kKeyPageUp},
                                                     {Qt::Key_PageDown, kKeyPageDown},
                                                     {Qt::Key_Escape, kKeyEscape},
                                                     {Qt::Key_Tab, kKeyTab},
                                                     {Qt::Key_Backtab, kKeyTab},
                                                     {Qt::Key_Return, kKeyEnter},
                                                     {Qt::Key_Enter, kKeyEnter},
                                                     {Qt::Key_Delete, kKeyDelete},
                                                     {Qt::Key_Space, kKeySpace},
                                                     {Qt::Key_F2, kKeyF2},
                                                     {Qt::Key_F3, kKeyF3},
                                                     {Qt::Key_Select, kKeySpace}}};

}  // namespace

unsigned FlagsOf(Qt::KeyboardModifiers modifiers) {
  return (modifiers.testFlag(Qt::ShiftModifier) ? kMouseShift : 0U) |
         (modifiers.testFlag(Qt::ControlModifier) ? kMouseControl : 0U) |
         (modifiers.testFlag(Qt::AltModifier) ? kMouseAlt : 0U);
}

int KeyOf(const QKeyEvent& event) {
  const int key = event.key();
  if (key >= Qt::Key_A && key <= Qt::Key_Z && event.modifiers().testFlag(Qt::ControlModifier)) return key;
  if (event.modifiers().testFlag(Qt::KeypadModifier)) {
    switch (key) {
      case Qt::Key_Plus:
        return kKeyAdd;
      case Qt::Key_Minus:
        return kKeySubtract;
      case Qt::Key_Asterisk:
        return kKeyMultiply;
      default:
        break;
    }
  }
  const auto* known =
      std::find_if(kKeys.begin(), kKeys.end(), [key](const auto& pair) { return pair.first == key; });
  return known != kKeys.end() ? known->second : 0;
}

bool IsTyping(const QKeyEvent& event) {
  constexpr auto kCommands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
  // Characters of a third keyboard level come with Ctrl and Alt both.
  const auto commands = event.modifiers() & kCommands;
  const bool plain = !commands || commands == (Qt::ControlModifier | Qt::AltModifier);
  return plain && !event.text().isEmpty() && event.text().front().isPrint();
}

}  // namespace qd
