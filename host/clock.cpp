#include "host/clock.h"

#include <ctime>
#include <optional>

namespace scanhost {
namespace {
std::optional<Time> simulated;
}

Time wall_clock() {
  if (simulated) return *simulated;
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return Time(std::chrono::seconds(now.tv_sec) +
              std::chrono::duration_cast<Duration>(std::chrono::nanoseconds(now.tv_nsec)));
}

void set_simulated_clock(Time now) { simulated = now; }

}  // namespace scanhost
