#pragma once

#include <cstddef>
#include <string>

#include "qd_wrt/c/Failure.h"

namespace qd::c {

/// Copies a text with its zero for a program, as qd_node_title says.
qd_status CopyOut(const std::string& bytes, char* text, std::size_t capacity, std::size_t* needed);

}  // namespace qd::c
