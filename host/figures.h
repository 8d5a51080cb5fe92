// How long scans and blocks take, and how late scans start. All memory is taken at the beginning.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/program.h"

namespace scanhost {

// Times in nanoseconds, counted in bins of a sixteenth of an octave: a percentile is at most 6.25 %
// above the truth. Mean and maximum are exact. Times from 18 minutes on share the last bin.
class Histogram {
 public:
  void add(std::uint64_t ns);
  void add(const Histogram& other);

  std::uint64_t count() const { return count_; }
  std::uint64_t max() const { return max_; }
  double mean() const;
  // The time that `share` of all were not above: 0.5, 0.99; 0 where there are none.
  std::uint64_t percentile(double share) const;

 private:
  static constexpr unsigned kFine = 4;  // 2^4 bins for each octave
  static constexpr unsigned kOctaves = 40;
  static std::size_t bin(std::uint64_t ns);
  static std::uint64_t top(std::size_t bin);  // the largest time of the bin

  std::array<std::uint32_t, (kOctaves - kFine + 1) << kFine> bins_{};
  std::uint64_t count_ = 0;
  std::uint64_t sum_ = 0;
  std::uint64_t max_ = 0;
};

struct Figures {
  explicit Figures(const Program& program) : blocks(program.blocks.size()) {}

  Histogram scan;                 // signals, blocks, outputs and trace
  Histogram jitter;               // from the deadline to the start of the scan; in real time only
  std::vector<Histogram> blocks;  // as in the program
  std::uint64_t overruns = 0;
  std::uint64_t skipped = 0;
};

std::uint64_t monotonic_ns();

std::string figures_table(const Figures& figures, const Program& program);
std::string figures_json(const Figures& figures, const Program& program);

}  // namespace scanhost
