// Words (16 bits) and bytes of a bit pattern, for the blocks that pack registers. Word 0 and byte 0
// are the least significant ones. A float or double whose pattern is a NaN must only be copied on
// its way: arithmetic, and a conversion between the two precisions, would change it.
#pragma once

#include <bit>
#include <cstdint>

namespace scanblocks {

constexpr std::uint32_t word(std::uint64_t pattern, int number) {
  return static_cast<std::uint32_t>(pattern >> (16 * number)) & 0xFFFFu;
}
constexpr std::uint32_t byte(std::uint32_t pattern, int number) {
  return (pattern >> (8 * number)) & 0xFFu;
}

// The parts from the least significant one on; what a part has beyond its width is dropped.
constexpr std::uint32_t from_words(std::uint32_t word0, std::uint32_t word1) {
  return (word0 & 0xFFFFu) | word1 << 16;
}
constexpr std::uint32_t from_bytes(std::uint32_t byte0, std::uint32_t byte1, std::uint32_t byte2,
                                   std::uint32_t byte3) {
  return byte(byte0, 0) | byte(byte1, 0) << 8 | byte(byte2, 0) << 16 | byte3 << 24;
}

}  // namespace scanblocks
