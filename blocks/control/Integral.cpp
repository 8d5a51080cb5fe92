// Integral: integral of a signal, weighted by the age of the instance.
//
//   Q   the accumulated integral plus Bias; 0 while disabled, whatever Bias is
//
// Every enabled call adds (old + new)/2 * t, where old is the signal of the previous call and t is
// the age of the instance in whole seconds, not the time between two calls: in the first second
// nothing is added. The age is counted in 32-bit milliseconds: it rises for 24.8 days, falls for as
// long, and starts again. The integral has no limit. It is stored with six decimals, and what one
// call adds below that is lost.
//
// While disabled the integral is held, but the old signal still follows the input.
#include "blocks/control/age.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  Number Signal;
  Number Bias;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "runs the integrator"),
    FIELD(In, Signal, "the signal to integrate"),
    FIELD(In, Bias, "added to Q, not to the integral"),
};

struct Out {
  Number Q;
};
constexpr Field outputs[] = {
    FIELD(Out, Q, "integral plus Bias, 0 while disabled"),
};

struct Memory {
  Number pidQ;
  Number SignalOld;
  std::uint32_t TmpTimeOld = millisecond_stamp();
  Number IntegralOld;
};
constexpr Field keys[] = {
    WRITE_ONLY(Memory, pidQ, "Q of this call"),
    FIELD(Memory, SignalOld, "Signal of the previous call, enabled or not"),
    FIELD(Memory, TmpTimeOld, "first call of the instance", kClockMs),
    FIELD(Memory, IntegralOld, "integral of the signal over the age"),
};

Out step(const In& in, Memory& memory) {
  Out out;
  if (in.Enable) {
    const Number age = age_in_seconds(memory.TmpTimeOld);
    memory.IntegralOld = memory.IntegralOld + (memory.SignalOld + in.Signal) * 0.5 * age;
    out.Q = memory.IntegralOld + in.Bias;
  }
  memory.SignalOld = in.Signal;
  memory.pidQ = out.Q;
  return out;
}

constexpr Block<In, Out, Memory> block = {
    .family = "control",
    .title = "integral of a signal, weighted by the age of the instance",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .step = step,
};

}  // namespace

BLOCK(Integral, block)
