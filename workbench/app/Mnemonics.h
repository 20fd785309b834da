#pragma once

class QMenu;

namespace qd::workbench {

/// Gives each entry of a menu a letter of its own by which a key chooses it, as far as there are letters: the one
/// that its text marks, where no entry above has it, else another of its text, else one behind it in brackets, as
/// is the custom in languages without letters. Texts may change at any time, so this is done when a menu opens.
void GiveMnemonics(QMenu& menu);

}  // namespace qd::workbench
