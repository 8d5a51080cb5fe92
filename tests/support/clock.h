// The clock of the tests: the test program's own gettimeofday, which the library calls. Each thread
// has a clock of its own.
#pragma once

#include <cstdint>

struct FakeClock {
  std::int64_t microseconds = 0;  // what the next reading gives
  std::int64_t step = 0;          // added after each reading
  int readings = 0;

  void set(double seconds) { microseconds = static_cast<std::int64_t>(seconds * 1e6 + 0.5); }
};

extern thread_local FakeClock fake_clock;
