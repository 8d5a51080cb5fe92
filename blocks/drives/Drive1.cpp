// Drive1: starts, stops and supervises a motor, a pump or a valve with one command and one
// feedback.
//
//   CMD        run command: 1 from a start on, while starting and running
//   StartAlm   1 once a start was not confirmed in time, until the feedback confirms another start
//              or stop, a stop fails, Reset rises, or Enable or Permit goes
//   StopAlm    the same for a stop
//   State      0 stopped, 1 starting, 2 running, 5 start failed, 10 stopping, 15 stop failed,
//              100 dropped by Inhibit
//
// Three pairs of signals start and stop the drive on their rising edges: AStart and AStop while
// Auto is 1, HStart and HStop while it is not, both only while Inhibit is 0; IStart and IStop
// always. Where several rise in one call, a stop wins over the start of its pair, and the pair
// IStart, IStop over the others. A signal that rises while it is not obeyed is lost.
//
// Inhibit = 1 drops a running drive. One that is starting may go on until its feedback comes; the
// next call drops it. A feedback that is lost while running raises nothing. Common to all drives,
// with the timing: drive.h.
#include "blocks/drives/drive.h"

using namespace scanblocks;

namespace {

using In = DriveInputs<StartStopPairs, SingleFeedback>;
constexpr auto inputs = drive_inputs<In>(pair_pins, single_feedback_pin);

using Out = DriveOutputs<SingleCommand>;
constexpr auto outputs = drive_outputs<Out>(single_command_pin);

using Memory = DriveMemory<StartStopPairs, SingleCommand>;
constexpr auto keys = drive_keys<Memory>(single_command_key, pair_keys);

Out step(const In& in, Memory& memory) {
  run_drive(in, memory, obey_pairs);
  return memory.out;
}

constexpr Block<In, Out, Memory> block = {
    .family = "drives",
    .title = "drive with one command and one feedback",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .states = drive_states,
    .step = step,
};

}  // namespace

BLOCK(Drive1, block)
