// ReadSysInfo: free memory and free space of the storage card, measured at an interval.
//
//   FreeRam     free memory in KiB by the last measurement; 0 before the first and where it failed
//   FreeSD      free space of the storage card in KiB, likewise
//   CPUUsage    the figures of these names in the state file, for another program to put there;
//   FreeFlash   the block passes them on and measures neither
//
// An enabled call measures when more than SampleInterval has passed since the last measurement; a
// new instance waits that long for its first one. SampleInterval 0 measures on every call at which
// the clock has moved on, a negative one on every call. A measurement starts four shell processes
// and takes many times as long as a call without one: choose minutes rather than seconds. Between
// measurements and while disabled the outputs repeat the last figures. A clock that was set back
// counts as time passed.
#include "blocks/sysinfo/probe.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  Flag Enable;
  std::int32_t SampleInterval;
};
constexpr Field inputs[] = {
    FIELD(In, Enable, "allows measurements"),
    FIELD(In, SampleInterval, "time that passes between two measurements", "ms"),
};

struct Out {
  Number CPUUsage;
  Number FreeRam;
  Number FreeFlash;
  Number FreeSD;
};
constexpr Field outputs[] = {
    FIELD(Out, CPUUsage, "the figure in the state file, passed on"),
    FIELD(Out, FreeRam, "free memory, 0 where it could not be measured", "KiB"),
    FIELD(Out, FreeFlash, "the figure in the state file, passed on"),
    FIELD(Out, FreeSD, "free space of the storage card, 0 where it could not be measured", "KiB"),
};

struct Memory {
  std::uint32_t TmpTime = millisecond_stamp();
  Number CPUUsage;
  Number FreeRam;
  Number FreeFlash;
  Number FreeSD;
};
constexpr Field keys[] = {
    FIELD(Memory, TmpTime, "last measurement, at first the first call", kClockMs),
    FIELD(Memory, CPUUsage, "kept as it is"),
    FIELD(Memory, FreeRam, "free memory by the last measurement", "KiB"),
    FIELD(Memory, FreeFlash, "kept as it is"),
    FIELD(Memory, FreeSD, "free space of the storage card by the last measurement", "KiB"),
};

Number figure(std::int32_t result) { return result < 0 ? 0 : result; }

Out step(const In& in, Memory& memory) {
  if (in.Enable && elapsed(millisecond_stamp(), memory.TmpTime) > in.SampleInterval) {
    memory.TmpTime = millisecond_stamp();
    memory.FreeSD = figure(ReadFreeSD());
    memory.FreeRam = figure(ReadFreeRAM());
  }
  return {.CPUUsage = memory.CPUUsage,
          .FreeRam = memory.FreeRam,
          .FreeFlash = memory.FreeFlash,
          .FreeSD = memory.FreeSD};
}

constexpr Block<In, Out, Memory> block = {
    .family = "sysinfo",
    .title = "free memory and storage, measured at an interval",
    .inputs = inputs,
    .outputs = outputs,
    .keys = keys,
    .step = step,
};

}  // namespace

BLOCK(ReadSysInfo, block)
