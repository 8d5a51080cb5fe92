// ReadFreeRAM: free memory in KiB, the third number of the "Mem:" line that `free` prints.
#include "blocks/sysinfo/probe.h"

using namespace scanblocks;

namespace {

constexpr Probe probe = {
    .file = "/mnt/ramdisk/ReadFreeRAM.txt",
    .remove = "rm /mnt/ramdisk/ReadFreeRAM.txt",
    .measure = "free >> /mnt/ramdisk/ReadFreeRAM.txt",
};

}  // namespace

std::int32_t ReadFreeRAM(void) {
  char text[kMaxOutput + 1];
  return run(probe, text) ? third_number_after("Mem:", text) : kNoOutput;
}
