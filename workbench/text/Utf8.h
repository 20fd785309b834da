#pragma once

#include <string>

namespace qd::workbench {

/// UTF-8 for a text of any elements; what is no character becomes U+FFFD.
std::string ToUtf8(const std::wstring& text);
/// The text of UTF-8; what is none becomes U+FFFD.
std::wstring FromUtf8(const std::string& bytes);
/// Bytes of a file whose encoding nobody has told: UTF-8 where they are that as a whole, else Windows-1252, in
/// which old programs wrote.
std::wstring FromBytes(const std::string& bytes);
/// At most so many bytes from the beginning of a text, cut between characters where it is UTF-8.
std::string Beginning(const std::string& text, std::size_t bytes);

}  // namespace qd::workbench
