// Drive1V2: Drive1 with one maintained signal for each mode instead of pairs of pulses, and an
// output that tells whether the block is in control.
//
//   Enb     1 while enabled and permitted; 0 in the call of a reset
//   others  as in Drive1
//
// AStSp, while Auto is 1, or HStSp, while it is not, starts the drive as it rises and stops it as
// it falls, if Inhibit is 0. Only 0 and 1 are levels: from 1 to 2 and on to 0 is no stop.
//
// Traps: what counts is the edge, not the level. Changing over between auto and hand changes
// nothing by itself, even if the two signals differ: the drive runs on until the newly selected
// signal has an edge. A signal that stays 1 does not restart a drive that failed, was dropped or
// was reset: it has to fall and rise again.
#include "blocks/drives/drive.h"

using namespace scanblocks;

namespace {

struct StartStopLevels {
  std::int32_t AStSp = 0;
  std::int32_t HStSp = 0;
};
constexpr std::array level_pins = {
    FIELD(StartStopLevels, AStSp, "auto: starts on its rising edge, stops on its falling edge"),
    FIELD(StartStopLevels, HStSp, "hand: starts on its rising edge, stops on its falling edge"),
};
constexpr std::array level_keys = {
    FIELD_AS(StartStopLevels, AStSp, "AStSpOld", "AStSp of the previous call"),
    FIELD_AS(StartStopLevels, HStSp, "HStSpOld", "HStSp of the previous call"),
};

using In = DriveInputs<StartStopLevels, SingleFeedback>;
constexpr auto inputs = drive_inputs<In>(level_pins, single_feedback_pin);

struct Out {
  Flag Enb;
  DriveOutputs<SingleCommand> drive;
};
constexpr auto outputs = join(
    std::array{FIELD(Out, Enb, "1 while enabled and permitted; 0 in the call of a reset")},
    within(offsetof(Out, drive), drive_outputs<DriveOutputs<SingleCommand>>(single_command_pin)));

using Drive = DriveMemory<StartStopLevels, SingleCommand>;
struct Memory {
  Flag Enb;
  Drive drive;
};
constexpr auto keys =
    join(std::array{WRITE_ONLY(Memory, Enb, "Enb of this call")},
         within(offsetof(Memory, drive), drive_keys<Drive>(single_command_key, level_keys)));

void obey_levels(const In& in, const StartStopLevels& old, Drive& drive) {
  if (in.Inhibit != 0) return;
  const bool automatic = in.Auto == 1;
  const std::int32_t before = automatic ? old.AStSp : old.HStSp;
  const std::int32_t now = automatic ? in.signals.AStSp : in.signals.HStSp;
  if (rising(before, now)) drive.start();
  if (falling(before, now)) drive.stop();
}

Out step(const In& in, Memory& memory) {
  memory.Enb.on = run_drive(in, memory.drive, obey_levels);
  return {.Enb = memory.Enb, .drive = memory.drive.out};
}

constexpr Block<In, Out, Memory> block = {
    .family = "drives",
    .title = "drive with one command and one feedback, started and stopped by a level",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .states = drive_states,
    .step = step,
};

}  // namespace

BLOCK(Drive1V2, block)
