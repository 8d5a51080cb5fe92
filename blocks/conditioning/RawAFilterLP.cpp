// RawAFilterLP: holds spikes of a raw value back.
//
//   Q   the input while it moves by less than JumpLimit; the last good value during a hold; 0 while
//       disabled
//
// A jump of JumpLimit or more from the last good value starts a hold of more than 5 whole seconds.
// While it runs, Q stays whatever the input does. After it, an input back within JumpLimit of the
// last good value is accepted; otherwise the next hold begins, so that a step of the
// signal that stays never comes through. A JumpLimit of 0 or below accepts nothing.
//
// A new instance takes its first input as good, and while passing, a good value of exactly 0 counts
// as none: any input is accepted then, also right after the signal was at 0. A call while disabled
// keeps state, good value and hold, but Q is 0 and stays 0 until the hold ends, also when the block
// is enabled before. The clock counts wall time, so a restart of the controller mostly ends a hold;
// a clock that was set back prolongs it.
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  Number InSignal;
  Number JumpLimit;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "runs the filter"),
    FIELD(In, InSignal, "the raw value"),
    FIELD(In, JumpLimit, "smallest change that counts as a spike"),
};

struct Out {
  Number Q;
};
constexpr Field outputs[] = {
    FIELD(Out, Q, "filtered value, 0 while disabled"),
};

enum State : std::int32_t { kPassing = 0, kHolding = 1 };
constexpr StateName states[] = {
    {kPassing, "passing", "the output follows the input"},
    {kHolding, "holding", "the output holds the last good value"},
};

struct Memory {
  Number InSignalOld;
  Number TmpQ;
  std::uint32_t TmpTime = second_stamp();
  State state = kPassing;
};
constexpr Field keys[] = {
    FIELD(Memory, InSignalOld, "last good value"),
    FIELD(Memory, TmpQ, "Q of the previous call"),
    FIELD(Memory, TmpTime, "start of the hold", kClockSec),
    FIELD(Memory, state, "position"),
};

constexpr std::int32_t kHoldSeconds = 5;

void first_call(const In& in, Memory& memory) { memory.InSignalOld = in.InSignal; }

bool is_small_change(const In& in, const Memory& memory) {
  const float jump = abs(to_single((in.InSignal - memory.InSignalOld).value));
  return in.JumpLimit > to_double(jump);
}

Out step(const In& in, Memory& memory) {
  Number q = 0.0;
  if (in.Enable) {
    q = memory.TmpQ;  // during a hold and in a state that this block has not written
    switch (memory.state) {
      case kPassing:
        if (memory.InSignalOld == 0.0 || is_small_change(in, memory)) {
          memory.InSignalOld = in.InSignal;
        } else {
          memory.TmpTime = second_stamp();
          memory.state = kHolding;
        }
        q = memory.InSignalOld;
        break;
      case kHolding:
        if (difference(second_stamp(), memory.TmpTime) <= kHoldSeconds) break;
        if (is_small_change(in, memory)) {
          memory.InSignalOld = in.InSignal;
          memory.state = kPassing;
        } else {
          memory.TmpTime = second_stamp();
        }
        q = memory.InSignalOld;
        break;
    }
  }
  memory.TmpQ = q;
  return {.Q = q};
}

constexpr Block<In, Out, Memory> block = {
    .family = "conditioning",
    .title = "spike filter with a hold of five seconds",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .states = states,
    .step = step,
    .first_call = first_call,
};

}  // namespace

BLOCK(RawAFilterLP, block)
