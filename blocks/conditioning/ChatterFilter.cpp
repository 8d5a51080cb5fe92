// ChatterFilter: freezes a digital input that changes too often.
//
//   Q           the input, or the last good value while frozen; 0 while disabled
//   V           1 from the second call of a freeze to the one before its last; also while disabled
//   ChangeNum   changes counted in the running window; kept during a freeze and while disabled
//
// Calls within ChangeWindow ms of the start of a window count the changes of the input. The first
// call after that ends the window and does not look for a change itself. With fewer than MaxChanges
// the window was calm: the input becomes the last good value, and the next window begins. With
// MaxChanges or more Q freezes at the last good value until more than FreezTime ms have passed. The
// call that ends the freeze still shows the frozen value and begins a new window.
//
// The last good value is 0 until the first calm window has ended. A MaxChanges of 0 or below
// freezes after every window. A new instance compares its first input with 0.
//
// While disabled, window and freeze keep their starts, so that a long pause ends them at once. The
// clock counts wall time; one that was set back prolongs them.
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  std::int32_t InSignal;
  std::int32_t ChangeWindow;
  std::int32_t MaxChanges;
  std::int32_t FreezTime;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "runs the filter"),
    FIELD(In, InSignal, "the signal"),
    FIELD(In, ChangeWindow, "length of a window", "ms"),
    FIELD(In, MaxChanges, "changes in a window that count as chatter"),
    FIELD(In, FreezTime, "length of a freeze", "ms"),
};

struct Out {
  std::int32_t Q;
  std::int32_t V;
  std::int32_t ChangeNum;
};
constexpr Field outputs[] = {
    FIELD(Out, Q, "filtered signal, 0 while disabled"),
    FIELD(Out, V, "1 while the output is frozen"),
    FIELD(Out, ChangeNum, "changes in the running window"),
};

enum State : std::int32_t { kWatching = 0, kFrozen = 1 };
constexpr StateName states[] = {
    {kWatching, "watching", "the output follows the input and its changes are counted"},
    {kFrozen, "frozen", "the output holds the last good value"},
};

struct Memory {
  std::int32_t InSignalOld = 0;
  std::int32_t TmpQ = 0;
  std::int32_t TmpV = 0;
  std::int32_t TmpChangeNum = 0;
  std::int64_t TmpTime = zelgetTime();
  std::int32_t TmpQLastGood = 0;
  std::int64_t TmpFreezTime = 0;
  State TmpState = kWatching;
};
constexpr Field keys[] = {
    FIELD(Memory, InSignalOld, "InSignal of the previous call, enabled or not"),
    FIELD(Memory, TmpQ, "Q of the previous call"),
    FIELD(Memory, TmpV, "V"),
    FIELD(Memory, TmpChangeNum, "ChangeNum"),
    FIELD(Memory, TmpTime, "start of the window", kClockMs),
    FIELD(Memory, TmpQLastGood, "InSignal at the end of the last calm window"),
    FIELD(Memory, TmpFreezTime, "start of the freeze", kClockMs),
    FIELD(Memory, TmpState, "position"),
};

// Counts on from a stored number, which may be any.
std::int32_t next(std::int32_t count) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(count) + 1u);
}

Out step(const In& in, Memory& memory) {
  if (!in.Enable) {
    memory.TmpQ = 0;
  } else {
    switch (memory.TmpState) {
      case kWatching:
        if (difference64(zelgetTime(), memory.TmpTime) <= in.ChangeWindow) {
          memory.TmpQ = in.InSignal;
          if (in.InSignal != memory.InSignalOld) memory.TmpChangeNum = next(memory.TmpChangeNum);
        } else if (memory.TmpChangeNum < in.MaxChanges) {
          memory.TmpQ = memory.TmpQLastGood = in.InSignal;
          memory.TmpV = 0;
          memory.TmpChangeNum = 0;
          memory.TmpTime = zelgetTime();
        } else {
          memory.TmpQ = memory.TmpQLastGood;
          memory.TmpFreezTime = zelgetTime();
          memory.TmpState = kFrozen;
        }
        break;
      case kFrozen:
        if (difference64(zelgetTime(), memory.TmpFreezTime) <= in.FreezTime) {
          memory.TmpQ = memory.TmpQLastGood;
          memory.TmpV = 1;
        } else {  // TmpQ still shows the frozen value
          memory.TmpV = 0;
          memory.TmpChangeNum = 0;
          memory.TmpTime = zelgetTime();
          memory.TmpState = kWatching;
        }
        break;
    }
  }
  memory.InSignalOld = in.InSignal;
  return {.Q = memory.TmpQ, .V = memory.TmpV, .ChangeNum = memory.TmpChangeNum};
}

constexpr Block<In, Out, Memory> block = {
    .family = "conditioning",
    .title = "chatter filter for a digital input",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .states = states,
    .step = step,
};

}  // namespace

BLOCK(ChatterFilter, block)
