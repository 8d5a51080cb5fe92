// Numbers as texts: of signals, recorded values, outputs and traces. Independent of the locale,
// without allocation.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace scanhost {

// The first number in a text, whatever stands before and after it: "MemFree:  1234 kB" is 1234,
// "0x1F" is 31. Nothing if there is none.
std::optional<double> find_number(std::string_view text);

// The number that the whole text is, apart from blanks around it; also "nan" and "inf".
std::optional<double> parse_number(std::string_view text);

// The shortest text that gives the same number again, without an exponent where the magnitude is
// 0 or from 1e-5 to below 1e21; "nan", "inf", "-inf". Writes at most kNumberSize characters and no
// NUL, and returns how many.
inline constexpr std::size_t kNumberSize = 32;
std::size_t format_number(double value, char* text);

}  // namespace scanhost
