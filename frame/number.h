// Numbers that come out the same on every machine: saturating conversions, and a double whose
// not-a-numbers do not depend on the processor.
#pragma once

#include <bit>
#include <cstdint>

namespace scanblocks {

// Truncates toward zero; a value beyond the range gives the nearest limit, not-a-number gives 0.
constexpr std::int32_t to_int32(double value) {
  if (!(value > -2147483649.0)) return value != value ? 0 : INT32_MIN;
  return value < 2147483648.0 ? static_cast<std::int32_t>(value) : INT32_MAX;
}
constexpr std::uint32_t to_uint32(double value) {
  if (!(value > 0.0)) return 0;
  return value < 4294967296.0 ? static_cast<std::uint32_t>(value) : UINT32_MAX;
}

constexpr bool is_nan(double value) { return value != value; }

// Conversions between the two precisions that keep a NaN's sign and the upper 22 bits of its
// payload, and make it quiet. Some soft-float libraries lose the sign.
constexpr float to_single(double value) {
  if (!is_nan(value)) return static_cast<float>(value);
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const auto sign = static_cast<std::uint32_t>(bits >> 32) & 0x80000000u;
  const auto payload = static_cast<std::uint32_t>(bits >> 29) & 0x003FFFFFu;
  return std::bit_cast<float>(sign | 0x7FC00000u | payload);
}
constexpr double to_double(float value) {
  if (value == value) return static_cast<double>(value);
  const auto bits = std::bit_cast<std::uint32_t>(value);
  const auto sign = static_cast<std::uint64_t>(bits & 0x80000000u) << 32;
  const auto payload = static_cast<std::uint64_t>(bits & 0x003FFFFFu) << 29;
  return std::bit_cast<double>(sign | 0x7FF8000000000000u | payload);
}

// A double for calculations. IEEE 754 leaves the sign and payload of a NaN to the processor, and
// they show in the state files ("nan", "-nan"). Here a NaN operand comes out as it is, the left
// one first, and an invalid operation (0/0, inf-inf, 0*inf) gives the NaN with the sign bit set.
struct Number {
  double value = 0.0;

  constexpr Number() = default;
  constexpr Number(double number) : value(number) {}  // NOLINT: a number is meant to convert

  friend constexpr Number operator+(Number a, Number b) { return settle(a.value + b.value, a, b); }
  friend constexpr Number operator-(Number a, Number b) { return settle(a.value - b.value, a, b); }
  friend constexpr Number operator*(Number a, Number b) { return settle(a.value * b.value, a, b); }
  friend constexpr Number operator/(Number a, Number b) { return settle(a.value / b.value, a, b); }

  friend constexpr bool operator<(Number a, Number b) { return a.value < b.value; }
  friend constexpr bool operator<=(Number a, Number b) { return a.value <= b.value; }
  friend constexpr bool operator>(Number a, Number b) { return a.value > b.value; }
  friend constexpr bool operator>=(Number a, Number b) { return a.value >= b.value; }
  friend constexpr bool operator==(Number a, Number b) { return a.value == b.value; }

 private:
  static constexpr Number settle(double result, Number a, Number b) {
    if (!is_nan(result)) return result;
    if (is_nan(a.value)) return quiet(a.value);
    if (is_nan(b.value)) return quiet(b.value);
    return std::bit_cast<double>(std::uint64_t{0xFFF8000000000000});
  }
  static constexpr double quiet(double nan) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(nan) | 0x0008000000000000u);
  }
};

constexpr Number abs(Number a) {
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(a.value) & ~(std::uint64_t{1} << 63));
}
constexpr float abs(float a) {
  return std::bit_cast<float>(std::bit_cast<std::uint32_t>(a) & 0x7FFFFFFFu);
}

}  // namespace scanblocks
