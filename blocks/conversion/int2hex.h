// int2hex: one BCD byte, two decimal digits, as a number.
#pragma once

#include <cstdint>

// x / 16 * 10 + x % 16: 0x25 (37) gives 25. A digit above 9 counts as it is: 0x1F gives 25 too. A
// negative x gives the negative result, and an x above one byte is not split into further digits.
// Protected: the library calls its own int2hex, also in a host that has a function of this name.
extern "C" __attribute__((visibility("protected"))) std::int32_t int2hex(std::int32_t x);
