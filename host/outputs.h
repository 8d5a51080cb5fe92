// What goes outside: every output is written when its value has changed, and takes its safe value
// at the end.
#pragma once

#include <optional>
#include <vector>

#include "host/program.h"
#include "host/reporter.h"
#include "host/text_file.h"

namespace scanhost {

class Outputs {
 public:
  // `sources[i]` is where the value of output i stands.
  Outputs(const std::vector<OutputSpec>& specs, const std::vector<const double*>& sources);
  // Writes the safe values, whatever ends the scan.
  ~Outputs();
  Outputs(const Outputs&) = delete;
  Outputs& operator=(const Outputs&) = delete;

  // Infinity and not-a-number are not written: the safe value is, or nothing where there is none.
  // What cannot be written is tried again at the next scan.
  void write();

 private:
  struct Output {
    const OutputSpec* spec;
    const double* source;
    TextFile file;
    Reporter value_reporter;
    Reporter file_reporter;
    std::optional<double> written;
  };
  static void write_value(Output& output, double value);

  std::vector<Output> outputs_;
  bool started_ = false;
};

}  // namespace scanhost
