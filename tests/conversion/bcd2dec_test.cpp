#include <gtest/gtest.h>

#include "tests/support/rig.h"

namespace {

TEST(bcd2dec, PutsSixBytesTogether) {
  trace("bcd2dec", {}, R"(
    Bcd1  Bcd2  Bcd3  Bcd4  Bcd5  Bcd6 | Decimal
    0x12  0x34  0x56  0x78  0x90  0x12 | 123456789012
    0x99  0x99  0x99  0x99  0x99  0x99 | 999999999999
    0     0     0     0     0     0    | 0
    0     0     0     0     0     0xFF | 165
    0     0     0     0     1     37.9 | 125
    0     0     0     0     1    -0x25 | 75
    0     0     1e10  1e10  1e10  1e10 | 1355734617755785    1342177285 * 1010101
    0    -1e10  0     0     0     0    | -134217728000000000
    1e10  0     0     0     0     0    | -5024971223709551616  wraps: 1342177285 * 10^10 - 2^64
  )");
}

TEST(int2hex, FollowsItsFormulaBeyondAByte) {
  const auto int2hex = reinterpret_cast<std::int32_t (*)(std::int32_t)>(exported("int2hex"));
  const std::int32_t cases[][2] = {{0, 0},
                                   {9, 9},
                                   {0x10, 10},
                                   {0x25, 25},
                                   {0x99, 99},
                                   {0x1F, 25},
                                   {0xFF, 165},
                                   {0x123, 183},
                                   {-0x25, -25},
                                   {-0x1F, -25},
                                   {-3, -3},
                                   {INT32_MAX, 1342177285},
                                   {INT32_MIN, -1342177280}};
  for (const auto& [x, digits] : cases) EXPECT_EQ(int2hex(x), digits) << x;
}

}  // namespace
