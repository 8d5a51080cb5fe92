// ReadFreeSD: free space of the storage card in KiB, the Available column that `df` prints for the
// card's second partition or, where that is not listed, for the first partition of a disk.
#include <string.h>

#include "blocks/sysinfo/probe.h"

using namespace scanblocks;

namespace {

constexpr Probe probe = {
    .file = "/mnt/ramdisk/ReadFreeSD.txt",
    .remove = "rm /mnt/ramdisk/ReadFreeSD.txt",
    .measure = "df >> /mnt/ramdisk/ReadFreeSD.txt",
};

}  // namespace

std::int32_t ReadFreeSD(void) {
  char text[kMaxOutput + 1];
  if (!run(probe, text)) return kNoOutput;
  const char* const card = "/dev/mmcblk1p2";
  return third_number_after(strstr(text, card) != nullptr ? card : "/dev/sda1", text);
}
