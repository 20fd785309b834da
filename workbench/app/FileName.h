#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace qd::workbench {

/// A name of a file as a text, from the bytes by which the system knows it. Bytes that are no UTF-8 become halves
/// of surrogate pairs, U+DC80 to U+DCFF, which are shown as characters that cannot be read, so that every name
/// comes back from its text.
QString NameFromBytes(std::string_view bytes);
/// The bytes of a name: what NameFromBytes was given, or the UTF-8 of any other text.
std::string NameToBytes(const QString& name);

}  // namespace qd::workbench
