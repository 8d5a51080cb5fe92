// scanhost replay: drives a program with the signals of a trace, and compares what its blocks make
// of them with what was recorded.
#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>

#include "host/clock.h"
#include "host/commands/commands.h"
#include "host/expectations.h"
#include "host/library.h"
#include "host/scan.h"
#include "host/state_dir.h"
#include "host/stop.h"
#include "host/wiring.h"

namespace scanhost {
namespace {

struct Column {
  std::string name;
  Source from;
  std::vector<double> values;
};

struct Recording {
  std::vector<Time> rows;
  std::vector<Column> pins;      // of blocks
  std::vector<std::string> own;  // signals that are not recorded
};

// Reads the trace; recorded signals of the program become recorded values of that trace.
Recording read_recording(const std::string& path, Program& program) {
  Problems problems(path);
  Recording recording;
  std::vector<bool> recorded(program.signals.size());
  std::vector<std::pair<std::size_t, Series>> health;  // columns "Signal.ok"
  for (const std::string& name : read_columns(path, problems)) {
    const auto source = Wiring(program, problems).resolve(name, {1, 0}, program.group, true);
    if (!source) continue;
    Series series = read_series(path, name, {1, 0}, problems);
    if (!problems.empty()) break;
    if (!series.by_clock)
      throw Rejection(path + ":2: the times are no dates; give a trace that scanhost wrote\n");
    if (recording.rows.empty())
      for (const Duration time : series.times) recording.rows.emplace_back(time);
    if (source->kind == Source::Kind::kSignal) {
      SignalSpec& signal = program.signals[source->index];
      signal.kind = SignalSpec::Kind::kSeries;
      signal.path = path;
      signal.series = std::move(series);
      recorded[source->index] = true;
    } else if (source->kind == Source::Kind::kSignalOk) {
      health.emplace_back(source->index, std::move(series));
    } else {
      recording.pins.push_back({name, *source, std::move(series.values)});
    }
  }
  if (!problems.empty()) throw Rejection(problems.text());
  if (recording.pins.empty())
    throw Rejection(path + ":1: no column is a pin of a block; record some: \"Block.Pin\"\n");
  // Where a signal could not be read it cannot be read now either; it keeps or replaces its value
  // as it did then.
  for (const auto& [index, series] : health)
    for (std::size_t row = 0; recorded[index] && row < series.values.size(); ++row)
      if (series.values[row] == 0)
        program.signals[index].series.values[row] = std::numeric_limits<double>::quiet_NaN();
  for (std::size_t i = 0; i < recorded.size(); ++i)
    if (!recorded[i] && program.signals[i].kind != SignalSpec::Kind::kConstant)
      recording.own.push_back(program.signals[i].name);
  return recording;
}

bool same(double found, double recorded, double tolerance) {
  if (std::isnan(found) || std::isnan(recorded)) return std::isnan(found) == std::isnan(recorded);
  return found == recorded || std::fabs(found - recorded) <= tolerance;
}

std::string name_of(const Program& program, const Source& source) {
  if (source.kind == Source::Kind::kSignal) return program.signals[source.index].name;
  if (source.kind == Source::Kind::kSignalOk) return program.signals[source.index].name + ".ok";
  const BlockSpec& block = program.blocks[source.index];
  for (const PinName& pin :
       source.kind == Source::Kind::kOutput ? block.type->outputs : block.type->inputs)
    if (pin.pin == source.pin) return block.name + "." + pin.name;
  return block.name;
}

class Comparison {
 public:
  Comparison(const Program& program, const Recording& recording, const Scan& scan, double tolerance)
      : program_(program), recording_(recording), scan_(scan), tolerance_(tolerance) {}

  // True if all pins are as recorded in the row; otherwise the first difference is shown.
  bool agrees(std::size_t row, std::uint64_t scan, const std::string& path) const {
    bool found = false;
    for (const Column& column : recording_.pins) {
      const double value = *scan_.value(column.from);
      if (same(value, column.values[row], tolerance_)) continue;
      if (!found) {
        char time[kTimeSize];
        const std::string when(time, format_time(recording_.rows[row], time));
        std::fprintf(stderr, "%s: first difference in scan %" PRIu64 ", %s\n", path.c_str(), scan,
                     when.c_str());
      }
      std::fprintf(stderr, "  %s is %s; recorded %s\n", column.name.c_str(),
                   value_text(program_, column.from, value).c_str(),
                   value_text(program_, column.from, column.values[row]).c_str());
      if (!found) show_upstream(column.from.index, row);
      found = true;
    }
    return !found;
  }

