// Files that a command writes beside its scans: figures, reports, traces.
#pragma once

#include <string>

#include "host/program.h"

namespace scanhost {

// True if both paths lead to one regular file.
bool is_same_file(const std::string& one, const std::string& other);

// Throws Rejection if `path` is the program or a file that one of its signals reads.
void keep_sources(const Program& program, const std::string& path);

// Both throw Failure if the file cannot be written. The first is for before the scan: what a long
// run has found should not be lost to a wrong path. What is in the file stays until the second.
void check_report(const Program& program, const std::string& path);
void write_report(const std::string& path, const std::string& text);

}  // namespace scanhost
