// One scan: read the signals, call the blocks, write the outputs, record the trace.
#pragma once

#include <optional>
#include <string>

#include "host/figures.h"
#include "host/moment.h"
#include "host/network.h"
#include "host/outputs.h"
#include "host/program.h"
#include "host/signals.h"
#include "host/trace.h"

namespace scanhost {

class Scan {
 public:
  struct Setup {
    std::string state_dir{};
    bool write_outputs = true;
    std::string trace{};  // path; empty: none
    Trace::Flush flush = Trace::Flush::kEachRow;
    Figures* figures = nullptr;  // gets the times of scans and blocks
  };

  // `program` outlives the scan; its functions are loaded. All memory is taken here.
  Scan(const Program& program, const Setup& setup);

  void step(const Moment& moment);

  // Where the value stands, as after the last step.
  const double* value(const Source& source) const { return network_.value(source); }

  bool failed() const { return trace_ && trace_->failed(); }

 private:
  void run(const Moment& moment);

  Figures* figures_;
  Signals signals_;
  Network network_;
  std::optional<Trace> trace_;
  std::optional<Outputs> outputs_;  // the last member: the safe values come before all else
};

}  // namespace scanhost
