#include "host/scan.h"

namespace scanhost {

Scan::Scan(const Program& program, const Setup& setup)
    : signals_(program.signals), network_(program, setup.state_dir, signals_) {
  if (!setup.trace.empty()) {
    std::vector<const double*> sources;
    for (const TraceSpec::Column& column : program.trace.columns)
      sources.push_back(network_.value(column.from));
    trace_.emplace(program.trace, sources, setup.trace, setup.flush);
  }
  if (setup.write_outputs) {
    std::vector<const double*> sources;
    for (const OutputSpec& output : program.outputs) sources.push_back(network_.value(output.from));
    outputs_.emplace(program.outputs, sources);
  }
}

void Scan::step(const Moment& moment) {
  signals_.read(moment);
  network_.call_blocks();
  if (outputs_) outputs_->write();
  if (trace_) trace_->record(moment);
}

}  // namespace scanhost
