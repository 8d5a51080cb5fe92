// The ten packing blocks. Words and bytes are written as the patterns that they are.
#include <gtest/gtest.h>

#include <bit>

#include "tests/support/rig.h"

namespace {

TEST(Packing, int2Float) {
  trace("int2Float", {}, R"(
    Word1   Word2  Swap |  Packed
    0       0x3F80  0   |  1
    0       0x3F80  1   |  0x3F80p-149    the smallest float is 2^-149
    0       0x3F80  1.5 |  1              exactly 1 only
    0       0x3F80  nan |  1
    0x3F80  0       1   |  1
    0xB852  0xC331  0   | -0x1.6370a4p+7  -177.72
    0xB852 -15567   0   | -0x1.6370a4p+7  the same words as signed numbers
    65536  0x13F80  0   |  1              the low 16 bits count
    -0.9   16256.9  0   |  1              toward zero
    -1e99  1e99     0   | -nan            -2^31 and 2^31 - 1: 0xFFFF0000
    0      0x7F80   0   |  inf
    nan     0x4000  0   |  2
  )");
}

TEST(Packing, int2LongAndLong2int) {
  trace("int2Long", {}, R"(
    Word1   Word2   |  Packed
    0       65535   | -65536
    0       -1      | -65536
    65535   32767   |  2147483647
    0       0x8000  | -2147483648
    0x15678 0x11234 |  0x12345678
    nan     1       |  65536
  )");
  trace("Long2int", {}, R"(
    Packed          | Word1  Word2
    -5              | 0      0
    70000           | 4464   1
    70000.9         | 4464   1
    0x89ABCDEF      | 0xCDEF 0x89AB
    4294967294      | 65534  65535
    1e10            | 65535  65535
    nan             | 0      0
  )");
}

TEST(Packing, int2DoubleAndDouble2int) {
  trace("int2Double", {}, R"(
    Word1   Word2   Word3   Word4   | Packed
    0       0       0       0x3FF0  | 1
    0x2D18  0x5444  0x21FB  0x14009 | 0x1.921fb54442d18p+1
    -1      -5      nan     0x3FF0  | 1              a negative word is 0, not 65535
    1       0       0       0       | 0x1p-1074
  )");
  trace("Double2int", {}, R"(
    Packed                | Word1  Word2  Word3  Word4
    1                     | 0      0      0      0x3FF0
    -0                    | 0      0      0      0x8000
    0x1.921fb54442d18p+1  | 0x2D18 0x5444 0x21FB 0x4009
    -inf                  | 0      0      0      0xFFF0
  )");
}

TEST(Packing, Float2int) {
  trace("Float2int", {}, R"(
    Packed         Swap | Word1  Word2
    1               0   | 0      0x3F80
    1               1   | 0x3F80 0
    1               1.9 | 0x3F80 0        unlike int2Float
    1               2   | 0      0x3F80
    1               nan | 0      0x3F80
    0x1.2345670p0   0   | 0xA2B4 0x3F91   to the nearest float: ...A2B3.8, halfway to even
    0x1.2345650p0   0   | 0xA2B2 0x3F91   ...A2B2.8, halfway to even
    1e39            0   | 0      0x7F80
    0x1p-149        0   | 1      0
    0x1p-150        0   | 0      0
    -0              0   | 0      0x8000
  )");
}

TEST(Packing, Bytes) {
  trace("byte2Long", {}, R"(
    Byte1  Byte2  Byte3  Byte4  | Packed
    255    255    255    255    | -1
    1      0      0      0      |  1
    0x178  0x156  0x134  0x112  |  0x12345678
    -1     255.9  nan    0      |  0xFF00        a negative byte is 0
  )");
  trace("byte2Float", {}, R"(
    Byte1  Byte2  Byte3  Byte4  Swap | Packed
    0      0      128    63     0    | 1
    0      0      63     128    1    | 1
    0      0      128    63     1.5  | 1
    0x34   0x12   0x91   0x3F   0    | 0x1.222468p0
    0x12   0x34   0x3F   0x91   1    | 0x1.222468p0
    -1     256    0x180  0x3F   0    | 1
  )");
  trace("Float2byte", {}, R"(
    Packed         | Byte1 Byte2 Byte3 Byte4
    1              | 0     0     128   63
    -0x1.222468p0  | 0x34  0x12  0x91  0xBF
  )");
  trace("int2byte", {}, R"(
    Packed      | Byte1 Byte2
    0x1234      | 0x34  0x12
    -1          | 255   255
    65535       | 255   255
    0x71234     | 0x34  0x12
    1e10        | 255   255      2147483647
    nan         | 0     0
  )");
}

// Splits a double's pattern, or packs words to one, through a block.
std::uint64_t split(const char* block, std::uint64_t pattern, std::size_t parts, int width) {
  Rig rig(block);
  rig.in_pins[5].Value = std::bit_cast<double>(pattern);
  rig.call();
  std::uint64_t packed = 0;
  for (std::size_t i = parts; i-- > 0;)
    packed = packed << width | static_cast<std::uint64_t>(rig.out_pins[i].Value);
  return packed;
}
std::uint64_t pack(const char* block, std::uint64_t pattern, int parts, int width) {
  Rig rig(block);
  for (int i = 0; i < parts; ++i)
    rig.in_pins[5 + i].Value =
        static_cast<double>(pattern >> (i * width) & ((std::uint64_t{1} << width) - 1));
  rig.call();
  return std::bit_cast<std::uint64_t>(rig.out_pins[0].Value);
}

TEST(Packing, PatternsKeepTheirBits) {
  const std::uint64_t doubles[][2] = {
      // pattern of the double, pattern of the float that it is rounded to
      {0x7FF8000000000000, 0x7FC00000},
      {0xFFF8000000000000, 0xFFC00000},
      {0x7FF0000000000001, 0x7FC00000},  // signalling; the payload lies below the float's
      {0xFFF45678A0000000, 0xFFE2B3C5},
      {0x7FFFFFFFFFFFFFFF, 0x7FFFFFFF}};
  for (const auto& [pattern, single] : doubles) {
    EXPECT_EQ(split("Double2int", pattern, 4, 16), pattern) << std::hex << pattern;
    EXPECT_EQ(pack("int2Double", pattern, 4, 16), pattern) << std::hex << pattern;
    EXPECT_EQ(split("Float2int", pattern, 2, 16), single) << std::hex << pattern;
    EXPECT_EQ(split("Float2byte", pattern, 4, 8), single) << std::hex << pattern;
  }
  const std::uint64_t singles[][2] = {{0x80000000, 0x8000000000000000},
                                      {0xFFC00000, 0xFFF8000000000000},
                                      {0x7FEABCDE, 0x7FFD579BC0000000},
                                      {0xFF812345, 0xFFF82468A0000000}};  // signalling: made quiet
  for (const auto& [single, pattern] : singles) {
    EXPECT_EQ(pack("int2Float", single, 2, 16), pattern) << std::hex << single;
    EXPECT_EQ(pack("byte2Float", single, 4, 8), pattern) << std::hex << single;
  }
}

}  // namespace
