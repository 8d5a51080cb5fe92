// Recorded values: one column of a CSV file over time.
//
// The first line names the columns. The first column is the time: ISO 8601 in every row, rising, or
// seconds from the start of the scan in every row. Values hold until the next row. An empty field
// is no value: the signal cannot be read from there on until the next value.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/problems.h"
#include "host/time.h"

namespace scanhost {

struct Series {
  bool by_clock = false;        // times are wall-clock times; otherwise since the start of the scan
  std::vector<Duration> times;  // since 1970 or since the start
  std::vector<double> values;   // NaN for an empty field
};

// The names of the columns beside the time. A file that cannot be read is a problem of itself.
std::vector<std::string> read_columns(const std::string& path, Problems& problems);

// Reads the column named `column`; an empty name takes the one column beside the time. Problems
// with the file itself are reported at `at` of the program, those inside it at their own lines.
Series read_series(const std::string& path, const std::string& column, Position at,
                   Problems& problems);

}  // namespace scanhost
