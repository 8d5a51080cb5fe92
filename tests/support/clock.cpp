#include "tests/support/clock.h"

#include <sys/time.h>

thread_local FakeClock fake_clock;

extern "C" __attribute__((visibility("default"))) int gettimeofday(timeval* now, void*) noexcept {
  now->tv_sec = static_cast<time_t>(fake_clock.microseconds / 1000000);
  now->tv_usec = static_cast<suseconds_t>(fake_clock.microseconds % 1000000);
  fake_clock.microseconds += fake_clock.step;
  ++fake_clock.readings;
  return 0;
}
