// byte2Long: four bytes packed into a signed 32-bit integer.
//
//   Packed   Byte1 is the lowest and Byte4 the highest byte, two's complement: -2147483648 to
//            2147483647
//
// Byte1 being the first byte of a message this is the order DCBA; for ABCD wire the bytes in
// reverse. The low 8 bits of a byte count; a negative one is 0.
#include "blocks/conversion/bits.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  std::uint32_t Byte1;
  std::uint32_t Byte2;
  std::uint32_t Byte3;
  std::uint32_t Byte4;
};
constexpr Field inputs[] = {
    FIELD(In, Byte1, "bits 0 to 7"),
    FIELD(In, Byte2, "bits 8 to 15"),
    FIELD(In, Byte3, "bits 16 to 23"),
    FIELD(In, Byte4, "bits 24 to 31"),
};

struct Out {
  std::int32_t Packed;
};
constexpr Field outputs[] = {
    FIELD(Out, Packed, "the signed integer of the 32 bits"),
};

Out step(const In& in) {
  return {.Packed = static_cast<std::int32_t>(from_bytes(in.Byte1, in.Byte2, in.Byte3, in.Byte4))};
}

constexpr Block<In, Out> block = {
    .family = "conversion",
    .title = "four bytes packed into a signed integer",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(byte2Long, block)
