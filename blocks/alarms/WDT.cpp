// WDT: watchdog over a signal that must keep changing.
//
//   Q   1 when Signal has not changed for Timeout, counted from the first call that found it
//       unchanged; 0 from the call on that sees a change
//
// Signal counts as an integer: 3.2 and 3.8 are the same. Timeout is in milliseconds but works in
// whole seconds: from 2000 up to 2999 it is 2 s, and below 1000 it is none at all: Q is 1 on the
// first unchanged call. There is no enable and nothing to acknowledge.
//
// A new instance takes the signal to have been 0: at 0 its time starts with the first call. Time
// while the controller is off counts, and so does a step of the clock, either way.
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  std::int32_t Signal;
  Number Timeout;
};
constexpr Field inputs[] = {
    FIELD(In, Signal, "the watched signal, its integer part"),
    FIELD(In, Timeout, "time allowed without a change, used in whole seconds", "ms"),
};

struct Out {
  std::int32_t Q;
};
constexpr Field outputs[] = {
    FIELD(Out, Q, "1 while the signal stands still"),
};

enum Phase : std::int32_t { kRearmed = 0, kTiming = 10 };
constexpr StateName states[] = {
    {kRearmed, "rearmed", "the signal has changed, the time does not run yet"},
    {kTiming, "timing", "the signal is unchanged, the time runs or is over"},
};

struct Memory {
  std::int32_t SignalOld = 0;
  std::int64_t TmpTime = zelgetTimeSec();
  std::int32_t TmpQ = 0;
  Phase State = kRearmed;
};
constexpr Field keys[] = {
    FIELD(Memory, SignalOld, "Signal of the previous call"),
    FIELD(Memory, TmpTime, "start of the time", kClockSec),
    FIELD(Memory, TmpQ, "Q"),
    FIELD(Memory, State, "position"),
};

std::int32_t expired(const In& in, const Memory& memory) {
  const std::int64_t seconds = elapsed(second_stamp(), static_cast<std::uint32_t>(memory.TmpTime));
  return seconds >= to_int32((in.Timeout / 1000.0).value) ? 1 : 0;
}

Out step(const In& in, Memory& memory) {
  if (in.Signal != memory.SignalOld) {
    memory.SignalOld = in.Signal;
    memory.State = kRearmed;
    memory.TmpQ = 0;
    return {memory.TmpQ};
  }
  switch (memory.State) {
    case kRearmed:
      memory.TmpTime = zelgetTimeSec();
      memory.State = kTiming;
      memory.TmpQ = expired(in, memory);
      break;
    case kTiming:
      memory.TmpQ = expired(in, memory);
      break;
    default:  // not a state of this block: holds until the signal changes
      break;
  }
  return {memory.TmpQ};
}

constexpr Block<In, Out, Memory> block = {
    .family = "alarms",
    .title = "watchdog over a signal that must keep changing",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .states = states,
    .step = step,
};

}  // namespace

BLOCK(WDT, block)
