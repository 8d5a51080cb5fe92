#include "blocks/conversion/int2hex.h"

extern "C" std::int32_t int2hex(std::int32_t x) { return x / 16 * 10 + x % 16; }
