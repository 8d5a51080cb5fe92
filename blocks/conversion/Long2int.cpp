// Long2int: an unsigned 32-bit integer split into two 16-bit words.
//
//   Word1   the low half, 0 to 65535
//   Word2   the high half, 0 to 65535
//
// Word1 being the first register of a pair this is the order CDAB; for ABCD exchange the wires. A
// negative Packed gives 0 and 0, so this is the reverse of int2Long for numbers from 0 on only; a
// Packed of 4294967295 or more gives 65535 twice.
#include "blocks/conversion/bits.h"
#include "frame/block.h"

using namespace scanblocks;

namespace {

struct In {
  std::uint32_t Packed;
};
constexpr Field inputs[] = {
    FIELD(In, Packed, "the integer, 0 to 4294967295"),
};

struct Out {
  std::uint32_t Word1;
  std::uint32_t Word2;
};
constexpr Field outputs[] = {
    FIELD(Out, Word1, "low half"),
    FIELD(Out, Word2, "high half"),
};

Out step(const In& in) { return {.Word1 = word(in.Packed, 0), .Word2 = word(in.Packed, 1)}; }

constexpr Block<In, Out> block = {
    .family = "conversion",
    .title = "an unsigned integer split into two words",
    .inputs = inputs,
    .outputs = outputs,
    .step = step,
};

}  // namespace

BLOCK(Long2int, block)
