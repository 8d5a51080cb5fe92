// Float2byte: a single-precision number split into four bytes.
//
//   Byte1 to Byte4   the bytes of the float from the lowest on, each 0 to 255; Byte4 has the sign
//
// Byte1 being the first byte of a message this is the order DCBA; for ABCD wire the bytes in
// reverse. Packed is first rounded to the nearest float: beyond 3.4e38 it is infinite. A NaN keeps
// its sign and the upper 22 bits of its payload and is quiet.
#include "blocks/conversion/bits.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  float Packed;
};
constexpr Field inputs[] = {
    FIELD(In, Packed, "the number, rounded to single precision"),
};

struct Out {
  std::uint32_t Byte1;
  std::uint32_t Byte2;
  std::uint32_t Byte3;
  std::uint32_t Byte4;
};
constexpr Field outputs[] = {
    FIELD(Out, Byte1, "bits 0 to 7"),
    FIELD(Out, Byte2, "bits 8 to 15"),
    FIELD(Out, Byte3, "bits 16 to 23"),
    FIELD(Out, Byte4, "bits 24 to 31"),
};

Out step(const In& in) {
  const auto bits = std::bit_cast<std::uint32_t>(in.Packed);
  return {.Byte1 = byte(bits, 0),
          .Byte2 = byte(bits, 1),
          .Byte3 = byte(bits, 2),
          .Byte4 = byte(bits, 3)};
}

constexpr Block<In, Out> block = {
    .family = "conversion",
    .title = "a float split into four bytes",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(Float2byte, block)
