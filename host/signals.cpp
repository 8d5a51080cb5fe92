#include "host/signals.h"

#include <cmath>
#include <cstring>

#include "host/number.h"

namespace scanhost {

Signals::Signals(const std::vector<SignalSpec>& specs) {
  signals_.reserve(specs.size());
  for (const SignalSpec& spec : specs) {
    signals_.push_back({.spec = &spec,
                        .file = TextFile(spec.path, TextFile::Mode::kRead),
                        .reporter = Reporter("signal " + spec.name + ": " + spec.path)});
    if (spec.kind == SignalSpec::Kind::kConstant) accept(signals_.back(), spec.value);
  }
}

void Signals::read(const Moment& moment) {
  for (Signal& signal : signals_) {
    if (signal.spec->kind == SignalSpec::Kind::kFile) read_file(signal);
    if (signal.spec->kind == SignalSpec::Kind::kSeries) read_series(signal, moment);
  }
}

void Signals::read_file(Signal& signal) {
  char buffer[4096];
  std::string_view text;
  const int error = signal.file.read(buffer, sizeof buffer, text);
  if (error != 0) return reject(signal, std::strerror(error));
  if (const std::optional<double> value = find_number(text)) return accept(signal, *value);
  reject(signal, text.empty() ? "the file is empty" : "there is no number in it");
}

void Signals::read_series(Signal& signal, const Moment& moment) {
  const Series& series = signal.spec->series;
  const Duration time = series.by_clock ? moment.now.time_since_epoch() : moment.elapsed;
  std::size_t& next = signal.next_row;
  while (next < series.times.size() && series.times[next] <= time) ++next;
  while (next > 0 && series.times[next - 1] > time) --next;  // the clock was set back
  if (next == 0) return reject(signal, "no value recorded yet");
  const double value = series.values[next - 1];
  if (std::isnan(value)) return reject(signal, "no value recorded for this time");
  accept(signal, value);
}

void Signals::accept(Signal& signal, double value) {
  signal.value = value;
  signal.ok = 1.0;
  signal.reporter.works("can be read again");
}

void Signals::reject(Signal& signal, const char* reason) {
  const std::optional<double> replacement = signal.spec->on_error;
  signal.value = replacement.value_or(signal.value);
  signal.ok = 0.0;
  signal.reporter.fails(reason,
                        replacement ? "the value of on_error is taken" : "the last value is kept");
}

}  // namespace scanhost
