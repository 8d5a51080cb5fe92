#include "tests/support/rig.h"

TEST(Scale, MapsAndLimits) {
  trace("Scale", {{"InMin", 4}, {"InMax", 20}, {"OutMax", 100}}, R"(
    Enable    InSignal |  Q   InRange #clock
      1          12    |  50     1      0
      1           4    |   0     1      0     both limits are inside
      1          20    | 100     1      0
      1          24    | 100     0      0
      1           0    |   0     0      0
      1         inf    | 100     0      0
      1         nan    | nan     0      0
    1.0000001    12    |   0     0      0     only exactly 1 enables
      0.99       12    |   0     0      0
  )");
}

TEST(Scale, MakesTheMostOfOddRanges) {
  trace("Scale", {{"Enable", 1}}, R"(
    InSignal InMin InMax OutMin OutMax |  Q   InRange
       20     20     4     0     100   |   0     1     reversed input range
        4     20     4     0     100   | 100     1
        6      5     5     0     100   | 100     0     no input range: an infinite slope
        4      5     5     0     100   |   0     0
        5      5     5     0     100   | nan     0
        6      5     5     7       7   | nan     0
       12      4    20     7       7   |   7     1
       12      4    20   100       0   | 100     0     crossed limits: always OutMin
       30      4    20   100       0   | 100     0
       -9      4    20   100       0   | 100     0
       49      0    49     0       1   | 0.9999999999999999 1   the slope comes first, then the product
  )");
}
