// scanhost simulate: the same program on a simulated clock, as fast as it goes.
#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "host/clock.h"
#include "host/commands/commands.h"
#include "host/library.h"
#include "host/progress.h"
#include "host/scan.h"
#include "host/state_dir.h"
#include "host/stop.h"

namespace scanhost {

std::optional<Time> recorded_start(const Program& program) {
  std::optional<Time> start;
  for (const SignalSpec& signal : program.signals)
    if (signal.series.by_clock) {
      const Time first(signal.series.times.front());
      start = start ? std::min(*start, first) : first;
    }
  return start;
}

namespace {

// Without --start: where the recorded values begin; the present second if none have a date.
Time default_start(const Program& program) {
  return recorded_start(program).value_or(std::chrono::floor<std::chrono::seconds>(wall_clock()));
}

// Without --for and --cycles: to the last recorded value; 0 if none are recorded.
std::uint64_t scans_to_end(const Program& program, Time start) {
  Duration end{-1};
  for (const SignalSpec& signal : program.signals)
    if (!signal.series.times.empty())
      end = std::max(end, signal.series.by_clock
                              ? signal.series.times.back() - start.time_since_epoch()
                              : signal.series.times.back());
  return end < Duration::zero() ? 0 : static_cast<std::uint64_t>(end / program.scan) + 1;
}

// Times have four digits for the year.
constexpr Time kLastDay = std::chrono::sys_days(std::chrono::year(9999) / 12 / 31);

std::string trace_path(const SimulateOptions& options, const Program& program) {
  if (!options.trace.empty()) return options.trace;
  return program.trace.path.empty() ? "-" : program.trace.path;
}

}  // namespace

int simulate(const SimulateOptions& options) {
  Program program = read_program(options.program);
  const Time start = options.start ? *options.start : default_start(program);
  const bool limited = options.cycles || options.length;
  const std::uint64_t scans =
      limited ? scans_of(options, program.scan) : scans_to_end(program, start);
  if (scans == 0)
    throw Rejection(
        "scanhost: the program has no recorded values that would end the simulation; "
        "say how long: --for 1h or --cycles 1000\n");
  const Duration room = std::max(kLastDay - start, Duration::zero());
  if (scans - 1 > static_cast<std::uint64_t>(room / program.scan))
    throw Rejection(
        "scanhost: the simulation would go on beyond the year 9999; give a shorter --for or "
        "--cycles\n");
  load_functions(program, options.library);
  const std::string trace = trace_path(options, program);
  check_files(program, options, trace);
  const StateDir state = options.state.empty() ? StateDir::temporary() : StateDir(options.state);

  catch_stop_signals();
  std::uint64_t done = 0;
  bool failed = false;
  std::optional<Figures> figures;
  if (options.stats || !options.stats_json.empty()) figures.emplace(program);
  {
    Scan scan(program, {.state_dir = state.path(),
                        .write_outputs = options.write_outputs,
                        .trace = trace,
                        .flush = Trace::Flush::kWhenFull,
                        .figures = figures ? &*figures : nullptr});
    Progress progress(scans);
    for (Duration elapsed{}; done < scans && !stop_requested(); ++done, elapsed += program.scan) {
      set_simulated_clock(start + elapsed);
      scan.step({.now = start + elapsed, .elapsed = elapsed});
      progress.show(done);
    }
    failed = scan.failed();
  }
  std::fprintf(trace == "-" ? stderr : stdout, "%s: %" PRIu64 " scans of %s in simulated time\n",
               program.name.c_str(), done, format_duration(program.scan).c_str());
  if (figures) report_figures(*figures, program, options, trace == "-" ? stderr : stdout);
  return failed ? 1 : 0;
}

}  // namespace scanhost
