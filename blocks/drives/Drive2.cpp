// Drive2: Drive1 for equipment with a start and a stop command, and a feedback for each.
//
//   CMD1   start command: 1 from a start on, while starting and running
//   CMD2   stop command: 1 from a stop on, while stopping and, once that is confirmed, while
//          stopped, until the next start, a reset, or Enable or Permit goes
//   others  as in Drive1
//
// Feedback1 = 1 confirms a start and is looked at only while starting; Feedback2 = 0 confirms a
// stop and is looked at only while stopping. Feedback2 tells "not yet stopped": a limit switch that
// is 1 in the stopped position has to be inverted.
//
// The commands are held, not pulsed, and never both 1. After a failure and while dropped both are
// 0. Start, stop, modes and Inhibit are those of Drive1.
#include "blocks/drives/drive.h"

using namespace scanblocks;

namespace {

struct Feedbacks {
  std::int32_t Feedback1;
  std::int32_t Feedback2;

  bool confirm_start() const { return Feedback1 == 1; }
  bool confirm_stop() const { return Feedback2 == 0; }
};
constexpr std::array feedback_pins = {
    FIELD(Feedbacks, Feedback1, "1 confirms a start"),
    FIELD(Feedbacks, Feedback2, "0 confirms a stop; anything else: not yet stopped"),
};

struct Commands {
  std::int32_t CMD1 = 0;
  std::int32_t CMD2 = 0;

  void start() { *this = {.CMD1 = 1, .CMD2 = 0}; }
  void stop() { *this = {.CMD1 = 0, .CMD2 = 1}; }
  std::int32_t& starting() { return CMD1; }
  std::int32_t& stopping() { return CMD2; }
};
constexpr Field start_command = FIELD(Commands, CMD1, "start command");
constexpr Field stop_command = FIELD(Commands, CMD2, "stop command, stays 1 after a stop");

using In = DriveInputs<StartStopPairs, Feedbacks>;
constexpr auto inputs = drive_inputs<In>(pair_pins, feedback_pins);

using Out = DriveOutputs<Commands>;
constexpr auto outputs = drive_outputs<Out>(std::array{start_command, stop_command});

using Memory = DriveMemory<StartStopPairs, Commands>;
constexpr auto keys = join(drive_keys<Memory>(start_command, pair_keys),
                           within(offsetof(Memory, out.commands), std::array{stop_command}));

Out step(const In& in, Memory& memory) {
  run_drive(in, memory, obey_pairs);
  return memory.out;
}

constexpr Block<In, Out, Memory> block = {
    .family = "drives",
    .title = "drive with a start and a stop command and a feedback for each",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .states = drive_states,
    .step = step,
};

}  // namespace

BLOCK(Drive2, block)
