// Double2int: a double split into four 16-bit words.
//
//   Word1 to Word4   the quarters of the 64 bits from the lowest on, each 0 to 65535; sign,
//                    exponent and the top of the fraction are in Word4
//
// Word1 being the first of four registers, the least significant register comes first (GHEFCDAB);
// for ABCDEFGH wire the registers in reverse. Every pattern is split as it is, NaNs and -0.0 too.
#include "blocks/conversion/bits.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  Number Packed;
};
constexpr Field inputs[] = {
    FIELD(In, Packed, "the double"),
};

struct Out {
  std::uint32_t Word1;
  std::uint32_t Word2;
  std::uint32_t Word3;
  std::uint32_t Word4;
};
constexpr Field outputs[] = {
    FIELD(Out, Word1, "bits 0 to 15"),
    FIELD(Out, Word2, "bits 16 to 31"),
    FIELD(Out, Word3, "bits 32 to 47"),
    FIELD(Out, Word4, "bits 48 to 63"),
};

Out step(const In& in) {
  const auto bits = std::bit_cast<std::uint64_t>(in.Packed.value);
  return {.Word1 = word(bits, 0),
          .Word2 = word(bits, 1),
          .Word3 = word(bits, 2),
          .Word4 = word(bits, 3)};
}

constexpr Block<In, Out> block = {
    .family = "conversion",
    .title = "a double split into four words",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(Double2int, block)
