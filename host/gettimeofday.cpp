// gettimeofday of this program, exported to the libraries it loads: the blocks ask it for the time
// and get the simulated clock where there is one.
#include <sys/time.h>

#include "host/clock.h"

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int gettimeofday(timeval* __restrict now, void* __restrict) noexcept {
  const scanhost::Duration since = scanhost::wall_clock().time_since_epoch();
  const auto seconds = std::chrono::floor<std::chrono::seconds>(since);
  now->tv_sec = static_cast<time_t>(seconds.count());
  now->tv_usec = static_cast<suseconds_t>((since - seconds).count());
  return 0;
}
