// int2byte: a 16-bit word split into two bytes.
//
//   Byte1   the low byte, 0 to 255
//   Byte2   the high byte, 0 to 255
//
// Packed may be signed or unsigned: -1 and 65535 both give 255 and 255. Higher bits are dropped.
#include "blocks/conversion/bits.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  std::int32_t Packed;
};
constexpr Field inputs[] = {
    FIELD(In, Packed, "the word"),
};

struct Out {
  std::uint32_t Byte1;
  std::uint32_t Byte2;
};
constexpr Field outputs[] = {
    FIELD(Out, Byte1, "bits 0 to 7"),
    FIELD(Out, Byte2, "bits 8 to 15"),
};

Out step(const In& in) {
  const auto bits = static_cast<std::uint32_t>(in.Packed);
  return {.Byte1 = byte(bits, 0), .Byte2 = byte(bits, 1)};
}

constexpr Block<In, Out> block = {
    .family = "conversion",
    .title = "a word split into two bytes",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(int2byte, block)
