// Float2int: a single-precision number split into two 16-bit words.
//
//   Word1   the low half of the float's bits, 0 to 65535; with Swap the high half
//   Word2   the high half (sign, exponent and the top of the fraction); with Swap the low half
//
// Word1 being the first register of a pair, Swap off writes the order CDAB and Swap on ABCD. Swap
// is on from 1.0 up to but not including 2.0, unlike that of int2Float. Packed is first rounded to
// the nearest float: beyond 3.4e38 it is infinite. A NaN keeps its sign and the upper 22 bits of
// its payload and is quiet.
#include "blocks/conversion/bits.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  float Packed;
  Flag Swap;
};
constexpr Field inputs[] = {
    FIELD(In, Packed, "the number, rounded to single precision"),
    FIELD(In, Swap, "1: Word1 gets the high half"),
};

struct Out {
  std::uint32_t Word1;
  std::uint32_t Word2;
};
constexpr Field outputs[] = {
    FIELD(Out, Word1, "low half; with Swap the high half"),
    FIELD(Out, Word2, "high half; with Swap the low half"),
};

Out step(const In& in) {
  const auto bits = std::bit_cast<std::uint32_t>(in.Packed);
  const int first = in.Swap ? 1 : 0;
  return {.Word1 = word(bits, first), .Word2 = word(bits, 1 - first)};
}

constexpr Block<In, Out> block = {
    .family = "conversion",
    .title = "a float split into two words",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(Float2int, block)
