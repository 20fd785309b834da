#pragma once

#include <string>

#include "workbench/model/Database.h"

namespace qd::workbench {

/// Fills a database with the example: two assemblies of parts with materials, the mesh sets of the solver deck
/// that is given as text, and a coordinate system. Two acts. Returns 1, or 0 when one of them failed and is taken
/// back.
int BuildExample(Database& database, const std::string& deck);

}  // namespace qd::workbench
