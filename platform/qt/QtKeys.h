#pragma once

#include <Qt>

class QKeyEvent;

namespace qd {

/// Keyboard modifiers as MouseFlags.
unsigned FlagsOf(Qt::KeyboardModifiers modifiers);
/// The number that the controls know a key by; letters only while Ctrl is held. 0 for a key that no control acts
/// on.
int KeyOf(const QKeyEvent& event);
/// Whether the key types a character.
bool IsTyping(const QKeyEvent& event);

}  // namespace qd
