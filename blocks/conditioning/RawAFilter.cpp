// RawAFilter: passes a raw value on only when it has moved by an amount in its own units.
//
//   Q   the last value passed on; 0 while disabled
//
// The input is passed on when it lies at least DeadBand away from the output of the previous call;
// a change of exactly the dead band passes, and a dead band of 0 or below passes everything. The
// output of a new instance and of a disabled call is 0. After a pause, therefore, an
// input near 0 is held back for one call, and Q is the last value passed on before; from the next
// call on the input is compared with that value. An input that is not a number never passes.
//
// The block counts in single precision: Q has about seven digits, 0.1 comes out as 0.100000001.
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  float InSignal;
  float DeadBand;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "runs the filter"),
    FIELD(In, InSignal, "the raw value"),
    FIELD(In, DeadBand, "smallest change that is passed on"),
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
    FIELD(Memory, TmpQ, "Q of the previous call, the reference of the dead band"),
};

Out step(const In& in, Memory& memory) {
  Out out;
  if (in.Enable) {
    if (in.DeadBand <= abs(in.InSignal - memory.TmpQ)) memory.InSignalOld = in.InSignal;
    out.Q = memory.InSignalOld;
  }
  memory.TmpQ = out.Q;
  return out;
}

constexpr Block<In, Out, Memory> block = {
    .family = "conditioning",
    .title = "dead band in the units of the signal",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .step = step,
};

}  // namespace

BLOCK(RawAFilter, block)
