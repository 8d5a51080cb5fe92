// The wall clock, time stamps and elapsed time. Every function here that reads the clock asks
// gettimeofday again, through the dynamic symbol, so that a host can supply its own.
#pragma once

#include <cstdint>

// Milliseconds since 1970-01-01 UTC, microseconds truncated.
extern "C" std::int64_t zelgetTime(void);
// Seconds since 1970-01-01 UTC, in the width of the platform's time value.
extern "C" long zelgetTimeSec(void);

namespace scanblocks {

// Stamps are the low 32 bits of a clock reading.
std::uint32_t millisecond_stamp();
std::uint32_t second_stamp();

// From one stamp to another, wrapping: right for up to 2^31 - 1 units either way.
constexpr std::int32_t difference(std::uint32_t now, std::uint32_t since) {
  return static_cast<std::int32_t>(now - since);
}

// The same without its sign: 0 to 2^31. A clock that was set back counts as elapsed time.
constexpr std::int64_t elapsed(std::uint32_t now, std::uint32_t since) {
  const std::int64_t signed_difference = difference(now, since);
  return signed_difference < 0 ? -signed_difference : signed_difference;
}

// From one full clock reading to another, with its sign: negative after a clock that was set back.
constexpr std::int64_t difference64(std::int64_t now, std::int64_t since) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(now) -
                                   static_cast<std::uint64_t>(since));
}

struct LocalTime {
  std::int32_t hour;    // 0 to 23
  std::int32_t minute;  // 0 to 59
  std::int32_t day;     // of the month, 1 to 31
};
// The local time of the current second. Follows a change of the time zone (TZ) at once.
LocalTime local_time();

}  // namespace scanblocks
