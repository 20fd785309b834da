#pragma once

#include <functional>
#include <string>

#include "host/Types.h"
#include "workbench/store/DocumentMark.h"
#include "workbench/store/Sqlite.h"

namespace qd::workbench {

// What stands in a document beside its records, and the pages that all of it stands in. Each returns what is wrong
// in a few words of the user's language, empty for nothing.

/// Hands over the last number that each pool has given out.
std::string ReadNumbers(Connection& file, const std::function<void(iterator last)>& onLast);
/// The mark, of which there is one.
std::string ReadMark(Connection& file, DocumentMark& mark);
/// What windows have left: few entries of bounded size.
std::string CheckViews(Connection& file);
/// Whether each page of the file belongs to one thing only: what is written to one would overwrite another. Only
/// for a file whose tables were read to their end, since the library follows them here without a bound.
std::string CheckPages(Connection& file);

}  // namespace qd::workbench
