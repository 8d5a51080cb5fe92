// int2Double: four 16-bit words packed into a double.
//
//   Packed   the double of the 64 bits, Word1 the lowest and Word4 the highest quarter (sign,
//            exponent and the top of the fraction); every pattern comes out as it is, NaNs too
//
// Word1 being the first of four registers, the least significant register comes first (GHEFCDAB);
// for ABCDEFGH wire the registers in reverse. The low 16 bits of a word count; a negative one is 0.
#include "blocks/conversion/bits.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  std::uint32_t Word1;
  std::uint32_t Word2;
  std::uint32_t Word3;
  std::uint32_t Word4;
};
constexpr Field inputs[] = {
    FIELD(In, Word1, "bits 0 to 15"),
    FIELD(In, Word2, "bits 16 to 31"),
    FIELD(In, Word3, "bits 32 to 47"),
    FIELD(In, Word4, "bits 48 to 63"),
};

struct Out {
  Number Packed;
};
constexpr Field outputs[] = {
    FIELD(Out, Packed, "the double of the 64 bits"),
};

Out step(const In& in) {
  const std::uint64_t low = from_words(in.Word1, in.Word2);
  const std::uint64_t high = from_words(in.Word3, in.Word4);
  return {.Packed = std::bit_cast<double>(high << 32 | low)};
}

constexpr Block<In, Out> block = {
    .family = "conversion",
    .title = "four words packed into a double",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(int2Double, block)
