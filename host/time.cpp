#include "host/time.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace scanhost {
namespace {

using namespace std::chrono;

struct Unit {
  std::string_view name;
  Duration length;
};
// From the largest to the smallest; the first name of a length is the one that is printed.
constexpr Unit kUnits[] = {
    {"d", days(1)},    {"h", hours(1)},         {"m", minutes(1)},       {"min", minutes(1)},
    {"s", seconds(1)}, {"ms", milliseconds(1)}, {"us", microseconds(1)},
};
constexpr double kLongest = 86400e6 * 36500;  // in ns it still fits 64 bits

// Reads exactly `digits` digits and removes them from the front of the text.
std::optional<int> take_digits(std::string_view& text, std::size_t digits) {
  int value = 0;
  if (text.size() < digits) return {};
  for (const char c : text.substr(0, digits)) {
    if (c < '0' || c > '9') return {};
    value = value * 10 + (c - '0');
  }
  text.remove_prefix(digits);
  return value;
}

bool take(std::string_view& text, std::string_view one_of) {
  if (text.empty() || one_of.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<int> take_after(std::string_view& text, std::string_view separator) {
  if (!take(text, separator)) return {};
  return take_digits(text, 2);
}

std::optional<Duration> take_fraction(std::string_view& text) {
  std::int64_t value = 0, unit = 1000000;
  bool any = false;
  while (!text.empty() && text.front() >= '0' && text.front() <= '9') {
    unit /= 10;
    value += (text.front() - '0') * unit;  // digits beyond the microseconds are dropped
    text.remove_prefix(1);
    any = true;
  }
  if (!any) return {};
  return Duration(value);
}

std::optional<Duration> take_clock(std::string_view& text) {
  const auto hour = take_digits(text, 2);
  const auto minute = take_after(text, ":");
  if (!hour || !minute || *hour > 23 || *minute > 59) return {};
  Duration clock = hours(*hour) + minutes(*minute);
  if (!take(text, ":")) return clock;
  const auto second = take_digits(text, 2);
  if (!second || *second > 59) return {};
  clock += seconds(*second);
  if (!take(text, ".,")) return clock;
  const auto fraction = take_fraction(text);
  if (!fraction) return {};
  return clock + *fraction;
}

std::optional<Time> local(year_month_day date, Duration clock) {
  const hh_mm_ss parts(clock);
  std::tm tm{};
  tm.tm_year = static_cast<int>(date.year()) - 1900;
  tm.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
  tm.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
  tm.tm_hour = static_cast<int>(parts.hours().count());
  tm.tm_min = static_cast<int>(parts.minutes().count());
  tm.tm_sec = static_cast<int>(parts.seconds().count());
  tm.tm_isdst = -1;
  tm.tm_wday = -1;
  const std::time_t seconds_since = std::mktime(&tm);
  if (tm.tm_wday < 0) return {};  // beyond the range of time_t
  return Time(seconds(seconds_since) + parts.subseconds());
}

}  // namespace

std::optional<Duration> parse_duration(std::string_view text) {
  double sum = 0.0;
  const Unit* last = nullptr;
  do {
    double count = 0.0;
    const char* end = text.data() + text.size();
    const auto number = std::from_chars(text.data(), end, count, std::chars_format::fixed);
    if (number.ec != std::errc() || std::signbit(count) || !std::isfinite(count)) return {};
    text.remove_prefix(static_cast<std::size_t>(number.ptr - text.data()));
    const std::size_t letters = std::min(text.find_first_of("0123456789."), text.size());
    const Unit* unit = nullptr;
    for (const Unit& candidate : kUnits)
      if (candidate.name == text.substr(0, letters)) unit = &candidate;
    if (unit == nullptr || (last != nullptr && unit->length >= last->length)) return {};
    sum += count * static_cast<double>(unit->length.count());
    if (sum > kLongest) return {};
    text.remove_prefix(letters);
    last = unit;
  } while (!text.empty());
  return Duration(std::llround(sum));
}

std::string format_duration(Duration duration) {
  std::string text;
  for (const Unit& unit : kUnits) {
    const std::int64_t count = duration / unit.length;
    if (count == 0) continue;
    text += std::to_string(count) + std::string(unit.name);
    duration %= unit.length;
  }
  return text.empty() ? "0s" : text;
}

std::optional<Time> parse_time(std::string_view text) {
  const auto year_number = take_digits(text, 4);
  const auto month_number = take_after(text, "-");
  const auto day_number = take_after(text, "-");
  if (!year_number || !month_number || !day_number) return {};
  const year_month_day date(year(*year_number), month(static_cast<unsigned>(*month_number)),
                            day(static_cast<unsigned>(*day_number)));
  if (!date.ok()) return {};
  Duration clock{};
  if (take(text, "T ")) {
    const auto given = take_clock(text);
    if (!given) return {};
    clock = *given;
  }
  if (text.empty()) return local(date, clock);
  const Time utc = sys_days(date) + clock;
  if (text == "Z") return utc;
  const bool west = text.front() == '-';
  if (!take(text, "+-")) return {};
  const auto hour = take_digits(text, 2);
  take(text, ":");
  const auto minute = text.empty() ? std::optional(0) : take_digits(text, 2);
  if (!hour || !minute || !text.empty() || *hour > 23 || *minute > 59) return {};
  const Duration offset = hours(*hour) + minutes(*minute);
  return west ? utc + offset : utc - offset;
}

std::size_t format_time(Time time, char* text) {
  const auto second = floor<seconds>(time);
  const auto since = static_cast<std::time_t>(second.time_since_epoch().count());
  std::tm tm{};
  localtime_r(&since, &tm);
  const long offset = std::labs(tm.tm_gmtoff) / 60;
  const int length =
      std::snprintf(text, kTimeSize, "%04d-%02d-%02dT%02d:%02d:%02d.%03d%c%02ld:%02ld",
                    tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec,
                    static_cast<int>((time - second) / milliseconds(1)),
                    tm.tm_gmtoff < 0 ? '-' : '+', offset / 60, offset % 60);
  return static_cast<std::size_t>(length);
}

}  // namespace scanhost
