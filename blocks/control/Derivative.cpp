// Derivative: change of a signal from call to call, over the age of the instance.
//
//   Q   (old - new) / t; 0 while disabled
//
// old is the signal of the previous call, enabled or not; it is 0 for a new instance. A rising
// signal gives a negative Q. t is the age of the instance in whole seconds, not the time between
// two calls, so Q shrinks as the instance ages. In the first second t is 0: Q is infinite, or not a
// number where the signal has not changed. The age is counted in 32-bit milliseconds: it rises for
// 24.8 days, falls for as long, and starts again.
#include "blocks/control/age.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  Number Signal;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "runs the differentiator"),
    FIELD(In, Signal, "the signal"),
};

struct Out {
  Number Q;
};
constexpr Field outputs[] = {
    FIELD(Out, Q, "old minus new signal over the age, 0 while disabled"),
};

struct Memory {
  Number pidQ;
  Number SignalOld;
  std::uint32_t TmpTimeOld = millisecond_stamp();
};
constexpr Field keys[] = {
    WRITE_ONLY(Memory, pidQ, "Q of this call"),
    FIELD(Memory, SignalOld, "Signal of the previous call, enabled or not"),
    FIELD(Memory, TmpTimeOld, "first call of the instance", kClockMs),
};

Out step(const In& in, Memory& memory) {
  Out out;
  if (in.Enable) out.Q = (memory.SignalOld - in.Signal) / age_in_seconds(memory.TmpTimeOld);
  memory.SignalOld = in.Signal;
  memory.pidQ = out.Q;
  return out;
}

constexpr Block<In, Out, Memory> block = {
    .family = "control",
    .title = "change of a signal over the age of the instance",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .step = step,
};

}  // namespace

BLOCK(Derivative, block)
