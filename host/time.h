// Durations and times: their types and their texts.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace scanhost {

using Duration = std::chrono::microseconds;
using Time = std::chrono::sys_time<Duration>;  // wall clock, UTC

// "100ms", "1s", "10m", "1h", "1d", "1.5s", "12m30s"; units us, ms, s, m or min, h, d, from the
// largest to the smallest. Nothing for anything else, and for more than 36500 days.
std::optional<Duration> parse_duration(std::string_view text);
std::string format_duration(Duration duration);

// ISO 8601: "2024-01-31", "2024-01-31T12:00", "2024-01-31 12:00:00.250"; local time, unless "Z" or
// an offset "+01:00" follows. Nothing for anything else.
std::optional<Time> parse_time(std::string_view text);

// "2024-01-31T12:00:00.250+01:00": local time with milliseconds. Writes to `text`, which has room
// for kTimeSize characters, and returns their number. Does not allocate.
inline constexpr std::size_t kTimeSize = 64;
std::size_t format_time(Time time, char* text);

// What to write where a duration or time is wrong.
inline constexpr const char* kDurationExamples =
    "for instance \"100ms\", \"1s\", \"10m\" or \"1h30m\"";
inline constexpr const char* kTimeExamples =
    "for instance 2024-01-31T12:00:00 (local time) or 2024-01-31T11:00:00Z";

}  // namespace scanhost
