// AWatch: latched alarm over an analog value that stays in a band for too long.
//
//   AlmQ   raised when InSignal has stayed in LowLimit..HighLimit, both included, for more than
//          DelayMs, seen by every call
//
// The call that finds the value in the band starts the delay and never raises the alarm, so a delay
// of 0 or less takes two calls. Exactly DelayMs is not yet enough. Leaving the band before the
// alarm ends the delay. A NaN is outside, and everything is outside of crossed limits. alarm.h
// tells how the alarm latches and is acknowledged; with the value still in the band the call after
// the acknowledgement starts a new delay.
//
// Time while the controller is off counts, and so does a step of the clock, either way. Delays are
// exact up to 2^31 - 1 ms (24.8 days).
#include "blocks/alarms/alarm.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  Number InSignal;
  Number LowLimit;
  Number HighLimit;
  std::int32_t DelayMs;
  std::int32_t Reset;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, kEnableHelp),
    FIELD(In, InSignal, "the supervised value"),
    FIELD(In, LowLimit, "lower end of the band, included"),
    FIELD(In, HighLimit, "upper end of the band, included"),
    FIELD(In, DelayMs, "time in the band that is still allowed", "ms"),
    FIELD(In, Reset, kResetHelp),
};

struct Out {
  std::int32_t AlmQ;
};
constexpr Field outputs[] = {
    FIELD(Out, AlmQ, kAlarmHelp),
};

enum Phase : std::int32_t { kIdle = 0, kTiming = 1, kAlarm = 10 };
constexpr StateName states[] = {
    {kIdle, "idle", "outside of the band, or acknowledged on the previous call"},
    {kTiming, "timing", "in the band, the delay runs"},
    {kAlarm, "alarm", "latched"},
};

struct Memory {
  std::int32_t ResetOld = 0;
  std::uint32_t TmpTime = 0;
  std::int32_t AlmQ = 0;
  Phase State = kIdle;
};
constexpr Field keys[] = {
    FIELD(Memory, ResetOld, kResetOldHelp),
    FIELD(Memory, TmpTime, "entry into the band; after an acknowledgement its second, not used",
          kClockMs),
    FIELD(Memory, AlmQ, kAlarmHelp),
    FIELD(Memory, State, kStateHelp),
};

void evaluate(const In& in, Memory& memory) {
  if (latched(memory)) return;
  if (!(in.LowLimit <= in.InSignal && in.InSignal <= in.HighLimit)) {
    memory.State = kIdle;
  } else if (memory.State == kIdle) {
    memory.TmpTime = millisecond_stamp();
    memory.State = kTiming;
  } else if (in.DelayMs < elapsed(millisecond_stamp(), memory.TmpTime)) {
    raise(memory);
  }
}

Out step(const In& in, Memory& memory) {
  supervise(in, memory, evaluate);
  return {memory.AlmQ};
}

constexpr Block<In, Out, Memory> block = {
    .family = "alarms",
    .title = "latched alarm over an analog value that stays in a band",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .states = states,
    .step = step,
};

}  // namespace

BLOCK(AWatch, block)
