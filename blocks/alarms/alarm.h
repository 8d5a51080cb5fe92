// What the alarm blocks share: gating, acknowledging and latching.
//
//   Latched       A raised alarm stays, whatever the supervised input does, until it is
//                 acknowledged or the block is disabled.
//   Acknowledge   A rising edge of Reset while enabled: 0 on the previous call, 1 on this one. It
//                 comes after the evaluation and wins over it; a condition that goes on raises the
//                 alarm again on a later call. Reset held at 1 acknowledges once.
//   Disabled      No alarm, nothing is evaluated. Reset is followed but does nothing: an edge of it
//                 is used up. (DWatch holds its alarm instead.)
//   New instance  No alarm, all inputs of the previous call 0: Reset at 1 counts as an edge.
//
// A block brings In with Enable and Reset; Memory with ResetOld, TmpTime and, if it has one alarm,
// AlmQ and a State whose enum has kIdle and kAlarm; and an evaluate function that raises.
//
// Stored flags and states are plain integers: what a file holds is handed on as it is.
#pragma once

#include <cstdint>

#include "frame/block.h"
#include "frame/edge.h"

namespace scanblocks {

// Help of the rows that these blocks have in common.
inline constexpr const char* kEnableHelp = "runs the block";
inline constexpr const char* kResetHelp = "acknowledges the alarm on its rising edge, 0 to 1";
inline constexpr const char* kResetOldHelp = "Reset of the previous call";
inline constexpr const char* kSignalOldHelp = "InSignal of the previous call";
inline constexpr const char* kAlarmHelp = "1 while the alarm is on";
inline constexpr const char* kStateHelp = "position";

// No edge: a digital input that was and is at a level, 0 or 1.
constexpr bool stays(std::int32_t level, std::int32_t old, std::int32_t now) {
  return old == level && now == level;
}

template <class Memory>
void raise(Memory& memory) {
  memory.State = decltype(Memory::State)::kAlarm;
  memory.AlmQ = 1;
}

// Takes the alarm back; a block with several flags has a clear() of its own.
template <class Memory>
void clear(Memory& memory) {
  memory.State = decltype(Memory::State)::kIdle;
  memory.AlmQ = 0;
}

// True while the alarm stands; there is nothing to evaluate then.
template <class Memory>
bool latched(Memory& memory) {
  if (memory.State != decltype(Memory::State)::kAlarm) return false;
  memory.AlmQ = 1;
  return true;
}

enum class Disabled { kClears, kHolds };

// One call of an alarm block.
template <class In, class Memory>
void supervise(const In& in, Memory& memory, void (*evaluate)(const In&, Memory&),
               Disabled disabled = Disabled::kClears) {
  if (in.Enable) {
    evaluate(in, memory);
    if (rising(memory.ResetOld, in.Reset)) {
      clear(memory);
      memory.TmpTime = second_stamp();
    }
  } else if (disabled == Disabled::kClears) {
    clear(memory);
  }
  memory.ResetOld = in.Reset;
}

}  // namespace scanblocks
