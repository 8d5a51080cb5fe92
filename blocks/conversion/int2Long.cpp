// int2Long: two 16-bit words packed into a signed 32-bit integer.
//
//   Packed   Word1 is the low and Word2 the high half, two's complement: -2147483648 to 2147483647
//
// Word1 being the first register of a pair this is the order CDAB; for ABCD exchange the wires. The
// low 16 bits of a word count: -1 is the word 65535.
#include "blocks/conversion/bits.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  std::int32_t Word1;
  std::int32_t Word2;
};
constexpr Field inputs[] = {
    FIELD(In, Word1, "low half"),
    FIELD(In, Word2, "high half"),
};

struct Out {
  std::int32_t Packed;
};
constexpr Field outputs[] = {
    FIELD(Out, Packed, "the signed integer of the 32 bits"),
};

Out step(const In& in) {
  const std::uint32_t bits =
      from_words(static_cast<std::uint32_t>(in.Word1), static_cast<std::uint32_t>(in.Word2));
  return {.Packed = static_cast<std::int32_t>(bits)};
}

constexpr Block<In, Out> block = {
    .family = "conversion",
    .title = "two words packed into a signed integer",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(int2Long, block)
