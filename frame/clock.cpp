#include "frame/clock.h"

#include <sys/time.h>
#include <time.h>

namespace {

timeval time_of_day() {
  timeval now{};
  gettimeofday(&now, nullptr);
  return now;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) std::int64_t zelgetTime(void) {
  const timeval now = time_of_day();
  // Unsigned, so that an absurd clock wraps.
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(now.tv_sec) * 1000u +
                                   static_cast<std::uint64_t>(now.tv_usec / 1000));
}

extern "C" __attribute__((visibility("default"))) long zelgetTimeSec(void) {
  return static_cast<long>(time_of_day().tv_sec);
}

namespace scanblocks {

std::uint32_t millisecond_stamp() { return static_cast<std::uint32_t>(zelgetTime()); }

std::uint32_t second_stamp() { return static_cast<std::uint32_t>(zelgetTimeSec()); }

LocalTime local_time() {
  const time_t second = time_of_day().tv_sec;
  tzset();  // localtime_r alone need not look at TZ again
  tm local{};
  if (localtime_r(&second, &local) == nullptr) return {};
  return {local.tm_hour, local.tm_min, local.tm_mday};
}

}  // namespace scanblocks
