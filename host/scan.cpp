#include "host/scan.h"

namespace scanhost {

Scan::Scan(const Program& program, const Setup& setup)
    : figures_(setup.figures),
      signals_(program.signals),
      network_(program, setup.state_dir, signals_) {
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
  if (figures_ == nullptr) return run(moment);
  const std::uint64_t before = monotonic_ns();
  run(moment);
  figures_->scan.add(monotonic_ns() - before);
}

void Scan::run(const Moment& moment) {
  signals_.read(moment);
  network_.call_blocks(figures_ != nullptr ? &figures_->blocks : nullptr);
  if (outputs_) outputs_->write();
  if (trace_) trace_->record(moment);
}

}  // namespace scanhost
