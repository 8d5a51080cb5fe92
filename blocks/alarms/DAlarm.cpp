// DAlarm: latched alarm with an on-delay over a digital input.
//
//   AlmQ   raised when InSignal is 1 on this and the previous call and DelaySec or more have passed
//          since its rising edge
//
// The call of the rising edge never raises the alarm, so a delay of 0 or less takes two calls. A
// falling edge before the alarm ends the delay. InSignal other than 0 and 1 is no level: no edge
// and no timing. alarm.h tells how the alarm latches and is acknowledged.
//
// The delay counts from the stored stamp, whatever the state:
//   - With InSignal still 1 after an acknowledgement the alarm comes back DelaySec later.
//   - With InSignal at 1 already before the block is enabled, it counts from the last rising edge
//     or acknowledgement of an enabled call, or from 1970: the alarm may come at once.
//   - Time while the controller is off counts, and so does a step of the clock, either way.
#include "blocks/alarms/alarm.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  std::int32_t InSignal;
  std::int32_t DelaySec;
  std::int32_t Reset;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, kEnableHelp),
    FIELD(In, InSignal, "the supervised input, 0 or 1"),
    FIELD(In, DelaySec, "on-delay, whole seconds", "s"),
    FIELD(In, Reset, kResetHelp),
};

struct Out {
  std::int32_t AlmQ;
};
constexpr Field outputs[] = {
    FIELD(Out, AlmQ, kAlarmHelp),
};

enum Phase : std::int32_t { kIdle = 0, kTiming = 2, kAlarm = 10 };
constexpr StateName states[] = {
    {kIdle, "idle", "no alarm, the delay does not run or was acknowledged"},
    {kTiming, "timing", "InSignal has risen, the delay runs"},
    {kAlarm, "alarm", "latched"},
};

struct Memory {
  std::int32_t ResetOld = 0;
  std::uint32_t TmpTime = 0;
  std::int32_t InSignalOld = 0;
  std::int32_t AlmQ = 0;
  Phase State = kIdle;
};
constexpr Field keys[] = {
    FIELD(Memory, ResetOld, kResetOldHelp),
    FIELD(Memory, TmpTime, "last rising edge of InSignal or acknowledgement", kClockSec),
    FIELD(Memory, InSignalOld, kSignalOldHelp),
    FIELD(Memory, AlmQ, kAlarmHelp),
    FIELD(Memory, State, kStateHelp),
};

void evaluate(const In& in, Memory& memory) {
  if (latched(memory)) return;
  if (rising(memory.InSignalOld, in.InSignal)) {
    memory.TmpTime = second_stamp();
    memory.State = kTiming;
  } else if (stays(1, memory.InSignalOld, in.InSignal)) {
    if (in.DelaySec <= elapsed(second_stamp(), memory.TmpTime)) raise(memory);
  } else if (falling(memory.InSignalOld, in.InSignal)) {
    clear(memory);
  }
}

Out step(const In& in, Memory& memory) {
  supervise(in, memory, evaluate);
  memory.InSignalOld = in.InSignal;
  return {memory.AlmQ};
}

constexpr Block<In, Out, Memory> block = {
    .family = "alarms",
    .title = "latched alarm with on-delay over a digital input",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .states = states,
    .step = step,
};

}  // namespace

BLOCK(DAlarm, block)
