// Numbers as the texts of a state file. Independent of the host's locale, without heap.
#pragma once

#include <cstddef>
#include <cstdint>

namespace scanblocks {

// Capacity of a value text, its NUL included.
inline constexpr std::size_t kTextSize = 64;

// Each writes at most kTextSize - 1 characters and returns how many; it writes no NUL.
//
// format_fixed is the "%f" of the C library in the C locale, exact to the last digit: six
// decimals, halfway cases to even, no exponent; "inf", "-inf", "nan", "-nan". A longer text is
// cut at 63 characters.
std::size_t format_fixed(double value, char* text);
std::size_t format_signed(std::int32_t value, char* text);     // "%d"
std::size_t format_unsigned(std::uint64_t value, char* text);  // "%lu", "%llu"

// Each skips leading white space, converts the longest prefix that is a number and ignores the
// rest; a text without a number gives 0. The text ends at its NUL or after kTextSize characters.
double parse_fixed(const char* text);        // atof in the C locale
std::int32_t parse_int32(const char* text);  // atoi and atol of a 32-bit machine: saturates
std::int64_t parse_int64(const char* text);  // atoll: saturates

}  // namespace scanblocks
