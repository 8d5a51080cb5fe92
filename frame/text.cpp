#include "frame/text.h"

#include <locale.h>
#include <stdlib.h>
#include <string.h>

#include <array>
#include <bit>

namespace scanblocks {
namespace {

constexpr std::size_t kMaxLength = kTextSize - 1;
constexpr std::size_t kDecimals = 6;
constexpr std::uint32_t kPowers[] = {1,      10,      100,      1000,      10000,
                                     100000, 1000000, 10000000, 100000000, 1000000000};
constexpr std::uint32_t kNineDigits = kPowers[9];

// "00" to "99": digits are made in pairs, with half the divisions.
constexpr auto kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

// Writes the last `count` decimal digits of value, with leading zeros.
void put_padded(std::uint32_t value, char* text, std::size_t count) {
  for (; count >= 2; value /= 100) {
    count -= 2;
    memcpy(text + count, &kPairs[std::size_t{value % 100} * 2], 2);
  }
  if (count != 0) *text = static_cast<char>('0' + value % 10);
}

// Writes the decimal digits of value and returns how many (1 to 20).
std::size_t put_digits(std::uint64_t value, char* text) {
  if (value < 10) {  // flags, states, and most counts
    *text = static_cast<char>('0' + value);
    return 1;
  }
  if (value > UINT32_MAX) {  // 32-bit division is much cheaper on the target
    const std::size_t count = put_digits(value / kNineDigits, text);
    put_padded(static_cast<std::uint32_t>(value % kNineDigits), text + count, 9);
    return count + 9;
  }
  const auto low = static_cast<std::uint32_t>(value);
  std::size_t count = 2;
  while (count < 10 && low >= kPowers[count]) ++count;
  put_padded(low, text, count);
  return count;
}

// round(fraction / 2^64 * 10^6 / 2^shift), halfway to even; shift is 0 to 30.
std::uint32_t millionths(std::uint64_t fraction, int shift) {
  const std::uint64_t low = (fraction & 0xFFFFFFFFu) * 1000000;
  const std::uint64_t high = (fraction >> 32) * 1000000 + (low >> 32);
  // The product without its lowest 32 bits; one bit stands for them.
  const std::uint64_t product = high << 1 | (static_cast<std::uint32_t>(low) != 0 ? 1 : 0);
  const int cut = 33 + shift;
  const std::uint64_t odd = product >> cut & 1;
  return static_cast<std::uint32_t>((product + (std::uint64_t{1} << (cut - 1)) - 1 + odd) >> cut);
}

// The digits of mantissa * 2^exponent, an integer of 2^64 or more, cut at `room` characters.
std::size_t put_large(std::uint64_t mantissa, int exponent, char* text, std::size_t room) {
  std::uint32_t limbs[36] = {static_cast<std::uint32_t>(mantissa % kNineDigits),
                             static_cast<std::uint32_t>(mantissa / kNineDigits)};
  std::size_t used = 2;
  while (exponent > 0) {
    const int step = exponent < 29 ? exponent : 29;  // 2^29 < 10^9: the carry is one limb
    exponent -= step;
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < used; ++i) {
      carry += static_cast<std::uint64_t>(limbs[i]) << step;
      limbs[i] = static_cast<std::uint32_t>(carry % kNineDigits);
      carry /= kNineDigits;
    }
    if (carry != 0) limbs[used++] = static_cast<std::uint32_t>(carry);
  }
  std::size_t length = put_digits(limbs[--used], text);
  while (used > 0 && length < room) {
    char nine[9];
    put_padded(limbs[--used], nine, 9);
    const std::size_t count = room - length < 9 ? room - length : 9;
    memcpy(text + length, nine, count);
    length += count;
  }
  return length;
}

bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Appends at most `limit` digits to number; returns where they end.
const char* read_digits(const char* text, std::size_t limit, std::uint64_t& number) {
  for (const char* const end = text + limit; text < end && is_digit(*text); ++text)
    number = number * 10 + static_cast<std::uint32_t>(*text - '0');
  return text;
}

// digits / divisor, correctly rounded, for digits of 2^53 and more and a quotient below 2^53.
double divide(std::uint64_t digits, std::uint32_t divisor) {
  const std::uint64_t whole = digits / divisor;
  const int shift = std::countl_zero(whole) - 11;  // gives the quotient 53 bits
  const std::uint64_t rest = digits % divisor << shift;
  std::uint64_t quotient = (whole << shift) + rest / divisor;
  const std::uint64_t twice = rest % divisor * 2;
  if (twice > divisor || (twice == divisor && (quotient & 1) != 0)) ++quotient;
  return static_cast<double>(quotient) / static_cast<double>(std::uint64_t{1} << shift);
}

// Any text that the quick way of parse_fixed leaves: exponents, hexadecimal, inf, nan, long texts.
double parse_any(const char* text) {
  char terminated[kTextSize + 1];
  const std::size_t length = strnlen(text, kTextSize);
  memcpy(terminated, text, length);
  terminated[length] = '\0';
  // For all categories of "C" the C library hands out its built-in locale and allocates nothing.
  return strtod_l(terminated, nullptr, newlocale(LC_ALL_MASK, "C", nullptr));
}

// Any text that the quick way of parse_int64 leaves.
std::int64_t parse_any_integer(const char* text) {
  const char* const end = text + kTextSize;
  while (text < end && is_space(*text)) ++text;
  const bool minus = text < end && *text == '-';
  if (text < end && (*text == '-' || *text == '+')) ++text;
  const std::uint64_t limit = static_cast<std::uint64_t>(INT64_MAX) + (minus ? 1 : 0);
  std::uint64_t number = 0;
  for (; text < end && is_digit(*text); ++text) {
    number =
        number > INT64_MAX / 10 ? limit : number * 10 + static_cast<std::uint32_t>(*text - '0');
    if (number > limit) number = limit;
  }
  return static_cast<std::int64_t>(minus ? 0 - number : number);
}

}  // namespace

