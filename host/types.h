// [types.NAME]: blocks of other shared objects with the same calling convention.
#pragma once

#include <map>
#include <string>

#include "host/program.h"
#include "host/section.h"

namespace scanhost {

// Reads the tables, by name; what does not fit is reported. A library that stands beside the
// program gets its path; any other name without a slash is left to the system's loader.
std::map<std::string, BlockType> read_types(Section& top, const std::string& program,
                                            Problems& problems);

}  // namespace scanhost
