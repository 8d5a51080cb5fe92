// bcd2dec: six BCD bytes, two digits each, as one decimal number.
//
//   Decimal   the twelve digits, Bcd1 the first two and Bcd6 the last two: 0 to 999999999999
//
// A byte that is no BCD (a digit above 9) counts x / 16 * 10 + x % 16: 0xFF adds 165 in its place.
// A number above 255 or below 0 is not cut to a byte, it goes through the same formula.
#include <initializer_list>

#include "blocks/conversion/int2hex.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  std::int32_t Bcd1;
  std::int32_t Bcd2;
  std::int32_t Bcd3;
  std::int32_t Bcd4;
  std::int32_t Bcd5;
  std::int32_t Bcd6;
};
constexpr Field inputs[] = {
    FIELD(In, Bcd1, "digits 12 and 11, the most significant"),
    FIELD(In, Bcd2, "digits 10 and 9"),
    FIELD(In, Bcd3, "digits 8 and 7"),
    FIELD(In, Bcd4, "digits 6 and 5"),
    FIELD(In, Bcd5, "digits 4 and 3"),
    FIELD(In, Bcd6, "digits 2 and 1, the least significant"),
};

struct Out {
  std::int64_t Decimal;
};
constexpr Field outputs[] = {
    FIELD(Out, Decimal, "the decimal number"),
};

Out step(const In& in) {
  // Unsigned, so that inputs far beyond a byte (Bcd1 above 1.4e9) wrap.
  std::uint64_t decimal = 0;
  for (const std::int32_t bcd : {in.Bcd1, in.Bcd2, in.Bcd3, in.Bcd4, in.Bcd5, in.Bcd6})
    decimal = decimal * 100 + static_cast<std::uint64_t>(std::int64_t{int2hex(bcd)});
  return {.Decimal = static_cast<std::int64_t>(decimal)};
}

constexpr Block<In, Out> block = {
    .family = "conversion",
    .title = "six BCD bytes as a decimal number",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(bcd2dec, block)
