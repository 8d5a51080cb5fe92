// Pseudo-random call sequences of a block: pins, clock and damage to the state file, the same on
// every machine. Some sequences are calm, as in a plant; others have any double on any pin.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "tests/support/rig.h"

// SplitMix64.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  std::uint64_t bits();
  std::uint32_t below(std::uint32_t limit) {
    return static_cast<std::uint32_t>((bits() >> 32) % limit);
  }
  bool one_in(std::uint32_t count) { return below(count) == 0; }

 private:
  std::uint64_t state_;
};

class Sequence {
 public:
  static constexpr int kSequences = 24;  // of each block, of four tempers
  static constexpr int kCalm = 4;        // the multiples are calm, and damage nothing
  static constexpr int kCalls = 48;
  static constexpr const char* kTimeZone = "CET-1CEST,M3.5.0,M10.5.0/3";

  Sequence(Rig& rig, int number);

  // Pins and clock of the next call.
  void prepare();
  // Now and then, a damaged state file for the next call.
  void damage();
  // What `free` and `df` print.
  std::string probe_output();

 private:
  double value(std::size_t input);

  Rig& rig_;
  Random random_;
  const bool wild_;
  const bool damaging_;
  std::uint32_t styles_[Rig::kPins] = {};
  std::int64_t pace_;  // usual microseconds from call to call
};

// The output of the probes, in the working directory: the RAM disk of this program's own open.
void write_probes(const Rig& rig, const std::string& output);

// Goes through all sequences of a block; `call` makes each call.
void run_sequences(const scanblocks::BlockInfo& block, const std::function<void(Rig&)>& call);
