// int2Float: two 16-bit words packed into a single-precision number.
//
//   Packed   the float of the 32 bits: Word1 is the low and Word2 the high half, or the other way
//            round with Swap
//
// Word1 being the first register of a pair, Swap off reads the order CDAB and Swap on ABCD. Swap is
// on for exactly 1.0 only. The low 16 bits of a word count: -1 is the word 65535. A signalling NaN
// comes out quiet, with its sign and its payload.
#include "blocks/conversion/bits.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  std::int32_t Word1;
  std::int32_t Word2;
  ExactFlag Swap;
};
constexpr Field inputs[] = {
    FIELD(In, Word1, "low half; with Swap the high half"),
    FIELD(In, Word2, "high half; with Swap the low half"),
    FIELD(In, Swap, "1: Word1 is the high half"),
};

struct Out {
  float Packed;
};
constexpr Field outputs[] = {
    FIELD(Out, Packed, "the float of the 32 bits"),
};

Out step(const In& in) {
  const auto word1 = static_cast<std::uint32_t>(in.Word1);
  const auto word2 = static_cast<std::uint32_t>(in.Word2);
  const std::uint32_t bits = in.Swap ? from_words(word2, word1) : from_words(word1, word2);
  return {.Packed = std::bit_cast<float>(bits)};
}

constexpr Block<In, Out> block = {
    .family = "conversion",
    .title = "two words packed into a float",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(int2Float, block)
