// DWatch: latched alarm over a digital input that rests or switches too much.
//
//   AlmQ   raised, according to Mode, when
//          0 off-time      InSignal has stayed at 0 for WatchSec or more
//          1 on-time       InSignal has stayed at 1 for WatchSec or more
//          2 cycle count   a period of WatchSec ends with a count of CycleLimit or more edges
//
//          and for any other Mode never
//
// Levels count from two calls on: the call of the edge never raises the alarm. InSignal other than
// 0 and 1 is no level. Time is whole seconds of the clock against WatchSec with its fraction: 2.5
// takes 3 seconds. alarm.h tells how the alarm latches and is acknowledged, but:
//
//   - While disabled the block holds: AlmQ stays as it is, the stamp stays, only InSignal and Reset
//     are followed. With the input unchanged the disabled time counts.
//   - The edge count is never cleared, neither by an acknowledgement nor at the end of a period. It
//     adds up until it reaches CycleLimit; from then on every acknowledged alarm is back one period
//     later without a new edge. Edges count while mode 2 is enabled and has no alarm.
//
// Times run from the stamp, whatever the state: from the edge, an acknowledgement, the start of a
// period or the first call of the instance. The first enabled call in mode 2 starts a period; a
// later return to mode 2 does not. Time while the controller is off counts, and so does a step of
// the clock, either way.
#include "blocks/alarms/alarm.h"

using namespace scanblocks;

namespace {

enum : std::int32_t { kOffTimeMode = 0, kOnTimeMode = 1, kCycleCountMode = 2 };

struct In {
  Flag Enable;
  std::int32_t InSignal;
  std::int32_t Mode;
  Number WatchSec;
  std::int32_t CycleLimit;
  std::int32_t Reset;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "runs the block; 0 holds it, with its alarm"),
    FIELD(In, InSignal, "the supervised input, 0 or 1"),
    FIELD(In, Mode, "0 off-time, 1 on-time, 2 cycle count"),
    FIELD(In, WatchSec, "time at the level (modes 0 and 1) or counting period (mode 2)", "s"),
    FIELD(In, CycleLimit, "rising edges that raise the alarm in mode 2"),
    FIELD(In, Reset, kResetHelp),
};

struct Out {
  std::int32_t AlmQ;
};
constexpr Field outputs[] = {
    FIELD(Out, AlmQ, kAlarmHelp),
};

enum Phase : std::int32_t { kIdle = 0, kOffTime = 1, kOnTime = 2, kAlarm = 10 };
constexpr StateName states[] = {
    {kIdle, "idle", "new, acknowledged, or counting cycles"},
    {kOffTime, "off-time", "InSignal has fallen in mode 0"},
    {kOnTime, "on-time", "InSignal has risen in mode 1"},
    {kAlarm, "alarm", "latched"},
};

struct Memory {
  std::int32_t ResetOld = 0;
  std::uint32_t TmpTime = second_stamp();
  std::int32_t InSignalOld = 0;
  std::int32_t AlmQ = 0;
  Phase State = kIdle;
  std::int32_t FirstRun = 1;
  std::int32_t CyclicCounter = 0;
};
constexpr Field keys[] = {
    FIELD(Memory, ResetOld, kResetOldHelp),
    FIELD(Memory, TmpTime, "start of the watch time or counting period", kClockSec),
    FIELD(Memory, InSignalOld, kSignalOldHelp),
    FIELD(Memory, AlmQ, kAlarmHelp),
    FIELD(Memory, State, kStateHelp),
    FIELD(Memory, FirstRun, "1 until the first counting period has started"),
    FIELD(Memory, CyclicCounter, "rising edges counted in mode 2, never cleared"),
};

bool time_is_over(const In& in, const Memory& memory) {
  return in.WatchSec <= static_cast<double>(elapsed(second_stamp(), memory.TmpTime));
}

void watch_level(std::int32_t level, Phase timing, const In& in, Memory& memory) {
  if (latched(memory)) return;
  if (memory.InSignalOld == 1 - level && in.InSignal == level) {
    memory.TmpTime = second_stamp();
    memory.State = timing;
  } else if (stays(level, memory.InSignalOld, in.InSignal)) {
    if (time_is_over(in, memory)) raise(memory);
  }
}

void count_cycles(const In& in, Memory& memory) {
  if (memory.FirstRun == 1) {
    memory.FirstRun = 0;
    memory.TmpTime = second_stamp();
  }
  if (latched(memory)) return;
  if (rising(memory.InSignalOld, in.InSignal)) {
    const auto count = static_cast<std::uint32_t>(memory.CyclicCounter);
    memory.CyclicCounter = static_cast<std::int32_t>(count + 1);
  }
  if (!time_is_over(in, memory)) return;
  if (memory.CyclicCounter >= in.CycleLimit) {
    raise(memory);
  } else {
    memory.TmpTime = second_stamp();
  }
}

void evaluate(const In& in, Memory& memory) {
  switch (in.Mode) {
    case kOffTimeMode:
      watch_level(0, kOffTime, in, memory);
      break;
    case kOnTimeMode:
      watch_level(1, kOnTime, in, memory);
      break;
    case kCycleCountMode:
      count_cycles(in, memory);
      break;
    default:
      break;
  }
}

Out step(const In& in, Memory& memory) {
  supervise(in, memory, evaluate, Disabled::kHolds);
  memory.InSignalOld = in.InSignal;
  return {memory.AlmQ};
}

constexpr Block<In, Out, Memory> block = {
    .family = "alarms",
    .title = "latched alarm over the off-time, on-time or cycles of a digital input",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .states = states,
    .step = step,
};

}  // namespace

BLOCK(DWatch, block)
