// scanhost run: scans in real time until stopped.
#include <malloc.h>

#include <cinttypes>
#include <cstdio>

#include "host/commands/commands.h"
#include "host/library.h"
#include "host/realtime.h"
#include "host/report_file.h"
#include "host/scan.h"
#include "host/state_dir.h"
#include "host/stop.h"

namespace scanhost {

std::uint64_t scans_of(const ScanOptions& options, Duration period) {
  if (options.cycles) return *options.cycles;
  if (!options.length) return 0;
  return static_cast<std::uint64_t>((*options.length + period - Duration(1)) / period);
}

void report_figures(const Figures& figures, const Program& program, const ScanOptions& options,
                    std::FILE* stream) {
  if (options.stats) std::fputs(figures_table(figures, program).c_str(), stream);
  if (!options.stats_json.empty()) write_report(options.stats_json, figures_json(figures, program));
}

void check_files(const Program& program, const ScanOptions& options, const std::string& trace) {
  if (!trace.empty() && trace != "-") keep_sources(program, trace);
  if (!options.stats_json.empty()) check_report(program, options.stats_json);
}

int run(const ScanOptions& options) {
  Program program = read_program(options.program);
  if (!options.state.empty()) program.state_dir = options.state;
  load_functions(program, options.library);
  const std::string trace = options.trace.empty() ? program.trace.path : options.trace;
  check_files(program, options, trace);
  const StateDir state(program.state_dir);

  Notifier notifier;
  if (notifier.watchdog() > Notifier::Nanoseconds::zero() && program.scan * 2 > notifier.watchdog())
    throw Rejection(program.path + ": a scan of " + format_duration(program.scan) +
                    ", and a watchdog that waits for less than two; set WatchdogSec to more\n");

  catch_stop_signals();
  ScanCount count;
  std::optional<Figures> figures;
  if (options.stats || !options.stats_json.empty()) figures.emplace(program);
  Figures* const kept = figures ? &*figures : nullptr;
  bool failed = false;
  {
    Scan scan(program, {.state_dir = state.path(), .trace = trace, .figures = kept});
    malloc_trim(0);  // gives back what reading the program took
    enter_real_time(program);
    count = scan_in_real_time(scan, program.scan, {options.cycles, options.length}, notifier, kept);
    failed = scan.failed();
  }
  std::fprintf(trace == "-" ? stderr : stdout,
               "%s: %" PRIu64 " scans of %s, %" PRIu64 " overruns, %" PRIu64 " deadlines skipped\n",
               program.name.c_str(), count.scans, format_duration(program.scan).c_str(),
               count.overruns, count.skipped);
  if (figures) report_figures(*figures, program, options, trace == "-" ? stderr : stdout);
  return failed ? 1 : 0;
}

}  // namespace scanhost
