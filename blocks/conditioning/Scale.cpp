// Scale: maps an input range linearly onto an output range and limits the result to it.
//
//   Q         the scaled value, limited to OutMin..OutMax; 0 while disabled
//   InRange   1 while the scaled value lies inside the limits, both included; 0 where it was
//             limited or is not a number, and while disabled
//
// Only an Enable of exactly 1.0 enables. InMin maps to OutMin and InMax to OutMax; a falling
// characteristic needs InMin above InMax, because OutMin above OutMax gives OutMin for every input.
// With InMin equal to InMax the slope is infinite: Q is a limit, or not a number for an input of
// just InMin and for OutMin equal to OutMax.
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  ExactFlag Enable;
  Number InSignal;
  Number InMin;
  Number InMax;
  Number OutMin;
  Number OutMax;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "scales while exactly 1.0"),
    FIELD(In, InSignal, "value to scale"),
    FIELD(In, InMin, "input that gives OutMin"),
    FIELD(In, InMax, "input that gives OutMax"),
    FIELD(In, OutMin, "output at InMin, lower limit of Q"),
    FIELD(In, OutMax, "output at InMax, upper limit of Q"),
};

struct Out {
  Number Q;
  Flag InRange;
};
constexpr Field outputs[] = {
    FIELD(Out, Q, "scaled and limited value, 0 while disabled"),
    FIELD(Out, InRange, "1 while the scaled value lies inside the limits"),
};

Out step(const In& in) {
  if (!in.Enable) return {};
  const Number slope = (in.OutMax - in.OutMin) / (in.InMax - in.InMin);
  Number y = slope * (in.InSignal - in.InMin) + in.OutMin;
  if (in.OutMin <= y && y <= in.OutMax) return {.Q = y, .InRange = {true}};
  if (in.OutMax < y) y = in.OutMax;
  if (y < in.OutMin) y = in.OutMin;
  return {.Q = y, .InRange = {}};
}

constexpr Block<In, Out> block = {
    .family = "conditioning",
    .title = "linear scaling with limits",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(Scale, block)
