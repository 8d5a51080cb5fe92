// The trace: a CSV file with a header and one row per interval.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "host/moment.h"
#include "host/program.h"

namespace scanhost {

class Trace {
 public:
  enum class Flush { kEachRow, kWhenFull };

  // `sources[i]` is where the value of column i stands; the path "-" is standard output.
  // Throws Failure if the file cannot be made.
  Trace(const TraceSpec& spec, const std::vector<const double*>& sources, const std::string& path,
        Flush flush);
  ~Trace();
  Trace(const Trace&) = delete;
  Trace& operator=(const Trace&) = delete;

  // Adds a row if the interval has passed. An error is reported once and ends the trace.
  void record(const Moment& moment);

  bool failed() const { return failed_; }

 private:
  void flush();
  void cut_row(std::size_t done);

  std::vector<const double*> sources_;
  std::string path_;
  Duration every_;
  Duration next_{};
  Flush mode_;
  int file_ = -1;
  bool failed_ = false;
  std::string buffer_;
  std::size_t row_size_;  // at most
};

}  // namespace scanhost
