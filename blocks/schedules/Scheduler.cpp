// Scheduler: pulses at regular minutes of every local hour, or on an event.
//
//   Q       1 while a pulse runs; 0 while disabled
//   Hour    local hour, Minute local minute of the current second; 0 while disabled
//   State   1 while a pulse runs, also while disabled
//
// The hour has a boundary every IntervalMin minutes: at IntervalMin, 2 x IntervalMin, ..., 60. A
// pulse starts LeadMin minutes before a boundary and lasts LeadMin + DurationMin minutes. A rising
// edge of Event starts a pulse at any time and restarts a running one.
//
//   Boundaries    run from IntervalMin to 60 and do not go round the hour: with LeadMin 0 the full
//                 hour is minute 60 and has no pulse, and with LeadMin above IntervalMin the first
//                 boundaries of the hour have none.
//   IntervalMin   has to divide 60. Any other value gives no pulses by the clock; Event works.
//   A minute      is looked at once. A minute in which a pulse ends starts none, so that pulses as
//                 long as the interval come at every other boundary. A new instance counts minute 0
//                 as looked at.
//   Length        is measured in seconds of the wall clock, from the call that starts the pulse: a
//                 clock set forward ends a pulse early, one set back lengthens it. The calls decide
//                 when it ends. With a length of 0 a pulse by the clock lasts for one call, one by
//                 Event shows nothing.
//   Disabling     neither stops nor restarts a pulse: it goes on with what is left of it. An Event
//                 that rose meanwhile and is still 1 starts a pulse when enabled.
#include "frame/block.h"
#include "frame/edge.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  std::int32_t IntervalMin;
  std::int32_t LeadMin;
  std::int32_t DurationMin;
  std::int32_t Event;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "runs the scheduler"),
    FIELD(In, IntervalMin, "minutes from boundary to boundary; has to divide 60", "min"),
    FIELD(In, LeadMin, "how long before a boundary a pulse starts", "min"),
    FIELD(In, DurationMin, "how long after the boundary it ends", "min"),
    FIELD(In, Event, "starts a pulse on its rising edge, 0 to 1"),
};

struct Out {
  std::int32_t Q;
  std::int32_t Hour;
  std::int32_t Minute;
  std::int32_t State;
};
constexpr Field outputs[] = {
    FIELD(Out, Q, "the pulse; 0 while disabled"),
    FIELD(Out, Hour, "local hour, 0 to 23; 0 while disabled", "h"),
    FIELD(Out, Minute, "local minute, 0 to 59; 0 while disabled", "min"),
    FIELD(Out, State, "1 while a pulse runs, also while disabled"),
};

enum Position : std::int32_t { kIdle = 0, kPulse = 1 };
constexpr StateName states[] = {
    {kIdle, "idle", "waits for a minute that starts a pulse"},
    {kPulse, "pulse", "a pulse runs"},
};

struct Memory {
  Count TmpTime = {static_cast<std::int32_t>(millisecond_stamp())};
  std::int32_t TmpQ = 0;
  Position State = kIdle;
  std::int32_t OldMin4SaveData = 0;
  std::int32_t TmpEventOld = 0;
};
constexpr Field keys[] = {
    FIELD(Memory, TmpTime, "start of the last pulse; before the first one, milliseconds",
          kClockSec),
    FIELD(Memory, TmpQ, "Q of this call"),
    FIELD(Memory, State, "position"),
    FIELD_AS(Memory, OldMin4SaveData, "_OldMin4SaveData",
             "minute of the hour last looked at, or in which a pulse ended", "min"),
    FIELD(Memory, TmpEventOld, "Event of the last enabled call"),
};

bool starts_pulse(std::int32_t minute, const In& in) {
  if (in.IntervalMin <= 0 || 60 % in.IntervalMin != 0) return false;
  const std::int64_t boundary = std::int64_t{minute} + in.LeadMin;
  return in.IntervalMin <= boundary && boundary <= 60 && boundary % in.IntervalMin == 0;
}

void time_pulse(std::int32_t minute, const In& in, Memory& memory) {
  const std::int64_t length = 60 * (std::int64_t{in.DurationMin} + in.LeadMin);
  const auto start = static_cast<std::uint32_t>(memory.TmpTime.value);
  if (difference(second_stamp(), start) >= length) {
    memory.State = kIdle;
    memory.TmpQ = 0;
    memory.OldMin4SaveData = minute;
  } else {
    memory.State = kPulse;
    memory.TmpQ = 1;
  }
}

void start_pulse(Memory& memory) {
  memory.TmpTime.value = static_cast<std::int32_t>(second_stamp());
}

Out step(const In& in, Memory& memory) {
  if (!in.Enable) {
    memory.TmpQ = 0;
    return {.Q = 0, .Hour = 0, .Minute = 0, .State = memory.State};
  }
  const LocalTime now = local_time();
  const bool event = rising(memory.TmpEventOld, in.Event);
  memory.TmpEventOld = in.Event;
  if (event) {
    start_pulse(memory);
    time_pulse(now.minute, in, memory);
  } else {
    switch (memory.State) {
      case kIdle:
        if (memory.OldMin4SaveData == now.minute) break;
        memory.OldMin4SaveData = now.minute;
        if (starts_pulse(now.minute, in)) {
          memory.State = kPulse;
          memory.TmpQ = 1;
          start_pulse(memory);  // timed from the next call on
        }
        break;
      case kPulse:
        time_pulse(now.minute, in, memory);
        break;
    }
  }
  return {.Q = memory.TmpQ, .Hour = now.hour, .Minute = now.minute, .State = memory.State};
}

constexpr Block<In, Out, Memory> block = {
    .family = "schedules",
    .title = "pulses at regular minutes of the hour, or on an event",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .states = states,
    .step = step,
};

}  // namespace

BLOCK(Scheduler, block)
