// What a program expects of itself: [test] and [[expect]] of a control program.
#pragma once

#include <string>

#include "host/program.h"
#include "host/section.h"

namespace scanhost {

// Reads both tables into `program`, whose signals and blocks are known; reports what is wrong.
void read_expectations(Section& top, const std::string& group, Program& program,
                       Problems& problems);

// A value of a pin as a person reads it: "2 (running)" for a state, otherwise the number.
std::string value_text(const Program& program, const Source& source, double value);

}  // namespace scanhost
