// PID: three-term controller with limited output.
//
//   Q   the sum of the terms, limited to OutMin..OutMax; 0 while disabled
//   V   1 while the sum lies strictly between OutMin and OutMax; 0 at a limit and while disabled
//
// With e = SetPoint - ProcessValue (0 inside a dead band of 0.01) and the age t of the instance in
// whole seconds, the sum is Kp*e + Ki*I + Kd*D/t + Bias, where
//
//   I   grows by (e_old + e)/2 * t on every enabled call: the trapezoid is weighted by the age of
//       the instance, not by the time between two calls. It has no limit, also while Q has one.
//   D   is e_old - e: old minus new.
//
// In the first second of an instance t is 0 and D/t is infinite, or not a number if the error has
// not changed; so is Q, unless a limit holds it. The age is counted in 32-bit milliseconds: it
// rises for 24.8 days, falls for as long, and starts again. While disabled, e_old, I and the start
// of the age are kept.
#include "blocks/control/age.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  Number ProcessValue;
  Number SetPoint;
  Number Kp;
  Number Ki;
  Number Kd;
  Number Bias;
  Number OutMin;
  Number OutMax;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "runs the controller"),     FIELD(In, ProcessValue, "measured value"),
    FIELD(In, SetPoint, "desired value"),         FIELD(In, Kp, "gain of the error"),
    FIELD(In, Ki, "gain of the integral", "1/s"), FIELD(In, Kd, "gain of the error's change", "s"),
    FIELD(In, Bias, "added to the sum"),          FIELD(In, OutMin, "lower limit of Q"),
    FIELD(In, OutMax, "upper limit of Q"),
};

struct Out {
  Number Q;
  Flag V;
};
constexpr Field outputs[] = {
    FIELD(Out, Q, "controller output after limiting, 0 while disabled"),
    FIELD(Out, V, "1 while the sum lies strictly inside the limits"),
};

struct Memory {
  Number pidQ;
  Flag pidV;
  Number ErrorOld;
  std::uint32_t TmpTimeOld = millisecond_stamp();
  Number IntegralOld;
};
constexpr Field keys[] = {
    WRITE_ONLY(Memory, pidQ, "Q of this call"),
    WRITE_ONLY(Memory, pidV, "V of this call"),
    FIELD(Memory, ErrorOld, "error of the last enabled call, after the dead band"),
    FIELD(Memory, TmpTimeOld, "first call of the instance", kClockMs),
    FIELD(Memory, IntegralOld, "integral of the error over the age"),
};

constexpr Number kDeadBand = 0.01;

Out limit(Number sum, const In& in) {
  if (in.OutMin < sum && sum < in.OutMax) return {.Q = sum, .V = {true}};
  if (sum < in.OutMin) return {.Q = in.OutMin, .V = {}};
  if (sum > in.OutMax) return {.Q = in.OutMax, .V = {}};
  return {.Q = sum, .V = {}};  // on a limit, or not a number
}

Out step(const In& in, Memory& memory) {
  Out out;
  if (in.Enable) {
    Number error = in.SetPoint - in.ProcessValue;
    if (abs(error) < kDeadBand) error = 0.0;
    const Number change = memory.ErrorOld - error;
    const Number age = age_in_seconds(memory.TmpTimeOld);
    memory.IntegralOld = memory.IntegralOld + (memory.ErrorOld + error) * 0.5 * age;
    memory.ErrorOld = error;
    out = limit(in.Kp * error + in.Ki * memory.IntegralOld + change / age * in.Kd + in.Bias, in);
  }
  memory.pidQ = out.Q;
  memory.pidV = out.V;
  return out;
}

constexpr Block<In, Out, Memory> block = {
    .family = "control",
    .title = "three-term controller with limited output",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .step = step,
};

}  // namespace

BLOCK(PID, block)
