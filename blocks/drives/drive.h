// Drives: what Drive1, Drive1V2 and Drive2 have in common.
//
// A drive is started and stopped by edges, and the equipment has to follow within FeedbackMs. The
// blocks differ in what starts and stops them (Signals), in the commands to the equipment
// (Commands) and in the feedback from it (Feedbacks).
//
// Inputs   All are integers, truncated toward zero. On is exactly 1, off exactly 0: 2 and -1 are
//          neither. An edge is a change from 0 to 1 (rising) or from 1 to 0 (falling) since the
//          previous call. Edges are used up by every call, also where they are not obeyed.
// Gating   While Enable or Permit is not 1 the drive is stopped, with commands and alarms off and
//          nothing supervised. Reset is obeyed without Permit, but not without Enable.
// Edges    A start enters the state starting, a stop the state stopping, from any state, and both
//          switch the commands at once. They leave the alarms alone: those change when the
//          feedback has confirmed, or failed to. Later edges of a call override earlier ones, and
//          the new state takes its step in the same call.
// Time     FeedbackMs counts from the last start, stop or reset, on the wall clock in 32-bit
//          milliseconds: a pause of the host counts, and so does a clock that is set, either way.
//          The time is out when more than FeedbackMs have passed: at once with a negative one.
// Reset    The rising edge comes last in a call. It stops the drive without supervision, commands
//          and alarms off.
#pragma once

#include <array>
#include <cstdint>
#include <utility>

#include "frame/block.h"
#include "frame/edge.h"
#include "frame/rows.h"

namespace scanblocks {

enum DriveState : std::int32_t {
  kStopped = 0,
  kStarting = 1,
  kRunning = 2,
  kStartFailed = 5,
  kStopping = 10,
  kStopFailed = 15,
  kDropped = 100,
};
inline constexpr StateName drive_states[] = {
    {kStopped, "stopped", "at rest; also after a reset and while disabled or not permitted"},
    {kStarting, "starting", "started, waiting for the feedback"},
    {kRunning, "running", "the feedback confirmed the start; it is no longer looked at"},
    {kStartFailed, "start failed", "no feedback in time: StartAlm, and the start is taken back"},
    {kStopping, "stopping", "stopped, until the feedback is gone as well"},
    {kStopFailed, "stop failed", "the feedback stayed: StopAlm, and no command any more"},
    {kDropped, "dropped", "was running when Inhibit came; waits for a new start or stop"},
};

template <class Signals, class Feedbacks>
struct DriveInputs {
  std::int32_t Enable;
  std::int32_t Permit;
  std::int32_t Auto;
  Signals signals;
  std::int32_t Inhibit;
  Feedbacks feedbacks;
  std::int32_t Reset;
  std::int32_t FeedbackMs;
};
template <class In, std::size_t kSignals, std::size_t kFeedbacks>
consteval auto drive_inputs(const std::array<Field, kSignals>& signals,
                            const std::array<Field, kFeedbacks>& feedbacks) {
  return join(
      std::array{
          FIELD(In, Enable, "1 runs the block; otherwise all is off and Reset is not obeyed"),
          FIELD(In, Permit, "1 permits the drive; otherwise all is off, but Reset is obeyed"),
          FIELD(In, Auto, "1 obeys the auto signals; anything else the hand signals"),
      },
      within(offsetof(In, signals), signals),
      std::array{FIELD(In, Inhibit,
                       "only 0 lets auto and hand signals through; 1 also drops a running drive")},
      within(offsetof(In, feedbacks), feedbacks),
      std::array{
          FIELD(In, Reset,
                "stops the drive and clears commands and alarms on its rising edge, 0 to 1"),
          FIELD(In, FeedbackMs, "time that the feedback has to follow a start or a stop", "ms"),
      });
}

// A command, an alarm and the state come out as they were stored: in a file from elsewhere they
// may be other numbers.
template <class Commands>
struct DriveOutputs {
  Commands commands;
  std::int32_t StartAlm = 0;
  std::int32_t StopAlm = 0;
  DriveState State = kStopped;
};
template <class Out, std::size_t kCommands>
consteval auto drive_outputs(const std::array<Field, kCommands>& commands) {
  return join(
      within(offsetof(Out, commands), commands),
      std::array{
          FIELD(Out, StartAlm, "1 while the start alarm is on: a start was not confirmed in time"),
          FIELD(Out, StopAlm, "1 while the stop alarm is on: a stop was not confirmed in time"),
          FIELD(Out, State, "the state of the drive"),
      });
}

// Commands has start() and stop(), and names the command that a start gives, starting(), and the
// one that a failed stop takes back, stopping(). Feedbacks has confirm_start() and confirm_stop().
template <class Signals, class Commands>
struct DriveMemory {
  std::uint32_t TmpTime = millisecond_stamp();
  std::int32_t ResetOld = 0;
  DriveOutputs<Commands> out;
  Signals old;  // of the previous call

  void start() {
    out.State = kStarting;
    out.commands.start();
    TmpTime = millisecond_stamp();
  }
  void stop() {
    out.State = kStopping;
    out.commands.stop();
    TmpTime = millisecond_stamp();
  }

  bool is_late(std::int32_t limit_ms) const {
    return elapsed(millisecond_stamp(), TmpTime) > limit_ms;
  }

