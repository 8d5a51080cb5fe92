// Pseudo-random call sequences of a block: pins, clock and damage to the state file, the same on
// every machine. Some sequences are calm, as in a plant; others have any double on any pin.
#pragma once

#include <cstdint>
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
  static constexpr int kCalls = 48;

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
