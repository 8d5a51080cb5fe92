#include "host/number.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace scanhost {
namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// True where a number begins: a digit, or a point before one.
bool begins_number(std::string_view text) {
  if (text.starts_with('.')) text.remove_prefix(1);
  return !text.empty() && is_digit(text.front());
}

}  // namespace

std::optional<double> find_number(std::string_view text) {
  std::size_t start = 0;
  while (start < text.size() && !begins_number(text.substr(start))) ++start;
  if (start == text.size()) return {};
  const bool negative = start > 0 && text[start - 1] == '-';
  const char* begin = text.data() + start;
  const char* end = text.data() + text.size();
  double value = 0.0;
  if (text.substr(start).starts_with("0x")) {
    std::uint64_t bits = 0;
    if (std::from_chars(begin + 2, end, bits, 16).ec != std::errc()) return {};
    value = static_cast<double>(bits);
  } else if (std::from_chars(begin, end, value).ec != std::errc()) {
    return {};
  }
  return negative ? -value : value;
}

std::optional<double> parse_number(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  text = text.substr(0, text.find_last_not_of(kBlanks) + 1);
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0.0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end) return {};
  return value;
}

std::size_t format_number(double value, char* text) {
  if (std::isnan(value)) value = std::fabs(value);
  const double magnitude = std::fabs(value);
  const bool fixed = magnitude == 0.0 || (magnitude >= 1e-5 && magnitude < 1e21);
  char* end = text + kNumberSize;
  const auto result = fixed ? std::to_chars(text, end, value, std::chars_format::fixed)
                            : std::to_chars(text, end, value);
  return static_cast<std::size_t>(result.ptr - text);
}

}  // namespace scanhost
