#include "frame/text.h"

#include <locale.h>
#include <stdlib.h>
#include <string.h>

#include <bit>

namespace scanblocks {
namespace {

constexpr std::size_t kMaxLength = kTextSize - 1;

// Writes the decimal digits of value, most significant first, and returns how many (1 to 20).
std::size_t put_digits(std::uint64_t value, char* text) {
  char reversed[20];
  std::size_t count = 0;
  while (value > UINT32_MAX) {
    reversed[count++] = static_cast<char>('0' + value % 10);
    value /= 10;
  }
  auto low = static_cast<std::uint32_t>(value);  // 32-bit division is much cheaper on the target
  do {
    reversed[count++] = static_cast<char>('0' + low % 10);
    low /= 10;
  } while (low != 0);
  for (std::size_t i = 0; i < count; ++i) text[i] = reversed[count - 1 - i];
  return count;
}

// round(fraction * 10^6 / 2^shift), halfway to even, for fraction < 2^53 and 1 <= shift.
std::uint32_t millionths(std::uint64_t fraction, int shift) {
  if (shift > 73) return 0;  // fraction * 10^6 < 2^73: below one half
  // The product in two words: high * 2^64 + low.
  const std::uint64_t lower = (fraction & 0xFFFFFFFFu) * 1000000u;
  const std::uint64_t upper = (fraction >> 32) * 1000000u + (lower >> 32);
  const std::uint64_t high = upper >> 32;
  const std::uint64_t low = (upper << 32) | (lower & 0xFFFFFFFFu);

  std::uint64_t quotient = 0;
  std::uint64_t half = 0;   // what lies above the rest's halfway bit decides
  bool above_half = false;  // any bit below the halfway bit
  if (shift < 64) {
    quotient = (high << (64 - shift)) | (low >> shift);
    half = (low >> (shift - 1)) & 1;
    above_half = (low & ((std::uint64_t{1} << (shift - 1)) - 1)) != 0;
  } else if (shift == 64) {
    quotient = high;
    half = low >> 63;
    above_half = (low << 1) != 0;
  } else {
    quotient = high >> (shift - 64);
    half = (high >> (shift - 65)) & 1;
    above_half = (high & ((std::uint64_t{1} << (shift - 65)) - 1)) != 0 || low != 0;
  }
  if (half != 0 && (above_half || (quotient & 1) != 0)) ++quotient;
  return static_cast<std::uint32_t>(quotient);
}

// The digits of mantissa * 2^exponent, an integer of 2^64 or more, cut at `room` characters.
std::size_t put_large(std::uint64_t mantissa, int exponent, char* text, std::size_t room) {
  constexpr std::uint32_t kBase = 1000000000;
  std::uint32_t limbs[36] = {static_cast<std::uint32_t>(mantissa % kBase),
                             static_cast<std::uint32_t>(mantissa / kBase)};
  std::size_t used = 2;
  while (exponent > 0) {
    const int step = exponent < 29 ? exponent : 29;
    exponent -= step;
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < used; ++i) {
      carry += static_cast<std::uint64_t>(limbs[i]) << step;
      limbs[i] = static_cast<std::uint32_t>(carry % kBase);
      carry /= kBase;
    }
    if (carry != 0) limbs[used++] = static_cast<std::uint32_t>(carry);
  }
  std::size_t length = put_digits(limbs[--used], text);
  while (used > 0 && length < room) {
    std::uint32_t limb = limbs[--used];
    char nine[9];
    for (int i = 8; i >= 0; --i, limb /= 10) nine[i] = static_cast<char>('0' + limb % 10);
    const std::size_t count = room - length < 9 ? room - length : 9;
    memcpy(text + length, nine, count);
    length += count;
  }
  return length;
}

bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Reads one character of a text; past its end it reads NUL.
struct Reader {
  const char* text;
  std::size_t at = 0;

  char peek() const { return at < kTextSize ? text[at] : '\0'; }
  void skip_space() {
    while (is_space(peek())) ++at;
  }
  bool take_sign() {  // true for minus
    const char sign = peek();
    if (sign == '-' || sign == '+') ++at;
    return sign == '-';
  }
};

// Any text that the quick way of parse_fixed leaves: exponents, hexadecimal, inf, nan, long texts.
double parse_any(const char* text) {
  char terminated[kTextSize + 1];
  const std::size_t length = strnlen(text, kTextSize);
  memcpy(terminated, text, length);
  terminated[length] = '\0';
  // For all categories of "C" the C library hands out its built-in locale and allocates nothing.
  return strtod_l(terminated, nullptr, newlocale(LC_ALL_MASK, "C", nullptr));
}

}  // namespace

