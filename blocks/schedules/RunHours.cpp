// RunHours: running time of a piece of equipment, today, yesterday, since maintenance and in total.
//
//   TodayTotal        minutes of the local day on which the equipment last ran
//   YesterdayTotal    minutes of the running day before that one; idle days are passed over
//   MaintenanceHour   whole hours since the rising edge of Reset, which sets it to 0
//   TotalHour         whole hours in all
//
//   Minutes   A minute counts on the first call with 60 s or more since the start of the run or
//             since the minute before, and the next one is timed from that call. A run that stops
//             30 s or more into a minute has that minute counted too. A call counts one minute at
//             most: time in which nothing called the block is lost but for that minute.
//   Hours     An hour counts per 60 minutes of one uninterrupted run. What a run has beyond its
//             whole hours is in the minutes but never reaches the hours: for equipment that always
//             runs for less than an hour both hour counters stay where they are.
//   Days      The day is looked at while the equipment runs, by the day of the month. TodayTotal
//             keeps the last day's minutes through standstill and midnight; the first running call
//             on another day moves them to YesterdayTotal. The minute that this call counts goes
//             along. The same day of another month is taken for the same day.
//   Presets   are the counters' first values in a new instance; a state file that can be opened
//             wins over them, even an empty one. They have to be 0 or more.
//   InSignal  Only 0 and 1 are a signal. Another number counts nothing, and a 1 that follows it is
//             no start: the minute goes on from where it was.
#include "frame/block.h"
#include "frame/edge.h"

using namespace scanblocks;

namespace {

struct In {
  std::int32_t InSignal;
  std::int32_t Reset;
  std::int32_t TodayPreset;
  std::int32_t YesterdayPreset;
  std::int32_t MaintenancePreset;
  std::int32_t TotalPreset;
};
constexpr Field inputs[] = {
    FIELD(In, InSignal, "1 while the equipment runs, 0 while it stands"),
    FIELD(In, Reset, "sets MaintenanceHour to 0 on its rising edge, 0 to 1"),
    FIELD(In, TodayPreset, "first value of TodayTotal in a new instance", "min"),
    FIELD(In, YesterdayPreset, "first value of YesterdayTotal", "min"),
    FIELD(In, MaintenancePreset, "first value of MaintenanceHour", "h"),
    FIELD(In, TotalPreset, "first value of TotalHour", "h"),
};

struct Out {
  std::int32_t TodayTotal;
  std::int32_t YesterdayTotal;
  std::int32_t MaintenanceHour;
  std::int32_t TotalHour;
};
constexpr Field outputs[] = {
    FIELD(Out, TodayTotal, "minutes run today, or on the last day with a run", "min"),
    FIELD(Out, YesterdayTotal, "minutes run on the running day before", "min"),
    FIELD(Out, MaintenanceHour, "whole hours since the last maintenance reset", "h"),
    FIELD(Out, TotalHour, "whole hours in all", "h"),
};

struct Memory {
  std::int32_t ResetOld = 0;
  Count TmpTodayTotal;
  std::uint32_t TmpTime = 0;
  std::int32_t OldInSignal = 0;
  Count TmpTotalHour;
  Count TmpMaintenanceHour;
  Count TmpyesterdayTotal;
  std::int32_t TmpMints = 0;
  std::int32_t OldDay = 0;
};
constexpr Field keys[] = {
    FIELD(Memory, ResetOld, "Reset of this call"),
    FIELD(Memory, TmpTodayTotal, "TodayTotal", "min"),
    FIELD(Memory, TmpTime, "start of the minute being timed", kClockSec),
    FIELD(Memory, OldInSignal, "InSignal of this call"),
    FIELD(Memory, TmpTotalHour, "TotalHour", "h"),
    FIELD(Memory, TmpMaintenanceHour, "MaintenanceHour", "h"),
    FIELD(Memory, TmpyesterdayTotal, "YesterdayTotal", "min"),
    FIELD(Memory, TmpMints, "minutes of this run beyond its whole hours", "min"),
    FIELD(Memory, OldDay, "day of the month of the last running call"),
};

void first_call(const In& in, Memory& memory) {
  memory.TmpTodayTotal.value = in.TodayPreset;
  memory.TmpTotalHour.value = in.TotalPreset;
  memory.TmpMaintenanceHour.value = in.MaintenancePreset;
  memory.TmpyesterdayTotal.value = in.YesterdayPreset;
  memory.OldDay = local_time().day;
}

// A counter at its limit wraps.
void increment(std::int32_t& counter) {
  counter = static_cast<std::int32_t>(static_cast<std::uint32_t>(counter) + 1u);
}

void count_minute(Memory& memory) {
  increment(memory.TmpTodayTotal.value);
  increment(memory.TmpMints);
  if (memory.TmpMints > 59) {
    increment(memory.TmpTotalHour.value);
    increment(memory.TmpMaintenanceHour.value);
    memory.TmpMints = 0;
  }
}

Out step(const In& in, Memory& memory) {
  if (rising(memory.OldInSignal, in.InSignal)) {
    memory.TmpTime = second_stamp();
    memory.TmpMints = 0;
  } else if (memory.OldInSignal == 1 && in.InSignal == 1) {
    if (elapsed(second_stamp(), memory.TmpTime) > 59) {
      count_minute(memory);
      memory.TmpTime = second_stamp();
    }
    const std::int32_t day = local_time().day;
    if (day != memory.OldDay) {
      memory.TmpyesterdayTotal = memory.TmpTodayTotal;
      memory.TmpTodayTotal.value = 0;
    }
    memory.OldDay = day;
  } else if (falling(memory.OldInSignal, in.InSignal)) {
    if (elapsed(second_stamp(), memory.TmpTime) > 29) count_minute(memory);
  }
  memory.OldInSignal = in.InSignal;

  if (rising(memory.ResetOld, in.Reset)) memory.TmpMaintenanceHour.value = 0;
  memory.ResetOld = in.Reset;

  return {.TodayTotal = memory.TmpTodayTotal.value,
          .YesterdayTotal = memory.TmpyesterdayTotal.value,
          .MaintenanceHour = memory.TmpMaintenanceHour.value,
          .TotalHour = memory.TmpTotalHour.value};
}

constexpr Block<In, Out, Memory> block = {
    .family = "schedules",
    .title = "running time today, yesterday, since maintenance and in total",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .step = step,
    .first_call = first_call,
};

}  // namespace

BLOCK(RunHours, block)
