#include "tests/support/clock.h"

#include <sys/time.h>

FakeClock fake_clock;

namespace {
thread_local FakeClock* own_clock = nullptr;
}

void use_clock(FakeClock* clock) { own_clock = clock; }

extern "C" __attribute__((visibility("default"))) int gettimeofday(timeval* now, void*) noexcept {
  FakeClock& clock = own_clock != nullptr ? *own_clock : fake_clock;
  now->tv_sec = static_cast<time_t>(clock.microseconds / 1000000);
  now->tv_usec = static_cast<suseconds_t>(clock.microseconds % 1000000);
  clock.microseconds += clock.step;
  ++clock.readings;
  return 0;
}
