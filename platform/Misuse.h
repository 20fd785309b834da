#pragma once

namespace qd {

/// Ends a program that is put together wrongly, with a sentence where programs of the system say such things: it
/// is told at once, rather than failing somewhere else later.
[[noreturn]] void Misused(const char* how);

}  // namespace qd