  template <class In>
  void step(const In& in) {
    switch (out.State) {
      case kStarting:
        if (in.feedbacks.confirm_start()) {
          enter(kRunning, 0, 0);
        } else if (is_late(in.FeedbackMs)) {
          enter(kStartFailed, 1, 0);
          out.commands.starting() = 0;
        }
        break;
      case kRunning:
        if (in.Inhibit == 1) out.State = kDropped;
        out.commands.starting() = in.Inhibit == 1 ? 0 : 1;
        break;
      case kStartFailed:
        enter(kStartFailed, 1, 0);
        out.commands.starting() = 0;
        break;
      case kStopping:
        if (in.feedbacks.confirm_stop()) {
          enter(kStopped, 0, 0);
        } else if (is_late(in.FeedbackMs)) {
          enter(kStopFailed, 0, 1);
          out.commands.stopping() = 0;
        }
        break;
      case kStopFailed:
        enter(kStopFailed, 0, 1);
        out.commands.stopping() = 0;
        break;
      case kDropped:
        enter(kDropped, 0, 0);
        out.commands = {};
        break;
      case kStopped:
        break;
    }
  }

  void enter(DriveState state, std::int32_t start_alarm, std::int32_t stop_alarm) {
    out.State = state;
    out.StartAlm = start_alarm;
    out.StopAlm = stop_alarm;
  }
};
template <class Memory, std::size_t kSignals>
consteval auto drive_keys(const Field& command, const std::array<Field, kSignals>& signals) {
  return join(
      std::array{
          FIELD(Memory, TmpTime, "last start, stop or reset", kClockMs),
          FIELD(Memory, ResetOld, "Reset of the previous call"),
      },
      within(offsetof(Memory, out.commands), std::array{command}),
      std::array{
          FIELD_AS(Memory, out.State, "State", "the state of the drive"),
          FIELD_AS(Memory, out.StartAlm, "StartAlm", "start alarm"),
          FIELD_AS(Memory, out.StopAlm, "StopAlm", "stop alarm"),
      },
      within(offsetof(Memory, old), signals));
}

// One call of a drive. obey(in, old, memory) calls memory.start() and memory.stop() for the edges
// since `old`. Returns whether the drive is in control: enabled and permitted, and not being reset.
template <class In, class Memory, class Obey>
bool run_drive(const In& in, Memory& memory, Obey obey) {
  const auto old = std::exchange(memory.old, in.signals);
  const bool reset = rising(std::exchange(memory.ResetOld, in.Reset), in.Reset);

  bool in_control = in.Enable == 1 && in.Permit == 1;
  if (in_control) {
    obey(in, old, memory);
    memory.step(in);
  } else {
    memory.out = {};
  }
  if (in.Enable == 1 && reset) {
    in_control = false;
    memory.out = {};
    memory.TmpTime = millisecond_stamp();
  }
  return in_control;
}

// The signals of Drive1 and Drive2: pairs of start and stop, acting on their rising edges.
struct StartStopPairs {
  std::int32_t AStart = 0;
  std::int32_t AStop = 0;
  std::int32_t HStart = 0;
  std::int32_t HStop = 0;
  std::int32_t IStart = 0;
  std::int32_t IStop = 0;
};
inline constexpr std::array pair_pins = {
    FIELD(StartStopPairs, AStart, "auto start, on its rising edge"),
    FIELD(StartStopPairs, AStop, "auto stop, on its rising edge"),
    FIELD(StartStopPairs, HStart, "hand start, on its rising edge"),
    FIELD(StartStopPairs, HStop, "hand stop, on its rising edge"),
    FIELD(StartStopPairs, IStart, "start whatever Auto and Inhibit are, on its rising edge"),
    FIELD(StartStopPairs, IStop, "stop whatever Auto and Inhibit are, on its rising edge"),
};
inline constexpr std::array pair_keys = {
    FIELD_AS(StartStopPairs, AStart, "AStartOld", "AStart of the previous call"),
    FIELD_AS(StartStopPairs, AStop, "AStopOld", "AStop of the previous call"),
    FIELD_AS(StartStopPairs, HStart, "HStartOld", "HStart of the previous call"),
    FIELD_AS(StartStopPairs, HStop, "HStopOld", "HStop of the previous call"),
    FIELD_AS(StartStopPairs, IStart, "IStartOld", "IStart of the previous call"),
    FIELD_AS(StartStopPairs, IStop, "IStopOld", "IStop of the previous call"),
};

inline constexpr auto obey_pairs = [](const auto& in, const StartStopPairs& old, auto& memory) {
  const StartStopPairs& now = in.signals;
  if (in.Inhibit == 0) {
    if (in.Auto == 1) {
      if (rising(old.AStart, now.AStart)) memory.start();
      if (rising(old.AStop, now.AStop)) memory.stop();
    } else {
      if (rising(old.HStart, now.HStart)) memory.start();
      if (rising(old.HStop, now.HStop)) memory.stop();
    }
  }
  if (rising(old.IStart, now.IStart)) memory.start();
  if (rising(old.IStop, now.IStop)) memory.stop();
};

// The command and the feedback of Drive1 and Drive1V2.
struct SingleCommand {
  std::int32_t CMD = 0;

  void start() { CMD = 1; }
  void stop() { CMD = 0; }
  std::int32_t& starting() { return CMD; }
  std::int32_t& stopping() { return CMD; }
};
inline constexpr std::array single_command_pin = {
    FIELD(SingleCommand, CMD, "run command to the equipment")};
inline constexpr Field single_command_key = FIELD(SingleCommand, CMD, "run command");

struct SingleFeedback {
  std::int32_t Feedback;

  bool confirm_start() const { return Feedback == 1; }
  bool confirm_stop() const { return Feedback == 0; }
};
inline constexpr std::array single_feedback_pin = {FIELD(
    SingleFeedback, Feedback, "the equipment runs: 1 confirms a start, 0 a stop, others neither")};

}  // namespace scanblocks
