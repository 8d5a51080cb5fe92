// What comes from outside: the value of every signal, and whether it can be read, once per scan.
#pragma once

#include <vector>

#include "host/moment.h"
#include "host/program.h"
#include "host/reporter.h"
#include "host/text_file.h"

namespace scanhost {

class Signals {
 public:
  explicit Signals(const std::vector<SignalSpec>& specs);

  // Reads all signals. One that cannot be read takes its on_error value, or keeps the last one.
  void read(const Moment& moment);

  // Stay valid as long as this object does.
  const double* value(std::size_t index) const { return &signals_[index].value; }
  const double* ok(std::size_t index) const { return &signals_[index].ok; }

 private:
  struct Signal {
    const SignalSpec* spec;
    TextFile file;
    Reporter reporter;
    std::size_t next_row = 0;  // of the series
    double value = 0.0;
    double ok = 0.0;
  };
  static void read_file(Signal& signal);
  static void read_series(Signal& signal, const Moment& moment);
  static void accept(Signal& signal, double value);
  static void reject(Signal& signal, const char* reason);

  std::vector<Signal> signals_;
};

}  // namespace scanhost
