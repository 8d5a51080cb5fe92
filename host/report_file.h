// Files that a command writes beside its scans: figures, reports, traces.
#pragma once

#include <string>

#include "host/program.h"

namespace scanhost {

// True if `path` is the program, or recorded values of one of its signals.
bool is_recorded(const Program& program, const std::string& path);

// Throws Rejection if `path` is one of these, or a live file that a signal reads.
void keep_sources(const Program& program, const std::string& path);

// Both throw Failure if the file cannot be written. The first is for before the scan: what a long
// run has found should not be lost to a wrong path. What is in the file stays until the second.
void check_report(const Program& program, const std::string& path);
void write_report(const std::string& path, const std::string& text);

}  // namespace scanhost
