// byte2Float: four bytes packed into a single-precision number.
//
//   Packed   the float of the 32 bits, Byte1 the lowest and Byte4 the highest byte; with Swap
//            the two bytes of each half change places
//
// Byte1 being the first byte of a message, Swap off reads the order DCBA and Swap on CDAB; with the
// bytes wired in reverse, Swap off reads ABCD and Swap on BADC. Swap is on for exactly 1.0 only.
// The low 8 bits of a byte count; a negative one is 0. A signalling NaN comes out quiet, with its
// sign and its payload.
#include "blocks/conversion/bits.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  std::uint32_t Byte1;
  std::uint32_t Byte2;
  std::uint32_t Byte3;
  std::uint32_t Byte4;
  ExactFlag Swap;
};
constexpr Field inputs[] = {
    FIELD(In, Byte1, "bits 0 to 7; with Swap 8 to 15"),
    FIELD(In, Byte2, "bits 8 to 15; with Swap 0 to 7"),
    FIELD(In, Byte3, "bits 16 to 23; with Swap 24 to 31"),
    FIELD(In, Byte4, "bits 24 to 31; with Swap 16 to 23"),
    FIELD(In, Swap, "1: the bytes of each half change places"),
};

struct Out {
  float Packed;
};
constexpr Field outputs[] = {
    FIELD(Out, Packed, "the float of the 32 bits"),
};

Out step(const In& in) {
  const std::uint32_t bits = in.Swap ? from_bytes(in.Byte2, in.Byte1, in.Byte4, in.Byte3)
                                     : from_bytes(in.Byte1, in.Byte2, in.Byte3, in.Byte4);
  return {.Packed = std::bit_cast<float>(bits)};
}

constexpr Block<In, Out> block = {
    .family = "conversion",
    .title = "four bytes packed into a float",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(byte2Float, block)
