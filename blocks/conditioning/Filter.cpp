// Filter: passes a signal on only when it has moved by a percentage of its span.
//
//   Q   the last value passed on; 0 while disabled
//
// The input is passed on when it lies at least DeadBandPct percent of |InMax - InMin| away from
// the last value passed on; a change of exactly the dead band passes. That value is 0 for a new
// instance, so small first inputs are held back, and it is kept while disabled. A span of 0 passes
// every change; an input that is not a number never passes.
//
// The block counts in single precision: Q has about seven digits, 0.1 comes out as 0.100000001.
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  float InSignal;
  float DeadBandPct;
  float InMin;
  float InMax;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "runs the filter"),
    FIELD(In, InSignal, "the signal"),
    FIELD(In, DeadBandPct, "smallest change that is passed on, of the span", "%"),
    FIELD(In, InMin, "one end of the span"),
    FIELD(In, InMax, "other end of the span"),
};

struct Out {
  float Q = 0.0f;
};
constexpr Field outputs[] = {
    FIELD(Out, Q, "last value passed on, 0 while disabled"),
};

struct Memory {
  float InSignalOld = 0.0f;
  float TmpQ = 0.0f;
};
constexpr Field keys[] = {
    FIELD(Memory, InSignalOld, "last value passed on"),
    WRITE_ONLY(Memory, TmpQ, "Q of this call"),
};

Out step(const In& in, Memory& memory) {
  Out out;
  if (in.Enable) {
    const double change = abs(in.InSignal - memory.InSignalOld);
    const double span = abs(in.InMax - in.InMin);
    const float percent = to_single(change / span * 100.0);  // not a number for 0 / 0
    if (in.DeadBandPct <= percent) memory.InSignalOld = in.InSignal;
    out.Q = memory.InSignalOld;
  }
  memory.TmpQ = out.Q;
  return out;
}

constexpr Block<In, Out, Memory> block = {
    .family = "conditioning",
    .title = "dead band in percent of the span",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .step = step,
};

}  // namespace

BLOCK(Filter, block)
