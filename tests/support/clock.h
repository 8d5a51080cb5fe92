// The clock of the tests: the test program's own gettimeofday, which the library calls.
#pragma once

#include <cstdint>

struct FakeClock {
  std::int64_t microseconds = 0;  // what the next reading gives
  std::int64_t step = 0;          // added after each reading
  int readings = 0;

  void set(double seconds) { microseconds = static_cast<std::int64_t>(seconds * 1e6 + 0.5); }
};

extern FakeClock fake_clock;

// From now on the calls of this thread read `clock`; nullptr: fake_clock again.
void use_clock(FakeClock* clock);
