// The ten packing blocks and bcd2dec. Words and bytes are written as the patterns that they are.
#include "tests/support/rig.h"

namespace {

TEST(Packing, Words) {
  trace("int2Float", {}, R"(
    Word1   Word2  Swap |  Packed
    0       0x3F80  1.5 |  1              exactly 1 only
    0       0x3F80  1   |  0x3F80p-149    the smallest float is 2^-149
    0xB852  0xC331  nan | -0x1.6370a4p+7  -177.72
    0xB852 -15567   0   | -0x1.6370a4p+7  the same words as signed numbers
    -0.9    0x13F80 0   |  1              toward zero, the low 16 bits
    -1e99   1e99    0   | -nan            -2^31 and 2^31 - 1: 0xFFFF0000
  )");
  trace("int2Long", {}, R"(
    Word1   Word2   |  Packed
    0       -1      | -65536
    65535   32767   |  2147483647
    0x15678 0x18000 | -2147461512
  )");
  trace("Long2int", {}, R"(
    Packed          | Word1  Word2
    -5              | 0      0
    70000.9         | 4464   1
    4294967294      | 65534  65535
    1e10            | 65535  65535
  )");
  trace("int2Double", {}, R"(
    Word1   Word2   Word3   Word4   | Packed
    0x2D18  0x5444  0x21FB  0x14009 | 0x1.921fb54442d18p+1
    -1      -5      nan     0x3FF0  | 1              a negative word is 0, not 65535
  )");
  trace("Float2int", {}, R"(
    Packed         Swap | Word1  Word2
    1               1.9 | 0x3F80 0        unlike int2Float
    1               2   | 0      0x3F80
    0x1.2345670p0   0   | 0xA2B4 0x3F91   to the nearest float: ...A2B3.8, halfway to even
    0x1.2345650p0   0   | 0xA2B2 0x3F91   ...A2B2.8, halfway to even
    1e39            0   | 0      0x7F80
  )");
}

TEST(Packing, Bytes) {
  trace("byte2Long", {}, R"(
    Byte1  Byte2  Byte3  Byte4  | Packed
    0x178  0x156  0x134  0x112  |  0x12345678
    -1     -255.9 -2     255    | -0x1000000     a negative byte is 0
  )");
  trace("byte2Float", {}, R"(
    Byte1  Byte2  Byte3  Byte4  Swap | Packed
    0x34   0x12   0x91   0x3F   1.5  | 0x1.222468p0
    0x12   0x34   0x3F   0x91   1    | 0x1.222468p0
    -1     256    0x180  0x3F   0    | 1
  )");
  trace("int2byte", {}, R"(
    Packed      | Byte1 Byte2
    0x71234     | 0x34  0x12
    -1          | 255   255
  )");
}

// Signs of zero, quiet and signalling not-a-numbers with their payloads: what a double keeps, and
// what is left of it in a float. A signalling one is made quiet by the conversion.
TEST(Packing, PatternsKeepTheirBits) {
  trace("Double2int", {}, R"(
    Packed            | Word1  Word2  Word3  Word4
    #8000000000000000 | 0      0      0      0x8000
    #7FF0000000000001 | 1      0      0      0x7FF0
    #FFF45678A0000000 | 0      0xA000 0x5678 0xFFF4
  )");
  trace("int2Double", {}, R"(
    Word1  Word2  Word3  Word4  | Packed
    0      0      0      0x8000 | #8000000000000000
    1      0      0      0x7FF0 | #7FF0000000000001
    0      0xA000 0x5678 0xFFF4 | #FFF45678A0000000
  )");
  trace("Float2int", {}, R"(
    Packed            | Word1  Word2
    #8000000000000000 | 0      0x8000
    #7FF0000000000001 | 0      0x7FC0    its payload lies below the float's
    #FFF45678A0000000 | 0xB3C5 0xFFE2
  )");
  trace("Float2byte", {}, R"(
    Packed            | Byte1 Byte2 Byte3 Byte4
    #7FF0000000000001 | 0     0     0xC0  0x7F
    #FFF45678A0000000 | 0xC5  0xB3  0xE2  0xFF
  )");
  trace("int2Float", {}, R"(
    Word1  Word2  | Packed
    0      0x8000 | #8000000000000000
    0xBCDE 0x7FEA | #7FFD579BC0000000
    0x2345 0xFF81 | #FFF82468A0000000
  )");
  trace("byte2Float", {}, R"(
    Byte1 Byte2 Byte3 Byte4 | Packed
    0xDE  0xBC  0xEA  0x7F  | #7FFD579BC0000000
    0x45  0x23  0x81  0xFF  | #FFF82468A0000000
  )");
}

TEST(bcd2dec, PutsSixBytesTogether) {
  trace("bcd2dec", {}, R"(
    Bcd1  Bcd2  Bcd3  Bcd4  Bcd5  Bcd6 | Decimal
    0x12  0x34  0x56  0x78  0x90  0x12 | 123456789012
    0     0     0     0     1     0xFF | 265
    0     0     0     0     1    -37.9 | 75
    0     0     1e10  1e10  1e10  1e10 | 1355734617755785      1342177285 * 1010101
    1e10  0     0     0     0     0    | -5024971223709551616  wraps: 1342177285 * 10^10 - 2^64
  )");
}

TEST(int2hex, FollowsItsFormulaBeyondAByte) {
  const auto int2hex = reinterpret_cast<std::int32_t (*)(std::int32_t)>(exported("int2hex"));
  const std::int32_t cases[][2] = {{0x99, 99}, {0x1F, 25}, {0x123, 183}, {-0x1F, -25}, {-3, -3}};
  for (const auto& [x, digits] : cases) EXPECT_EQ(int2hex(x), digits) << x;
}

}  // namespace
