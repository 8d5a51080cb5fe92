// A block instance whose call is disturbed, and the verdict on what is left of its state.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "tests/support/sequence.h"

using State = std::optional<std::string>;  // the bytes of the file; none: there is no file

// How the file looks before the call.
enum class Shape {
  kUsual,     // as the block writes it
  kShort,     // cut somewhere
  kLong,      // with a few unknown and repeated records behind
  kVeryLong,  // with many of them
  kAbsent,
};
inline constexpr Shape kShapes[] = {Shape::kUsual, Shape::kShort, Shape::kLong, Shape::kVeryLong,
                                    Shape::kAbsent};

enum class Verdict {
  kBefore,
  kAfter,
  kEmpty,  // an empty file where there was none
  kLost,
};

class Subject {
 public:
  Subject(const scanblocks::BlockInfo& block, unsigned seed);

  // Random pins and memory, and what an undisturbed call makes of them.
  void arrange(Shape shape);
  // Everything as before the call, the outputs with a value that no block writes.
  void reset();
  void call() { rig.call(); }

  State state() const;
  bool outputs_set() const;
  bool outputs_right() const;
  // What counts is what the file says to a next call, where it is not the same bytes.
  Verdict verdict();

  Rig rig;
  Sequence sequence;  // of calls as in a plant
  State before, after;

 private:
  std::uint32_t draw(std::size_t below) { return random_.below(static_cast<std::uint32_t>(below)); }

  std::string next_call(const State& state);
  void put(Rig& to, const State& state);

  Rig reader_;
  Random random_;
  std::string outputs_;
  std::int64_t clock_ = 0;
};

// Runs `work` in a process of its own; returns its result, or 256 plus the signal that ended it.
inline constexpr int kSkipped = 77;
int in_child(const std::function<int()>& work);

class StatefulBlock : public testing::TestWithParam<const scanblocks::BlockInfo*> {};
std::vector<const scanblocks::BlockInfo*> stateful_blocks();
#define FOR_STATEFUL_BLOCKS(Suite) \
  INSTANTIATE_TEST_SUITE_P(Catalogue, Suite, testing::ValuesIn(stateful_blocks()), block_name)
