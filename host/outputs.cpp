#include "host/outputs.h"

#include <cmath>
#include <cstring>
#include <filesystem>

#include "host/number.h"

namespace scanhost {

Outputs::Outputs(const std::vector<OutputSpec>& specs, const std::vector<const double*>& sources) {
  outputs_.reserve(specs.size());
  for (std::size_t i = 0; i < specs.size(); ++i) {
    // A directory on a RAM disk is gone after a restart. What fails shows when the file is written.
    std::error_code shows_later;
    std::filesystem::create_directories(std::filesystem::path(specs[i].path).parent_path(),
                                        shows_later);
    const std::string name = "output " + specs[i].name + ": ";
    outputs_.push_back({.spec = &specs[i],
                        .source = sources[i],
                        .file = TextFile(specs[i].path, TextFile::Mode::kWrite),
                        .value_reporter = Reporter(name + specs[i].from_text),
                        .file_reporter = Reporter(name + specs[i].path),
                        .written = {}});
  }
}

Outputs::~Outputs() {
  if (!started_) return;
  for (Output& output : outputs_)
    if (output.spec->safe) write_value(output, *output.spec->safe);
}

void Outputs::write() {
  started_ = true;
  for (Output& output : outputs_) {
    if (std::isfinite(*output.source)) {
      output.value_reporter.works("the value is finite again");
      write_value(output, *output.source);
    } else if (output.spec->safe) {
      output.value_reporter.fails("the value is not finite", "the safe value is written");
      write_value(output, *output.spec->safe);
    } else {
      output.value_reporter.fails("the value is not finite", "the last value stays");
    }
  }
}

void Outputs::write_value(Output& output, double value) {
  if (output.written == value) return;
  char text[kNumberSize + 1];
  std::size_t length = format_number(value, text);
  text[length++] = '\n';
  const int error = output.file.write({text, length});
  if (error != 0) {
    output.written.reset();
    return output.file_reporter.fails(std::strerror(error), "tried again at every scan");
  }
  output.written = value;
  output.file_reporter.works("is written again");
}

}  // namespace scanhost
