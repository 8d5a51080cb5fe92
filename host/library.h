// Finds the functions of the blocks in their shared libraries.
#pragma once

#include <string>

#include "host/program.h"

namespace scanhost {

// Sets the function of every type of the program. The library of the catalogue's blocks is `path`,
// or if that is empty the first of: libscanblocks.so next to the executable, in ../lib beside it,
// where the system's loader finds it. Libraries stay loaded. Throws Failure, and
// Rejection where a type that the program declares is not in its library.
void load_functions(Program& program, const std::string& path);

}  // namespace scanhost