std::size_t format_fixed(double value, char* text) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int biased = static_cast<int>(bits >> 52) & 0x7FF;
  const std::uint64_t stored = bits & ((std::uint64_t{1} << 52) - 1);
  std::size_t length = 0;
  if ((bits >> 63) != 0) text[length++] = '-';

  if (biased == 0x7FF) {
    memcpy(text + length, stored == 0 ? "inf" : "nan", 3);
    return length + 3;
  }

  // |value| = mantissa * 2^exponent
  const std::uint64_t mantissa = biased == 0 ? stored : stored | (std::uint64_t{1} << 52);
  const int exponent = (biased == 0 ? 1 : biased) - 1075;
  std::uint32_t decimals = 0;
  if (exponent > 11) {
    length += put_large(mantissa, exponent, text + length, kMaxLength - length);
  } else {
    std::uint64_t whole = 0;
    if (exponent >= 0) {
      whole = mantissa << exponent;
    } else {
      const int shift = -exponent;
      whole = shift < 53 ? mantissa >> shift : 0;
      const std::uint64_t fraction =
          shift < 53 ? mantissa & ((std::uint64_t{1} << shift) - 1) : mantissa;
      decimals = millionths(fraction, shift);
      if (decimals == 1000000) {
        decimals = 0;
        ++whole;
      }
    }
    length += put_digits(whole, text + length);
  }

  char tail[7] = {'.'};
  for (int i = 6; i > 0; --i, decimals /= 10) tail[i] = static_cast<char>('0' + decimals % 10);
  const std::size_t room = kMaxLength - length;
  const std::size_t count = room < sizeof tail ? room : sizeof tail;
  memcpy(text + length, tail, count);
  return length + count;
}

std::size_t format_signed(std::int32_t value, char* text) {
  if (value >= 0) return put_digits(static_cast<std::uint32_t>(value), text);
  *text = '-';
  return 1 + put_digits(0u - static_cast<std::uint32_t>(value), text + 1);
}

std::size_t format_unsigned(std::uint64_t value, char* text) { return put_digits(value, text); }

double parse_fixed(const char* text) {
  // The quick way: sign, digits, point, at most nine decimals, end. An integer up to 2^53 over a
  // power of ten is one exact division, correctly rounded.
  static constexpr double kPowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  constexpr std::uint64_t kExact = std::uint64_t{1} << 53;
  Reader reader{text};
  const bool minus = reader.take_sign();
  std::uint64_t digits = 0;
  std::size_t count = 0;
  for (; is_digit(reader.peek()) && digits < kExact; ++reader.at, ++count)
    digits = digits * 10 + static_cast<std::uint64_t>(reader.peek() - '0');
  std::size_t decimals = 0;
  if (reader.peek() == '.') {
    ++reader.at;
    for (; is_digit(reader.peek()) && digits < kExact; ++reader.at, ++decimals)
      digits = digits * 10 + static_cast<std::uint64_t>(reader.peek() - '0');
  }
  if (reader.peek() != '\0' || count == 0 || digits > kExact || decimals > 9)
    return parse_any(text);
  const double number = static_cast<double>(digits) / kPowers[decimals];
  return minus ? -number : number;
}

std::int64_t parse_int64(const char* text) {
  Reader reader{text};
  reader.skip_space();
  const bool minus = reader.take_sign();
  const std::uint64_t limit = static_cast<std::uint64_t>(INT64_MAX) + (minus ? 1 : 0);
  std::uint64_t number = 0;
  for (; is_digit(reader.peek()); ++reader.at) {
    const auto digit = static_cast<std::uint64_t>(reader.peek() - '0');
    number = number > (limit - digit) / 10 ? limit : number * 10 + digit;
  }
  return static_cast<std::int64_t>(minus ? 0 - number : number);
}

std::int32_t parse_int32(const char* text) {
  const std::int64_t number = parse_int64(text);
  if (number > INT32_MAX) return INT32_MAX;
  if (number < INT32_MIN) return INT32_MIN;
  return static_cast<std::int32_t>(number);
}

}  // namespace scanblocks