std::size_t format_fixed(double value, char* text) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int biased = static_cast<int>(bits >> 52) & 0x7FF;
  const std::uint64_t stored = bits & ((std::uint64_t{1} << 52) - 1);
  *text = '-';
  std::size_t length = (bits >> 63) != 0 ? 1 : 0;

  if (biased == 0x7FF) {
    memcpy(text + length, stored == 0 ? "inf" : "nan", 3);
    return length + 3;
  }

  // |value| = mantissa * 2^exponent
  const std::uint64_t mantissa = biased == 0 ? stored : stored | (std::uint64_t{1} << 52);
  const int exponent = (biased == 0 ? 1 : biased) - 1075;
  if (exponent > 11) {
    length += put_large(mantissa, exponent, text + length, kMaxLength - length);
    const std::size_t room = kMaxLength - length;
    const std::size_t count = room < kDecimals + 1 ? room : kDecimals + 1;
    memcpy(text + length, ".000000", count);
    return length + count;
  }
  std::uint64_t whole = 0;
  std::uint32_t decimals = 0;
  if (exponent >= 0) {
    whole = mantissa << exponent;
  } else if (exponent > -53) {
    whole = mantissa >> -exponent;
    decimals = millionths(mantissa << (64 + exponent), 0);
  } else {
    decimals = millionths(mantissa << 11, exponent > -83 ? -53 - exponent : 30);
  }
  if (decimals == 1000000) {
    decimals = 0;
    ++whole;
  }
  length += put_digits(whole, text + length);
  text[length] = '.';
  put_padded(decimals, text + length + 1, kDecimals);
  return length + 1 + kDecimals;
}

std::size_t format_signed(std::int32_t value, char* text) {
  *text = '-';
  const auto bits = static_cast<std::uint32_t>(value);
  const std::uint32_t sign = bits >> 31;
  return sign + put_digits(sign != 0 ? 0 - bits : bits, text + sign);
}

std::size_t format_unsigned(std::uint64_t value, char* text) { return put_digits(value, text); }

double parse_fixed(const char* text) {
  // The quick way: minus, up to 15 digits, point, up to eight decimals, end; 19 digits in all.
  const bool minus = *text == '-';
  const char* const first = text + (minus ? 1 : 0);
  std::uint64_t digits = 0;
  const char* end = read_digits(first, 15, digits);
  const auto whole = static_cast<std::size_t>(end - first);
  std::size_t decimals = 0;
  if (*end == '.') {
    const char* const point = end;
    end = read_digits(point + 1, 8, digits);
    decimals = static_cast<std::size_t>(end - point - 1);
  }
  if (*end != '\0' || whole == 0 || whole + decimals > 19) return parse_any(text);
  const std::uint32_t divisor = kPowers[decimals];
  // An integer up to 2^53 over a power of ten is one exact division, correctly rounded.
  const double number = digits <= std::uint64_t{1} << 53 ? static_cast<double>(digits) / divisor
                                                         : divide(digits, divisor);
  return minus ? -number : number;
}

std::int64_t parse_int64(const char* text) {
  // The quick way: minus, up to 17 digits, end.
  const bool minus = *text == '-';
  const char* const first = text + (minus ? 1 : 0);
  std::uint64_t digits = 0;
  const char* const end = read_digits(first, 17, digits);
  if (*end != '\0' || end == first) return parse_any_integer(text);
  return static_cast<std::int64_t>(minus ? 0 - digits : digits);
}

std::int32_t parse_int32(const char* text) {
  if (is_digit(text[0]) && text[1] == '\0') return text[0] - '0';
  const std::int64_t number = parse_int64(text);
  if (number > INT32_MAX) return INT32_MAX;
  if (number < INT32_MIN) return INT32_MIN;
  return static_cast<std::int32_t>(number);
}

}  // namespace scanblocks
