// The time base that PID, Integral and Derivative share: the age of the instance.
#pragma once

#include <cstdint>

#include "frame/clock.h"
#include "frame/number.h"

namespace scanblocks {

// Whole seconds from the stamp of the instance's first call to now, by a fresh clock reading:
// 0 to 2,147,483, rising and falling in turn every 24.8 days.
inline Number age_in_seconds(std::uint32_t first_call) {
  const std::int64_t seconds = elapsed(millisecond_stamp(), first_call) / 1000;
  return static_cast<double>(seconds);
}

}  // namespace scanblocks