 private:
  // The block and all that its inputs come from, nearest first.
  void show_upstream(std::size_t block, std::size_t row) const {
    std::vector<std::size_t> order = {block};
    for (std::size_t i = 0; i < order.size(); ++i) {
      const BlockSpec& spec = program_.blocks[order[i]];
      std::fprintf(stderr, "    %s %s, line %u\n", spec.type->name.c_str(), spec.name.c_str(),
                   spec.at.line);
      for (const BlockSpec::Wire& wire : spec.wires) {
        const Source input{Source::Kind::kInput, order[i], wire.pin};
        std::fprintf(stderr, "      %s = %s from %s%s\n",
                     name_of(program_, input).substr(spec.name.size() + 1).c_str(),
                     value_text(program_, input, *scan_.value(input)).c_str(),
                     name_of(program_, wire.from).c_str(), recorded(wire.from, row).c_str());
        const bool is_block = wire.from.kind == Source::Kind::kOutput;
        if (is_block && std::ranges::find(order, wire.from.index) == order.end())
          order.push_back(wire.from.index);
      }
    }
  }

  std::string recorded(const Source& source, std::size_t row) const {
    for (const Column& column : recording_.pins)
      if (column.from.kind == source.kind && column.from.index == source.index &&
          column.from.pin == source.pin)
        return same(*scan_.value(source), column.values[row], tolerance_) ? ", as recorded"
                                                                          : ", other than recorded";
    return "";
  }

  const Program& program_;
  const Recording& recording_;
  const Scan& scan_;
  double tolerance_;
};

// The state that a replay begins with is a copy: the recorded plant may still run.
void copy_state(const std::string& from, const StateDir& to) {
  std::error_code error;
  for (auto entry = std::filesystem::directory_iterator(from, error);
       !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
    if (entry->path().extension() == ".dat")
      std::filesystem::copy_file(
          entry->path(), std::filesystem::path(to.path()) / entry->path().filename(), error);
  if (error) throw Failure(from + ": " + error.message());
}

}  // namespace

int replay(const ReplayOptions& options) {
  Program program = read_program(options.program);
  const Recording recording = read_recording(options.recording, program);
  for (const std::string& name : recording.own)
    std::fprintf(stderr, "signal %s is not in the trace: it takes its own source\n", name.c_str());
  load_functions(program, options.library);
  const StateDir state = StateDir::temporary();
  if (!options.state.empty()) copy_state(options.state, state);
  catch_stop_signals();
  Scan scan(program, {.state_dir = state.path(), .write_outputs = false});
  const Comparison comparison(program, recording, scan, options.tolerance);

  std::uint64_t scans = 0;
  const auto step = [&](Time now) {
    set_simulated_clock(now);
    scan.step({.now = now, .elapsed = now - recording.rows.front()});
    ++scans;
  };
  // The scans take place at the times of the rows, and in between where not every scan is recorded.
  const bool every_scan = program.trace.every <= program.scan;
  if (!every_scan)
    std::fprintf(stderr, "rows are %s apart, scans %s: what signals did in between is not known\n",
                 format_duration(program.trace.every).c_str(),
                 format_duration(program.scan).c_str());
  for (std::size_t row = 0; row < recording.rows.size(); ++row) {
    if (stop_requested()) throw Failure("stopped before the end of the trace");
    if (row > 0 && !every_scan) {
      const Duration gap = recording.rows[row] - recording.rows[row - 1];
      const auto between = (gap + program.scan / 2) / program.scan;
      for (std::int64_t i = 1; i < between; ++i) step(recording.rows[row - 1] + i * program.scan);
    }
    step(recording.rows[row]);
    if (!comparison.agrees(row, scans, options.recording)) return 1;
  }
  std::printf("%s: %" PRIu64 " scans, %zu rows with %zu pins as recorded\n", program.name.c_str(),
              scans, recording.rows.size(), recording.pins.size());
  return 0;
}

}  // namespace scanhost
